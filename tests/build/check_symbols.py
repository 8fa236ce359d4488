#!/usr/bin/env python3
"""Checks the boundary of the built engine: what it needs, what it exports, what it leaves open.

usage: check_symbols.py LIBRARY HOST_HEADER_DIRECTORY
"""

import pathlib
import re
import subprocess
import sys

PUBLIC_CLASSES = {
    "CommandBase",
    "CommandSetUnitByConfigurationParameter",
    "CommandSetUnitByConfigurationParameterArray",
    "CommandSetUnitByConfigurationParameterRegExp",
    "CommandSetUnitProperties",
    "CommandSetUnitPropertiesRegExp",
    "ConditionBase",
    "ConditionValueComparatorRegExp",
    "ConditionValueComparators",
    "ConditionWriteOnUrls",
    "ConditionWriteOnUrlsRegExp",
    "DependencyResolverBaseClass",
    "DependencyWalker",
    "DependencyWalkerDefinitions",
    "DependencyWalkerFactory",
    "NodeBase",
    "NodeCommand",
    "NodeSwitch",
    "SourceDependencyManager",
    "TableDescription",
    "TraversalObservation",
    "TraversalObserver",
    "TypeCatalog",
    "UnitManipulatorBase",
    "VelmarFactories::Factory",
}

# Qt 5 Core, and the C and C++ runtime.
ALLOWED_LIBRARIES = re.compile(
    r"^(libQt5Core|libstdc\+\+|libc\+\+|libc|libm|libgcc_s|libpthread|ld-linux-.*)\.so\.\d+$"
)

# What the loader itself supplies, or may leave open.
OF_THE_LOADER = re.compile(r"^(_ITM_|__gmon_start__$|__tls_get_addr$)")

# "vtable for X", "typeinfo name for X", "guard variable for X" belong to X.
ATTACHED = re.compile(r"^(?:(?:vtable|VTT|typeinfo(?: name)?|guard variable|non-virtual thunk) (?:for|to) )+")


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def dynamic_symbols(path, *options):
    """The (mangled, demangled) names that nm lists, without version suffixes."""
    mangled = [line.split()[-1].split("@")[0] for line in run("nm", "-D", *options, path).splitlines()]
    demangled = subprocess.run(
        ["c++filt"], input="\n".join(mangled), check=True, capture_output=True, text=True
    ).stdout.splitlines()
    return list(zip(mangled, demangled))


def owner(demangled):
    """The class a symbol belongs to: everything before the last "::" outside brackets."""
    name = ATTACHED.sub("", demangled)
    plain, depth = "", 0
    for character in name:
        if character in "<(":
            if character == "(" and depth == 0:
                break
            depth += 1
        elif character in ">)":
            depth -= 1
        elif depth == 0:
            plain += character
    return plain.strip()


def belongs_to(demangled, classes):
    name = owner(demangled)
    return any(name == known or name.startswith(known + "::") for known in classes)


def needed_libraries(library):
    return re.findall(r"\(NEEDED\).*\[(.*)\]", run("readelf", "--wide", "-d", library))


def library_paths(library):
    """Where the loader finds each needed library."""
    return dict(re.findall(r"^\s*(\S+) => (\S+)", run("ldd", library), re.MULTILINE))


def check(library, host_directory):
    complaints = []

    needed = needed_libraries(library)
    complaints += [f"needs {name}" for name in needed if not ALLOWED_LIBRARIES.match(name)]

    exported = dynamic_symbols(library, "--defined-only")
    complaints += [f"exports {name}" for _, name in exported if not belongs_to(name, PUBLIC_CLASSES)]
    found = {known for known in PUBLIC_CLASSES if any(belongs_to(name, {known}) for _, name in exported)}
    complaints += [f"does not export {name}" for name in sorted(PUBLIC_CLASSES - found)]

    host_classes = {header.stem for header in pathlib.Path(host_directory).glob("*.h")}
    paths = library_paths(library)
    provided = {
        mangled
        for name in needed
        if name in paths
        for mangled, _ in dynamic_symbols(paths[name], "--defined-only")
    }
    from_host = 0
    for mangled, name in dynamic_symbols(library, "--undefined-only"):
        if belongs_to(name, host_classes):
            from_host += 1
        elif mangled not in provided and not OF_THE_LOADER.match(mangled):
            complaints.append(f"leaves {name} undefined")
    if from_host == 0:
        complaints.append("asks nothing of the host, so this check looked at the wrong file")
    return complaints


def main():
    complaints = check(*sys.argv[1:3])
    for complaint in complaints:
        print(f"{sys.argv[1]}: {complaint}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
