#!/usr/bin/env python3
"""Instruction counts of the hot operations beside the stored ones.

    instructions.py PROGRAM [--update]

PROGRAM is cxc_instructions of the build that is measured. Exit code 1 where an operation needs more
instructions than stored, beyond the tolerance, or where the operations are not those stored.

Callgrind's processor has AVX2 where the machine has it and never AVX-512, so the passes over four
doubles are counted whatever the machine; without AVX2 there is nothing to compare with. The counts
belong to one compiler and one C library: after a change of those they are stored anew.
"""

from __future__ import annotations

import argparse
import json
import pathlib
import re
import subprocess
import sys
import tempfile

STORED = pathlib.Path(__file__).with_name("instructions.json")
TOLERANCE = 0.03


def count(program: str) -> dict:
    """What is stored: counts by operation, and what they depend on."""
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out", program],
            capture_output=True, text=True,
        )  # fmt: skip
        if done.returncode != 0:
            sys.exit(f"compare: {program} failed\n{done.stderr}")
        counts = {}
        for path in pathlib.Path(folder).iterdir():
            text = path.read_text()
            operation = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
            total = re.search(r"^totals: (\d+)", text, re.MULTILINE)
            if operation and total:
                counts[operation[1]] = int(total[1])
    return {
        "tolerance": TOLERANCE,
        "compiler": compiler(program),
        "doubles together": done.stdout.strip(),
        "instructions": dict(sorted(counts.items())),
    }


def compiler(program: str) -> str:
    """The compiler's own words about itself, from the program."""
    told = subprocess.run(
        ["readelf", "-p", ".comment", program], capture_output=True, text=True, check=True
    )
    return ", ".join(re.findall(r"\]\s+(.*)$", told.stdout, re.MULTILINE))


def verdict(now: int | None, before: int | None, tolerance: float) -> str:
    if before is None:
        return "NOT STORED"
    if now is None:
        return "GONE"
    if now > before * (1 + tolerance):
        return "MORE"
    return "less: store it" if now < before * (1 - tolerance) else ""


def compare(now: dict, stored: dict) -> int:
    if now["doubles together"] != stored["doubles together"]:
        print(f"compare: stored are the passes over {stored['doubles together']} doubles, "
              f"this machine has those over {now['doubles together']}: nothing compared")
        return 0
    failed = 0
    counts, before = now["instructions"], stored["instructions"]
    for name in sorted(counts.keys() | before.keys()):
        a, b = counts.get(name), before.get(name)
        said = verdict(a, b, stored["tolerance"])
        failed += said.isupper()
        change = f"{a / b - 1:+8.2%}" if a and b else " " * 8
        print(f"{name:22} {a or '-':>12} {b or '-':>12} {change} {said}".rstrip())
    if failed:
        print(f"compare: {failed} beyond {stored['tolerance']:.0%}; where that is right, "
              "bench/compare --update")
        if now["compiler"] != stored["compiler"]:
            print(f"compare: stored with {stored['compiler']}, now {now['compiler']}")
    return 1 if failed else 0


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program")
    parser.add_argument("--update", action="store_true", help="store what is counted now")
    options = parser.parse_args()
    now = count(options.program)
    if options.update:
        STORED.write_text(json.dumps(now, indent=2) + "\n")
        print(f"compare: stored {len(now['instructions'])} counts")
        return 0
    return compare(now, json.loads(STORED.read_text()))


if __name__ == "__main__":
    sys.exit(main())
