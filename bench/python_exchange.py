#!/usr/bin/env python3
"""from_array and to_array beside NumPy's own transposed copy of the same array.

Run with PYTHONPATH=<build>/python. Prints a Markdown table of medians and ratios.
"""

import statistics
import time

import numpy as np

import cxc

REPEATS = 7


def median(work) -> float:
    work()
    times = []
    for _ in range(REPEATS):
        begin = time.perf_counter()
        work()
        times.append(time.perf_counter() - begin)
    return statistics.median(times) * 1e3


def main() -> None:
    print("| operation | ms | NumPy's transposed copy, ms | ratio | target |")
    print("|---|---|---|---|---|")
    for sensors, slices in [(64, 100), (306, 100)]:
        values = np.random.default_rng(1).normal(size=(slices, sensors, sensors))
        pairs = np.ascontiguousarray(values.transpose(1, 2, 0))
        dataset = cxc.Dataset.from_array(values)
        rows = [
            (
                "from_array",
                lambda: cxc.Dataset.from_array(values),
                lambda: np.ascontiguousarray(values.transpose(1, 2, 0)),
            ),
            (
                "to_array",
                dataset.to_array,
                lambda: np.ascontiguousarray(pairs.transpose(2, 0, 1)),
            ),
        ]
        for name, ours, numpys in rows:
            a, b = median(ours), median(numpys)
            shape = f"{slices} x {sensors} x {sensors}"
            print(f"| {name} {shape} | {a:.2f} | {b:.2f} | {a / b:.2f} | 1.00 |")


if __name__ == "__main__":
    main()
