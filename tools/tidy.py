#!/usr/bin/env python3
"""tidy.py BUILD CLANG-TIDY COMPILER: clang-tidy over the product's sources in BUILD/compile_commands.json.

A source that was clean is not looked at again before something changes that its result depends on: the source, a
header of the tree that it includes, its compiler command, .clang-tidy or a compiler. BUILD/clean remembers.
"""
import concurrent.futures
import hashlib
import json
import os
import subprocess
import sys

from includes import PRODUCT, ROOT, closure


def text_of(*command):
    return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=True)


def compiler_arguments(compiler):
    """What makes clang compile for Windows with COMPILER's headers, all but those that clang has itself."""
    lines = text_of(compiler, "-E", "-v", "-x", "c++", "/dev/null").stderr.splitlines()
    first = lines.index("#include <...> search starts here:") + 1
    arguments = ["--target=i686-w64-windows-gnu", "-nostdlibinc", "-Wthread-safety", "-Wthread-safety-beta"]
    for line in lines[first:lines.index("End of search list.")]:
        folder = os.path.realpath(line.strip())
        if "/c++" in folder:
            arguments.append("-isystem" + folder)
        elif "/gcc/" not in folder:
            arguments.append("-idirafter" + folder)
    return ["--extra-arg=" + argument for argument in arguments]


class Tidy:
    def __init__(self, build, tidy, compiler):
        self.command = [tidy, "--quiet", "-p", build] + compiler_arguments(compiler)
        with open(os.path.join(ROOT, ".clang-tidy"), encoding="utf-8") as config:
            self.common = "\0".join([config.read(), text_of(tidy, "--version").stdout,
                                     text_of(compiler, "--version").stdout, *self.command])
        self.clean = os.path.join(build, "clean")
        os.makedirs(self.clean, exist_ok=True)
        self.findings = set()

    def key(self, entry):
        """Where to remember the source, and what says that nothing changed."""
        source = os.path.relpath(entry["file"], ROOT)
        digest = hashlib.sha256((self.common + entry["command"]).encode())
        for file in sorted(closure(source)):
            with open(os.path.join(ROOT, file), "rb") as content:
                digest.update(file.encode() + b"\0" + content.read())
        return os.path.join(self.clean, source.replace("/", "_")), digest.hexdigest()

    def is_clean(self, entry):
        note, key = self.key(entry)
        try:
            with open(note, encoding="ascii") as known:
                return known.read() == key
        except FileNotFoundError:
            return False

    def look_at(self, entry):
        note, key = self.key(entry)
        result = subprocess.run(self.command + [entry["file"]], stdin=subprocess.DEVNULL, capture_output=True,
                                text=True)
        if result.returncode == 0:
            with open(note, "w", encoding="ascii") as known:
                known.write(key)
        elif result.stdout not in self.findings:
            self.findings.add(result.stdout)
            print(result.stdout.replace(ROOT + "/", "") or entry["file"] + "\n" + result.stderr, flush=True)
        return result.returncode == 0


def main(build, tidy, compiler):
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as database:
        entries = [entry for entry in json.load(database) if entry["file"].endswith(".cpp")
                   and os.path.relpath(entry["file"], ROOT).startswith(PRODUCT)]
    run = Tidy(build, tidy, compiler)
    changed = [entry for entry in entries if not run.is_clean(entry)]
    print(f"clang-tidy: {len(entries)} sources, {len(changed)} to look at", flush=True)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return 0 if all(list(pool.map(run.look_at, changed))) else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
