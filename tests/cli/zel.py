"""Runs the zel command as people and CI do: zel.py ZEL SAMPLES_DIRECTORY"""

import json
import os
import resource
import shutil
import subprocess
import sys
import tempfile
import unittest

ZEL, SAMPLES = sys.argv[1:3]

CIRCLE = "start\ncircle\ncenterlla 1 2 0\nend\n"
BAD = "start\nfoo\ncircle\ncenterll 1 2\nend\nstart\nline\nend\nstart\n"


class Zel(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.directory)

    def path(self, name):
        return os.path.join(self.directory, name)

    def file(self, name, text):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as out:
            out.write(text if isinstance(text, bytes) else text.encode())
        return self.path(name)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read().decode()

    def zel(self, *arguments, stdin="", code=0):
        done = subprocess.run(
            [ZEL, *arguments], input=stdin.encode(), capture_output=True, timeout=60, cwd=self.directory
        )
        self.assertEqual(done.returncode, code, done.stderr)
        return done.stdout.decode(errors="replace"), done.stderr.decode(errors="replace")

    def test_check_of_the_samples(self):
        for name, blocks in ("countries-110m.zel", 286), ("coast-110m.zel", 126):
            out, err = self.zel("check", os.path.join(SAMPLES, name))
            self.assertEqual(
                out, f"1 file, {blocks} blocks read, {blocks} shapes made, 0 dropped, 0 messages\n"
            )
            self.assertEqual(err, "")

    def test_check_names_file_and_line(self):
        self.file("bad.zel", BAD)
        self.file("good.zel", CIRCLE)
        expected = (
            "bad.zel:2: Found unknown ZEL command foo\n"
            "bad.zel:6: line line has no points, cannot create shape\n"
            "bad.zel:9: start without end, the block is lost\n"
        )
        self.assertEqual(
            self.zel("check", "bad.zel", "good.zel", code=1)[0],
            expected + "2 files, 4 blocks read, 2 shapes made, 2 dropped, 3 messages\n",
        )
        self.assertEqual(self.zel("check", "-q", "bad.zel", code=1)[0], expected)
        self.assertEqual(
            self.zel("check", "-q", "-", stdin=BAD, code=1)[0], expected.replace("bad.zel", "-")
        )

    def test_check_shows_control_characters(self):
        self.file("bell.zel", b"start\ncircle\n\x1b[2J\xff\nend\n")
        out = self.zel("check", "-q", "bell.zel", code=1)[0]
        self.assertIn("Found unknown ZEL command \\x1b[2j", out)

    def test_what_cannot_be_read(self):
        self.file("dir/sub/a.ZEL", CIRCLE)
        self.file("dir/not.txt", "x")
        os.mkdir(self.path("empty"))
        for name, reason in (
            ("missing.zel", "No such file or directory"),
            ("dir", "Is a directory"),
            ("/dev/null", "Is a device, not a file"),
        ):
            for command in "check", "info", "format":
                out, err = self.zel(command, name, code=2)
                self.assertTrue(err.startswith(f"zel: {name}: {reason}"), err)
        self.assertIn("no .zel file", self.zel("check", "-r", "empty", code=2)[1])
        self.assertTrue(self.zel("check", "-r", "dir")[0].startswith("1 file, 1 block read"))
        # The others are still read.
        self.assertIn("1 file, 1 block read", self.zel("check", "none", "dir/sub/a.ZEL", code=2)[0])
        if os.geteuid() != 0:
            os.chmod(self.file("secret.zel", CIRCLE), 0)
            self.assertIn("Permission denied", self.zel("check", "secret.zel", code=2)[1])

    def test_wrong_calls(self):
        for arguments in (), ("bogus",), ("check",), ("check", "--bogus", "x"):
            self.zel(*arguments, code=2)
        self.assertIn("check", self.zel("--help")[0])
        self.assertIn("--in-place", self.zel("format", "--help")[0])
        self.assertRegex(self.zel("--version")[0], r"^zel \d")

    def test_check_asks_about_places(self):
        self.file("odd.zel", "start\npoints\nll 100 200\nll -157 21\nend\n")
        out = self.zel("check", "--strict", "odd.zel", code=1)[0]
        self.assertIn('odd.zel:3: warning: "100" is a latitude of 100 degrees\n', out)
        self.assertIn("odd.zel:4: warning: ", out)
        for lines, line in ("circle\nradius 5\n", 1), ("annotation A\n", 1), ("sphere\nref 1 2\n", 0), ("line\nxy 1 2\nxy 3 4\n", 0):
            self.file("odd.zel", f"start\n{lines}end\n")
            self.assertEqual("has no place but" in self.zel("check", "--strict", "odd.zel", code=line)[0], line == 1)
            self.zel("format", "-i", "odd.zel")
        self.zel("info", "odd.zel")

    def test_info(self):
        self.file(
            "a.zel",
            "start\npoints\nlla 21.3 -158 10\nlla -1 2 30\naltitudeunits m\n3d name Größe\nend\n"
            "start\ncircle\ncenterxy 5 -6\nrangeunits m\nend\n"
            "start\nlatlonaltbox 40 30 10 20 0\nend\n"
            "start\nannotation My_Label\n3d name Its_Name\nend\n",
        )
        table = self.zel("info", "a.zel")[0]
        self.assertIn("4 blocks, 4 shapes, 2 points, 0 messages", table)
        self.assertRegex(
            table, r"points +Größe +2 +m yd deg +lat -1 to 21.3, lon -158 to 2, alt 10 to 30 m\n"
        )
        self.assertIn("east 5 to 5 m, north -6 to -6 m", table)
        self.assertNotIn("Größe", self.zel("info", "-s", "a.zel")[0])
        (described,) = json.loads(self.zel("info", "--json", "a.zel")[0])
        self.assertEqual(
            described["bounds"],
            {"south": -1, "north": 40, "west": -158, "east": 20, "altitudeMin": 0, "altitudeMax": 30},
        )
        self.assertEqual(described["relativeBounds"]["northMin"], -6)
        self.assertEqual(described["kinds"], {"annotation": 1, "circle": 1, "latlonaltbox": 1, "points": 1})
        self.assertEqual([s["name"] for s in described["list"]], ["Größe", "circle", "latlonaltbox", "Its_Name"])
        self.assertEqual(described["list"][3]["bounds"], None)
        # Read in pieces, each shape is listed once and in its place.
        names = [f"n{i}" for i in range(30000)]
        self.file("many.zel", "".join(f"start\ncircle\n3d name {name}\ncenterll 1.5 2\nradius 3\nend\n" for name in names))
        self.assertEqual([line.split()[1] for line in self.zel("info", "many.zel")[0].splitlines()[5:]], names)
        (described,) = json.loads(self.zel("info", "--json", "many.zel")[0])
        self.assertEqual([s["name"] for s in described["list"]], names)
        self.assertEqual([described["bounds"]] * len(names), [s["bounds"] for s in described["list"]])
        self.file("bad.zel", BAD)
        self.assertIn("3 messages", self.zel("info", "bad.zel", code=1)[0])
        self.file("latin1.zel", b"start\ncircle\n3d name \xe9t\xe9\nend\n")
        self.assertEqual(json.loads(self.zel("info", "--json", "latin1.zel")[0])[0]["list"][0]["name"], "�t�")

    def test_format_prints(self):
        text = "\ufeff# Header\r\nstart\r\nRADIUS 5\r\n# Inside\r\ncircle\r\nend\r\n// Tail"
        formatted = "version 2\n\n# Header\nstart\n# Inside\ncircle\nradius 5\nend\n\n// Tail\n"
        # With its own line ends and byte order mark.
        self.assertEqual(self.zel("format", "-", stdin=text)[0], "\ufeff" + formatted.replace("\n", "\r\n"))
        self.assertEqual(self.zel("format", "-", stdin=formatted)[0], formatted)
        out, err = self.zel("format", "-", stdin=BAD, code=1)
        self.assertEqual(out, "version 2\n\n" + CIRCLE + "\n")
        self.assertIn("-:2: Found unknown", err)
        # Bytes that are not UTF-8 pass through.
        self.file("latin1.zel", b"start\ncircle\n3d name \xe9\nend\n")
        done = subprocess.run([ZEL, "format", self.path("latin1.zel")], capture_output=True, check=True)
        self.assertEqual(done.stdout, b"version 2\n\nstart\ncircle\n3d name \xe9\nend\n\n")

    def test_format_in_place(self):
        copy = shutil.copy(os.path.join(SAMPLES, "countries-110m.zel"), self.path("c.zel"))
        os.chmod(copy, 0o640)
        self.zel("format", "-i", "c.zel")
        once = self.read("c.zel")
        self.assertIn("3d name Côte d'Ivoire\n", once)
        self.assertEqual(os.stat(copy).st_mode & 0o777, 0o640)
        before = os.stat(copy).st_mtime_ns
        self.zel("format", "-i", "c.zel")
        self.assertEqual(self.read("c.zel"), once)
        self.assertEqual(os.stat(copy).st_mtime_ns, before)
        self.assertTrue(self.zel("check", "c.zel")[0].startswith("1 file, 286 blocks read, 286 shapes made"))

    def test_format_in_place_loses_nothing_unasked(self):
        self.file("bad.zel", BAD)
        self.assertIn("Not rewritten", self.zel("format", "-i", "bad.zel", code=1)[1])
        self.assertEqual(self.read("bad.zel"), BAD)
        self.zel("format", "-i", "--force", "bad.zel", code=1)
        self.assertEqual(self.read("bad.zel"), "version 2\n\n" + CIRCLE + "\n")
        self.file("none.zel", "# only a comment\n")
        self.zel("format", "-i", "none.zel", code=1)
        self.assertEqual(self.read("none.zel"), "# only a comment\n")

    def test_what_the_reader_passes_over_in_silence(self):
        line = "start\nline\nll 3 4\nll 5 6\n{}end\n"
        circle = "start\ncircle\ncenterll 1 2\nradius 5\n{}end\n"
        red = "names no color that is known, and means red"
        more = "has more words than are read"
        for block, warning in (
            (line.format("ll 21.3O -157.8\n"), '5: warning: "ll 21.3O -157.8" cannot be read, and is passed over'),
            (line.format("lla 1 2 1,000\n"), '5: warning: "lla 1 2 1,000" has an altitude that cannot be read, and means 0'),
            (line.format("xyz 1 2 3\n" * 2).replace("xyz 1 2 3\n", "", 1), '5: warning: "xyz 1 2 3" means nothing here'),
            (line.format("altitudemode clamptogroud\n"), '5: warning: "altitudemode clamptogroud" cannot be read, and is passed over'),
            (line.format("verticaldatum egm2020\n"), '5: warning: "verticaldatum egm2020" cannot be read, and is passed over'),
            (line.format("LineColor Purple\n"), f'5: warning: "LineColor Purple" {red}'),
            (line.format("radius 5\n"), '5: warning: "radius 5" means nothing here'),
            (line.format("linewidth 2 px\n"), f'5: warning: "linewidth 2 px" {more}'),
            (line.format("filled true\nref 1 2\nlinecolor red\n"), None),
            (line.format("extrude true 50\naltitudemode none\n"), '5: warning: "extrude true 50" is passed over in part, because line 6 counts'),
            (line.format("3d follow cq\n"), '5: warning: "3d follow cq" is read in part: only c, p and r mean something'),
            (line.format("linestyle\n"), '5: warning: "linestyle" has no value, and is passed over'),
            (line.format("extrude false\naltitudemode none\n"), '5: warning: "extrude false" is passed over: nothing is extruded unless a line says so'),
            (line.format("extrude false 100\n"), '5: warning: "extrude false 100" has a height that means nothing'),
            (line.format("").replace("start", "start here"), f'1: warning: "start here" {more}'),
            ("version 1\n" + line.format(""), '1: warning: "version 1" is read as "version 2"'),
            (circle.format("diameter 3\n"), '4: warning: "radius 5" is passed over, because line 5 counts'),
            (circle.format("lla 1 2 3\n"), '5: warning: "lla 1 2 3" means nothing here'),
            (circle.format("innerradius 3\n"), '5: warning: "innerradius 3" is passed over'),
            ("start\nannotation A\nll 1 2\nll 3 4\nend\n", '4: warning: "ll 3 4" is passed over, because line 3 counts'),
            ("start\narc\ncenterll 1 2\nangleend 4\nangledeg 7\nend\n", '4: warning: "angleend 4" is passed over, because line 5 counts'),
            # The same, but far from the end of the text, where plain points are read in another way.
            (line.format("xyz 1 2 3\n") + "# " + 100 * "x" + "\n", '5: warning: "xyz 1 2 3" means nothing here'),
        ):
            wanted = f"x.zel:{warning}\n" if warning else ""
            self.file("x.zel", block)
            self.assertEqual(self.zel("check", "-q", "x.zel")[0], wanted)
            self.assertEqual(self.zel("check", "-q", "--strict", "x.zel", code=1 if warning else 0)[0], wanted)
            self.assertIn(wanted, self.zel("format", "-i", "x.zel", code=1 if warning else 0)[1])
            self.assertEqual(self.read("x.zel") == block, warning is not None)
        # A circle without a place must not come to stand on a platform.
        placeless = "start\ncircle\ncenterll2 1 2\nradius 5\nend\n"
        self.file("x.zel", placeless + CIRCLE)
        self.zel("format", "-i", "x.zel", code=1)
        self.assertIn("x.zel:1: warning: circle has no place", self.zel("format", "-i", "--force", "x.zel", code=1)[1])
        self.assertEqual(self.read("x.zel"), "version 2\n\n" + CIRCLE + "\n")

    def test_edit(self):
        for name in os.listdir(SAMPLES):
            if name.endswith(".zel"):
                with open(os.path.join(SAMPLES, name), "rb") as sample:
                    self.assertEqual(self.zel("edit", "-q", os.path.join(SAMPLES, name))[0].encode(), sample.read())
        kept = "start\nlatlonaltbox 1 0 0 1 0\nend\n"
        for text, code in ("", 0), ("# nothing\r\n", 0), (kept, 0), ("start\nline\nxy 1 2\nxy 3 4\nend", 0), (
            "\ufeffstart\r\n circle\t\nCENTERLL 1 2\nfoo\nend # x\nstart", 1
        ):
            self.assertEqual(self.zel("edit", "-q", "-", stdin=text, code=code)[0], text)
        self.assertEqual(self.zel("edit", "-q", "-", stdin="no overlay", code=1)[1].splitlines()[-1], "-: no valid shapes found")
        self.assertEqual(self.zel("edit", "-q", "-", stdin="start\nline\nxy 1 2\nxy 3 4\nend"), ("start\nline\nxy 1 2\nxy 3 4\nend", ""))
        self.assertEqual(self.zel("edit", "--rewrite", "-q", "-", stdin=kept)[0], kept)
        text = "# a\nstart\nlinesegs\nll 0 0\nll 1 1\n# b\nlinestyle dashed\nfoo 1\nend\nstart\nlatlonaltbox 1 0 0 1 0\nend\n"
        self.assertIn("-: 1 latlonaltbox is kept as it is", self.zel("edit", "-", stdin=text.replace("foo", "#"))[1])
        # What cannot be read is not kept either.
        self.assertIn('"centerxy 21.3O 5" is not in the new block', self.zel("edit", "--rewrite", "-", code=1, stdin="start\nline\nxy 1 2\nxy 3 4\nend\nstart\ncircle\ncenterxy 21.3O 5\nradius 2\nend\n")[1])
        out, err = self.zel("edit", "--rewrite", "-", stdin=text, code=1)
        self.assertEqual(
            out,
            "# a\nstart\n# b\nline\nlla 0 0 0\nlla 1 1 0\nlinewidth 1\nlinecolor hex 0xff0000ff\nlinestyle dashed\n"
            "fillcolor hex 0xff0000ff\n3d name linesegs\naltitudeunits m\nangleunits deg\nrangeunits m\nend\n"
            "start\nlatlonaltbox 1 0 0 1 0\nend\n",
        )
        self.assertIn('-:2: "linesegs" becomes one line through all of its points\n', err)
        self.assertIn('-:8: linesegs "linesegs": "foo 1" is not in the new block\n', err)
        self.assertIn("1 file, 1 shape, 2 lines lost\n", err)

    def test_edit_keeps_offsets(self):
        line = "start\nline\nxyz 0 1200 0\nxyz 500 -1000 7\nrangeunits m\naltitudeunits m\n{}end\n"
        # Each block keeps what it counts from, beside places too.
        circle = "start\ncircle\ncenterll 1 2\nradius 5\nrangeunits m\nend\n"
        mixed = line.format("ref 21.3 -157.9\n") + line.format("") + circle + line.format("ref 21.4 -157.9\n")
        out = self.zel("edit", "--rewrite", "-q", "-", stdin=mixed)[0]
        self.assertEqual(out.count("\nxyz 0 1200 0\nxyz 500 -1000 7\n"), 3)
        self.assertEqual(out.count("\nref 21.3 -157.9 0\n"), 1)
        self.assertEqual(out.count("\nref "), 2)
        self.assertIn("\ncenterlla 1 2 0\n", out)

    def test_output_that_cannot_be_written(self):
        with open("/dev/full", "w") as full:
            done = subprocess.run(
                [ZEL, "format", os.path.join(SAMPLES, "coast-110m.zel")], stdout=full, stderr=subprocess.PIPE
            )
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"could not be written", done.stderr)

    def test_a_file_larger_than_the_user_may_write(self):
        text = CIRCLE.replace("end", "radius 3\nend") * 2000
        file = self.file("large.zel", text)
        done = subprocess.run(
            [ZEL, "format", "-i", file],
            stderr=subprocess.PIPE,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192)),
        )
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"the file is too large", done.stderr)
        self.assertEqual(self.read("large.zel"), text)
        self.assertEqual(os.listdir(self.directory), ["large.zel"])

    def test_completion_knows_the_options(self):
        script = os.path.join(os.path.dirname(SAMPLES), "cli", "zel.bash")
        self.file("x.zel", CIRCLE)
        self.file("x.txt", "")
        for words, expected in (
            (["zel", "ch"], {"check"}),
            (["zel", "format", "--"], {"--in-place", "--force", "--recursive", "--help"}),
            (["zel", "info", "x"], {"x.zel"}),
        ):
            quoted = " ".join(f"'{word}'" for word in words)
            command = (
                f"source '{script}'; COMP_WORDS=({quoted}); COMP_CWORD={len(words) - 1}; "
                '_zel; printf "%s\\n" "${COMPREPLY[@]}"'
            )
            done = subprocess.run(
                ["bash", "-c", command], capture_output=True, text=True, cwd=self.directory, check=True
            )
            self.assertEqual(set(done.stdout.split()), expected)
            if words[1] == "format":
                shown = self.zel("format", "--help")[0]
                for option in expected:
                    self.assertIn(option, shown)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
