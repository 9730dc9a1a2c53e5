"""Changes one thing at a time in src/ and looks whether a test notices.

A mutant is killed when a test fails, crashes, does not end or does not compile with it. One that survives belongs
into equivalent.txt with the reason why it cannot be noticed, or is work for a test.
"""

import argparse
import os
import pathlib
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import choice
import ledger
import workshop
from ledger import BROKEN, EQUIVALENT, KILLED, SURVIVED, Result
from places import apply_change, changes_of, line_of

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
RESULTS = ROOT / "build" / "mutation-results"
EQUIVALENTS = HERE / "equivalent.txt"


class Run:
    def __init__(self, options, reasons, earlier):
        self.options = options
        self.reasons = reasons
        self.earlier = earlier
        self.shop = workshop.Workshop(ROOT, RESULTS)
        self.results = []
        self.wrong = []  # listed as equivalent, but killed
        self.lock = threading.Lock()
        self.workers = list(range(options.jobs))
        self.record = None

    def say(self, text):
        with self.lock:
            print(text, flush=True)

    def keep(self, result):
        with self.lock:
            self.results.append(result)
            self.record.write(ledger.to_line(result) + "\n")
            self.record.flush()
        if result.state == SURVIVED:
            self.say(f"  survived: {result.file}:{result.line} ({result.kind})\n    - {result.before}\n"
                     f"    + {result.after}")

    def judge(self, worker, file, text, change, killers):
        """The result for one mutant; from the list or an earlier run where these have it."""
        key = ledger.key_of(file, text, change)
        fields = (*key[:1], line_of(text, change), *key[1:], change.kind)
        if key in self.reasons and not self.options.all:
            return Result(*fields, EQUIVALENT, "")
        known = self.earlier.get(key)
        if known and known.state in (KILLED, BROKEN):
            return Result(*fields, known.state, known.by)
        try:
            killer = self.shop.try_mutant(worker, file, apply_change(text, change), killers)
        except workshop.NotCompiled:
            return Result(*fields, BROKEN, "")
        if key in self.reasons:
            if killer:
                self.wrong.append(key)
            return Result(*fields, EQUIVALENT, "")
        if killer:
            killers[:] = [killer] + [name for name in killers if name != killer]
            return Result(*fields, KILLED, killer)
        return Result(*fields, SURVIVED, "")

    def try_file(self, file, text, quota, changes):
        with self.lock:
            worker = self.workers.pop()
        begin, killers, counted, own = time.monotonic(), [], 0, []
        for change in changes:
            if counted == quota:
                break
            result = self.judge(worker, file, text, change, killers)
            self.keep(result)
            own.append(result.state)
            counted += result.state != BROKEN
        with self.lock:
            self.workers.append(worker)
        states = ", ".join(f"{own.count(state)} {state}" for state in (KILLED, EQUIVALENT, SURVIVED) if state in own)
        self.say(f"{file}: {states or 'nothing that compiles'} ({time.monotonic() - begin:.0f} s)")

    def run(self, texts, chosen):
        print("== build", flush=True)
        self.shop.prepare(self.options.jobs)
        print("== tests on the library itself", flush=True)
        self.shop.measure()
        print(f"== {sum(quota for quota, _ in chosen.values())} mutants in {len(chosen)} files", flush=True)
        # Headers take longest: every file that includes them is compiled again.
        files = sorted(chosen, key=lambda file: (not file.endswith(".h"), -chosen[file][0], file))
        # Of several lines for a mutant the last one counts.
        with open(RESULTS / "record.tsv", "a" if self.earlier else "w", encoding="utf-8") as self.record:
            with ThreadPoolExecutor(self.options.jobs) as pool:
                for done in [pool.submit(self.try_file, file, texts[file], *chosen[file]) for file in files]:
                    done.result()


def positive(text):
    number = int(text)
    if number < 1:
        raise argparse.ArgumentTypeError("must be 1 or more")
    return number


def options_of(arguments):
    parser = argparse.ArgumentParser(prog="./mutate", description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seed", type=int, default=1, help="another seed is another choice of mutants")
    parser.add_argument("--count", type=positive, default=340,
                        help="how many at least; a few do not compile")
    parser.add_argument("--files", nargs="+", default=[""], metavar="PART",
                        help="only files whose path has one of these parts")
    parser.add_argument("--jobs", type=positive, default=os.cpu_count() or 1)
    parser.add_argument("--resume", action="store_true",
                        help="take over what the last run killed: after an interruption, or when tests were added")
    parser.add_argument("--all", action="store_true",
                        help="try also what is listed as equivalent; a listed mutant that is killed is an error")
    parser.add_argument("--list", action="store_true", help="show the mutants, with those that may not compile")
    return parser.parse_args(arguments)


def sources(parts):
    paths = sorted(path for path in (ROOT / "src").rglob("*") if path.suffix in (".h", ".cpp"))
    names = {path.relative_to(ROOT).as_posix(): path for path in paths}
    return {name: path.read_text(encoding="utf-8") for name, path in names.items()
            if any(part in name for part in parts)}


def read_or_none(name):
    path = ROOT / name
    return path.read_text(encoding="utf-8") if path.is_file() else None


def main():
    options = options_of(sys.argv[1:])
    reasons = ledger.parse_equivalent(EQUIVALENTS.read_text(encoding="utf-8"))
    stale = ledger.stale(reasons, read_or_none)
    if stale:
        print("\n".join(f"listed as equivalent, but not in the file: {key.file}: {key.before}" for key in stale))
        return 1

    everything = sources([""])
    chosen = choice.choose({name: changes_of(text) for name, text in everything.items()}, options.count, options.seed)
    texts = sources(options.files)
    chosen = {name: chosen[name] for name in texts if name in chosen}
    if options.list:
        for name, (quota, changes) in chosen.items():
            for change in changes[:quota]:
                key = ledger.key_of(name, texts[name], change)
                print(f"{name}:{line_of(texts[name], change)} ({change.kind})\n  - {key.before}\n  + {key.after}")
        return 0

    os.nice(10)
    begin = time.monotonic()
    RESULTS.mkdir(parents=True, exist_ok=True)
    record = RESULTS / "record.tsv"
    earlier = ledger.parse_record(record.read_text(encoding="utf-8")) if options.resume and record.is_file() else {}
    run = Run(options, reasons, earlier)
    try:
        run.run(texts, chosen)
    except RuntimeError as error:
        print(error, file=sys.stderr)
        return 2

    print(ledger.report(run.results))
    for key in run.wrong:
        print(f"listed as equivalent, but killed: {key.file}\n  - {key.before}\n  + {key.after}")
    minutes = (time.monotonic() - begin) / 60.0
    print(f"seed {options.seed}, {minutes:.0f} minutes; every mutant: {record.relative_to(ROOT)}")
    return 1 if run.wrong or any(result.state == SURVIVED for result in run.results) else 0


if __name__ == "__main__":
    sys.exit(main())
