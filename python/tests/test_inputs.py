import networks
import numpy as np
import packages
import pytest
from conftest import Y, status_of

import quavin


@pytest.mark.parametrize(
    ("value", "error", "message"),
    [
        ([[1.0, 2, 3, -4]], TypeError, 'input "x" is not a NumPy array but of the type list'),
        (None, TypeError, 'input "x" is not a NumPy array but of the type NoneType'),
        (np.float64([[1, 2, 3, -4]]), TypeError, "has the type float64, and the model reads float32"),
        (np.array([[1, 2, 3, -4]], ">f4"), TypeError, "has the type >f4, and the model reads float32"),
        (np.float32([1, 2, 3, -4]), ValueError, r"has the shape \[4\], and the model reads \[1, 4\]"),
        (np.float32([[1, 2, 3]]), ValueError, r"has the shape \[1, 3\], and the model reads \[1, 4\]"),
        (np.zeros((1, 8), np.float32)[:, ::2], ValueError, "is not contiguous and aligned"),
        (np.zeros(17, np.uint8)[1:].view(np.float32).reshape(1, 4), ValueError, "not contiguous and aligned"),
    ],
    ids=["list", "none", "dtype", "byte order", "rank", "extent", "strided", "unaligned"],
)
def test_an_input_that_cannot_be_read_in_place_is_refused(model, value, error, message):
    with pytest.raises(error, match=message):
        model.predict({"x": value})


@pytest.mark.parametrize(
    "value",
    [
        [[1.0, 2, 3, -4]],
        np.float64([[1, 2, 3, -4]]),
        np.array([[1, 2, 3, -4]], ">f4"),
        np.int8([[1, 2, 3, -4]]),
        np.float32([[1, 0, 2, 0, 3, 0, -4, 0]])[:, ::2],
    ],
    ids=["list", "float64", "byte order", "int8", "strided"],
)
def test_cast_converts_an_input(model, value):
    assert model.predict({"x": value}, cast=True)["y"].tolist() == Y


def test_cast_copies_an_unaligned_input(model, x):
    memory = np.zeros(17, np.uint8)
    unaligned = memory[1:].view(np.float32).reshape(1, 4)
    unaligned[:] = x
    assert model.predict({"x": unaligned}, cast=True)["y"].tolist() == Y


def test_cast_keeps_a_scalar_without_dimensions(load):
    assert load(networks.scalar()).predict({"x": 4}, cast=True)["y"] == 40


def test_cast_does_not_change_the_kind_of_numbers(load):
    with pytest.raises(TypeError, match="has the type float64, which cannot be cast to int32"):
        load(networks.tripling_integers()).predict({"x": [1.0, 2, 3, 4]}, cast=True)


@pytest.mark.parametrize("value", [2**31, -(2**31) - 1])
def test_cast_does_not_let_integers_overflow(load, value):
    with pytest.raises(ValueError, match="values that do not fit into int32"):
        load(networks.tripling_integers()).predict({"x": np.int64([1, 2, value, 4])}, cast=True)


def test_cast_does_not_change_the_shape(model):
    with pytest.raises(ValueError, match=r"has the shape \[4\]"):
        model.predict({"x": [1, 2, 3, 4]}, cast=True)


def test_a_missing_input_is_named(load):
    with pytest.raises(ValueError, match='the input "right" is missing'):
        load(networks.arithmetic()).predict({"left": np.zeros((2, 3), np.float32)})


def test_an_unknown_input_is_named(model, x):
    with pytest.raises(ValueError, match='the model has no input "z"; it has "x"'):
        model.predict({"x": x, "z": x})


def test_inputs_that_are_no_dict_are_refused(model, x):
    with pytest.raises(TypeError, match="inputs must be a dict of arrays, not ndarray"):
        model.predict(x)


def test_the_library_refuses_an_optional_input_that_the_network_reads(make_package):
    package = make_package()
    with packages.changed_manifest(package) as target:
        target["inputs"][0]["required"] = False
    with quavin.load(package) as model, pytest.raises(quavin.QuavinError) as failure:
        model.predict({})
    assert status_of(failure) == quavin.Status.EMPTY_INPUT_DESCRIPTOR


def test_an_input_that_is_not_a_tensor_is_refused(make_package, x):
    package = make_package()
    with packages.changed_manifest(package) as target:
        target["inputs"].append({"name": "count", "required": False, "featureType": "int64"})
    with quavin.load(package) as model:
        assert model.inputs[1].kind == "int64"
        assert model.inputs[1].dtype is None
        with pytest.raises(TypeError, match='"count" is not a tensor but of the kind "int64"; leave it out'):
            model.predict({"x": x, "count": np.int64([3])})
        assert model.predict({"x": x})["y"].tolist() == Y


def test_a_type_that_the_engine_cannot_read_is_refused(load):
    model = load(networks.affine(dtype="u8"))
    with pytest.raises(quavin.QuavinError, match="only supports float, int8, int16, int32") as failure:
        model.predict({"x": np.uint8([[1, 2, 3, 4]])})
    assert status_of(failure) == quavin.Status.INVALID_TYPE


def test_any_extent_will_do_where_the_package_leaves_it_open(make_package, x):
    package = make_package(networks.arithmetic())
    with packages.changed_manifest(package) as target:
        target["inputs"][1]["tensor"]["shape"] = [-1, 3]
    ones = np.ones((2, 3), np.float32)
    with quavin.load(package) as model:
        assert model.inputs[1].shape == (-1, 3)
        assert model.predict({"left": ones, "right": ones})["sum"].tolist() == [[2, 2, 2], [2, 2, 2]]
        with pytest.raises(ValueError, match=r"has the shape \[2, 2\], and the model reads \[-1, 3\]"):
            model.predict({"left": ones, "right": ones[:, :2]})
        with pytest.raises(quavin.QuavinError) as failure:
            model.predict({"left": ones, "right": ones[:1]})
    assert status_of(failure) == quavin.Status.INVALID_ARGUMENTS
