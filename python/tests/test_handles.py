"""Every handle that the library gives out is released, once."""

import gc

import pytest
from conftest import KEY, KEY_HEX

import quavin
from quavin import _engine, _model, _network, _outputs, _ports, _runtime, _sources
from quavin._library import ffi, lib

MODULES = (_engine, _model, _network, _outputs, _ports, _runtime, _sources)


class Watched:
    """Stands for the library, and keeps the handles that are open."""

    def __init__(self):
        self.opened = 0
        self.open = set()

    def __getattr__(self, name):
        function = getattr(lib, name)
        if not callable(function):
            return function

        def watched(*arguments):
            if name.endswith("_release"):
                self.open.remove(self._number(arguments[0]))
            status = function(*arguments)
            # The last argument of a function that makes something receives its handle.
            made = arguments[-1] if arguments else None
            if isinstance(made, ffi.CData) and ffi.typeof(made).cname.endswith("* *") and made[0] != ffi.NULL:
                self.open.add(self._number(made[0]))
                self.opened += 1
            return status

        return watched

    def _number(self, handle):
        return int(ffi.cast("uintptr_t", handle))


@pytest.fixture
def watched(monkeypatch):
    library = Watched()
    for module in MODULES:
        monkeypatch.setattr(module, "lib", library)
    yield library
    gc.collect()


def test_a_whole_life_leaves_no_handle(watched, make_package, x):
    package = make_package()
    with quavin.load(package) as model:
        with model.clone() as clone:
            kept = [clone.predict({"x": x})["y"] for _ in range(3)]
            assert len(watched.open) == 5
        model.describe()
        quavin.engine_info()
        quavin.describe(package)
    assert len(watched.open) == 3
    del kept
    gc.collect()
    assert watched.open == set()
    assert watched.opened == 8


def test_a_model_that_is_dropped_is_released(watched, make_package):
    model = quavin.load(make_package())
    assert len(watched.open) == 1
    del model
    gc.collect()
    assert watched.open == set()


def test_failures_leave_no_handle(watched, make_package, x):
    package = make_package(key_hex=KEY_HEX)
    with pytest.raises(quavin.QuavinError):
        quavin.load(package)
    with quavin.load(package, key=KEY) as model, pytest.raises(ValueError):
        model.predict({"x": x[0]})
    assert watched.open == set()
