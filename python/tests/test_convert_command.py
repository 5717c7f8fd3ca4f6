"""quavin-convert, the command."""

import os
import signal
import subprocess
import sys
import time
from pathlib import Path

import models
import numpy as np
import pytest
from conftest import KEY, KEY_HEX, ROOT

import quavin
from quavin.convert import main

if sys.version_info >= (3, 11):
    import tomllib
else:
    tomllib = pytest.importorskip("tomli")


@pytest.fixture(autouse=True)
def in_folder(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    models.doubling("model.onnx", ("n", 4))


def predicted(package, name="y", **options):
    with quavin.load(package, **options) as model:
        return model.predict({model.inputs[0].name: np.ones((1, 4), np.float32)})[name].tolist()


def test_the_command_packs_and_says_what_it_did(capsys):
    assert main(["model.onnx", "-o", "package", "--shape", "x=1,4"]) == 0
    out = capsys.readouterr().out
    assert 'input "x": the shape [?,4] is fixed to [1, 4]' in out
    assert "largest difference from onnxruntime" in out
    assert predicted("package") == [[2, 2, 2, 2]]


def test_every_option_reaches_the_package(capsys):
    Path("the.key").write_text(KEY_HEX)
    os.chmod("the.key", 0o600)
    subprocess.run(["openssl", "ecparam", "-name", "prime256v1", "-genkey", "-noout", "-out", "p.pem"], check=True)
    os.chmod("p.pem", 0o600)
    np.save("x.npy", np.ones((1, 4), np.float32))
    options = (
        "--shape x=1,4 --only-output y --rename x=in --rename y=out --describe x=a=b --fp16 --input x=x.npy "
        "--tolerance 0.5 --id i --name n --author a --description d --sdk-version 2 --model-version 3 "
        "--root r --encrypt components --key-file the.key --sign p.pem --quiet"
    )
    assert main(["model.onnx", "-o", "p.tar", *options.split()]) == 0
    assert capsys.readouterr().out == ""
    with quavin.load("p.tar", key=KEY) as model:
        metadata = model.metadata
        assert (metadata.id, metadata.name, metadata.author, metadata.description) == ("i", "n", "a", "d")
        assert (metadata.sdk_version, metadata.version) == ("2", 3)
        assert [(port.name, port.description) for port in model.inputs] == [("in", "a=b")]
    assert predicted("p.tar", "out", key=KEY) == [[2, 2, 2, 2]]
    names = subprocess.run(["tar", "-tf", "p.tar"], check=True, capture_output=True, text=True).stdout
    assert "r/model.sig\n" in names


@pytest.mark.parametrize(
    ("arguments", "message"),
    [
        (["model.onnx", "-o", "package"], "--shape x=1,4,"),
        (["none.onnx", "-o", "package"], "there is no model none.onnx"),
        (["model.onnx", "-o", "package", "--shape", "z=1"], 'the model has no input "z"'),
        (["model.onnx", "-o", "package", "--input", "x=none.npy"], "none.npy"),
        (["model.onnx", "-o", "package", "--input", "x=model.onnx"], "model.onnx is not a .npy file of numbers"),
        (["model.onnx", "-o", "package", "--shape", "x=1,4", "--shape", "x=2,4"], "--shape: x is given more than once"),
        (["model.onnx", "-o", "model.onnx", "--shape", "x=1,4"], "model.onnx already exists"),
    ],
)
def test_a_failure_is_one_line_and_status_1(capsys, arguments, message):
    assert main(arguments) == 1
    captured = capsys.readouterr()
    assert captured.out == ""
    assert captured.err.startswith("quavin-convert: ")
    assert message in captured.err
    assert captured.err.count("\n") == 1
    assert os.listdir() == ["model.onnx"]


@pytest.mark.parametrize(
    "arguments",
    [
        ["model.onnx"],
        ["model.onnx", "-o", "package", "--shape", "x"],
        ["model.onnx", "-o", "package", "--shape", "x=one"],
        ["model.onnx", "-o", "package", "--rename", "x="],
        ["model.onnx", "-o", "package", "--key", KEY_HEX],
    ],
)
def test_incorrect_usage_is_status_2(capsys, arguments):
    with pytest.raises(SystemExit) as end:
        main(arguments)
    assert end.value.code == 2
    assert "usage: quavin-convert" in capsys.readouterr().err


@pytest.mark.skipif(sys.platform == "win32", reason="there are no such signals")
@pytest.mark.parametrize("name", ["SIGINT", "SIGTERM", "SIGHUP"])
def test_a_command_that_is_stopped_leaves_nothing(tmp_path, name):
    slow = tmp_path / "slow"  # in place of quavin: the network is there, and this says where
    slow.write_text('#!/bin/sh\nprintf "%s\\n" "$2" > seen && mv seen network && exec sleep 60\n')
    slow.chmod(0o755)
    environment = {**os.environ, "PYTHONPATH": os.pathsep.join(sys.path), "QUAVIN_TOOL": str(slow), "THE_KEY": KEY_HEX}
    options = "-o folder/package --shape x=1,4 --encrypt components --key-env THE_KEY".split()
    with subprocess.Popen(
        [sys.executable, "-m", "quavin.convert", "model.onnx", *options], env=environment, stderr=subprocess.PIPE
    ) as command:
        while not Path("network").exists():
            assert command.poll() is None
            time.sleep(0.05)
        network = Path(Path("network").read_text().strip())
        assert network.is_file()
        command.send_signal(getattr(signal, name))
        _, err = command.communicate(timeout=60)
    assert (command.returncode, err) == (128 + getattr(signal, name), b"")
    assert not network.parent.exists()
    assert sorted(os.listdir()) == ["model.onnx", "network", "slow"]


def test_the_command_is_installed_and_runs_as_a_module():
    project = tomllib.loads((ROOT / "pyproject.toml").read_text(encoding="utf-8"))["project"]
    assert project["scripts"]["quavin-convert"] == "quavin.convert:main"
    environment = {**os.environ, "PYTHONPATH": os.pathsep.join(sys.path)}
    help_text = subprocess.run(
        [sys.executable, "-m", "quavin.convert", "--help"], env=environment, check=True, capture_output=True, text=True
    ).stdout
    for option in "--shape", "--only-output", "--encrypt", "--tolerance":
        assert option in help_text
