"""Datasets: for every pair of sensors a value per time slice."""

from __future__ import annotations

import errno
import operator
import os
from typing import TYPE_CHECKING, Iterator, Sequence, Union

import numpy as np
import numpy.typing as npt

from . import _core
from .files import input_name, whole_file
from .forwarded import forwarded, forwarded_color
from .labels import column_names, row_names, times_of, with_names
from .record import Progress, Record

if TYPE_CHECKING:
    import pandas
    import xarray

_Core = _core.Dataset

Indices = Union[int, slice, Sequence[int], npt.NDArray[np.integer], npt.NDArray[np.bool_]]
Sensors = Union[Sequence[Union[int, str]], slice, npt.NDArray[np.integer], npt.NDArray[np.bool_]]


def slice_count(points: int, step: int, window: int) -> int:
    """Slices of a window of `window` points moved over `points` points in steps of `step`.

    1 when the window leaves no room to move, else 1 + ceil((points - window) / step): the last
    window may reach past the end of the recording.
    """
    if step < 1:
        raise ValueError("step must be at least 1 point")
    return _core.slice_count(points, step, window)


class Dataset(Record):
    """One analysis: values[t, r, c] for slice t and the sensor pair (r, c).

    Arrays are copied on the way in and out, so nothing refers to memory of a dataset that is
    gone.

    Raises throughout: `CxcError` with the library's own message where the library refuses,
    `OSError` and its kinds for files.

    Calls let other threads run. Those with a `progress` can be interrupted, and have then done
    nothing at all; all others finish what they began before Ctrl-C takes effect.
    """

    _core: _Core

    def __init__(self, core: _Core | None = None) -> None:
        self._core = core if core is not None else _core.Dataset()

    # -- making, opening, exporting

    @classmethod
    def from_array(
        cls,
        values: npt.ArrayLike,
        *,
        sampling_rate: float = 0.0,
        latency: tuple[float, float] = (0.0, 0.0),
        band: tuple[float, float] = (0.1, 1.0),
        name: str = "CxcTrial",
        note: str = "CxC ComputeInfo",
        channels: Sequence[int] | None = None,
        channel_type: int = 0,
        sensors: Sequence[str] | None = None,
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
            sensors: a name for each sensor, for square datasets; they are kept in the note.
        """
        if np.ma.is_masked(values):
            raise ValueError("values are masked; fill them first")
        array = np.asarray(values)
        if array.ndim != 3:
            raise ValueError("values must have the axes [slice, row, column]")
        if array.dtype.kind not in "fiu":
            raise ValueError(f"values must be real numbers, not {array.dtype}")
        # The conversion is not left to the call, which would say nothing of missing memory.
        dataset = cls(_core.Dataset.from_array(np.ascontiguousarray(array, dtype=np.float64)))
        dataset.sampling_rate = sampling_rate
        dataset.latency = latency
        dataset.band = band
        dataset.name = name
        dataset.note = note
        dataset.channel_type = channel_type
        dataset._core.largest_slice_count = array.shape[0]
        if channels is not None:
            dataset._set_channels(channels)
        if sensors is not None:
            dataset.sensors = list(sensors)
        return dataset

    def _set_channels(self, channels: Sequence[int]) -> None:
        given = np.asarray(channels)
        numbers = given.astype(np.int64)
        rows, columns = self.shape[1:]
        if numbers.shape != (rows,) or rows != columns:
            raise ValueError("one channel number for each sensor of a square dataset")
        if given.dtype.kind not in "iuf" or not np.array_equal(numbers, given):
            raise ValueError("channel numbers are whole numbers")
        self.channels_a = np.repeat(numbers[:, np.newaxis], columns, axis=1)
        self.channels_b = np.repeat(numbers[np.newaxis, :], rows, axis=0)

    @classmethod
    def open(cls, path: str | os.PathLike[str], *, progress: Progress | None = None) -> Dataset:
        """Reads a `.cxc` file of any version the library knows; `progress` is in bytes."""
        return cls(_core.Dataset.load(input_name(path), progress))

    def export_text(
        self,
        path: str | os.PathLike[str],
        *,
        overwrite: bool = True,
        progress: Progress | None = None,
    ) -> str:
        """Writes the library's text: UTF-16LE, one block per slice, one line per row.

        As the library does, ".txt" is added to a path that does not contain it, and a dataset
        without a name is named "CxC Data". Returns the path written. The file is whole or not
        there, with the errors of `save`; `progress` is as there.
        """
        target = os.path.abspath(os.fsdecode(path))
        if os.path.isdir(target):
            raise IsADirectoryError(errno.EISDIR, os.strerror(errno.EISDIR), target)
        if ".txt" not in target:
            target += ".txt"
        with whole_file(target, overwrite=overwrite) as draft:
            self._core.export_text(os.fsencode(draft), os.fsencode(target), progress)
        return target

    # -- values

    def to_array(self) -> npt.NDArray[np.float64]:
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

    def pair(self, row: int, column: int) -> npt.NDArray[np.float64]:
        """A copy of the values of one pair over time."""
        return self._core.pair(row, column)

    def backup(self, row: int, column: int) -> npt.NDArray[np.float64]:
        """A copy of the backup values of one pair; empty without a backup."""
        return self._core.backup(row, column)

    def __iter__(self) -> Iterator[npt.NDArray[np.float64]]:
        """The slices in order, each a copy [row, column]."""
        return iter(self.to_array())

    def __getitem__(self, slices: Indices) -> Dataset:
        """A new dataset of some slices: `ds[3]`, `ds[2:5]`, `ds[[0, 2]]`. See `select`."""
        return self.select(slices=slices)

    def select(
        self,
        *,
        slices: Indices = slice(None),
        time: slice | tuple[float, float] | float | None = None,
        sensors: Sensors | None = None,
        rows: Sensors | None = None,
        columns: Sensors | None = None,
    ) -> Dataset:
        """A new dataset of some slices and sensors, in the order in which they are named.

        Band, name, note, colours, channel numbers and everything else that describes the dataset
        go along; names of the sensors are those of the part. All slices of the result are
        selected, its cached range is its own, and backups are left behind.

        Latencies stay true: the begin is that of the first slice, and slices in equal steps get
        the rate of the steps. Other slices, as `[5, 0, 1]`, have no rate; it becomes 0.

        Args:
            slices: indices from 0; negative ones count from the end.
            time: instead of `slices`: latencies from `time[0]` to `time[1]`, or `time.start` to
                `time.stop`, both included; or one number for the slice that is nearest to it.
            sensors: rows and columns: indices from 0, or names; all when None.
            rows, columns: instead of `sensors`, where they are not the same.

        Raises:
            IndexError: there is no such slice or sensor, or nothing is left.
            ValueError: a sensor is named twice, or both `slices` and `time` are given.
        """
        picked = self._slices_at(time) if time is not None else _indices(slices, len(self))
        if time is not None and not (isinstance(slices, slice) and slices == slice(None)):
            raise ValueError("slices are chosen by index or by time, not by both")
        names = row_names(self), column_names(self)
        row = _positions(sensors if rows is None else rows, names[0])
        column = _positions(sensors if columns is None else columns, names[1])
        core = self._core.part(picked.tolist(), row.tolist(), column.tolist())
        part = Dataset(core)
        part.latency, part.sampling_rate = self._timing_of(picked)
        if not (_is_all(row, names[0]) and _is_all(column, names[1])):
            part.note = with_names(
                self.note, [names[0][i] for i in row], [names[1][i] for i in column]
            )
        return part

    def _slices_at(self, time: slice | tuple[float, float] | float) -> npt.NDArray[np.integer]:
        latencies = times_of(self)
        if isinstance(time, slice):
            if time.step is not None:
                raise ValueError("a range of latencies has no step")
            low, high = time.start, time.stop
        elif isinstance(time, tuple):
            low, high = time
        else:
            return self._slice_nearest(float(time), latencies)
        # Half the rounding of a latency that was computed in another way is no difference.
        slack = 1e-9 * (1.0 + np.abs(latencies))
        wanted = np.ones(len(latencies), dtype=bool)
        if low is not None:
            wanted &= latencies >= low - slack
        if high is not None:
            wanted &= latencies <= high + slack
        if not wanted.any():
            raise IndexError(f"no slice has a latency from {low} to {high}")
        return np.flatnonzero(wanted)

    def _slice_nearest(
        self, time: float, latencies: npt.NDArray[np.float64]
    ) -> npt.NDArray[np.integer]:
        step = 1.0 / self.sampling_rate if self.sampling_rate > 0 else 1.0
        if not len(latencies) or not np.abs(latencies - time).min() <= step:
            raise IndexError(f"no slice is near {time:g}")
        return np.array([np.abs(latencies - time).argmin()])

    def _timing_of(self, picked: npt.NDArray[np.integer]) -> tuple[tuple[float, float], float]:
        rate = self.sampling_rate
        steps = np.diff(picked)
        if rate <= 0:
            return self.latency, rate
        if len(steps) and (steps[0] < 1 or (steps != steps[0]).any()):
            return self.latency, 0.0
        behind = (len(self) - 1 - int(picked[-1])) / rate
        latency = self.latency_of(int(picked[0])), self.latency[1] - behind
        return latency, rate / int(steps[0]) if len(steps) else rate

    def to_xarray(self) -> xarray.DataArray:
        """A copy as an array with the dimensions time, row and column.

        Coordinates: `time`, the latency of each slice in s (or its number, for a dataset without
        a rate); `row` and `column`, names of the sensors; `row_channel` and `column_channel`,
        their numbers. Attributes: band_hz, slices_per_second, latency_s, channel_type, note.
        Netlike formats take it as it is.
        """
        from .views import array_of

        return array_of(self)

    def to_pandas(self) -> pandas.DataFrame:
        """A table with a line for each slice of each pair: time, from, to, value.

        `from` is the row sensor, `to` the column sensor, by name. Order of lines: pairs row by
        row, (first, first), (first, second) ..., and the slices of each pair in order of time.
        """
        from .views import table_of

        return table_of(self)

    # -- description

    name = forwarded[str]("name", "Name of the dataset.")
    note = forwarded[str]("note", "How the values were computed; names of sensors stand in it.")
    sampling_rate = forwarded[float]("sampling_rate", "Slices per second [Hz].", float)
    channel_type = forwarded[int]("channel_type", "0 all, 1 MEG, 2 EEG, 3 MEG and EEG.")
    channels_a = forwarded["npt.NDArray[np.int64]"](
        "channels_a", "Channel number of the row sensor of each pair, [row, column]."
    )
    channels_b = forwarded["npt.NDArray[np.int64]"](
        "channels_b", "Channel number of the column sensor of each pair, [row, column]."
    )
    show = forwarded[bool]("show", "Show flag of the dataset in lists.")

    @property
    def sensors(self) -> list[str]:
        """Names of the row sensors: from the note, or their channel numbers, or 1, 2 ...

        Setting them, for rows and columns of a square dataset, writes them into the note.
        """
        return row_names(self)

    @sensors.setter
    def sensors(self, names: Sequence[str]) -> None:
        _, rows, columns = self.shape
        if rows != columns or len(names) != rows:
            raise ValueError("one name for each sensor of a square dataset")
        self.note = with_names(self.note, names, names)

    @property
    def column_sensors(self) -> list[str]:
        """Names of the column sensors; those of the rows unless the dataset was cut so."""
        return column_names(self)

    @property
    def times(self) -> npt.NDArray[np.float64]:
        """Latency of every slice; the slices' numbers where the dataset has no rate."""
        return times_of(self)

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
        """Row and column of the pair that viewers show."""
        return self._core.row, self._core.column

    @current_pair.setter
    def current_pair(self, value: tuple[int, int]) -> None:
        self._core.row, self._core.column = value

    @property
    def header(self) -> _Core:
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
        return self._core.signed_range(True, *self._span(begin, end), diagonal)

    def abs_range(self, begin: int | None = None, end: int | None = None) -> tuple[float, float]:
        """Smallest and largest magnitude of all slices, or of slices `begin` to `end` inclusive."""
        if begin is None and end is None:
            return self._core.absolute_range(False, 0, 0)
        return self._core.absolute_range(True, *self._span(begin, end))

    def _span(self, begin: int | None, end: int | None) -> tuple[int, int]:
        first = 0 if begin is None else begin
        last = len(self) - 1 if end is None else end
        if first < 0 or last < 0:
            raise IndexError("slices are counted from 0")
        if first > last:
            raise IndexError(f"no slices from {first} to {last}")
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

    basic_color = forwarded_color(
        "basic_color", "Of the dataset itself: (red, green, blue), 0 to 255; not stored in files."
    )
    active_color = forwarded_color(
        "active_color", "Of positive values: (red, green, blue), 0 to 255; not stored in files."
    )
    suppressive_color = forwarded_color(
        "suppressive_color", "Of negative values: (red, green, blue), 0 to 255; not stored."
    )

    def __eq__(self, other: object) -> bool:
        """The very same dataset, as a package gives it back; not one of equal values."""
        return isinstance(other, Dataset) and self._core is other._core

    def __hash__(self) -> int:
        return id(self._core)

    def _repr_html_(self) -> str:
        """For notebooks: what the dataset is, as a table, and a picture of its mean over time."""
        from .views import html_of

        return html_of(self)

    def __repr__(self) -> str:
        slices, rows, columns = self.shape
        low, high = self.band
        return (
            f"<cxc.Dataset {self.name!r}: {slices} slices x {rows} x {columns} sensors, "
            f"{low:g} to {high:g} Hz>"
        )


def _indices(wanted: Indices, count: int) -> npt.NDArray[np.integer]:
    """Of slices, all from 0 on."""
    everything = np.arange(count)
    picked: npt.NDArray[np.integer]
    if isinstance(wanted, slice):
        picked = everything[wanted]
    else:
        chosen = np.atleast_1d(np.asarray(wanted))
        picked = everything[chosen].ravel() if chosen.size else everything[:0]
    if not len(picked):
        raise IndexError("no slice is left of the dataset")
    return picked


def _positions(wanted: Sensors | None, names: list[str]) -> npt.NDArray[np.integer]:
    """Indices of the sensors that are named by index from 0 or by name."""
    count = len(names)
    if wanted is None:
        return np.arange(count)
    if isinstance(wanted, str):
        raise TypeError("sensors are a list of names or indices, not one text")
    if isinstance(wanted, (slice, np.ndarray)) and not _is_text(wanted):
        found = np.arange(count)[wanted].ravel().tolist()
    else:
        found = [_position(sensor, names) for sensor in wanted]  # type: ignore[union-attr]
    if not found:
        raise IndexError("no sensor is left of the dataset")
    if len(set(found)) != len(found):
        raise ValueError("a sensor is named twice")
    return np.array(found, dtype=np.int64)


def _is_text(wanted: slice | npt.NDArray[np.generic]) -> bool:
    return isinstance(wanted, np.ndarray) and wanted.dtype.kind in "UO"


def _position(sensor: int | str, names: list[str]) -> int:
    if isinstance(sensor, str):
        if sensor not in names:
            raise IndexError(f"there is no sensor {sensor!r}")
        if names.count(sensor) > 1:
            raise IndexError(f"several sensors are named {sensor!r}; choose by index")
        return names.index(sensor)
    if isinstance(sensor, bool):
        raise TypeError("sensors are chosen by a mask as an array, not as a list")
    index = operator.index(sensor)
    if not -len(names) <= index < len(names):
        raise IndexError(f"there is no sensor {index}; they count from 0 to {len(names) - 1}")
    return index % len(names)


def _is_all(indices: npt.NDArray[np.integer], names: list[str]) -> bool:
    return np.array_equal(indices, np.arange(len(names)))
