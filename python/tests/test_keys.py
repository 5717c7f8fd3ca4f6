import packages
import pytest
from conftest import KEY, KEY_HEX, OTHER_KEY, Y, archive_of, files_of, is_lent, predicted, status_of

import quavin

VECTOR = bytes(range(100, 116))


@pytest.mark.parametrize("form", ["directory", "archive", "files"])
def test_secured_components_are_loaded_with_their_key(make_package, x, form):
    package = make_package(key_hex=KEY_HEX)
    source = {"directory": str, "archive": archive_of, "files": files_of}[form](package)
    assert predicted(source, x, key=KEY) == Y
    assert predicted(source, x, key=bytearray(KEY)) == Y
    assert predicted(source, x, component_keys={"net.xml": KEY, "net.bin": KEY}) == Y
    assert predicted(source, x, key=OTHER_KEY, component_keys={"net.xml": KEY, "net.bin": KEY}) == Y


@pytest.mark.parametrize("keys", [{}, {"key": OTHER_KEY}, {"component_keys": {"net.bin": KEY}}])
def test_secured_components_are_not_loaded_without_the_right_key(make_package, keys):
    with pytest.raises(quavin.QuavinError) as failure:
        quavin.load(make_package(key_hex=KEY_HEX), **keys)
    assert status_of(failure) == quavin.Status.FILE_ERROR
    assert KEY_HEX not in str(failure.value).lower()


def test_a_key_is_not_needed_after_the_load(make_package, x):
    key = bytearray(KEY)
    with quavin.load(make_package(key_hex=KEY_HEX), key=key) as model:
        key[:] = bytes(16)
        assert not is_lent(key)
        assert model.predict({"x": x})["y"].tolist() == Y


def test_a_secured_archive_is_loaded_with_its_key(make_package, x):
    plain = archive_of(make_package()).read_bytes()
    secured = packages.openssl_encrypt(plain, KEY_HEX, VECTOR)
    assert predicted(secured, x, archive_key=KEY) == Y
    with pytest.raises(quavin.QuavinError) as failure:
        quavin.load(secured, archive_key=OTHER_KEY)
    assert status_of(failure) == quavin.Status.TAR_CHECKSUM_MISMATCH


def test_a_directory_has_no_archive_key(make_package):
    with pytest.raises(quavin.QuavinError, match="only an archive has an archive key") as failure:
        quavin.load(make_package(), archive_key=KEY)
    assert status_of(failure) == quavin.Status.INVALID_ARGUMENTS


@pytest.mark.parametrize(
    ("keys", "error", "message"),
    [
        ({"key": KEY_HEX}, TypeError, "key must be bytes, not text; for hexadecimal digits use bytes.fromhex"),
        ({"key": KEY[:15]}, ValueError, "key must have 16 bytes, not 15"),
        ({"archive_key": KEY + b"x"}, ValueError, "archive_key must have 16 bytes, not 17"),
        ({"component_keys": {"net.xml": b""}}, ValueError, r"component_keys\['net.xml'\] must have 16 bytes"),
        ({"key": 7}, TypeError, "key must be bytes-like, not int"),
    ],
)
def test_what_is_not_a_key_is_refused(make_package, keys, error, message):
    with pytest.raises(error, match=message):
        quavin.load(make_package(), **keys)
