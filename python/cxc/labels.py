"""What the slices and sensors of a dataset are called.

Datasets have no field for names: they stand in the computation note, as a line
"Sensors: 1 Fp1, 2 Cz", or, where rows and columns are not the same sensors, as two lines
"Row sensors: ..." and "Column sensors: ...".
"""

from __future__ import annotations

from typing import TYPE_CHECKING, Sequence

import numpy as np
import numpy.typing as npt

if TYPE_CHECKING:
    from .dataset import Dataset

_BOTH, _ROWS, _COLUMNS = "Sensors: ", "Row sensors: ", "Column sensors: "


def row_names(dataset: Dataset) -> list[str]:
    """Names of the row sensors: from the note, or else their channel numbers, or else 1, 2 ..."""
    _, rows, columns = dataset.shape
    if rows < 1 or columns < 1:
        return []
    named = _named(dataset.note, _ROWS, rows) or _named(dataset.note, _BOTH, rows)
    return named or _numbers_of(dataset.channels_a[:, 0])


def column_names(dataset: Dataset) -> list[str]:
    """Names of the column sensors, as `row_names`."""
    _, rows, columns = dataset.shape
    if rows < 1 or columns < 1:
        return []
    named = _named(dataset.note, _COLUMNS, columns) or _named(dataset.note, _BOTH, columns)
    return named or _numbers_of(dataset.channels_b[0, :])


def same_sensors(dataset: Dataset) -> bool:
    """Whether rows and columns are the same sensors in the same order, as far as names tell."""
    return row_names(dataset) == column_names(dataset)


def times_of(dataset: Dataset) -> npt.NDArray[np.float64]:
    """Latency of every slice; the slices' numbers where the dataset has no rate."""
    count = np.arange(len(dataset), dtype=np.float64)
    if dataset.sampling_rate > 0:
        return count / dataset.sampling_rate + dataset.latency[0]
    return count


def with_names(note: str, rows: Sequence[str], columns: Sequence[str]) -> str:
    """The note with these names of the sensors in place of those that it has.

    Raises:
        ValueError: a name is empty or of more than one line, or it could not be told from two.
    """
    # Lines end where `_named` takes them to end, or older names would stay and be found first.
    lines = note.splitlines(keepends=True)
    kept = "".join(line for line in lines if not line.startswith((_BOTH, _ROWS, _COLUMNS)))
    if kept and not kept.endswith("\n"):
        kept += "\n"
    for name in (*rows, *columns):
        if len(name.splitlines()) != 1:
            raise ValueError(f"{name!r} cannot be the name of a sensor")
    for names in (rows, columns):
        if _names_in(numbered(names), len(names)) != list(names):
            raise ValueError("names of sensors may not hold a comma and the next one's number")
    if list(rows) == list(columns):
        return kept + sensors_line(rows)
    return f"{kept}{_ROWS}{numbered(rows)}\n{_COLUMNS}{numbered(columns)}"


def sensors_line(names: Sequence[str]) -> str:
    """The note's line for sensors that are rows and columns."""
    return _BOTH + numbered(names)


def numbered(names: Sequence[str]) -> str:
    """As "1 Fp1, 2 Cz"."""
    return ", ".join(f"{number} {name}" for number, name in enumerate(names, 1))


def _named(note: str, begin: str, count: int) -> list[str]:
    for line in note.splitlines():
        names = _names_in(line[len(begin) :], count) if line.startswith(begin) else []
        if names:
            return names
    return []


def _names_in(text: str, count: int) -> list[str]:
    """The names in "1 Fp1, 2 Cz"; none when it does not list so many. Names may hold commas."""
    names = []
    for number in range(1, count + 1):
        entry, comma, rest = text.partition(f", {number + 1} ")
        start = f"{number} "
        if not entry.startswith(start) or bool(comma) != (number < count):
            return []
        names.append(entry[len(start) :])
        text = f"{number + 1} {rest}"
    return names if all(names) else []


def _numbers_of(channels: npt.NDArray[np.int64]) -> list[str]:
    numbers = channels.tolist()
    if len(set(numbers)) == len(numbers):
        return [str(number) for number in numbers]
    return [str(position) for position in range(1, len(numbers) + 1)]
