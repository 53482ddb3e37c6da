"""Runs the programs as a user would, in a folder of their own with the file "apart" of two atoms.

The environment variables VORLANE_EXAMPLES, structures and chains name the folders of the programs and of the example
data.
"""

import csv
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

root = pathlib.Path(__file__).resolve().parents[2]
data = root / "examples/data"
os.environ["structures"] = str(data / "structures")
os.environ["chains"] = str(data / "chains")

# Programs with their arguments, the exit status, and pieces of what is written to the standard output and error.
calls = (
    ("geometry_gallery /no/such/folder/gallery.svg", 1, "/no/such/folder/gallery.svg"),
    ("geometry_gallery --colour", 2, "usage"),
    ("ribbon $chains/1guy_ca_with_break.xyz", 0, "</svg>"),
    ("ribbon $chains/SOURCES.md", 1, "SOURCES.md"),
    ("ribbon $chains/1orc_ca.xyz /no/such/folder/ribbon.svg", 1, "/no/such/folder/ribbon.svg"),
    ("ribbon", 2, "usage"),
    ("ramp_swatches --help", 0, "ramp_swatches"),
    ("ramp_swatches --colour", 2, "usage"),
    ("ramp_swatches one two", 2, "usage"),
    ("ramp_swatches /no/such/folder/page.svg", 1, "/no/such/folder/page.svg"),
    ("coordination_report --help", 0,
     "--centre", "--all-centres", "--cutoff", "--all-contacts", "--tsv", "--svg", "--html", "--scene", "--ribbon"),
    ("coordination_report $structures/cr_co_5.xyz", 0, """cr_co_5.xyz, 11 atoms
  pentacarbonylchromium Cr(CO)5 (square pyramidal)
  Cr1: coordination number 5
    ligands    C4 1.835, C3 1.910, C6 1.910, C8 1.910, C10 1.910
    deviation  fit     geometry
     0.000229  0.0068  squarePlanarPyramidal     spy5
     0.765071  0.3320  trigonalBipyramidal       tbpy5
    sites of squarePlanarPyramidal: 1 C4, 2 C3, 3 C8, 4 C6, 5 C10

"""),
    ("coordination_report absent $structures/co_nh3_6.xyz", 1,
     "coordination_report: absent: no such file\n", "Co1: coordination number 6"),
    ("coordination_report --centre Fe $structures/co_nh3_6.xyz", 1, "co_nh3_6.xyz: there is no Fe in it"),
    ("coordination_report --centre 26 $structures/co_nh3_6.xyz", 1, "co_nh3_6.xyz: there is no atom 26 among 25"),
    ("coordination_report --centre N1 $structures/co_nh3_6.xyz", 1, "co_nh3_6.xyz: the atom 1 is Co, not N"),
    ("coordination_report --centre Qq $structures/co_nh3_6.xyz", 1,
     "--centre wants an element, a number or both, not 'Qq'"),
    ("coordination_report --html absent/page.html $structures/co_nh3_6.xyz", 1, "absent/page.html: cannot be written"),
    ("coordination_report --svg /dev/null $structures/co_nh3_6.xyz", 1, "/dev/null: cannot be made a folder"),
    ("coordination_report --scene /dev/full $structures/co_nh3_6.xyz", 1,
     "/dev/full: the scenes are not stored: cannot write"),
    ("coordination_report --scene /dev/null $structures/co_nh3_6.xyz", 1, "/dev/null: the scenes are not stored: "),
    ("coordination_report --scene absent/scene $structures/co_nh3_6.xyz", 1,
     "absent/scene: the scenes are not stored: cannot open"),
    ("coordination_report --html page --ribbon absent $structures/co_nh3_6.xyz", 1, "absent: no such file"),
    ("coordination_report --html page --ribbon apart", 1, "no two neighbours are near enough for a ribbon"),
    ("coordination_report --ribbon $structures/co_nh3_6.xyz", 2, "--ribbon wants --svg or --html to draw into"),
    ("coordination_report", 2, "no file is named"),
    ("coordination_report --cutoff 0 $structures/co_nh3_6.xyz", 2,
     "--cutoff wants a distance above 0 in angstrom, not '0'"),
    ("coordination_report --cutoff", 2, "--cutoff wants a value"),
    ("coordination_report --tsv=yes $structures/co_nh3_6.xyz", 2, "unknown option --tsv=yes"),
    ("coordination_report --colour $structures/co_nh3_6.xyz", 2, "unknown option --colour"),
    ("scene_inspect scene", 2, "FILE and --as LIST are needed"),
    ("scene_inspect absent --as sphere", 2, "scene_inspect: "),
    ("scene_inspect scene --as ball", 2, "there is no kind 'ball'; --kinds lists them"),
    ("scene_inspect --kinds", 0, "cylinder\n", "sphere\n", "text3d\n"),
)

# Structures that cannot be read, and what is said of them.
bad_files = (
    ("", ": the file is empty"),
    ("x\nc\nO 0 0 0\n", ":1: the number of atoms is wanted here, not 'x'"),
    ("0\nc\n", ":1: the number of atoms is wanted here, not '0'"),
    ("1.5\nc\nO 0 0 0\n", ":1: the number of atoms is wanted here, not '1.5'"),
    ("99999999999999999999\nc\n", ":1: the number of atoms is wanted here, not '99999999999999999999'"),
    ("3000000000\nc\n", ":1: the number of atoms is wanted here, not '3000000000'"),
    ("3\nc\nO 0 0 0\nH 1 0 0\n", ":5: line 1 promises 3 atoms, but the file ends after 2"),
    ("2\nc\nO 0 0 0\n\nH 1 0 0\n", ":4: line 1 promises 2 atoms, but after 1 comes a blank line"),
    ("1\nc\nO 0 0 0\nH 1 0 0\n", ":4: line 1 promises 1 atom, but there are more lines"),
    ("2\r\nc\r\nO 0 0 0\r\nH 1 1,5 0\r\n", ":4: the coordinate y is no number: '1,5'"),
    ("1\nc\nO 0 nan 0\n", ":3: the coordinate y is no number: 'nan'"),
    ("1\nc\nO 0 0x10 0\n", ":3: the coordinate y is no number: '0x10'"),
    ("1\nc\nO 0 0 1e999\n", ":3: the coordinate z is no number: '1e999'"),
    ("1\nc\nO 0 0 +-1\n", ":3: the coordinate z is no number: '+-1'"),
    ("1\nc\nO 0 0\n", ":3: the coordinate z is missing"),
    ("1\nc\nXx 0 0 0\n", ":3: 'Xx' is no element"),
)

# Bytes of archives, the list of kinds, the exit status, and what is said of them.
archives = (
    (b"1" * 32, "sphere", 0, "      28  31 31 31 31", "sphere.vertex.color = red 49 green 49 blue 49 alpha 49"),
    (b"1" * 30, "sphere", 1,
     "The file stops fitting at offset 28: sphere.size needs 4 byte(s), but the file has 2 left"),
    (b"1" * 40, "sphere", 1, "The list ends at offset 32, but the file has 8 bytes more"),
    (b"\xFF\xFF\xFF\xFF\x02\0\0ab", "text", 1,
     "offset 7: text.text is a text of 767 characters of 1 byte(s), but the file has 2 bytes left"),
)

# The columns of the expected deviations, and the names that the report gives them.
geometries = {
    "trigonal_pyramidal": "trigonalPyramidal",
    "t_shaped": "tShaped",
    "tetrahedral": "tetrahedral",
    "square_planar": "squarePlanar",
    "trigonal_planar_pyramidal": "trigonalPlanarPyramidal",
    "seesaw_oct": "seeSaw",
    "seesaw_tbp": "ss4tbpy5",
    "trigonal_bipyramidal": "trigonalBipyramidal",
    "square_pyramidal": "squarePlanarPyramidal",
    "octahedral": "octahedral",
    "trigonal_prismatic": "trigonalPrismatic",
    "trigonal_antiprismatic": "trigonalAntiprismatic",
}


def read(path):
    return pathlib.Path(path).read_text(encoding="utf-8")


def atom_numbers(atoms):
    """The numbers of some atoms, from 1: of "Cl3,N10", or of "2,9", which counts from 0."""
    return sorted(int(re.sub("[A-Za-z]+", "", atom)) + (1 if atom.isdigit() else 0) for atom in atoms.split(","))


class Programs(unittest.TestCase):
    def setUp(self):
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        os.chdir(folder)
        pathlib.Path("apart").write_text("2\nc\nC 0 0 0\nC 9 0 0\n")

    def run_program(self, call, status=0):
        """What a program writes to the standard output, and to the standard error."""
        call = os.environ["VORLANE_EXAMPLES"] + "/" + call
        done = subprocess.run(call, shell=True, capture_output=True, encoding="utf-8")
        self.assertEqual(done.returncode, status, done.stderr)
        return done.stdout, done.stderr

    def report(self, arguments):
        out, complaints = self.run_program("coordination_report --tsv " + arguments)
        self.assertEqual(complaints, "")
        rows = list(csv.DictReader(out.splitlines(), dialect="excel-tab"))
        self.assertTrue(all(None not in (*row.keys(), *row.values()) for row in rows), "a row has its length")
        return rows

    def assert_shows(self, call, status, pieces):
        with self.subTest(call=call):
            written = "".join(self.run_program(call, status))
            for piece in pieces:
                self.assertIn(piece, written)

    def test_they_answer_their_calls(self):
        for call, status, *pieces in calls:
            self.assert_shows(call, status, pieces)

    def test_bad_files_are_named_and_the_others_still_reported(self):
        for text, complaint in bad_files:
            with self.subTest(text=text):
                pathlib.Path("bad.xyz").write_text(text, newline="")
                out, complaints = self.run_program("coordination_report bad.xyz $structures/co_nh3_6.xyz", 1)
                self.assertEqual(complaints, f"coordination_report: bad.xyz{complaint}\n")
                self.assertIn("Co1: coordination number 6", out)

    def test_they_draw_the_pictures_of_the_documents(self):
        self.run_program("ribbon $chains/1c1n_ca.xyz ribbon.svg")
        self.run_program("coordination_report --svg drawn --ribbon $chains/1c1n_ca.xyz "
                         "$structures/catio3_perovskite.xyz")
        self.run_program("ramp_swatches ramp_swatches.svg")
        pathlib.Path("geometry_gallery.svg").write_text(self.run_program("geometry_gallery")[0])
        for drawn, shown in (("ribbon.svg", "ribbon.svg"), ("drawn/1c1n_ca-ribbon.svg", "ribbon.svg"),
                             ("drawn/catio3_perovskite-Ti1.svg", "report.svg"),
                             ("ramp_swatches.svg", "ramp_swatches.svg"),
                             ("geometry_gallery.svg", "geometry_gallery.svg")):
            self.assertTrue(read(drawn) == read(root / "docs" / shown), drawn)

    def test_they_draw_from_stored_scenes_and_inspect_them(self):
        self.run_program("coordination_report --scene scene --html with.html $structures")
        self.run_program("coordination_report --html without.html $structures")
        self.assertTrue(read("with.html") == read("without.html"))
        inspect = 'scene_inspect scene --as "$(cat scene.list)"'
        self.run_program(inspect)
        self.run_program("coordination_report --scene scene $structures/co_nh3_6.xyz")
        self.assertEqual(read("scene.list"), "attributes,sphere*7,cylinder*6,mesh,text3d*7\n")
        # An octahedron: eight faces with three corners of their own, all translucent.
        fields = self.run_program(inspect + " --entries 99")[0]
        self.assertEqual(fields.count("mesh.triangles count = 8\n"), 1)
        self.assertEqual(fields.count('text3d[6].text = "N7"'), 1)
        for content, kinds, status, *pieces in archives:
            pathlib.Path("bytes").write_bytes(content)
            self.assert_shows("scene_inspect bytes --as " + kinds, status, pieces)

    def test_centres_are_reported_and_how_well_they_fit(self):
        centres = self.report("--all-centres --centre zn $structures/zns_wurtzite.xyz")
        self.assertEqual(len({row["centre"] for row in centres}), 57)
        oxalate = "$structures/cr_ox_3_3minus.xyz"
        self.assertEqual(self.report(oxalate)[0]["cn"], "6")
        self.assertEqual(self.report("--all-contacts " + oxalate)[0]["cn"], "12")  # the carbons too
        self.assertEqual(self.report("--cutoff=1.98 " + oxalate)[0]["cn"], "3")
        pathlib.Path("tetrahedron.xyz").write_text(
            "5\nc\nZn 0 0 1e-999\nCl 1 1 1\nCl 1 -1 -1\nCl -1 1 -1\nCl -1 -1 1\n")
        fits = {row["geometry"]: float(row["fit"]) for row in self.report("tetrahedron.xyz")}
        self.assertAlmostEqual(fits["tetrahedral"], 0.0, delta=1e-7)
        # Each direction lies on the square but for its height, which is a third of it squared.
        self.assertAlmostEqual(fits["squarePlanar"], (2.0 - 2.0 * (2.0 / 3.0) ** 0.5) ** 0.5, delta=1e-8)

    def test_real_structures_give_the_expected_geometries_and_deviations(self):
        numbers = {}  # coordination numbers by file and centre, without options
        for row in self.report("--html page.html --svg pictures $structures"):
            file, centre = row["file"], row["centre"]
            numbers[file, centre] = row["cn"]
            picture = read(f"pictures/{pathlib.Path(file).stem}-{centre}.svg")
            self.assertRegex(picture, f"(?s)>{centre} in {file}</text>.*</svg>\n$")
            self.assertIn(f">{file}</h2>", read("page.html"))
        self.assertEqual((numbers["ybco.xyz", "Cu24"], numbers["ybco.xyz", "Y7"]), ("4", "8"))
        with open(data / "structures/expected.tsv") as table:
            expected_rows = list(csv.DictReader(table, dialect="excel-tab"))
        self.assertEqual(len(expected_rows), 45)
        for expected in expected_rows:
            file, centre = expected["file"], expected["element"] + str(int(expected["index"]) + 1)
            with self.subTest(file=file, centre=centre):
                rows = self.report(f"--cutoff {expected['cutoff']} --centre {centre} $structures/{file}")
                self.assertEqual(rows[0]["cn"], expected["cn"])
                self.assertEqual(atom_numbers(rows[0]["ligands"]), atom_numbers(expected["ligands"]))
                if expected["index"] == "0" or (file, centre) in numbers:
                    # The sixth oxygen of V2O5, at 2.80 angstrom, lies within 1.3 times the sum of the radii.
                    is_further = file == "v2o5_shcherbinaite.xyz"
                    self.assertEqual(numbers[file, centre], "6" if is_further else expected["cn"])
                deviations = {row["geometry"]: row["deviation"] for row in rows}
                for column, title in geometries.items():
                    if expected[column] == "NA":
                        self.assertNotIn(title, deviations)
                    else:
                        self.assertAlmostEqual(float(deviations[title]), float(expected[column]), delta=1e-6)
                self.assertEqual(rows[0]["geometry"], geometries.get(expected["nearest"], "-"))


if __name__ == "__main__":
    unittest.main()
