"""One way of measuring for all programs in Python: named times, peak memory, figures, as JSON."""

from __future__ import annotations

import argparse
import ctypes
import json
import re
import time
from typing import Any, Callable

Work = Callable[[], Any]

_SLOW = 1.0  # what takes longer [s] is not done again: its first time is its figure
_SHORT = 0.01  # least time of a repetition [s]


def seconds(work: Work) -> float:
    begin = time.perf_counter()
    result = work()  # released after the clock is read
    taken = time.perf_counter() - begin
    del result
    return taken


def _status(name: str) -> int:
    with open("/proc/self/status", encoding="ascii") as lines:
        for line in lines:
            if line.startswith(name + ":"):
                return int(line.split()[1]) * 1024
    return 0


def memory_of(work: Work) -> tuple[float, int]:
    """Seconds of `work`, and the most memory beyond what the process held before [bytes]."""
    ctypes.CDLL(None).malloc_trim(0)
    with open("/proc/self/clear_refs", "w", encoding="ascii") as peak:
        peak.write("5")  # the peak starts anew
    before = _status("VmRSS")
    taken = seconds(work)
    return taken, _status("VmHWM") - before


class Cells:
    """What a program measured on one shape. As cxc_bench: `--only` and `--repetitions`."""

    def __init__(self, description: str) -> None:
        parser = argparse.ArgumentParser(description=description)
        parser.add_argument("shape", help="as 64x64x100, or 10x64x64x100 for a group")
        parser.add_argument("out", help="JSON that is written")
        parser.add_argument("--only", default="", help="regular expression of names")
        parser.add_argument("--repetitions", type=int, default=3)
        options = parser.parse_args()
        extents = [int(part) for part in options.shape.split("x")]
        self.members = extents[0] if len(extents) == 4 else 0
        self.sensors, self.slices = extents[-2], extents[-1]
        self._out = options.out
        self._only = re.compile(options.only)
        self._repetitions = options.repetitions
        self._cells: dict[str, Any] = {}
        self._figures: list[dict[str, Any]] = []

    def measure(
        self, name: str, work: Work, before: Work | None = None, *, outside: bool = False
    ) -> None:
        """Times `work`; `before` is done before each time and does not count.

        Args:
            outside: done by another process, whose memory is not known here.
        """
        if not self._only.search(name):
            return
        if before is not None:
            before()
        first, peak = memory_of(work)
        runs = []
        if first > _SLOW:
            runs.append(first)
        else:
            for _ in range(self._repetitions):
                runs.append(self._repetition(work, before))
        self._cells[name] = {"ms": [run * 1e3 for run in runs], "peak": 0 if outside else peak}

    def _repetition(self, work: Work, before: Work | None) -> float:
        taken, count = 0.0, 0
        while taken < _SHORT:
            if before is not None:
                before()
            taken += seconds(work)
            count += 1
        return taken / count

    def figure(
        self, name: str, target: float, measured: Callable[[], float], *, shape: str
    ) -> None:
        """A figure that is no time, of a shape of its own."""
        if self._only.search(name):
            value = measured()
            self._figures.append({"name": name, "shape": shape, "target": target, "value": value})

    def write(self) -> None:
        with open(self._out, "w", encoding="utf-8") as file:
            json.dump({"cells": self._cells, "figures": self._figures}, file)
