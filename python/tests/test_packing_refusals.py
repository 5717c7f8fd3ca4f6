"""quavin.pack: what it refuses, and that it leaves nothing behind."""

import os
import subprocess
import sys
import types

import models
import numpy as np
import pytest

import quavin
from quavin import _tool


@pytest.fixture
def model_file(tmp_path):
    return models.doubling(tmp_path / "model.onnx")


@pytest.fixture
def folder(tmp_path):
    """Where packages go, which has to be empty in the end."""
    folder = tmp_path / "folder"
    folder.mkdir()
    yield folder
    assert list(folder.iterdir()) == []


@pytest.mark.parametrize(
    ("options", "message"),
    [
        ({"shapes": {"z": (1, 4)}}, 'shapes: the model has no input "z"; it has "x"'),
        ({"rename": {"z": "a"}}, 'rename: the model has no input or output "z"; it has "x", "y"'),
        ({"rename": {"x": "a b"}}, "rename: 'a b' cannot be used as a name; 'a_b' could"),
        ({"rename": {"x": ""}}, "rename: '' cannot be used as a name; '_' could"),
        ({"descriptions": {"z": "text"}}, 'descriptions: the model has no input or output "z"'),
        ({"inputs": {"z": np.zeros(1)}}, 'inputs: the model has no input "z"'),
        ({"inputs": {"x": np.zeros((1, 5))}}, r'inputs: "x" has the shape \[1, 5\], and the model \[1, 4\]'),
        ({"encrypt": "components"}, "encrypt needs one of key, key_file, key_env"),
        ({"encrypt": "components", "key": bytes(16), "key_env": "K"}, "encrypt needs one of"),
        ({"encrypt": "all", "key": bytes(16)}, 'encrypt must be "components" or "archive"'),
        ({"encrypt": "components", "key": bytes(15)}, "key must have 16 bytes, not 15"),
        ({"key_file": "key"}, "key_file is given without encrypt"),
        ({"weights": "w.bin"}, "weights are for OpenVINO IR and PaddlePaddle, not for model.onnx"),
        ({"example_inputs": np.zeros(4)}, "example_inputs are for PyTorch modules"),
    ],
)
def test_arguments_that_do_not_fit_are_refused(model_file, folder, options, message):
    with pytest.raises(ValueError, match=message):
        quavin.pack(model_file, folder / "package", **options)


def test_values_of_another_kind_are_refused(model_file, folder):
    with pytest.raises(TypeError, match="has the type complex128, and the model reads float32"):
        quavin.pack(model_file, folder / "package", inputs={"x": np.zeros((1, 4), complex)})
    with pytest.raises(TypeError, match="key must be bytes, not text"):
        quavin.pack(model_file, folder / "package", encrypt="components", key="0" * 16)
    for key in 16, list(range(16)):
        with pytest.raises(TypeError, match=f"key must be bytes-like, not {type(key).__name__}"):
            quavin.pack(model_file, folder / "package", encrypt="components", key=key)
    with pytest.raises(TypeError, match="outputs must be a sequence of names, not one text"):
        quavin.pack(model_file, folder / "package", outputs="y")
    for shape in 4, "4", (1, 4.5), (1, "4"):
        with pytest.raises(TypeError, match='shapes: "x" must be a sequence of integers'):
            quavin.pack(model_file, folder / "package", shapes={"x": shape})
    with pytest.raises(TypeError, match="source must be a path or a PyTorch module, not int"):
        quavin.pack(7, folder / "package")


@pytest.fixture
def module(monkeypatch):
    """What passes for a PyTorch module until it is converted."""

    class Module:
        training = False

    nn = types.SimpleNamespace(Module=Module)
    torch = types.SimpleNamespace(nn=nn, Tensor=type("Tensor", (), {}), float8_e4m3fn=None)
    monkeypatch.setitem(sys.modules, "torch", torch)
    return Module()


def test_a_module_without_example_inputs_is_refused(module, folder):
    with pytest.raises(ValueError, match="a PyTorch module needs example_inputs"):
        quavin.pack(module, folder / "package")


@pytest.mark.parametrize("example", [np.zeros((2, 3), np.float32), 3])
def test_example_inputs_of_another_kind_are_refused(module, folder, example):
    with pytest.raises(TypeError, match="example_inputs must be a tensor, .* not (ndarray|int)"):
        quavin.pack(module, folder / "package", example_inputs=example)


def test_a_module_in_training_mode_is_refused(module, folder):
    module.training = True
    with pytest.raises(ValueError, match="the module is in training mode, .* call its eval"):
        quavin.pack(module, folder / "package", example_inputs=(1,))


def test_a_module_has_no_weights_file(module, folder):
    with pytest.raises(ValueError, match="weights are for files"):
        quavin.pack(module, folder / "package", example_inputs=(1,), weights="w.bin")


def test_a_missing_model_is_reported(folder):
    with pytest.raises(FileNotFoundError, match="there is no model nowhere.onnx"):
        quavin.pack("nowhere.onnx", folder / "package")


@pytest.mark.parametrize("name", ["model.onnx", "model.tflite", "model.pb", "model.pdmodel", "model.xml", "model.txt"])
def test_what_is_not_a_model_is_refused(tmp_path, folder, name):
    (tmp_path / name).write_bytes(b"not a model")
    with pytest.raises(quavin.ConversionError, match=f"{name} cannot be converted: ."):
        quavin.pack(tmp_path / name, folder / "package")


def test_an_operator_that_nobody_knows_is_named(tmp_path, folder):
    from onnx import helper, save

    graph = helper.make_graph(
        [helper.make_node("Divine", ["x"], ["y"], domain="org.example")],
        "graph",
        [models.tensor("x", models.FLOAT, (2,))],
        [models.tensor("y", models.FLOAT, (2,))],
    )
    opsets = [helper.make_opsetid("", 17), helper.make_opsetid("org.example", 1)]
    save(helper.make_model(graph, opset_imports=opsets, ir_version=9), tmp_path / "model.onnx")
    with pytest.raises(quavin.ConversionError, match="Divine"):
        quavin.pack(tmp_path / "model.onnx", folder / "package")


def test_inputs_that_the_original_does_not_work_with_are_reported(tmp_path, folder, capfd):
    nodes = [models.node("Gather", ["table", "ids"], ["y"])]
    ports = {"ids": (models.INT64, (2,))}, {"y": (models.FLOAT, (2,))}
    models.write(tmp_path / "model.onnx", nodes, *ports, {"table": np.zeros(4, np.float32)})
    with pytest.raises(quavin.ConversionError, match="onnxruntime .* does not predict with these inputs: .*idx=9"):
        quavin.pack(tmp_path / "model.onnx", folder / "package", inputs={"ids": np.int64([0, 9])})
    assert capfd.readouterr() == ("", "")


def test_an_existing_destination_is_refused_and_stays(model_file, tmp_path):
    file, directory = tmp_path / "p.tar", tmp_path / "p"
    file.write_text("precious")
    directory.mkdir()
    for destination in file, directory:
        with pytest.raises(FileExistsError, match="already exists"):
            quavin.pack(model_file, destination)
    assert file.read_text() == "precious"
    assert list(directory.iterdir()) == []


@pytest.mark.parametrize("name", ["package", "package.tar"])
def test_a_destination_that_appears_meanwhile_stays(model_file, tmp_path, monkeypatch, name):
    destination = tmp_path / "folder" / name

    def run(arguments, environment):
        _tool.run_tool(arguments, environment)
        if name.endswith(".tar"):
            destination.write_text("precious")
        else:
            destination.mkdir()

    destination.parent.mkdir()
    monkeypatch.setattr("quavin._packing.run_tool", run)
    with pytest.raises(FileExistsError):
        quavin.pack(model_file, destination)
    assert list(destination.parent.iterdir()) == [destination]
    assert list(destination.iterdir()) == [] if destination.is_dir() else destination.read_text() == "precious"


@pytest.mark.parametrize("name", ["package", "package.tar", "more/folders/package"])
def test_a_package_that_differs_is_not_written(tmp_path, folder, name):
    path, _ = models.projection(tmp_path / "model.onnx")
    with pytest.raises(quavin.ConversionError, match="differs from onnxruntime .* of the largest value, and 1.0e-09"):
        quavin.pack(path, folder / name, fp16=True, tolerance=1e-9)


def test_a_package_whose_difference_is_no_number_is_not_written(tmp_path, folder):
    path, _ = models.projection(tmp_path / "model.onnx")
    with pytest.raises(quavin.ConversionError, match="differs"):
        quavin.pack(path, folder / "package", tolerance=float("nan"))


def test_an_archive_needs_a_name(model_file, folder):
    with pytest.raises(ValueError, match="has no name before .tar"):
        quavin.pack(model_file, folder / ".tar")


def test_a_full_disk_is_an_error_of_files(tmp_path, folder):
    resource = pytest.importorskip("resource")
    path, _ = models.projection(tmp_path / "model.onnx")
    quavin.pack(path, tmp_path / "before")  # writes what is written only once
    limits = resource.getrlimit(resource.RLIMIT_FSIZE)
    resource.setrlimit(resource.RLIMIT_FSIZE, (100, limits[1]))
    try:
        with pytest.raises(OSError, match=r"package.xml cannot be written, with \d+ bytes free there"):
            quavin.pack(path, folder / "package")
    finally:
        resource.setrlimit(resource.RLIMIT_FSIZE, limits)


def test_the_words_of_the_command_are_passed_on(model_file, folder):
    with pytest.raises(quavin.ConversionError, match="quavin: --output: ends in .zip, .* an archive ends in .tar$"):
        quavin.pack(model_file, folder / "package.zip")
    with pytest.raises(quavin.ConversionError, match='quavin: status 7: "a b" cannot be the archive'):
        quavin.pack(model_file, folder / "p.tar", root="a b")
    with pytest.raises(quavin.ConversionError, match="missing.key"):
        quavin.pack(model_file, folder / "package", encrypt="components", key_file="missing.key")


def test_a_missing_command_is_named(model_file, folder, monkeypatch):
    monkeypatch.setenv("QUAVIN_TOOL", str(folder / "none"))
    with pytest.raises(FileNotFoundError, match="none"):
        quavin.pack(model_file, folder / "package")


def test_the_command_is_found_in_a_source_tree_or_by_its_variable(monkeypatch, tmp_path):
    monkeypatch.delenv("QUAVIN_TOOL", raising=False)
    monkeypatch.setattr(_tool, "program", lambda: tmp_path / "python" / "quavin" / "quavin")
    monkeypatch.setattr(_tool, "_TREE", tmp_path)
    with pytest.raises(FileNotFoundError, match="QUAVIN_TOOL"):
        _tool.find_tool()
    for build in "debug", "release":  # the better comes last, and is taken
        program = tmp_path / "build" / build / "tools" / "quavin" / "quavin"
        program.parent.mkdir(parents=True)
        program.touch()
        assert _tool.find_tool() == (str(program),)
    monkeypatch.setenv("QUAVIN_TOOL", "elsewhere")
    assert _tool.find_tool() == ("elsewhere",)


def test_importing_quavin_needs_nothing_that_converts_models():
    program = (
        "import sys, quavin; "
        "sys.exit(bool({'openvino', 'onnx', 'onnxruntime', 'torch', 'sklearn'} & set(sys.modules)))"
    )
    environment = {**os.environ, "PYTHONPATH": os.pathsep.join(sys.path)}
    assert subprocess.run([sys.executable, "-c", program], env=environment, check=False).returncode == 0


def test_a_missing_converter_is_named(model_file, folder, monkeypatch):
    monkeypatch.setitem(sys.modules, "openvino", None)
    with pytest.raises(ImportError, match="converting models needs the package openvino"):
        quavin.pack(model_file, folder / "package")


def test_a_converter_of_another_version_is_refused(model_file, folder, monkeypatch):
    quavin.pack(model_file, folder.parent / "right")  # imports it
    monkeypatch.setattr(sys.modules["openvino"], "__version__", "2019.1.0-1")
    with pytest.raises(ImportError, match="openvino has the version 2019.1.0, and the library's runtime 20"):
        quavin.pack(model_file, folder / "package")


def test_without_onnx_runtime_openvino_is_compared_with(model_file, tmp_path, monkeypatch):
    monkeypatch.setitem(sys.modules, "onnxruntime", None)
    report = quavin.pack(model_file, tmp_path / "package")
    assert report.compared_with.startswith("OpenVINO 20")
    assert report.difference == 0
