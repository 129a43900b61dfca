#!/usr/bin/env python3
"""Average and summary of groups beside NumPy's reductions over a list of as many arrays.

Run with PYTHONPATH=<build>/python. Prints a Markdown table of medians and ratios.
"""

import statistics
import time

import numpy as np

import cxc

REPEATS = 7


def median(work, prepare=lambda: None) -> float:
    times = []
    for _ in range(REPEATS + 1):
        prepare()
        begin = time.perf_counter()
        work()
        times.append(time.perf_counter() - begin)
    return statistics.median(times[1:]) * 1e3


def reductions(arrays):
    return np.min(arrays, axis=0), np.mean(arrays, axis=0), np.max(arrays, axis=0)


def main() -> None:
    print("| operation | ms | NumPy over a list of arrays, ms | ratio | target |")
    print("|---|---|---|---|---|")
    for members, sensors, slices in [(50, 64, 100), (10, 306, 20)]:
        arrays = [
            np.random.default_rng(k).normal(size=(slices, sensors, sensors))
            for k in range(members)
        ]
        group = cxc.Group(cxc.Dataset.from_array(values) for values in arrays)
        group.current = 0

        def shorten():
            del group[members:]

        shape = f"{members} of {slices} x {sensors} x {sensors}"
        ours = median(group.average, shorten)
        numpys = median(lambda: np.mean(arrays, axis=0))
        print(f"| average {shape} | {ours:.1f} | {numpys:.1f} | {ours / numpys:.2f} | 1.00 |")
        ours = median(group.summary, shorten)
        numpys = median(lambda: reductions(arrays))
        print(f"| summary {shape} | {ours:.1f} | {numpys:.1f} | {ours / numpys:.2f} | 0.50 |")


if __name__ == "__main__":
    main()
