"""A simulated EEG recording in which the coupled sensors are known."""

from __future__ import annotations

import os
import warnings

import numpy as np

from .errors import CommandError

LABELS = (
    "Fp1", "Fp2", "F7", "F3", "Fz", "F4", "F8", "T7",
    "C3", "C4", "T8", "P3", "Pz", "P4", "O1", "O2",
)  # fmt: skip
RATE = 250.0  # [Hz]
SECONDS = 60.0
BAND = (8.0, 13.0)  # where the coupling lies [Hz]

# Coupled from the start, and coupled only in the second half.
COUPLED = (("F3", "P3"), ("O1", "O2"))
COUPLED_LATE = (("C3", "C4"),)

_SEED = 20140
_NOISE = 10e-6  # standard deviation of each sensor's own noise [V]
_RHYTHM = 12e-6  # standard deviation of a shared alpha rhythm [V]


def simulate_samples() -> np.ndarray:
    """Samples in volts, sensors x time; the same on every call.

    Every sensor has white noise of its own. Both sensors of a pair share an alpha rhythm that
    no other sensor has; the late pair's rhythm is independent in the first half, so its power
    does not change when the coupling sets in.
    """
    random = np.random.default_rng(_SEED)
    points = int(SECONDS * RATE)
    samples = _NOISE * random.standard_normal((len(LABELS), points))
    for first, second in COUPLED:
        rhythm = _alpha(random, points)
        samples[LABELS.index(first)] += rhythm
        samples[LABELS.index(second)] += rhythm
    for first, second in COUPLED_LATE:
        shared = _alpha(random, points)
        own = _alpha(random, points)
        half = points // 2
        samples[LABELS.index(first)] += shared
        samples[LABELS.index(second)] += np.where(np.arange(points) < half, own, shared)
    return samples


def write_recording(path: str | os.PathLike) -> None:
    """Writes the simulated recording as FIF.

    Args:
        path: a name that ends in "_raw.fif"; an existing file is replaced.

    Raises:
        CommandError: the file cannot be written.
    """
    import mne

    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        info = mne.create_info(list(LABELS), RATE, "eeg", verbose="ERROR")
        raw = mne.io.RawArray(simulate_samples(), info, verbose="ERROR")
        try:
            raw.save(path, fmt="double", overwrite=True, verbose="ERROR")
        except OSError as error:
            raise CommandError(f"{path}: cannot be written: {error.strerror}") from error


def _alpha(random: np.random.Generator, points: int) -> np.ndarray:
    """Noise limited to the band by its spectrum."""
    spectrum = np.fft.rfft(random.standard_normal(points))
    frequencies = np.fft.rfftfreq(points, 1.0 / RATE)
    spectrum[(frequencies < BAND[0]) | (frequencies > BAND[1])] = 0.0
    rhythm = np.fft.irfft(spectrum, points)
    return _RHYTHM * rhythm / rhythm.std()
