#!/usr/bin/env python3
"""Plants small faults one at a time and tells which of them the tests catch.

    git clone . ../planted && cd ../planted
    cmake -S . -B build/planted -G Ninja -DCMAKE_BUILD_TYPE=Debug -DZP_BUILD_FUZZ=ON -DCMAKE_LINK_DEPENDS_NO_SHARED=ON
    cmake --build build/planted
    scripts/plant_faults.py build/planted --area library --count 100 --seed 1 --log library.jsonl

A fault is an operator turned, a statement removed, a bound moved or a constant changed, in one line of the area's .cpp files: `library`
(platform and the folders) or `tools` (tools and store). The places are drawn evenly over all that there are; a fault that doesn't compile
is drawn anew. The tests of the fault's folder run first, then the others and what the fuzz targets begin with; a program that outlives its
time has caught the fault. A log that exists is gone on with. Each fault becomes one line of JSON in the log. --again LOG plants the missed faults of an earlier run once more.

The checkout is written to: use a clone. Exit status: 0 done, 1 the tests fail without a fault, 2 used wrongly.
"""
import argparse
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
import tempfile
import time

LIBRARY = "platform foundation store data numeric text config messages drawing views spreadsheet system".split()
AREAS = {"library": LIBRARY, "tools": ["tools", "store"]}
MOST_SECONDS = 1200  # of a test program without a fault
BUILD_SECONDS = 3600
MEMORY_BYTES = 8 << 30

# (kind, what is looked for, what it becomes). Operators stand between blanks, as the formatter sets them.
TURNS = [(" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), (" == ", " != "), (" != ", " == "),
         (" && ", " || "), (" || ", " && "), (" + ", " - "), (" - ", " + "), (" * ", " / "), (" += ", " -= "),
         (" -= ", " += "), (" | ", " & "), (" & ", " | "), (" << ", " >> "), ("++", "--")]
PATTERNS = [("operator", re.compile(re.escape(old)), new) for old, new in TURNS]
PATTERNS += [("operator", re.compile(r"(?<=[(&| ])!(?=[\w(])"), ""),
             ("bound", re.compile(r" [-+] 1\b(?![.\w'])"), ""),
             ("bound", re.compile(r"(?<=[<>] )(?=\w)"), "1 + "),
             ("bound", re.compile(r"(?<=[<>]= )(?=\w)"), "1 + "),
             ("constant", re.compile(r"\btrue\b"), "false"), ("constant", re.compile(r"\bfalse\b"), "true"),
             ("constant", re.compile(r"(?<![\w.'])(?:0x[0-9A-Fa-f]+|\d+)(?![\w.'])"), None)]
QUICK_TESTS = "tests/test_tools Tools/Transcripts*"  # they see most of the tools in a few seconds
TOOL_TESTS = (QUICK_TESTS, "tests/test_tools", "tests/test_roads", "tests/test_faults")
LINE_ENDS = (";", "{", "}", ")", "\x01", ":", "else")
STATEMENT = re.compile(r"^\s+(?!using |static_assert|#|//|friend |extern |class |struct )[^\s].*;\s*$")


def masked(text):
    """The text with comments, literals and preprocessor lines blanked, so that places keep their columns."""
    blank = lambda found: re.sub(r"[^\n]", "\x01", found.group(0))
    return re.sub(r'//[^\n]*|/\*.*?\*/|R"\((?:.|\n)*?\)"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])*\'|^#[^\n]*',
                  blank, text, flags=re.M | re.S)


def other_number(text):
    """The next number, and 0 for 1: a result of 2 would mean the same as 1."""
    if text == "1":
        return "0"
    return hex(int(text, 16) + 1) if text.startswith("0x") else str(int(text, 10) + 1)


def faults_of(root, path):
    """Every fault that the file can take: (file, line, first column, last column, kind, new text)."""
    source = (root / path).read_text(encoding="utf-8")
    lines, shown = source.split("\n"), masked(source).split("\n")
    for number, mask in enumerate(shown):
        if not mask.startswith(" "):
            continue
        for kind, pattern, new in PATTERNS:
            for place in pattern.finditer(mask):
                yield (path, number, place.start(), place.end(), kind, other_number(place.group(0)) if new is None else new)
        before = shown[number - 1].rstrip() if number else ""
        if STATEMENT.match(mask) and balanced(mask) and ".reserve(" not in mask and before.endswith(LINE_ENDS):
            yield (path, number, len(lines[number]) - len(lines[number].lstrip()), len(lines[number]), "removed", ";")


def balanced(line):
    return all(line.count(a) == line.count(b) for a, b in ("()", "{}", "[]"))


class Planter:
    def __init__(self, root, build):
        self.root, self.build = root, build
        programs = [*(build / "tests").glob("test_*"), *(build / "fuzz").glob("*_fuzz")]
        self.tests = sorted(str(p.relative_to(build)) for p in programs if os.access(p, os.X_OK) and p.is_file()) + [QUICK_TESTS]
        self.seconds = {}

    def measure(self):
        """Runs each test program without a fault, sets the time that it may take, and gives what fails."""
        failed = []
        for name in self.tests:
            started = time.monotonic()
            failed += self.run_test(name)
            self.seconds[name] = 20 + 6 * (time.monotonic() - started)
        self.tests.sort(key=self.seconds.get)
        return failed

    def ninja(self, *targets):
        environment = dict(os.environ, CCACHE_DISABLE="1")
        return subprocess.run(["ninja", "-C", self.build, *targets], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              env=environment, timeout=BUILD_SECONDS, check=False).returncode == 0

    def run_test(self, name):
        """The names of what failed; none when all passed. A name is a program, perhaps with a filter of its tests."""
        program, *filters = name.split()
        scratch = tempfile.mkdtemp(prefix="planted-")
        os.chmod(scratch, 0o755)  # a test looks in as another user
        output = os.path.join(scratch, "output")
        try:
            with open(output, "wb") as sink:
                argument = self.root / "fuzz/seeds" / pathlib.Path(name).name if name.startswith("fuzz/") else "--gtest_brief=1"
                filters = [f"--gtest_filter={f}" for f in filters]
                run = subprocess.Popen([self.build / program, argument, *filters], cwd=scratch, stdout=sink, stderr=subprocess.STDOUT,
                                       stdin=subprocess.DEVNULL, start_new_session=True,
                                       env=dict(os.environ, TMPDIR=scratch, GTEST_CATCH_EXCEPTIONS="1", GTEST_FAIL_FAST="1"),
                                       preexec_fn=bounded)
                try:
                    status = run.wait(self.seconds.get(name, MOST_SECONDS))
                except subprocess.TimeoutExpired:
                    status = None
                finally:
                    try:
                        os.killpg(run.pid, signal.SIGKILL)
                    except ProcessLookupError:
                        pass
                    run.wait()
            if status == 0:
                return []
            text = pathlib.Path(output).read_text(encoding="latin-1")
            failed = re.findall(r"\[  FAILED  \] ([\w./]+\.[\w./]+)", text)
            return [f"{name}: {'out of time' if status is None else failed[0] if failed else f'status {status}'}"]
        finally:
            shutil.rmtree(scratch, ignore_errors=True)

    def order(self, folder):
        """The programs that see the folder, those of its own first."""
        if folder == "tools":
            seen = [name for name in self.tests if name in TOOL_TESTS or name.startswith("fuzz/")]
        else:
            seen = [name for name in self.tests if name != QUICK_TESTS or folder == "store"]
        own = [f"tests/test_{folder}", *(["tests/test_tools"] if folder == "store" else [])]
        return sorted(seen, key=lambda name: (name != QUICK_TESTS, name not in own))

    def look(self, name, folder):
        """What fails of a program, which is linked anew first if it holds the folder's objects itself."""
        holds = folder == "tools" and name not in ("tests/test_tools", "tests/test_roads", QUICK_TESTS)
        return ["doesn't link"] if holds and not self.ninja(name) else self.run_test(name)

    def try_fault(self, fault):
        """True when a test caught it, with its name; False when none did; None when it doesn't compile."""
        path, number, begin, end, kind, new = fault
        file = self.root / path
        source = file.read_bytes()
        lines = source.decode("utf-8").split("\n")
        line = lines[number]
        lines[number] = line[:begin] + new + line[end:]
        folder = path.split("/")[0]
        entry = {"file": path, "line": number + 1, "kind": kind, "was": line.strip(), "is": lines[number].strip(), "fault": fault}
        try:
            file.write_text("\n".join(lines), encoding="utf-8")
            if not self.ninja(*(["zp", "zp_made_pages"] if folder == "tools" else ["zpbase"])):
                return None
            failed = next((failed for name in self.order(folder) if (failed := self.look(name, folder))), [])
            return dict(entry, caught=bool(failed), by=failed[0] if failed else "")
        finally:
            file.write_bytes(source)


def bounded():
    resource.setrlimit(resource.RLIMIT_DATA, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def summary(entries):
    for kind in ("operator", "bound", "constant", "removed"):
        of_kind = [e for e in entries if e["kind"] == kind]
        print(f"{kind}: {sum(e['caught'] for e in of_kind)} of {len(of_kind)} caught")
    caught = sum(e["caught"] for e in entries)
    print(f"all: {caught} of {len(entries)} caught ({100 * caught / max(1, len(entries)):.1f} %)")


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="a configured and built folder of this checkout")
    parser.add_argument("--area", choices=AREAS, default="library")
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--log", type=pathlib.Path, default=pathlib.Path("planted.jsonl"))
    parser.add_argument("--again", type=pathlib.Path, help="a log whose missed faults are planted once more")
    return parser.parse_args()


def chosen(root, options):
    if options.again:
        yield from relocated(root, options.again)
        return
    files = sorted(str(p.relative_to(root)) for folder in AREAS[options.area] for p in (root / folder).rglob("*.cpp"))
    places = [fault for file in files for fault in faults_of(root, file)]
    random.Random(options.seed).shuffle(places)
    yield from places


def relocated(root, log):
    """The missed faults of a log; a line that has moved is found by its text, one that is gone is told."""
    for line in log.read_text(encoding="utf-8").splitlines():
        entry = json.loads(line)
        if entry["caught"]:
            continue
        lines = (root / entry["file"]).read_text(encoding="utf-8").split("\n")
        same = [n for n, text in enumerate(lines) if text.strip() == entry["was"]]
        if not same:
            print(f"gone: {entry['file']}:{entry['line']} {entry['was']}")
            continue
        path, number, *rest = entry["fault"]
        yield (path, min(same, key=lambda n: abs(n - number)), *rest)


def main():
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # a planted fault is taken out and its build ended first
    options = arguments()
    root, build = pathlib.Path(__file__).resolve().parent.parent, options.build.resolve()
    planter = Planter(root, build)
    if not planter.tests:
        sys.exit(f"{build} has no tests: build it first")
    failing = planter.measure()
    if failing:
        print("these fail without a fault:", *failing, sep="\n  ")
        return 1
    entries, started = [], time.monotonic()
    if options.log.exists() and not options.again:
        entries = [json.loads(line) for line in options.log.read_text(encoding="utf-8").splitlines()]
    tried = {tuple(entry["fault"]) for entry in entries}
    for fault in chosen(root, options):
        if not options.again and len(entries) == options.count:
            break
        if fault in tried:
            continue
        entry = planter.try_fault(fault)
        if entry is None:
            continue
        entries.append(entry)
        with options.log.open("a", encoding="utf-8") as log:
            log.write(json.dumps(entry) + "\n")
        print(f"{len(entries)} {'caught' if entry['caught'] else 'MISSED'} {entry['file']}:{entry['line']} {entry['is']}  {entry['by']}",
              flush=True)
    planter.ninja("all")
    summary(entries)
    print(f"{time.monotonic() - started:.0f} s")
    return 0


if __name__ == "__main__":
    sys.exit(main())
