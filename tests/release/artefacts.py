"""The archives under test: unpacked somewhere, moved away, and used from there."""

import functools
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import tempfile
from dataclasses import dataclass

WORK = pathlib.Path(os.environ["QUAVIN_RELEASE_WORK"])
DIST = WORK / "dist"
SCRIPTS = WORK / "scripts"
DOCUMENTATION = "share/doc/quavin_on_device_sdk"
# The digit that the example's model was not trained with, at this place in its file of such digits.
FIRST_HELD_OUT_DIGIT = 8

ARCHIVE = re.compile(r"(quavin_on_device_sdk-(\d+\.\d+\.\d+)-(linux-x86_64|linux-arm64|windows-x64))(-debug)?\.(tar\.gz|zip)")
TOOLS = {"linux-x86_64": "", "linux-arm64": "aarch64-linux-gnu-", "windows-x64": "x86_64-w64-mingw32-"}


def environment(**more):
    """What little a program is started with: nothing that could help it to find its libraries."""
    kept = {name: os.environ[name] for name in ("HOME", "QUAVIN_CACHE_DIR", "XDG_CACHE_HOME") if name in os.environ}
    return {"PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", **kept, **more}


def run(command, **options):
    options = {"env": environment(), "stdout": subprocess.PIPE, "stderr": subprocess.STDOUT, "text": True,
               "errors": "surrogateescape", **options}
    done = subprocess.run([str(word) for word in command], check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def unpacked(archive):
    """The only folder in an archive, unpacked at one place and moved to another with a difficult name."""
    first = pathlib.Path(tempfile.mkdtemp(prefix="unpacked-", dir=WORK))
    run(["bsdtar", "-xf", archive, "-C", first])
    (top,) = first.iterdir()
    moved = pathlib.Path(tempfile.mkdtemp(prefix="moved ä ", dir=WORK)) / top.name
    top.rename(moved)
    first.rmdir()
    return moved


@dataclass(frozen=True)
class Artefact:
    archive: pathlib.Path
    name: str
    version: str
    system: str

    @functools.cached_property
    def folder(self):
        return unpacked(self.archive)

    @functools.cached_property
    def symbols(self):
        """The same folder with the debug symbols unpacked over it."""
        target = pathlib.Path(tempfile.mkdtemp(prefix="symbols-", dir=WORK)) / self.name
        shutil.copytree(self.folder, target, symlinks=True)
        run(["bsdtar", "-xf", self.debug_archive, "-C", target.parent])
        return target

    @property
    def debug_archive(self):
        return self.archive.with_name(self.archive.name.replace(self.name, f"{self.name}-debug"))

    @property
    def is_windows(self):
        return self.system == "windows-x64"

    @property
    def examples(self):
        return self.folder / DOCUMENTATION / "examples"

    @property
    def library(self):
        return self.folder / ("bin/quavin_on_device_sdk.dll" if self.is_windows else "lib/libquavin_on_device_sdk.so")

    @property
    def tool(self):
        return self.folder / ("bin/quavin.exe" if self.is_windows else "bin/quavin")

    @property
    def emulator(self):
        return {"linux-x86_64": [], "linux-arm64": [SCRIPTS / "run-in-qemu.sh"],
                "windows-x64": [SCRIPTS / "run-in-wine.sh"]}[self.system]

    @functools.cached_property
    def flags(self):
        """What pkg-config says, and where a host for development finds the library."""
        said = run(["pkg-config", "--cflags", "--libs", "quavin_on_device_sdk"],
                   env=environment(PKG_CONFIG_LIBDIR=str(self.folder / "lib/pkgconfig")))
        return [*shlex.split(said), f"-Wl,-rpath,{self.folder}/lib"]

    def binutil(self, name, *arguments):
        return run([TOOLS[self.system] + name, *arguments])

    def start(self, program, *arguments, **options):
        return run([*self.emulator, program, *arguments], **options)

    def quavin(self, *arguments, **options):
        return self.start(self.tool, *arguments, **options)


@functools.cache
def artefacts():
    found = []
    for path in sorted(DIST.iterdir()):
        match = ARCHIVE.fullmatch(path.name)
        if match and not match[4]:
            found.append(Artefact(path, match[1], match[2], match[3]))
    if not found:
        raise AssertionError(f"there are no archives in {DIST}")
    return found


def for_linux():
    return [artefact for artefact in artefacts() if not artefact.is_windows]


def native():
    return [artefact for artefact in artefacts() if artefact.system == "linux-x86_64"]


def is_binary(path):
    """Whether it is a file that a system loads: ELF or PE."""
    if path.is_symlink() or not path.is_file():
        return False
    with open(path, "rb") as file:
        return file.read(4)[:4] == b"\x7fELF" or path.suffix in (".exe", ".dll")


def ours(artefact):
    """Our own binaries: the library and the program."""
    return [artefact.library.resolve(), artefact.tool]


def digit_as_npy(artefact, path):
    """Writes the first held-out digit for the command line."""
    run(["/usr/bin/python3", artefact.examples / "digits/digit_to_npy.py", "0", path])
