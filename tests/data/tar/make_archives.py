#!/usr/bin/env python3
"""Creates the archives in this folder with GNU tar, bsdtar, Python and git. They never change: times,
owners and the order of entries are fixed.

accepted/NAME.tar      a tree of trees.py
accepted/NAME.listing  what the tool that wrote it extracts from it: "directory PATH" and
                       "file SIZE SHA-256 PATH", sorted by path
refused/NAME.tar       contains something that is neither a file nor a directory, or claims to be
                       larger than it is
"""

import hashlib
import io
import os
import pathlib
import re
import shutil
import subprocess
import tarfile
import tempfile

import trees

HERE = pathlib.Path(__file__).resolve().parent
ENVIRONMENT = {
    **os.environ,
    "LC_ALL": "C.UTF-8",
    "TZ": "UTC",
    "GIT_CONFIG_GLOBAL": os.devnull,
    "GIT_CONFIG_SYSTEM": os.devnull,
    **{f"GIT_{who}_{what}": value
       for who in ("AUTHOR", "COMMITTER")
       for what, value in (("NAME", "tests"), ("EMAIL", "tests@localhost"), ("DATE", "@0 +0000"))},
}
GNU = ["tar", "--sort=name", "--mtime=@0", "--owner=0", "--group=0", "--numeric-owner",
       "--mode=u=rwX,go=rX"]
GNU_PAX = ["--pax-option=exthdr.name=%d/PaxHeaders/%f,delete=atime,delete=ctime"]


def run(*command, folder, **options):
    return subprocess.run(command, cwd=folder, env=ENVIRONMENT, check=True, **options)


def plant(tree, folder):
    for path in sorted(tree):
        target = folder / path
        if tree[path] is None:
            target.mkdir()
        else:
            target.write_bytes(tree[path])


def with_gnu_tar(*options):
    def make(tree, folder, archive):
        root = min(tree, key=len)
        run(*GNU, *options, "-cf", archive, root, folder=folder)
    return make, with_gnu_tar_extracted


def with_gnu_tar_extracted(archive, folder):
    run("tar", "-xf", archive, folder=folder)


def with_bsdtar(*options, time="0.0"):
    # From a description, so that the times of the files do not matter.
    def make(tree, folder, archive):
        lines = ["#mtree"]
        for path in sorted(tree):
            shown = "".join(f"\\{byte:03o}" if byte < 33 or byte > 126 else chr(byte)
                            for byte in os.fsencode(path))
            kind = "dir mode=0755" if tree[path] is None else f"file mode=0644 contents=./{shown}"
            lines.append(f"{shown} type={kind} uid=0 gid=0 time={time}")
        text = os.fsencode("\n".join(lines) + "\n")
        run("bsdtar", *options, "-cf", archive, "@-", folder=folder, input=text)
    return make, with_bsdtar_extracted


def with_bsdtar_extracted(archive, folder):
    run("bsdtar", "-xf", archive, folder=folder)


def with_python(layout):
    def make(tree, folder, archive):
        with tarfile.open(archive, "w", format=layout, encoding="utf-8") as writer:
            for path in sorted(tree):
                entry = tarfile.TarInfo(path)
                entry.type = tarfile.DIRTYPE if tree[path] is None else tarfile.REGTYPE
                entry.size = len(tree[path] or b"")
                writer.addfile(entry, io.BytesIO(tree[path] or b""))

    def extract(archive, folder):
        with tarfile.open(archive, encoding="utf-8") as reader:
            reader.extractall(folder)
    return make, extract


def with_git():
    def make(tree, folder, archive):
        def git(*arguments):
            return run("git", *arguments, folder=folder, stdout=subprocess.PIPE).stdout.decode()
        git("init", "-q")
        git("add", ".")
        commit = git("commit-tree", "-m", "tree", git("write-tree").strip()).strip()
        git("archive", "--format=tar", f"--output={archive}", commit)
    return make, with_gnu_tar_extracted


ACCEPTED = {
    "bsdtar_default": (with_bsdtar(), trees.ALL),
    "bsdtar_gnutar": (with_bsdtar("--format=gnutar"), trees.ALL),
    "bsdtar_pax": (with_bsdtar("--format=pax", time="0.5"), trees.ALL),
    "bsdtar_ustar": (with_bsdtar("--format=ustar"), trees.USTAR),
    "bsdtar_v7": (with_bsdtar("--format=v7"), trees.SHORT),
    "git": (with_git(), trees.SHORT),
    "gnu_default": (with_gnu_tar(), trees.ALL),
    "gnu_gnu": (with_gnu_tar("--format=gnu", "-b1"), trees.ALL),
    "gnu_pax": (with_gnu_tar("--format=pax", "-b1", *GNU_PAX), trees.ALL),
    "gnu_ustar": (with_gnu_tar("--format=ustar", "-b1"), trees.USTAR),
    "gnu_v7": (with_gnu_tar("--format=v7", "-b1"), trees.SHORT),
    "python_gnu": (with_python(tarfile.GNU_FORMAT), trees.ALL),
    "python_pax": (with_python(tarfile.PAX_FORMAT), trees.ALL),
    "python_ustar": (with_python(tarfile.USTAR_FORMAT), trees.USTAR),
    "simple": (with_gnu_tar("--format=ustar"), trees.SIMPLE),
}


def listing(folder):
    lines = []
    for path in folder.rglob("*"):
        name = path.relative_to(folder).as_posix()
        if path.is_dir():
            lines.append((os.fsencode(name), f"directory {name}\n"))
        else:
            content = path.read_bytes()
            digest = hashlib.sha256(content).hexdigest()
            lines.append((os.fsencode(name), f"file {len(content)} {digest} {name}\n"))
    return "".join(line for _, line in sorted(lines))


def make_accepted(name, tool, tree):
    make, extract = tool
    archive = HERE / "accepted" / f"{name}.tar"
    with tempfile.TemporaryDirectory() as source, tempfile.TemporaryDirectory() as target:
        plant(tree, pathlib.Path(source))
        make(tree, source, archive)
        extract(archive, target)
        extracted = listing(pathlib.Path(target))
        # git omits empty directories.
        if name != "git" and extracted != listing(pathlib.Path(source)):
            raise RuntimeError(f"{name} does not contain the whole tree")
        archive.with_suffix(".listing").write_text(extracted, "utf-8")


def fix_process_number(archive):
    """GNU tar puts its process number into the name in a sparse file's header."""
    blocks = bytearray(archive.read_bytes())
    for start in range(0, len(blocks), 512):
        name = blocks[start:start + 100].rstrip(b"\0")
        fixed = re.sub(rb"^(\./GNUSparseFile)\.\d+/", rb"\1.0/", name)
        if fixed != name:
            blocks[start:start + 100] = fixed.ljust(100, b"\0")
            blocks[start + 148:start + 156] = b" " * 8
            total = sum(blocks[start:start + 512])
            blocks[start + 148:start + 156] = b"%06o\0 " % total
    archive.write_bytes(blocks)


def make_refused():
    with tempfile.TemporaryDirectory() as text:
        folder = pathlib.Path(text)
        (folder / "file").write_bytes(b"content")
        (folder / "symbolic").symlink_to("file")
        os.link(folder / "file", folder / "hard")
        os.mkfifo(folder / "fifo")
        with (folder / "sparse").open("wb") as sparse:
            sparse.write(b"beginning")
            sparse.truncate(1 << 20)
        for name, entries, options in (
                ("symbolic_link", ["file", "symbolic"], []),
                ("hard_link", ["file", "hard"], []),
                ("fifo", ["fifo"], []),
                ("sparse_gnu", ["sparse"], ["--format=gnu", "-S"]),
                ("sparse_pax_0_0", ["sparse"], ["--format=pax", "-S", "--sparse-version=0.0"]),
                ("sparse_pax_0_1", ["sparse"], ["--format=pax", "-S", "--sparse-version=0.1"]),
                ("sparse_pax_1_0", ["sparse"], ["--format=pax", "-S", "--sparse-version=1.0"])):
            extra = GNU_PAX if "--format=pax" in options else []
            archive = HERE / "refused" / f"{name}.tar"
            run(*GNU, *options, *extra, "-b1", "-cf", archive, *entries, folder=folder)
            fix_process_number(archive)
    largest_octal = 0o77777777777
    for name, layout, size in (("huge_octal", tarfile.USTAR_FORMAT, largest_octal),
                               ("huge_binary", tarfile.GNU_FORMAT, largest_octal + 1),
                               ("huge_pax", tarfile.PAX_FORMAT, largest_octal + 1)):
        entry = tarfile.TarInfo("huge.bin")
        entry.size = size
        header = entry.tobuf(layout, "utf-8", "strict")
        (HERE / "refused" / f"{name}.tar").write_bytes(header + bytes(1024))


def main():
    for folder in ("accepted", "refused"):
        shutil.rmtree(HERE / folder, ignore_errors=True)
        (HERE / folder).mkdir()
    for name, (tool, tree) in ACCEPTED.items():
        make_accepted(name, tool, tree)
    make_refused()


if __name__ == "__main__":
    main()
