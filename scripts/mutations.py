#!/usr/bin/env python3
"""Plants faults in the code, one token at a time, and tells which of them no test notices.

    scripts/mutations.py                          200 faults anywhere, drawn with seed 1
    scripts/mutations.py --count 50 --seed 7 hints window/board_widget.cpp
    scripts/mutations.py --fault hints/hints.cpp:69:27      this one again, as it was printed

A fault is one token replaced by its neighbour: < by <=, + by -, && by ||, true by false, a number by the next one,
a row by a column, a ! by nothing. Every line of code is drawn with the same chance, so that tables do not crowd out the
rules; texts, comments, directives and static_asserts stay as they are, and so do headers unless they are named:
they hold few rules, and what includes them takes long to build. The faults go into a copy of the tree that is
committed or staged, with a build of its own, in build/mutations or in the folder that the environment calls
MUTATIONS: the working tree is never touched. Only what a fault changed is built again. Then run the tests of the core,
those of the window, and the others that ctest knows, up to the first that fails. A program that needs thrice the
processor's time that it needs without a fault, and 5 seconds, is ended with all that it started; tests write into a
scratch folder, not among the files of whoever runs them.

Each fault ends as one of
  caught    a test failed, crashed, or took too long; or the guide could not be built, which the programs write
  same      the machine's code came out byte for byte as before: nothing to catch
  survived  all tests passed; listed again at the end with its line, for a person to judge: is it a fault that
            nobody can see (a bound that is never reached, a search that only takes longer), or is a test missing?
A fault that does not compile is drawn anew and not counted. The last line gives the share that was caught of those
that changed a program. It needs what ./check installs and python3; about five seconds a fault on an idle core.
"""
import argparse
import contextlib
import json
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = pathlib.Path(os.environ.get("MUTATIONS", ROOT / "build" / "mutations"))
SOURCE = WORK / "source"
BUILD = WORK / "build"
BUILD_LIMIT = 300  # seconds of the processor, for one program
FOLDERS = ["game", "deduction", "rating", "hints", "storage", "generator", "events",
           "workbench", "packs", "walks", "drawing", "guide", "tools", "window"]

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
FAILED = re.compile(r"^\[  FAILED  \] ([\w/]+\.\w+)|^\s+\d+ - (\S+) \(", re.MULTILINE)
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


class Result:
    """How a command ended: whether it did so with 0, whether for taking too long, and the first test it names as failed."""

    def __init__(self, command, processor=None):
        """Runs it with a limit on the processor's seconds, if any, and a far larger one on the clock's."""
        scratch = BUILD / "scratch"
        shutil.rmtree(scratch, ignore_errors=True)
        scratch.mkdir()
        homes = ("HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME")

        def limits():
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 30, 1 << 30))
            if processor:
                resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
                resource.setrlimit(resource.RLIMIT_CPU, (processor, processor))

        with open(BUILD / "output", "wb+") as output:
            child = subprocess.Popen(command, cwd=BUILD, stdin=subprocess.DEVNULL, stdout=output,
                                     stderr=subprocess.STDOUT, start_new_session=True, preexec_fn=limits,
                                     env={**os.environ, **dict.fromkeys(homes, str(scratch))})
            try:
                status = child.wait(3 * processor if processor else None)
            except subprocess.TimeoutExpired:
                status = None
            finally:
                with contextlib.suppress(ProcessLookupError):
                    os.killpg(child.pid, signal.SIGKILL)  # and what it started
            child.wait()
            output.seek(0)
            failed = FAILED.search(output.read().decode(errors="replace"))
        self.good = status == 0
        self.why = "took too long" if status in (None, -signal.SIGXCPU, -signal.SIGKILL) else "crashed"
        if failed:
            self.why = failed.group(1) or failed.group(2)


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
    """A program or more to build, and the command that tests them."""

    def __init__(self, target, command):
        self.build = ["ninja", "-j1", "--quiet", target]
        self.command = command

    def measure(self):
        if not Result(self.build).good:
            sys.exit(f"the tree does not build: {self.build}")
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        result = Result(self.command)
        if not result.good:
            sys.exit(f"the tests fail without a fault: {result.why}")
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.limit = 5 + int(3 * (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime))


def gtest(program):
    return [BUILD / "bin" / program, "--gtest_fail_fast", "--gtest_brief=1"]


CORE = Stage("bivouac_tests", gtest("bivouac_tests"))
WINDOW = Stage("bivouac_window_tests", gtest("bivouac_window_tests"))
# What is no test of GoogleTest has no dot in its name: scripts, seasons of random play, torture.
OTHERS = Stage("all", ["ctest", "--stop-on-failure", "-E", r"\."])


OBJECTS = {}  # of each source


def fate(path):
    """What becomes of the fault that stands in the file, and the test that failed; None if it does not compile."""
    compiled = BUILD / OBJECTS[str(SOURCE / path)]
    sound = compiled.read_bytes()
    if not Result(["ninja", "--quiet", OBJECTS[str(SOURCE / path)]]).good:
        return None, ""
    if compiled.read_bytes() == sound:
        return "same", ""
    for stage in [WINDOW, OTHERS] if path.parts[0] == "window" else [CORE, WINDOW, OTHERS]:
        if not Result(stage.build, BUILD_LIMIT).good:
            return "caught", "the build"  # that of the guide, which the programs write
        result = Result(stage.command, stage.limit)
        if not result.good:
            return "caught", result.why
    return "survived", ""


def drawn(options):
    """The places of faults at random, without end: file, line and column, from 0."""
    files = [path for place in map(SOURCE.joinpath, options.places)
             for path in ([place] if place.is_file() else sorted(place.rglob("*.cpp")))]
    lines = [(path, number, found) for path in files for number, found in sites(path)]
    if not lines:
        sys.exit("no code there")
    draw = random.Random(options.seed)
    seen = set()
    for _ in range(20 * options.count):
        path, number, found = draw.choice(lines)
        place = (path, number, draw.choice(found)[0])
        if place not in seen:
            seen.add(place)
            yield place


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=200, help="faults to plant (default 200)")
    parser.add_argument("--seed", type=int, default=1, help="the same seed draws the same faults in the same code")
    parser.add_argument("--fault", action="append", metavar="FILE:LINE:COLUMN", help="plant this one, as printed")
    parser.add_argument("places", nargs="*", default=FOLDERS, help="folders or files (default: all folders of code)")
    options = parser.parse_args()

    copy_tree()
    BUILD.mkdir(exist_ok=True)
    if not Result(["cmake", "-S", SOURCE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                   "-DCMAKE_CXX_FLAGS=-O1 -D_GLIBCXX_ASSERTIONS",
                   "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",
                   *(["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else [])]).good:
        sys.exit("the tree cannot be configured")
    for unit in json.loads((BUILD / "compile_commands.json").read_text()):
        OBJECTS[unit["file"]] = re.search(r" -o (\S+)", unit["command"]).group(1)
    for stage in (OTHERS, CORE, WINDOW):
        stage.measure()

    if options.fault:
        faults = [(SOURCE / path, int(number) - 1, int(column) - 1)
                  for path, number, column in (fault.split(":") for fault in options.fault)]
    else:
        faults = drawn(options)
    counts = {"caught": 0, "same": 0, "survived": 0}
    survivors = []
    for path, number, column in faults:
        if sum(counts.values()) == options.count:
            break
        original = path.read_text()
        text = original.splitlines(keepends=True)
        line = text[number]
        token = TOKEN.match(line, column).group()
        text[number] = line[:column] + replacement(token) + line[column + len(token):]
        start = time.monotonic()
        try:
            path.write_text("".join(text))
            result, by = fate(path.relative_to(SOURCE))
        finally:
            path.write_text(original)
        if result is None:
            continue
        counts[result] += 1
        place = f"{path.relative_to(SOURCE)}:{number + 1}:{column + 1}"
        said = f"{place}: {token} -> {replacement(token) or 'nothing'}"
        by = f", {by}" if by else ""
        print(f"{result:9}{said}  ({time.monotonic() - start:.0f} s{by})", flush=True)
        if result == "survived":
            survivors.append(f"{said}\n    {line.strip()}")

    changed = counts["caught"] + counts["survived"]
    print("\nSurvivors:", *survivors, sep="\n")
    print(f"\n{sum(counts.values())} faults: {counts['caught']} caught, {counts['survived']} survived, "
          f"{counts['same']} changed no program; caught {100 * counts['caught'] / max(1, changed):.0f} % of {changed}")


if __name__ == "__main__":
    main()
