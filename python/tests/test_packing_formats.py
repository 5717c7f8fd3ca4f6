"""quavin.pack: the files of frameworks that are not installed here."""

import handmade
import numpy as np
import pytest

import quavin

X = np.float32([[0, 1.5, -2, 100]])


@pytest.mark.parametrize(
    ("name", "make", "expected"),
    [
        ("graph.pb", handmade.tensorflow_graph, X + 1),
        ("model.tflite", handmade.tensorflow_lite_model, X + X),
        ("program.pdmodel", handmade.paddle_program, 2 * X),
    ],
)
def test_a_file_of_each_framework_is_packed(tmp_path, name, make, expected):
    (tmp_path / name).write_bytes(make())
    report = quavin.pack(tmp_path / name, tmp_path / "package", inputs={"x": X})
    assert report.compared_with.startswith("OpenVINO ")
    with quavin.load(report.destination) as model:
        assert ([port.name for port in model.inputs], [port.name for port in model.outputs]) == (["x"], ["y"])
        assert model.predict({"x": X})["y"].tolist() == expected.tolist()
