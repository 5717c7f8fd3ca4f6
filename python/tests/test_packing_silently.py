"""Converting a model sends nothing, neither with the frameworks' usage statistics nor otherwise."""

import os
import re
import shutil
import subprocess
import sys

import models
import pytest

PACKING = "import quavin; quavin.pack('model.onnx', 'package')"
# What decides whether statistics are sent: nobody has ever objected, and this is not a CI machine.
SILENT = ("CI", "TF_BUILD", "JENKINS_URL", "ORT_DISABLE_TELEMETRY")
NETWORK = re.compile(r"AF_INET|AF_NETLINK|sin_port|sin6_port")


@pytest.fixture
def trace(tmp_path):
    """Runs a program in a new home, and returns its calls that have to do with a network."""
    if not shutil.which("strace"):
        pytest.skip("strace is not installed")
    models.projection(tmp_path / "model.onnx")
    home = tmp_path / "home"
    home.mkdir()

    def run(program):
        environment = {name: value for name, value in os.environ.items() if name not in SILENT}
        environment.update(HOME=str(home), PYTHONPATH=os.pathsep.join(sys.path))
        done = subprocess.run(
            ["strace", "-f", "-qq", "-e", "trace=%net", "-o", "trace", sys.executable, "-c", program],
            cwd=tmp_path, env=environment, capture_output=True, text=True, check=False)  # fmt: skip
        if "ptrace" in done.stderr:
            pytest.skip("processes cannot be traced here")
        assert done.returncode == 0, done.stderr
        lines = (tmp_path / "trace").read_text().splitlines()
        return [line for line in lines if NETWORK.search(line)], list(home.rglob("*"))

    return run


def test_packing_opens_no_connection_and_keeps_no_statistics(trace, tmp_path):
    assert trace(PACKING) == ([], [])
    assert (tmp_path / "package" / "manifest.json").is_file()


def test_packing_opens_no_connection_if_openvino_was_imported_before(trace):
    # That import reports itself, which is not for quavin to prevent: here with statistics that only count.
    counting = (
        "import sys, types; sent = []; "
        "report = lambda self, *what, **more: sent.append(what); "
        "calls = dict.fromkeys(('__init__', 'send_event', 'start_session', 'end_session', 'send_error', "
        "'send_stack_trace', 'force_shutdown'), report); "
        "module = sys.modules['openvino_telemetry'] = types.ModuleType('openvino_telemetry'); "
        "module.Telemetry = type('Telemetry', (), calls); module.__path__ = []; "
        "backend = sys.modules['openvino_telemetry.backend'] = types.ModuleType('backend'); "
        "backend.backend_ga4 = None; "
        "import openvino; assert sent; sent.clear(); "
    )
    assert trace(f"{counting} {PACKING}; assert not sent, sent") == ([], [])


def test_the_trace_would_show_a_connection(trace):
    shown, _ = trace("import socket; socket.socket().connect_ex(('127.0.0.1', 9))")
    assert any("connect(" in line and "sin_port=htons(9)" in line for line in shown)
