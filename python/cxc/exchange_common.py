"""What the exchange formats have in common: order of pairs, description, and the way back."""

from __future__ import annotations

import os
import re
import warnings
from typing import Any, Mapping, Sequence

import numpy as np

from .dataset import Dataset
from .errors import CommandError
from .labels import same_sensors, with_names

PAIR_ORDER = (
    "row-major, counted from 0: pair (from, to) is entry from * sensors + to; from is the row and "
    "stands first, to is the column"
)


def values_of(dataset: Dataset, path: str, *, same: bool = False) -> np.ndarray:
    """The values [slice, row, column], or CommandError where `path` could not tell them.

    Args:
        same: whether the format takes rows and columns for the same sensors.
    """
    if not dataset.header.has_grid() or min(dataset.shape) < 1:
        raise CommandError(f"{path}: the dataset holds no values")
    if same and not same_sensors(dataset):
        raise CommandError(
            f"{path}: rows and columns are not the same sensors, which this format cannot tell"
        )
    return dataset.to_array()


def encodable(text: str) -> str:
    """Without halves of characters, which a file may hold and no other format takes."""
    return text.encode("utf-8", "replace").decode("utf-8")


def description_of(dataset: Dataset) -> dict[str, Any]:
    """What a format keeps beside values, times, names and band, so that a dataset can come back."""
    a, b = dataset.channels_a, dataset.channels_b
    if not ((a == a[:, :1]).all() and (b == b[:1, :]).all()):
        warnings.warn(
            "channel numbers differ within a row or column; those of the first are written",
            stacklevel=3,
        )
    return {
        "dataset_name": encodable(dataset.name),
        "computation": encodable(dataset.note),
        "slices_per_second": dataset.sampling_rate,
        "latency_begin": dataset.latency[0],
        "latency_end": dataset.latency[1],
        "channel_type": dataset.channel_type,
        "row_channels": [int(number) for number in a[:, 0]],
        "column_channels": [int(number) for number in b[0, :]],
    }


def dataset_of(
    path: str,
    values: Any,
    *,
    times: Any,
    band: Any,
    labels: Sequence[Any],
    column_labels: Sequence[Any] = (),
    description: Mapping[str, Any],
) -> Dataset:
    """A dataset of what a file held.

    Args:
        values: [slice, row, column].
        times: latencies of the slices; None when the file tells none.
        band: frequencies, of which the least and the largest count; None when there are none.
        labels: names of the sensors; empty when there are none.
        column_labels: names of the column sensors; empty when they are those of the rows.
        description: as of `description_of`; what is missing is made up from the rest.

    Raises:
        CommandError: something does not fit; one line that begins with the file's name.
    """
    try:
        made = _dataset_of(path, np.asarray(values), times, band, description)
        _name_sensors(made, labels, column_labels)
    except (ValueError, TypeError, OverflowError) as error:
        raise CommandError(f"{path}: {' '.join(str(error).split())}") from error
    return made


def _dataset_of(path, values, times, band, description) -> Dataset:
    if np.iscomplexobj(values):
        raise ValueError("holds complex values; take their magnitudes before")
    if values.dtype.kind not in "fiu" or values.ndim != 3 or values.size == 0:
        raise ValueError("holds no real numbers [slice, row, column]")
    slices, rows, columns = values.shape
    rate, latency = _timing(times, slices, description)
    stem = os.path.splitext(os.path.basename(path))[0]
    dataset = Dataset.from_array(
        values.astype(np.float64), sampling_rate=rate, latency=latency, band=_band(band),
        name=text(description.get("dataset_name", stem)),
        note=text(description.get("computation", f"From {os.path.basename(path)}")),
        channel_type=_channel_type(description),
    )  # fmt: skip
    row, column = _channels(description, rows, columns)
    dataset.channels_a = np.repeat(row[:, np.newaxis], columns, axis=1)
    dataset.channels_b = np.repeat(column[np.newaxis, :], rows, axis=0)
    return dataset


def _name_sensors(
    dataset: Dataset, labels: Sequence[Any], column_labels: Sequence[Any]
) -> None:
    """Names that were edited replace those of the note; unedited ones leave it as it is."""
    _, row_count, column_count = dataset.shape
    if len(labels) not in (0, row_count):
        raise ValueError(f"names {len(labels)} sensors, but the matrix has {row_count} rows")
    if len(column_labels) not in (0, column_count):
        raise ValueError(
            f"names {len(column_labels)} column sensors, but the matrix has {column_count} columns"
        )
    known = _tidied(dataset.sensors), _tidied(dataset.column_sensors)
    if not len(column_labels) and row_count == column_count:
        column_labels = labels
    names = _tidied(labels) or known[0], _tidied(column_labels) or known[1]
    if names != known:
        dataset.note = with_names(dataset.note, *names)


def _tidied(labels: Sequence[Any]) -> list[str]:
    """Each in one line, with nothing that reads as the next one; the empty ones get numbers."""
    lines = (" ".join(text(label).split()) for label in labels)
    return [re.sub(r",(?= \d)", ";", line) or str(n) for n, line in enumerate(lines, 1)]


def _timing(times, slices: int, description) -> tuple[float, tuple[float, float]]:
    """Rate and latency as described where the times agree with them, else those of the times."""
    known = ("slices_per_second", "latency_begin", "latency_end")
    rate, begin, end = (float(description.get(name, 0.0)) for name in known)
    if times is None:
        return rate, (begin, end)
    times = np.atleast_1d(np.asarray(times)).astype(np.float64).ravel()
    if times.size != slices:
        raise ValueError(f"tells {times.size} times, but holds {slices} slices")
    expected = begin + np.arange(slices) / rate if rate > 0 else np.arange(slices)
    described = all(name in description for name in known)
    if described and np.allclose(times, expected, rtol=1e-9, atol=1e-9):
        return rate, (begin, end)
    steps = np.diff(times)
    if not steps.size:
        return rate, (float(times[0]), float(times[0]))
    step = float(steps.mean())
    if not step > 0 or (np.abs(steps - step) > 0.01 * step).any():
        raise ValueError("the times do not go up in equal steps")
    return 1.0 / step, (float(times[0]), float(times[-1]))


def _band(band) -> tuple[float, float]:
    ends = np.asarray([] if band is None else band).astype(np.float64).ravel()
    return (float(ends.min()), float(ends.max())) if ends.size else (0.1, 1.0)


def _channel_type(description) -> int:
    kind = int(description.get("channel_type", 0))
    if not 0 <= kind <= 3:
        raise ValueError(f"channel_type is {kind}; it is 0 all, 1 MEG, 2 EEG or 3 both")
    return kind


def _channels(description, rows: int, columns: int) -> tuple[np.ndarray, np.ndarray]:
    """As described; counted from 1 where a file describes other sensors than it holds."""
    found = []
    for name, count in (("row_channels", rows), ("column_channels", columns)):
        numbers = np.asarray(description.get(name, [])).astype(np.int64).ravel()
        found.append(numbers if numbers.size == count else np.arange(1, count + 1))
    return found[0], found[1]


def text(value: Any) -> str:
    """A text as NumPy, netCDF and MATLAB readers give it; some give an empty one as an array."""
    if isinstance(value, bytes):
        return value.decode("utf-8", "replace")
    if isinstance(value, np.ndarray):
        return text(value.item()) if value.size == 1 else "".join(map(str, value.ravel()))
    return encodable(str(value))
