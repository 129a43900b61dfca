"""In what datasets differ that are taken together by position, and what describes the result."""

from __future__ import annotations

import warnings
from typing import Iterable, Sequence

from .dataset import Dataset


def differences(one: Dataset, other: Dataset) -> list[str]:
    """In words: "band (8 to 14 Hz, not 8 to 13 Hz)"."""
    found = []

    def compare(what: str, mine: object, theirs: object) -> None:
        if mine != theirs:
            found.append(f"{what} ({mine}, not {theirs})")

    compare("slices", len(one), len(other))
    if one.shape[1:] != other.shape[1:]:
        compare("sensors", _size(one), _size(other))
    elif (one.sensors, one.column_sensors) != (other.sensors, other.column_sensors):
        found.append("the names of its sensors")
    compare("band", _span(one.band, " Hz"), _span(other.band, " Hz"))
    compare("slices per second", f"{one.sampling_rate:g}", f"{other.sampling_rate:g}")
    compare("latency", _span(one.latency), _span(other.latency))
    compare("channel type", one.type_name, other.type_name)
    return found


def warn_of_differences(
    named: Sequence[tuple[str, Dataset]], outcome: str, apart_from: Iterable[str] = ()
) -> None:
    """Warns of each dataset that differs from the first, and says what comes of it."""
    (first_name, first), *others = named
    for name, dataset in others:
        apart = tuple(apart_from)
        found = [text for text in differences(dataset, first) if not text.startswith(apart)]
        if found:
            warnings.warn(
                f"{name} differs from {first_name} in {', '.join(found)}; {outcome}", stacklevel=4
            )


def describe_like(made: Dataset, source: Dataset, what: str) -> None:
    """Gives a result the description of a dataset that it was made from."""
    made.band, made.latency = source.band, source.latency
    made.sampling_rate, made.channel_type = source.sampling_rate, source.channel_type
    made.note = f"{what}\n{source.note}"
    made.header.largest_slice_count = len(made)
    made.selection = (0, len(made) - 1)


def _size(dataset: Dataset) -> str:
    return f"{dataset.shape[1]} x {dataset.shape[2]}"


def _span(ends: tuple[float, float], unit: str = "") -> str:
    return f"{ends[0]:g} to {ends[1]:g}{unit}"
