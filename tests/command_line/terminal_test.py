"""What is printed to a terminal but not to a pipe."""

import unittest

from calls import WithAPackage

COLOUR = "\x1b["


class Terminal(WithAPackage):
    def verified(self, *options, **how):
        result = self.quavin_in_terminal("verify", "package", *options, **how)
        self.assertEqual(result.status, 0)
        return result.out

    def test_results_are_coloured(self):
        self.assertTrue(self.verified().startswith("\x1b[32musable\x1b[0m: "))

    def test_non_ascii_letters_are_shown(self):
        result = self.quavin_in_terminal("keygen", "größe 日本")
        self.assertEqual((result.status, result.out), (0, "Wrote a new key to größe 日本\n"))

    def test_pipes_get_no_colours(self):
        self.assertNotIn(COLOUR, self.verified(out=False))

    def test_colours_can_be_switched_off(self):
        for environment in {"NO_COLOR": "1"}, {"TERM": "dumb"}:
            with self.subTest(environment):
                self.assertNotIn(COLOUR, self.verified(**environment))

    def test_an_empty_no_color_variable_keeps_colours(self):
        self.assertIn(COLOUR, self.verified(NO_COLOR=""))

    def test_quiet_results_and_json_are_not_coloured(self):
        (self.dir / "package" / "net.bin").unlink()
        loud = self.quavin_in_terminal("verify", "package")
        self.assertIn("\x1b[31merror\x1b[0m", loud.out)
        for option in "--quiet", "--json":
            with self.subTest(option):
                out = self.quavin_in_terminal("verify", "package", option).out
                self.assertIn("error", out)
                self.assertNotIn(COLOUR, out)

    def test_progress_bar_appears_on_standard_error_and_is_removed(self):
        result = self.quavin_in_terminal(*self.call("bench"), out=False)
        self.assertIn("[", result.err)
        self.assertTrue(result.err.endswith("\r\x1b[K"), result.err)
        self.assertNotIn("\r", result.out)

    def test_progress_bar_can_be_switched_off(self):
        for options, how in (([], {"err": False}), (["--quiet"], {}), (["--json"], {})):
            with self.subTest(options=options, how=how):
                result = self.quavin_in_terminal(*self.call("bench"), *options, **how)
                self.assertEqual((result.status, result.err), (0, ""))


if __name__ == "__main__":
    unittest.main()
