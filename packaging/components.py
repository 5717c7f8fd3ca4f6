"""Finds out what of others is inside a release: from the files to be shipped, the headers that the build's objects depend
on, and the linker's maps."""

import fnmatch
import functools
import pathlib
import re
import subprocess
import sys
import tomllib
from dataclasses import dataclass, field

SOURCES = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(SOURCES / "scripts"))

import fetch_openvino  # noqa: E402  # from the folder above

OURS = ("include/quavin/*", "lib/libquavin_on_device_sdk.*", "lib/quavin_on_device_sdk.*", "lib/pkgconfig/*",
        "lib/cmake/quavin_on_device_sdk/*", "bin/quavin", "bin/quavin.exe", "bin/quavin_on_device_sdk.dll",
        "share/man/man1/quavin.1", "share/bash-completion/completions/quavin", "share/doc/quavin_on_device_sdk/*",
        "*.debug")


@dataclass
class Component:
    name: str
    licence: str
    comes_with: str = ""
    leaves_nothing: bool = False
    patterns: dict[str, list[str]] = field(default_factory=dict)
    found: dict[str, list[str]] = field(default_factory=lambda: {"files": [], "headers": [], "objects": []})
    version: str = ""
    texts: list[pathlib.Path] = field(default_factory=list)

    def matches(self, kind, path):
        return any(fnmatch.fnmatchcase(path, pattern) for pattern in self.patterns[kind])

    def is_inside(self):
        return any(self.found.values()) and not self.leaves_nothing


class UnknownContent(Exception):
    """Something is inside that packaging/components.toml does not list."""


def read_components():
    entries = tomllib.loads((SOURCES / "packaging/components.toml").read_text(encoding="utf-8"))["component"]
    return [Component(entry["name"], entry["licence"], entry.get("comes_with", ""), entry.get("leaves_nothing", False),
                      {kind: entry.get(kind, []) for kind in ("files", "headers", "objects")}) for entry in entries]


def files_in(folder):
    """All files, as paths inside the folder."""
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*")
                  if path.is_symlink() or not path.is_dir())


def outside(paths, build):
    """These paths, resolved, without what belongs to us."""
    real = {(build / path).resolve() for path in paths}
    return sorted(str(path) for path in real if not path.is_relative_to(SOURCES) and not path.is_relative_to(build))


def compiled_headers(build):
    listed = subprocess.run(["ninja", "-C", str(build), "-t", "deps"], stdout=subprocess.PIPE, text=True, check=True)
    return outside(re.findall(r"^    (.+)$", listed.stdout, re.MULTILINE), build)


def linked_objects(build):
    """Object files, and the static libraries that at least one member came from."""
    maps = sorted((build / "packaging").glob("*.map"))
    if not maps:
        raise UnknownContent(f"{build} has no map of the linker: was it configured with QUAVIN_RELEASE=ON?")
    found = set()
    for path in maps:
        text = path.read_text(encoding="utf-8", errors="replace")
        found.update(re.findall(r"^LOAD (\S+\.(?:o|obj|res))$", text, re.MULTILINE))
        found.update(re.findall(r"^(\S+\.a)\(\S+\)$", text, re.MULTILINE))
    return outside(found, build)


def debian_packages(paths):
    """The packages of these files, by file. Of a folder's files only the first is looked up."""
    asked = list({pathlib.Path(path).parent: path for path in reversed(paths)}.values())
    listed = subprocess.run(["dpkg-query", "--search", *asked], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                            text=True, check=False) if asked else None
    return sorted({package.split(",")[0] for package in re.findall(r"^(\S+?): /", listed.stdout, re.MULTILINE)}
                  if listed else ())


@functools.cache
def debian_version(package):
    return subprocess.run(["dpkg-query", "--show", "--showformat=${Version}", package], stdout=subprocess.PIPE,
                          text=True, check=True).stdout


def cached_package(path):
    """The folder in the cache that this file is from."""
    root = fetch_openvino.cache_root()
    return root / pathlib.Path(path).relative_to(root).parts[0]


def describe(component):
    """Sets version and texts from where the component came from."""
    evidence = component.found["headers"] + component.found["objects"]
    packages = debian_packages(evidence)
    if packages:
        versions = dict.fromkeys(debian_version(package) for package in packages)
        component.version = ", ".join(versions)
        documents = [pathlib.Path("/usr/share/doc") / package.split(":")[0] / "copyright" for package in packages]
    else:
        folder = cached_package(evidence[0])
        if folder.name.startswith("openvino-"):
            component.version = fetch_openvino.locked_version()
            documents = sorted((folder / "licenses").iterdir())
        else:
            component.version = (folder / "version").read_text(encoding="utf-8").strip()
            documents = sorted(folder.glob("doc/*/copyright"))
    texts = {document.read_bytes(): document for document in reversed(documents)}
    component.texts = sorted(texts.values())


def find(staged, build):
    """The components inside, with where they were found; fails if anything is of unknown origin."""
    components = read_components()
    unknown = []
    for kind, paths in (("files", files_in(staged)), ("headers", compiled_headers(build)),
                        ("objects", linked_objects(build))):
        for path in paths:
            owner = next((component for component in components if component.matches(kind, path)), None)
            if owner:
                owner.found[kind].append(path)
            elif kind != "files" or not any(fnmatch.fnmatchcase(path, pattern) for pattern in OURS):
                unknown.append(path)
    if unknown:
        raise UnknownContent("packaging/components.toml lists no component for " + ", ".join(unknown))
    inside = [component for component in components if component.is_inside()]
    for component in inside:
        if not component.comes_with:
            describe(component)
    for component in inside:
        if component.comes_with:
            owner = next(other for other in inside if other.name == component.comes_with)
            component.version, component.texts = f"of {owner.name} {owner.version}", owner.texts
    return inside
