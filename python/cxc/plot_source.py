"""What a picture shows: the matrices of a dataset, a package, a group or an array, with names."""

from __future__ import annotations

import re
from dataclasses import dataclass, field, replace
from typing import Iterable, Sequence, Union

import numpy as np

from .containers import Group, Package
from .dataset import Dataset
from .labels import same_sensors

COHERENCE = "magnitude-squared coherence"

Source = Union[Dataset, Package, Group, np.ndarray]
Slices = Union[int, slice, Sequence[int], None]

# Panels of one family have one colour scale.
CONDITIONS, DIFFERENCES = 0, 1

_MOST_PANELS = 100

# Names that the library gives to results of a group.
_RESULT = re.compile(r"Average\d+ Result|Cxc\d+ (Minimum|Mean|Max)")


@dataclass(frozen=True)
class Panel:
    """One matrix of a picture; what is no finite number is NaN."""

    values: np.ndarray  # row sensors x column sensors
    rows: list[str]
    columns: list[str]
    name: str = ""
    when: str = ""  # which slices, in words
    family: int = CONDITIONS

    @property
    def same(self) -> bool:
        """Whether rows and columns are the same sensors."""
        return self.rows == self.columns

    def apart(self) -> np.ndarray:
        """The values of pairs of different sensors."""
        if not self.same:
            return self.values.ravel()
        return self.values[~np.eye(len(self.rows), dtype=bool)]


@dataclass(frozen=True)
class Member:
    """One dataset of a source."""

    dataset: Dataset
    name: str
    family: int = CONDITIONS
    described_by: Dataset | None = None

    @property
    def about(self) -> Dataset:
        """The dataset whose band, times, selection and note tell of this one."""
        return self.dataset if self.described_by is None else self.described_by


@dataclass
class Shown:
    """A whole picture: rows of panels and the words around them."""

    grid: list[list[Panel]]
    title: str = ""
    subtitle: str = ""
    quantities: dict[int, str] = field(default_factory=dict)
    notes: list[str] = field(default_factory=list)

    @property
    def panels(self) -> list[Panel]:
        return [panel for row in self.grid for panel in row]


def members_of(source: Source) -> list[Member]:
    """The datasets of a source in order, with the names that stand over their panels.

    Of a group its own averages and summaries are left out, unless there is nothing else.

    Raises:
        TypeError: no source. ValueError: an empty one.
    """
    if isinstance(source, Dataset):
        return [Member(source, source.name)]
    if isinstance(source, Package):
        slots = zip([source[k] for k in range(3)], _SLOTS)
        found = [
            Member(held, name, family, _describer(source, held, family))
            for held, (name, family) in slots
            if held is not None
        ]
        if not found:
            raise ValueError("the package holds no dataset")
        return found
    if isinstance(source, Group):
        found = [
            Member(held, held.name or f"dataset {index}")
            for index, held in enumerate(source)
            if held is not None
        ]
        if not found:
            raise ValueError("the group holds no dataset")
        # What the group has made of its datasets is no further subject.
        given = [member for member in found if not _RESULT.fullmatch(member.dataset.name)]
        return given or found
    raise TypeError(f"a dataset, package or group, not {type(source).__name__}")


def _describer(package: Package, held: Dataset, family: int) -> Dataset | None:
    """Active, for an Act-Ctl that was combined of it and says nothing about itself."""
    active = package.active
    if family != DIFFERENCES or active is None or held.sampling_rate > 0:
        return None
    return active if active.shape == held.shape else None


_SLOTS = (("Active", CONDITIONS), ("Control", CONDITIONS), ("Act-Ctl", DIFFERENCES))


def means(
    source: Source,
    *,
    labels: Sequence[str] | None = None,
    slices: Slices = None,
    time: tuple[float, float] | None = None,
    same: str | None = None,
) -> Shown:
    """A panel for each dataset: the mean of the slices that are asked for.

    Args:
        labels: as for `names_of`.
        slices, time: as for `chosen_slices`.
        same: name of a kind of picture that needs the same sensors as rows and as columns.

    Raises:
        ValueError: nothing finite to show, other columns than rows, too many panels, no such
            slices.
    """
    if isinstance(source, np.ndarray):
        return _of_array(source, labels, same)
    members = members_of(source)
    if len(members) > _MOST_PANELS:
        raise ValueError(f"{len(members)} datasets are too many for a picture; choose some")
    panels, lost = [], 0
    for member in members:
        array = values_of(member, same)
        picked = chosen_slices(member.about, slices, time)
        mean, without = finite_mean(array[picked])
        lost += without
        panels.append(_panel(member, mean, describe_slices(member.about, picked), labels))
    shown = Shown([panels], notes=lost_note(lost))
    _require_finite(shown)
    return entitled(shown, source, members)


def series(
    source: Source,
    *,
    labels: Sequence[str] | None = None,
    slices: Slices = None,
    time: tuple[float, float] | None = None,
    count: int = 12,
    columns: int | None = None,
    same: str | None = None,
) -> Shown:
    """A panel for each slice: up to `count`, evenly spread; a row for each dataset of several."""
    members = members_of(source)
    if count < 1:
        raise ValueError("at least one slice")
    if len(members) * count > _MOST_PANELS:
        count = _MOST_PANELS // len(members)
        if count < 2:
            raise ValueError(f"{len(members)} datasets are too many for a picture; choose some")
    grid, lost = [], 0
    for member in members:
        array = values_of(member, same)
        picked = chosen_slices(member.about, slices, time)
        if len(picked) > count:
            picked = picked[np.rint(np.linspace(0, len(picked) - 1, count)).astype(int)]
        row = []
        for t in picked:
            values, without = finite_mean(array[t : t + 1])
            lost += without
            when = describe_slices(member.about, np.array([t]))
            row.append(_panel(member, values, when, labels))
        grid.append(row)
    if len(grid) == 1:
        row = grid[0]
        wide = columns or (len(row) if len(row) <= 3 else 4 if len(row) != 5 else 3)
        grid = [row[i : i + wide] for i in range(0, len(row), wide)]
    shown = Shown(grid, notes=lost_note(lost))
    _require_finite(shown)
    return entitled(shown, source, members, over_time=True)


def values_of(member: Member, same: str | None = None) -> np.ndarray:
    """The values of a dataset that can be drawn, or ValueError; `same` as for `means`."""
    array = member.dataset.to_array() if member.dataset.header.has_grid() else np.empty(0)
    if array.size == 0:
        raise ValueError(f"{member.name}: the dataset holds no values")
    if same is not None and not same_sensors(member.about):
        raise ValueError(f"{member.name}: {_needs_same(same, array.shape[1:])}")
    return array


def _needs_same(kind: str, shape: tuple[int, ...]) -> str:
    rows, columns = shape
    size = f", not {rows} x {columns}" if rows != columns else ""
    return f"{kind} needs the same sensors as rows and as columns{size}"


def chosen_slices(
    dataset: Dataset, slices: Slices = None, time: tuple[float, float] | None = None
) -> np.ndarray:
    """Indices of slices: those named, or with a latency in `time`, or the selected ones.

    Raises:
        ValueError: there are none such.
    """
    total = len(dataset)
    if slices is not None and time is not None:
        raise ValueError("either slices or time, not both")
    if time is not None:
        begin, end = (float(part) for part in time)
        latencies = dataset.times
        picked = np.flatnonzero((latencies >= begin) & (latencies <= end))
        if not picked.size:
            raise ValueError(
                f"no slice lies at {begin:g} to {end:g}; "
                f"they lie at {latencies[0]:g} to {latencies[-1]:g}"
            )
        return picked
    if slices is None:
        first, last = dataset.selection
        if 0 <= first <= last < total:
            return np.arange(first, last + 1)
        return np.arange(total)
    if isinstance(slices, slice):
        picked = np.arange(total)[slices]
    else:
        picked = np.atleast_1d(np.asarray(slices))
        if picked.dtype.kind not in "iu" or picked.ndim != 1:
            raise ValueError("slices are whole numbers from 0")
        picked = np.where(picked < 0, picked + total, picked)
    if not picked.size or picked.min() < 0 or picked.max() >= total:
        raise ValueError(f"no such slices; there are {total}, counted from 0")
    return picked


def finite_mean(array: np.ndarray) -> tuple[np.ndarray, int]:
    """The mean of the finite values of each pair, NaN without any; how many were left out."""
    finite = np.isfinite(array)
    without = int(array.size - finite.sum())
    if not without:
        # Shares are summed, so that values near the largest number do not overflow.
        return (array / len(array)).sum(axis=0) if len(array) > 1 else array[0].copy(), 0
    counts = finite.sum(axis=0)
    sums = np.where(finite, array / np.maximum(counts, 1), 0.0).sum(axis=0)
    return np.where(counts > 0, sums, np.nan), without


def describe_slices(dataset: Dataset, picked: np.ndarray) -> str:
    """Which slices in words: their time in seconds, where the dataset has a rate."""
    timed = dataset.sampling_rate > 0
    if len(dataset) == 1 and timed:
        begin, end = dataset.latency
        return f"one slice, {begin:.4g} to {end:.4g} s"
    if len(picked) == 1:
        t = int(picked[0])
        return f"{dataset.latency_of(t):.4g} s" if timed else f"slice {t}"
    if len(picked) == len(dataset):
        words = f"mean of {len(picked)} slices"
    elif (np.diff(picked) == 1).all():
        words = f"mean of slices {picked[0]} to {picked[-1]}"
    else:
        words = f"mean of {len(picked)} of {len(dataset)} slices"
    if not timed:
        return words
    first, last = (dataset.latency_of(int(t)) for t in (picked.min(), picked.max()))
    return f"{words} at {first:.4g} to {last:.4g} s"


def quantity_of(member: Member, signed: bool) -> str:
    """What the values are, for the colour bar."""
    known = COHERENCE in member.about.note.lower()
    name = COHERENCE if known else "coherence"
    if signed:
        return "difference of " + name
    return "Act-Ctl " + name if member.family == DIFFERENCES else name


def entitled(shown: Shown, source, members: Iterable[Member], over_time: bool = False) -> Shown:
    """With a title, band and time: above the panels what they have in common, else in them."""
    members = list(members)
    bands = [f"{m.about.band[0]:g} to {m.about.band[1]:g} Hz" for m in members]
    shown.title = str(source.name) or "coherence"
    common = []
    if len(set(bands)) == 1:
        common.append(bands[0])
    else:
        by_name = dict(zip([m.name for m in members], bands))
        shown.grid = [
            [replace(p, when=f"{by_name[p.name]}, {p.when}") for p in row] for row in shown.grid
        ]
    if not over_time and len({panel.when for panel in shown.panels}) == 1:
        common.append(shown.panels[0].when)
        shown.grid = [[replace(panel, when="") for panel in row] for row in shown.grid]
    if len(members) > 1 and isinstance(source, Group):
        common.insert(0, f"{len(members)} datasets")
    shown.subtitle = ", ".join(common)
    for family in (CONDITIONS, DIFFERENCES):
        held = [m for m in members if m.family == family]
        if held:
            apart = [p.apart() for p in shown.panels if p.family == family]
            signed = any((part[np.isfinite(part)] < 0).any() for part in apart)
            shown.quantities[family] = quantity_of(held[0], signed)
    return shown


def _of_array(values: np.ndarray, labels, same: str | None) -> Shown:
    if values.ndim != 2 or values.size == 0 or values.dtype.kind not in "fiu":
        raise ValueError("an array of real numbers, row sensors x column sensors")
    rows, columns = values.shape
    if same is not None and rows != columns:
        raise ValueError(_needs_same(same, values.shape))
    mean, lost = finite_mean(np.asarray(values, dtype=np.float64)[np.newaxis])
    numbers = [str(number) for number in range(1, max(rows, columns) + 1)]
    names = names_of(labels, numbers[:rows], numbers[:columns])
    shown = Shown([[Panel(mean, *names)]], notes=lost_note(lost))
    shown.quantities = {CONDITIONS: COHERENCE}
    return shown


def names_of(
    labels: Sequence[str] | None, rows: list[str], columns: list[str]
) -> tuple[list[str], list[str]]:
    """Names of row and column sensors: those known, or those given for the rows.

    Given ones name the columns too, unless these are known to be other sensors.
    """
    if labels is None:
        return rows, columns
    given = [str(label) for label in labels]
    if len(given) != len(rows):
        raise ValueError(f"{len(given)} labels for {len(rows)} sensors")
    return given, given if columns == rows else columns


def _panel(member: Member, values: np.ndarray, when: str, labels) -> Panel:
    rows, columns = names_of(labels, member.about.sensors, member.about.column_sensors)
    return Panel(values, rows, columns, member.name, when, member.family)


def lost_note(lost: int) -> list[str]:
    """A line for the caption where values were left out."""
    if not lost:
        return []
    return [f"{lost} value{'s that are' if lost > 1 else ' that is'} no finite number left out"]


def _require_finite(shown: Shown) -> None:
    if not any(np.isfinite(panel.values).any() for panel in shown.panels):
        raise ValueError("no finite value to show")
