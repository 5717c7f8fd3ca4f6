"""quavin pack: what it refuses, why, and that it leaves nothing behind."""

import concurrent.futures
import os
import unittest

import networks
import packages
import process
from support import CommandLineTest


class PackRefusals(CommandLineTest):
    def pack_refused(self, code, network, *options, output="new"):
        """The reason why a network is refused. Asserts that nothing is left behind."""
        packages.write_network(self.dir, network)
        return self.refused_without_traces(code, "pack", "net.xml", "-o", output, *options)

    def refused_without_traces(self, code, *arguments):
        with self.nothing_changes():
            return self.refused(code, *arguments)

    def pack_misused(self, *options, output="new"):
        packages.write_network(self.dir, networks.affine())
        with self.nothing_changes():
            return self.misused("pack", "net.xml", "-o", output, *options)


class Networks(PackRefusals):
    def test_networks_with_byte_inputs_are_refused(self):
        for element_type in "u8", "boolean":
            with self.subTest(element_type):
                reason = self.pack_refused(9, networks.affine("pixels", dtype=element_type))
                self.assertIn('"pixels"', reason)
                self.assertIn("Convert layer", reason)

    @process.adapter_only(process.OWN_TEXTS)
    def test_networks_with_unknown_dimensions_are_refused(self):
        reason = self.pack_refused(3, networks.dynamic())
        self.assertIn('"frames"', reason)
        self.assertIn("fixed dimensions", reason)

    @process.adapter_only(process.OTHER_NETWORKS)
    def test_unknown_dimensions_are_refused_with_the_command_that_fixes_them(self):
        command = "quavin-convert net.xml -o PACKAGE --shape frames=1,4"
        self.assertIn(command, self.pack_refused(3, networks.dynamic()))
        (self.dir / "net.bin").unlink()
        self.assertIn(command, self.refused_without_traces(3, "pack", "net.xml", "-o", "new"))

    @process.adapter_only(process.OTHER_NETWORKS)
    def test_several_unknown_dimensions_are_refused_with_one_command(self):
        reason = self.pack_refused(3, networks.joined(("-1,3", "2,3", "?,3", "1..8,3")))
        self.assertIn("-o PACKAGE --shape x0=1,3 --shape x2=1,3 --shape x3=1,3", reason)

    @process.adapter_only(process.OTHER_NETWORKS)
    def test_inputs_with_unknown_dimensions_are_named_as_the_converter_names_them(self):
        # In version 11 tensors have their own names.
        path = packages.write_network(self.dir, networks.dynamic())
        text = path.read_text().replace('version="10"', 'version="11"').replace("-1,4", "?,4")
        port = '<port id="0" precision="FP32"><dim>-1'
        text = text.replace(port, port.replace('P32"', 'P32" names="a &amp; b,other"'), 1)
        path.write_text(text)
        reason = self.refused_without_traces(3, "pack", "net.xml", "-o", "new")
        self.assertIn('--shape "a & b=1,4"', reason)

    def test_other_formats_are_refused_with_the_command_that_packs_them(self):
        for name in "net.onnx", "NET.ONNX", "net.pb", "a b/net.tflite", "net.pdmodel", "net.pt2":
            with self.subTest(name):
                self.write(name, "a model")
                reason = self.refused_without_traces(7, "pack", name, "-o", "new")
                quoted = f'"{name}"' if " " in name else name
                self.assertIn(f"make its package with: quavin-convert {quoted} -o PACKAGE", reason)
                self.assertIn("the Python package quavin_on_device_sdk", reason)
                self.assertIn("names the shapes to fix", reason)

    def test_a_saved_model_directory_is_refused_with_the_command_that_packs_it(self):
        self.write("saved/saved_model.pb", "a model")
        reason = self.refused_without_traces(7, "pack", "saved", "-o", "new")
        self.assertIn("quavin-convert saved -o PACKAGE", reason)

    def test_formats_that_have_to_be_exported_are_refused_with_instructions(self):
        for name in "net.pt", "net.pth", "net.ckpt":
            with self.subTest(name):
                self.write(name, "a model")
                reason = self.refused_without_traces(7, "pack", name, "-o", "new")
                self.assertIn("quavin.pack", reason)
                self.assertIn("torch.onnx.export", reason)
                self.assertIn("quavin-convert net.onnx -o PACKAGE", reason)
        for name in "net.pkl", "net.joblib":
            with self.subTest(name):
                self.write(name, "a model")
                reason = self.refused_without_traces(7, "pack", name, "-o", "new")
                self.assertIn("skl2onnx", reason)
                self.assertIn("quavin-convert net.onnx -o PACKAGE", reason)
        for name in "net.h5", "net.keras":
            with self.subTest(name):
                self.write(name, "a model")
                reason = self.refused_without_traces(7, "pack", name, "-o", "new")
                self.assertIn('model.export("net")', reason)
                self.assertIn("quavin-convert net -o PACKAGE", reason)

    def test_missing_files_of_other_formats_are_reported_as_missing(self):
        reason = self.refused_without_traces(3, "pack", "net.onnx", "-o", "new")
        self.assertIn("net.onnx cannot be opened", reason)

    def test_files_that_are_not_networks_are_refused(self):
        self.write("net.bin", "weights")
        for text in "", "{}", "\x7fELF\x02", "<net", "<a></a>":
            with self.subTest(text):
                self.write("net.xml", text)
                reason = self.refused_without_traces(3, "pack", "net.xml", "-o", "new")
                self.assertIn("net.xml", reason)
                self.assertIn("OpenVINO IR of version " + process.IR_VERSIONS, reason)

    def test_networks_without_inputs_and_outputs_are_refused(self):
        self.write("net.xml", '<net name="a" version="10"/>')
        reason = self.refused_without_traces(7, "pack", "net.xml", "-o", "new")
        self.assertIn("no inputs or no outputs", reason)

    @process.posix_only(process.ENGINE_CANNOT_FAIL)
    def test_networks_that_the_engine_cannot_compile_are_refused(self):
        self.assertIn("LRN", self.pack_refused(2, networks.uncompilable()))
        self.assertIn("LRN", self.pack_refused(2, networks.uncompilable(), output="new.tar"))

    @process.posix_only(process.ENGINE_CANNOT_FAIL)
    def test_a_refused_network_leaves_no_parent_directories(self):
        self.pack_refused(2, networks.uncompilable(), output="one/more/new")

    def test_networks_without_their_weights_are_refused(self):
        packages.write_network(self.dir, networks.affine())
        (self.dir / "net.bin").unlink()
        reason = self.refused_without_traces(3, "pack", "net.xml", "-o", "new")
        self.assertIn("weights", reason)

    def test_truncated_weights_are_refused(self):
        packages.write_network(self.dir, networks.affine())
        os.truncate(self.dir / "net.bin", 79)
        self.assertIn("weights", self.refused_without_traces(3, "pack", "net.xml", "-o", "new"))

    def test_networks_that_are_missing_or_not_files_are_refused(self):
        self.assertIn("none.xml", self.refused_without_traces(3, "pack", "none.xml", "-o", "new"))
        (self.dir / "net.xml").mkdir()
        self.assertIn("net.xml", self.refused_without_traces(3, "pack", "net.xml", "-o", "new"))

    def test_missing_named_weights_are_refused(self):
        packages.write_network(self.dir, networks.affine())
        reason = self.refused_without_traces(3, "pack", "net.xml", "no.bin", "-o", "new")
        self.assertIn("no.bin", reason)

    def test_files_with_the_same_name_in_the_package_are_refused(self):
        packages.write_network(self.dir, networks.affine())
        (self.dir / "net.xml").rename(self.dir / "manifest.json")
        call = ["pack", "manifest.json", "net.bin", "-o", "new"]
        self.assertIn("manifest.json", self.refused_without_traces(7, *call))
        packages.write_network(self.dir / "a", networks.affine())
        (self.dir / "net.bin").rename(self.dir / "net.xml")
        call = ["pack", "a/net.xml", "net.xml", "-o", "new"]
        self.assertIn("net.xml", self.refused_without_traces(7, *call))


class ReservedNames(PackRefusals):
    """Names that Windows reserves are refused on every system, since packages move between systems."""

    NAMES = ["con", "aux.model", "nul", "COM1", "lpt9", "com¹", "conin$", "a:b", "what?", "dot.", "two|"]

    def test_outputs_with_reserved_names_are_refused(self):
        for name in self.NAMES:
            for output in name, name + ".tar", "deep/" + name:
                with self.subTest(output):
                    reason = self.pack_refused(7, networks.affine(), output=output)
                    self.assertIn("Windows", reason)

    def test_archive_directories_with_reserved_names_are_refused(self):
        for name in self.NAMES:
            with self.subTest(name):
                reason = self.pack_refused(7, networks.affine(), "--root", name, output="new.tar")
                self.assertIn("--root", reason)

    @process.posix_only("no file has such a name there")
    def test_networks_and_weights_with_reserved_names_are_refused(self):
        for stem in "aux", "Con", "prn.net", "a:b":
            with self.subTest(stem):
                packages.write_network(self.dir / "nets", networks.affine(), stem)
                for output in "new", "new.tar":
                    call = ["pack", f"nets/{stem}.xml", "-o", output]
                    reason = self.refused_without_traces(7, *call)
                    self.assertIn(f'"{stem}.xml"', reason)
                    self.assertIn("rename", reason)
        packages.write_network(self.dir, networks.affine())
        (self.dir / "net.bin").rename(self.dir / "nul.bin")
        reason = self.refused_without_traces(7, "pack", "net.xml", "nul.bin", "-o", "new")
        self.assertIn('"nul.bin"', reason)

    def test_names_similar_to_reserved_ones_are_accepted(self):
        packages.write_network(self.dir, networks.affine())
        for output in "console", "aux1", "com10", "nul_.tar", ".nul":
            with self.subTest(output):
                self.succeed("pack", "net.xml", "-o", output, "--quiet")


class SeveralAtOnce(PackRefusals):
    def test_only_one_of_several_simultaneous_calls_succeeds(self):
        packages.write_network(self.dir, networks.affine())
        for output in "new.tar", "new":
            with self.subTest(output):
                with concurrent.futures.ThreadPoolExecutor(4) as pool:
                    call = ["pack", "net.xml", "-o", output, "--quiet"]
                    results = list(pool.map(lambda _: self.quavin(*call), range(4)))
                self.assertEqual(sorted(result.status for result in results), [0, 1, 1, 1])
                for result in results:
                    if result.status != 0:
                        reason = self.failure_text(7, result)
                        self.assertIn(f"{output} already exists", reason)
        self.assertEqual(
            sorted(path.name for path in self.dir.iterdir()), ["net.bin", "net.xml", "new", "new.tar"]
        )


class Descriptions(PackRefusals):
    def test_descriptions_of_unknown_ports_are_refused(self):
        reason = self.pack_refused(7, networks.arithmetic(), "--describe", "lift=the first number")
        self.assertIn('no input or output "lift"', reason)
        self.assertIn('"left", "right", "sum", "product"', reason)

    def test_descriptions_without_a_name_or_a_text_are_a_misuse(self):
        for argument in "x", "=text", "x=", "":
            with self.subTest(argument):
                self.assertIn("takes NAME=TEXT", self.pack_misused("--describe", argument))

    def test_two_descriptions_of_one_port_are_a_misuse(self):
        text = self.pack_misused("--describe", "x=one", "--describe", "x=two")
        self.assertIn("x is given more than once", text)


class Outputs(PackRefusals):
    def test_existing_outputs_are_refused(self):
        self.write("file", "precious")
        self.write("directory/file", "precious")
        (self.dir / "empty").mkdir()
        self.write("archive.tar", "precious")
        for output in "file", "directory", "directory/", "empty", "archive.tar":
            with self.subTest(output):
                reason = self.pack_refused(7, networks.affine(), output=output)
                self.assertIn(output, reason)
                self.assertIn("already exists", reason)

    @process.posix_only(process.NO_LINKS)
    def test_outputs_that_are_links_are_refused(self):
        (self.dir / "link").symlink_to("nowhere")
        self.assertIn("already exists", self.pack_refused(7, networks.affine(), output="link"))

    def test_outputs_below_a_file_are_refused(self):
        self.write("file", "precious")
        self.assertIn("file", self.pack_refused(3, networks.affine(), output="file/new"))

    def test_archive_directories_with_white_space_or_separators_are_refused(self):
        for root in "a b", "a\tb", " ", "a\nb", "a/b", "a\\b", ".", "..":
            with self.subTest(root):
                options = ["--root", root]
                reason = self.pack_refused(7, networks.affine(), *options, output="new.tar")
                self.assertIn("--root", reason)

    def test_archive_names_with_white_space_need_another_directory(self):
        reason = self.pack_refused(7, networks.affine(), output="my model.tar")
        self.assertIn('"my model"', reason)
        self.assertIn("--root", reason)

    def test_names_too_long_for_an_archive_are_refused(self):
        # "r/" and the network's name make 100 bytes, one too many.
        stem = "n" * 94
        packages.write_network(self.dir, networks.affine(), stem)
        call = ["pack", stem + ".xml", "--root", "r", "-o", "new.tar"]
        reason = self.refused_without_traces(7, *call)
        self.assertIn(stem, reason)
        self.assertIn("99", reason)


class Endings(PackRefusals):
    OTHERS = ".zip", ".gz", ".tgz", ".bz2", ".tbz2", ".xz", ".txz", ".zst", ".7z", ".rar"

    def test_endings_of_other_archives_are_rejected(self):
        for ending in *self.OTHERS, ".tar.gz", ".tar.xz", ".tar.bz2", ".tar.zst", ".ZIP", ".Tar.Gz":
            with self.subTest(ending):
                text = self.pack_misused(output="new" + ending)
                self.assertIn("--output", text)
                self.assertIn(ending.lower().rsplit(".")[-1], text)
                self.assertIn("an archive ends in .tar", text)

    def test_endings_of_other_archives_are_rejected_with_a_key_too(self):
        self.key_file()
        for what in "components", "archive":
            text = self.pack_misused("--encrypt", what, "--key-file", "key", output="new.tar.gz")
            self.assertIn("an archive ends in .tar", text)


class Options(PackRefusals):
    def test_a_key_without_encryption_is_a_misuse(self):
        self.key_file()
        self.assertIn("--encrypt", self.pack_misused("--key-file", "key"))
        self.assertIn("--encrypt", self.pack_misused("--key-env", "KEY"))

    def test_encryption_without_a_key_is_a_misuse(self):
        for what, output in ("components", "new"), ("archive", "new.tar"):
            with self.subTest(what):
                self.assertIn("--key-file", self.pack_misused("--encrypt", what, output=output))

    def test_encrypting_the_archive_needs_an_archive_as_output(self):
        self.key_file()
        options = ["--encrypt", "archive", "--key-file", "key"]
        self.assertIn(".tar", self.pack_misused(*options))

    def test_an_archive_directory_needs_an_archive_as_output(self):
        self.assertIn("--root", self.pack_misused("--root", "r"))

    def test_unknown_kinds_of_encryption_are_a_misuse(self):
        self.key_file()
        self.pack_misused("--encrypt", "everything", "--key-file", "key")

    def test_a_version_that_is_not_a_32_bit_integer_is_a_misuse(self):
        for version in "one", "1.5", "2147483648":
            with self.subTest(version):
                self.pack_misused("--model-version", version)

    def test_an_invalid_key_is_refused(self):
        packages.write_network(self.dir, networks.affine())
        self.key_file("no key")
        for what, output in ("components", "new"), ("archive", "new.tar"):
            with self.subTest(what):
                call = ["pack", "net.xml", "-o", output, "--encrypt", what, "--key-file", "key"]
                self.assertIn("hexadecimal", self.refused_without_traces(7, *call))


if __name__ == "__main__":
    unittest.main()
