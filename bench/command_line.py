#!/usr/bin/env python3
"""`cxc average` over 50 files beside `cat` of the same files to nothing.

Run with PYTHONPATH=<build>/python and the program's path as argument. Prints a Markdown table: for
files that have to come from the disk, and for files that the system still holds in memory.
"""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

import numpy as np

import cxc

FILES = 50
REPEATS = 7


def forget(paths) -> None:
    """Has the system drop what it holds of the files."""
    for path in paths:
        with open(path, "rb") as file:
            os.fsync(file.fileno())
            os.posix_fadvise(file.fileno(), 0, 0, os.POSIX_FADV_DONTNEED)


def median(command, before) -> float:
    times = []
    for _ in range(REPEATS):
        before()
        begin = time.perf_counter()
        subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
        times.append(time.perf_counter() - begin)
    return statistics.median(times) * 1e3


# A process starts with the peak of the one that started it: a small one has to stand between.
BETWEEN = """
import os, sys
pid = os.posix_spawn(sys.argv[1], sys.argv[1:], os.environ)
print(os.wait4(pid, 0)[2].ru_maxrss)
"""


def peak(command) -> int:
    """Largest memory of a command, in bytes."""
    told = subprocess.run(
        [sys.executable, "-SEc", BETWEEN, *command], capture_output=True, text=True, check=True
    )
    return int(told.stdout.split()[-1]) * 1024


def main() -> None:
    tool = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        random = np.random.default_rng(1)
        paths = [str(pathlib.Path(folder, f"s{i:02}.cxc")) for i in range(FILES)]
        for path in paths:
            cxc.Dataset.from_array(random.random((100, 64, 64))).save(path)
        average = [tool, "average", *paths, "-o", str(pathlib.Path(folder, "m.cxc")), "--force"]
        print(f"average of {FILES} files of 64 x 64 x 100, {os.path.getsize(paths[0])} bytes each")
        print()
        print("| files | average, ms | cat, ms | ratio | target |")
        print("|---|---|---|---|---|")
        for where, before in [("on the disk", lambda: forget(paths)), ("in memory", lambda: None)]:
            ours, limit = median(average, before), median(["cat", *paths], before)
            print(f"| {where} | {ours:.1f} | {limit:.1f} | {ours / limit:.2f} | 1.50 |")
        large = str(pathlib.Path(folder, "large.cxc"))
        cxc.Dataset.from_array(np.zeros((100, 200, 200))).save(large)
        average = [tool, "average", *[large] * 20, "-o", paths[0], "--force"]
        used = peak(average) - peak([tool, "--version"])
        print()
        print(f"memory: that of {used / os.path.getsize(large):.2f} datasets")


if __name__ == "__main__":
    main()
