"use strict";
(() => {
    const byId = id => document.getElementById(id);
    const stage = byId("stage");
    const svg = document.querySelector("#drawing svg");
    const panel = byId("panel");
    const search = byId("search");
    const pick = byId("pick");

    /* ---- the graph ---- */

    const nothing = { nodes: [], edges: [], writes: [], trace: null, link: null, description: "" };
    const data = JSON.parse(byId("graph-data").textContent);
    const known = data.format === "unitflow/graph" && data.version === 1;
    const graph = known ? data : nothing;
    if (!known) {
        byId("problem").textContent = "This page shows graphs of version 1, but this one is of version "
            + `${data.version}: only its drawing can be shown. Make the page anew.`;
        byId("problem").hidden = false;
    }

    /** `text` with what would hide, turn or break it spelled as JSON spells it. */
    const printable = text => text.replace(/[\p{Cc}\p{Cf}\p{Zl}\p{Zp}]/gu, character => [...Array(character.length).keys()]
        .map(at => `\\u${character.charCodeAt(at).toString(16).padStart(4, "0")}`).join(""));
    /** What is shown of a value that a description may have anywhere. */
    const textOf = value => typeof value === "string" ? value : JSON.stringify(value);
    const watchKey = watch => printable((watch.pattern ? "pattern " : "") + watch.text);

    /** Everything in the drawing by its id: nodes, edges and entries. */
    const things = new Map();
    for (const node of graph.nodes) {
        things.set(node.id, { kind: "node", id: node.id, node, into: [], outOf: [] });
    }
    for (const edge of graph.edges) {
        const thing = { kind: "edge", id: edge.id, edge };
        things.set(edge.id, thing);
        things.get(edge.from).outOf.push(thing);
        things.get(edge.to).into.push(thing);
    }
    const entries = new Map();
    for (const node of graph.nodes) {
        for (const watch of node.watches) {
            // What is printed of two texts may be the same.
            const key = JSON.stringify([watch.text, watch.pattern]);
            if (!entries.has(key)) {
                const id = `w${entries.size + 1}`;
                entries.set(key, { kind: "entry", id, watch, key: watchKey(watch), nodes: [] });
                things.set(id, entries.get(key));
            }
            entries.get(key).nodes.push(node.id);
        }
    }
    const unconditional = graph.nodes.filter(node => node.unconditional).map(node => node.id);
    if (unconditional.length > 0) {
        const id = `w${entries.size + 1}`;
        things.set(id, { kind: "entry", id, watch: null, nodes: unconditional });
    }

    /** What can be lit, by what the box for picking shows. */
    const lights = new Map();
    if (graph.trace) {
        lights.set(printable(`explained: ${graph.trace.url}`), graph.trace);
    }
    for (const write of graph.writes) {
        lights.set(watchKey(write), write);
    }

    const nameOf = id => things.get(id).node.name;
    const counted = (count, one, many) => `${count} ${count === 1 ? one : many}`;
    const severities = ["error", "warning", "note"];

    function labelOf(thing) {
        if (thing.kind === "entry" && !thing.watch) {
            return "every write";
        }
        if (thing.kind === "entry") {
            return `watched ${thing.watch.pattern ? "pattern" : "URL"} ${thing.watch.text}`;
        }
        if (thing.kind === "edge") {
            return `edge from ${nameOf(thing.edge.from)} to ${nameOf(thing.edge.to)}`;
        }
        const { name, type, reachable, findings } = thing.node;
        return [name, type, ...reachable ? [] : ["never reached"],
            ...findings.length ? [counted(findings.length, "finding", "findings")] : []].join(", ");
    }

    /* ---- the drawing ---- */

    const svgElement = (name, attributes) => {
        const element = document.createElementNS("http://www.w3.org/2000/svg", name);
        for (const [key, value] of Object.entries(attributes)) {
            element.setAttribute(key, value);
        }
        return element;
    };

    /** The groups of the drawing: those of things by id, and the edges that lead from entries. */
    const groups = new Map();
    const entryEdges = [];
    const boxes = new Map();
    const size = { width: svg.viewBox.baseVal.width, height: svg.viewBox.baseVal.height };

    /** The shape around the texts of a group: that of a node, or the frame beside a line. */
    const frameOf = group => group.classList.contains("edge") ? group.querySelector(".frame")
                                                              : group.querySelector("path, polygon, ellipse");

    /** Tells the line and its tip from what frames the text beside them. */
    function prepareEdge(group) {
        const [line, ...frames] = group.querySelectorAll("path");
        line.classList.add("line");
        group.querySelector("polygon")?.classList.add("tip");
        frames.forEach(frame => frame.classList.add("frame"));
        // A thin line is hard to hit.
        line.before(svgElement("path", { class: "hit", d: line.getAttribute("d") }));
    }

    function prepareGroup(group) {
        const thing = things.get(group.id);
        if (group.classList.contains("edge")) {
            prepareEdge(group);
        }
        if (thing) {
            groups.set(thing.id, group);
            group.setAttribute("role", "button");
            group.setAttribute("tabindex", thing.kind === "edge" ? "-1" : "0");
            group.setAttribute("aria-label", printable(labelOf(thing)));
        } else if (group.classList.contains("watch")) {
            entryEdges.push({ entry: group.id.split("-")[0], group });
        }
    }

    /** The texts of a group with their places, and the room that each has. */
    function measuredTexts(group) {
        const frame = frameOf(group);
        const box = frame?.getBBox();
        return [...box ? group.querySelectorAll("text") : []].map(text => {
            const begin = Number(text.getAttribute("x"));
            const middle = box.x + box.width / 2;
            // A diamond has its text in the middle, a box to the left.
            const diamond = frame.localName === "polygon";
            return { text, middle: diamond ? middle : null, length: text.getComputedTextLength(),
                     room: diamond ? 2 * (middle - begin) : box.x + box.width - begin - 4 };
        });
    }

    /** The fonts of who looks at the page are not those of who drew it. */
    function fitText({ text, middle, length, room }) {
        if (middle !== null) {
            text.setAttribute("x", middle);
            text.setAttribute("text-anchor", "middle");
        }
        if (length > room) {
            text.setAttribute("textLength", room);
            text.setAttribute("lengthAdjust", "spacingAndGlyphs");
        }
    }

    function addBadge(group, findings) {
        const worst = severities.find(severity => findings.some(one => one.severity === severity));
        const frame = frameOf(group);
        const box = frame.getBBox();
        const inset = frame.localName === "polygon" ? 0.25 : 0;
        const at = { x: box.x + box.width * (1 - inset), y: box.y + box.height * inset };
        const badge = svgElement("g", { class: `badge ${worst}` });
        badge.append(svgElement("circle", { cx: at.x, cy: at.y, r: 7 }));
        badge.append(svgElement("text", { x: at.x, y: at.y + 3.2, "text-anchor": "middle", "font-size": 9 }));
        badge.lastChild.textContent = findings.length;
        group.append(badge);
    }

    function prepareDrawing() {
        svg.setAttribute("width", size.width);
        svg.setAttribute("height", size.height);
        svg.setAttribute("role", "group");
        svg.setAttribute("aria-label", "Nodes and edges");
        // The panel says it better than what would show wherever the pointer rests.
        for (const title of svg.querySelectorAll("title")) {
            title.remove();
        }
        for (const anchor of svg.querySelectorAll("a")) {
            anchor.replaceWith(...anchor.childNodes);
        }
        const all = [...svg.querySelectorAll("g.node, g.edge")];
        all.forEach(prepareGroup);
        // All is measured before anything changes, or the browser would lay out once for each text.
        const texts = all.flatMap(measuredTexts);
        const origin = svg.getBoundingClientRect();
        for (const [id, group] of groups) {
            const box = group.getBoundingClientRect();
            boxes.set(id, { left: box.left - origin.left, right: box.right - origin.left,
                            top: box.top - origin.top, bottom: box.bottom - origin.top });
        }
        texts.forEach(fitText);
        for (const node of graph.nodes.filter(one => one.findings.length > 0)) {
            addBadge(groups.get(node.id), node.findings);
        }
    }

    /* ---- pan and zoom ---- */

    const whole = { left: 0, right: size.width, top: 0, bottom: size.height };
    const limits = { least: 0.05, most: 6, fit: 1.6, legible: 0.6, readable: 1 };
    const view = { x: 0, y: 0, scale: 1 };
    /** What fills the stage until somebody moves it, and again when the window changes. */
    let fitted = whole;

    function move(x, y, scale, glide) {
        Object.assign(view, { x, y, scale });
        svg.classList.toggle("gliding", Boolean(glide));
        svg.style.transform = `translate(${x}px, ${y}px) scale(${scale})`;
    }

    function centerOn(box, scale, glide) {
        move((stage.clientWidth - (box.left + box.right) * scale) / 2,
             (stage.clientHeight - (box.top + box.bottom) * scale) / 2, scale, glide);
    }

    function fit(box, glide) {
        fitted = box;
        const margin = Math.min(48, stage.clientWidth / 20);
        const scale = Math.min((stage.clientWidth - 2 * margin) / (box.right - box.left),
                               (stage.clientHeight - 2 * margin) / (box.bottom - box.top), limits.fit);
        centerOn(box, Math.max(scale, limits.least), glide);
    }

    function zoom(factor, x, y, glide) {
        fitted = null;
        const scale = Math.min(Math.max(view.scale * factor, limits.least), limits.most);
        const ratio = scale / view.scale;
        move(x - (x - view.x) * ratio, y - (y - view.y) * ratio, scale, glide);
    }

    const zoomMiddle = factor => zoom(factor, stage.clientWidth / 2, stage.clientHeight / 2, true);

    function pan(x, y, glide) {
        fitted = null;
        move(view.x + x, view.y + y, view.scale, glide);
    }

    function center(id) {
        if (boxes.has(id)) {
            fitted = null;
            centerOn(boxes.get(id), Math.max(view.scale, limits.readable), true);
        }
    }

    /** Moves no further than it must. */
    function reveal(id) {
        const box = boxes.get(id);
        const margin = 24;
        const short = (low, high, end) => low < margin ? margin - low : Math.min(0, end - margin - high);
        const x = short(box.left * view.scale + view.x, box.right * view.scale + view.x, stage.clientWidth);
        const y = short(box.top * view.scale + view.y, box.bottom * view.scale + view.y, stage.clientHeight);
        if (x || y) {
            pan(x, y, true);
        }
    }

    const pointers = new Map();
    let dragged = false;

    const pointOf = event => {
        const box = stage.getBoundingClientRect();
        return { x: event.clientX - box.left, y: event.clientY - box.top };
    };

    function pointerMoved(event) {
        const before = pointers.get(event.pointerId);
        if (!before) {
            return;
        }
        const now = pointOf(event);
        const others = [...pointers].filter(([id]) => id !== event.pointerId).map(([, point]) => point);
        // A hand that clicks is never quite still.
        if (!dragged && Math.hypot(now.x - before.x, now.y - before.y) < 4) {
            return;
        }
        if (!dragged) {
            dragged = true;
            stage.setPointerCapture(event.pointerId);
        }
        pointers.set(event.pointerId, now);
        if (others.length === 0) {
            pan(now.x - before.x, now.y - before.y);
        } else {
            const [other] = others;
            const distance = point => Math.hypot(point.x - other.x, point.y - other.y);
            zoom(distance(now) / Math.max(distance(before), 1), other.x, other.y);
        }
    }

    function pointerLeft(event) {
        pointers.delete(event.pointerId);
    }

    function listenToPointers() {
        stage.addEventListener("pointerdown", event => {
            if (event.button !== 0 || event.target.closest("#zoom, #skip")) {
                return;
            }
            dragged = pointers.size > 0;
            pointers.set(event.pointerId, pointOf(event));
        });
        stage.addEventListener("pointermove", pointerMoved);
        for (const name of ["pointerup", "pointercancel", "pointerleave"]) {
            stage.addEventListener(name, pointerLeft);
        }
        stage.addEventListener("wheel", event => {
            event.preventDefault();
            const lines = event.deltaMode === WheelEvent.DOM_DELTA_LINE ? 16 : 1;
            const { x, y } = pointOf(event);
            zoom(Math.exp(-Math.max(-120, Math.min(120, event.deltaY * lines)) / 400), x, y);
        }, { passive: false });
        stage.addEventListener("click", event => {
            if (dragged || event.target.closest("#zoom, #skip")) {
                dragged = false;
                return;
            }
            const group = event.target.closest("g[role=button]");
            go({ show: group ? group.id : "" });
        });
    }

    /* ---- what is shown, as the address says it ---- */

    /** What the part of the address behind # says. */
    function shown() {
        const address = new URLSearchParams(location.hash.slice(1));
        const show = things.get(address.get("show"));
        const first = graph.trace && !address.has("write") ? lights.keys().next().value : null;
        const key = first ?? address.get("write") ?? "";
        return { show, key: lights.has(key) ? key : "", light: lights.get(key) };
    }

    function go(changes, replacing) {
        const address = new URLSearchParams(location.hash.slice(1));
        for (const [key, value] of Object.entries(changes)) {
            // "No write" is worth saying only where one would be lit otherwise.
            if (value || (key === "write" && graph.trace)) {
                address.set(key, value);
            } else {
                address.delete(key);
            }
        }
        const target = `#${address}`;
        if (target === (location.hash || "#")) {
            return;
        }
        if (replacing) {
            location.replace(target);
        } else {
            location.hash = target;
        }
    }

    const last = { show: undefined, light: undefined };

    function update() {
        const now = shown();
        for (const [id, group] of groups) {
            group.classList.toggle("selected", id === now.show?.id);
            group.setAttribute("aria-pressed", String(id === now.show?.id));
        }
        showLight(now);
        showPanel(now);
        if (now.light !== last.light) {
            fit(now.light ? around(litIds(now.light)) : whole, true);
        } else if (now.show && now.show !== last.show) {
            reveal(now.show.id);
        }
        Object.assign(last, now);
    }

    /* ---- the path of a write ---- */

    const litIds = light => [...light.entries, ...light.nodes, ...light.edges];

    function around(ids) {
        const found = ids.map(id => boxes.get(id)).filter(Boolean);
        if (found.length === 0) {
            return whole;
        }
        return { left: Math.min(...found.map(box => box.left)), right: Math.max(...found.map(box => box.right)),
                 top: Math.min(...found.map(box => box.top)), bottom: Math.max(...found.map(box => box.bottom)) };
    }

    function showLight({ key, light }) {
        const lit = new Set(light ? litIds(light) : []);
        svg.classList.toggle("lighting", Boolean(light));
        for (const [id, group] of groups) {
            group.classList.toggle("lit", lit.has(id));
        }
        for (const { entry, group } of entryEdges) {
            group.classList.toggle("lit", lit.has(entry));
        }
        pick.value = key;
        byId("pick-clear").hidden = !light;
        byId("pick-status").textContent = "";
    }

    /** Takes what is written in the box, or the only one that contains it. */
    function picked() {
        const wanted = pick.value.trim();
        // What was explained is mostly one of the others as well, so it counts in full only.
        const containing = [...lights].filter(([key, light]) => light !== graph.trace && key.includes(wanted))
            .map(([key]) => key);
        if (wanted === "" || lights.has(wanted)) {
            go({ write: wanted, show: "" });
        } else if (containing.length === 1) {
            go({ write: containing[0], show: "" });
        } else {
            byId("pick-status").textContent = containing.length ? `${containing.length} contain this`
                                                                : "not watched";
        }
    }

    function listenToPicking() {
        for (const key of lights.keys()) {
            byId("writes").append(element("option", { value: key }));
        }
        pick.addEventListener("change", picked);
        // A choice from the list is taken at once, not only when the box is left.
        pick.addEventListener("input", () => {
            byId("pick-status").textContent = "";
            if (pick.value === "" || lights.has(pick.value)) {
                picked();
            }
        });
        pick.addEventListener("keydown", event => {
            if (event.key === "Escape") {
                pick.value = "";
                picked();
            }
        });
        byId("pick-clear").addEventListener("click", () => {
            go({ write: "" });
            pick.focus();
        });
    }

    /* ---- search ---- */

    const tableTexts = tables =>
        tables.flatMap(table => [table.type, ...table.rows.flatMap(row => row.cells.map(textOf))]);

    function textsOf(thing) {
        if (thing.kind === "entry") {
            return [thing.watch?.text ?? "every write"];
        }
        if (thing.kind === "edge") {
            return tableTexts(thing.edge.conditions);
        }
        const { name, type, commands, findings } = thing.node;
        return [name, type, ...tableTexts(commands),
            ...findings.flatMap(one => [one.code, one.message])];
    }

    let wanted = "";
    let matches = [];
    let current = 0;

    function showMatch() {
        for (const [id, group] of groups) {
            group.classList.toggle("match", matches.includes(id));
            group.classList.toggle("current", matches.length > 0 && id === matches[current]);
        }
        byId("search-count").textContent = wanted === "" ? ""
            : matches.length === 0 ? "none" : `${current + 1} of ${matches.length}`;
        if (matches.length === 0) {
            showPanel(shown());
            return;
        }
        center(matches[current]);
        if (shown().show?.id === matches[current]) {
            showPanel(shown());
        } else {
            go({ show: matches[current] }, true);
        }
    }

    function find() {
        wanted = printable(search.value.trim()).toLowerCase();
        current = 0;
        matches = wanted === "" ? [] : [...things.values()].filter(
            thing => textsOf(thing).some(text => printable(text).toLowerCase().includes(wanted))).map(thing => thing.id);
        showMatch();
    }

    function listenToSearch() {
        search.addEventListener("input", find);
        search.addEventListener("keydown", event => {
            if (event.key === "Enter" && matches.length > 0) {
                current = (current + (event.shiftKey ? matches.length - 1 : 1)) % matches.length;
                showMatch();
            } else if (event.key === "Escape") {
                search.value = "";
                find();
            }
        });
    }

    /* ---- the panel ---- */

    /** Children that are texts become text, whatever is in them. */
    function element(name, attributes = {}, ...children) {
        const made = document.createElement(name);
        for (const [key, value] of Object.entries(attributes)) {
            made.setAttribute(key, printable(String(value)));
        }
        made.append(...children.filter(child => child !== null && child !== undefined)
            .map(child => typeof child === "string" ? printable(child) : child));
        return made;
    }

    const paragraph = (...children) => element("p", {}, ...children);
    const section = (title, ...children) =>
        children.length ? element("section", {}, element("h3", {}, title), ...children) : null;
    const list = items =>
        element("ul", {}, ...items.map(item => element("li", {}, ...[item].flat())));

    /** A text with what is searched for marked in it. */
    function marked(raw) {
        const text = printable(raw);
        const made = document.createDocumentFragment();
        // Where lower case has another length, places in one are not those in the other.
        const lower = text.toLowerCase().length === text.length ? text.toLowerCase() : text;
        let from = 0;
        for (let at; wanted && (at = lower.indexOf(wanted, from)) >= 0; from = at + wanted.length) {
            made.append(text.slice(from, at), element("mark", {}, text.slice(at, at + wanted.length)));
        }
        made.append(text.slice(from));
        return made;
    }

    const code = text => element("code", {}, marked(text));

    function link(changes, ...children) {
        const made = element("button", { type: "button", class: "link" }, ...children);
        made.addEventListener("click", () => {
            go(changes);
            if (changes.show) {
                center(changes.show);
            }
        });
        return made;
    }

    const nodeLink = id => link({ show: id }, marked(nameOf(id)));

    const findingItem = (finding, ...where) => element("div", { class: `finding ${finding.severity}` },
        element("p", { class: "what" }, element("strong", {}, finding.severity), ...where,
                element("span", { class: "place" }, `${finding.line}:${finding.column}`)),
        paragraph(marked(finding.message)),
        finding.advice ? element("p", { class: "advice" }, finding.advice) : null,
        element("p", { class: "advice" }, code(finding.code)));

    function targetItem(target) {
        const column = typeof target.arrayColumn === "number" ? `, column ${target.arrayColumn}` : "";
        if (!target.exists) {
            return ["sets ", code(target.url), column, ": ", element("strong", { class: "missing" }, "not there")];
        }
        return ["sets ", code(target.url), column, ...[null, ""].includes(target.unit) ? [] : [", now in ", code(textOf(target.unit))]];
    }

    /** An empty text is a cell as well, and for a comparison not the same as none. */
    const cellText = cell => cell === "" ? '""' : textOf(cell);

    /** The cells of a row by the columns that they belong to; those that belong to none come last. */
    function cellsOf({ cells, layout }, columnCount) {
        const placed = [];
        cells.forEach((cell, at) => {
            const behind = layout.length === 0 ? at : columnCount + at - layout.length;
            placed[layout[at] ?? behind] = cell;
        });
        return placed;
    }

    function tableRows(row, placed, columns) {
        const cells = columns.map(({ index }) => {
            const text = placed[index] === undefined ? "" : code(cellText(placed[index]));
            return element("td", {}, row.counts ? text : element("s", {}, text));
        });
        const below = [...row.note ? [element("p", { class: "why" }, row.note)] : [],
            ...row.targets?.length ? [list(row.targets.map(targetItem))] : []];
        const attributes = row.counts ? {} : { class: "void" };
        return [element("tr", attributes, element("th", { scope: "row", title: row.place }, String(row.number)), ...cells),
            ...below.length ? [element("tr", { class: `below ${row.counts ? "" : "void"}` }, element("td"),
                                       element("td", { colspan: cells.length }, ...below))] : []];
    }

    function tableSection(table) {
        const placed = table.rows.map(row => cellsOf(row, table.columns.length));
        const most = Math.max(table.columns.length, ...placed.map(cells => cells.length));
        // A column that no row has, a remark mostly, would only take room.
        const columns = Array.from({ length: most }, (_, index) => ({ index, name: table.columns[index] ?? "" }))
            .filter(({ index }) => placed.some(cells => cells[index] !== undefined));
        const body = table.rows.length === 0 ? paragraph("No rows.")
            : element("div", { class: "table", tabindex: "0", role: "group", "aria-label": `Rows of ${table.type}` },
                      element("table", {},
                              element("thead", {}, element("tr", {},
                                  ...["#", ...columns.map(column => column.name)].map(
                                      name => element("th", { scope: "col" }, name)))),
                              element("tbody", {}, ...table.rows.flatMap((row, at) => tableRows(row, placed[at], columns)))));
        return element("section", {}, element("h4", {}, marked(table.type)), placeOf(table), body);
    }

    const placeOf = ({ place }) => element("p", { class: "place" }, place);

    function heading(eyebrow, title, place, badges = []) {
        const close = element("button", { type: "button", id: "close", "aria-label": "Close", title: "Close (Escape)" }, "×");
        close.addEventListener("click", () => go({ show: "" }));
        return [element("p", { class: "eyebrow" }, marked(eyebrow)), close,
                element("h2", {}, marked(title)), ...place ? [placeOf({ place })] : [],
                ...badges.length ? [element("p", { class: "badges" },
                                            ...badges.map(text => element("span", {}, text)))] : []];
    }

    const edgeItem = (edge, end) => [nodeLink(edge[end]), ", ",
        link({ show: edge.id }, edge.conditions.length === 0 ? "without conditions"
            : counted(edge.conditions.length, "condition", "conditions"))];

    function tracedRows(only) {
        const rows = (graph.trace?.rows ?? []).filter(row => !only || row.node === only);
        return rows.map(row => [
            ...only ? [] : [nodeLink(row.node), ": "],
            `${things.get(row.node).node.commands[row.command]?.type ?? "command"}, row ${row.row}: ${row.text}`]);
    }

    function nodePanel({ node, into, outOf }, { light }) {
        const badges = [...node.topLevel ? ["top level"] : [],
            ...node.unconditional ? ["runs with every write"] : [],
            ...node.reachable ? [] : ["never reached"]];
        const traced = light && light === graph.trace ? tracedRows(node.id) : [];
        return [...heading(node.type, node.name, node.place, badges),
            element("p", { class: "path" }, node.path.join(" › ")),
            section("Findings", ...node.findings.map(finding => findingItem(finding))),
            section("What the write did", ...traced.length ? [list(traced)] : []),
            section("Commands", ...node.commands.map(tableSection)),
            section("Runs with a write to", ...node.watches.length ? [list(node.watches.map(
                watch => link({ write: watchKey(watch) }, ...watch.pattern ? ["pattern "] : [], code(watch.text))))] : []),
            section("Reached from", ...into.length ? [list(into.map(({ edge }) => edgeItem(edge, "from")))] : []),
            section("Leads to", ...outOf.length ? [list(outOf.map(({ edge }) => edgeItem(edge, "to")))] : [])];
    }

    /** When an edge is followed. */
    function ruleOf({ conditions, from, to }) {
        const { node, outOf } = things.get(from);
        if (things.get(to).node.kind === "unknown") {
            return "It leads nowhere: no node can be made of what is there.";
        }
        if (node.kind === "unknown") {
            return "It is never followed: no node can be made of what it comes from.";
        }
        if (node.kind === "command" && outOf.length > 1) {
            return `It is never followed: a command node follows an edge only if it is the only one, and this one has ${outOf.length}.`;
        }
        if (conditions.length === 0) {
            return "It has no conditions and is always followed.";
        }
        return node.kind === "command" ? "A command node follows its only edge whatever the conditions say."
            : conditions.length === 1 ? "It is followed when the condition holds."
            : "It is followed once for each condition that holds.";
    }

    function edgePanel({ edge }) {
        const { conditions, from } = edge;
        return [...heading("edge", `${nameOf(from)} → ${nameOf(edge.to)}`, null,
                           edge.reachable ? [] : ["never reached"]),
            paragraph("From ", nodeLink(from), " to ", nodeLink(edge.to), ". ", ruleOf(edge)),
            section("Conditions", ...conditions.map(tableSection))];
    }

    function entryPanel({ watch, key, nodes }) {
        if (!watch) {
            return [...heading("every write", "Runs with every write", null), list(nodes.map(nodeLink))];
        }
        return [...heading(watch.pattern ? "watched pattern" : "watched URL", watch.text, watch.place),
            paragraph(link({ write: key }, "Light what a write here may run")),
            section("Runs", list(nodes.map(nodeLink)))];
    }

    const linkWords = ({ source, target, process, parameters }) =>
        [code(source), " → ", code(target), process ? " (process)" : "",
            ...parameters.length ? [" with ", code(parameters.map(textOf).join(", "))] : []];

    function tracePanel(trace) {
        const rows = tracedRows();
        return [element("p", { class: "eyebrow" }, "explained write"),
            element("h2", {}, trace.url),
            paragraph("was written", ...trace.value === null ? [] : [" with ", code(textOf(trace.value))], ". ",
                      ...trace.link ? ["For ", ...linkWords(trace.link), " it"] : ["It"],
                      ` entered ${counted(trace.nodes.length, "node", "nodes")} and followed `,
                      `${counted(trace.edges.length, "edge", "edges")}.`),
            section("What the write did", rows.length ? list(rows) : paragraph("No row was run.")),
            section("Entered", list(trace.nodes.map(nodeLink)))];
    }

    function writePanel(write) {
        return [element("p", { class: "eyebrow" }, write.pattern ? "a write that the pattern matches" : "a write to"),
            element("h2", {}, write.text),
            paragraph("What it may run is lit. Comparisons with values are taken as if they held."),
            section("May run", list(write.nodes.map(nodeLink)))];
    }

    function overviewPanel() {
        const findings = graph.nodes.flatMap(node => node.findings.map(finding => ({ node, finding })))
            .sort((a, b) => severities.indexOf(a.finding.severity) - severities.indexOf(b.finding.severity));
        const from = graph.link;
        return [element("p", { class: "eyebrow" }, "dependency graph"),
            element("h2", {}, graph.description),
            from ? paragraph(...linkWords(from)) : null,
            from ? placeOf(from) : null,
            graph.nodes.length === 0 ? paragraph("There is no node in it: whatever is written, it does nothing.") : paragraph("Click a node, an edge or a watched URL for its rows. Pick a URL above to see what a write to it may run."),
            section("Findings", ...findings.length === 0 ? [paragraph("None.")]
                : findings.map(({ node, finding }) => findingItem(finding, nodeLink(node.id)))),
            section("Runs with every write", ...unconditional.length ? [list(unconditional.map(nodeLink))] : []),
            section("Keys", element("dl", {}, ...[
                ["/", "find"], ["Enter", "next match; with Shift the one before"], ["+ −", "zoom"], ["0", "fit"],
                ["← ↑ ↓ →", "move"], ["Tab", "next node; Enter selects it"], ["Esc", "clear"],
            ].flatMap(([key, meaning]) => [element("dt", {}, element("kbd", {}, key)), element("dd", {}, meaning)])))];
    }

    function showPanel(now) {
        const content = now.show?.kind === "node" ? nodePanel(now.show, now)
            : now.show?.kind === "edge" ? edgePanel(now.show)
            : now.show?.kind === "entry" ? entryPanel(now.show)
            : now.light && now.light === graph.trace ? tracePanel(now.light)
            : now.light ? writePanel(now.light)
            : overviewPanel();
        const hadFocus = panel.contains(document.activeElement);
        panel.replaceChildren(...content.filter(Boolean));
        panel.scrollTop = 0;
        // What had the focus is gone; the next Tab goes on here and not at the top of the page.
        if (hadFocus) {
            panel.focus();
        }
    }

    /* ---- keys ---- */

    function listenToKeys() {
        const step = 80;
        const keys = {
            "+": () => zoomMiddle(1.25),
            "=": () => zoomMiddle(1.25),
            "-": () => zoomMiddle(0.8),
            "0": () => fit(whole, true),
            "/": () => search.select(),
            ArrowLeft: () => pan(step, 0, true),
            ArrowRight: () => pan(-step, 0, true),
            ArrowUp: () => pan(0, step, true),
            ArrowDown: () => pan(0, -step, true),
            Escape: () => go(shown().show ? { show: "" } : { write: "" }),
        };
        document.addEventListener("keydown", event => {
            const inPanel = event.key.startsWith("Arrow") && panel.contains(event.target);
            if (event.target.closest("input") || inPanel || event.ctrlKey || event.metaKey || event.altKey) {
                return;
            }
            const group = event.target.closest("g[role=button]");
            if (group && (event.key === "Enter" || event.key === " ")) {
                event.preventDefault();
                go({ show: group.id });
            } else if (Object.hasOwn(keys, event.key)) {
                event.preventDefault();
                keys[event.key]();
            }
        });
        stage.addEventListener("focusin", event => {
            const group = event.target.closest("g[role=button]");
            if (group?.matches(":focus-visible")) {
                reveal(group.id);
            }
        });
        byId("zoom-in").addEventListener("click", () => zoomMiddle(1.25));
        byId("zoom-out").addEventListener("click", () => zoomMiddle(0.8));
        byId("zoom-fit").addEventListener("click", () => fit(whole, true));
        byId("skip").addEventListener("click", event => {
            event.preventDefault();
            panel.focus();
        });
    }

    /* ---- begin ---- */

    if (known) {
        const findings = graph.nodes.reduce((sum, node) => sum + node.findings.length, 0);
        document.title = printable(`${graph.description} – dependency graph`);
        byId("name").textContent = printable(graph.description);
        byId("about").textContent = printable([
            ...graph.link ? [`${graph.link.source} → ${graph.link.target}`] : [],
            counted(graph.nodes.length, "node", "nodes"), counted(graph.edges.length, "edge", "edges"),
            counted(findings, "finding", "findings")].join(" · "));
    }
    prepareDrawing();
    listenToPointers();
    listenToPicking();
    listenToSearch();
    listenToKeys();
    window.addEventListener("hashchange", update);
    update();
    fit(last.light ? around(litIds(last.light)) : whole);
    if (last.show && view.scale < limits.legible) {
        center(last.show.id);
    }
    new ResizeObserver(() => fitted && fit(fitted)).observe(stage);
    document.documentElement.classList.add("ready");
})();
