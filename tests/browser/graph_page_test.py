#!/usr/bin/env python3
"""What the page of a graph does in a browser.

usage: graph_page_test.py UNITFLOW GRAPH_PAGE EXAMPLE

UNITFLOW is the program, GRAPH_PAGE the one that makes the page of a JSON form and a drawing, and
EXAMPLE the workspace of the example. The description in dependency/ beside this file, which has a
few mistakes, takes the place of its own.
"""

import copy
import html
import json
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

from webdriver import Browser, Keys

EXAMPLE = pathlib.Path(sys.argv.pop(3))
MAKER = sys.argv.pop(2)
PROGRAM = sys.argv.pop(1)
HERE = pathlib.Path(__file__).parent


def run(workspace, *arguments):
    command = [PROGRAM, "--quiet", "-C", workspace, *arguments]
    done = subprocess.run(command, check=True, stdout=subprocess.PIPE)
    return done.stdout.decode()


def graph_of_the_example():
    """The graph as data, the same with a write laid over it, and the drawings of both."""
    with tempfile.TemporaryDirectory(prefix="unitflow-page-") as folder:
        workspace = pathlib.Path(folder) / "workspace"
        shutil.copytree(EXAMPLE, workspace)
        shutil.copytree(HERE / "dependency", workspace / "dependency", dirs_exist_ok=True)
        trace = pathlib.Path(folder) / "write.ndjson"
        trace.write_text(run(workspace, "explain", "controller", "Settings/OperatingMode",
                             "calibration", "--json"))
        graph = ("graph", "display-units", "--link", "controller:display")
        for options in ((), ("--trace", trace)):
            yield json.loads(run(workspace, *graph, *options, "--format", "json"))
            yield run(workspace, *graph, *options, "--format", "svg")


GRAPH, DRAWING, TRACED, TRACED_DRAWING = graph_of_the_example()
NODES = {node["id"]: node for node in GRAPH["nodes"]}

HOSTILE = "</script><img src=x onerror=pwned=1>\"'&amp;{{script}}"

LIT = "return [...document.querySelectorAll('svg .lit[role=button]')].map(group => group.id).sort()"

# The contrast of every text that is shown, by the formula of the accessibility guidelines.
CONTRASTS = r"""
const channel = value => value <= 0.04045 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4;
const canvas = new OffscreenCanvas(1, 1).getContext("2d", { willReadFrequently: true });
function over(color, below) {
    canvas.fillStyle = `rgb(${below.join()})`;
    canvas.fillRect(0, 0, 1, 1);
    canvas.fillStyle = color;
    canvas.fillRect(0, 0, 1, 1);
    return [...canvas.getImageData(0, 0, 1, 1).data].slice(0, 3);
}
const luminance = ([r, g, b]) =>
    0.2126 * channel(r / 255) + 0.7152 * channel(g / 255) + 0.0722 * channel(b / 255);
function contrast(a, b) {
    const [high, low] = [luminance(a), luminance(b)].sort((x, y) => y - x);
    return (high + 0.05) / (low + 0.05);
}
function ground(element) {
    return element ? over(getComputedStyle(element).backgroundColor, ground(element.parentElement))
                   : [255, 255, 255];
}
const found = [];
for (const text of document.querySelectorAll("svg text")) {
    const shapes = [...text.parentElement.querySelectorAll("path, polygon, circle")]
        .filter(shape => !["none", "transparent"].includes(getComputedStyle(shape).fill)
                         && !shape.classList.contains("tip"));
    const below = shapes.length ? over(getComputedStyle(shapes[0]).fill, ground(text.closest("section")))
                                : ground(text.closest("section"));
    found.push([text.textContent, contrast(over(getComputedStyle(text).fill, below), below)]);
}
for (const element of document.querySelectorAll("body *:not(svg *, script, datalist *)")) {
    const own = [...element.childNodes].some(node => node.nodeType === 3 && node.data.trim());
    if ((own || element.placeholder) && element.checkVisibility()) {
        const below = ground(element);
        found.push([element.textContent || element.placeholder,
                    contrast(over(getComputedStyle(element).color, below), below)]);
    }
}
return found;
"""


def changed_texts(value, change):
    """`value` with `change` made of what people write."""
    if isinstance(value, list):
        return [changed_texts(item, change) for item in value]
    if not isinstance(value, dict):
        return value
    written = ("name", "message", "advice", "text", "note", "description", "code")
    return {key: change(item) if key in written and isinstance(item, str)
            else [change(cell) for cell in item] if key in ("cells", "path")
            else changed_texts(item, change) for key, item in value.items()}


def texts_of(tables):
    return [text for table in tables for text in
            [table["type"], *(cell for row in table["rows"] for cell in row["cells"])]]


def ids_that_contain(wanted):
    """What a search has to find, in any order."""
    found = {node["id"] for node in GRAPH["nodes"]
             if any(wanted in text.lower() for text in
                    [node["name"], node["type"], *texts_of(node["commands"]),
                     *(finding["message"] for finding in node["findings"]),
                     *(finding["code"] for finding in node["findings"])])}
    found |= {edge["id"] for edge in GRAPH["edges"]
              if any(wanted in text.lower() for text in texts_of(edge["conditions"]))}
    return found | {entry for text, entry in entries().items() if wanted in text.lower()}


def entries():
    """The ids of the entries of the drawing by what is watched."""
    found = {}
    for node in GRAPH["nodes"]:
        for watch in node["watches"]:
            found.setdefault(watch["text"], f"w{len(found) + 1}")
    return found


class GraphPage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="unitflow-page-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)

    def setUp(self):
        self.browser.get("about:blank")
        self.browser.resize(1400, 900)
        self.browser.emulate()
        self.browser.console()
        self.browser.requests()

    def open(self, address="", graph=None, drawing=DRAWING):
        page = self.folder / "page.html"
        (self.folder / "graph.json").write_text(json.dumps(graph or GRAPH, ensure_ascii=False))
        (self.folder / "graph.svg").write_text(drawing)
        subprocess.run([MAKER, self.folder / "graph.json", self.folder / "graph.svg", page], check=True)
        self.browser.get(page.as_uri() + address)
        self.browser.until("return document.documentElement.classList.contains('ready')")
        return page.as_uri()

    def panel(self):
        return self.browser.run("return document.getElementById('panel').innerText")

    def await_heading(self, text):
        self.browser.until("return document.querySelector('#panel h2')?.textContent === arguments[0]", text)

    def await_address(self, **parts):
        self.browser.until("return location.hash.slice(1) === arguments[0]", urllib.parse.urlencode(parts))

    def view(self):
        return self.browser.run("return document.querySelector('#drawing svg').style.transform")

    # --- the whole page

    def test_loads_without_errors_and_asks_for_nothing_else(self):
        address = self.open()
        self.browser.click("#n4")
        self.await_heading("Calibration")
        self.assertEqual(self.browser.console(), [])
        self.assertEqual({request.split("#")[0] for request in self.browser.requests()}, {address})

    def test_runs_no_script_but_its_own(self):
        self.open()
        self.browser.run("""
            const script = document.createElement("script");
            script.textContent = "pwned = 1";
            document.body.append(script);""")
        self.assertEqual(self.browser.run("return typeof pwned"), "undefined")
        self.assertIn("Content Security Policy", " ".join(self.browser.console()))

    def test_says_what_the_graph_is(self):
        self.open()
        head = self.browser.run("return document.querySelector('header').innerText")
        self.assertIn("controller → display · 10 nodes · 6 edges · 2 findings", head)
        self.assertIn("display-units", self.browser.run("return document.title"))
        self.assertIn("did you mean \"SwitchNode\"?", self.panel())

    def test_says_that_it_does_not_know_a_version(self):
        self.open(graph={**GRAPH, "version": 2})
        self.assertIn("version 2", self.browser.run("return document.getElementById('problem').innerText"))
        self.assertEqual(self.browser.console(), [])

    def test_texts_stay_texts(self):
        def hostile(text):
            return HOSTILE + text

        drawing = re.sub(r"(<text[^>]*>)", lambda tag: tag[1] + html.escape(HOSTILE), DRAWING)
        self.open(graph=changed_texts(GRAPH, hostile), drawing=drawing)
        for thing in ("n4", "e3", "w1"):
            self.browser.run("document.getElementById(arguments[0]).focus()", thing)
            self.browser.press(Keys.ENTER)
            self.browser.until("return document.querySelector('.selected')?.id === arguments[0]", thing)
            self.assertIn(HOSTILE, self.panel())
        self.browser.type("#search", "<img")
        self.browser.until("return document.querySelector('#panel mark')?.textContent === '<img'")
        self.assertEqual(self.browser.run("return document.querySelectorAll('img').length"), 0)
        self.assertEqual(self.browser.run("return typeof pwned"), "undefined")
        self.assertEqual(self.browser.console(), [])

    # --- the panel

    def test_a_click_on_a_node_shows_its_rows_and_findings(self):
        self.open()
        self.browser.click("#n4")
        self.await_heading("Calibration")
        node, panel = NODES["n4"], self.panel()
        for text in [node["place"], *texts_of(node["commands"]), *(f["message"] for f in node["findings"]),
                     *(f["advice"] for f in node["findings"])]:
            self.assertIn(text, panel)
        self.assertIn("sets Fields/Preheat, now in °C", panel)
        self.assertIn("sets Fields/Airflow: not there", panel)
        self.assertEqual(self.browser.run("return document.querySelector('.selected').id"), "n4")

    def test_rows_that_do_not_count_are_struck_out_with_the_reason(self):
        self.open("#show=n4")
        self.await_heading("Calibration")
        row, = (row for table in NODES["n4"]["commands"] for row in table["rows"] if not row["counts"])
        struck = self.browser.run("return [...document.querySelectorAll('#panel td s')].map(s => s.innerText)")
        self.assertEqual([text for text in struck if text], [cell for cell in row["cells"] if cell])
        self.assertEqual(self.browser.run("return document.querySelector('#panel .why').innerText"), row["note"])

    def test_a_click_on_an_edge_shows_its_conditions(self):
        self.open()
        self.browser.click("#e3 text")
        self.await_heading("Mode → Calibration")
        self.assertIn("ConditionValueComparator", self.panel())
        self.assertIn("calibration", self.panel())

    def test_a_click_on_what_is_watched_shows_what_it_runs(self):
        self.open()
        self.browser.click(f"#{entries()['Settings/FlowUnit']}")
        self.await_heading("Settings/FlowUnit")
        self.assertIn("Written", self.panel())
        self.assertIn("Cooling", self.panel())

    def test_every_node_has_a_panel(self):
        self.open()
        for number, node in enumerate(GRAPH["nodes"]):
            self.browser.run("location.hash = arguments[0]", f"show={node['id']}")
            self.await_heading(node["name"])
            self.assertIn(node["type"], self.panel())
        self.assertEqual(number, 9)
        self.assertEqual(self.browser.console(), [])

    def test_cells_of_any_kind_are_shown_and_found(self):
        graph = copy.deepcopy(GRAPH)
        node = graph["nodes"][3]
        row = node["commands"][0]["rows"][0]
        row["cells"] = [0, True, False, None, [1, ["deep"]], "", 2.5]
        row["layout"] = []
        row["targets"] = [{"url": "A", "arrayColumn": None, "exists": True, "unit": 0},
                          {"url": "B", "arrayColumn": None, "exists": True, "unit": None}]
        graph["edges"][2]["conditions"][0]["rows"][0]["cells"] = [7, "==", False]
        self.open(graph=graph)
        self.browser.click("#n4")
        self.await_heading(node["name"])
        cells = self.browser.run("return [...document.querySelector('#panel tbody tr').cells].map(cell => cell.innerText)")
        self.assertEqual(cells[1:8], ["0", "true", "false", "null", '[1,["deep"]]', '""', "2.5"])
        self.assertIn("sets A, now in 0\nsets B\n", self.panel())
        self.browser.click("#e3 text")
        self.await_heading("Mode → Calibration")
        self.assertIn("false", self.panel())
        for text, found in (("true", ["n4"]), ("deep", ["n4"]), ("false", ["n4", "e3"])):
            self.browser.run("""search.value = arguments[0]; search.dispatchEvent(new Event("input"))""", text)
            matches = self.browser.run("return [...document.querySelectorAll('.match')].map(group => group.id)")
            self.assertEqual(sorted(matches), sorted(found), text)
        self.assertEqual(self.browser.console(), [])

    def test_cells_stand_under_the_columns_that_they_belong_to(self):
        graph = copy.deepcopy(GRAPH)
        table = graph["nodes"][3]["commands"][0]
        table["columns"] = ["from", "remark", "to"]
        table["rows"] = [{**table["rows"][0], "cells": cells, "layout": layout, "targets": []}
                         for cells, layout in ((["a", "b"], [0, 2]), (["a", "b", "c"], [0, 2]))]
        self.open("#show=n4", graph=graph)
        self.await_heading("Calibration")
        rows = self.browser.run("return [...document.querySelector('#panel table').rows]"
                                ".map(row => [...row.cells].map(cell => cell.innerText))")
        self.assertEqual(rows, [["#", "from", "to", ""], ["1", "a", "b", ""], ["1", "a", "b", "c"]])

    def test_characters_that_hide_or_turn_others_are_spelled(self):
        self.open(graph=changed_texts(GRAPH, lambda text: "\u202e\x07" + text + "\U000e0041"))
        spelled = "\\u202e\\u0007Calibration\\udb40\\udc41"
        self.browser.click("#n4")
        self.await_heading(spelled)
        self.assertIn("\\u202e\\u0007Fields/Preheat\\udb40\\udc41", self.panel())
        self.browser.type("#search", "\\u202e\\u0007calib")
        self.browser.until("return document.querySelector('#panel h2 mark')")
        seen = self.browser.run("""
            const attributes = [...document.querySelectorAll("*")].flatMap(one => [...one.attributes]);
            return [document.title, document.querySelector("header").innerText, document.querySelector("main").innerText,
                    ...attributes.map(one => one.value)].join("\\n")""")
        self.assertEqual(re.findall("[\u202e\x07\U000e0041]", seen), [])
        self.browser.run("location.hash = ''")
        self.browser.click("#pick")
        self.browser.type("#pick", "FlowUnit" + Keys.ENTER)
        self.browser.until("return document.querySelector('.lit')")
        self.assertEqual(self.browser.console(), [])

    def rule_of(self, change, edge="e3"):
        """What the panel says of when an edge is followed, after a change of the graph."""
        graph = copy.deepcopy(GRAPH)
        change({node["id"]: node for node in graph["nodes"]}, {one["id"]: one for one in graph["edges"]})
        self.browser.get("about:blank")  # or nothing is loaded anew
        self.open(f"#show={edge}", graph=graph)
        self.browser.until("return document.querySelector('#panel h2')?.textContent.includes('→')")
        return self.panel()

    def test_the_panel_says_which_edges_are_never_followed(self):
        def unguarded(nodes, edges):
            edges["e3"]["conditions"] = []

        def from_a_command(nodes, edges):
            unguarded(nodes, edges)
            nodes[edges["e3"]["from"]]["kind"] = "command"

        def from_a_command_as_only(nodes, edges):
            nodes[edges["e3"]["from"]]["kind"] = "command"
            for edge in edges.values():
                if edge is not edges["e3"] and edge["from"] == edges["e3"]["from"]:
                    edge["from"] = "n1"

        def to_unknown(nodes, edges):
            nodes[edges["e3"]["to"]]["kind"] = "unknown"

        def from_unknown(nodes, edges):
            nodes[edges["e3"]["from"]]["kind"] = "unknown"

        self.assertIn("is always followed", self.rule_of(unguarded))
        self.assertIn("It is never followed: a command node follows an edge only", self.rule_of(from_a_command))
        self.assertIn("follows its only edge whatever", self.rule_of(from_a_command_as_only))
        self.assertIn("It leads nowhere", self.rule_of(to_unknown))
        self.assertIn("It is never followed: no node", self.rule_of(from_unknown))

    def test_a_graph_without_nodes_says_so(self):
        self.open(graph={**GRAPH, "nodes": [], "edges": [], "writes": []})
        self.assertIn("There is no node in it", self.panel())
        self.assertEqual(self.browser.console(), [])

    # --- moving

    def test_dragging_moves_the_drawing_and_leaves_the_selection(self):
        self.open("#show=n3")
        before = self.browser.run("return document.getElementById('n4').getBoundingClientRect().toJSON()")
        start = [int(before["x"] + 10), int(before["y"] + 10)]
        self.browser.drag(start, [start[0] - 120, start[1] + 60])
        after = self.browser.run("return document.getElementById('n4').getBoundingClientRect().toJSON()")
        self.assertAlmostEqual(after["x"], before["x"] - 120, delta=1)
        self.assertAlmostEqual(after["y"], before["y"] + 60, delta=1)
        self.assertEqual(self.browser.run("return location.hash"), "#show=n3")

    def test_the_wheel_zooms_where_the_pointer_is(self):
        self.open()
        box = "const box = document.getElementById('n2').getBoundingClientRect(); "
        middle = self.browser.run(box + "return [box.x + box.width / 2, box.y + box.height / 2]")
        width = self.browser.run(box + "return box.width")
        self.browser.scroll([round(value) for value in middle], -100)
        self.browser.until(box + "return box.width > arguments[0] * 1.1", width)
        after = self.browser.run(box + "return [box.x + box.width / 2, box.y + box.height / 2]")
        self.assertAlmostEqual(after[0], middle[0], delta=2)
        self.assertAlmostEqual(after[1], middle[1], delta=2)

    def test_buttons_and_keys_zoom_and_fit(self):
        self.open()
        fitted = self.view()
        for zoom in (lambda: self.browser.click("#zoom-in"), lambda: self.browser.press("+"),
                     lambda: self.browser.click("#zoom-out"), lambda: self.browser.press("-")):
            before = self.view()
            zoom()
            self.assertNotEqual(self.view(), before)
        self.browser.press("+")
        self.browser.press("0")
        self.assertEqual(self.view(), fitted)
        self.browser.click("#zoom-in")
        self.browser.click("#zoom-fit")
        self.assertEqual(self.view(), fitted)

    # --- search

    def await_match(self, count, thing):
        self.browser.until("""return document.getElementById("search-count").textContent === arguments[0]
            && document.querySelector(".selected")?.id === arguments[1]""", count, thing)
        off = self.browser.run("""
            const inner = document.querySelector(".current").getBoundingClientRect();
            const outer = document.getElementById("stage").getBoundingClientRect();
            return Math.hypot(inner.x + inner.width / 2 - outer.x - outer.width / 2,
                              inner.y + inner.height / 2 - outer.y - outer.height / 2);""")
        self.assertLess(off, 12)

    def test_search_finds_counts_steps_and_centers(self):
        self.open()
        wanted = ids_that_contain("fields/cure")
        self.assertGreater(len(wanted), 3)
        self.browser.type("#search", "fields/CURE")
        self.browser.until("return document.querySelectorAll('.match').length === arguments[0]", len(wanted))
        matches = self.browser.run("return [...document.querySelectorAll('.match')].map(group => group.id)")
        self.assertEqual(set(matches), wanted)
        order = sorted(wanted, key=lambda thing: int(thing[1:]))
        self.await_match(f"1 of {len(wanted)}", order[0])
        self.browser.press(Keys.ENTER)
        self.await_match(f"2 of {len(wanted)}", order[1])
        self.assertEqual(self.browser.run("return document.querySelector('#panel mark').textContent"), "Fields/Cure")
        self.browser.press(Keys.SHIFT, Keys.ENTER)
        self.browser.press(Keys.SHIFT, Keys.ENTER)
        self.await_match(f"{len(wanted)} of {len(wanted)}", order[-1])
        self.browser.press(Keys.ENTER)
        self.await_match(f"1 of {len(wanted)}", order[0])
        self.browser.press(Keys.ESCAPE)
        self.browser.until("return !document.querySelector('.match, mark')")
        self.assertEqual(self.browser.run(
            "return search.value + document.getElementById('search-count').textContent"), "")

    def test_search_looks_at_names_types_urls_and_cells(self):
        self.open()
        for text in ("Production", "commandnode", "^zones/", "calibration", "row-skipped"):
            self.browser.run("""search.value = arguments[0]; search.dispatchEvent(new Event("input"))""", text)
            found = self.browser.run("return [...document.querySelectorAll('.match')].map(group => group.id)")
            self.assertEqual(set(found), ids_that_contain(text.lower()), text)

    def test_search_says_that_there_is_nothing(self):
        self.open()
        self.browser.type("#search", "nowhere")
        self.browser.until("return document.getElementById('search-count').textContent === 'none'")

    # --- picking

    def pick(self, text):
        self.browser.run("pick.value = ''")
        self.browser.type("#pick", text)

    def test_a_picked_url_lights_exactly_what_it_may_run(self):
        self.open()
        self.assertEqual(len(GRAPH["writes"]), 8)
        for write in GRAPH["writes"]:
            name = ("pattern " if write["pattern"] else "") + write["text"]
            self.pick(name)
            self.await_address(write=name)
            self.await_heading(write["text"])
            lit = self.browser.run(LIT)
            self.assertEqual([thing for thing in lit if not thing.startswith("w")],
                             sorted(write["nodes"] + write["edges"]), name)
            self.assertEqual({thing for thing in lit if thing.startswith("w")}, set(write["entries"]), name)
            every = f"w{len(entries()) + 1}"
            ways = self.browser.run("return [...document.querySelectorAll('.watch.lit')].map(group => group.id)")
            self.assertEqual(set(ways), {f"{every}-n8"} | {f"{entries()[watch['text']]}-{node['id']}"
                for node in GRAPH["nodes"] for watch in node["watches"]
                if entries()[watch["text"]] in write["entries"]}, name)
        matched, = (write for write in GRAPH["writes"] if write["text"] == "Zones/Cure/Signal")
        self.assertIn(entries()["^Zones/[^/]+/Signal$"], matched["entries"])
        faded = self.browser.run("return getComputedStyle(document.getElementById('n7')).opacity")
        self.assertLess(float(faded), 0.5)

    def test_clearing_the_box_shows_everything_again(self):
        self.open("#write=Settings%2FFlowUnit")
        self.assertIn("n7", self.browser.run(LIT))
        self.browser.click("#pick-clear")
        self.browser.until("return !document.querySelector('.lighting, .lit')")
        self.assertEqual(self.browser.run("return pick.value"), "")

    def test_a_piece_is_enough_when_one_url_contains_it(self):
        self.open()
        self.browser.type("#pick", "Flow" + Keys.ENTER)
        self.await_address(write="Settings/FlowUnit")
        self.pick("Unit" + Keys.ENTER)
        self.browser.until("return document.getElementById('pick-status').textContent === '4 contain this'")
        self.pick("Fields/Cure" + Keys.ENTER)
        self.browser.until("return document.getElementById('pick-status').textContent === 'not watched'")

    def test_an_explained_write_is_lit_from_the_beginning(self):
        trace = TRACED["trace"]
        self.open(graph=TRACED, drawing=TRACED_DRAWING)
        self.assertEqual(self.browser.run(LIT),
                         sorted([*trace["nodes"], *trace["edges"], entries()[trace["url"]],
                                 *re.findall(r'id="(w\d+)" class="node entry every', DRAWING)]))
        self.assertIn("was written with calibration", self.panel())
        self.assertIn("CommandSetUnitProperties, row 3: skips Fields/Airflow: the target has no such leaf", self.panel())
        self.browser.click("#pick-clear")
        self.browser.until("return !document.querySelector('.lit')")
        self.browser.back()
        self.browser.until("return document.querySelector('.lit')")

    def test_a_value_that_no_comparison_saw_is_not_told(self):
        self.open(graph={**TRACED, "trace": {**TRACED["trace"], "value": None}}, drawing=TRACED_DRAWING)
        self.assertIn("was written. For controller → display it entered", self.panel())
        self.browser.get("about:blank")
        self.open(graph={**TRACED, "trace": {**TRACED["trace"], "link": None}}, drawing=TRACED_DRAWING)
        self.assertIn("was written with calibration. It entered", self.panel())

    def test_a_piece_is_enough_where_a_write_was_explained(self):
        self.open(graph=TRACED, drawing=TRACED_DRAWING)
        self.pick("Operating" + Keys.ENTER)
        self.await_address(write="Settings/OperatingMode")
        self.await_heading("Settings/OperatingMode")
        self.assertIn("may run", self.panel())

    # --- the address

    def test_the_address_says_what_is_shown_and_going_back_works(self):
        self.open()
        self.browser.click("#n3")
        self.await_address(show="n3")
        self.browser.click("#n4")
        self.await_address(show="n4")
        self.browser.back()
        self.await_heading("Production")
        self.open("#write=Settings%2FFlowUnit&show=n7")
        self.await_heading("Off")
        self.assertIn("n7", self.browser.run(LIT))

    def test_what_the_address_shows_can_be_read_on_a_small_screen(self):
        self.browser.resize(390, 844)
        self.open("#show=n4")
        inside, scale = self.browser.run("""
            const node = n4.getBoundingClientRect(), room = stage.getBoundingClientRect();
            return [node.left >= room.left && node.right <= room.right && node.top >= room.top
                    && node.bottom <= room.bottom, new DOMMatrix(document.querySelector("#drawing svg").style.transform).a]""")
        self.assertTrue(inside)
        self.assertEqual(scale, 1)

    def test_an_address_of_another_graph_shows_the_whole(self):
        self.open("#show=n99&write=Elsewhere")
        self.await_heading("display-units")
        self.assertEqual(self.browser.console(), [])

    # --- keys

    def test_everything_works_with_the_keyboard(self):
        self.open()
        self.browser.press("/")
        self.assertEqual(self.browser.run("return document.activeElement.id"), "search")
        self.browser.press(Keys.TAB)
        self.assertEqual(self.browser.run("return document.activeElement.id"), "skip")
        self.browser.press(Keys.TAB)
        focused = self.browser.run("return document.activeElement.id")
        self.assertEqual(focused, "w1")
        self.assertEqual(self.browser.run("""
            const look = getComputedStyle(document.querySelector("#w1 path"));
            return look.strokeWidth"""), "3.5px")
        self.browser.press(Keys.ENTER)
        self.await_heading("Settings/OperatingMode" if entries()["Settings/OperatingMode"] == "w1"
                           else next(iter(entries())))
        self.browser.press(Keys.TAB)
        self.browser.press(" ")
        self.await_heading("Written")
        self.browser.press(Keys.ESCAPE)
        self.await_heading("display-units")

    def test_the_focus_stays_in_the_panel_when_its_content_changes(self):
        self.open("#show=n2")
        self.browser.run("document.getElementById('skip').focus()")
        self.browser.press(Keys.ENTER)
        self.assertEqual(self.browser.run("return document.activeElement.id"), "panel")
        self.browser.press(Keys.TAB)
        self.browser.press(Keys.TAB)
        self.assertEqual(self.browser.run("return document.activeElement.textContent"), "Written")
        self.browser.press(Keys.ENTER)
        self.await_heading("Written")
        self.assertEqual(self.browser.run("return document.activeElement.id"), "panel")

    def test_what_can_be_clicked_has_a_role_and_a_name(self):
        self.open()
        for thing in [*NODES, *(edge["id"] for edge in GRAPH["edges"]), *entries().values()]:
            role, name = self.browser.run("""
                const group = document.getElementById(arguments[0]);
                return [group.getAttribute("role"), group.getAttribute("aria-label")]""", thing)
            self.assertEqual(role, "button")
            self.assertTrue(name)
        self.assertEqual(self.browser.run("return n4.getAttribute('aria-label')"),
                         "Calibration, CommandNode, 1 finding")
        self.assertEqual(self.browser.run("return panel.getAttribute('aria-live')"), "polite")

    # --- looks

    def test_a_narrow_screen_has_the_panel_below_and_scrolls_nothing_sideways(self):
        self.browser.resize(360, 740)
        for address in ("", "#show=n4", "#write=Settings%2FFlowUnit"):
            self.open(address)
            wide, stage, panel = self.browser.run("""
                return [document.documentElement.scrollWidth, stage.getBoundingClientRect().toJSON(),
                        panel.getBoundingClientRect().toJSON()]""")
            self.assertLessEqual(wide, 360)
            self.assertGreaterEqual(panel["top"], stage["bottom"])
            self.assertGreater(stage["height"], 200)
            self.assertLessEqual(panel["bottom"], 740)

    def test_a_dark_scheme_changes_the_colors(self):
        colors = []
        for scheme in ("light", "dark"):
            self.browser.emulate(scheme)
            self.open()
            colors.append(self.browser.run("""
                return [getComputedStyle(document.body).backgroundColor,
                        getComputedStyle(document.querySelector("#n4 path")).fill,
                        getComputedStyle(document.querySelector("#n4 text")).fill]"""))
        for light, dark in zip(*colors):
            self.assertNotEqual(light, dark)

    def check_contrasts(self, scheme, state):
        contrasts = self.browser.run(CONTRASTS)
        self.assertGreater(len(contrasts), 40)
        self.assertEqual([(scheme, state, *found) for found in contrasts if found[1] < 4.5], [])

    def test_texts_can_be_read_in_both_schemes(self):
        for scheme in ("light", "dark"):
            self.browser.emulate(scheme)
            for address in ("", "#show=n4", "#show=e1", "#show=n9"):
                self.open(address)
                self.check_contrasts(scheme, address)
            self.browser.type("#search", "Fields")
            self.browser.until("return document.querySelector('.match') && document.querySelector('mark')")
            self.check_contrasts(scheme, "search")

    def test_paper_has_the_whole_drawing_on_one_page_and_no_controls(self):
        self.open("#show=n4")
        self.browser.press("+")
        self.browser.emulate(media="print")
        for hidden in ("tools", "zoom", "legend", "panel"):
            self.assertEqual(self.browser.run(
                "return getComputedStyle(document.getElementById(arguments[0])).display", hidden), "none")
        left, right, width = self.browser.run("""
            const box = document.querySelector("#drawing svg").getBoundingClientRect();
            return [box.left, box.right, document.documentElement.clientWidth]""")
        self.assertGreaterEqual(left, 0)
        self.assertLessEqual(right, width)
        self.assertEqual(len(re.findall(rb"/Type\s*/Page\b", self.browser.print())), 1)

    def test_paper_says_which_write_is_lit(self):
        self.open("#write=Settings%2FFlowUnit")
        self.browser.emulate(media="print")
        seen = "return arguments[0].map(id => document.getElementById(id).checkVisibility())"
        self.assertEqual(self.browser.run(seen, ["pick", "search", "pick-clear", "zoom"]), [True, False, False, False])


if __name__ == "__main__":
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that the browser is closed
    unittest.main()
