"""A large workspace that looks like many small ones: lines of a plant, each with a controller and
nine instances that follow it. The same for the same size, byte for byte.
"""

import json

FOLLOWERS = 9  # of each controller; every third one is a process description
ZONES = 6
UNITS = (("°C", "mbar"), ("K", "hPa"))  # what the controllers ask for, in two states

DESCRIPTIONS = {
    "display-units": "Zone%d/",
    "process-units": "Input/Zone%d/",
}


def write_workspace(folder, instances):
    """Writes a workspace of about so many instances. Its targets are in neither state yet."""
    lines = instances // (FOLLOWERS + 1)
    for name in ("configuration", "process", "dependency"):
        (folder / name).mkdir(parents=True)
    for name, prefix in DESCRIPTIONS.items():
        write_json(folder / "dependency" / f"{name}.json", description(prefix))
    for line in range(lines):
        for number in range(FOLLOWERS):
            write_json(target_path(folder, line, number), target(number))
    links = [link(line, number) for line in range(lines) for number in range(FOLLOWERS)]
    write_json(folder / "links.json", links)
    write_json(folder / "configuration" / "manifest.json", manifest(lines))
    set_state(folder, instances, 0)


def set_state(folder, instances, state):
    """Lets all controllers ask for other units."""
    temperature, pressure = UNITS[state]
    for line in range(instances // (FOLLOWERS + 1)):
        write_json(
            folder / "configuration" / f"{controller(line)}.json",
            {
                "@comment": f"Controller of line {line}: what the operator sets.",
                "Settings": {
                    "TemperatureUnit": temperature,
                    "PressureUnit": pressure,
                    "OperatingMode": "production",
                    "Language": "en",
                },
                "Belt": {"Speed": {"@value": 1.2, "@unitType": "m/min"}},
            },
        )


def is_in_state(folder, line, number, state):
    """Whether this target has the units of that state, and only those."""
    text = target_path(folder, line, number).read_text(encoding="utf-8")
    return all(text.count(f'"{unit}"') == ZONES for unit in UNITS[state]) and not any(
        f'"{unit}"' in text for unit in UNITS[1 - state]
    )


def files(folder, instances):
    """All files that a resolution of everything reads, and those of them that it rewrites."""
    lines = range(instances // (FOLLOWERS + 1))
    manifest_file = folder / "configuration" / "manifest.json"
    targets = [target_path(folder, line, number) for line in lines for number in range(FOLLOWERS)]
    read = [
        folder / "links.json",
        *(folder / "dependency" / f"{name}.json" for name in DESCRIPTIONS),
        *(folder / "configuration" / f"{controller(line)}.json" for line in lines),
    ]
    return read, [*targets, manifest_file]


def controller(line):
    return f"controller-{line:04}"


def is_process(number):
    return number % 3 == 2


def target_name(line, number):
    return f"{'oven' if is_process(number) else 'display'}-{line:04}-{number}"


def target_path(folder, line, number):
    kind = "process" if is_process(number) else "configuration"
    return folder / kind / f"{target_name(line, number)}.json"


def link(line, number):
    return {
        "source": controller(line),
        "target": target_name(line, number),
        "dependency": "process-units" if is_process(number) else "display-units",
        "process": is_process(number),
        "parameters": [],
    }


def target(number):
    """Twelve leaves that follow, among others that do not."""
    zones = {
        f"Zone{zone}": {
            "Temperature": {"@value": 20.5 + zone, "@unitType": "°F"},
            "Pressure": {"@value": 1013, "@unitType": "psi"},
            "Name": f"Zone {zone}",
            "Limits": {"@value": [0, 250 + number], "@type": "range"},
        }
        for zone in range(ZONES)
    }
    comment = {"@comment": "Follows its controller."}
    return comment | ({"Input": zones} if is_process(number) else zones)


def description(prefix):
    """A switch for each of the two units; the command behind it sets six leaves."""
    return {
        leaf: {
            "Type": "SwitchNode",
            "Next": {
                "Follow": {
                    "Type": "CommandNode",
                    "ConditionWriteOnUrls": [[f"Settings/{leaf}Unit"]],
                    "Commands": {
                        "CommandSetUnitByConfigurationParameter": [
                            [f"Settings/{leaf}Unit", "", prefix % zone + leaf]
                            for zone in range(ZONES)
                        ]
                    },
                }
            },
        }
        for leaf in ("Temperature", "Pressure")
    }


def manifest(lines):
    """Names every configuration, as the host's own does."""
    entries = []
    for line in range(lines):
        names = [target_name(line, i) for i in range(FOLLOWERS) if not is_process(i)]
        entries += [(controller(line), True), *((name, False) for name in names)]
    return [
        {
            "instanceName": name,
            "hasDependency": has_dependency,
            "lastModified": "2024-03-04T09:15:00.000Z",
        }
        for name, has_dependency in entries
    ]


def write_json(path, value):
    path.write_text(json.dumps(value, ensure_ascii=False, indent=4) + "\n", encoding="utf-8")
