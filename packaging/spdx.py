"""Writes a bill of materials, as SPDX 2.3 in JSON, for one archive."""

import hashlib
import json
import re
import time
import uuid

from components import files_in

# Each document has a name of its own in this space, as the format's authors recommend.
SPACE = "https://spdx.org/spdxdocs"

EXTRACTED = {
    "LicenseRef-mingw-w64-runtime":
        "Zope Public License 2.1, MIT, BSD and public domain; the notices inside the archive have the complete texts.",
}


def digests(content):
    return [{"algorithm": name, "checksumValue": hashlib.new(name.lower(), content).hexdigest()}
            for name in ("SHA1", "SHA256")]


def identifier(*parts):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]+", "-", "-".join(parts))


def describe_files(folder, top):
    """The plain files; links are not content."""
    described = {}
    for number, name in enumerate(files_in(folder)):
        path = folder / name
        if path.is_symlink():
            continue
        described[name] = {
            "SPDXID": identifier("File", str(number)),
            "fileName": f"./{top}/{name}",
            "checksums": digests(path.read_bytes()),
            "licenseConcluded": "NOASSERTION",
            "licenseInfoInFiles": ["NOASSERTION"],
            "copyrightText": "NOASSERTION",
        }
    return described


def verification_code(files):
    sums = sorted(file["checksums"][0]["checksumValue"] for file in files)
    return {"packageVerificationCodeValue": hashlib.sha1("".join(sums).encode()).hexdigest()}


def describe_archive(archive, name, version, files):
    return {
        "SPDXID": identifier("Archive"),
        "name": name,
        "versionInfo": version,
        "packageFileName": archive.name,
        "primaryPackagePurpose": "ARCHIVE",
        "downloadLocation": "NOASSERTION",
        "checksums": digests(archive.read_bytes()),
        "filesAnalyzed": True,
        "packageVerificationCode": verification_code(files),
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": "NONE",
        "licenseInfoFromFiles": ["NOASSERTION"],
        "copyrightText": "NOASSERTION",
        "supplier": "NOASSERTION",
    }


def describe_component(component):
    return {
        "SPDXID": identifier("Component", component.name),
        "name": component.name,
        "versionInfo": component.version,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": component.licence,
        "copyrightText": "NOASSERTION",
        "supplier": "NOASSERTION",
    }


def relation(element, kind, other):
    return {"spdxElementId": element, "relationshipType": kind, "relatedSpdxElement": other}


def relations(package, components, files):
    yield relation("SPDXRef-DOCUMENT", "DESCRIBES", package["SPDXID"])
    for file in files.values():
        yield relation(package["SPDXID"], "CONTAINS", file["SPDXID"])
    for component in components:
        inside = identifier("Component", component.name)
        if component.found["headers"] or component.found["objects"]:
            yield relation(package["SPDXID"], "STATIC_LINK", inside)
        if component.found["files"]:
            yield relation(package["SPDXID"], "CONTAINS", inside)
        for name in component.found["files"]:
            if name in files:
                yield relation(files[name]["SPDXID"], "GENERATED_FROM", inside)


def bill(folder, top, archive, version, components, when):
    files = describe_files(folder, top)
    package = describe_archive(archive, top, version, files.values())
    licences = {component.licence for component in components} & EXTRACTED.keys()
    digest = package["checksums"][1]["checksumValue"]
    document = {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": archive.name,
        "documentNamespace": f"{SPACE}/{archive.name}-{uuid.uuid5(uuid.NAMESPACE_OID, digest)}",
        "creationInfo": {
            "created": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(when)),
            "creators": [f"Tool: quavin_on_device_sdk-packaging-{version}"],
        },
        "packages": [package, *(describe_component(component) for component in components)],
        "files": list(files.values()),
        "relationships": list(relations(package, components, files)),
    }
    if licences:
        document["hasExtractedLicensingInfos"] = [
            {"licenseId": name, "extractedText": EXTRACTED[name]} for name in sorted(licences)]
    return json.dumps(document, indent=1) + "\n"
