#!/usr/bin/env python3

# SPDX-FileCopyrightText: 2026 The velmora-share developers
#
# SPDX-License-Identifier: MIT

"""Fails when the translation catalogues and the texts the program looks up drift apart.

Every user-visible text goes through LocalizedString("...") in the context "Velmora". lupdate
cannot see those calls, so the .ts files are kept by hand; this check reads both sides. Each key
used under the source folder must have a finished translation in every catalogue, each entry of
a catalogue must still be used, and a call whose key is not a string literal is reported, as its
key cannot be checked.

usage: check_keys.py SOURCE_DIR TRANSLATIONS_DIR
"""

import pathlib
import re
import sys
import xml.etree.ElementTree as ET

CONTEXT = "Velmora"
CALL = re.compile(r"\bLocalizedString\s*\(")
LITERAL = re.compile(r'\s*"((?:[^"\\\n]|\\.)*)"')
ESCAPES = {"n": "\n", "t": "\t", "\\": "\\", '"': '"', "'": "'"}


def without_comments(text):
    """The text with comments blanked out (newlines kept, so line numbers hold); string and
    character literals are left alone."""
    out = []
    i, n = 0, len(text)
    while i < n:
        c = text[i]
        if c in "\"'":
            j = i + 1
            while j < n and text[j] != c and text[j] != "\n":
                j += 2 if text[j] == "\\" else 1
            out.append(text[i : j + 1])
            i = j + 1
        elif text.startswith("//", i):
            j = text.find("\n", i)
            j = n if j < 0 else j
            i = j
        elif text.startswith("/*", i):
            j = text.find("*/", i + 2)
            j = n if j < 0 else j + 2
            out.append("".join(ch for ch in text[i:j] if ch == "\n"))
            i = j
        else:
            out.append(c)
            i += 1
    return "".join(out)


def unescape(literal):
    def one(match):
        if match.group(1) not in ESCAPES:
            raise ValueError("escape \\" + match.group(1))
        return ESCAPES[match.group(1)]

    return re.sub(r"\\(.)", one, literal)


def keys_in_sources(source_dir, problems):
    keys = {}
    for path in sorted(source_dir.rglob("*")):
        if path.suffix not in (".cpp", ".h"):
            continue
        text = without_comments(path.read_text(encoding="utf-8"))
        for call in CALL.finditer(text):
            where = f"{path.relative_to(source_dir)}:{text.count(chr(10), 0, call.start()) + 1}"
            rest = text[call.end() :]
            if rest.lstrip().startswith("const "):
                continue  # the function's own declaration and definition
            parts, pos = [], 0
            while (literal := LITERAL.match(rest, pos)) is not None:
                parts.append(literal.group(1))
                pos = literal.end()
            if not parts or not rest[pos:].lstrip().startswith(")"):
                problems.append(f"{where}: LocalizedString's key is not a string literal")
                continue
            try:
                key = unescape("".join(parts))
            except ValueError as error:
                problems.append(f"{where}: unsupported {error} in a key")
                continue
            keys.setdefault(key, where)
    return keys


def entries_in_catalogue(path, problems):
    entries = set()
    root = ET.parse(path).getroot()
    language = (root.get("language") or "").replace("-", "_")
    if path.stem != f"velmora-share_{language}":
        problems.append(f"{path.name}: language \"{language}\" does not match the file name")
    for context in root.iter("context"):
        name = context.findtext("name")
        for message in context.iter("message"):
            source = message.findtext("source") or ""
            what = f"{path.name}: \"{source}\""
            if name != CONTEXT:
                problems.append(f"{what} is in context \"{name}\"; only \"{CONTEXT}\" is looked up")
                continue
            if message.find("comment") is not None:
                problems.append(f"{what} has a disambiguation comment, which no lookup passes")
            translation = message.find("translation")
            kind = translation.get("type") if translation is not None else "missing"
            if translation is None or kind is not None or not (translation.text or "").strip():
                problems.append(f"{what} has no finished translation ({kind or 'empty'})")
            if source in entries:
                problems.append(f"{what} appears twice")
            entries.add(source)
    return entries


def main(argv):
    source_dir, translations_dir = pathlib.Path(argv[1]), pathlib.Path(argv[2])
    problems = []
    keys = keys_in_sources(source_dir, problems)
    if not keys:
        problems.append(f"no LocalizedString key found under {source_dir}")
    catalogues = sorted(translations_dir.glob("*.ts"))
    if not catalogues:
        problems.append(f"no .ts file in {translations_dir}")
    for path in catalogues:
        entries = entries_in_catalogue(path, problems)
        for key in sorted(keys.keys() - entries):
            problems.append(f"{path.name}: no entry for \"{key}\" (used at {keys[key]})")
        for entry in sorted(entries - keys.keys()):
            problems.append(f"{path.name}: \"{entry}\" is no longer used under {source_dir.name}/")
    for problem in problems:
        print(problem)
    if problems:
        return 1
    print(f"{len(keys)} keys, {len(catalogues)} catalogues: in step")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
