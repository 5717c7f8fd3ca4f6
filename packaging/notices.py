"""Writes the notices of a release: what of others is inside, under which licences, with their complete texts."""

import pathlib
import re
import textwrap

COMMON = pathlib.Path("/usr/share/common-licenses")
RULE = "=" * 79


def title_of(text):
    """How the notices refer to a text: its package and name."""
    if text.parent == COMMON:
        return f"The licence {text.name}"
    return f"{text.parent.name}: {text.name}" if text.name == "copyright" else text.name


def common_licences(texts):
    """The licences that Debian's copyright files refer to instead of repeating them."""
    names = {name.rstrip(".") for text in texts
             for name in re.findall(rf"{COMMON}/([\w.+-]+)", text.read_text(encoding="utf-8", errors="replace"))}
    return sorted(COMMON / name for name in names if (COMMON / name).is_file())


def entry(component, numbers):
    lines = [f"{component.name} {component.version}", f"    Licence: {component.licence}"]
    lines += [f"    Shipped: {path}" for path in component.found["files"]
              if not path.startswith("share/")]
    if component.found["headers"]:
        lines.append("    Headers that our binaries were compiled with")
    lines += [f"    Linked into our binaries: {name}"
              for name in sorted({pathlib.Path(path).name for path in component.found["objects"]})]
    lines.append("    Texts below: " + ", ".join(str(numbers[text]) for text in component.texts))
    return "\n".join(lines)


def notices(components, artefact):
    texts = list(dict.fromkeys(text for component in components for text in component.texts))
    texts += common_licences(texts)
    numbers = {text: number for number, text in enumerate(texts, 1)}
    head = f"""\
        {RULE}
        What of others is inside {artefact}
        {RULE}

        This list was made from the files themselves, the headers they were compiled with, and the
        linker's record. No licence has been granted yet for quavin_on_device_sdk itself."""
    parts = [textwrap.dedent(head), *(entry(component, numbers) for component in components)]
    for text in texts:
        parts.append(f"{RULE}\nText {numbers[text]}: {title_of(text)}\n{RULE}\n")
        parts.append(text.read_text(encoding="utf-8", errors="replace").replace("\r\n", "\n").strip("\n"))
    return "\n\n".join(parts) + "\n"
