"""Simulated EEG recordings in which the coupled sensors are known."""

from __future__ import annotations

import os
import warnings
from typing import Iterator

import numpy as np

from .errors import CommandError
from .files import check_output

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

# Of a study: coupled in both conditions, in Active only, and in Control only.
STUDY_BOTH, STUDY_ACTIVE, STUDY_CONTROL = ("F3", "P3"), ("C3", "C4"), ("O1", "O2")
STUDY_RATE = 100.0  # [Hz]
STUDY_SECONDS = 30.0
STUDY_SHORT_SECONDS = 24.0  # Active of the last subject

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
        path: a name that ends in ".fif"; an existing file is replaced.

    Raises:
        CommandError: the file cannot be written.
    """
    _write(path, simulate_samples(), LABELS, ["eeg"] * len(LABELS), RATE, "double")


def simulate_subject(number: int, active: bool, seconds: float = STUDY_SECONDS) -> np.ndarray:
    """Samples in volts of one subject's Active or Control, sensors x time.

    The same for the same arguments, however many subjects there are. Every sensor has white
    noise; those of the three pairs have an alpha rhythm of the same power in both conditions,
    which a coupled pair shares for the most part and another one does not. How large that part is
    differs between subjects.

    Args:
        number: of the subject, from 1.
    """
    random = np.random.default_rng([_SEED, number, int(active)])
    person = np.random.default_rng([_SEED, number])
    points = int(seconds * STUDY_RATE)
    samples = _NOISE * random.standard_normal((len(LABELS), points))
    coupled = {STUDY_BOTH: True, STUDY_ACTIVE: active, STUDY_CONTROL: not active}
    for pair, together in coupled.items():
        part = person.uniform(0.7, 0.95)
        shared = _alpha(random, points, STUDY_RATE)
        for label in pair:
            rhythm = _alpha(random, points, STUDY_RATE)
            if together:
                rhythm = np.sqrt(part) * shared + np.sqrt(1.0 - part) * rhythm
            samples[LABELS.index(label)] += rhythm
    return samples


def write_study(folder: str, subjects: int, overwrite: bool = False) -> Iterator[str]:
    """Writes two recordings for each subject, NAME_1.fif (Control) and NAME_2.fif (Active).

    Beside the sensors they have an ECG, which is none. Active of the last of several subjects is
    shorter than the others.

    Args:
        folder: made when missing.
        overwrite: replace existing files.

    Yields:
        The path of each file that is written.

    Raises:
        CommandError: a file exists already, or cannot be written.
    """
    os.makedirs(folder, exist_ok=True)
    paths = {
        (number, active): os.path.join(folder, f"S{number:02d}_{2 if active else 1}.fif")
        for number in range(1, subjects + 1)
        for active in (False, True)
    }
    for path in paths.values():
        check_output(path, overwrite)
    for (number, active), path in paths.items():
        short = active and number == subjects > 1
        samples = simulate_subject(
            number, active, STUDY_SHORT_SECONDS if short else STUDY_SECONDS
        )
        beats = np.zeros((1, samples.shape[1]))
        beats[:, :: int(STUDY_RATE)] = 1e-3
        labels, kinds = [*LABELS, "ECG"], [*["eeg"] * len(LABELS), "ecg"]
        _write(path, np.concatenate([samples, beats]), labels, kinds, STUDY_RATE, "single")
        yield path


def _write(path, samples: np.ndarray, labels, kinds, rate: float, form: str) -> None:
    import mne

    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        info = mne.create_info(list(labels), rate, kinds, verbose="ERROR")
        raw = mne.io.RawArray(samples, info, verbose="ERROR")
        try:
            raw.save(path, fmt=form, overwrite=True, verbose="ERROR")
        except OSError as error:
            raise CommandError(f"{path}: cannot be written: {error.strerror}") from error


def _alpha(random: np.random.Generator, points: int, rate: float = RATE) -> np.ndarray:
    """Noise limited to the band by its spectrum."""
    spectrum = np.fft.rfft(random.standard_normal(points))
    frequencies = np.fft.rfftfreq(points, 1.0 / rate)
    spectrum[(frequencies < BAND[0]) | (frequencies > BAND[1])] = 0.0
    rhythm = np.fft.irfft(spectrum, points)
    return _RHYTHM * rhythm / rhythm.std()
