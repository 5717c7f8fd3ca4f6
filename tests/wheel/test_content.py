"""What is inside a wheel: the file that QUAVIN_WHEEL names, for any system."""

import io
import os
import re
import subprocess
import sys
import zipfile
from email.parser import Parser
from pathlib import Path

import pytest
from auditwheel.architecture import Architecture
from auditwheel.libc import Libc
from auditwheel.wheel_abi import analyze_wheel_abi
from elftools.elf.elffile import ELFFile

ROOT = Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "scripts"))
import fetch_openvino  # noqa: E402

WHEEL = Path(os.environ["QUAVIN_WHEEL"])
TAG = WHEEL.stem.split("-", 2)[2]
PLATFORM = TAG.split("-")[2]
WINDOWS = PLATFORM == "win_amd64"
# 2026.4.1 is in libopenvino_c.so.2641.
ENGINE = "libopenvino_c.so." + fetch_openvino.locked_version()[2:].replace(".", "")

only_linux = pytest.mark.skipif(WINDOWS, reason="run paths and manylinux tags are Linux's")
only_windows = pytest.mark.skipif(not WINDOWS, reason="DLLs are Windows's")


@pytest.fixture(scope="module")
def wheel():
    with zipfile.ZipFile(WHEEL) as archive:
        yield {info.filename: archive.read(info) for info in archive.infolist()}


@pytest.fixture(scope="module")
def info(wheel):
    """The files of information about the wheel, by their name in the folder."""
    return {name.split("/", 1)[1]: data for name, data in wheel.items() if ".dist-info/" in name}


def binaries(wheel):
    return {name: data for name, data in wheel.items() if data.startswith((b"\x7fELF", b"MZ"))}


def test_a_wheel_has_these_files_and_no_others(wheel):
    modules = [f"quavin/{file.name}" for file in (ROOT / "python" / "quavin").glob("*.py")]
    if WINDOWS:
        built = ["quavin.exe", "quavin_on_device_sdk.dll"]
        built += ["libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"]
        licences = ["GPL-3", "gcc-mingw-w64-base", "mingw-w64-common"]
    else:
        built = ["quavin", "libquavin_on_device_sdk.so.0.1"]
        licences = ["Apache-2.0", "libssl-dev"]
    licences += ["libcli11-dev", "libutfcpp-dev", "libxxhash-dev", "rapidjson-dev"]
    about = ["METADATA", "RECORD", "WHEEL", "entry_points.txt", *(f"licenses/{name}.txt" for name in licences)]
    assert sorted(wheel) == sorted(
        modules
        + ["quavin/py.typed", "quavin/_interface.py", "quavin_command.py"]
        + [f"quavin/{name}" for name in built]
        + [f"quavin_on_device_sdk-0.1.0.dist-info/{name}" for name in about]
    )


def test_the_engine_is_required_in_the_version_that_the_library_is_built_with(info):
    metadata = Parser().parsestr(info["METADATA"].decode())
    assert f"openvino=={fetch_openvino.locked_version()}" in metadata.get_all("Requires-Dist")
    assert metadata["Requires-Python"] == ">=3.10"


def test_the_tag_inside_is_that_of_the_file(info):
    assert re.findall(r"^Tag: (.*)$", info["WHEEL"].decode(), re.MULTILINE) == [TAG]
    assert TAG.startswith("py3-none-")


def test_the_commands_are_entry_points(info):
    commands = info["entry_points.txt"].decode().splitlines()
    assert "quavin = quavin_command:main" in commands
    assert "quavin-convert = quavin.convert:main" in commands


def test_the_program_may_be_executed():
    with zipfile.ZipFile(WHEEL) as archive:
        mode = archive.getinfo("quavin/quavin.exe" if WINDOWS else "quavin/quavin").external_attr >> 16
    assert mode & 0o777 == 0o755


def test_all_files_have_the_same_time():
    with zipfile.ZipFile(WHEEL) as archive:
        assert len({info.date_time for info in archive.infolist()}) == 1


def test_nothing_inside_names_a_folder_of_the_machine_that_built_it(wheel):
    folders = [os.fsencode(path) for path in (ROOT, fetch_openvino.cache_root(), Path(sys.prefix))]
    assert [(name, folder) for name, data in wheel.items() for folder in folders if folder in data] == []


def test_binaries_have_no_symbols_for_debuggers(wheel):
    for name, data in binaries(wheel).items():
        if data.startswith(b"MZ"):
            assert b".debug_info" not in data, name
        else:
            assert ELFFile(io.BytesIO(data)).get_section_by_name(".symtab") is None, name


@only_linux
class TestLinux:
    def dynamic(self, data, tag):
        section = ELFFile(io.BytesIO(data)).get_section_by_name(".dynamic")
        return [getattr(entry, tag[3:].lower()) for entry in section.iter_tags(tag)]

    def test_the_run_paths_lead_to_the_library_and_the_engine(self, wheel):
        assert {name: self.dynamic(data, "DT_RUNPATH") for name, data in binaries(wheel).items()} == {
            "quavin/libquavin_on_device_sdk.so.0.1": ["$ORIGIN/../openvino/libs"],
            "quavin/quavin": ["$ORIGIN"],
        }

    def test_only_the_engine_and_what_every_system_has_is_needed(self, wheel):
        library = wheel["quavin/libquavin_on_device_sdk.so.0.1"]
        system = {"libstdc++.so.6", "libgcc_s.so.1", "libc.so.6", "libm.so.6"}
        loaders = {"ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"}
        assert set(self.dynamic(library, "DT_NEEDED")) - system - loaders == {ENGINE}
        program = set(self.dynamic(wheel["quavin/quavin"], "DT_NEEDED"))
        assert program - system - loaders == {"libquavin_on_device_sdk.so.0.1"}

    def test_the_tag_is_the_oldest_that_the_audit_allows(self):
        architecture = Architecture(PLATFORM.split("_", 3)[3])
        audit = analyze_wheel_abi(
            Libc.GLIBC, architecture, WHEEL, frozenset([ENGINE]), disable_isa_ext_check=False, allow_graft=False
        )
        assert audit.overall_policy.name == PLATFORM


@only_windows
class TestWindows:
    SYSTEM = {"ADVAPI32.dll", "KERNEL32.dll", "SHELL32.dll", "bcrypt.dll", "msvcrt.dll", "ntdll.dll"}

    def test_only_the_engine_and_what_every_system_has_is_needed(self, wheel, tmp_path):
        needed = set()
        for name, data in binaries(wheel).items():
            file = tmp_path / Path(name).name
            file.write_bytes(data)
            headers = subprocess.run(
                ["x86_64-w64-mingw32-objdump", "--private-headers", file], capture_output=True, text=True, check=True
            ).stdout
            assert "pei-x86-64" in headers
            needed.update(re.findall(r"DLL Name: (.*)", headers))
        ours = {Path(name).name for name in wheel}
        assert needed - ours - self.SYSTEM == {"openvino_c.dll"}
