"""A wheel that is installed in a virtual environment, whose Python QUAVIN_PYTHON names."""

import os
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
PACKAGE = ROOT / "examples" / "digits" / "package"
PYTHON = Path(os.environ["QUAVIN_PYTHON"])
COMMAND = PYTHON.with_name("quavin")
SITE = next((PYTHON.parents[1] / "lib").glob("python3.*/site-packages"))
WHEEL = Path(os.environ["QUAVIN_WHEEL"])


def run(*command, status=0, **environment):
    """Output and error output, one after the other."""
    done = subprocess.run(
        command, capture_output=True, text=True, check=False, env={**os.environ, **environment}, cwd=PACKAGE
    )
    assert done.returncode == status, done.stderr
    return done.stdout + done.stderr


def test_a_first_prediction_works():
    assert run(PYTHON, ROOT / "examples" / "python" / "first_prediction.py") == "This is a 1.\n"


def test_the_engine_is_loaded_once_beside_a_program_that_uses_it_too():
    script = f"""
import openvino, quavin
core = openvino.Core()
core.compile_model(core.read_model("digits.xml"), "CPU")
quavin.load({str(PACKAGE)!r}).close()
print(len({{line.split()[-1] for line in open("/proc/self/maps") if "/libopenvino.so" in line}}))
"""
    assert run(PYTHON, "-c", script) == "1\n"


def test_the_library_brings_a_libcrypto_that_is_not_in_anybodys_way():
    script = "import quavin; print([line for line in open('/proc/self/maps') if 'libcrypto' in line])"
    assert run(PYTHON, "-c", script) == "[]\n"


def test_the_command_starts_without_the_package():
    script = "import sys, quavin_command; print('quavin' in sys.modules, 'numpy' in sys.modules)"
    assert run(PYTHON, "-c", script) == "False False\n"


def test_the_command_can_be_named_as_a_module():
    assert run(PYTHON, "-m", "quavin_command", "--version") == run(COMMAND, "--version")


def test_the_command_ends_with_the_status_of_the_program():
    assert "missing" in run(COMMAND, "inspect", "missing", status=1)


def test_models_are_converted_with_the_installed_program(tmp_path):
    found = run(COMMAND.with_name("quavin-convert"), "digits.xml", "--output", tmp_path / "package")
    assert found.startswith(f"Packed as {tmp_path}/package\n")
    assert run(COMMAND, "verify", tmp_path / "package")


def test_the_program_gets_the_signals_that_python_ignores():
    script = "import sys, quavin_command as c; c.program = lambda: '/bin/grep'; c.main()"
    search = ("SigIgn", "/proc/self/status")
    assert run(PYTHON, "-c", script, *search) == run("/bin/grep", *search)


def test_on_windows_the_command_waits_for_the_program_and_shows_it_the_engine():
    """As far as that can be seen on another system."""
    script = "import sys, quavin_command as c; sys.platform = 'win32'; c.program = lambda: '/bin/sh'; c.main()"
    found = run(PYTHON, "-c", script, "-c", 'echo "$PATH"; exit 3', status=3)
    assert found.startswith(f"{SITE}/openvino/libs:")


class TestEngineElsewhere:
    """pip installs into several places: a user's own packages, and those of the system."""

    @pytest.fixture
    def site(self, tmp_path):
        """The package without the engine beside it."""
        for name in ("quavin", "quavin_command.py"):
            subprocess.run(["cp", "-r", SITE / name, tmp_path], check=True)
        return tmp_path

    def test_the_package_predicts(self, site):
        script = "import quavin; quavin.load('.'); print(quavin.__file__)"
        assert run(PYTHON, "-c", script, PYTHONPATH=str(site)) == f"{site}/quavin/__init__.py\n"

    def test_the_command_predicts(self, site):
        found = run(PYTHON, "-m", "quavin_command", "doctor", PYTHONPATH=str(site))
        assert f"{site}/quavin/lib" in found
        assert "ok: a small network loads and predicts" in found

    def test_models_are_converted(self, site, tmp_path):
        found = run(PYTHON, "-m", "quavin.convert", "digits.xml", "-o", tmp_path / "package", PYTHONPATH=str(site))
        assert found.startswith("Packed as ")

    def test_the_command_keeps_other_folders_of_libraries(self, site):
        script = "import quavin_command; print(quavin_command.program_environment()['LD_LIBRARY_PATH'])"
        found = run(PYTHON, "-c", script, PYTHONPATH=str(site), LD_LIBRARY_PATH="/others")
        assert found == f"{SITE}/openvino/libs:/others\n"

    def test_a_missing_engine_is_reported(self, site):
        # Debian's Python, which has no such package.
        found = run("/usr/bin/python3", "-m", "quavin_command", PYTHONPATH=str(site), status=1)
        assert found == "quavin: quavin needs the package openvino, in the version that it was installed with\n"

    def test_a_missing_program_is_reported(self, site):
        (site / "quavin" / "quavin").unlink()
        found = run(PYTHON, "-m", "quavin_command", PYTHONPATH=str(site), status=1)
        assert found == f"quavin: this installation is incomplete: it has no {site}/quavin/quavin\n"


def test_uninstalling_leaves_nothing(tmp_path):
    def files():
        return sorted(path for path in tmp_path.rglob("*") if not path.is_dir())

    def pip(*arguments):
        subprocess.run(
            ["/usr/bin/python3", "-m", "pip", "--python", tmp_path / "bin" / "python", "--quiet", *arguments],
            check=True,
        )

    subprocess.run([PYTHON, "-m", "venv", "--without-pip", tmp_path], check=True)
    before = files()
    pip("install", "--no-deps", "--no-index", WHEEL)
    assert tmp_path / "bin" / "quavin" in files()
    pip("uninstall", "--yes", "quavin_on_device_sdk")
    assert files() == before


def test_pip_finds_nothing_missing():
    check = ["/usr/bin/python3", "-m", "pip", "--python", PYTHON, "check"]
    assert run(*check) == "No broken requirements found.\n"


def test_the_types_are_found():
    """A program that uses the package in a wrong way does not pass the checker."""
    script = "import quavin\nreveal_type(quavin.load('x').inputs)\n"
    checker = [sys.executable, "-m", "mypy", "--cache-dir=/dev/null", "--python-executable", PYTHON]
    assert "tuple[quavin._ports.Port, ...]" in run(*checker, "--config-file=", "-c", script)
