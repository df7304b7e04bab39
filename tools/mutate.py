#!/usr/bin/env python3
"""Plants small faults in the portable sources, one at a time, and counts which the unit tests notice.

Works beside a build of the preset "mutate", in which the logic is a shared library: a mutant is one
object compiled from a changed copy, linked with the others into a library of its own, and the unit
tests run on that. The sources themselves are never touched.

The mutants are all places where one of OPERATORS applies, in the order that the seed gives. The list
of tests/mutants/equivalent.txt names those that change no behaviour; they are left out.
"""

import argparse
import hashlib
import json
import os
import random
import re
import resource
import shlex
import signal
import subprocess
import sys
import time

FOLDERS = ("appearance", "documents", "network", "platform/forms", "settings", "shell", "support")
LEFT_OUT = ("shell/main.cpp",)  # part of the program on Windows only
EQUIVALENT = "tests/mutants/equivalent.txt"
MEMORY = 4 << 30  # bytes that a run of the tests may take
SLOWEST = 1.5     # times the processor time of the whole suite: the mutant does not end
SLOWEST_NEAR = 25 # seconds of it for the tests of one source
# Positions in twips are checked by eye, in pictures: of such lines only the removal is a mutant.
GEOMETRY = re.compile(r"SetBounds\(|\bDesign = |^ +\{?[{\d, k+*/-]*[\d}][{}\d, k+*/-]*[;,)]*$")

# Name, pattern, replacements. The sources are formatted: there are blanks around a binary operator,
# but not around the angle brackets of a template.
OPERATORS = (
    ("relation", r"(?<= )==(?= )", ("!=",)),
    ("relation", r"(?<= )!=(?= )", ("==",)),
    ("relation", r"(?<= )<(?= )", ("<=", ">=")),
    ("relation", r"(?<= )<=(?= )", ("<", ">")),
    ("relation", r"(?<= )>(?= )", (">=", "<=")),
    ("relation", r"(?<= )>=(?= )", (">", "<")),
    ("logic", r"(?<= )&&(?= )", ("||",)),
    ("logic", r"(?<= )\|\|(?= )", ("&&",)),
    ("logic", r"(?<=[( ])!(?=[A-Za-z_(*])", ("",)),
    ("logic", r"\bif \((?!const |auto |int |const_)", ("if (!", )),
    ("sum", r"(?<= )\+(?= )", ("-",)),
    ("sum", r"(?<= )-(?= )", ("+",)),
    ("sum", r"(?<= )\*(?= )", ("/",)),
    ("sum", r"(?<= )/(?= )", ("*",)),
    ("sum", r"(?<= )%(?= )", ("*",)),
    ("sum", r"\+=(?= )", ("-=",)),
    ("sum", r"-=(?= )", ("+=",)),
    ("sum", r"\+\+", ("--",)),
    ("sum", r"--(?=[A-Za-z_(])|(?<=[\w)\]])--", ("++",)),
    ("bits", r"(?<= )&(?= )", ("|",)),
    ("bits", r"(?<= )\|(?= )", ("&",)),
    ("number", r"(?<![\w.])(?:0x[0-9A-Fa-f]+|\d+)(?![\w.'])", ("+1",)),
    ("truth", r"\btrue\b", ("false",)),
    ("truth", r"\bfalse\b", ("true",)),
    ("text", r'(?<=u)""', ('"~"',)),
    ("text", r'(?<=u)"(?=[^"])', ('"~',)),
    ("statement", r"^ +[A-Za-z_][^=;{}]*\)?(?:\.|->)?[^;{}=]*\([^;{}]*\);$", (";",)),
    ("statement", r"^ +[A-Za-z_][\w.\[\]>()-]* [|&+-]?= [^;{}]*;$", (";",)),
    ("statement", r"^ +(?:break|continue);$", (";",)),
    ("return", r"\breturn;", (";",)),
)
STATEMENT_KEYWORDS = re.compile(r"^ +(?:return|using|throw|delete|typedef|case|else|const|constexpr|"
                                r"static|auto|std::lock_guard|namespace|template|friend|goto)\b")


class Mutant:
    def __init__(self, path, line, column, operator, before, after, text):
        self.path, self.line, self.column, self.operator = path, line, column, operator
        self.before, self.after, self.text = before, after, text

    @property
    def key(self):
        return (self.path, self.before.strip(), self.after.strip())

    def __str__(self):
        return (f"{self.path}:{self.line}: {self.operator}\n"
                f"  - {self.before.strip()}\n  + {self.after.strip()}")


def code_only(source):
    """The source with comments, characters and directives blanked; texts keep their quotes and
    their first character, so that the operators on texts find them."""
    out = list(source)

    def blank(start, end):
        for i in range(start, end):
            if out[i] != "\n":
                out[i] = " " if out[i] == " " else "\x00"

    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|'
                         r"^[ ]*#(?:\\\n|[^\n])*", re.S | re.M)
    for match in pattern.finditer(source):
        start, end = match.span()
        if match[0][0] == '"':
            blank(start + 1, end - 1)
        elif match[0][0] == "'" and re.match(r"[0-9A-Fa-f]", source[start - 1:start]):
            continue  # separates digits
        else:
            blank(start, end)
    return "".join(out)


def matching(text, at):
    depth = 0
    for i in range(at, len(text)):
        if text[i] == "(":
            depth += 1
        elif text[i] == ")":
            depth -= 1
            if depth == 0:
                return i
    return -1


def mutants_of(path):
    source = open(path, encoding="utf-8").read()
    code = code_only(source)
    starts = [0]
    for line in source.split("\n"):
        starts.append(starts[-1] + len(line) + 1)
    for number, text in enumerate(code.split("\n")):
        if re.match(r"\s*(?:static_assert|using|namespace|template)\b", text):
            continue
        for name, pattern, replacements in OPERATORS:
            for match in re.finditer(pattern, text):
                if name == "statement" and STATEMENT_KEYWORDS.match(text):
                    continue
                if name in ("number", "sum") and GEOMETRY.search(text):
                    continue
                for replacement in replacements:
                    at, end = starts[number] + match.start(), starts[number] + match.end()
                    if name == "number":
                        literal = match[0]
                        value = int(literal, 0) + 1
                        new = source[:at] + (hex(value) if literal[:2] == "0x" else str(value)) \
                            + source[end:]
                    elif match[0].startswith("if ("):
                        close = matching(code, end - 1)
                        # A declaration in the condition cannot be negated.
                        if close < 0 or re.search(r"[^=!<>]=[^=]|;", code[end:close]):
                            continue
                        new = (source[:end] + "!(" + source[end:close] + ")" + source[close:])
                    elif name == "statement":
                        new = source[:at] + replacement + source[end:]
                    else:
                        new = source[:at] + replacement + source[end:]
                    yield Mutant(path, number + 1, match.start() + 1, name,
                                 source.split("\n")[number], new.split("\n")[number], new)


def all_mutants():
    mutants = []
    for folder in FOLDERS:
        for name in sorted(os.listdir(folder)):
            path = f"{folder}/{name}"
            if name.endswith(".cpp") and path not in LEFT_OUT:
                mutants.extend(mutants_of(path))
    return mutants


def equivalents():
    """{key: reason}, from records of four lines: file, "- " line, "+ " changed line, "= " reason."""
    known = {}
    record = []
    for line in open(EQUIVALENT, encoding="utf-8"):
        line = line.rstrip("\n")
        if not line or line.startswith("#"):
            continue
        record.append(line)
        if line.startswith("= "):
            if len(record) != 4 or record[1][:2] != "- " or record[2][:2] != "+ ":
                sys.exit(f"{EQUIVALENT}: no record of four lines: {record}")
            known[(record[0], record[1][2:].strip(), record[2][2:].strip())] = line[2:]
            record = []
    if record:
        sys.exit(f"{EQUIVALENT}: the last record has no reason")
    return known


class Suites:
    """The tests, by source."""

    def __init__(self):
        self.names, self.text = {}, {}
        for name in sorted(os.listdir("tests/unit")):
            if not name.endswith("_test.cpp"):
                continue
            text = open(f"tests/unit/{name}", encoding="utf-8").read()
            self.text[name] = text
            self.names[name] = sorted(set(re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+)", text, re.M)))

    def near(self, path):
        """Filters to try in turn: the source's own tests, then those that include its header."""
        stem = os.path.basename(path)[:-len(".cpp")]
        header = f'"{os.path.dirname(path)}/{stem.split("_")[0]}.h"'
        own = [n for n in self.names if n == f"{stem}_test.cpp"]
        including = [n for n in self.names if n not in own and header in self.text[n]]
        for group in (own, including):
            suites = [s for n in group for s in self.names[n]]
            if suites:
                yield ":".join(f"{s}.*:*/{s}.*" for s in suites)


class Build:
    def __init__(self, folder):
        self.folder = folder
        commands = json.load(open(f"{folder}/compile_commands.json"))
        root = os.getcwd()
        self.compile = {os.path.relpath(c["file"], root): c for c in commands}
        link = subprocess.run(["ninja", "-C", folder, "-t", "commands", "libmarl_core.so"],
                              capture_output=True, text=True, check=True).stdout
        self.link = next(l for l in reversed(link.splitlines()) if "-shared" in l)
        self.link = re.sub(r"^: && | && :$", "", self.link)
        self.work = f"{folder}/mutant"
        os.makedirs(self.work, exist_ok=True)
        for name in os.listdir(self.work):
            os.remove(f"{self.work}/{name}")

    def make(self, mutant):
        """Compiles and links the mutant. False when it is no program."""
        entry = self.compile[mutant.path]
        source = os.path.abspath(f"{self.work}/mutant.cpp")
        object_file = os.path.abspath(f"{self.work}/mutant.o")
        with open(source, "w", encoding="utf-8") as out:
            out.write(f'#line 1 "{mutant.path}"\n{mutant.text}')
        words = shlex.split(entry["command"])
        if os.path.basename(words[0]) == "ccache":
            words = words[1:]
        original = words[words.index("-o") + 1]
        words[words.index("-o") + 1] = object_file
        words[-1] = source
        words.append("-w")
        if subprocess.run(words, cwd=entry["directory"], capture_output=True).returncode:
            return False
        link = shlex.split(self.link)
        if os.path.basename(link[0]) == "ccache":
            link = link[1:]
        link = [object_file if w == original else w for w in link]
        link[link.index("-o") + 1] = os.path.abspath(f"{self.work}/libmarl_core.so")
        done = subprocess.run(link, cwd=self.folder, capture_output=True, text=True)
        if done.returncode:
            sys.exit(f"the mutant does not link: {done.stderr}")
        return True

    def run(self, filter_, library, limit):
        """Runs tests on a library, for at most `limit` seconds of processor time. Returns (passed,
        name of the first test that failed)."""
        environment = dict(os.environ, LD_LIBRARY_PATH=os.path.abspath(library))

        def bound():
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_CPU, (limit, limit))

        command = [os.path.abspath(f"{self.folder}/tests/unit/unit_tests"), "--gtest_fail_fast",
                   f"--gtest_filter={filter_}"]
        try:
            # A test that waits forever uses no processor time.
            done = subprocess.run(command, env=environment, capture_output=True,
                                  timeout=20 * limit, preexec_fn=bound, cwd=self.folder)
        except subprocess.TimeoutExpired as stuck:
            return False, last_test(stuck.stdout or b"")
        return done.returncode == 0, last_test(done.stdout)


def last_test(output):
    started = re.findall(rb"^\[ RUN      \] (.*)$", output, re.M)
    return started[-1].decode() if started else ""


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("seconds", nargs="?", type=float, default=600)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, help="ends after so many mutants that are programs")
    parser.add_argument("--skip", type=int, default=0, help="leaves out the first so many mutants")
    parser.add_argument("--only", default="", help="paths that contain this")
    parser.add_argument("--build", default="build/mutate")
    options = parser.parse_args()
    os.nice(5)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # and what runs ends with it

    build, suites, known = Build(options.build), Suites(), equivalents()
    mutants = all_mutants()
    stale = set(known) - {m.key for m in mutants}
    for key in sorted(stale):
        print(f"no such mutant any more, see {EQUIVALENT}: {key}")
    # The order depends on the seed and the position, so that a change elsewhere moves no other mutant.
    def rank(m):
        return hashlib.sha256(f"{options.seed} {m.key} {m.column}".encode()).digest()
    mutants = sorted((m for m in mutants if options.only in m.path), key=rank)

    passed, first = build.run("*", options.build, 3600)
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    whole = usage.ru_utime + usage.ru_stime
    if not passed:
        sys.exit(f"the tests fail without any mutant: {first}")
    print(f"{len(mutants)} mutants, seed {options.seed}; the tests take {whole:.0f} s of processor time",
          flush=True)
    limit = max(60, int(SLOWEST * whole))

    # The test that noticed a mutant the last time runs first.
    memory = f"{options.build}/killers.json"
    killers = json.load(open(memory)) if os.path.exists(memory) else {}
    killed, survived, equivalent, no_program = 0, [], 0, 0
    started = time.monotonic()
    for place, mutant in enumerate(mutants[options.skip:], options.skip + 1):
        if place % 10 == 0:
            print(f"mutant {place}: {killed} killed, {len(survived)} survived so far; "
                  f"{time.monotonic() - started:.0f} s", flush=True)
        if time.monotonic() - started > options.seconds or \
                (options.count and killed + len(survived) >= options.count):
            break
        if mutant.key in known:
            equivalent += 1
            continue
        if not build.make(mutant):
            no_program += 1
            continue
        name = repr((mutant.key, mutant.column))
        filters = [killers[name]] if name in killers else []
        filters += [*suites.near(mutant.path), "*"]
        for filter_ in filters:
            # The tests of one source take a fraction of the time of all.
            passed, first = build.run(filter_, build.work, limit if filter_ == "*" else SLOWEST_NEAR)
            if not passed:
                killed += 1
                killers[name] = first or "*"
                break
        else:
            survived.append(mutant)
            print(f"survived {mutant}", flush=True)
        with open(memory, "w") as out:
            json.dump(killers, out)
    tried = killed + len(survived)
    print(f"{tried} mutants tried, {killed} killed, {len(survived)} survived "
          f"({100 * killed / max(1, tried):.1f} % killed); {equivalent} equivalent and {no_program} "
          f"that do not compile left out; {time.monotonic() - started:.0f} s")
    for mutant in survived:
        print(mutant)


if __name__ == "__main__":
    main()
