#!/usr/bin/env python3
"""`cxc average` over the files of a group beside `cat` of the same files to nothing.

    PYTHONPATH=<build>/python CXC_TOOL=<program> command_line.py SHAPE OUT [--only REGEX] ...

For files that have to come from the disk, and for files that the system still holds in memory.
"""

from __future__ import annotations

import functools
import os
import pathlib
import subprocess
import sys
import tempfile

import numpy as np

import cxc
from cells import Cells


def forget(paths: list[str]) -> None:
    """Has the system drop what it holds of the files."""
    for path in paths:
        with open(path, "rb") as file:
            os.fsync(file.fileno())
            os.posix_fadvise(file.fileno(), 0, 0, os.POSIX_FADV_DONTNEED)


def run(command: list[str]) -> None:
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True)


# A process starts with the peak of the one that started it: a small one has to stand between.
BETWEEN = """
import os, sys
pid = os.posix_spawn(sys.argv[1], sys.argv[1:], os.environ)
print(os.wait4(pid, 0)[2].ru_maxrss)
"""


def peak(command: list[str]) -> int:
    """Largest memory of a command, in bytes."""
    told = subprocess.run(
        [sys.executable, "-SEc", BETWEEN, *command], capture_output=True, text=True, check=True
    )
    return int(told.stdout.split()[-1]) * 1024


def datasets_held(tool: str, folder: str) -> float:
    """Memory of an average of 20 large files, in datasets."""
    large = str(pathlib.Path(folder, "large.cxc"))
    cxc.Dataset.from_array(np.zeros((100, 200, 200))).save(large)
    average = [tool, "average", *[large] * 20, "-o", str(pathlib.Path(folder, "a.cxc")), "--force"]
    return (peak(average) - peak([tool, "--version"])) / os.path.getsize(large)


def main() -> None:
    tool = os.environ["CXC_TOOL"]
    cells = Cells(__doc__.split("\n")[0])
    with tempfile.TemporaryDirectory() as folder:
        random = np.random.default_rng(1)
        paths = [str(pathlib.Path(folder, f"s{i:02}.cxc")) for i in range(cells.members)]
        for path in paths:
            values = random.random((cells.slices, cells.sensors, cells.sensors))
            cxc.Dataset.from_array(values).save(path)
        average = [tool, "average", *paths, "-o", str(pathlib.Path(folder, "m.cxc")), "--force"]
        for where, before in [("on disk", lambda: forget(paths)), ("in memory", None)]:
            for name, command in [
                (f"ours/cxc average, {where}", average),
                (f"cat/files {where}", ["cat", *paths]),
            ]:
                cells.measure(name, functools.partial(run, command), before, outside=True)
        cells.figure(
            "memory of `cxc average`, in datasets",
            2.0,
            lambda: datasets_held(tool, folder),
            shape="20x200x200x100",
        )
    cells.write()


if __name__ == "__main__":
    main()
