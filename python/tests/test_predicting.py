import gc

import networks
import numpy as np
import pytest
from conftest import DIGITS, Y, status_of

import quavin


def address_of(array):
    return array.__array_interface__["data"][0]


def test_digits_that_were_not_trained_on_are_recognised():
    records = np.fromfile(DIGITS / "held_out.bin", np.uint8).reshape(-1, 65)
    right = 0
    with quavin.load(DIGITS / "package") as model:
        for record in records:
            image = record[:64].reshape(1, 1, 8, 8).astype(np.float32)
            right += model.predict({"image": image})["probabilities"].argmax() == record[64]
    assert right >= 0.97 * len(records)


def test_every_output_is_returned_under_its_name(load):
    model = load(networks.arithmetic())
    left, right = np.float32([[1, 2, 3], [4, 5, 6]]), np.float32([[2, 2, 2], [0, 1, 10]])
    outputs = model.predict({"right": right, "left": left})
    assert set(outputs) == {"sum", "product"}
    np.testing.assert_array_equal(outputs["sum"], [[3, 4, 5], [4, 6, 16]])
    np.testing.assert_array_equal(outputs["product"], [[2, 4, 6], [0, 5, 60]])


def test_integers_are_predicted_with(load):
    y = load(networks.tripling_integers()).predict({"x": np.int32([1, -2, 3, 0])})["y"]
    assert y.dtype == np.int32
    assert y.tolist() == [3, -6, 9, 0]


def test_a_scalar_has_no_dimensions(load):
    y = load(networks.scalar()).predict({"x": np.array(4, np.float32)})["y"]
    assert y.shape == ()
    assert y == 40


def test_an_output_is_not_copied_from_the_engine(model, x):
    y = model.predict({"x": x})["y"]
    assert not y.flags.owndata
    assert y.flags.writeable


def test_an_output_stays_as_it_is_when_the_model_predicts_again(model, x):
    first = model.predict({"x": x})["y"]
    second = model.predict({"x": x * 0})["y"]
    assert first.tolist() == Y
    assert second.tolist() == [[0.5, 1, 1.5, 2]]


def test_a_written_output_does_not_change_the_next(model, x):
    model.predict({"x": x})["y"][:] = 0
    assert model.predict({"x": x})["y"].tolist() == Y


def test_an_output_outlives_its_model(load, x):
    model = load()
    y = model.predict({"x": x})["y"]
    model.close()
    del model
    gc.collect()
    assert y.tolist() == Y


def test_an_output_outlives_the_other_outputs(load):
    model = load(networks.arithmetic())
    ones = np.ones((2, 3), np.float32)
    total = model.predict({"left": ones, "right": ones})["sum"]
    for _ in range(3):
        model.predict({"left": ones * 9, "right": ones})
    assert total.tolist() == [[2, 2, 2], [2, 2, 2]]


def test_a_part_of_an_output_outlives_the_whole(model, x):
    last = model.predict({"x": x})["y"][0, 2:]
    model.predict({"x": x * 0})
    model.close()
    assert last.tolist() == [7.5, -6]


def test_the_memory_of_a_dropped_output_is_used_again(model, x):
    addresses = {address_of(model.predict({"x": x})["y"]) for _ in range(20)}
    assert len(addresses) <= 2


def test_the_memory_of_a_kept_output_is_not_used_again(model, x):
    kept = [model.predict({"x": x})["y"] for _ in range(20)]
    assert len({address_of(y) for y in kept}) == 20


def test_an_input_is_read_in_place(model, x):
    x.flags.writeable = False
    assert model.predict({"x": x})["y"].tolist() == Y


def test_a_clone_predicts_after_the_original_is_closed(load, x):
    model = load()
    clone = model.clone()
    model.close()
    with clone:
        assert clone.predict({"x": x})["y"].tolist() == Y
        assert clone.inputs == model.inputs


def test_a_model_closes_at_the_end_of_a_with_block(make_package):
    with quavin.load(make_package()) as model:
        assert not model.closed
    assert model.closed


def test_closing_twice_does_nothing(model):
    model.close()
    model.close()


@pytest.mark.parametrize(
    "use",
    [
        lambda model: model.predict({"x": np.zeros((1, 4), np.float32)}),
        lambda model: model.clone(),
        lambda model: model.engine_info(),
        lambda model: model.describe(),
    ],
    ids=["predict", "clone", "engine_info", "describe"],
)
def test_a_closed_model_is_refused(model, use):
    model.close()
    with pytest.raises(quavin.QuavinError, match="The model is closed") as failure:
        use(model)
    assert status_of(failure) == quavin.Status.MODEL_NOT_LOADED


def test_a_closed_model_still_tells_who_it_is(model):
    model.close()
    assert model.metadata.name == "The name"
    assert model.inputs[0].name == "x"
    assert repr(model) == "<quavin.Model 'The name', closed>"
