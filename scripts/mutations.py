#!/usr/bin/env python3
"""Plants faults in the code, one token at a time, and tells which of them no test notices.

    scripts/mutations.py                          200 faults anywhere, drawn with seed 1
    scripts/mutations.py --count 50 --seed 7 hints window/board_widget.cpp

A fault is one token replaced by its neighbour: < by <=, + by -, && by ||, true by false, a number by the next one,
a row by a column, a ! by nothing. Every line of code is drawn with the same chance, so that tables do not crowd out the
rules; texts, comments, directives and static_asserts stay as they are, and so do headers unless they are named:
they hold few rules, and what includes them takes long to build. The faults go into a copy of the tree that is
committed or staged, in build/mutations, with a build of its own: the working tree is never touched. Only what a
fault changed is built again; the tests run from the cheapest to the dearest and stop at the first that fails.

Each fault ends as one of
  caught    a test failed, crashed, or ran ten times as long as it should
  same      the programs came out byte for byte as before: nothing to catch
  survived  all tests passed; listed again at the end with its line, for a person to judge: is it a fault that
            nobody can see (a bound that is never reached, a search that only takes longer), or is a test missing?
A fault that does not compile is drawn anew and not counted. The last line gives the share that was caught of those
that changed a program. It needs what ./check installs and python3; about ten seconds a fault on an idle core.
"""
import argparse
import hashlib
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutations"
SOURCE = WORK / "source"
BUILD = WORK / "build"
FOLDERS = ["game", "deduction", "rating", "hints", "storage", "generator", "events", "tools", "window"]

# Binary operators stand between blanks in this code, which tells them from templates, pointers and signs.
BINARY = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "+", "/": "*", "%": "/", "&": "|", "|": "&", "^": "|",
    "+=": "-=", "-=": "+=", "|=": "&=", "&=": "|=",
}
WORDS = {
    "true": "false", "false": "true", "break": "continue", "continue": "break",
    "CELL_OPEN": "CELL_GRASS", "CELL_GRASS": "CELL_TENT", "CELL_TENT": "CELL_OPEN", "CELL_TREE": "CELL_OPEN",
    "RowOf": "ColOf", "ColOf": "RowOf", "RowClue": "ColClue", "ColClue": "RowClue", "RowCnt": "ColCnt",
    "ColCnt": "RowCnt", "min": "max", "max": "min", "any_of": "all_of", "all_of": "any_of",
}
TOKEN = re.compile(
    r"(?<= )(?:<=|>=|==|!=|&&|\|\||\+=|-=|\|=|&=|[<>+\-*/%&|^])(?= |$)"
    r"|\+\+|--|!(?=[\w(*])|(?<![\w.'])\d+(?![\w.'])|\b(?:" + "|".join(WORDS) + r")\b")
TEXT = re.compile(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|//.*')


def replacement(token):
    if token in BINARY:
        return BINARY[token]
    if token in WORDS:
        return WORDS[token]
    if token == "!":
        return ""
    if token in ("++", "--"):
        return "--" if token == "++" else "++"
    return str(int(token) + 1)


def sites(path):
    """The tokens of a file that can be replaced: a list of (column, token) for each of its lines that has any."""
    lines = []
    in_raw_text = False
    for number, line in enumerate(path.read_text().splitlines()):
        raw_quotes = line.count('R"(') - line.count(')"')
        if in_raw_text or raw_quotes:
            in_raw_text = (in_raw_text or raw_quotes > 0) and ')"' not in line
            continue
        if line.lstrip().startswith(("#", "static_assert", "namespace", "template", "using ")):
            continue
        code = TEXT.sub(lambda text: " " * len(text.group()), line)
        found = [(token.start(), token.group()) for token in TOKEN.finditer(code)]
        if found:
            lines.append((number, found))
    return lines


def run(command, timeout=None):
    """The status of a command; its output is dropped. None if it took longer than the timeout."""
    try:
        return subprocess.run(command, cwd=BUILD, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=timeout, check=False).returncode
    except subprocess.TimeoutExpired:
        return None


def copy_tree():
    """Brings the copy to what is committed or staged. What did not change keeps its time, and is not built again."""
    names = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, capture_output=True, check=True).stdout
    names = [name for name in names.decode().split("\0") if name]
    SOURCE.mkdir(parents=True, exist_ok=True)
    wanted = {SOURCE / name for name in names}
    for old in list(SOURCE.rglob("*")):
        if old.is_file() and old not in wanted:
            old.unlink()
    for name in names:
        content = subprocess.run(["git", "show", ":" + name], cwd=ROOT, capture_output=True, check=True).stdout
        target = SOURCE / name
        if target.is_file() and target.read_bytes() == content:
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(content)
        shutil.copymode(ROOT / name, target)


class Stage:
    """Programs to build, and the command that tests them."""

    def __init__(self, target, programs, command):
        self.build = ["cmake", "--build", BUILD, "--target", target, "--", "--quiet"]
        self.programs = programs
        self.command = command

    def content(self):
        """What the programs are, byte for byte."""
        found = sorted(path for pattern in self.programs for path in (BUILD / "bin").glob(pattern))
        return [hashlib.sha256(path.read_bytes()).digest() for path in found]

    def measure(self):
        if run(self.build) != 0:
            sys.exit(f"the tree does not build: {self.build}")
        start = time.monotonic()
        if run(self.command) != 0:
            sys.exit(f"the tests fail without a fault: {self.command}")
        self.timeout = 10 * (time.monotonic() - start) + 10
        self.sound = self.content()


def gtest(program):
    return [BUILD / "bin" / program, "--gtest_fail_fast", "--gtest_brief=1"]


STAGES = {
    "core": Stage("bivouac_tests", ["bivouac_tests"], gtest("bivouac_tests")),
    "tool": Stage("bivouac-packs", ["bivouac-packs"],
                  ["ctest", "-R", "bivouac_packs_command_line", "--no-tests=error"]),
    "window": Stage("all", ["bivouac", "bivouac_window_tests", "*.so"], gtest("bivouac_window_tests")),
}


def fate(path):
    """What becomes of the fault that stands in the file: caught, same, survived, or None if it does not compile."""
    if path.parts[0] == "window":
        order = ["window"]
    elif path.parts[0] == "tools":
        order = ["core", "tool"]
    else:
        order = ["core", "tool", "window"]
    changed = False
    for name in order:
        stage = STAGES[name]
        if run(stage.build) != 0:
            return None
        if stage.content() == stage.sound:
            continue
        changed = True
        if run(stage.command, stage.timeout) != 0:
            return "caught"
    return "survived" if changed else "same"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=200, help="faults to plant (default 200)")
    parser.add_argument("--seed", type=int, default=1, help="the same seed draws the same faults in the same code")
    parser.add_argument("places", nargs="*", default=FOLDERS, help="folders or files (default: all folders of code)")
    options = parser.parse_args()

    copy_tree()
    BUILD.mkdir(exist_ok=True)
    if run(["cmake", "-S", SOURCE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
            "-DCMAKE_CXX_FLAGS=-O1 -D_GLIBCXX_ASSERTIONS",
            "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"]) != 0:
        sys.exit("the tree cannot be configured")
    for stage in STAGES.values():
        stage.measure()

    files = [path for place in map(SOURCE.joinpath, options.places)
             for path in ([place] if place.is_file() else sorted(place.rglob("*.cpp")))]
    lines = [(path, number, found) for path in files for number, found in sites(path)]
    if not lines:
        sys.exit("no code there")
    draw = random.Random(options.seed)
    counts = {"caught": 0, "same": 0, "survived": 0}
    survivors = []
    seen = set()
    for _ in range(20 * options.count):
        if sum(counts.values()) == options.count:
            break
        path, number, found = draw.choice(lines)
        column, token = draw.choice(found)
        if (path, number, column) in seen:
            continue
        seen.add((path, number, column))
        original = path.read_text()
        text = original.splitlines(keepends=True)
        line = text[number]
        text[number] = line[:column] + replacement(token) + line[column + len(token):]
        start = time.monotonic()
        try:
            path.write_text("".join(text))
            result = fate(path.relative_to(SOURCE))
        finally:
            path.write_text(original)
        if result is None:
            continue
        counts[result] += 1
        place = f"{path.relative_to(SOURCE)}:{number + 1}:{column + 1}"
        said = f"{place}: {token} -> {replacement(token) or 'nothing'}"
        print(f"{result:9}{said}  ({time.monotonic() - start:.0f} s)", flush=True)
        if result == "survived":
            survivors.append(f"{said}\n    {line.strip()}")

    changed = counts["caught"] + counts["survived"]
    print(f"\nSurvivors, seed {options.seed}:", *survivors, sep="\n")
    print(f"\n{sum(counts.values())} faults: {counts['caught']} caught, {counts['survived']} survived, "
          f"{counts['same']} changed no program; caught {100 * counts['caught'] / max(1, changed):.0f} % of {changed}")


if __name__ == "__main__":
    main()
