import re
import runpy

import numpy as np
from conftest import ROOT

from quavin._tool import find_tool

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


def test_a_scikit_learn_pipeline_predicts_the_same_in_a_package(tmp_path, monkeypatch, capfd):
    monkeypatch.setenv("QUAVIN_TOOL", *find_tool())
    runpy.run_path(str(EXAMPLES / "tabular.py"))["main"](tmp_path)
    out = capfd.readouterr().out
    assert re.findall("between (.*) and scikit-learn", out) == ["Python", "the command line"]
    assert "is what the key in" in out
    predicted = np.load(tmp_path / "results" / "probabilities.npy")
    assert predicted.shape == (38, 3)  # a quarter of the 150 flowers, and three species
    np.testing.assert_allclose(predicted.sum(axis=1), 1, rtol=1e-5)
