import numpy as np
import pytest
from conftest import ROOT, Y, status_of

import quavin


def test_a_model_computes_on_as_many_threads_as_it_is_told(load):
    assert load(threads=1).engine_info().threads == 1


def test_a_model_for_throughput_has_the_results_of_any_other(load, x):
    assert load(hint="throughput").predict({"x": x})["y"].tolist() == Y


def test_a_model_is_computed_in_single_precision_unless_told_otherwise(load):
    assert load().engine_info().precision == "f32"


def test_the_fastest_precision_is_one_that_the_engine_has(load):
    assert load(precision="fastest").engine_info().precision in ("f32", "bf16", "f16")


def test_a_compiled_network_is_kept_in_the_cache(load, tmp_path, x):
    cache = tmp_path / "cache"
    cache.mkdir()
    assert load(cache=cache, cache_size_limit=1 << 20).predict({"x": x})["y"].tolist() == Y
    assert len(list(cache.iterdir())) == 1
    assert load(cache=str(cache)).predict({"x": x})["y"].tolist() == Y
    assert len(list(cache.iterdir())) == 1


def test_weights_can_be_mapped(load, x):
    assert load(map_weights=True).predict({"x": x})["y"].tolist() == Y


@pytest.mark.parametrize("name", ["precision", "hint"])
def test_an_unknown_word_is_refused(make_package, name):
    with pytest.raises(ValueError, match=f"{name} must be one of '.*', '.*', not 'most'"):
        quavin.load(make_package(), **{name: "most"})


def test_a_number_of_threads_without_a_meaning_is_refused(make_package):
    with pytest.raises(quavin.QuavinError, match="threads") as failure:
        quavin.load(make_package(), threads=-1)
    assert status_of(failure) == quavin.Status.INVALID_ARGUMENTS


def test_a_number_that_does_not_fit_is_refused(make_package):
    with pytest.raises(OverflowError):
        quavin.load(make_package(), threads=1 << 40)


def test_the_engine_is_the_pinned_one():
    pinned = (ROOT / "cmake" / "openvino.lock").read_text().split("openvino==")[1].split()[0]
    info = quavin.engine_info()
    assert info.runtime_version.startswith(pinned)
    assert info.device == "CPU"
    assert info.device_name
    assert "FP32" in info.capabilities


def test_ports_tell_what_the_package_declares():
    with quavin.load(ROOT / "examples/digits/package") as model:
        assert model.inputs == (
            quavin.Port(
                name="image",
                dtype=np.dtype(np.float32),
                shape=(1, 1, 8, 8),
                description="grey levels row by row, 0 (paper) to 16 (ink)",
                required=True,
                kind="tensor",
            ),
        )
        assert [port.name for port in model.outputs] == ["probabilities"]


def test_the_metadata_is_that_of_the_manifest(model):
    assert model.metadata == quavin.Metadata(
        id="the-id", name="The name", author="The author", description="What it does", sdk_version="3.2", version=7
    )


def test_describe_shows_what_the_model_is(load):
    lines = load(threads=1).describe().splitlines()
    assert lines == [
        "The name (the-id, version 7)",
        "What it does",
        "inputs:",
        "  x  float32  [1, 4]",
        "outputs:",
        "  y  float32  [1, 4]",
        "engine: f32, threads: 1, streams: 1",
    ]
