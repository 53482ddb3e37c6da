"""The rules of the project that a compiler does not see, read off its files and libraries.

    rules_test.py CLASS

runs one of the classes below. The environment variables VORLANE_BINARY_DIR, VORLANE_NM and VORLANE_LIBRARIES, a list
with semicolons, tell where to look for what was built.
"""

import os
import pathlib
import re
import shlex
import subprocess
import unittest

root = pathlib.Path(__file__).resolve().parents[2]
library = ("platform", "vorlane")
everything = library + ("tests", "benchmarks", "fuzz", "examples")


def read(path):
    return path.read_text(encoding="utf-8")


def rows_of(table):
    """The rows of a table beside this file, each a dictionary by the names of the columns."""
    lines = read(root / "tests/rules" / table).splitlines()
    lines = [line for line in lines if line and not line.startswith("#")]
    columns = lines[0].split("] ")[1].split()
    return [dict(zip(columns, shlex.split(line), strict=True)) for line in lines[1:]]


def sources_below(*folders):
    """Paths from the root and texts of the headers and sources."""
    paths = [path for folder in folders for path in (root / folder).rglob("*") if path.suffix in (".h", ".cpp")]
    assert len(paths) > 10 * len(folders)
    return [(path.relative_to(root), read(path)) for path in paths]


class Sources(unittest.TestCase):
    def test_includes_keep_to_the_walls(self):
        walls = rows_of("walls.txt")
        for path, text in sources_below(*library):
            wall = next((row["included"] for row in walls if re.fullmatch(row["file"], str(path))), "nothing")
            for included in re.findall(r'^[ \t]*#[ \t]*include[ \t]*"([^"]*)"', text, re.M):
                with self.subTest(file=str(path), includes=included):
                    self.assertRegex(included, f"^({wall})$")
                    self.assertTrue((root / included).exists() or (root / (included + ".in")).exists())
                    if "Internal.h" in included and path.name != "LoadTimeObjects.cpp":
                        self.assertEqual(path.parent, pathlib.Path(included).parent)

    def test_every_file_belongs_to_a_target(self):
        """The list may stand in the folder of the file or in one above; a program of one file may be named by it."""
        for path, _ in sources_below(*everything):
            if path.suffix == ".cpp":
                lists = [root / folder / "CMakeLists.txt" for folder in path.parents[:-1]]
                text = "\n".join(read(file) for file in lists if file.exists())
                with self.subTest(file=str(path)):
                    self.assertRegex(text, rf'(?m)(^|[ \t("/]){path.stem}(\.cpp)?([ \t)"]|$)')

    def test_the_library_calls_nothing_that_depends_on_the_locale(self):
        no_code = r'//.*|/\*[^*]*\*/|"(\\.|[^"\\])*"'
        calls = (r"\b(strto[dfl]|strtold|strtoul|strtoll|ato[fil]|sscanf|setlocale|localeconv|"
                 r"is(space|alpha|alnum|digit|upper|lower|punct|print|xdigit)|to(lower|upper)|strcoll|strcasecmp|"
                 r"mbstowcs|wcstombs|mbrtowc|wcrtomb|sto[dfil]|stol|stoul|stoll|to_wstring|[io]?stringstream)\s*\(")
        for path, text in sources_below(*library):
            with self.subTest(file=str(path)):
                self.assertNotRegex(re.sub(no_code, "", text), calls)

    def test_every_header_has_a_guard_that_names_it(self):
        for path, text in sources_below(*everything):
            if path.suffix == ".h":
                with self.subTest(file=str(path)):
                    self.assertRegex(text, f"#ifndef VORLANE_[A-Z0-9_]*{path.stem.upper()}_H\n")


class Documents(unittest.TestCase):
    """Code and output in documents are those of programs that are built and run.

    A block that follows a line <!-- file: PATH --> must be that file, one that follows <!-- part of: PATH --> must
    stand in it, and one that follows <!-- output: NAME --> must be what the example program of that name prints. C++
    without such a line is not allowed.
    """

    documents = [(path, read(path)) for folder in (root, root / "docs") for path in folder.glob("*.md")]

    @staticmethod
    def unindented(text):
        return re.sub("\n +", "\n", text)

    def test_blocks_are_the_files_and_outputs_that_they_name(self):
        blocks = [(document, *block) for document, text in self.documents for block in
                  re.findall(r"<!-- (file|part of|output): ([^ ]+) -->\n+```[a-z]*\n([^`]*)```", text)]
        self.assertTrue(blocks)
        for document, kind, name, block in blocks:
            with self.subTest(document=document.name, shows=name):
                if kind == "output":
                    program = pathlib.Path(os.environ["VORLANE_BINARY_DIR"]) / "examples" / name
                    self.assertEqual(subprocess.check_output([program], encoding="utf-8"), block)
                elif kind == "file":
                    self.assertEqual(read(root / name), block)
                else:
                    self.assertIn(self.unindented("\n" + block), self.unindented(read(root / name)))

    def test_code_names_its_file(self):
        for document, text in self.documents:
            with self.subTest(document=document.name):
                self.assertNotRegex(text, "[^>\n]\n+```cpp")

    def test_links_lead_somewhere(self):
        links = [(document, link) for document, text in self.documents
                 for link in re.findall(r"\]\(([^):#]+)(?:#[^)]*)?\)", text)]
        self.assertTrue(links)
        for document, link in links:
            with self.subTest(document=document.name, link=link):
                self.assertTrue((document.parent / link).exists())


class Exports(unittest.TestCase):
    """What the shared libraries export, beside the list of what they are meant to export."""

    listed = rows_of("exported_names.txt")

    def test_exported_names_are_those_of_the_list(self):
        symbols = set()
        for path in os.environ["VORLANE_LIBRARIES"].split(";"):
            # Address, kind, name: "0000000000001234 V typeinfo for Vorlane::Counter".
            table = subprocess.check_output([os.environ["VORLANE_NM"], "--dynamic", "--defined-only", path])
            table = subprocess.check_output(["c++filt", "-p"], input=table).decode()
            symbols.update(re.findall("^[0-9a-f]* . (?:.* (?:for|to) )?(.*)$", table, re.M))
        self.assertTrue(symbols)
        # Weak instances of the standard library's templates stand in every C++ library.
        symbols = {symbol for symbol in symbols if not re.match(r"std::|__gnu_cxx::|operator", symbol)}
        for row in self.listed:
            # The class or function itself, its members, and its instances.
            next_one = r"(?=$|[:\[])" if "::operator" in row["name"] else r"(?=$|[:\[<])"
            found = {symbol for symbol in symbols if re.match(re.escape(row["name"]) + next_one, symbol)}
            with self.subTest(name=row["name"]):
                self.assertTrue(found, "is in the list, but not exported")
            row["found"] = found
        self.assertEqual(symbols - set().union(*(row["found"] for row in self.listed)), set(),
                         "exported, but not in the list")

    def test_exported_names_are_documented_where_they_are_declared(self):
        """A docstring stands directly before the declaration, or before the first of a group without a blank line."""
        for row in self.listed:
            name = re.escape(row["name"].rpartition(":")[2])
            with self.subTest(name=row["name"], header=row["header"]):
                self.assertRegex(read(root / row["header"]),
                                 rf"\n *///.*\n(?! *//)(.+\n)*?(?! *//).*\b{name}(?=[\n (;:])")


if __name__ == "__main__":
    unittest.main()
