"""The archives are complete, and work wherever they are unpacked."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

import artefacts
from artefacts import DOCUMENTATION, WORK, run

# Needed by each of these to predict; the rest only helps processors with several sockets or kinds of cores.
MANDATORY = {
    "linux-x86_64": ["libopenvino.so.2641", "libopenvino_c.so.2641", "libopenvino_ir_frontend.so.2641",
                     "libopenvino_intel_cpu_plugin.so", "libtbb.so.12"],
}
OPTIONAL = {"linux-x86_64": ["libhwloc.so.15", "libtbbbind_2_5.so.3", "libtbbmalloc.so.2"]}
DOCTOR_IS_CONTENT = "ok: a small network loads and predicts"


class LayoutTest(unittest.TestCase):
    def test_an_archive_has_one_folder_of_its_own_name(self):
        for artefact in artefacts.artefacts():
            self.assertEqual(artefact.folder.name, artefact.name)
            self.assertEqual(sorted(path.name for path in artefact.folder.iterdir()), ["bin", "include", "lib", "share"])

    def test_an_archive_has_what_a_host_needs(self):
        common = ["include/quavin/c.h", "include/quavin/client.h", "lib/pkgconfig/quavin_on_device_sdk.pc",
                  "lib/cmake/quavin_on_device_sdk/quavin_on_device_sdk-config.cmake", "share/man/man1/quavin.1",
                  "share/bash-completion/completions/quavin", f"{DOCUMENTATION}/README.md",
                  f"{DOCUMENTATION}/NOTICES.txt", f"{DOCUMENTATION}/examples/digits/main.cpp",
                  f"{DOCUMENTATION}/docs/releasing.md", f"{DOCUMENTATION}/openvino/LICENSE"]
        linux = ["bin/quavin", "lib/libquavin_on_device_sdk.so"]
        windows = ["bin/quavin.exe", "bin/quavin_on_device_sdk.dll", "bin/libstdc++-6.dll", "lib/libquavin_on_device_sdk.dll.a",
                   "lib/quavin_on_device_sdk.lib", "lib/quavin_on_device_sdk.def"]
        for artefact in artefacts.artefacts():
            for name in common + (windows if artefact.is_windows else linux):
                self.assertTrue((artefact.folder / name).is_file(), f"{artefact.name} lacks {name}")

    def test_no_file_of_ours_names_the_machine_that_built_it(self):
        places = {os.environ["QUAVIN_SOURCE_DIR"], os.path.expanduser("~/")} - {"/"}
        for artefact in artefacts.artefacts():
            folder = artefact.symbols
            for path in [*artefacts.ours(artefact), *folder.rglob("*.debug"), *folder.glob("share/**/*"),
                         *folder.glob("lib/*/quavin*/*"), *folder.glob("lib/pkgconfig/*")]:
                if path.is_file():
                    content = path.read_bytes()
                    for place in places:
                        self.assertNotIn(place.encode(), content, path)

    def test_our_binaries_have_no_debug_symbols_but_find_them(self):
        for artefact in artefacts.artefacts():
            for binary in artefacts.ours(artefact):
                self.assertNotIn(".debug_info", artefact.binutil("objdump", "-h", binary))
            # A function of ours, in the copy that has the symbols in the folders beside it.
            library = artefact.symbols / artefact.library.resolve().relative_to(artefact.folder)
            where = pathlib.Path(library.parent, ".debug", f"{library.name}.debug")
            table = artefact.binutil("nm", "-C", where)
            address = next(line.split()[0] for line in table.splitlines() if line.endswith(" T quavin_version"))
            line = artefact.binutil("addr2line", "-e", library, address)
            self.assertRegex(line, rf"^quavin_on_device_sdk-{artefact.version}/(build/\S+/)?src/c/\w+\.cpp:\d+")


    def test_the_changes_say_when_this_version_was_released(self):
        for artefact in artefacts.artefacts():
            changes = (artefact.folder / DOCUMENTATION / "CHANGELOG.md").read_text(encoding="utf-8")
            self.assertRegex(changes, rf"(?m)^## {re.escape(artefact.version)} \(\d{{4}}-\d\d-\d\d\)$")


class RunningTest(unittest.TestCase):
    def test_doctor_is_content_wherever_the_folder_is(self):
        for artefact in artefacts.artefacts():
            told = artefact.quavin("doctor")
            self.assertIn(DOCTOR_IS_CONTENT, told)
            self.assertIn(f"quavin        {artefact.version}", told)

    def test_the_libraries_are_those_of_the_folder(self):
        for artefact in artefacts.native():
            libraries = json.loads(artefact.quavin("doctor", "--json"))["libraries"]
            files = [pathlib.Path(library["file"]) for library in libraries]
            self.assertGreaterEqual(len(files), 5)
            for file in files:
                self.assertTrue(file.is_relative_to(artefact.folder), file)

    def test_it_recognises_a_digit_in_a_plain_and_in_a_secured_package(self):
        for artefact in artefacts.artefacts():
            with tempfile.TemporaryDirectory(dir=WORK) as work:
                artefacts.digit_as_npy(artefact, f"{work}/digit.npy")
                key = pathlib.Path(work, "key")
                shutil.copyfile(artefact.examples / "digits/demo.key", key)
                key.chmod(0o600)
                for package, options in (("package", []), ("secured_package", ["--key-file", key])):
                    told = json.loads(artefact.quavin(
                        "run", artefact.examples / "digits" / package, "--input", f"image={work}/digit.npy", "--json",
                        *options, stderr=subprocess.PIPE))
                    self.assertEqual(told["outputs"][0]["indexOfMaximum"], artefacts.FIRST_HELD_OUT_DIGIT, artefact.name)


class RuntimeTest(unittest.TestCase):
    def test_the_runtime_is_what_predicting_needs_and_nothing_else(self):
        for artefact in artefacts.native():
            shipped = sorted(path.name for path in (artefact.folder / "lib/quavin").iterdir())
            self.assertEqual(shipped, sorted(MANDATORY[artefact.system] + OPTIONAL[artefact.system]))
            with tempfile.TemporaryDirectory(dir=WORK) as work:
                run(["strace", "-f", "-e", "trace=openat", "-o", f"{work}/calls", artefact.tool, "doctor"])
                calls = pathlib.Path(work, "calls").read_text(encoding="utf-8")
            opened = [name for name in shipped if f'/{name}", O_RDONLY|O_CLOEXEC) = ' in calls.replace("= -1", "")]
            self.assertEqual(opened, shipped)


class CleanRootTest(unittest.TestCase):
    """A root folder with the archive, the C library and the C++ runtime, and nothing else: not even libcrypto."""

    SYSTEM = ("ld-linux-x86-64.so.2", "libc.so.6", "libm.so.6", "libdl.so.2", "libpthread.so.0", "libstdc++.so.6",
              "libgcc_s.so.1")

    def setUp(self):
        natives = artefacts.native()
        if not natives:
            self.skipTest("a root folder needs programs for this system")
        (self.artefact,) = natives
        temporary = tempfile.TemporaryDirectory(dir=WORK)
        self.addCleanup(temporary.cleanup)
        self.root = pathlib.Path(temporary.name)
        libraries = self.root / "usr/lib/x86_64-linux-gnu"
        libraries.mkdir(parents=True)
        for name in self.SYSTEM:
            shutil.copy(pathlib.Path("/usr/lib/x86_64-linux-gnu", name).resolve(), libraries / name)
        (self.root / "lib64").symlink_to("usr/lib/x86_64-linux-gnu")
        (self.root / "lib").symlink_to("usr/lib")
        for folder in ("proc", "tmp"):
            (self.root / folder).mkdir()
        shutil.copytree(self.artefact.folder, self.root / "sdk", symlinks=True)

    def quavin(self, *arguments):
        # The loader asks /proc where a program is.
        enter = 'mount --rbind /proc "$1/proc" && exec chroot "$@"'
        done = subprocess.run(["unshare", "--mount", "sh", "-euc", enter, "-", self.root, "/sdk/bin/quavin", *arguments],
                              env=artefacts.environment(PATH="/usr/sbin:/usr/bin:/sbin:/bin"), check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        return done.stdout if done.returncode == 0 else f"{done.stdout}{done.stderr}ended with {done.returncode}"

    def test_it_predicts_where_only_the_c_and_cpp_libraries_are_installed(self):
        self.assertIn(DOCTOR_IS_CONTENT, self.quavin("doctor"))
        artefacts.digit_as_npy(self.artefact, self.root / "digit.npy")
        shutil.copyfile(self.artefact.examples / "digits/demo.key", self.root / "key")
        (self.root / "key").chmod(0o600)
        told = self.quavin("run", f"/sdk/{DOCUMENTATION}/examples/digits/secured_package", "--input", "image=/digit.npy",
                           "--key-file", "/key", "--json")
        self.assertEqual(json.loads(told)["outputs"][0]["indexOfMaximum"], artefacts.FIRST_HELD_OUT_DIGIT)

    def test_each_library_of_the_runtime_is_needed_or_optional(self):
        for names, works in ((MANDATORY, True), (OPTIONAL, False)):
            for name in names[self.artefact.system]:
                library = self.root / "sdk/lib/quavin" / name
                library.rename(WORK / name)
                told = self.quavin("doctor")
                (WORK / name).rename(library)
                self.assertEqual(DOCTOR_IS_CONTENT not in told, works, f"without {name}: {told}")


class CompletionTest(unittest.TestCase):
    """Of the shell, with what the manual page says as the expectation."""

    def completions(self, artefact, *words):
        quoted = " ".join(f"'{word}'" for word in words)
        script = (f"PATH='{artefact.folder}/bin':$PATH; source '{artefact.folder}/share/bash-completion/completions/quavin';"
                  f"COMP_WORDS=({quoted}) COMP_CWORD={len(words) - 1}; _quavin; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
        return run(["bash", "--norc", "-euc", script]).split()

    def test_commands_and_options_are_completed(self):
        for artefact in artefacts.native():
            self.assertEqual(self.completions(artefact, "quavin", "ver"), ["verify"])
            self.assertEqual(self.completions(artefact, "quavin", "help", "un"), ["unpack"])
            self.assertEqual(self.completions(artefact, "quavin", "run", "--thr"), ["--threads"])

    def test_every_command_of_the_manual_page_is_offered(self):
        for artefact in artefacts.native():
            page = (artefact.folder / "share/man/man1/quavin.1").read_text(encoding="utf-8")
            commands = [line.split()[2].strip('"') for line in page.splitlines() if line.startswith('.SS "quavin ')]
            self.assertGreater(len(commands), 8)
            self.assertLessEqual(set(commands), set(self.completions(artefact, "quavin", "")))


if __name__ == "__main__":
    unittest.main()
