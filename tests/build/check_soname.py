#!/usr/bin/env python3
"""Checks that the loader tells libraries of different minor versions apart.

usage: check_soname.py VERSION LIBRARY...
"""

import pathlib
import re
import subprocess
import sys


def soname(library):
    """The name by which a program that was linked with the library asks for it."""
    dynamic = subprocess.run(
        ["readelf", "--wide", "-d", library], check=True, capture_output=True, text=True
    ).stdout
    found = re.search(r"\(SONAME\).*\[(.*)\]", dynamic)
    return found.group(1) if found else "nothing"


def main():
    version, libraries = sys.argv[1], sys.argv[2:]
    minor = ".".join(version.split(".")[:2])
    complaints = []
    for library in libraries:
        wanted = pathlib.Path(library).name.split(".so")[0] + ".so." + minor
        if soname(library) != wanted:
            complaints.append(f"{library}: is asked for as {soname(library)}, not as {wanted}")
    for complaint in complaints:
        print(complaint)
    return 1 if complaints or not libraries else 0


if __name__ == "__main__":
    sys.exit(main())
