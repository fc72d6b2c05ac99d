#!/usr/bin/env python3
"""Rules of the house that are read off the text of the sources: names of files, which folder includes which, direct
includes of the standard library's headers, licence lines. Prints one line per finding; ends with 1 when there is any.

Usage: checkSources.py [--mend] RULE...   (of: names, folders, includes, licence)
--mend adds missing includes and licence lines first.
"""
import collections
import os
import re
import subprocess
import sys

SOURCE = re.compile(r"\.(cpp|h)$")


def tracked_files():
    """All files of the checkout that git knows or would take, as paths from the root."""
    command = ["git", "ls-files", "--cached", "--others", "--exclude-standard"]
    return sorted(path for path in set(subprocess.check_output(command, text=True).split("\n"))
                  if path and os.path.exists(path))


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def code_of(text):
    """The text without comments and without the contents of string and character literals; lines stay where they are."""
    token = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<!\w)\'(?:\\.|[^\'\\\n])+\'', re.S)

    def blank(match):
        return "\n" * match.group(0).count("\n") or " "

    lines = text.split("\n")
    kept = [line if re.match(r"\s*#\s*include", line) else None for line in lines]
    blanked = token.sub(blank, text).split("\n")
    return "\n".join(include if include is not None else line for include, line in zip(kept, blanked))


# ---- names -----------------------------------------------------------------------------------------------------------

FILE_NAME = re.compile(r"^([A-Z][A-Za-z0-9]*|main)\.(cpp|h)$")


def names(paths):
    """UpperCamelCase sources, tests that end in Test, no two paths that differ in case alone."""
    for path in paths:
        folder, name = os.path.split(path)
        if not SOURCE.search(path):
            continue
        if not FILE_NAME.match(name):
            yield path, "is not in UpperCamelCase"
        holds_tests = re.search(r"^TEST(_F|_P)?\(", read(path), re.M) is not None
        if holds_tests and not name.endswith("Test.cpp"):
            yield path, "holds tests, but its name does not end in Test.cpp"
        if name.endswith("Test.cpp") and not holds_tests:
            yield path, "is named a test, but holds none"
        if holds_tests and not path.startswith("tests/"):
            yield path, "holds tests outside tests/"
    by_folded = collections.defaultdict(set)
    for path in paths:
        while path:
            by_folded[path.lower()].add(path)
            path = os.path.dirname(path)
    for same in by_folded.values():
        if len(same) > 1:
            yield sorted(same)[0], "differs in case alone from " + ", ".join(sorted(same)[1:])


# ---- folders ---------------------------------------------------------------------------------------------------------

HEADERS = "platform/include"
ROOMS = "platform/imagewindow/"
# What each folder may include beside itself; the longest name that fits a file is its folder. "*" is everything.
# docs/architecture.md and CONTRIBUTING.md tell why.
# Free of X and of every other folder of ours.
PURE = ["platform/base", "platform/text/Utf8.h"]
# What the rooms of the viewer share.
VIEWER = ["platform/base", "platform/plot", "platform/text", "platform/image", "platform/protocol", "widgets"]
# What the rooms of batchprofile share.
BATCH = [*PURE, "segment/Geometry.h", "profile", "saved/Sylk.h", "saved/SavedProfile.h", "gauge/TickLayout.h",
         "platform/image", "widgets/picture"]
MAY_INCLUDE = {
    "segment": [HEADERS, "gauge/XrtGauge.h", "shell/Message.h"],
    "profile": [HEADERS, "segment", "gauge/XrtGauge.h"],
    "saved": [HEADERS, "profile", "segment", "shell/Message.h"],
    "shell": [HEADERS, "saved", "profile", "segment", "gauge/XrtGauge.h"],
    "gauge": [],
    "platform/include": [],
    "platform/base": [],
    "platform/text": ["platform/base"],
    "platform/protocol": PURE,
    "platform/image": [*PURE, "widgets/picture/Samples.h"],
    "platform/plot": [*PURE, "gauge/TickLayout.h"],
    "platform/iwl": [HEADERS, *PURE, "platform/protocol", "platform/image"],
    "platform/wmenh": [HEADERS, "platform/base", "platform/text", "platform/protocol", "platform/iwl", "widgets"],
    "platform/suite": [HEADERS, *PURE, "platform/wmenh", "platform/protocol", "platform/iwl"],
    ROOMS + "files": VIEWER,
    ROOMS + "view": [*VIEWER, ROOMS + "files"],
    ROOMS + "render": [*VIEWER, ROOMS + "files", ROOMS + "view"],
    ROOMS + "paint": [*VIEWER, ROOMS + "files", ROOMS + "view", ROOMS + "render"],
    ROOMS + "figure": [*VIEWER, ROOMS + "files", ROOMS + "view", ROOMS + "render", ROOMS + "paint", "gauge/TickLayout.h",
                       "profile/Walk.h", "segment/Geometry.h"],
    ROOMS + "canvas": [*VIEWER, ROOMS + "files", ROOMS + "view", ROOMS + "render", ROOMS + "paint"],
    ROOMS + "state": [*VIEWER, ROOMS + "files", ROOMS + "view", ROOMS + "render", ROOMS + "paint", ROOMS + "figure",
                      "profile/Walk.h"],
    ROOMS + "controls": [*VIEWER, ROOMS + "files", ROOMS + "view", ROOMS + "render", ROOMS + "paint",
                         ROOMS + "canvas", ROOMS + "state", ROOMS + "figure"],
    "platform/imagewindow": [*VIEWER, ROOMS],
    "widgets": ["gauge", "platform/base", "platform/text"],
    "widgets/picture": PURE,
    "batch/lines": BATCH,
    "batch/measure": [*BATCH, "batch/lines"],
    "batch/results": [*BATCH, "batch/lines", "batch/measure", "batch/run/Settings.h"],
    "batch/run": [*BATCH, "batch/lines", "batch/measure", "batch/results"],
    "batch/modules": [*BATCH, "batch/results", "platform/plot"],
    "batch": [*BATCH, "batch/lines", "batch/measure", "batch/results", "batch/run"],
    "samples": [*PURE, "platform/image"],
    "drive": ["platform/base", "platform/protocol"],
    "bench": ["*"],
    "tests": ["*"],
}
# Folders and files that must work where there is no X.
WITHOUT_X = ["platform/base/", "platform/text/Utf8.", "platform/image/", "platform/plot/", "batch/", ROOMS + "files/", ROOMS + "view/", ROOMS + "render/",
             ROOMS + "paint/", ROOMS + "figure/", ROOMS + "state/", "samples/",
             "platform/protocol/Geometry.", "platform/protocol/ByteStream.", "platform/protocol/DisplayRecord.",
             "platform/protocol/OverlayRecord.", "segment/Geometry.", "profile/Walk.", "profile/Patch.", "profile/Fwhm.",
             "profile/Mapping.", "gauge/GaugeLayout.", "gauge/TickLayout.", "gauge/TickNumbers.", "gauge/TickSeries.",
             "gauge/TickTexts.", "saved/Sylk."]
X_HEADER = re.compile(r"^(X11|Xm|GL)/|^(IWL|WMEnh|OrUtils|KVRunUtils)\.h$")
PLATFORM_HEADER = re.compile(r"^(IWL|WMEnh|OrUtils|KVRunUtils)\.h$")
INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]', re.M)


def includes_of(path):
    """Pairs of form ("<" or '"') and name."""
    return INCLUDE.findall(read(path))


def folder_of(path):
    fitting = [folder for folder in MAY_INCLUDE if path.startswith(folder.rstrip("/") + "/")]
    return max(fitting, key=len, default=None)


def folders(paths):
    """Includes point along docs/architecture.md; what is computed without X includes no header of X."""
    existing = set(paths)
    for path in paths:
        if not SOURCE.search(path):
            continue
        folder = folder_of(path)
        if folder is None:
            yield path, "stands in a folder of which scripts/checkSources.py does not know what it may include"
            continue
        allowed = MAY_INCLUDE[folder] + [folder]
        for form, name in includes_of(path):
            target = "platform/include/" + name if PLATFORM_HEADER.match(name) else name
            if target not in existing and form == "<":
                continue
            if target not in existing and not name.startswith("tests/Folders.h"):
                yield path, f'includes "{name}", which is not a path from the root'
            elif not any(entry == "*" or target == entry or target.startswith(entry.rstrip("/") + "/")
                         for entry in allowed):
                yield path, f"may not include {name}"
        if any(path.startswith(start) for start in WITHOUT_X):
            yield from x_headers(path, existing)


def x_headers(path, existing):
    """Headers of X that the file includes, itself or by headers of ours."""
    seen, waiting = set(), [path]
    while waiting:
        current = waiting.pop()
        for form, name in includes_of(current):
            if X_HEADER.match(name):
                yield path, f"must do without X, but {current} includes {name}"
            elif name in existing and name not in seen:
                seen.add(name)
                waiting.append(name)


# ---- includes --------------------------------------------------------------------------------------------------------

# The headers of which one must be included by a file that uses the name. Names that many headers give
# (std::size_t, std::move, std::begin...) are left out.
STANDARD = {
    "algorithm": "all_of any_of binary_search clamp copy copy_n count_if equal_range fill fill_n find find_if find_if_not "
                 "for_each is_sorted lower_bound max_element min_element minmax minmax_element none_of nth_element "
                 "partition remove_if replace reverse rotate shuffle sort stable_sort transform unique upper_bound",
    "array": "array", "atomic": "atomic atomic_flag", "bit": "bit_cast endian popcount countr_zero",
    "charconv": "from_chars to_chars", "chrono": "chrono", "condition_variable": "condition_variable "
    "condition_variable_any", "deque": "deque", "filesystem": "filesystem", "fstream": "ifstream ofstream fstream",
    "functional": "function", "iomanip": "setw setprecision setfill", "iostream": "cout cerr cin",
    "iterator": "back_inserter istream_iterator istreambuf_iterator make_move_iterator",
    "latch": "latch", "limits": "numeric_limits", "list": "list", "map": "map multimap",
    "memory": "unique_ptr shared_ptr weak_ptr make_unique make_shared", "mutex": "mutex lock_guard unique_lock "
    "scoped_lock call_once once_flag recursive_mutex", "numeric": "accumulate iota gcd lcm", "numbers": "numbers",
    "optional": "optional nullopt", "queue": "queue priority_queue", "random": "mt19937 mt19937_64 "
    "uniform_int_distribution", "regex": "regex regex_match regex_search smatch", "set": "set multiset",
    "shared_mutex": "shared_mutex shared_lock", "span": "span as_bytes as_writable_bytes",
    "sstream": "istringstream ostringstream stringstream", "stdexcept": "runtime_error logic_error invalid_argument "
    "out_of_range length_error", "stop_token": "stop_source", "string": "string to_string stoi stod u8string",
    "string_view": "string_view", "system_error": "error_code system_error", "thread": "thread jthread this_thread",
    "tuple": "tuple tie apply", "unordered_map": "unordered_map", "unordered_set": "unordered_set",
    "variant": "variant visit monostate", "vector": "vector",
    "cctype": "isdigit isspace isalpha isalnum isprint islower isupper tolower toupper",
    "clocale": "setlocale localeconv", "cmath": "sqrt hypot floor ceil round lround llround isfinite isnan isinf nan pow exp log "
    "log10 sin cos tan atan2 fmod trunc ldexp frexp fabs nextafter nearbyint copysign log2 cbrt lrint",
    "csignal": "signal raise", "cstdio": "printf fprintf snprintf vsnprintf sscanf fopen fclose fputs fputc fwrite fread fflush puts "
    "rename perror FILE", "cstdlib": "getenv strtol strtod strtoul exit malloc free calloc realloc system abort",
    "cstring": "memcpy memmove memset memcmp strlen strcmp strncmp strchr strrchr strstr strcpy strncpy strerror",
    "ctime": "time localtime strftime gmtime time_t",
}
# Headers whose own names are made of another's, so that they stand for it.
ALSO = {"string_view": ["string"], "iostream": ["ostream", "istream"], "stop_token": ["thread"],
        "thread": ["stop_token"], "mutex": ["shared_mutex"], "system_error": ["filesystem", "charconv"]}
HEADER_OF = {name: header for header, all_names in STANDARD.items() for name in all_names.split()}
STD_NAME = re.compile(r"(?<![\w:])(?:::)?std::(\w+)")


def own_header(path):
    header = re.sub(r"\.cpp$", ".h", path)
    return header if path.endswith(".cpp") and os.path.exists(header) else None


def missing_headers(path):
    """Headers of the standard library whose names the file uses, and which neither it nor its own header includes."""
    code = code_of(read(path))
    given = {name for _, name in INCLUDE.findall(code)}
    if own_header(path):
        given |= {name for _, name in includes_of(own_header(path))}
    used = {HEADER_OF[name] for name in STD_NAME.findall(code) if name in HEADER_OF}
    return sorted(header for header in used if not given & {header, *ALSO.get(header, [])})


def includes(paths):
    """A file that uses a name of the standard library includes its header, or the header that it implements does."""
    for path in filter(SOURCE.search, paths):
        for header in missing_headers(path):
            yield path, f"uses names of <{header}> without including it"


STANDARD_INCLUDE = re.compile(r"#include <[a-z_0-9]+>")


def add_includes(path):
    """Into the block of the standard library's headers, or into a new one after the last include."""
    missing = [f"#include <{header}>" for header in missing_headers(path)]
    if not missing:
        return
    lines = read(path).split("\n")
    standard = [at for at, line in enumerate(lines) if STANDARD_INCLUDE.match(line)]
    if standard:
        lines[standard[0]:standard[0]] = missing
    else:
        last = max((at for at, line in enumerate(lines) if line.startswith(("#include", "#pragma once"))), default=-1)
        lines[last + 1:last + 1] = ["", *missing]
    write(path, "\n".join(lines))


# ---- licence ---------------------------------------------------------------------------------------------------------

LICENCE = "// SPDX-License-Identifier: MIT\n"


def licence(paths):
    """Each source file begins with the licence line."""
    for path in filter(SOURCE.search, paths):
        if not read(path).startswith(LICENCE):
            yield path, f"does not begin with {LICENCE.rstrip()}"


def add_licence(path):
    if not read(path).startswith(LICENCE):
        write(path, LICENCE + read(path))


RULES = {rule.__name__: rule for rule in (names, folders, includes, licence)}
MENDERS = {"includes": add_includes, "licence": add_licence}


def main():
    mend = sys.argv[1:2] == ["--mend"]
    asked = sys.argv[2 if mend else 1:]
    if not asked or any(name not in RULES for name in asked):
        sys.exit(__doc__)
    paths = tracked_files()
    for name in asked if mend else []:
        for path in filter(SOURCE.search, paths):
            MENDERS.get(name, lambda _: None)(path)
    findings = [f"{path}: {problem}" for name in asked for path, problem in RULES[name](paths)]
    print("\n".join(findings), end="\n" if findings else "")
    sys.exit(1 if findings else 0)


main()
