"""The library of a wheel for Windows, unpacked beside the engine in the folder QUAVIN_SITE: what can be tested without
a Python for Windows. Programs are built with MinGW and run under wine.
"""

import importlib.util
import os
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
SITE = Path(os.environ["QUAVIN_SITE"])
COMPILER = "x86_64-w64-mingw32-gcc-posix"


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def built(target, *arguments):
    command = [COMPILER, "-std=c11", "-Wall", "-Werror", f"-I{ROOT}/include", *arguments, "-o", target]
    subprocess.run(command, check=True)
    return target


def run(program, *arguments):
    command = [ROOT / "scripts" / "run-in-wine.sh", program, *arguments]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    assert done.returncode == 0, done.stderr
    return done.stdout


def test_the_library_predicts_when_it_is_opened_as_python_does(tmp_path):
    predict = built(tmp_path / "predict.o", "-c", "-Dmain=predict", ROOT / "examples" / "c" / "predict.c")
    program = built(tmp_path / "program.exe", Path(__file__).with_name("open_as_python_does.c"), predict)
    files = (SITE / "openvino" / "libs", SITE / "quavin" / "quavin_on_device_sdk.dll", ROOT / "examples/digits/package")
    assert run(program, *map(windows_path, files)) == "This is a 1.\n"


@pytest.fixture(scope="module")
def ffi():
    """The interface that is in the wheel."""
    spec = importlib.util.spec_from_file_location("_interface", SITE / "quavin" / "_interface.py")
    interface = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(interface)
    return interface.ffi


def layout(ffi):
    """The sizes and offsets of all structs and their members, as expressions of C with the values of cffi."""
    for struct in (ffi.typeof(f"struct {tag}") for tag in ffi.list_types()[1]):
        try:
            yield f"sizeof({struct.cname})", ffi.sizeof(struct)
        except ffi.error:
            continue  # opaque
        for member, field in struct.fields:
            yield f"offsetof({struct.cname}, {member})", field.offset
            yield f"sizeof((({struct.cname}*)0)->{member})", ffi.sizeof(field.type)


def test_structs_have_the_layout_that_python_reads_and_writes(ffi, tmp_path):
    values = dict(layout(ffi))
    assert "offsetof(struct quavin_port, name)" in values
    prints = "\n".join(f'printf("%zu\\n", {expression});' for expression in values)
    source = tmp_path / "layout.c"
    source.write_text(
        f"#include <quavin/c.h>\n#include <stddef.h>\n#include <stdio.h>\nint main(void) {{\n{prints}\n}}\n"
    )
    found = run(built(tmp_path / "layout.exe", "-D__USE_MINGW_ANSI_STDIO=1", source)).split()
    assert dict(zip(values, map(int, found), strict=True)) == values
