#!/usr/bin/env python3

# SPDX-FileCopyrightText: 2026 The velmora-share developers
#
# SPDX-License-Identifier: MIT

"""Installs a build into a temporary prefix and checks what lands there: the program (which must
run from there), its desktop entry (which desktop-file-validate must accept, whose Exec and Icon
must name the installed program and icon, and which claims mailto: and nothing else), the icon,
the file managers' "Send with Velmora" files, one .qm file per .ts catalogue, and the PDF
renderer module in the program's private library folder.

usage: check_install.py CMAKE BUILD_DIR SOURCE_DIR VERSION
Exits 77 (reported by CTest as skipped) only when desktop-file-validate is not installed.
"""

import configparser
import os
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

ENTRY = "share/applications/it.zemlo.velmora.share.desktop"
ICON = "share/icons/hicolor/scalable/apps/it.zemlo.velmora.share.svg"
THUNAR = "share/Thunar/sendto/it.zemlo.velmora.share.desktop"
DOLPHIN = "share/kio/servicemenus/it.zemlo.velmora.share.desktop"
NEMO = "share/nemo/actions/it.zemlo.velmora.share.nemo_action"
NAUTILUS = "share/nautilus-python/extensions/velmora-share.py"
METAINFO = "share/metainfo/it.zemlo.velmora.share.metainfo.xml"
PNG_SIZES = (16, 24, 32, 48, 64, 128, 256)
QM_MAGIC = bytes.fromhex("3cb86418caef9c95cd211cbf60a1bddd")

failures = []


def check(condition, message):
    if not condition:
        failures.append(message)
    return condition


def main(argv):
    cmake, build_dir, source_dir, version = argv[1], argv[2], pathlib.Path(argv[3]), argv[4]
    validate = shutil.which("desktop-file-validate")
    if validate is None:
        print("SKIP: desktop-file-validate is not installed (package desktop-file-utils)")
        return 77

    with tempfile.TemporaryDirectory() as temp:
        prefix = pathlib.Path(temp) / "prefix"
        run = subprocess.run([cmake, "--install", build_dir, "--prefix", str(prefix)],
                             capture_output=True, text=True)
        if run.returncode != 0:
            print(run.stdout + run.stderr)
            print("FAIL: cmake --install failed")
            return 1

        catalogues = sorted(source_dir.glob("translations/*.ts"))
        check(catalogues, "no .ts file in the source tree")
        expected = {"bin/velmora-share", ENTRY, ICON, THUNAR, DOLPHIN, NEMO, NAUTILUS, METAINFO,
                    "share/man/man1/velmora-share.1",
                    "share/bash-completion/completions/velmora-share",
                    "share/zsh/vendor-completions/_velmora-share",
                    "share/fish/vendor_completions.d/velmora-share.fish"} | {
            f"share/icons/hicolor/{n}x{n}/apps/it.zemlo.velmora.share.png" for n in PNG_SIZES} | {
            f"share/velmora-share/translations/{ts.stem}.qm" for ts in catalogues}
        installed = {str(p.relative_to(prefix)) for p in prefix.rglob("*") if not p.is_dir()}
        # The PDF renderer lies in the program's private folder under the library folder, whose
        # name depends on the system (lib, lib64, lib/<multiarch>).
        renderers = {p for p in installed
                     if re.fullmatch(r"lib[^/]*(/[^/]+)?/velmora-share/velmora-pdf-preview\.so", p)}
        check(len(renderers) == 1, f"one PDF renderer module expected, found {sorted(renderers)}")
        expected |= renderers
        for path in sorted(expected - installed):
            failures.append(f"not installed: {path}")
        for path in sorted(installed - expected):
            failures.append(f"installed but not expected: {path}")

        program = prefix / "bin/velmora-share"
        if check(os.access(program, os.X_OK), "bin/velmora-share is not executable"):
            env = dict(os.environ, QT_QPA_PLATFORM="offscreen",
                       VELMORA_GROUP_CONTAINER=str(pathlib.Path(temp) / "container"))
            ran = subprocess.run([str(program), "--version"], capture_output=True, text=True,
                                 env=env, timeout=60)
            check(ran.returncode == 0 and ran.stdout.strip() == f"velmora-share {version}",
                  f"the installed program's --version gave {ran.returncode}: {ran.stdout!r}"
                  f" {ran.stderr!r}")

        # Installed under a system prefix, the program takes its libraries from the system.
        dynamic = subprocess.run(["readelf", "-d", str(program)], capture_output=True, text=True)
        check("RPATH" not in dynamic.stdout and "RUNPATH" not in dynamic.stdout,
              "the installed program carries a RUNPATH or RPATH")
        for n in PNG_SIZES:
            png = prefix / f"share/icons/hicolor/{n}x{n}/apps/it.zemlo.velmora.share.png"
            if png.is_file():
                width, height = struct.unpack(">II", png.read_bytes()[16:24])
                check((width, height) == (n, n), f"the {n}x{n} icon is {width}x{height}")

        entry_path = prefix / ENTRY
        if entry_path.is_file():
            validated = subprocess.run([validate, str(entry_path)], capture_output=True,
                                       text=True)
            check(validated.returncode == 0,
                  "desktop-file-validate rejects the entry:\n" + validated.stdout
                  + validated.stderr)
            parser = configparser.ConfigParser(interpolation=None)
            parser.optionxform = str
            parser.read(entry_path, encoding="utf-8")
            entry = parser["Desktop Entry"]
            exec_line = shlex.split(entry.get("Exec", ""))
            check(exec_line[:1] == ["velmora-share"] and (prefix / "bin" / exec_line[0]).is_file(),
                  f"Exec does not start the installed program: {entry.get('Exec')}")
            check(exec_line[1:] == ["%U"],
                  f"Exec must pass the items as URLs, files included: {entry.get('Exec')}")
            check((prefix / ICON).stem == entry.get("Icon"),
                  f"Icon {entry.get('Icon')} is not the installed icon {pathlib.Path(ICON).name}")
            check(entry.get("StartupWMClass") == "velmora-share",
                  "StartupWMClass must be the application name, the window's X11 class")
            check(entry.get("NoDisplay") == "true",
                  "the entry must stay out of the application menus (NoDisplay=true)")
            check(entry.get("MimeType", "").strip(";") == "x-scheme-handler/mailto",
                  "the entry must claim mailto: links and nothing that would make it the default"
                  f" for files, folders or web links: MimeType={entry.get('MimeType')}")

        def read_ini(path, group):
            parser = configparser.ConfigParser(interpolation=None)
            parser.optionxform = str
            parser.read(path, encoding="utf-8")
            return parser[group] if parser.has_section(group) else {}

        def check_exec(path, group, where):
            line = shlex.split(read_ini(path, group).get("Exec", ""))
            check(line == ["velmora-share", "%F"], f"{where} does not start velmora-share %F")

        if (prefix / THUNAR).is_file():
            validated = subprocess.run([validate, str(prefix / THUNAR)], capture_output=True,
                                       text=True)
            check(validated.returncode == 0, "desktop-file-validate rejects Thunar's Send To file:"
                  "\n" + validated.stdout + validated.stderr)
            check_exec(prefix / THUNAR, "Desktop Entry", "Thunar's Send To file")
        if (prefix / DOLPHIN).is_file():
            check(os.access(prefix / DOLPHIN, os.X_OK),
                  "Dolphin's service menu must be executable to be used")
            check(read_ini(prefix / DOLPHIN, "Desktop Entry").get("Type") == "Service",
                  "Dolphin's service menu is not of Type=Service")
            check_exec(prefix / DOLPHIN, "Desktop Action sendWithVelmora", "Dolphin's service menu")
        if (prefix / NEMO).is_file():
            check_exec(prefix / NEMO, "Nemo Action", "Nemo's action")
            check(read_ini(prefix / NEMO, "Nemo Action").get("Selection") == "notnone",
                  "Nemo's action must ask for a selection")
        if (prefix / NAUTILUS).is_file():
            try:
                compile((prefix / NAUTILUS).read_text(encoding="utf-8"), str(NAUTILUS), "exec")
            except SyntaxError as error:
                failures.append(f"the Nautilus extension does not compile: {error}")

        if (prefix / ICON).is_file():
            try:
                svg = ET.parse(prefix / ICON).getroot()
                view = [float(v) for v in svg.get("viewBox", "").split()]
                check(svg.tag == "{http://www.w3.org/2000/svg}svg" and len(view) == 4
                      and view[2] == view[3] > 0, "the icon is not a square SVG image")
            except ET.ParseError as error:
                failures.append(f"the icon is not well-formed XML: {error}")

        for qm in prefix.glob("share/velmora-share/translations/*.qm"):
            check(qm.read_bytes().startswith(QM_MAGIC), f"{qm.name} is not a Qt translation")

    for failure in failures:
        print("FAIL:", failure)
    if not failures:
        print(f"installed {len(expected)} files; all in place")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
