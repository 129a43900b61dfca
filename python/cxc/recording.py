"""Reads the EEG and MEG sensors of a recording, whatever format MNE reads."""

from __future__ import annotations

import os
import re
import warnings
from dataclasses import dataclass, field
from typing import Any

import numpy as np

from .errors import CommandError

# MNE's channel types that are sensors, and what the user calls them.
_SENSOR_TYPES = {"eeg": "eeg", "mag": "meg", "grad": "meg"}

# Readers call every signal of a plain EDF "eeg"; the label then tells what it really is.
_NOT_SENSORS = (
    ("ECG", re.compile(r"\b(ecg|ekg|ecgl|ecgr|cardio)\d*\b", re.I)),
    ("EOG", re.compile(r"\b([hv]?eog|eog[lrhv]|loc|roc)\d*\b", re.I)),
    ("EMG", re.compile(r"\b(emg|chin|masseter)\d*\b", re.I)),
    (
        "trigger",
        re.compile(r"\b(stim?|sti\d+|status|trigger|trig|event|events|marker|dc\d+)\b", re.I),
    ),
    (
        "not a brain signal",
        re.compile(
            r"\b(misc|resp\w*|abdomen|thorax|airflow|snore|gsr|eda|spo2|sao2|pulse|pleth|temp|"
            r"photic|ibi|accel\w*|gyro\w*|bursts|suppr)\d*\b",
            re.I,
        ),
    ),
)
_EAR = re.compile(r"[am][12]", re.I)
_REFERENCE = re.compile(r"([am][12]\s*[-+/]\s*[am][12]|ref\w*|\w*ref|linked ears|le)", re.I)

# Remarks of readers about file names say nothing about the data.
_IDLE_REMARK = re.compile(r"does not conform to MNE naming|naming conventions", re.I)


@dataclass
class Recording:
    """The sensors of an opened recording; samples stay in the file until asked for."""

    name: str  # file name without its folder
    rate: float  # samples per second [Hz]
    points: int  # samples per sensor
    labels: list[str]  # one per sensor, cleaned and distinct
    kinds: list[str]  # "eeg" or "meg", one per sensor
    left_out: list[tuple[str, str]]  # label as in the file, and why
    remarks: list[str] = field(default_factory=list)  # what the reader said about the file
    _raw: Any = None
    _picks: np.ndarray | None = None

    @property
    def seconds(self) -> float:
        return self.points / self.rate

    def read(self, begin: int, end: int) -> np.ndarray:
        """Samples [begin, end) of every sensor: sensors x (end - begin), float64, in SI units.

        Raises:
            CommandError: the file cannot be read on.
        """
        try:
            with warnings.catch_warnings():
                warnings.simplefilter("ignore")
                return self._raw.get_data(
                    picks=self._picks, start=begin, stop=end, verbose="ERROR"
                )
        except Exception as error:  # readers raise whatever their format's parser raises
            raise CommandError(
                f"{self.name}: samples {begin} to {end} cannot be read: {one_line(error)}"
            ) from error


def open_recording(path: str | os.PathLike, picks: str = "all") -> Recording:
    """Opens a recording and picks its sensors.

    Left out, each with its reason: other types than EEG and MEG, channels whose label says so,
    ear and mastoid references, channels the recording marks as bad, and what `picks` excludes.

    Raises:
        CommandError: there is no such file, it is no recording, is empty or has no two sensors.
    """
    path = os.fspath(path)
    name = os.path.basename(os.path.normpath(path))
    _check_file(path, name)
    raw, remarks = _read(path, name)
    if raw.n_times < 1:
        raise CommandError(f"{name}: the recording has no samples")
    chosen, left_out = _choose(raw, picks)
    if not chosen:
        wanted = {"all": "EEG or MEG", "eeg": "EEG", "meg": "MEG"}[picks]
        raise CommandError(f"{name}: the recording has no {wanted} sensors")
    if len(chosen) < 2:
        raise CommandError(
            f"{name}: the recording has only one sensor, '{chosen[0][1]}'; coherence needs two"
        )
    return Recording(
        name=name,
        rate=float(raw.info["sfreq"]),
        points=int(raw.n_times),
        labels=_distinct(
            [label for _, label, _ in chosen], [raw.ch_names[index] for index, _, _ in chosen]
        ),
        kinds=[kind for _, _, kind in chosen],
        left_out=left_out,
        remarks=remarks,
        _raw=raw,
        _picks=np.array([index for index, _, _ in chosen]),
    )


def clean_label(label: str) -> str:
    """The sensor's name without padding dots, type prefix and common-reference suffix."""
    cleaned = label.strip().rstrip(". ")
    cleaned = re.sub(r"^(EEG|MEG)[\s:_-]+(?=\D)", "", cleaned, flags=re.I)
    cleaned = re.sub(r"[\s-]+(ref|le|avg|av)$", "", cleaned, flags=re.I)
    return cleaned.strip() or label.strip()


def one_line(error: BaseException | str) -> str:
    """An exception's text as one line; its type where it has none."""
    text = " ".join(str(error).split())
    return text or type(error).__name__


def _check_file(path: str, name: str) -> None:
    if not os.path.exists(path):
        raise CommandError(f"{path}: no such file")
    if os.path.isdir(path):
        # Some vendors' recordings are folders; their names tell.
        if path.rstrip("/").lower().endswith((".ds", ".mff")):
            return
        raise CommandError(f"{path}: is a directory, not a recording")
    if not os.access(path, os.R_OK):
        raise CommandError(f"{path}: may not be read")
    if os.path.getsize(path) == 0:
        raise CommandError(f"{name}: the file is empty")


def _read(path: str, name: str):
    try:
        import mne
    except ImportError as error:
        raise CommandError(f"reading recordings needs the Python package mne: {error}") from error
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        try:
            with _quiet_log():
                raw = mne.io.read_raw(path, preload=False, verbose="WARNING")
        except Exception as error:  # readers raise whatever their format's parser raises
            raise CommandError(
                f"{name}: cannot be read as a recording: {one_line(error)}"
            ) from error
    remarks = [
        one_line(item.message)
        for item in caught
        if issubclass(item.category, RuntimeWarning) and not _IDLE_REMARK.search(str(item.message))
    ]
    return raw, list(dict.fromkeys(remarks))


def _quiet_log():
    """Keeps MNE's log off the terminal while its warnings are collected."""
    import contextlib
    import io
    import logging

    @contextlib.contextmanager
    def silenced():
        logger = logging.getLogger("mne")
        handlers, logger.handlers = logger.handlers, [logging.NullHandler()]
        try:
            with contextlib.redirect_stdout(io.StringIO()):
                yield
        finally:
            logger.handlers = handlers

    return silenced()


def _choose(raw, picks: str):
    """The sensors as (index, cleaned label, kind), and what is left out."""
    types = raw.get_channel_types()
    cleaned = [clean_label(label) for label in raw.ch_names]
    # Where A3 exists, A1 and A2 are electrodes of a lettered cap, not ears.
    lettered = {label.upper() for label in cleaned} & {"A3", "M3"}
    chosen, left_out = [], []
    for index, label in enumerate(raw.ch_names):
        kind = _SENSOR_TYPES.get(types[index])
        reason = None
        if kind is None:
            reason = f"type {types[index]}"
        elif label in raw.info["bads"]:
            reason = "marked bad in the recording"
        elif kind == "eeg":
            reason = _reason_by_label(label, cleaned[index], lettered)
        if reason is None and picks not in ("all", kind):
            reason = f"only {picks.upper()} sensors were asked for"
        if reason is None:
            chosen.append((index, cleaned[index], kind))
        else:
            left_out.append((label, reason))
    return chosen, left_out


def _reason_by_label(label: str, cleaned: str, lettered: set[str]) -> str | None:
    for reason, pattern in _NOT_SENSORS:
        if pattern.search(label.replace("_", " ")):
            return f"{reason} by its label"
    if _REFERENCE.fullmatch(cleaned):
        return "reference by its label"
    if _EAR.fullmatch(cleaned) and cleaned[0].upper() + "3" not in lettered:
        return "reference (ear or mastoid) by its label"
    return None


def _distinct(cleaned: list[str], original: list[str]) -> list[str]:
    """Cleaned labels; where cleaning made two alike, both keep the file's label."""
    return [
        label if cleaned.count(label) == 1 else before for label, before in zip(cleaned, original)
    ]
