"""gdb pretty-printers for the containers, points and matrices of VorlaneCore.

    (gdb) source vorlane_printers.py

An install puts this file where gdb loads it along with libVorlanePlatform, if that place is on its safe path.
"""

import gdb
import gdb.printing


class StringPrinter:
    """CString, as text of its own length: zero bytes show."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        content = self.value["m_content"]
        text = content["stored"]["text"] if self.value["m_isStored"] else content["own"][0].address
        return text.string(encoding="latin-1", length=int(self.value["m_length"]))

    def display_hint(self):
        return "string"


class ArrayPrinter:
    """CArray and what derives from it."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"{self.value.type.name} of {int(self.value['m_nSize'])}, room for {int(self.value['m_nMaxSize'])}"

    def children(self):
        for index in range(int(self.value["m_nSize"])):
            yield f"[{index}]", self.value["m_pData"][index]

    def display_hint(self):
        return "array"


class MapPrinter:
    """CMap and what derives from it, in the order of an iteration: buckets upward, newest entry first."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"{self.value.type.name} of {int(self.value['m_count'])}, {int(self.value['m_tableSize'])} buckets"

    def children(self):
        if int(self.value["m_table"]) == 0:
            return
        count = 0
        for bucket in range(int(self.value["m_tableSize"])):
            entry = self.value["m_table"][bucket]
            while int(entry) != 0:
                yield f"key {count}", entry["key"]
                yield f"value {count}", entry["value"]
                count += 1
                entry = entry["pNext"]

    def display_hint(self):
        return "map"


class PointPrinter:
    """Spatia::Point3d as (x, y, z)."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"({float(self.value['x']):.10g}, {float(self.value['y']):.10g}, {float(self.value['z']):.10g})"


class MatrixPrinter:
    """Vorlane::QuadraticMatrix, a row a line."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        dimension = int(self.value["m_dimension"])
        return f"{dimension} by {dimension} matrix"

    def children(self):
        dimension = int(self.value["m_dimension"])
        for row in range(dimension):
            cells = (float(self.value["m_rows"][row][column]) for column in range(dimension))
            yield f"row {row}", "  ".join(f"{cell:.10g}" for cell in cells)

    def display_hint(self):
        return None


def build_printers():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("VorlaneCore")
    printers.add_printer("CString", "^CString$", StringPrinter)
    printers.add_printer("CArray", "^CArray<.*>$|^CStringArray$|^Vorlane::(Bool|Int|Double)Array$", ArrayPrinter)
    printers.add_printer("CMap", "^CMap<.*>$|^CMapStringToPtr$|^Vorlane::CrossReference<.*>$", MapPrinter)
    printers.add_printer("Point3d", "^Spatia::Point3d$", PointPrinter)
    printers.add_printer("QuadraticMatrix", "^Vorlane::QuadraticMatrix$", MatrixPrinter)
    return printers


gdb.printing.register_pretty_printer(gdb.current_objfile(), build_printers(), replace=True)
