"""The main job on real work, from a recording to a picture, with its own checks."""

from __future__ import annotations

import os
import tempfile
import time

import numpy as np

from .compute import Computation, compute, strongest_pairs
from .dataset import Dataset
from .errors import CommandError
from .files import check_folder, whole_file


def run_demo(recording: str | None, out: str, options: dict, progress=None) -> None:
    """Computes, saves, opens, compares and draws; leaves the results in the folder `out`.

    Args:
        recording: any that MNE reads; None simulates one with known coupling.
        out: made when missing; earlier results of the demo are replaced.
        options: of `compute.compute`.
        progress: as in `compute.compute`.

    Raises:
        CommandError: a check failed, or as `compute.compute`.
    """
    os.makedirs(out, exist_ok=True)
    check_folder(out)
    begin = time.perf_counter()
    if recording is None:
        with tempfile.TemporaryDirectory() as folder:
            from .simulate import write_recording

            path = os.path.join(folder, "simulated_eeg.fif")
            write_recording(path)
            result = compute(path, progress=progress, **options)
    else:
        result = compute(recording, progress=progress, **options)
    dataset = result.dataset()
    stem = os.path.join(out, dataset.name)
    dataset.save(stem + ".cxc")
    again = Dataset.open(stem + ".cxc")
    checks = _check_bits(result, dataset, again)
    if recording is None:
        checks += _check_coupling(again.to_array(), result.recording.labels)
    _draw(again, result, stem)
    seconds = time.perf_counter() - begin
    _report(stem + "-report.md", result, again, checks)

    failed = [text for text, passed in checks if not passed]
    if failed:
        raise CommandError("the demo failed: " + "; ".join(failed))
    slices, sensors, _ = again.shape
    print(
        f"demo: {slices} slices of {sensors} x {sensors} sensors, {len(checks)} checks passed, "
        f"{seconds:.1f} s; results in {out}: "
        + ", ".join(os.path.basename(stem) + tail for tail in _RESULTS)
    )


_RESULTS = (".cxc", "-heatmap.png", "-circle.png", "-report.md")


def _check_bits(result: Computation, made: Dataset, opened: Dataset) -> list[tuple[str, bool]]:
    same = opened.to_array().tobytes() == np.ascontiguousarray(result.values).tobytes()
    described = (
        opened.name == made.name
        and opened.note == made.note
        and opened.band == made.band
        and opened.latency == made.latency
        and opened.sampling_rate == made.sampling_rate
        and np.array_equal(opened.channels_a, made.channels_a)
        and np.array_equal(opened.channels_b, made.channels_b)
    )
    return [
        ("the opened file holds the computed values bit for bit", same),
        ("the opened file holds the whole description", described),
        ("no value is NaN", bool(np.isfinite(result.values).all())),
    ]


def _check_coupling(values: np.ndarray, labels: list[str]) -> list[tuple[str, bool]]:
    """Coupled pairs must lie above every other pair, the late one in its half only."""
    from .simulate import COUPLED, COUPLED_LATE

    def pair(matrix, names):
        return matrix[labels.index(names[0]), labels.index(names[1])]

    third = values.shape[0] // 3
    early, late = values[:third].mean(axis=0), values[-third:].mean(axis=0)
    known = {frozenset(names) for names in COUPLED + COUPLED_LATE}
    others = [
        (labels[a], labels[b])
        for a in range(len(labels))
        for b in range(a)
        if frozenset((labels[a], labels[b])) not in known
    ]
    highest = max(max(pair(early, names), pair(late, names)) for names in others)
    checks = []
    for names in COUPLED:
        both = min(pair(early, names), pair(late, names))
        checks.append(
            (f"{names[0]}-{names[1]} ({both:.2f}) stands out ({highest:.2f})", both > highest)
        )
    for names in COUPLED_LATE:
        before, after = pair(early, names), pair(late, names)
        checks.append(
            (
                f"{names[0]}-{names[1]} rises from {before:.2f} to {after:.2f} and then stands out",
                before <= highest < after,
            )
        )
    return checks


def _draw(dataset: Dataset, result: Computation, stem: str) -> None:
    from .plot import circle, heatmap

    mean = dataset.to_array().mean(axis=0)
    low, high = dataset.band
    title = f"{dataset.name}: coherence, {low:g} to {high:g} Hz"
    begin, end = dataset.latency
    subtitle = f"mean of {len(dataset)} slices, {begin:g} to {end:g} s"
    labels = result.recording.labels
    heatmap(mean, labels, stem + "-heatmap.png", title=title, subtitle=subtitle)
    circle(mean, labels, stem + "-circle.png", title=title, subtitle=subtitle)


def _report(path: str, result: Computation, dataset: Dataset, checks) -> None:
    mean = dataset.to_array().mean(axis=0)
    lines = [f"# {dataset.name}", ""]
    lines += ["- " + line for line in result.note().splitlines()]
    lines += ["", "## Strongest pairs, mean of all slices", "", "| pair | coherence |", "|---|---|"]
    for first, second, value in strongest_pairs(mean, result.recording.labels):
        lines.append(f"| {first} - {second} | {value:.3f} |")
    lines += ["", "## Checks", ""]
    lines += [f"- {'passed' if passed else 'FAILED'}: {text}" for text, passed in checks]
    with whole_file(path) as draft, open(draft, "w", encoding="utf-8") as file:
        file.write("\n".join(lines) + "\n")
