#!/usr/bin/env python3
"""Puts what a header declares into the group of its folder, for Doxygen.

Writes the header to standard output, each declaration in its line. A comment stands for all
overloads of one name that follow it line after line, as in

    /// Set the current value.
    KOVAResult SetValue(int value);
    KOVAResult SetValue(double value);

and one that begins with "These", "Both" or "All" for all declarations up to the next comment or
blank line; so each of them gets a copy. A comment with blank lines around it, and one above
`namespace kova::...`, is about the header. Quoted texts with backslashes become code.

Usage: group_header.py HEADER
"""

import pathlib
import re
import sys

NAME = re.compile(r"\b(operator\s*(?:\(\)|[^\s(]+|[\w:]+)|~?\w+)\s*\(")


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


def with_copies(lines):
    """The lines with comments copied to, and opened for, what they stand for."""
    out = list(lines)
    at = 0
    while at < len(lines):
        if not lines[at].lstrip().startswith("///"):
            at += 1
            continue
        first = at
        while at < len(lines) and lines[at].lstrip().startswith("///"):
            at += 1
        is_about_header = at == len(lines) or not lines[at].strip() or lines[at].startswith("namespace kova::")
        if is_about_header and not lines[first - 1].strip():
            # About the whole header; the blank line above it has room for the command. A further one is
            # about what follows, under its first sentence.
            if "/// @file" not in out:
                out[first - 1] = "/// @file"
            elif not lines[at].strip() and ". " in lines[first]:
                title, _, rest = lines[first].partition(". ")
                out[first - 1] = "/// @name " + title[4:]
                out[first] = "/// " + rest
                out[at] = "/** @{ */"
                out.append("/** @} */")
            continue
        comment = [line.lstrip()[3:].strip() or "<p>" for line in lines[first:at]]
        parameters = re.findall(r"@param (\w+)", " ".join(comment))
        speaks_for_all = re.match(r"(These|Both|All|In all of these)\b", comment[0]) is not None
        run = statements(lines, at)
        for begin, _, name, text in run[1:]:
            lacks = any(not re.search(rf"\b{parameter}\b", text) for parameter in parameters)
            is_copy = re.search(rf"\b{re.escape(name)}\((const )?{re.escape(name)}&&? ?\w*\)", text)
            if lacks or is_copy or (name != run[0][2] and not speaks_for_all):
                break
            indent = re.match(r"\s*", lines[begin])[0]
            out[begin] = f"{indent}/** {' '.join(comment)} */ {lines[begin].lstrip()}"
    return out


def escaped(line):
    """Backslashes in comments are no commands; those are spelled with '@'."""
    code, mark, comment = line.partition("///")
    if not mark:
        return line
    comment = re.sub(r'"([^"`\s]*\\[^"`\s]*)"', r"`\1`", comment)
    spans = re.split(r"(`[^`]*`)", comment)
    return code + mark + "".join(s if s.startswith("`") else s.replace("\\", "\\\\") for s in spans)


def main():
    path = pathlib.Path(sys.argv[1])
    lines = path.read_text(encoding="utf-8").splitlines()
    group = "translators" if "translators" in path.parts else path.parent.name
    lines = with_copies([escaped(line) for line in lines])
    # The name of a group takes its line; a blank one follows. Namespaces need their own opening.
    for number, line in enumerate(lines):
        if line.startswith("#pragma once"):
            lines[number] = f"/** @addtogroup {group}"
            lines[number + 1] = "@{ */ " + lines[number + 1]
        elif re.match(r"namespace kova::translators \{$", line) and not lines[number + 1]:
            lines[number] += f" /** @addtogroup {group}"
            lines[number + 1] = "@{ */"
        elif re.match(r"\}  // namespace kova::translators$", line):
            lines[number] = "/** @} */ " + line
    lines.append("/** @} */")
    print("\n".join(lines))


if __name__ == "__main__":
    main()
