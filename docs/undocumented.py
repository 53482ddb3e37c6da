"""Lists what Doxygen lets pass without a docstring, and fails if there is anything.

Doxygen complains of members, but not of enumerators, files and namespaces, nor of what stands in a namespace without
a docstring: it leaves that out of the pages. Argument: the folder of its XML output.
"""

import sys
import xml.etree.ElementTree as ElementTree


def is_described(element):
    parts = (element.find("briefdescription"), element.find("detaileddescription"))
    return any("".join(part.itertext()).strip() for part in parts if part is not None)


def says_all_itself(member):
    """Destructors, and what is deleted or defaulted."""
    signature = member.findtext("argsstring") or ""
    return member.findtext("name").startswith("~") or signature.endswith(("=delete", "=default"))


def undescribed(compound):
    name = compound.findtext("compoundname")
    if not is_described(compound):
        yield name
    for member in compound.iter("memberdef"):
        if member.get("prot") == "private":
            continue
        member_name = name + "::" + member.findtext("name")
        if not is_described(member) and not says_all_itself(member):
            yield member_name
        for value in member.findall("enumvalue"):
            if not is_described(value):
                yield member_name + "::" + value.findtext("name")


def main(folder):
    names = set()
    for entry in ElementTree.parse(folder + "/index.xml").getroot().iter("compound"):
        if entry.get("kind") in ("dir", "page") or entry.findtext("name") == "std" or entry.findtext("name").endswith(".md"):
            continue
        for compound in ElementTree.parse(folder + "/" + entry.get("refid") + ".xml").getroot().iter("compounddef"):
            if compound.get("prot") != "private":
                names.update(undescribed(compound))
    for name in sorted(names):
        print(name + " has no docstring", file=sys.stderr)
    return len(names) != 0


sys.exit(main(sys.argv[1]))
