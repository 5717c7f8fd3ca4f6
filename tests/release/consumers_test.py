"""Hosts of every kind build against an unpacked archive and predict, without this project's sources."""

import os
import pathlib
import tempfile
import unittest

import artefacts
from artefacts import WORK, run

MINGW = {"CMAKE_SYSTEM_NAME": "Windows", "CMAKE_C_COMPILER": "x86_64-w64-mingw32-gcc-posix",
         "CMAKE_CXX_COMPILER": "x86_64-w64-mingw32-g++-posix"}
ARM64 = {"CMAKE_SYSTEM_NAME": "Linux", "CMAKE_SYSTEM_PROCESSOR": "aarch64", "CMAKE_C_COMPILER": "aarch64-linux-gnu-gcc",
         "CMAKE_CXX_COMPILER": "aarch64-linux-gnu-g++"}
CMAKE = {"linux-x86_64": {}, "linux-arm64": ARM64, "windows-x64": MINGW}
A_ONE = "This is a 1."


class ConsumerTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory(dir=WORK)
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def cmake(self, artefact, sources):
        """Builds a project that finds the package, in an empty folder, and returns the folder."""
        build = self.folder / artefact.system / sources.name
        settings = {"CMAKE_BUILD_TYPE": "Release", "CMAKE_PREFIX_PATH": artefact.folder, **CMAKE[artefact.system]}
        run(["cmake", "-G", "Ninja", "-S", sources, "-B", build, *(f"-D{name}={value}" for name, value in settings.items())])
        run(["cmake", "--build", build])
        return build

    def program(self, artefact, build, name):
        """A built program; on Windows with the archive's DLLs beside it, as a host ships them."""
        path = build / (f"{name}.exe" if artefact.is_windows else name)
        if artefact.is_windows:
            for dll in artefact.folder.glob("bin/*.dll"):
                os.symlink(dll, path.with_name(dll.name))
        return path

    def test_cmake_finds_the_package(self):
        for artefact in artefacts.artefacts():
            build = self.cmake(artefact, WORK / "consumer/installed")
            artefact.start(self.program(artefact, build, "predict_twice"), WORK / "consumer/package")

    def test_the_shipped_examples_build_and_predict(self):
        for artefact in artefacts.artefacts():
            build = self.cmake(artefact, artefact.examples)
            for folder, name in (("first_prediction", "first_prediction"), ("c", "predict")):
                program = self.program(artefact, build / folder, name)
                # A short path: to a plain main(), Windows passes others in its code page instead of UTF-8.
                self.assertIn(A_ONE, artefact.start(program, "package", cwd=artefact.examples / "digits"))

    def test_pkg_config_and_a_plain_compiler_suffice(self):
        for artefact in artefacts.for_linux():
            host = self.folder / f"host-{artefact.system}"
            compiler = CMAKE[artefact.system].get("CMAKE_CXX_COMPILER", "g++")
            run([compiler, "-std=c++17", "-o", host, artefact.examples / "first_prediction/main.cpp", *artefact.flags])
            self.assertIn(A_ONE, artefact.start(host, artefact.examples / "digits/package"))

    def test_pkg_config_knows_the_version(self):
        for artefact in artefacts.artefacts():
            said = run(["pkg-config", "--modversion", "quavin_on_device_sdk"],
                       env=artefacts.environment(PKG_CONFIG_LIBDIR=str(artefact.folder / "lib/pkgconfig")))
            self.assertEqual(said.strip(), artefact.version)

    def test_clang_builds_a_host_in_c(self):
        for artefact in artefacts.native():
            host = self.folder / "host-in-c"
            run(["clang-14", "-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-o", host,
                 artefact.examples / "c/predict.c", *artefact.flags])
            self.assertIn(A_ONE, artefact.start(host, artefact.examples / "digits/package"))

    def test_a_host_with_its_own_openssl_keeps_it(self):
        for artefact in artefacts.native():
            source = self.folder / "host.c"
            source.write_text('#include <openssl/crypto.h>\n#include <quavin/c.h>\n#include <stdio.h>\n'
                              'int main(void) { return !(quavin_version() && puts(OpenSSL_version(OPENSSL_VERSION))); }\n',
                              encoding="utf-8")
            host = self.folder / "host-with-openssl"
            run(["gcc", "-o", host, source, *artefact.flags, "-lcrypto"])
            self.assertIn("libcrypto.so.3", artefact.binutil("readelf", "-d", host))
            self.assertTrue(artefact.start(host).startswith("OpenSSL 3."))

    def test_a_host_built_as_for_microsofts_tools_predicts(self):
        sources = WORK / "msvc_host"
        for artefact in (found for found in artefacts.artefacts() if found.is_windows):
            compiler = ["clang-14", "--target=x86_64-pc-windows-msvc", "-std=c99", "-O1", "-ffreestanding", "-nostdlibinc",
                        "-I", artefact.folder / "include", "-c"]
            objects = [self.folder / f"{name}.obj" for name in ("host", "start_windows")]
            for made in objects:
                run([*compiler, sources / f"{made.stem}.c", "-o", made])
            # The import library that is shipped, and one made from the list that is shipped.
            libraries = [artefact.folder / "lib/quavin_on_device_sdk.lib", self.folder / "made.lib"]
            for definitions, made in ((sources / "kernel32.def", self.folder / "kernel32.lib"),
                                      (artefact.folder / "lib/quavin_on_device_sdk.def", libraries[1])):
                run(["llvm-dlltool-14", "-m", "i386:x86-64", "-d", definitions, "-l", made])
            for number, library in enumerate(libraries):
                folder = self.folder / str(number)
                folder.mkdir()
                run(["lld-link-14", "/nologo", "/nodefaultlib", "/entry:start", "/subsystem:console",
                     f"/out:{folder}/host.exe", *objects, self.folder / "kernel32.lib", library])
                told = artefact.start(self.program(artefact, folder, "host"), cwd=artefact.examples / "digits")
                self.assertIn(f"with version {artefact.version} the digit is {artefacts.FIRST_HELD_OUT_DIGIT}", told)


if __name__ == "__main__":
    unittest.main()
