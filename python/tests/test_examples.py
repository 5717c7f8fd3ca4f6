import runpy

from conftest import ROOT

EXAMPLES = ROOT / "examples" / "python"


def test_the_first_prediction_is_right(capsys):
    runpy.run_path(str(EXAMPLES / "first_prediction.py"))
    assert capsys.readouterr().out == "This is a 1.\n"


def test_every_way_to_load_and_predict_is_right_as_often(capsys):
    runpy.run_path(str(EXAMPLES / "held_out_digits.py"), run_name="__main__")
    lines = capsys.readouterr().out.splitlines()
    # As many of the 450 as training counted.
    assert lines[-5:-2] == ["444", "444 444", "444"]
    assert lines[-2] == "That is not a model package."
    assert "No such file or directory" in lines[-1]
