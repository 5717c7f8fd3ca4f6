"""quavin.pack: encrypted, archived and signed packages, and where their secrets are not."""

import os
import stat
import subprocess
import tarfile
from pathlib import Path

import models
import numpy as np
import packages
import pytest
from conftest import KEY, KEY_HEX, OTHER_KEY

import quavin
from quavin import _staging, _tool

X = np.ones((1, 4), np.float32)


def openssl(*arguments):
    return subprocess.run(["openssl", *arguments], check=True, capture_output=True, text=True).stdout


def public_half(private):
    return openssl("pkey", "-in", private, "-pubout")


@pytest.fixture
def model_file(tmp_path):
    return models.doubling(tmp_path / "model.onnx")


@pytest.fixture
def key_file(tmp_path):
    path = tmp_path / "the.key"
    path.write_text(KEY_HEX + "\n")
    path.chmod(0o600)
    return path


def y_of(source, **options):
    with quavin.load(source, **options) as model:
        return model.predict({"x": X})["y"].tolist()


def test_components_are_encrypted_with_any_form_of_the_key(model_file, tmp_path, key_file, monkeypatch):
    monkeypatch.setenv("THE_KEY", KEY_HEX)
    forms = {"key": KEY}, {"key": bytearray(KEY)}, {"key_file": key_file}, {"key_env": "THE_KEY"}
    for name, key in zip("abcd", forms):
        report = quavin.pack(model_file, tmp_path / name, encrypt="components", **key)
        network = packages.openssl_decrypt((report.destination / f"{name}.xml").read_bytes(), KEY_HEX)
        assert network.startswith(b"<?xml")
        assert y_of(report.destination, key=KEY) == [[2, 2, 2, 2]]
        with pytest.raises(quavin.QuavinError):
            quavin.load(report.destination, key=OTHER_KEY)


def test_archives_are_made_plain_or_encrypted(model_file, tmp_path):
    plain = quavin.pack(model_file, tmp_path / "p.tar", root="inside").destination
    with tarfile.open(plain) as archive:
        assert archive.getnames() == ["inside", "inside/manifest.json", "inside/p.xml", "inside/p.bin"]
    assert y_of(plain) == [[2, 2, 2, 2]]
    secret = quavin.pack(model_file, tmp_path / "s.tar", encrypt="archive", key=KEY).destination
    assert packages.openssl_decrypt(secret.read_bytes(), KEY_HEX)[257:262] == b"ustar"
    assert y_of(secret, archive_key=KEY) == [[2, 2, 2, 2]]


def test_a_signed_package_is_loaded_by_those_who_trust_the_key(model_file, tmp_path):
    private, other = (packages.write_private_key(tmp_path / name) for name in ("a.pem", "b.pem"))
    report = quavin.pack(model_file, tmp_path / "p.tar", private_key=private, encrypt="components", key=KEY)
    assert y_of(report.destination, key=KEY, trusted_keys=[public_half(private)]) == [[2, 2, 2, 2]]
    with pytest.raises(quavin.QuavinError, match="SIGNATURE_ERROR"):
        quavin.load(report.destination, key=KEY, trusted_keys=[public_half(other)])


def test_a_passphrase_comes_from_a_file_or_the_environment(model_file, tmp_path, monkeypatch):
    private = tmp_path / "encrypted.pem"
    plain = packages.write_private_key(tmp_path / "plain.pem")
    openssl("pkcs8", "-topk8", "-in", plain, "-out", private, "-passout", "pass:open sesame")
    private.chmod(0o600)
    words = tmp_path / "words"
    words.write_text("open sesame\n")
    words.chmod(0o600)
    monkeypatch.setenv("WORDS", "open sesame")
    for name, option in ("a", {"passphrase_file": words}), ("b", {"passphrase_env": "WORDS"}):
        report = quavin.pack(model_file, tmp_path / name, private_key=private, **option)
        assert (report.destination / "model.sig").is_file()


def test_an_open_key_file_is_refused_unless_it_is_meant(model_file, tmp_path, key_file):
    key_file.chmod(0o644)
    secured = {"encrypt": "components", "key_file": key_file}
    with pytest.raises(quavin.ConversionError, match="can be read by others"):
        quavin.pack(model_file, tmp_path / "p", **secured)
    quavin.pack(model_file, tmp_path / "p", **secured, allow_open_key_file=True)


def test_no_error_repeats_a_key(model_file, tmp_path, monkeypatch):
    monkeypatch.setenv("THE_KEY", KEY_HEX + "0")
    for key in {"key_env": "THE_KEY"}, {"key_env": KEY_HEX}, {"key_file": KEY_HEX}:
        with pytest.raises(quavin.ConversionError) as failure:
            quavin.pack(model_file, tmp_path / "p", encrypt="components", **key)
        assert KEY_HEX not in str(failure.value)


@pytest.fixture
def during_packing(monkeypatch):
    """Calls functions with the command's arguments, while it would run, and then the command."""
    calls = []

    def run(arguments, environment):
        for call in calls:
            call(arguments)
        _tool.run_tool(arguments, environment)

    monkeypatch.setattr("quavin._packing.run_tool", run)
    return calls.append


def test_a_key_is_not_on_the_command_line(model_file, tmp_path, during_packing):
    seen = []
    during_packing(lambda arguments: seen.append(" ".join(arguments)))
    quavin.pack(model_file, tmp_path / "p", encrypt="components", key=KEY)
    assert "--key-env" in seen[0]
    assert KEY_HEX not in seen[0]
    assert not any(KEY_HEX in value for value in os.environ.values())


@pytest.mark.skipif(not os.access("/dev/shm", os.W_OK), reason="there is no file system in memory here")
def test_a_network_that_is_going_to_be_encrypted_is_kept_off_the_disk(model_file, tmp_path, during_packing):
    folders = []

    def look(arguments):
        folders.append(Path(arguments[1]).parent)
        assert stat.S_IMODE(folders[-1].stat().st_mode) == 0o700

    during_packing(look)
    quavin.pack(model_file, tmp_path / "a", encrypt="components", key=KEY)
    quavin.pack(model_file, tmp_path / "b")
    assert [folder.parts[:3] == ("/", "dev", "shm") for folder in folders] == [True, False]
    assert not any(folder.exists() for folder in folders)


def test_a_memory_that_cannot_be_written_to_is_not_used(tmp_path, monkeypatch):
    access = os.access
    monkeypatch.setattr(os, "access", lambda path, mode: path != "/dev/shm" and access(path, mode))
    monkeypatch.setattr("tempfile.tempdir", str(tmp_path))
    with _staging.private_folder(1) as folder:
        assert folder.parent == tmp_path


def test_a_failure_leaves_no_plain_network(model_file, tmp_path, during_packing):
    folders = []

    def fail(arguments):
        folders.append(Path(arguments[1]).parent)
        assert list(folders[-1].iterdir())
        raise KeyboardInterrupt

    during_packing(fail)
    with pytest.raises(KeyboardInterrupt):
        quavin.pack(model_file, tmp_path / "p" / "q", encrypt="components", key=KEY)
    assert not folders[0].exists()
    assert list(tmp_path.iterdir()) == [model_file]
