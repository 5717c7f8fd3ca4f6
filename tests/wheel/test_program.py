"""The program of an installed wheel, as the words of QUAVIN_PROGRAM start it on any system."""

import json
import os
import shlex
import subprocess
from pathlib import Path

import numpy as np

ROOT = Path(__file__).resolve().parents[2]
DIGITS = ROOT / "examples" / "digits"
LIBRARIES = {"quavin_on_device_sdk.dll", "libquavin_on_device_sdk.so.0.1"}
PROGRAM = shlex.split(os.environ["QUAVIN_PROGRAM"])


def run(*arguments, **options):
    done = subprocess.run([*PROGRAM, *arguments], capture_output=True, text=True, check=False, **options)
    assert done.returncode == 0, done.stderr
    return done.stdout


def test_the_program_tells_its_version():
    assert run("--version") == "quavin 0.1.0\n"


def test_the_program_predicts(tmp_path):
    image = np.zeros((1, 1, 8, 8), np.float32)
    image[0, 0, :, 3:5] = 16  # a vertical stroke
    np.save(tmp_path / "image.npy", image)
    package = os.path.relpath(DIGITS / "package", tmp_path)
    run("run", package, "--input", "image=image.npy", "--output", "results", cwd=tmp_path)
    assert np.load(tmp_path / "results" / "probabilities.npy").argmax() == 1


def test_the_program_opens_a_secured_package(tmp_path):
    package, key = (os.path.relpath(DIGITS / name, tmp_path) for name in ("secured_package", "demo.key"))
    assert run("verify", package, "--key-file", key, "--allow-open-key-file", cwd=tmp_path)


def test_the_library_is_the_wheels_and_the_engine_that_of_its_own_package():
    libraries = json.loads(run("doctor", "--json"))["libraries"]
    folders = {Path(library["file"].replace("\\", "/")).parent.parts[-2:] for library in libraries}
    folders.discard(("windows", "system32"))  # its bcrypt.dll
    assert len({library["name"] for library in libraries} & LIBRARIES) == 1
    assert folders == {("site-packages", "quavin"), ("openvino", "libs")}
