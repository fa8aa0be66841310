#!/usr/bin/env python3
"""Puts what a header declares into the group of its folder, for Doxygen.

Writes the header to standard output with as many lines as it has. A comment stands for all
overloads of one name that follow it line after line, as in

    /// Set the current value.
    KOVAResult SetValue(int value);
    KOVAResult SetValue(double value);

so these become a group of members whose description is shared.

Usage: group_header.py HEADER
"""

import pathlib
import re
import sys

NAME = re.compile(r"\b(operator\s*(?:\(\)|[^\s(]+|[\w:]+)|~?\w+)\s*\(")
DECLARATION = re.compile(r"^\s*(?:template\b|explicit\b|virtual\b|static\b|friend\b|\[\[|[A-Z]*KOVA|Gk_|KOV|"
                         r"void\b|bool\b|int\b|double\b|float\b|unsigned\b|const\b|std::|extern\b|long\b|char\b)")


def statements(lines, start):
    """The declarations that begin at line `start` without a blank line or comment between them:
    (first line, last line, name, text)."""
    found = []
    at = start
    while at < len(lines):
        line = lines[at]
        if not line.strip() or line.lstrip().startswith(("//", "#", "public:", "protected:", "private:", "}")):
            break
        depth = 0
        body = False
        text = ""
        end = at
        while end < len(lines):
            code = lines[end].split("//")[0]
            text += code + " "
            for character in code:
                if character in "({":
                    depth += 1
                    body = body or (character == "{" and depth == 1)
                elif character in ")}":
                    depth -= 1
            stripped = code.rstrip()
            if depth <= 0 and (stripped.endswith(";") or (body and stripped.endswith("}"))):
                break
            end += 1
        match = NAME.search(re.sub(r"KOVABASE_PRINTF\([^)]*\)|alignas\([^)]*\)", "", text))
        if match is None or re.match(r"\s*(class|struct|enum|using|typedef|namespace)\b", text):
            break
        found.append((at, end, match[1], text))
        at = end + 1
    return found


def with_member_groups(lines):
    out = list(lines)
    at = 0
    while at < len(lines):
        if not lines[at].lstrip().startswith("///"):
            at += 1
            continue
        first = at
        while at < len(lines) and lines[at].lstrip().startswith("///"):
            at += 1
        parameters = re.findall(r"@param (\w+)", "\n".join(lines[first:at]))
        run = statements(lines, at)
        same = []
        for statement in run:
            name, text = statement[2:]
            is_copy = re.search(rf"\b{re.escape(name)}\((const {re.escape(name)}&|{re.escape(name)}&&)\s*\w*\)", text)
            lacks = any(not re.search(rf"\b{parameter}\b", text) for parameter in parameters)
            if name != run[0][2] or (same and (is_copy or lacks)):
                break
            same.append(statement)
        if len(same) > 1:
            indent = re.match(r"\s*", lines[first])[0]
            out[first] = f"{indent}/** @{{ */ " + out[first].lstrip()
            out[same[-1][1]] = out[same[-1][1]] + " /** @} */"
    return out


def escaped(line):
    """Texts in comments have backslashes that are no commands; those are spelled with '@'."""
    code, mark, comment = line.partition("///")
    if not mark:
        return line
    spans = re.split(r"(`[^`]*`)", comment)
    return code + mark + "".join(s if s.startswith("`") else s.replace("\\", "\\\\") for s in spans)


def main():
    path = pathlib.Path(sys.argv[1])
    lines = path.read_text(encoding="utf-8").splitlines()
    lines = with_member_groups([escaped(line) for line in lines])
    group = path.parent.name
    for number, line in enumerate(lines):
        if line.startswith("#pragma once"):
            # The name of a group takes its line; what follows the pragma is a blank one.
            lines[number] = f"/** @addtogroup {group}"
            lines[number + 1] = "@{ */ " + lines[number + 1]
            break
    lines.append("/** @} */")
    print("\n".join(lines))


if __name__ == "__main__":
    main()
