#!/usr/bin/env python3
"""together.py COMMANDS FOLDER: for the sources of ours in a compilation database (not the tests'), writes to FOLDER some
that include up to eight of one target each, and the database that belongs to them. Fails where a source of ours is in no
target, but for the fuzzers', and for benchmarks whose neighbours are not installed."""

import json
import os
import re
import shlex
import subprocess
import sys

AT_ONCE = 8
# clang's analyzer follows the paths of what a file of this name includes, and of no other's.
NAME = "UnifiedSource"


def sources_of(file):
    """What the compiler is given may be several sources that CMake has put together."""
    if "/Unity/" not in file:
        return [file]
    with open(file, encoding="utf-8") as together:
        return re.findall(r'^#include "(.*)"$', together.read(), re.MULTILINE)


database, folder = sys.argv[1:]
ours = {
    os.path.abspath(path)
    for path in subprocess.check_output(["git", "ls-files", "*.cpp", ":!tests", ":!fuzz"], text=True).split()
}
targets = {}
for entry in json.load(open(database, encoding="utf-8")):
    sources = [source for source in sources_of(entry["file"]) if source in ours]
    if not sources:
        continue
    ours.difference_update(sources)
    command, target = re.fullmatch(r"(.*) -o \S*CMakeFiles/(\w+)\.dir/.*", entry["command"]).groups()
    # GCC's alone.
    command = command.replace(" -Wno-subobject-linkage", "")
    targets.setdefault(target, (entry["directory"], command, []))[2].extend(sources)

left = sorted(path for path in map(os.path.relpath, ours) if not path.startswith("bench/"))
if left:
    sys.exit("in no target: " + " ".join(left))

entries = []
for target, (directory, command, sources) in sorted(targets.items()):
    for first in range(0, len(sources), AT_ONCE):
        path = os.path.abspath(f"{folder}/{NAME}-{target}-{first // AT_ONCE}.cpp")
        with open(path, "w", encoding="utf-8") as together:
            together.writelines(f'#include "{source}" // NOLINT(bugprone-suspicious-include)\n' for source in sources[first : first + AT_ONCE])
        entries.append({"directory": directory, "file": path, "command": f"{command} -c {shlex.quote(path)}"})
with open(f"{folder}/compile_commands.json", "w", encoding="utf-8") as out:
    json.dump(entries, out)
sys.exit(0 if entries else "no sources")
