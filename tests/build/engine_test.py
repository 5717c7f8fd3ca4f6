"""Which engine is used, and what is reported if the one that was found cannot be used."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["QUAVIN_SOURCE_DIR"])
HEADERS = SOURCE / "compat/inference_engine/include"
CMAKE = os.environ["QUAVIN_CMAKE"]
COMPILER = os.environ["QUAVIN_COMPILER"]
OPTIONS = [option for option in os.environ["QUAVIN_OPTIONS"].split("|") if option]

PACKAGE = """
add_library(IE::inference_engine SHARED IMPORTED)
set_target_properties(IE::inference_engine PROPERTIES
  IMPORTED_LOCATION "{libraries}/libinference_engine.so" INTERFACE_INCLUDE_DIRECTORIES "{headers}")
add_library(IE::inference_engine_legacy SHARED IMPORTED)
set_target_properties(IE::inference_engine_legacy PROPERTIES
  IMPORTED_LOCATION "{libraries}/libinference_engine_legacy.so" INTERFACE_INCLUDE_DIRECTORIES "{headers}")
"""


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options)


def changed_headers(folder, old, new):
    """Copies the interface with one name replaced by another."""
    shutil.copytree(HEADERS, folder)
    for header in folder.rglob("*.hpp"):
        header.write_text(re.sub(rf"\b{old}\b", new, header.read_text(encoding="utf-8")), encoding="utf-8")
    return folder


class EngineTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.dir = Path(folder.name)
        cls.libraries = cls.dir / "libraries"
        for step in (["-S", SOURCE / "tests/build/engine", "-B", cls.libraries, "-G", os.environ["QUAVIN_GENERATOR"],
                      f"-DQUAVIN_SOURCE_DIR={SOURCE}", f"-DCMAKE_CXX_COMPILER={COMPILER}"],
                     ["--build", cls.libraries]):
            done = run(CMAKE, *step)
            assert done.returncode == 0, done.stdout

    def package(self, headers=HEADERS, content=PACKAGE):
        folder = Path(tempfile.mkdtemp(dir=self.dir))
        text = content.format(libraries=self.libraries, headers=headers)
        (folder / "InferenceEngineConfig.cmake").write_text(text, encoding="utf-8")
        return folder

    def configured(self, engine, package=None, prepared=True):
        """Returns the build folder, the exit status and the output on one line."""
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("InferenceEngine_DIR", "CMAKE_PREFIX_PATH")}
        environment.update(LC_ALL="C", LD_LIBRARY_PATH=str(self.libraries / "external") if prepared else "")
        build = Path(tempfile.mkdtemp(dir=self.dir))
        options = ["--no-warn-unused-cli", *OPTIONS, *([f"-DInferenceEngine_DIR={package}"] if package else [])]
        done = run(CMAKE, "-S", SOURCE, "-B", build, "-G", os.environ["QUAVIN_GENERATOR"], f"-DQUAVIN_ENGINE={engine}",
                   f"-DCMAKE_CXX_COMPILER={COMPILER}", "-DQUAVIN_BUILD_TESTS=OFF", "-DQUAVIN_BUILD_BENCHMARKS=OFF",
                   "-DQUAVIN_BUILD_TOOLS=OFF", *options, env=environment)
        return build, done.returncode, " ".join(done.stdout.split())

    def assert_refused(self, package, reason, prepared=True):
        _, status, output = self.configured("installed", package, prepared)
        self.assertNotEqual(status, 0, output)
        self.assertIn(f"The Inference Engine in {package} cannot be used", output)
        self.assertRegex(output, reason)
        self.assertIn("setupvars.sh", output)

        _, status, output = self.configured("auto", package, prepared)
        self.assertEqual(status, 0, output)
        self.assertIn("CMake Warning", output)
        self.assertIn(f"The Inference Engine in {package} cannot be used", output)
        self.assertRegex(output, reason)
        self.assertIn("The adapter takes its place", output)
        self.assertIn("Engine: adapter", output)

    def test_a_release_with_a_second_library_is_used_and_both_are_linked(self):
        package = self.package()
        for engine in "installed", "auto":
            build, status, output = self.configured(engine, package)
            self.assertEqual(status, 0, output)
            self.assertIn(f"Engine: installed Inference Engine ({package})", output)
            self.assertNotIn("CMake Warning", output)
        linked = "".join(path.read_text(encoding="utf-8")
                         for path in [*build.rglob("build.ninja"), *build.rglob("link.txt")])
        self.assertRegex(linked, r"libinference_engine\.so.*libinference_engine_legacy\.so")

    def test_a_missing_environment_is_reported_naming_setupvars(self):
        self.assert_refused(self.package(), "libthreads.so, needed by .*, not found", prepared=False)

    def test_a_release_without_a_network_reader_is_refused_with_the_compilers_message(self):
        later = changed_headers(self.dir / "later", "CreateCNNNetReader", "ReadNetworkOtherwise")
        self.assert_refused(self.package(later), "error: .CreateCNNNetReader. is not a member")

    def test_a_package_without_libraries_is_refused(self):
        content = 'set(InferenceEngine_FOUND FALSE)\nset(InferenceEngine_NOT_FOUND_MESSAGE "has no libraries")\n'
        self.assert_refused(self.package(content=content), "has no libraries")

    def test_without_an_installed_engine_the_adapter_is_used_silently(self):
        _, status, output = self.configured("auto")
        self.assertEqual(status, 0, output)
        self.assertIn("Engine: adapter", output)
        self.assertNotIn("CMake Warning", output)
        _, status, output = self.configured("installed")
        self.assertNotEqual(status, 0)
        self.assertIn("No Inference Engine was found. Source the setupvars.sh", output)

    def test_the_engines_sources_use_only_names_that_2019_has(self):
        headers = changed_headers(self.dir / "2019", "BOOL", "BOOL_OF_2020")
        for source in sorted((SOURCE / "src/engine/openvino").glob("*.cpp")):
            done = run(COMPILER, "-std=c++17", "-fsyntax-only", "-DQUAVIN_BUILDING_LIBRARY", "-I", headers,
                       "-I", SOURCE / "include", "-I", SOURCE / "src", source)
            self.assertEqual(done.returncode, 0, done.stdout)


if __name__ == "__main__":
    unittest.main()
