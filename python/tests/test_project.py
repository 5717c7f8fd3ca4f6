"""The project file agrees with what it repeats."""

import re
import sys

import pytest
from conftest import ROOT
from scikit_build_core import build

import quavin

if sys.version_info >= (3, 11):
    import tomllib
else:
    tomllib = pytest.importorskip("tomli")

PROJECT = tomllib.loads((ROOT / "pyproject.toml").read_text(encoding="utf-8"))


def test_the_engine_is_pinned_to_the_version_that_the_library_is_built_with():
    lock = (ROOT / "cmake" / "openvino.lock").read_text(encoding="utf-8")
    assert re.search(r"^openvino==\S+", lock, re.MULTILINE)[0] in PROJECT["project"]["dependencies"]


def test_the_tests_use_the_tools_that_build_the_wheel():
    requirements = (ROOT / "python" / "tests" / "requirements.txt").read_text(encoding="utf-8")
    assert PROJECT["build-system"]["requires"]
    for requirement in PROJECT["build-system"]["requires"]:
        assert f"\n{requirement} " in requirements


def test_the_wheel_has_the_version_of_the_library(tmp_path, monkeypatch):
    monkeypatch.chdir(ROOT)
    info = tmp_path / build.prepare_metadata_for_build_wheel(str(tmp_path))
    metadata = (info / "METADATA").read_text(encoding="utf-8")
    assert f"\nVersion: {quavin.__version__}\n" in metadata
    assert re.search(r"^Name: quavin[-_]on[-_]device[-_]sdk$", metadata, re.MULTILINE)
