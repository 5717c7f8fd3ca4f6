"""Statements with a right signature, about a model or something else."""

from cases import NOT_SIGNATURE, NOT_SUPPORTED, NULL, RESOURCES, Case, changed, signed
from signing import encoded, resource, statement


def statements(keys):
    right = statement(RESOURCES)

    def case(name, payload, problem=""):
        return Case(name, encoded(signed(keys["p256"], payload)), problem)

    def change(name, path, new, problem=""):
        return case(name, encoded(changed(right, path, new)), problem)

    text = encoded(right)
    yield case("payload_empty", b"", NOT_SIGNATURE + "its payload: it is not JSON in UTF-8")
    yield case("payload_no_object", b"[]", NOT_SIGNATURE + "its payload: it is not an object")
    yield case("payload_with_member_twice", text.replace(b'"method"', b'"method": "files", "method"'),
               NOT_SIGNATURE + "its payload: an object has two members of one name")
    yield change("extra_member_of_statement", ("extra",), [1])
    yield change("extra_member_of_predicate", ("predicate", "extra"), [1])
    yield change("extra_member_of_resource", ("predicate", "resources", 0, "extra"), [1])
    yield change("other_statement_type", ("_type",), "https://in-toto.io/Statement/v0.1",
                 NOT_SIGNATURE + "its payload is not of type https://in-toto.io/Statement/v1")
    predicate = NOT_SUPPORTED + "its predicate is not of type https://model_signing/signature/v1.0"
    yield change("other_predicate_type", ("predicateType",), "https://model_signing/signature/v2.0",
                 predicate)
    compatible = {**right, "predicateType": "https://model_signing/Digests/v0.1",
                  "subject": [{"name": one["name"], "digest": {"sha256": one["digest"]}}
                              for one in RESOURCES]}
    yield case("older_predicate_type", encoded(compatible), predicate)
    yield change("no_predicate", ("predicate",), None,
                 NOT_SIGNATURE + "its statement lists no resources")
    serialization = ("predicate", "serialization")
    unknown = NOT_SIGNATURE + "its statement does not say how the model was serialized"
    yield change("no_serialization", serialization, None, unknown)
    yield change("no_word_on_links", (*serialization, "allow_symlinks"), None, unknown)
    yield change("shards", (*serialization, "method"), "shards",
                 NOT_SUPPORTED + "its serialization is not of whole files")
    other_hash = NOT_SUPPORTED + "its hash is not SHA-256"
    yield change("other_hash", (*serialization, "hash_type"), "blake2", other_hash)
    yield change("other_algorithm", ("predicate", "resources", 0, "algorithm"), "blake3", other_hash)

    ignored = (*serialization, "ignore_paths")
    yield change("no_ignored_paths", ignored, None)
    yield change("ignored_paths", ignored, ["model.sig", ".git", "a/b", "/a", "../a", ""])
    for name, value in (("null", NULL), ("text", "model.sig"), ("an_object", {})):
        yield change(f"ignored_paths_{name}", ignored, value,
                     NOT_SIGNATURE + '"ignore_paths" is not an array')
    yield change("ignored_paths_of_other_type", ignored, ["model.sig", 1],
                 NOT_SIGNATURE + '"ignore_paths" holds something else than strings')

    subject = NOT_SIGNATURE + "its statement must have one subject with a name"
    yield change("no_subject", ("subject",), [], subject)
    yield change("subject_no_object", ("subject", 0), "package", subject)
    yield change("subject_null", ("subject", 0), NULL, subject)
    yield change("two_subjects", ("subject",), right["subject"] * 2, subject)
    yield change("subject_without_name", ("subject", 0, "name"), None, subject)
    yield change("subject_without_digest", ("subject", 0, "digest"), {"sha512": "00"},
                 NOT_SIGNATURE + "its subject has no SHA-256")
    yield change("other_subject", ("subject", 0, "digest", "sha256"), "00" * 32,
                 NOT_SIGNATURE + "the digest of its subject is not that of its resources")
    incomplete = NOT_SIGNATURE + "a resource has no name or no digest"
    yield change("resource_without_name", ("predicate", "resources", 0, "name"), None, incomplete)
    for name, value in (("null", NULL), ("text", "net.bin"), ("a_list", ["net.bin", "22" * 32])):
        yield change(f"resource_{name}", ("predicate", "resources", 1), value, incomplete)
    for name, digest in (("short", "11" * 31), ("upper_case", "AA" * 32), ("spaced", "11 " * 32)):
        yield case(f"{name}_digest", encoded(statement([resource("a", digest)])), incomplete)


def names(keys):
    def case(name, listed, problem=""):
        resources = [resource(one, f"{at:02x}" * 32) for at, one in enumerate(listed, 1)]
        return Case(name, encoded(signed(keys["p256"], encoded(statement(resources)))), problem)

    yield case("no_resources", [])
    yield case("unsorted_names", ["z", "a", "m"])
    yield case("unusual_names", ["caf\u00e9", "a b", "...", ".git/x", "a/b/c"])
    twins = NOT_SIGNATURE + "two resources have names that differ at most in case"
    yield case("name_twice", ["a", "a"], twins)
    yield case("names_that_differ_in_case", ["net.bin", "Net.bin"], twins)
    not_plain = NOT_SIGNATURE + "the name of a resource is not a plain relative path"
    yield case("name_drive", ["caf\u00e9", "a b", "...", ".git/x", "a/b/c", "C:"], not_plain)
    for name, text in (("empty", ""), ("absolute", "/net.bin"), ("dot", "./net.bin"),
                       ("parent", "../net.bin"), ("parent_inside", "a/../net.bin"), ("dots", ".."),
                       ("two_separators", "a//net.bin"), ("last_separator", "a/"),
                       ("backslash", "a\\net.bin"), ("on_a_drive", "C:/net.bin"), ("stream", "net.bin:other"),
                       ("zero_character", "net.bin\0"),
                       ("half_character", "net\udc00.bin")):
        yield case(f"name_{name}", [text], not_plain)
