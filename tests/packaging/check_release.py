#!/usr/bin/env python3

# SPDX-FileCopyrightText: 2026 The velmora-share developers
#
# SPDX-License-Identifier: MIT

"""Checks what a distribution ships beside the program against the program itself: one version
everywhere (CMake, --version, the metainfo, CHANGELOG.md, debian/changelog), the options of
--help in the man page and in every shell completion, the metainfo valid for AppStream, and the
source tree clean for REUSE.

usage: check_release.py PROGRAM BUILD_DIR SOURCE_DIR VERSION
"""

import pathlib
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ET

failures = []


def check(condition, message):
    if not condition:
        failures.append(message)


def tool(name, *args, cwd=None):
    """Runs a checking tool; a missing tool is a failure too, as the bootstrap installs it."""
    if shutil.which(name) is None:
        failures.append(f"{name} is not installed (scripts/bootstrap installs it)")
        return None
    return subprocess.run([name, *args], capture_output=True, text=True, cwd=cwd)


def main(argv):
    program, build, source, version = argv[1], pathlib.Path(argv[2]), pathlib.Path(argv[3]), argv[4]
    metainfo = build / "packaging/it.zemlo.velmora.share.metainfo.xml"

    shown = subprocess.run([program, "--version"], capture_output=True, text=True).stdout.split()
    changelog = re.search(r"^## \[(\d[^\]]*)\]", (source / "CHANGELOG.md").read_text(), re.M)
    debian = re.match(r"velmora-share \(([^)]+)\)", (source / "debian/changelog").read_text())
    release = ET.parse(metainfo).getroot().find("releases/release")
    for where, found in [("--version", shown[-1] if shown else None),
                         ("CHANGELOG.md", changelog and changelog.group(1)),
                         ("debian/changelog", debian and debian.group(1)),
                         ("metainfo", release is not None and release.get("version"))]:
        check(found == version, f"{where} gives version {found!r}, CMake {version!r}")

    help_text = subprocess.run([program, "--help"], capture_output=True, text=True).stdout
    options = set(re.findall(r"^\s+(?:-\w, )?(--[a-z][a-z-]*)", help_text, re.M))
    check(len(options) > 5, f"--help lists too few options: {sorted(options)}")
    readers = {
        "packaging/completions/velmora-share.bash": r"(--[a-z][a-z-]*)",
        "packaging/completions/_velmora-share": r"(--[a-z][a-z-]*)[\[}]",
        "packaging/completions/velmora-share.fish": r"-l ([a-z][a-z-]*)",
    }
    for name, pattern in readers.items():
        found = {o if o.startswith("--") else "--" + o
                 for o in re.findall(pattern, (source / name).read_text())}
        check(found == options, f"{name}: missing {sorted(options - found)}, "
                                f"not in --help {sorted(found - options)}")
    man = (build / "packaging/velmora-share.1").read_text()
    for option in sorted(options):
        check(option.replace("-", r"\-") in man, f"the man page does not mention {option}")

    run = tool("appstreamcli", "validate", "--no-net", str(metainfo))
    if run is not None:
        check(run.returncode == 0, "appstreamcli validate: " + run.stdout + run.stderr)
    if (source / ".git").exists():
        run = tool("reuse", "lint", cwd=source)
        if run is not None:
            check(run.returncode == 0, "reuse lint:\n" + run.stdout[-3000:])

    for failure in failures:
        print("FAIL:", failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
