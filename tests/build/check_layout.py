#!/usr/bin/env python3
"""Checks that the classes between the engine and its hosts lie in memory as recorded.

A host that was built before finds virtual functions by their slot and members by their offset. When
one moves, nothing fails to link: the host calls another function or reads other bytes.

usage: check_layout.py OBJECT RECORD HEADER_DIRECTORY

OBJECT is what the headers compile to, with debug information about all types. With UNITFLOW_APPROVE=1
in the environment, RECORD is written instead of compared.
"""

import os
import pathlib
import re
import subprocess
import sys

HEADING = """\
# The classes between the engine and its hosts as they lie in memory: sizes in bytes, virtual functions
# by their slot, bases and members by their offset. Written by check_layout.py with UNITFLOW_APPROVE=1.
"""

ADVICE = """\
Hosts that were built before are not told. If that can be avoided, leave what is there in its place. If
it is meant, raise the minor version in CMakeLists.txt and record the layout anew with
UNITFLOW_APPROVE=1 in the environment."""


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


# --- what the headers define

DEFINITION = re.compile(r"^(?:class|struct)\s+(?:UNITFLOW_\w+\s+)?(\w+)\s*(?::[^;{]*)?\{", re.MULTILINE)


def defined_in(header):
    return set(DEFINITION.findall(header))


def public_classes(directory):
    """The classes, outside of all others, that the headers of hosts and engine define."""
    inside = ("internal", "patterns")
    headers = [path for path in pathlib.Path(directory).rglob("*.h") if path.parent.name not in inside]
    return set().union(*(defined_in(path.read_text()) for path in headers))


# --- debug information, as readelf shows it

ENTRY = re.compile(r"^ *<([0-9a-f]+)><([0-9a-f]+)>: Abbrev Number: \d+ \(DW_TAG_(\w+)\)")
ATTRIBUTE = re.compile(r"^ *<[0-9a-f]+> +DW_AT_(\w+) *: ?(.*)")
# The form of a value and where its text lies, which not every readelf shows.
STORAGE = re.compile(r"^(?:\([a-z_0-9]+\) )?(?:\([^()]*offset: [^()]*\): )?")


class Entry:
    def __init__(self, tag, parent):
        self.tag = tag
        self.parent = parent
        self.attributes = {}
        self.children = []

    def get(self, attribute):
        return self.attributes.get(attribute)

    def number(self, attribute):
        return int(self.get(attribute).split()[0], 0)


def read_entries(text):
    """All entries by their offset."""
    entries, path = {}, []
    for line in text.splitlines():
        begin = ENTRY.match(line)
        if begin:
            depth = int(begin[1], 16)
            del path[depth:]
            parent = path[-1] if path else None
            entry = Entry(begin[3], parent)
            if parent:
                parent.children.append(entry)
            path.append(entry)
            entries[int(begin[2], 16)] = entry
            continue
        attribute = ATTRIBUTE.match(line)
        if attribute and path:
            path[-1].attributes[attribute[1]] = STORAGE.sub("", attribute[2]).strip()
    return entries


def plain(name):
    """A type's name without the blanks that compilers set differently."""
    return re.sub(r" *([<>,&*]) *", r"\1", name).replace(",", ", ")


class Types:
    def __init__(self, entries):
        self.entries = entries

    def name(self, entry):
        """The type that an entry refers to."""
        reference = entry.get("type")
        if reference is None:
            return "void"
        target = self.entries[int(re.match(r"<0x([0-9a-f]+)>", reference)[1], 16)]
        around = {"pointer_type": "{}*", "reference_type": "{}&", "const_type": "const {}"}.get(target.tag)
        return around.format(self.name(target)) if around else qualified(target)


def qualified(entry):
    """The name of a class or namespace with those around it."""
    own = plain(entry.get("name") or "(unnamed)")
    is_outermost = entry.parent is None or entry.parent.tag == "compile_unit"
    return own if is_outermost else qualified(entry.parent) + "::" + own


def outermost_class(entry):
    """The name, without template arguments, of the class around all others; else nothing."""
    found = None
    while entry is not None:
        if entry.tag in ("class_type", "structure_type"):
            found = entry
        entry = entry.parent
    return found and (found.get("name") or "").split("<")[0]


def slot_of(function):
    return int(re.search(r"DW_OP_constu: (\d+)", function.get("vtable_elem_location"))[1])


def by_place(pairs):
    result = {}
    for place, what in pairs:
        result[place] = f"{result[place]} and {what}" if place in result else what
    return result


def places(entry, types):
    """What stands at each place of a class."""
    slots, members, bases = [], [], []
    for child in entry.children:
        if child.tag == "subprogram" and child.get("vtable_elem_location"):
            # Compilers do not tell the slots of a destructor; when it moves, so do those beside it.
            if not child.get("name").startswith("~"):
                slots.append((slot_of(child), f"{types.name(child)} {child.get('linkage_name')}"))
        elif child.tag == "member" and child.get("data_member_location"):
            is_table = (child.get("name") or "").startswith("_vptr")
            what = "(table of the slots)" if is_table else f"{types.name(child)} {child.get('name')}"
            members.append((child.number("data_member_location"), what))
        elif child.tag == "inheritance":
            bases.append((child.number("data_member_location"), types.name(child)))
    return by_place(
        [("size", str(entry.number("byte_size")))]
        + [(f"base at {offset}", name) for offset, name in bases]
        + [(f"slot {slot}", name) for slot, name in sorted(slots)]
        + [(f"offset {offset}", name) for offset, name in sorted(members)]
    )


def layout_of(entries, wanted):
    """The places of each wanted class, and of those inside it, by its name."""
    types = Types(entries)
    return {
        qualified(entry): places(entry, types)
        for entry in entries.values()
        if entry.tag in ("class_type", "structure_type")
        and entry.get("byte_size")
        and entry.get("name")
        and outermost_class(entry) in wanted
    }


# --- the record

def to_text(layout):
    lines = []
    for name in sorted(layout):
        lines.append(f"\n{name}\n")
        lines += [f"    {place}: {what}\n" for place, what in layout[name].items()]
    return HEADING + "".join(lines)


def from_text(text):
    layout, places_of_class = {}, {}
    for line in text.splitlines():
        if line.startswith("    "):
            place, what = line.strip().split(": ", 1)
            places_of_class[place] = what
        elif line and not line.startswith("#"):
            places_of_class = layout.setdefault(line, {})
    return layout


# What a host does that was built with another layout.
CONSEQUENCES = {
    "size": "hosts reserve another number of bytes for it",
    "base": "hosts look for the base elsewhere",
    "slot": "hosts that call or override a function there reach another one",
    "offset": "hosts look for members elsewhere",
}


def place_complaints(name, recorded, found):
    for place in {**recorded, **found}:
        before, now = recorded.get(place, "nothing"), found.get(place, "nothing")
        if before != now:
            yield f"{name}: {place}: was {before}, is {now}; {CONSEQUENCES[place.split()[0]]}"


def complaints(recorded, found):
    """What differs, class by class."""
    result = []
    for name in sorted({**recorded, **found}):
        if name not in found:
            result.append(f"{name}: is gone; hosts that use it do not build any more")
        elif name not in recorded:
            result.append(f"{name}: is not recorded")
        else:
            result += place_complaints(name, recorded[name], found[name])
    return result


def demangled(text):
    return run("c++filt", input=text)


def main():
    compiled, record, headers = sys.argv[1:4]
    entries = read_entries(run("readelf", "--wide", "--debug-dump=info", compiled))
    layout = from_text(demangled(to_text(layout_of(entries, public_classes(headers)))))
    if os.environ.get("UNITFLOW_APPROVE"):
        pathlib.Path(record).write_text(to_text(layout))
        return 0

    found = complaints(from_text(pathlib.Path(record).read_text()), layout)
    for complaint in found:
        print(complaint)
    if found:
        print(ADVICE)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
