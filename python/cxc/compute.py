"""From a recording to a dataset of coherence slices."""

from __future__ import annotations

import os
import warnings
from dataclasses import dataclass
from typing import Callable, Iterable

import numpy as np

from ._core import version
from .coherence import Plan, make_plan, sliding_coherence
from .labels import sensors_line
from .recording import Recording, open_recording

# Channel types of the dataset header.
_MEG, _EEG, _MEG_AND_EEG = 1, 2, 3


@dataclass
class Computation:
    """A dataset's content and how it came about."""

    recording: Recording
    plan: Plan
    values: np.ndarray  # slices x sensors x sensors
    silent: dict[int, list[int]]  # window index -> indices of its sensors without signal
    partial: dict[int, list[int]]  # the same for sensors whose signal fills only a part of it

    @property
    def slice_rate(self) -> float:
        """Slices per second [Hz]."""
        return self.plan.rate / self.plan.step

    @property
    def latency(self) -> tuple[float, float]:
        """Centres of the first and of the last window [s from the start of the recording].

        Slice t then lies at t / slice_rate + begin. The last window may have been moved back,
        so the end is where it really lies and can be less than a step after the slice before.
        """
        half = self.plan.window / 2.0
        return (
            half / self.plan.rate,
            (self.plan.begin(self.plan.slices - 1) + half) / self.plan.rate,
        )

    @property
    def channel_type(self) -> int:
        kinds = set(self.recording.kinds)
        if kinds == {"meg"}:
            return _MEG
        return _EEG if kinds == {"eeg"} else _MEG_AND_EEG

    def note(self) -> str:
        """How the values were made, for a reader who has nothing but the dataset."""
        rec, plan = self.recording, self.plan
        rate = plan.rate
        lines = [
            f"Magnitude-squared coherence, cxc {version}",
            f"Recording: {rec.name}, {rate:g} Hz, {rec.points} samples, {rec.seconds:g} s",
            f"Band: {plan.band[0]:g} to {plan.band[1]:g} Hz, mean of {plan.bins.size} "
            f"{_plural(plan.bins.size, 'bin')} {rate / plan.segment:g} Hz apart",
            f"Window: {plan.window / rate:g} s, step: {plan.step / rate:g} s, "
            f"slices: {plan.slices}",
            f"Welch: {plan.segments} segments of {plan.segment / rate:g} s, overlap "
            f"{1.0 - plan.hop / plan.segment:.4g}, taper {plan.taper}, mean of each segment "
            "removed",
            f"Latency: centre of the window; first {self.latency[0]:g} s, last "
            f"{self.latency[1]:g} s",
        ]
        if plan.shifted > 0:
            lines.append(
                f"The last window is moved back by {plan.shifted / rate:g} s to end with the "
                "recording"
            )
        lines.append(sensors_line(rec.labels))
        left_out = ", ".join(f"{label} ({reason})" for label, reason in rec.left_out)
        lines.append("Left out: " + (left_out or "none"))
        lines.append("Windows without signal, set to 0: " + (self.describe_silent() or "none"))
        lines.append("Windows partly without signal: " + (self.describe_partial() or "none"))
        lines.extend(f"Remark of the reader: {remark}" for remark in rec.remarks)
        return "\n".join(lines)

    def describe_silent(self) -> str:
        """Windows (counted from 1) and sensors without signal; empty where all have some."""
        return _describe(self.silent, self.recording.labels)

    def describe_partial(self) -> str:
        """The same for windows whose values rest on fewer segments than the others'."""
        return _describe(self.partial, self.recording.labels)

    def dataset(self):
        """The values as a dataset that can be saved."""
        from .dataset import Dataset

        count = len(self.recording.labels)
        return Dataset.from_array(
            self.values,
            sampling_rate=self.slice_rate,
            latency=self.latency,
            band=self.plan.band,
            name=os.path.splitext(self.recording.name)[0],
            note=self.note(),
            channels=list(range(1, count + 1)),
            channel_type=self.channel_type,
        )


def compute(
    path: str | os.PathLike,
    *,
    picks: str = "all",
    progress: Callable[[Iterable, int], Iterable] | None = None,
    **options,
) -> Computation:
    """Computes the coherence of every sensor pair of a recording, window by window.

    Args:
        path: a recording of any format MNE reads.
        picks: "all", "eeg" or "meg".
        progress: wraps the slices (and their number) to show how far the work is.
        options: band, window, step, segment, overlap and taper, as in `make_plan`.

    Raises:
        CommandError: the recording or an option does not fit.

    Warns once, naming windows and sensors, where there is no signal: coherence is 0 there.
    """
    recording = open_recording(path, picks)
    plan = make_plan(recording.rate, recording.points, **options)
    slices = sliding_coherence(recording.read, plan)
    count = len(recording.labels)
    values = np.empty((plan.slices, count, count))
    silent: dict[int, list[int]] = {}
    partial: dict[int, list[int]] = {}
    for index, part in enumerate(progress(slices, plan.slices) if progress else slices):
        values[index] = part.values
        if part.silent.any():
            silent[index] = np.flatnonzero(part.silent).tolist()
        if part.partial.any():
            partial[index] = np.flatnonzero(part.partial).tolist()
    result = Computation(recording, plan, values, silent, partial)
    if silent:
        warnings.warn(f"no signal, coherence set to 0 in {result.describe_silent()}", stacklevel=2)
    return result


def strongest_pairs(
    values: np.ndarray, labels: list[str], count: int = 10
) -> list[tuple[str, str, float]]:
    """The pairs of largest value in a sensors x sensors matrix, strongest first."""
    rows, columns = np.triu_indices(values.shape[0], 1)
    pairs = values[rows, columns]
    order = np.argsort(-pairs, kind="stable")[:count]
    return [(labels[rows[i]], labels[columns[i]], float(pairs[i])) for i in order]


def _describe(found: dict[int, list[int]], labels: list[str]) -> str:
    """Windows with the same sensors told together: a long flat stretch is one item."""
    groups: dict[tuple[int, ...], list[int]] = {}
    for window, sensors in found.items():
        groups.setdefault(tuple(sensors), []).append(window + 1)
    return "; ".join(
        f"{_plural(len(windows), 'window')} {_ranges(windows)}: "
        + ("all sensors" if len(sensors) == len(labels) else _names(labels, sensors))
        for sensors, windows in groups.items()
    )


def _plural(count: int, word: str) -> str:
    return word if count == 1 else word + "s"


def _names(labels: list[str], indices: Iterable[int]) -> str:
    return ", ".join(labels[index] for index in indices)


def _ranges(numbers: list[int]) -> str:
    """[1, 2, 3, 7] as "1-3, 7"."""
    runs: list[list[int]] = []
    for number in numbers:
        if runs and number == runs[-1][1] + 1:
            runs[-1][1] = number
        else:
            runs.append([number, number])
    return ", ".join(str(a) if a == b else f"{a}-{b}" for a, b in runs)
