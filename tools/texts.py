#!/usr/bin/env python3
"""texts.py: the rules of the texts that people read, in the tables of hosts/*/texts.

- A row's name is given once in all tables: two rows of one name would be one object to the linker.
- Every row is used.
- Outside of the tables no literal of the hosts is a text of several words. EXCEPT tells those that are for programs.
"""
import collections
import glob
import os
import re
import sys

# Literals of the hosts with several words: file, how the literal begins, what it is.
EXCEPT = [
    ("hosts/cli/commands/commands.cpp", "", "names of commands"),
    ("hosts/cli/completion.cpp", "", "PowerShell"),
    ("hosts/cli/dsc_instance.cpp", "", "the JSON schema"),
    ("hosts/cli/outcome_output.cpp", "nothing to do", "JSON"),
    ("hosts/common/journal.cpp", "partly done", "JSON"),
    ("hosts/common/operations.cpp", "switch o", "JSON"),
    ("hosts/common/journal_words.cpp", "Startup Manager: ", "the library's name in the journal"),
    ("hosts/common/refusal.cpp", "", "reasons for who reads the table, and the library's English"),
    ("hosts/common/text.h", "a text does not fit", "for who compiles it"),
    ("hosts/gui/window.h", "Startup Manager", "a name"),
    ("hosts/gui/entry_columns.cpp", "Startup Manager", "a name"),
]
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
WORDS = re.compile(r"[A-Za-z]{2,}[,.:;!]? [A-Za-z]{2,}")
ROW = re.compile(r"^inline constexpr (?:Text|CountText|\w+Texts|\w+Words) (k\w+)(?:\[\])?\{?", re.M)


def without_comments(text):
    return re.sub(r"//[^\n]*|/\*.*?\*/", lambda match: re.sub(r"[^\n]", "", match[0]), text, flags=re.S)


def is_excepted(path, literal):
    return any(path == file and literal.startswith(begin) for file, begin, _ in EXCEPT)


def check_rows(tables, others):
    places = {}
    for path, text in tables.items():
        for match in ROW.finditer(text):
            name, line = match[1], text.count("\n", 0, match.start()) + 1
            if name in places:
                yield f"{path}:{line}: {name} stands in {places[name]}, too"
            places[name] = f"{path}:{line}"
    uses = collections.Counter(word for text in [*tables.values(), *others.values()]
                               for word in re.findall(r"\bk\w+", text))
    for name, place in places.items():
        if uses[name] < 2:
            yield f"{place}: nothing uses {name}"


def check_literals(others):
    for path, text in others.items():
        for number, line in enumerate(text.split("\n"), 1):
            if line.startswith("#include") or "static_assert" in line:
                continue
            for match in LITERAL.finditer(line):
                literal = match[1]
                if WORDS.search(literal) and "\\\\" not in literal and not is_excepted(path, literal):
                    yield f'{path}:{number}: "{literal}" stands in no table of texts'


def main():
    os.chdir(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
    tables, others = {}, {}
    for path in sorted(glob.glob("hosts/**/*", recursive=True)):
        if path.endswith((".cpp", ".h")):
            with open(path, encoding="utf-8") as file:
                text = without_comments(file.read())
            (tables if "/texts/" in path else others)[path] = text
    findings = [*check_rows(tables, others), *check_literals(others)]
    for finding in findings:
        print(finding)
    sys.exit(1 if findings else 0)


main()
