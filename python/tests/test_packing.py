"""quavin.pack: what it changes in a model, and what packages then predict."""

import models
import networks
import numpy as np
import packages
import pytest

import quavin


@pytest.fixture
def pack(tmp_path):
    def pack_to(source, to="package", **options):
        return quavin.pack(source, tmp_path / to, **options)

    return pack_to


@pytest.fixture
def onnx_file(tmp_path):
    return tmp_path / "model.onnx"


def predict(report, **inputs):
    with quavin.load(report.destination) as model:
        return model.predict(inputs)


def shown(ports):
    return [(port.name, str(port.dtype), port.shape) for port in ports]


def test_a_packed_model_predicts_what_it_did(pack, onnx_file):
    path, w = models.projection(onnx_file)
    report = pack(path)
    x = np.linspace(-1, 1, 16, dtype=np.float32).reshape(1, 16)
    np.testing.assert_allclose(predict(report, x=x)["y"], x @ w, rtol=1e-5, atol=1e-5)
    assert report.changes == ()
    assert report.difference < 1e-5
    assert report.compared_with.startswith("onnxruntime ")


def test_the_package_is_named_after_its_destination_unless_told_otherwise(pack, onnx_file):
    models.doubling(onnx_file)
    with quavin.load(pack(onnx_file, "one").destination) as model:
        assert (model.metadata.id, model.metadata.name, model.metadata.version) == ("one", "one", 1)
    identity = {"id": "i", "name": "-n", "author": "a=b", "description": "d e", "sdk_version": "3", "version": 7}
    with quavin.load(pack(onnx_file, "two", **identity).destination) as model:
        assert {name: getattr(model.metadata, name) for name in identity} == identity


def test_inputs_and_outputs_keep_the_names_and_the_order_of_the_author(pack, onnx_file):
    floats = (models.FLOAT, (2,))
    nodes = [models.node("Sub", ["z", "a"], ["second"]), models.node("Mul", ["z", "a"], ["first"])]
    models.write(onnx_file, nodes, {"z": floats, "a": floats}, {"second": floats, "first": floats})
    report = pack(onnx_file)
    assert shown(report.inputs) == [("z", "float32", (2,)), ("a", "float32", (2,))]
    assert shown(report.outputs) == [("second", "float32", (2,)), ("first", "float32", (2,))]
    outputs = predict(report, z=np.float32([5, 6]), a=np.float32([2, 3]))
    assert outputs["second"].tolist() == [3, 3]
    assert outputs["first"].tolist() == [10, 18]


def test_numbers_that_belong_to_the_names_of_an_onnx_model_stay(pack, onnx_file):
    report = pack(models.doubling(onnx_file, names=("x:0", "Identity:0")))
    assert [port.name for port in (*report.inputs, *report.outputs)] == ["x:0", "Identity:0"]
    assert report.compared_with.startswith("onnxruntime ")


@pytest.mark.parametrize(
    ("kind", "own", "dtype", "values"),
    [
        (models.INT64, "int64", "int32", [0, 1, -(2**31), 2**31 - 1]),
        (models.DOUBLE, "float64", "float32", [0.5, -1e9, 3, 0]),
        (models.HALF, "float16", "float32", [0.5, -2048, 3, 0]),
        (models.UINT16, "uint16", "int32", [0, 1, 40000, 65535]),
        (models.BOOL, "bool", "int8", [0, 1, 1, 0]),
    ],
)
def test_inputs_that_packages_do_not_have_are_converted(pack, onnx_file, kind, own, dtype, values):
    report = pack(models.casting(onnx_file, kind))
    assert shown(report.inputs) == [("x", dtype, (4,))]
    assert report.changes == (f'input "x": {own} becomes {dtype}',)
    y = predict(report, x=np.array(values, dtype))["y"]
    assert y.tolist() == np.array(values, np.float32).tolist()


@pytest.mark.parametrize(
    ("kind", "own", "dtype", "expected"),
    [
        (models.INT64, "int64", "int32", [0, 1, -3, 7]),
        (models.DOUBLE, "float64", "float32", [0, 1.5, -3.25, 7]),
        (models.HALF, "float16", "float32", [0, 1.5, -3.25, 7]),
        (models.BOOL, "bool", "int32", [0, 1, 1, 1]),
    ],
)
def test_outputs_that_packages_do_not_have_are_converted(pack, onnx_file, kind, own, dtype, expected):
    report = pack(models.casting(onnx_file, models.FLOAT, to=kind))
    assert shown(report.outputs) == [("y", dtype, (4,))]
    assert report.changes == (f'output "y": {own} becomes {dtype}',)
    assert predict(report, x=np.float32([0, 1.5, -3.25, 7]))["y"].tolist() == expected


def test_bytes_go_in_as_they_are(pack, onnx_file):
    every = np.arange(256, dtype=np.uint8)
    report = pack(models.casting(onnx_file, models.UINT8, (256,)), descriptions={"x": "pixels"})
    assert shown(report.inputs) == [("x", "int8", (256,))]
    assert report.inputs[0].description == "pixels; uint8, as the int8 of the same bits"
    assert "same bits" in report.changes[0]
    assert predict(report, x=every.view(np.int8))["y"].tolist() == list(range(256))


def test_bytes_go_in_as_they_are_whatever_the_precision(pack, onnx_file):
    report = pack(models.casting(onnx_file, models.UINT8, (256,)))
    with quavin.load(report.destination, precision="fastest") as model:
        y = model.predict({"x": np.arange(256, dtype=np.uint8).view(np.int8)})["y"]
    assert y.tolist() == list(range(256))


def test_text_is_refused(pack, onnx_file):
    texts = (models.TEXT, (2,))
    models.write(onnx_file, [models.node("Identity", ["x"], ["y"])], {"x": texts}, {"y": texts})
    with pytest.raises(quavin.ConversionError, match='input "x" has the element type string'):
        pack(onnx_file)


def test_open_shapes_are_fixed(pack, onnx_file):
    report = pack(models.doubling(onnx_file, ("batch", 3, None)), shapes={"x": (2, 3, 5)})
    assert shown(report.inputs) == [("x", "float32", (2, 3, 5))]
    assert shown(report.outputs) == [("y", "float32", (2, 3, 5))]
    assert report.changes == ('input "x": the shape [?,3,?] is fixed to [2, 3, 5]',)


def test_shapes_may_be_numbers_of_numpy(pack, onnx_file):
    report = pack(models.doubling(onnx_file, ("n", 4)), shapes={"x": np.array([3, 4])})
    assert shown(report.inputs) == [("x", "float32", (3, 4))]


def test_an_open_shape_is_refused_with_the_shapes_to_fix(pack, onnx_file):
    floats = {name: (models.FLOAT, shape) for name, shape in (("a", ("n", 2)), ("b", (2,)), ("c", (None, "m")))}
    nodes = [models.node("Add", ["a", "b"], ["ab"]), models.node("Mul", ["ab", "c"], ["y"])]
    models.write(onnx_file, nodes, floats, {"y": (models.FLOAT, (None, 2))})
    with pytest.raises(quavin.ConversionError) as failure:
        pack(onnx_file)
    assert '"a" [?,2], "c" [?,?]' in str(failure.value)
    assert 'shapes={"a": [1, 2], "c": [1, 1]}' in str(failure.value)
    assert "--shape a=1,2 --shape c=1,1," in str(failure.value)


def test_a_shape_that_does_not_fit_is_refused(pack, onnx_file):
    path, _ = models.projection(onnx_file)
    with pytest.raises(quavin.ConversionError, match="does not work with these shapes"):
        pack(path, shapes={"x": (1, 7)})


def test_an_output_whose_shape_depends_on_the_data_is_refused(pack, onnx_file):
    nodes = [models.node("NonZero", ["x"], ["y"])]
    models.write(onnx_file, nodes, {"x": (models.FLOAT, (4,))}, {"y": (models.INT64, (1, None))})
    with pytest.raises(quavin.ConversionError, match='output "y" has the shape .* depends on the data'):
        pack(onnx_file)


def test_an_output_that_is_not_wanted_may_have_any_shape(pack, tmp_path):
    openvino = pytest.importorskip("openvino")
    x = openvino.opset13.parameter([4], np.float32, name="x")
    results = openvino.opset13.non_zero(x), openvino.opset13.negative(x)
    for node, name in zip((x, *results), ("x", "places", "y")):
        node.output(0).set_names({name})
    openvino.save_model(openvino.Model(list(results), [x], "model"), tmp_path / "model.xml")
    report = pack(tmp_path / "model.xml", outputs=["y"])
    assert shown(report.outputs) == [("y", "float32", (4,))]
    with pytest.raises(quavin.ConversionError, match='output "places" has the shape .* depends on the data'):
        pack(tmp_path / "model.xml", "other")


def test_ports_are_renamed_and_described(pack, onnx_file):
    models.doubling(onnx_file)
    descriptions = {"x": 'grey, "8 bit" = flat', "y": "ß"}
    report = pack(onnx_file, rename={"x": "image", "y": "größe"}, descriptions=descriptions)
    assert [(port.name, port.description) for port in (*report.inputs, *report.outputs)] == [
        ("image", 'grey, "8 bit" = flat'),
        ("größe", "ß"),
    ]
    assert report.changes == ('"x" is now called "image"', '"y" is now called "größe"')
    assert predict(report, image=np.ones((1, 4), np.float32))["größe"].tolist() == [[2, 2, 2, 2]]


def test_an_empty_description_is_none(pack, onnx_file):
    assert pack(models.doubling(onnx_file), descriptions={"x": ""}).inputs[0].description == ""


def test_names_that_cannot_be_typed_are_replaced(pack, onnx_file):
    report = pack(models.doubling(onnx_file, names=("a b=c", "d,e")))
    assert [port.name for port in (*report.inputs, *report.outputs)] == ["a_b_c", "d_e"]
    assert report.changes == ('"a b=c" is now called "a_b_c"', '"d,e" is now called "d_e"')


def test_outputs_that_are_the_same_tensor_keep_their_own_names(pack, onnx_file):
    floats = (models.FLOAT, (2,))
    nodes = [models.node("Add", ["x", "x"], ["y"]), models.node("Identity", ["y"], ["twin"]),
             models.node("Identity", ["x"], ["same"])]  # fmt: skip
    models.write(onnx_file, nodes, {"x": floats}, {"twin": floats, "same": floats, "y": floats})
    report = pack(onnx_file)
    assert [port.name for port in report.outputs] == ["twin", "same", "y"]
    outputs = predict(report, x=np.float32([1, 2]))
    assert {name: y.tolist() for name, y in outputs.items()} == {"twin": [2, 4], "same": [1, 2], "y": [2, 4]}


def test_outputs_that_are_called_like_other_ports_are_numbered(pack, tmp_path):
    openvino = pytest.importorskip("openvino")
    x = openvino.opset13.parameter([2], np.float32, name="x")
    y = openvino.opset13.negative(x)
    for node, name in (x, "x"), (y, "y"):
        node.output(0).set_names({name})
    openvino.save_model(openvino.Model([y, x, y], [x], "model"), tmp_path / "model.xml")
    report = pack(tmp_path / "model.xml", rename={"x_1": "same"})
    assert [port.name for port in (*report.inputs, *report.outputs)] == ["x", "y", "same", "y_1"]
    outputs = predict(report, x=np.float32([1, 2]))
    assert {name: y.tolist() for name, y in outputs.items()} == {"y": [-1, -2], "same": [1, 2], "y_1": [-1, -2]}


def test_two_ports_cannot_get_one_name(pack, onnx_file):
    floats = (models.FLOAT, (2,))
    models.write(onnx_file, [models.node("Add", ["a", "b"], ["y"])], {"a": floats, "b": floats}, {"y": floats})
    for old, new in ("a", "b"), ("a", "y"), ("y", "a"):
        with pytest.raises(ValueError, match=f'two inputs or outputs would be called "{new}"'):
            pack(onnx_file, rename={old: new})


def test_two_inputs_can_exchange_their_names(pack, onnx_file):
    floats = (models.FLOAT, (2,))
    models.write(onnx_file, [models.node("Sub", ["a", "b"], ["y"])], {"a": floats, "b": floats}, {"y": floats})
    report = pack(onnx_file, rename={"a": "b", "b": "a"})
    assert predict(report, b=np.float32([5, 6]), a=np.float32([2, 2]))["y"].tolist() == [3, 4]


def test_only_the_wanted_outputs_are_packed_in_their_order(pack, onnx_file):
    floats = (models.FLOAT, (2,))
    operations = ("Add", ["a", "a"], ["u"]), ("Mul", ["b", "b"], ["v"]), ("Neg", ["a"], ["w"])
    nodes = [models.node(*operation) for operation in operations]
    models.write(onnx_file, nodes, {"b": floats, "a": floats}, {"u": floats, "v": floats, "w": floats})
    report = pack(onnx_file, outputs=["w", "u"])
    assert [port.name for port in report.inputs] == ["a"]
    assert [port.name for port in report.outputs] == ["w", "u"]
    outputs = predict(report, a=np.float32([1, 2]))
    assert {name: y.tolist() for name, y in outputs.items()} == {"w": [-1, -2], "u": [2, 4]}


def test_an_input_that_nothing_depends_on_is_left_out(pack, onnx_file):
    floats = (models.FLOAT, (2,))
    models.write(onnx_file, [models.node("Neg", ["a"], ["y"])], {"unused": floats, "a": floats}, {"y": floats})
    report = pack(onnx_file, rename={"unused": "nothing"}, descriptions={"unused": "nothing"})
    assert [port.name for port in report.inputs] == ["a"]
    assert report.changes == ('input "unused" is left out: no output depends on it',)


def test_half_precision_halves_the_weights(pack, onnx_file):
    path, _ = models.projection(onnx_file, 64)
    whole, half = pack(path, "whole"), pack(path, "half", fp16=True)
    sizes = [(report.destination / f"{name}.bin").stat().st_size for name, report in (("whole", whole), ("half", half))]
    assert sizes[0] == 2 * sizes[1] == 64 * 64 * 4
    assert half.changes == ("weights are stored as 16-bit floats",)
    assert whole.difference < 1e-5 < half.difference < 1e-2


def test_an_openvino_network_is_packed(pack, tmp_path):
    network = packages.write_network(tmp_path / "ir", networks.affine(dtype="u8"))
    report = pack(network)
    assert report.compared_with.startswith("OpenVINO ")
    x = np.uint8([[0, 1, 128, 255]])
    assert predict(report, x=x.view(np.int8))["y"].tolist() == networks.affine_result(x).tolist()


def test_the_weights_of_an_openvino_network_may_be_elsewhere(pack, tmp_path):
    network = packages.write_network(tmp_path / "ir")
    weights = network.with_suffix(".bin").rename(tmp_path / "weights")
    report = pack(network, weights=weights)
    assert predict(report, x=np.zeros((1, 4), np.float32))["y"].tolist() == networks.OFFSETS.tolist()


def test_the_report_is_a_summary_for_people(pack, onnx_file):
    report = pack(models.casting(onnx_file, models.INT64, ("n",)), shapes={"x": (4,)}, descriptions={"x": "ids"})
    assert str(report).splitlines() == [
        f"Packed as {report.destination}",
        'input "x": the shape [?] is fixed to [4]',
        'input "x": int64 becomes int32',
        "inputs:",
        "  x  int32  [4]  ids",
        "outputs:",
        "  y  float32  [4]",
        f"largest difference from {report.compared_with}: 0.0e+00 of the largest value",
    ]


def test_larger_integers_are_compared_if_they_are_given(pack, onnx_file):
    table = np.arange(8, dtype=np.float32).reshape(4, 2)
    nodes = [models.node("Gather", ["table", "ids"], ["y"])]
    models.write(onnx_file, nodes, {"ids": (models.INT64, (3,))}, {"y": (models.FLOAT, (3, 2))}, {"table": table})
    assert pack(onnx_file, inputs={"ids": np.int64([3, 0, 2])}).difference == 0


@pytest.mark.parametrize("kind", [models.FLOAT, models.UINT8, models.INT64])
def test_packages_are_the_same_each_time(pack, onnx_file, kind):
    nodes = [models.node("Cast", ["x"], ["real"], to=models.FLOAT), models.node("MatMul", ["real", "w"], ["y"])]
    ports = {"x": (kind, (1, 3))}, {"y": (models.FLOAT, (1, 2))}
    models.write(onnx_file, nodes, *ports, {"w": np.float32([[1, 2], [3, 4], [5, 6]])})
    one, two = (pack(onnx_file, f"{folder}/p.tar").destination.read_bytes() for folder in "ab")
    assert one == two
