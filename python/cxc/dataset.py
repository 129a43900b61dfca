"""Datasets: for every pair of sensors a value per time slice."""

from __future__ import annotations

import errno
import os
from typing import Sequence

import numpy as np

from . import _core
from .files import whole_file
from .forwarded import forwarded

CHANNEL_TYPES = {0: "all", 1: "meg", 2: "eeg", 3: "meg+eeg"}


def slice_count(points: int, step: int, window: int) -> int:
    """Slices of a window of `window` points moved over `points` points in steps of `step`.

    1 when the window leaves no room to move, else 1 + ceil((points - window) / step): the last
    window may reach past the end of the recording.
    """
    if step < 1:
        raise ValueError("step must be at least 1 point")
    return _core.slice_count(points, step, window)


def _color(field: str, doc: str) -> property:
    def get(self) -> tuple[int, int, int]:
        color = getattr(self._core, field)
        return color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF

    def put(self, value: tuple[int, int, int]) -> None:
        red, green, blue = value
        if not all(0 <= part <= 255 for part in value):
            raise ValueError("colours are (red, green, blue), 0 to 255")
        setattr(self._core, field, red | green << 8 | blue << 16)

    return property(get, put, doc=doc)


class Dataset:
    """One analysis: values[t, r, c] for slice t and the sensor pair (r, c).

    Arrays are copied on the way in and out, so nothing refers to memory of a dataset that is
    gone.

    Raises throughout: `CxcError` with the library's own message where the library refuses,
    `OSError` and its kinds for files.
    """

    def __init__(self, core: _core.Dataset | None = None) -> None:
        self._core = core if core is not None else _core.Dataset()

    # -- making, opening, saving

    @classmethod
    def from_array(
        cls,
        values,
        *,
        sampling_rate: float = 0.0,
        latency: tuple[float, float] = (0.0, 0.0),
        band: tuple[float, float] = (0.1, 1.0),
        name: str = "CxcTrial",
        note: str = "CxC ComputeInfo",
        channels: Sequence[int] | None = None,
        channel_type: int = 0,
    ) -> Dataset:
        """A dataset with a copy of `values`, an array [slice, row sensor, column sensor].

        Args:
            values: real numbers, none masked; all slices are selected.
            sampling_rate: slices per second.
            latency: begin and end of the analysis, in the unit of the analysis.
            band: frequencies in Hz.
            name: name of the dataset.
            note: how the values were computed.
            channels: a channel number for each sensor, for square datasets; pair (r, c) carries
                channels[r] and channels[c].
            channel_type: 0 all, 1 MEG, 2 EEG, 3 MEG and EEG.
        """
        if np.ma.is_masked(values):
            raise ValueError("values are masked; fill them first")
        array = np.asarray(values)
        if array.ndim != 3:
            raise ValueError("values must have the axes [slice, row, column]")
        if array.dtype.kind not in "fiu":
            raise ValueError(f"values must be real numbers, not {array.dtype}")
        dataset = cls(_core.Dataset.from_array(array))
        dataset.sampling_rate = sampling_rate
        dataset.latency = latency
        dataset.band = band
        dataset.name = name
        dataset.note = note
        dataset.channel_type = channel_type
        dataset._core.largest_slice_count = array.shape[0]
        if channels is not None:
            dataset._set_channels(channels)
        return dataset

    def _set_channels(self, channels: Sequence[int]) -> None:
        numbers = np.asarray(channels, dtype=np.int64)
        rows, columns = self.shape[1:]
        if numbers.shape != (rows,) or rows != columns:
            raise ValueError("one channel number for each sensor of a square dataset")
        self.channels_a = np.repeat(numbers[:, np.newaxis], columns, axis=1)
        self.channels_b = np.repeat(numbers[np.newaxis, :], rows, axis=0)

    @classmethod
    def open(cls, path: str | os.PathLike) -> Dataset:
        """Reads a `.cxc` file of any version the library knows."""
        return cls(_core.Dataset.load(os.fsencode(path)))

    def save(self, path: str | os.PathLike, *, overwrite: bool = True) -> None:
        """Writes the dataset to `path` in the current version.

        The file is written under another name in the same folder, flushed to the disk and then
        renamed: `path` is either as it was or complete. A file that is replaced keeps its
        permissions, a symbolic link stays one.

        Raises:
            FileExistsError: without `overwrite`, where `path` exists.
            OSError: `path` is a folder, a device or a pipe, or cannot be written.
        """
        save_record(self._core, path, overwrite)

    def export_text(self, path: str | os.PathLike, *, overwrite: bool = True) -> str:
        """Writes the library's text: UTF-16LE, one block per slice, one line per row.

        As the library does, ".txt" is added to a path that does not contain it. Returns the path
        written. The file is whole or not there, with the errors of `save`.
        """
        target = os.path.abspath(os.fsdecode(path))
        if os.path.isdir(target):
            raise IsADirectoryError(errno.EISDIR, os.strerror(errno.EISDIR), target)
        if ".txt" not in target:
            target += ".txt"
        # The draft has the extension too, or the library would add one to it.
        with whole_file(target, overwrite=overwrite, extension=".txt") as draft:
            self._core.export_text(os.fsencode(draft), os.fsencode(target))
        return target

    # -- values

    def to_array(self) -> np.ndarray:
        """A copy of the values, [slice, row, column]; 0 where a file holds fewer than it says."""
        return self._core.to_array()

    @property
    def shape(self) -> tuple[int, int, int]:
        """(slices, rows, columns)."""
        return self._core.slices, self._core.rows, self._core.columns

    def __len__(self) -> int:
        return max(self._core.slices, 0)  # a file may say anything

    def value(self, t: int, row: int, column: int) -> float:
        """One value; indices are checked."""
        slices, rows, columns = self.shape
        if not (0 <= t < slices and 0 <= row < rows and 0 <= column < columns):
            raise IndexError("no such value")
        return self._core.value(t, row, column)

    def pair(self, row: int, column: int) -> np.ndarray:
        """A copy of the values of one pair over time."""
        return self._core.pair(row, column)

    def backup(self, row: int, column: int) -> np.ndarray:
        """A copy of the backup values of one pair; empty without a backup."""
        return self._core.backup(row, column)

    # -- description

    name = forwarded("name", "Name of the dataset.")
    note = forwarded("note", "How the values were computed.")
    sampling_rate = forwarded("sampling_rate", "Slices per second [Hz].", float)
    channel_type = forwarded("channel_type", "0 all, 1 MEG, 2 EEG, 3 MEG and EEG.")
    channels_a = forwarded(
        "channels_a", "Channel number of the row sensor of each pair, [row, column]."
    )
    channels_b = forwarded(
        "channels_b", "Channel number of the column sensor of each pair, [row, column]."
    )
    show = forwarded("show", "Show flag of the dataset in lists.")

    @property
    def band(self) -> tuple[float, float]:
        """Frequency band in Hz."""
        return self._core.band_begin, self._core.band_end

    @band.setter
    def band(self, value: tuple[float, float]) -> None:
        self._core.band_begin, self._core.band_end = map(float, value)

    @property
    def latency(self) -> tuple[float, float]:
        """Begin and end of the analysis."""
        return self._core.latency_begin, self._core.latency_end

    @latency.setter
    def latency(self, value: tuple[float, float]) -> None:
        self._core.latency_begin, self._core.latency_end = map(float, value)

    @property
    def type_name(self) -> str:
        """The channel type in the library's words."""
        return self._core.type_name()

    @property
    def selection(self) -> tuple[int, int]:
        """First and last selected slice, both included. Setting it clamps as the library does."""
        return self._core.select_begin, self._core.select_end

    @selection.setter
    def selection(self, value: tuple[int, int]) -> None:
        self._core.set_select(*value)

    @property
    def current_pair(self) -> tuple[int, int]:
        return self._core.row, self._core.column

    @current_pair.setter
    def current_pair(self, value: tuple[int, int]) -> None:
        self._core.row, self._core.column = value

    @property
    def header(self) -> _core.Dataset:
        """Every stored header field under its own name (`header_int0`, `largest_slice_count`)."""
        return self._core

    def latency_of(self, t: int) -> float:
        """Latency of slice t: t / sampling_rate + latency begin."""
        return self._core.latency_of(t)

    # -- processing

    def normalize_rms(self) -> None:
        """Divides every value by the root mean square of all."""
        self._core.normalize_rms()

    @property
    def rms(self) -> float | None:
        """The divisor of the last `normalize_rms`; None before one."""
        return self._core.rms_value if self._core.rms_normalized else None

    def data_range(self) -> tuple[float, float, float]:
        """Minimum, maximum and mean of all values, which become the cached range."""
        self._core.check_range()
        return self.cached_range

    @property
    def cached_range(self) -> tuple[float, float, float]:
        """Minimum, maximum and mean as last computed or read from a file."""
        return self._core.data_min, self._core.data_max, self._core.data_mean

    @property
    def cached_abs_range(self) -> tuple[float, float, float]:
        """Minimum, maximum and middle of the magnitudes as last computed or read from a file."""
        core = self._core
        return core.show_range_min, core.show_range_max, core.show_range_mid

    def range(
        self, begin: int | None = None, end: int | None = None, *, diagonal: bool = True
    ) -> tuple[float, float]:
        """Smallest and largest value of all slices, or of slices `begin` to `end` inclusive.

        Without `begin` and `end` the cached range is refreshed, too.
        """
        if begin is None and end is None:
            return self._core.signed_range(False, 0, 0, diagonal)
        return self._core.signed_range(True, *self._slices(begin, end), diagonal)

    def abs_range(self, begin: int | None = None, end: int | None = None) -> tuple[float, float]:
        """Smallest and largest magnitude of all slices, or of slices `begin` to `end` inclusive."""
        if begin is None and end is None:
            return self._core.absolute_range(False, 0, 0)
        return self._core.absolute_range(True, *self._slices(begin, end))

    def _slices(self, begin: int | None, end: int | None) -> tuple[int, int]:
        first = 0 if begin is None else begin
        last = len(self) - 1 if end is None else end
        if first < 0 or last < 0:
            raise IndexError("slices are counted from 0")
        return first, last

    def zero_diagonal(self) -> None:
        """Sets the pairs of a sensor with itself to 0 and says so in the note."""
        self._core.zero_diagonal()

    def statistics(self) -> dict[str, float]:
        """Minimum, maximum, and two-level averages over pairs: mean, abs_mean and rms.

        The rms carries the second square root of the library's own figure.
        """
        return self._core.statistics()

    def statistics_text(self) -> str:
        """The same as the library's line of text; refreshes the cached range."""
        return self._core.statistics_text()

    def add(self, other: Dataset) -> None:
        """Adds another dataset of as many rows and slices, value by value."""
        self._core.add(other._core)

    def accumulate_time(self) -> None:
        """Replaces all slices by one that holds each pair's mean."""
        self._core.accumulate_time()

    # -- colours

    basic_color = _color("basic_color", "(red, green, blue), 0 to 255; not stored in files.")
    active_color = _color("active_color", "(red, green, blue), 0 to 255; not stored in files.")
    suppressive_color = _color(
        "suppressive_color", "(red, green, blue), 0 to 255; not stored in files."
    )

    def __eq__(self, other: object) -> bool:
        """The very same dataset, as a package gives it back; not one of equal values."""
        return isinstance(other, Dataset) and self._core is other._core

    def __hash__(self) -> int:
        return id(self._core)

    def __repr__(self) -> str:
        slices, rows, columns = self.shape
        low, high = self.band
        return (
            f"<cxc.Dataset {self.name!r}: {slices} slices x {rows} x {columns} sensors, "
            f"{low:g} to {high:g} Hz>"
        )


def open_dataset(path: str | os.PathLike) -> Dataset:
    """Reads a `.cxc` file of any version the library knows."""
    return Dataset.open(path)


def save_record(core, path: str | os.PathLike, overwrite: bool) -> None:
    """Saves a dataset, package or group whole or not at all, as `Dataset.save` says."""
    with whole_file(path, overwrite=overwrite) as draft:
        core.save(os.fsencode(draft))
