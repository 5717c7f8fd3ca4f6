"""How the module starts and ends, in processes of their own."""

import os
import shutil
import subprocess
import sys
from pathlib import Path

import pytest
from conftest import DIGITS, ROOT

import quavin
from quavin._library import _find

LIBRARY = _find()[0]
PACKAGES = Path(quavin.__file__).parents[1]  # in the source tree, or installed
BEGIN = f"""
import atexit, os, sys
sys.path[:0] = [{str(PACKAGES)!r}]
import numpy as np, quavin
DIGITS, IMAGE = {str(DIGITS / "package")!r}, np.zeros((1, 1, 8, 8), np.float32)
def predict(model): return model.predict({{"image": IMAGE}})["probabilities"]
def in_child(action):
    child = os.fork()
    if child == 0:
        try: action()
        except BaseException as error:
            print(error, flush=True)
        sys.exit(0)
    assert os.waitpid(child, 0)[1] == 0
"""


def run(script, **environment):
    """Output and error output of a Python process, which must succeed."""
    environment = {**os.environ, "QUAVIN_LIBRARY": str(LIBRARY), "PYTHONDONTWRITEBYTECODE": "1", **environment}
    command = [sys.executable, "-X", "dev", "-W", "error::ResourceWarning", "-c", script]
    done = subprocess.run(command, capture_output=True, text=True, env=environment, timeout=120, check=False)
    assert done.returncode == 0, done.stderr
    return done.stdout, done.stderr


def test_a_process_that_leaves_everything_open_ends_cleanly():
    script = "model = quavin.load(DIGITS); clone = model.clone(); y = predict(model); print(y.shape)"
    assert run(BEGIN + script) == ("(1, 10)\n", "")


def test_an_output_can_be_read_at_exit():
    script = "y = predict(quavin.load(DIGITS)); atexit.register(lambda: print(y.sum().round(3)))"
    assert run(BEGIN + script) == ("1.0\n", "")


def test_an_output_can_be_read_after_the_library_was_switched_off_at_exit():
    before = "import atexit\natexit.register(lambda: print(y.sum().round(3)))\n"
    assert run(before + BEGIN + "y = predict(quavin.load(DIGITS))") == ("1.0\n", "")


def test_nothing_is_printed_unless_logging_is_configured():
    script = "try: quavin.load('none')\nexcept quavin.QuavinError as error: print(error.status.name)"
    assert run(BEGIN + script) == ("MODEL_METADATA_ERROR\n", "")


@pytest.mark.skipif(not hasattr(os, "fork"), reason="this system has no fork")
class TestFork:
    def test_a_forked_process_is_refused_what_its_parent_had_loaded(self):
        script = "model = quavin.load(DIGITS); in_child(lambda: predict(model)); predict(model)"
        assert 'INVALID_OPERATION: quavin was used before this process was forked' in run(BEGIN + script)[0]

    def test_a_forked_process_of_one_that_used_the_library_cannot_load(self):
        script = "quavin.load(DIGITS).close(); in_child(lambda: quavin.load(DIGITS))"
        assert 'start worker processes with the method "spawn"' in run(BEGIN + script)[0]

    def test_a_forked_process_can_drop_what_its_parent_had_loaded(self):
        script = """
model = quavin.load(DIGITS); y = predict(model)
def drop():
    global model, y
    model.close(); del model, y
    print("dropped", flush=True)
in_child(drop)
print(predict(model).shape, y.sum().round(3))
"""
        assert run(BEGIN + script)[0] == "dropped\n(1, 10) 1.0\n"

    def test_a_process_that_was_forked_before_the_first_use_can_load(self):
        script = "in_child(lambda: print(predict(quavin.load(DIGITS)).shape, flush=True))"
        assert run(BEGIN + script)[0] == "(1, 10)\n"


def failed_import(**environment):
    script = f"{BEGIN.split('import numpy')[0]}\ntry: import quavin\nexcept ImportError as error: print(error)"
    return run(script, **environment)[0]


def test_a_named_library_that_does_not_exist_is_reported():
    assert failed_import(QUAVIN_LIBRARY="/none.so") == "QUAVIN_LIBRARY names /none.so, which is not a file\n"


def test_a_named_library_that_cannot_be_opened_is_reported(tmp_path):
    (tmp_path / "text.so").write_text("not a library")
    assert "cannot open the library: " in failed_import(QUAVIN_LIBRARY=str(tmp_path / "text.so"))


class TestWheel:
    """The package in the layout of a wheel: with the library and the finished interface beside the modules, and
    the engine in another package."""

    @pytest.fixture
    def site(self, tmp_path):
        package = tmp_path / "ours" / "quavin"
        shutil.copytree(PACKAGES / "quavin", package, ignore=shutil.ignore_patterns("__pycache__"))
        shutil.copy(PACKAGES / "quavin_command.py", tmp_path / "ours")
        header, interface = ROOT / "include" / "quavin" / "c.h", package / "_interface.py"
        subprocess.run([sys.executable, package / "_header.py", header, interface], check=True)
        script = ROOT / "scripts" / "fetch_openvino.py"
        cmake = subprocess.run([sys.executable, script], capture_output=True, text=True, check=True).stdout.strip()
        engine = Path(cmake).parent / "libs"
        # Without the build's own way to the engine.
        library = LIBRARY.read_bytes().replace(os.fsencode(engine), b"/" * len(os.fsencode(engine)))
        (package / LIBRARY.name).write_bytes(library)
        (tmp_path / "theirs" / "openvino").mkdir(parents=True)
        (tmp_path / "theirs" / "openvino" / "__init__.py").write_text("raise RuntimeError('imported')")
        (tmp_path / "theirs" / "openvino" / "libs").symlink_to(engine)
        return tmp_path

    def script(self, site, *folders):
        begin = BEGIN.replace(str(PACKAGES), str(site / "ours"))
        return f"import sys; sys.path[:0] = {[str(site / folder) for folder in folders]}\n{begin}"

    def test_the_library_is_found_beside_the_package(self, site):
        script = self.script(site, "theirs") + "print(predict(quavin.load(DIGITS)).shape, quavin.__file__)"
        assert run(script, QUAVIN_LIBRARY="")[0] == f"(1, 10) {site}/ours/quavin/__init__.py\n"

    def test_the_interface_is_not_made_again(self, site):
        script = self.script(site, "theirs") + "print('cffi.api' in sys.modules)"
        assert run(script, QUAVIN_LIBRARY="")[0] == "False\n"

    def test_a_missing_engine_is_reported(self, site):
        script = "import sys; sys.modules['openvino'] = None\n" + self.script(site).replace(
            "import numpy as np, quavin", "try: import quavin\nexcept ImportError as error: sys.exit(print(error))"
        )
        assert "quavin needs the package openvino" in run(script, QUAVIN_LIBRARY="")[0]

    def test_a_missing_interface_is_reported(self, site):
        (site / "ours" / "quavin" / "_interface.py").unlink()
        script = self.script(site).replace(
            "import numpy as np, quavin", "try: import quavin\nexcept ImportError as error: sys.exit(print(error))"
        )
        assert "it has no _interface.py" in run(script, QUAVIN_LIBRARY="")[0]
