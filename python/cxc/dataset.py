"""Datasets: for every pair of sensors a value per time slice."""

from __future__ import annotations

import errno
import html
import os
from typing import TYPE_CHECKING, Iterator, Sequence

import numpy as np

from . import _core
from .files import whole_file
from .forwarded import forwarded

if TYPE_CHECKING:
    import pandas
    import xarray

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

    def __iter__(self) -> Iterator[np.ndarray]:
        """The slices in order, each a copy [row, column]."""
        return iter(self.to_array())

    def __getitem__(self, slices: int | slice | Sequence[int]) -> Dataset:
        """A new dataset of some slices: `ds[3]`, `ds[2:5]`, `ds[[0, 2]]`. See `select`."""
        return self.select(slices=slices)

    def select(
        self,
        *,
        slices: int | slice | Sequence[int] = slice(None),
        time: tuple[float, float] | None = None,
        sensors: Sequence[int | str] | None = None,
        rows: Sequence[int | str] | None = None,
        columns: Sequence[int | str] | None = None,
    ) -> Dataset:
        """A new dataset of some slices and sensors, in the order in which they are named.

        Band, name, note, channel numbers and colours go along; all slices of the result are
        selected. The latency is moved where the slices follow each other.

        Args:
            slices: indices from 0.
            time: instead of `slices`: those with a latency from `time[0]` to `time[1]`, inclusive.
            sensors: rows and columns: indices from 0, or names as in the note; all when None.
            rows, columns: instead of `sensors`, where they are not the same.

        Raises:
            IndexError: there is no such slice or sensor, or nothing is left.
        """
        from .exchange import labels_of, times_of

        picked = np.arange(len(self))[slices if not isinstance(slices, int) else [slices]]
        if time is not None:
            latencies = times_of(self)
            picked = np.flatnonzero((latencies >= time[0]) & (latencies <= time[1]))
        labels = labels_of(self)
        row = _positions(sensors if rows is None else rows, self.shape[1], labels)
        column = _positions(sensors if columns is None else columns, self.shape[2], labels)
        if not (len(picked) and len(row) and len(column)):
            raise IndexError("nothing is left of the dataset")
        made = Dataset.from_array(
            self.to_array()[np.ix_(picked, row, column)], sampling_rate=self.sampling_rate,
            latency=self._latency_of(picked), band=self.band, name=self.name, note=self.note,
            channel_type=self.channel_type,
        )  # fmt: skip
        if made.shape[1:] != self.shape[1:] or not np.array_equal(row, column):
            kept = [labels[i] for i in row] if np.array_equal(row, column) else []
            made.note = _with_sensors(self.note, kept)
        made.channels_a = self.channels_a[np.ix_(row, column)]
        made.channels_b = self.channels_b[np.ix_(row, column)]
        made.basic_color, made.active_color = self.basic_color, self.active_color
        made.suppressive_color = self.suppressive_color
        return made

    def _latency_of(self, picked: np.ndarray) -> tuple[float, float]:
        if self.sampling_rate <= 0 or (np.diff(picked) != 1).any():
            return self.latency
        behind = (len(self) - 1 - int(picked[-1])) / self.sampling_rate
        return self.latency_of(int(picked[0])), self.latency[1] - behind

    def to_xarray(self) -> xarray.DataArray:
        """A copy as an array with the dimensions time, row and column.

        Coordinates: time (latency of each slice), row and column (names of the sensors),
        row_channel and column_channel (numbers). Attributes: band_hz, slices_per_second, note.
        """
        import xarray

        from .exchange import labels_of, times_of

        labels = labels_of(self)
        _, rows, columns = self.shape
        square = rows == columns
        return xarray.DataArray(
            self.to_array(),
            dims=("time", "row", "column"),
            coords={
                "time": times_of(self),
                "row": labels,
                "column": labels if square else [str(c + 1) for c in range(columns)],
                "row_channel": ("row", self.channels_a[:, 0]),
                "column_channel": ("column", self.channels_b[0, :]),
            },
            name=self.name or "coherence",
            attrs={
                "band_hz": self.band,
                "slices_per_second": self.sampling_rate,
                "channel_type": self.type_name,
                "note": self.note,
            },
        )

    def to_pandas(self) -> pandas.DataFrame:
        """A table with a line for each slice of each pair: time, row, column, value.

        Pairs row by row, the row sensor first, and the slices of each pair in order.
        """
        array = self.to_xarray().transpose("row", "column", "time")
        names = [array.coords[name].values for name in ("row", "column", "time")]
        import pandas

        index = pandas.MultiIndex.from_product(names, names=["row", "column", "time"])
        table = pandas.DataFrame({"value": array.values.ravel()}, index=index).reset_index()
        return table[["time", "row", "column", "value"]]

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

    def _repr_html_(self) -> str:
        """For notebooks: what the dataset is, and its range, as a table."""
        slices, rows, columns = self.shape
        low, high = self.band
        begin, end = self.latency
        lines = [
            ("shape", f"{slices} slices x {rows} x {columns} sensors"),
            ("band", f"{low:g} to {high:g} Hz"),
            ("latency", f"{begin:g} to {end:g}, {self.sampling_rate:g} slices per second"),
            ("sensors", self.type_name),
            ("note", self.note),
        ]
        if self.header.has_grid():
            least, most = self.range()
            lines.insert(4, ("values", f"{least:g} to {most:g}"))
        cells = "".join(
            f'<tr><th style="text-align:left;vertical-align:top">{what}</th>'
            f'<td style="text-align:left;white-space:pre-wrap">{html.escape(text)}</td></tr>'
            for what, text in lines
        )
        return f"<table><caption>{html.escape(self.name)}</caption>{cells}</table>"

    def __repr__(self) -> str:
        slices, rows, columns = self.shape
        low, high = self.band
        return (
            f"<cxc.Dataset {self.name!r}: {slices} slices x {rows} x {columns} sensors, "
            f"{low:g} to {high:g} Hz>"
        )


def _positions(wanted, count: int, labels: list[str]) -> np.ndarray:
    """Indices of the sensors that are named by index from 0 or by name."""
    if wanted is None:
        return np.arange(count)
    found = []
    for sensor in wanted:
        if isinstance(sensor, str):
            if sensor not in labels:
                raise IndexError(f"there is no sensor {sensor!r}")
            found.append(labels.index(sensor))
        elif -count <= sensor < count:
            found.append(sensor % count)
        else:
            raise IndexError(f"there is no sensor {sensor}; they count from 0 to {count - 1}")
    return np.array(found, dtype=int)


def _with_sensors(note: str, labels: list[str]) -> str:
    """A computation note whose list of sensors is that of a part; without labels it is dropped."""
    lines = [line for line in note.splitlines() if not line.startswith("Sensors: ")]
    if labels:
        lines.append("Sensors: " + ", ".join(f"{n} {text}" for n, text in enumerate(labels, 1)))
    return "\n".join(lines)


def open_dataset(path: str | os.PathLike) -> Dataset:
    """Reads a `.cxc` file of any version the library knows."""
    return Dataset.open(path)


def save_record(core, path: str | os.PathLike, overwrite: bool) -> None:
    """Saves a dataset, package or group whole or not at all, as `Dataset.save` says."""
    with whole_file(path, overwrite=overwrite) as draft:
        core.save(os.fsencode(draft))
