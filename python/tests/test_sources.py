import gc
import mmap
import subprocess
from pathlib import Path

import pytest
from conftest import Y, archive_of, files_of, is_lent, predicted, status_of

import quavin


@pytest.mark.parametrize("form", [str, lambda path: path, lambda path: f"{path}/"], ids=["str", "Path", "slash"])
def test_a_package_is_loaded_from_its_directory(make_package, x, form):
    assert predicted(form(make_package()), x) == Y


def test_a_package_is_loaded_from_an_archive_by_its_path(make_package, x):
    assert predicted(archive_of(make_package()), x) == Y


@pytest.mark.parametrize("form", [bytes, bytearray, memoryview], ids=["bytes", "bytearray", "memoryview"])
def test_a_package_is_loaded_from_an_archive_in_memory(make_package, x, form):
    assert predicted(form(archive_of(make_package()).read_bytes()), x) == Y


def test_a_package_is_loaded_from_a_mapped_archive(make_package, x):
    with open(archive_of(make_package()), "rb") as file:
        with mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as mapped:
            assert predicted(mapped, x) == Y


def test_an_archive_is_not_needed_after_the_load(make_package):
    archive = bytearray(archive_of(make_package()).read_bytes())
    with quavin.load(archive):
        assert not is_lent(archive)


def test_a_package_is_loaded_from_its_files_in_memory(make_package, x):
    assert predicted(files_of(make_package()), x) == Y


def test_weights_in_memory_are_kept_until_the_last_model_over_them_closes(make_package, x):
    files = files_of(make_package())
    model = quavin.load(files)
    clone = model.clone()
    assert is_lent(files["net.bin"])
    assert not is_lent(files["manifest.json"])
    assert not is_lent(files["net.xml"])
    model.close()
    assert is_lent(files["net.bin"])
    assert clone.predict({"x": x})["y"].tolist() == Y
    clone.close()
    assert not is_lent(files["net.bin"])


def test_weights_in_memory_survive_without_other_references(make_package, x):
    with quavin.load({name: bytes(data) for name, data in files_of(make_package()).items()}) as model:
        gc.collect()
        assert model.predict({"x": x})["y"].tolist() == Y


def test_files_in_memory_are_given_back_by_a_load_that_fails(make_package):
    files = files_of(make_package())
    files["net.xml"][:] = b"not a network"
    with pytest.raises(quavin.QuavinError) as failure:
        quavin.load(files)
    assert status_of(failure) == quavin.Status.FILE_ERROR
    assert not any(map(is_lent, files.values()))


def test_files_in_memory_are_given_back_if_an_argument_is_refused(make_package):
    files = files_of(make_package())
    with pytest.raises(ValueError):
        quavin.load(files, key=b"short")
    with pytest.raises(TypeError, match=r"source\['more'\] must be bytes-like, not int"):
        quavin.load({**files, "more": 3})
    assert not any(map(is_lent, files.values()))


def test_memory_that_is_not_contiguous_is_refused(make_package):
    with pytest.raises(ValueError, match="source is not contiguous"):
        quavin.load(memoryview(archive_of(make_package()).read_bytes())[::2])


@pytest.mark.parametrize("source", [3, None, ["manifest.json"]], ids=["int", "None", "list"])
def test_another_source_is_refused(source):
    with pytest.raises(TypeError, match="source must be bytes-like, not"):
        quavin.load(source)


def test_a_path_with_a_zero_character_is_refused():
    with pytest.raises(ValueError, match="embedded null"):
        quavin.load("package\0")


def test_a_missing_directory_is_reported_with_its_cause(tmp_path):
    with pytest.raises(quavin.QuavinError, match="No such file or directory") as failure:
        quavin.load(tmp_path / "none")
    assert status_of(failure) == quavin.Status.MODEL_METADATA_ERROR


def test_an_empty_archive_is_refused():
    with pytest.raises(quavin.QuavinError, match="the archive is cut off") as failure:
        quavin.load(b"")
    assert status_of(failure) == quavin.Status.INVALID_ARGUMENTS


def test_no_files_at_all_are_refused():
    with pytest.raises(quavin.QuavinError) as failure:
        quavin.load({})
    assert status_of(failure) == quavin.Status.MODEL_METADATA_ERROR


def test_an_archive_that_cannot_be_read_is_reported_by_the_system(tmp_path, monkeypatch):
    def refuse(path):
        raise PermissionError(13, "Permission denied", str(path))

    (tmp_path / "digits.tar").write_bytes(b"")
    monkeypatch.setattr(Path, "read_bytes", refuse)
    with pytest.raises(PermissionError, match="digits.tar"):
        quavin.load(tmp_path / "digits.tar")


def test_a_damaged_archive_is_refused(make_package):
    archive = bytearray(archive_of(make_package()).read_bytes())
    archive[0] ^= 1
    with pytest.raises(quavin.QuavinError) as failure:
        quavin.load(archive)
    assert status_of(failure) == quavin.Status.TAR_CHECKSUM_MISMATCH


def test_an_archive_of_gnu_tar_is_loaded(make_package, x, tmp_path):
    package = make_package()
    command = ["tar", "--format=ustar", "-cf", tmp_path / "gnu.tar", "-C", package.parent, package.name]
    subprocess.run(command, check=True)
    assert predicted(tmp_path / "gnu.tar", x) == Y
