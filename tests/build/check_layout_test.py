#!/usr/bin/env python3
"""What check_layout.py finds and what it lets pass."""

import unittest

from check_layout import complaints, defined_in, from_text, layout_of, read_entries, to_text

NODE = {
    "size": "16",
    "slot 2": "bool Node::run()",
    "slot 3": "QString Node::name() const",
    "offset 0": "(table of the slots)",
    "offset 8": "QString label",
}

# As a newer readelf shows it, and an older one.
DEBUG_INFORMATION = """\
 <0><b>: Abbrev Number: 1 (DW_TAG_compile_unit)
    <c>   DW_AT_name        : (strp) (offset: 0x10): layout.cpp
 <1><20>: Abbrev Number: 2 (DW_TAG_class_type)
    <21>   DW_AT_name        : (strp) (offset: 0x20): QString
    <22>   DW_AT_byte_size   : (data1) 8
 <1><28>: Abbrev Number: 3 (DW_TAG_pointer_type)
    <29>   DW_AT_type        : (ref4) <0x20>, QString
 <1><30>: Abbrev Number: 2 (DW_TAG_class_type)
    <31>   DW_AT_name        : (indirect string, offset: 0x30): Node
    <32>   DW_AT_byte_size   : 24
 <2><40>: Abbrev Number: 4 (DW_TAG_inheritance)
    <41>   DW_AT_type        : <0x20>
    <42>   DW_AT_data_member_location: 0
 <2><50>: Abbrev Number: 5 (DW_TAG_member)
    <51>   DW_AT_name        : label
    <52>   DW_AT_type        : <0x28>
    <53>   DW_AT_data_member_location: 16
 <2><58>: Abbrev Number: 5 (DW_TAG_member)
    <59>   DW_AT_name        : (strp) (offset: 0x40): _vptr.Node
    <5a>   DW_AT_type        : (ref4) <0x28>
    <5b>   DW_AT_data_member_location: (data1) 8
 <2><60>: Abbrev Number: 6 (DW_TAG_subprogram)
    <61>   DW_AT_name        : (string) run
    <62>   DW_AT_linkage_name: (strp) (offset: 0x50): _ZN4Node3runEv
    <63>   DW_AT_vtable_elem_location: (exprloc) 2 byte block: 10 2 \t(DW_OP_constu: 2)
 <2><70>: Abbrev Number: 6 (DW_TAG_subprogram)
    <71>   DW_AT_name        : ~Node
    <72>   DW_AT_vtable_elem_location: 2 byte block: 10 0 \t(DW_OP_constu: 0)
 <2><78>: Abbrev Number: 0
 <1><80>: Abbrev Number: 2 (DW_TAG_class_type)
    <81>   DW_AT_name        : Node
    <82>   DW_AT_declaration : 1
"""


class CheckLayout(unittest.TestCase):
    def differences(self, **changes):
        """Between NODE and what becomes of it; None takes a place away."""
        changed = {**NODE, **{place.replace("_", " "): what for place, what in changes.items()}}
        return complaints({"Node": NODE}, {"Node": {k: v for k, v in changed.items() if v}})

    def test_passes_what_is_as_recorded(self):
        self.assertEqual(self.differences(), [])

    def test_finds_functions_that_changed_places(self):
        found = self.differences(slot_2=NODE["slot 3"], slot_3=NODE["slot 2"])
        self.assertEqual(len(found), 2)
        self.assertEqual(found[0], "Node: slot 2: was bool Node::run(), is QString Node::name() const; "
                                   "hosts that call or override a function there reach another one")

    def test_finds_a_function_that_is_gone_and_one_that_is_new(self):
        self.assertIn("Node: slot 3: was QString Node::name() const, is nothing",
                      self.differences(slot_3=None)[0])
        self.assertIn("Node: slot 4: was nothing, is void Node::stop()",
                      self.differences(slot_4="void Node::stop()")[0])

    def test_finds_a_member_that_moved_and_a_class_that_grew(self):
        self.assertEqual(self.differences(size="24", offset_8="int count", offset_16="QString label"), [
            "Node: size: was 16, is 24; hosts reserve another number of bytes for it",
            "Node: offset 8: was QString label, is int count; hosts look for members elsewhere",
            "Node: offset 16: was nothing, is QString label; hosts look for members elsewhere",
        ])

    def test_finds_a_class_that_is_gone_and_one_that_is_new(self):
        self.assertEqual(complaints({"A": {}}, {"B": {}}), [
            "A: is gone; hosts that use it do not build any more",
            "B: is not recorded",
        ])

    def test_reads_what_it_wrote(self):
        layout = {"Node": NODE, "Node::Edge": {"size": "1"}}
        self.assertEqual(from_text(to_text(layout)), layout)

    def test_reads_debug_information(self):
        self.assertEqual(layout_of(read_entries(DEBUG_INFORMATION), {"Node"}), {"Node": {
            "size": "24",
            "base at 0": "QString",
            "slot 2": "void _ZN4Node3runEv",
            "offset 8": "(table of the slots)",
            "offset 16": "QString* label",
        }})

    def test_looks_for_classes_that_a_header_defines_outside_of_others(self):
        self.assertEqual(defined_in("class Declared;\nclass UNITFLOW_EXPORT Node : public Base {\n"
                                    "    struct Inside {\n    };\n};\nstruct Item {\n};\n"),
                         {"Node", "Item"})


if __name__ == "__main__":
    unittest.main()
