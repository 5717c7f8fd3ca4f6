import logging
import sys
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import pytest
from conftest import ROOT, Y, archive_of, files_of, predicted, status_of
from test_processes import BEGIN, run

import quavin

sys.path.insert(0, str(ROOT / "tests" / "data" / "signature"))

import signing  # noqa: E402

SIGNATURE_ERROR = quavin.Status.SIGNATURE_ERROR


@pytest.fixture
def key(tmp_path):
    return make_key(tmp_path, "p256")


def make_key(tmp_path, name):
    folder = tmp_path / f"{name}-key"
    folder.mkdir()
    return signing.Key(name, folder)


@pytest.fixture
def package(make_package, key):
    """The affine network, signed by openssl."""
    package = make_package()
    signing.write_signature(package / "model.sig", signing.resources_in(package), key)
    return package


def pem(key):
    return key.pem.decode()


@pytest.mark.parametrize("form", [str, archive_of, files_of])
def test_a_package_that_a_trusted_key_signed_is_loaded(package, key, x, form):
    assert predicted(form(package), x, trusted_keys=[pem(key)]) == Y


def test_one_of_several_keys_is_enough(package, key, x, tmp_path):
    other = make_key(tmp_path, "p384")
    assert predicted(package, x, trusted_keys=(pem(other), pem(key))) == Y


@pytest.mark.parametrize("form", [str, archive_of, files_of])
@pytest.mark.parametrize("call", [quavin.load, quavin.describe])
def test_a_changed_manifest_is_refused(package, key, form, call):
    with open(package / "manifest.json", "a", encoding="utf-8") as manifest:
        manifest.write("\n")
    with pytest.raises(quavin.QuavinError, match="manifest.json") as failure:
        call(form(package), trusted_keys=[pem(key)])
    assert status_of(failure) == SIGNATURE_ERROR


@pytest.mark.parametrize("form", [str, archive_of, files_of])
def test_changed_weights_are_refused(package, key, form):
    weights = package / "net.bin"
    weights.write_bytes(bytes(weights.stat().st_size))
    with pytest.raises(quavin.QuavinError, match="net.bin") as failure:
        quavin.load(form(package), trusted_keys=[pem(key)])
    assert status_of(failure) == SIGNATURE_ERROR


@pytest.mark.parametrize("call", [quavin.load, quavin.describe])
def test_a_package_of_another_key_is_refused(package, call, tmp_path):
    with pytest.raises(quavin.QuavinError, match="not signed by a trusted key") as failure:
        call(package, trusted_keys=[pem(make_key(tmp_path, "other"))])
    assert status_of(failure) == SIGNATURE_ERROR


def test_an_unsigned_package_is_refused(make_package, key):
    with pytest.raises(quavin.QuavinError, match="no signature") as failure:
        quavin.load(make_package(), trusted_keys=[pem(key)])
    assert status_of(failure) == SIGNATURE_ERROR


def test_keys_count_for_their_call_alone(make_package, package, key, x):
    (package / "model.sig").unlink()
    with pytest.raises(quavin.QuavinError):
        quavin.load(package, trusted_keys=[pem(key)])
    assert quavin.describe(package).inputs[0].name == "x"
    assert predicted(package, x) == Y


def test_models_and_clones_go_on_while_keys_change(package, key, x):
    with quavin.load(package, trusted_keys=[pem(key)]) as model:
        with quavin.load(package) as other:
            assert other.predict({"x": x})["y"].tolist() == Y
        with model.clone() as clone:
            assert clone.predict({"x": x})["y"].tolist() == Y
        assert model.predict({"x": x})["y"].tolist() == Y


def test_the_log_works_after_a_change_of_keys(package, key, caplog, tmp_path):
    quavin.load(package, trusted_keys=[pem(key)]).close()
    with caplog.at_level(logging.INFO, "quavin"), pytest.raises(quavin.QuavinError):
        quavin.load(tmp_path / "missing")
    assert caplog.records


def test_threads_with_different_keys_do_not_disturb_each_other(package, key, tmp_path, x):
    stranger = make_key(tmp_path, "other")
    start = threading.Barrier(4)

    def attempts(keys, accepted):
        start.wait()
        for _ in range(5):
            if accepted:
                assert predicted(package, x, trusted_keys=keys) == Y
            else:
                with pytest.raises(quavin.QuavinError) as failure:
                    quavin.describe(package, trusted_keys=keys)
                assert status_of(failure) == SIGNATURE_ERROR
        return True

    cases = [(None, True), ([pem(key)], True), ([pem(stranger)], False), ([pem(stranger)], False)]
    with ThreadPoolExecutor(4) as pool:
        assert all(pool.map(attempts, *zip(*cases)))


def test_a_key_that_cannot_be_used_is_refused(package):
    with pytest.raises(quavin.QuavinError, match="key") as failure:
        quavin.load(package, trusted_keys=["no key"])
    assert status_of(failure) == quavin.Status.INVALID_ARGUMENTS


@pytest.mark.parametrize("keys", ["-----BEGIN PUBLIC KEY-----", b"PEM", [b"PEM"], [Path("public.pem")]])
def test_keys_that_are_no_sequence_of_texts_are_refused(package, keys):
    with pytest.raises(TypeError, match="trusted_keys must be a sequence of texts in PEM"):
        quavin.load(package, trusted_keys=keys)


@pytest.mark.parametrize("call", [quavin.load, quavin.describe])
def test_an_empty_sequence_of_keys_does_not_trust_everybody(package, call):
    with pytest.raises(ValueError, match="trusted_keys is empty"):
        call(package, trusted_keys=[])


def test_keys_cannot_be_set_in_a_library_that_somebody_else_switched_on(package, key):
    script = f"""
from quavin._library import ffi, lib
assert lib.quavin_init(ffi.NULL) == quavin.Status.SUCCESS
quavin.load({str(package)!r}).close()
try:
    quavin.load({str(package)!r}, trusted_keys=[{pem(key)!r}])
except quavin.QuavinError as error:
    print(error.status.name)
"""
    assert run(BEGIN + script) == ("INVALID_OPERATION\n", "")
