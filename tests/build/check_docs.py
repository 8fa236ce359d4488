#!/usr/bin/env python3
"""Checks that the documents tell the truth.

A fenced block whose info string has a second word is a claim:

    ```cpp path/from/the/root    these lines stand in that file, in this order, without a gap
    ```console demo              the demo prints these lines, in this order, without a gap
    ```console oven-line         typed one after the other in a copy of examples/oven-line, the
                                 commands behind "$ " print the lines that follow them
    ```mermaid display-units     the picture that the program makes of this description of it

Relative links have to lead to a file, and to a heading where they name one.

usage: check_docs.py ROOT UNITFLOW OTHER_PROGRAM...
"""

import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

FENCE = re.compile(r"^```(\w+) (\S+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
ANY_FENCE = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)
LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ +(.*)$", re.MULTILINE)


def main():
    root, *programs = (pathlib.Path(word).resolve() for word in sys.argv[1:])
    folders = [str(program.parent) for program in programs]
    environment = dict(os.environ, LC_ALL="C.UTF-8", NO_COLOR="1")
    environment["PATH"] = os.pathsep.join([*folders, environment["PATH"]])

    with tempfile.TemporaryDirectory() as scratch:
        environment["TMPDIR"] = scratch
        demo = run([root / "scripts/demo-story", folders[0]], root, environment)
        claims, problems = check_documents(root, demo.stdout, environment)
    if demo.returncode != 0:
        problems.append(f"the demo ends with status {demo.returncode}")

    print(f"{claims} claims")
    for problem in problems:
        print(problem)
    return 1 if problems or claims == 0 else 0


def check_documents(root, demo, environment):
    """How many claims there are, and what is wrong."""
    claims = 0
    problems = []
    for document in [root / "README.md", *sorted(root.glob("docs/*.md"))]:
        name = document.relative_to(root)
        text = document.read_text(encoding="utf-8")
        problems += [f"{name}: {problem}" for problem in check_links(document, text)]
        for line, found in check_claims(text, root, demo, environment):
            claims += 1
            problems += [f"{name}:{line}: {problem}" for problem in found]
    return claims, problems


def run(command, directory, environment):
    """Runs the command; both of its streams are its output."""
    return subprocess.run(
        command,
        cwd=directory,
        env=environment,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        encoding="utf-8",
        check=False,
    )


def claims_of(text):
    """Line, language, claim and content of each block that claims something."""
    for fence in FENCE.finditer(text):
        yield (text.count("\n", 0, fence.start()) + 1, *fence.groups())


def check_claims(text, root, demo, environment):
    """A pair of a line number and problems for each block that claims something."""
    with tempfile.TemporaryDirectory() as scratch:
        workspace = pathlib.Path(scratch, "oven-line")
        shutil.copytree(root / "examples/oven-line", workspace)
        for line, language, claim, content in claims_of(text):
            if language == "console" and claim == "oven-line":
                yield line, check_session(content, workspace, environment)
            elif language == "console" and claim == "demo":
                yield line, check_part(content, demo, "what the demo prints")
            elif language == "mermaid":
                drawing = f"$ unitflow graph {claim} --format mermaid\n{content}"
                yield line, check_session(drawing, workspace, environment)
            else:
                yield line, check_part(content, (root / claim).read_text(encoding="utf-8"), claim)


def check_part(content, whole, title):
    if "\n" + content in "\n" + whole:
        return []
    return [f"these lines are not in {title}:\n{content}"]


def check_session(content, directory, environment):
    steps = re.split(r"^\$ ", content, flags=re.MULTILINE)[1:]
    problems = [] if steps else ["no command in this session"]
    for step in steps:
        command, claimed = step.split("\n", 1)
        printed = run(shlex.split(command), directory, environment).stdout
        if printed.strip("\n") != claimed.strip("\n"):
            problems.append(f'"{command}" prints:\n{printed}but the document says:\n{claimed}')
    return problems


def check_links(document, text):
    problems = []
    for target in LINK.findall(ANY_FENCE.sub("", text)):
        if re.match(r"\w+:", target):
            continue
        path, _, anchor = target.partition("#")
        file = document.parent / path if path else document
        if not file.exists():
            problems.append(f"the link to {target} leads nowhere")
        elif anchor and anchor not in anchors(file.read_text(encoding="utf-8")):
            problems.append(f"the link to {target} names no heading")
    return problems


def anchors(text):
    """The headings, spelled as links name them."""
    return {
        re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")
        for heading in HEADING.findall(ANY_FENCE.sub("", text))
    }


if __name__ == "__main__":
    sys.exit(main())
