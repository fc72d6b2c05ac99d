#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs clang-tidy over the sources that a compilation database lists, on all processors that it may use (taskset
confines it), and remembers what it found nothing in: a source is judged again only when it, a header of ours that it
includes, its flags, .clang-tidy or a package has changed. Prints the findings; ends with 1 when there is any.

Usage: tidy.py DATABASE_FOLDER [--since REVISION] [PATH...]
Paths are folders or sources, from the root; without one it is the whole tree. --since judges only what a change after
the revision touches, headers with all sources that include them.
The memory is $XDG_CACHE_HOME/kelvora-check, which every checkout of the user shares.
"""
import argparse
import concurrent.futures
import hashlib
import json
import os
import re
import subprocess
import sys

INCLUDE = re.compile(rb'^\s*#\s*include\s+[<"]([^>"]+)[>"]', re.M)
# Where a header is looked for that an #include names.
SEARCHED = ["", "platform/include/"]
MEMORY = os.path.join(os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache"), "kelvora-check")


def output_of(*command):
    return subprocess.check_output(command, text=True)


def read(path):
    with open(path, "rb") as file:
        return file.read()


def with_headers(source):
    """The source and all headers of ours that it includes, itself or by others."""
    seen, waiting = {source}, [source]
    while waiting:
        for name in INCLUDE.findall(read(waiting.pop())):
            for path in (folder + name.decode() for folder in SEARCHED):
                if path not in seen and os.path.isfile(path):
                    seen.add(path)
                    waiting.append(path)
    return seen


def surroundings():
    """What every judgement depends on: the rules and the installed packages."""
    return read(".clang-tidy") + output_of("dpkg-query", "-W").encode()


def digest(source, command, common):
    """Names the judgement of the source; equal in every checkout."""
    whole = hashlib.sha256(common + command.replace(os.getcwd(), ".").encode())
    for path in sorted(with_headers(source)):
        whole.update(path.encode() + b"\0" + hashlib.sha256(read(path)).digest())
    return whole.hexdigest()


def findings(source, database):
    """What clang-tidy prints on the source; empty when it finds nothing."""
    run = subprocess.run(["clang-tidy", "-quiet", "-p", database, source], text=True, stdout=subprocess.PIPE,
                         stderr=subprocess.PIPE, check=False)
    return "" if run.returncode == 0 else run.stdout or run.stderr


def judge(source, mark, database):
    """Findings; a source without any is remembered by an empty file."""
    found = findings(source, database)
    if not found:
        with open(mark, "wb"):
            pass
    return found


def wanted(sources, paths, since):
    """Those of the sources that the command line asks for."""
    chosen = [source for source in sources
              if not paths or any(source == path or source.startswith(path.rstrip("/") + "/") for path in paths)]
    if since is None:
        return chosen
    changed = set(output_of("git", "diff", "--name-only", since).splitlines())
    changed |= set(output_of("git", "ls-files", "--others", "--exclude-standard").splitlines())
    return [source for source in chosen if ".clang-tidy" in changed or with_headers(source) & changed]


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("database")
    arguments.add_argument("--since")
    arguments.add_argument("paths", nargs="*")
    asked = arguments.parse_args()
    with open(os.path.join(asked.database, "compile_commands.json"), encoding="utf-8") as file:
        commands = {os.path.relpath(entry["file"]): entry["command"] for entry in json.load(file)}
    sources = [path for path in output_of("git", "ls-files", "--cached", "--others", "--exclude-standard", "*.cpp")
               .splitlines() if path in commands and os.path.isfile(path)]
    common = surroundings()
    os.makedirs(MEMORY, exist_ok=True)
    marks = {source: os.path.join(MEMORY, digest(source, commands[source], common))
             for source in wanted(sources, asked.paths, asked.since)}
    waiting = [source for source, mark in marks.items() if not os.path.exists(mark)]
    print(f"{len(waiting)} of {len(marks)} sources to judge", flush=True)
    failed = False
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        for found in pool.map(lambda source: judge(source, marks[source], asked.database), waiting):
            failed = failed or found != ""
            print(found, end="", flush=True)
    sys.exit(1 if failed else 0)


main()
