"""What a terminal shows and a pipe does not get."""

import unittest

from calls import WithAPackage

COLOUR = "\x1b["


class Terminal(WithAPackage):
    def verified(self, *options, **how):
        result = self.quavin_in_terminal("verify", "package", *options, **how)
        self.assertEqual(result.status, 0)
        return result.out

    def test_has_colours(self):
        self.assertTrue(self.verified().startswith("\x1b[32mok\x1b[0m: "))

    def test_shows_letters_that_are_not_ascii(self):
        result = self.quavin_in_terminal("keygen", "größe 日本")
        self.assertEqual((result.status, result.out), (0, "Wrote a new key to größe 日本\n"))

    def test_has_no_colours_in_a_pipe(self):
        self.assertNotIn(COLOUR, self.verified(out=False))

    def test_has_no_colours_where_they_are_not_wanted(self):
        for environment in {"NO_COLOR": "1"}, {"TERM": "dumb"}:
            with self.subTest(environment):
                self.assertNotIn(COLOUR, self.verified(**environment))

    def test_has_colours_where_the_refusal_is_empty(self):
        self.assertIn(COLOUR, self.verified(NO_COLOR=""))

    def test_has_no_colours_in_quiet_results_and_in_json(self):
        (self.dir / "package" / "net.bin").unlink()
        loud = self.quavin_in_terminal("verify", "package")
        self.assertIn("\x1b[31merror\x1b[0m", loud.out)
        for option in "--quiet", "--json":
            with self.subTest(option):
                out = self.quavin_in_terminal("verify", "package", option).out
                self.assertIn("error", out)
                self.assertNotIn(COLOUR, out)

    def test_has_a_progress_bar_on_standard_error_that_goes(self):
        result = self.quavin_in_terminal(*self.call("bench"), out=False)
        self.assertIn("[", result.err)
        self.assertTrue(result.err.endswith("\r\x1b[K"), result.err)
        self.assertNotIn("\r", result.out)

    def test_has_no_progress_bar_where_it_is_not_wanted(self):
        for options, how in (([], {"err": False}), (["--quiet"], {}), (["--json"], {})):
            with self.subTest(options=options, how=how):
                result = self.quavin_in_terminal(*self.call("bench"), *options, **how)
                self.assertEqual((result.status, result.err), (0, ""))


if __name__ == "__main__":
    unittest.main()
