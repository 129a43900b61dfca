"""Magnitude-squared coherence of every sensor pair, window by window.

Within each window Welch's method averages over overlapping, tapered segments: the segments of
all sensors are transformed once, and the cross spectra of all pairs are one matrix product per
frequency bin. A slice is the mean over the bins of a band. Only one window of samples is held
in memory, so the length of a recording does not matter.
"""

from __future__ import annotations

import math
from dataclasses import dataclass
from typing import Callable, Iterator

import numpy as np
from scipy import fft, signal

from . import slice_count
from .errors import CommandError

TAPERS = ("hann", "hamming", "blackman", "bartlett", "boxcar")

# A bin this far below a sensor's largest deviation in the window is rounding, not signal [ratio].
_NO_SIGNAL = 1e-13


@dataclass(frozen=True)
class Plan:
    """How a recording is cut and transformed; lengths in samples, frequencies in Hz."""

    rate: float  # samples per second of the recording [Hz]
    points: int  # samples of the recording
    window: int  # samples of a window
    step: int  # samples from one window to the next
    segment: int  # samples of a Welch segment
    hop: int  # samples from one segment to the next
    taper: str
    band: tuple[float, float]  # both ends belong to the band [Hz]

    @property
    def slices(self) -> int:
        """Number of windows, by the library's own formula."""
        return slice_count(self.points, self.step, self.window)

    @property
    def segments(self) -> int:
        """Number of whole segments in a window."""
        return 1 + (self.window - self.segment) // self.hop

    @property
    def bins(self) -> np.ndarray:
        """Indices of the transform's bins that lie in the band."""
        return _bins_of(self.rate, self.segment, self.band)

    @property
    def shifted(self) -> int:
        """Samples by which the last window is moved back to end with the recording."""
        return (self.slices - 1) * self.step + self.window - self.points

    def begin(self, index: int) -> int:
        """First sample of window `index`.

        The slice count rounds up, so the last window may reach past the end of the recording.
        It is moved back to end at the last sample; it is then less than a step from the one
        before.
        """
        return min(index * self.step, self.points - self.window)


@dataclass
class Slice:
    """One window's result."""

    values: np.ndarray  # sensors x sensors, float64, symmetric, each in [0, 1]
    silent: np.ndarray  # per sensor: no signal in this window, its values are 0
    partial: np.ndarray  # per sensor: signal, but not in every segment


def make_plan(
    rate: float,
    points: int,
    *,
    band: tuple[float, float] = (8.0, 13.0),
    window: float = 4.0,
    step: float = 1.0,
    segment: float | None = None,
    overlap: float = 0.5,
    taper: str = "hann",
) -> Plan:
    """Checks the options against the recording and turns seconds into samples.

    Args:
        rate: samples per second of the recording.
        points: samples of the recording.
        band: lowest and highest frequency, both inclusive [Hz].
        window, step: length and advance of the sliding window [s].
        segment: length of a Welch segment [s]; a quarter of the window when None.
        overlap: share of a segment that the next one repeats, 0 <= overlap < 1.
        taper: one of TAPERS.

    Raises:
        CommandError: an option does not fit; its text says which and why.
    """
    _require_finite(
        window=window, step=step, overlap=overlap, segment=1.0 if segment is None else segment
    )
    if taper not in TAPERS:
        raise CommandError(f"unknown taper '{taper}'; known are {', '.join(TAPERS)}")
    if not 0.0 <= overlap < 1.0:
        raise CommandError(f"the overlap must be at least 0 and below 1, not {overlap:g}")
    window_points = _samples(window, rate, points, "window")
    step_points = _samples(step, rate, points, "step")
    segment_points = (
        max(window_points // 4, 1)
        if segment is None
        else _samples(segment, rate, points, "segment")
    )
    hop = max(segment_points - int(round(overlap * segment_points)), 1)
    plan = Plan(
        rate, points, window_points, step_points, segment_points, hop, taper, _band(band, rate)
    )
    if segment_points > window_points or plan.segments < 2:
        raise CommandError(
            f"a window of {window:g} s holds fewer than two segments of "
            f"{segment_points / rate:g} s; coherence of one segment is 1 for every pair"
        )
    if plan.bins.size == 0:
        raise CommandError(
            f"no frequency bin lies in the band {band[0]:g} to {band[1]:g} Hz: the bins of a "
            f"{segment_points / rate:g} s segment are {rate / segment_points:g} Hz apart"
        )
    return plan


def window_coherence(samples: np.ndarray, plan: Plan) -> Slice:
    """Coherence of every pair in one window.

    Args:
        samples: sensors x plan.window.

    Returns:
        Values below the diagonal mirror those above exactly; the diagonal is 1. A sensor
        without signal (constant, or with a sample that is no number) has 0 with every sensor
        and on its diagonal. One segment alone would make any pair fully coherent: a sensor with
        fewer than two segments that are not constant is without signal, and a pair with fewer
        than two such segments in common has 0. In a bin where one of a pair has no power the
        pair counts as 0.
    """
    spectra, active = _spectra(samples, plan)
    silent = active.sum(axis=1) < 2
    cross = spectra @ spectra.conj().transpose(0, 2, 1)  # bins x sensors x sensors
    power = np.einsum("fnk,fnk->fn", spectra.real, spectra.real)
    power += np.einsum("fnk,fnk->fn", spectra.imag, spectra.imag)
    floor = plan.segments * (_NO_SIGNAL * _taper(plan).sum()) ** 2
    power[power <= floor] = 0.0
    silent = silent | ~power.any(axis=0)

    product = power[:, :, None] * power[:, None, :]
    squared = cross.real**2 + cross.imag**2
    ratio = np.divide(squared, product, out=np.zeros_like(squared), where=product > 0.0)
    values = ratio.mean(axis=0)
    values = np.clip((values + values.T) / 2.0, 0.0, 1.0)
    np.fill_diagonal(values, 1.0)
    values[silent, :] = 0.0
    values[:, silent] = 0.0
    shared = active.astype(np.float64)
    values[shared @ shared.T < 2.0] = 0.0
    return Slice(values, silent, ~silent & ~active.all(axis=1))


def sliding_coherence(
    read: Callable[[int, int], np.ndarray], plan: Plan
) -> Iterator[Slice]:
    """Yields exactly `plan.slices` results in order.

    Args:
        read: gives samples [begin, end) as sensors x (end - begin); each sample is asked for
            once, in order, where windows overlap.
    """
    held, held_begin = None, 0
    for index in range(plan.slices):
        begin = plan.begin(index)
        end = begin + plan.window
        if held is None or held_begin + held.shape[1] <= begin:
            held = np.asarray(read(begin, end), dtype=np.float64)
        else:
            kept = held[:, begin - held_begin :]
            fresh = read(begin + kept.shape[1], end)
            held = np.concatenate([kept, np.asarray(fresh, dtype=np.float64)], axis=1)
        held_begin = begin
        yield window_coherence(held, plan)


def coherence(samples: np.ndarray, plan: Plan) -> np.ndarray:
    """All slices of samples held in memory: slices x sensors x sensors."""
    return np.stack([part.values for part in sliding_coherence(lambda b, e: samples[:, b:e], plan)])


def _spectra(samples: np.ndarray, plan: Plan) -> tuple[np.ndarray, np.ndarray]:
    """Bins x sensors x segments in the band; sensors x segments, True where not constant."""
    invalid = ~np.isfinite(samples).all(axis=1)
    samples = np.where(invalid[:, None], 0.0, samples)
    largest = np.abs(samples).max(axis=1)
    # Coherence does not depend on scale. A power of two changes no digit and keeps the products
    # of powers away from underflow, whatever the unit of the recording.
    scale = np.ldexp(1.0, np.clip(-np.frexp(largest)[1], -1000, 1000))
    samples = samples * scale[:, None]
    parts = np.lib.stride_tricks.sliding_window_view(samples, plan.segment, axis=1)
    parts = parts[:, :: plan.hop]
    parts = parts - parts.mean(axis=2, keepdims=True)
    active = np.abs(parts).max(axis=2) > _NO_SIGNAL
    spectra = fft.rfft(parts * _taper(plan), axis=2)[:, :, plan.bins]
    spectra[~active] = 0.0
    return np.ascontiguousarray(spectra.transpose(2, 0, 1)), active


def _taper(plan: Plan) -> np.ndarray:
    return signal.get_window(plan.taper, plan.segment)


def _bins_of(rate: float, segment: int, band: tuple[float, float]) -> np.ndarray:
    frequencies = np.arange(segment // 2 + 1) * (rate / segment)
    slack = 1e-9 * rate  # 10 Hz given in decimals must meet the bin at 10 Hz
    return np.flatnonzero((frequencies >= band[0] - slack) & (frequencies <= band[1] + slack))


def _band(band: tuple[float, float], rate: float) -> tuple[float, float]:
    low, high = float(band[0]), float(band[1])
    _require_finite(band=low, high=high)
    if low < 0.0 or high < low:
        raise CommandError(f"the band {low:g} to {high:g} Hz is not a range of frequencies")
    if high > rate / 2.0:
        raise CommandError(
            f"the band {low:g} to {high:g} Hz reaches above {rate / 2.0:g} Hz, half the "
            "recording's sampling rate"
        )
    return low, high


def _samples(seconds: float, rate: float, points: int, what: str) -> int:
    if seconds * rate >= points + 0.5:
        raise CommandError(
            f"the {what} of {seconds:g} s is longer than the recording of {points / rate:g} s"
        )
    count = int(round(seconds * rate))
    if count < 1:
        raise CommandError(f"the {what} of {seconds:g} s is shorter than one sample")
    return count


def _require_finite(**values: float) -> None:
    for name, value in values.items():
        if not math.isfinite(value):
            raise CommandError(f"the {name} must be a finite number, not {value}")
