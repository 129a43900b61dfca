"""Packages (Active, Control and Act-Ctl of one recording) and groups (any number of subjects).

Datasets are shared, not moved: one that was put into a package or a group, or taken out of one,
stays valid as long as anybody holds it, and a change is seen everywhere. While one thread
computes or saves, changes that others make to the same package or group wait.
"""

from __future__ import annotations

import os
from typing import TYPE_CHECKING, Any, Iterable, Iterator, TypeVar, overload

from . import _core
from .alike import describe_like, warn_of_differences
from .dataset import Dataset
from .files import input_name
from .forwarded import forwarded
from .record import Progress, Record

if TYPE_CHECKING:
    import pandas
    import xarray

OPERATIONS = {"subtract": 0, "add": 1, "multiply": 2, "divide": 3}
CLASSES = ("active", "control", "act_ctl")


def _wrapped(core: _core.Dataset | None) -> Dataset | None:
    return None if core is None else Dataset(core)


Container = TypeVar("Container", bound="_Container")


class _Container(Record):
    """What the records of packages and groups have in common."""

    _core: _core.Package | _core.Group

    id = forwarded[int]("id", "The owner's identifier; stored.")
    name = forwarded[str]("name", "Name; stored.")
    info = forwarded[str]("info", "A second descriptive text; stored.")
    show = forwarded[bool]("show", "Show flag; stored.")
    current = forwarded[int](
        "current", "Current class or index, -1 for none; stored and restored as it stands."
    )

    @classmethod
    def open(
        cls: type[Container], path: str | os.PathLike[str], *, progress: Progress | None = None
    ) -> Container:
        """Reads a record of this kind; `progress` is in bytes."""
        container = cls()
        container._core.load(input_name(path), progress)
        return container

    def _describe(self, other: Container) -> Container:
        """Gives the other one everything of this one but the datasets; returns it."""
        for field in ("id", "name", "info", "show", "current"):
            setattr(other, field, getattr(self, field))
        return other


def _shape_text(dataset: Dataset) -> str:
    return " x ".join(map(str, dataset.shape))


def _band_text(datasets: Iterable[Dataset]) -> str:
    bands = list(dict.fromkeys(dataset.band for dataset in datasets))
    if not bands:
        return ""
    if len(bands) > 1:
        return f"; {len(bands)} bands"
    low, high = bands[0]
    return f"; {low:g} to {high:g} Hz"


class Package(_Container):
    """The datasets of one recording: active, control and act_ctl, each a Dataset or None.

    package["active"] and package[0] are the same slot. Iterating gives the datasets that are
    there, and len() counts them.
    """

    _core: _core.Package

    def __init__(
        self,
        active: Dataset | None = None,
        control: Dataset | None = None,
        act_ctl: Dataset | None = None,
    ) -> None:
        self._core = _core.Package()
        self.active, self.control, self.act_ctl = active, control, act_ctl

    def __getitem__(self, key: int | str) -> Dataset | None:
        return _wrapped(self._core.get(_class_of(key)))

    def __setitem__(self, key: int | str, dataset: Dataset | None) -> None:
        self._core.set(_class_of(key), None if dataset is None else dataset._core)

    def __delitem__(self, key: int | str) -> None:
        self[key] = None

    def __iter__(self) -> Iterator[Dataset]:
        return (dataset for dataset in (self[k] for k in range(3)) if dataset is not None)

    def __len__(self) -> int:
        return sum(1 for _ in self)

    def items(self) -> Iterator[tuple[str, Dataset]]:
        """Name of the class and dataset, of those that are there."""
        for name in CLASSES:
            dataset = self[name]
            if dataset is not None:
                yield name, dataset

    @property
    def active(self) -> Dataset | None:
        """The condition of interest."""
        return self[0]

    @active.setter
    def active(self, dataset: Dataset | None) -> None:
        self[0] = dataset

    @property
    def control(self) -> Dataset | None:
        """What active is compared with."""
        return self[1]

    @control.setter
    def control(self, dataset: Dataset | None) -> None:
        self[1] = dataset

    @property
    def act_ctl(self) -> Dataset | None:
        """What `combine` made."""
        return self[2]

    @act_ctl.setter
    def act_ctl(self, dataset: Dataset | None) -> None:
        self[2] = dataset

    def combine(self, operation: str, *, accumulate_control: bool = False) -> Dataset:
        """Combines every value of active with the one slice of control into act_ctl.

        The result has the description of active; UserWarning where control differs from it in
        sensors, band or channel type. A dataset that act_ctl holds already is written over and
        returned; set act_ctl to None before to keep the result of an earlier call.

        Args:
            operation: "subtract", "add", "multiply" or "divide" (0 where control is 0).
            accumulate_control: whether a control of several slices may be replaced by its mean
                over time; that changes the control dataset itself.

        Raises:
            CxcError: with the library's words, where a dataset is missing, sizes differ, or the
                control has several slices and may not be accumulated.
        """
        if operation not in OPERATIONS:
            raise ValueError(f"unknown operation {operation!r}; known are {', '.join(OPERATIONS)}")
        active, control = self.active, self.control
        slices = 0 if control is None else len(control)
        made = Dataset(self._core.combine(OPERATIONS[operation], accumulate_control))
        if active is not None and control is not None:
            # Control is one slice by now, so that neither length nor latency has to agree.
            warn_of_differences(
                [("active", active), ("control", control)],
                "pairs are taken by position",
                apart_from=("slices (", "latency", "slices per second"),
            )
            what = f"Active {operation} Control"
            if slices > 1:
                what += f", Control being the mean of its {slices} slices"
            describe_like(made, active, what)
            made.channels_a, made.channels_b = active.channels_a, active.channels_b
        return made

    def match_selections(
        self, active: tuple[int, int], control: tuple[int, int]
    ) -> tuple[tuple[int, int], tuple[int, int]]:
        """The two ranges of slices with the narrower one widened to the width of the other."""
        return self._core.match_selections(active, control)

    def select(self, **wanted: Any) -> Package:
        """A new package of parts of the datasets; the arguments are those of `Dataset.select`.

        A dataset of one slice, as control usually is, keeps it whatever slices are chosen.
        """
        parts = {name: _part(dataset, wanted) for name, dataset in self.items()}
        return self._describe(Package(**parts))

    def to_xarray(self) -> xarray.Dataset:
        """A copy as variables active, control and act_ctl, [time, row, column] each.

        What has other slices than the first has a time axis of its own, such as control_time.
        Coordinates and attributes are those of `Dataset.to_xarray`.

        Raises:
            ValueError: the package is empty, or the sensors differ.
        """
        from .views import arrays_of_package

        return arrays_of_package(self)

    def to_pandas(self) -> pandas.DataFrame:
        """The tables of `Dataset.to_pandas`, one after another, behind a column `class`.

        Raises:
            ValueError: the package is empty.
        """
        from .views import table_of_package

        return table_of_package(self)

    def _repr_html_(self) -> str:
        """For notebooks."""
        from .views import html_of_package

        return html_of_package(self)

    def __repr__(self) -> str:
        held = [f"{name} {_shape_text(dataset)}" for name, dataset in self.items()]
        text = ", ".join(held) or "empty"
        return f"<cxc.Package {self.name!r}: {text}{_band_text(self)}>"


def _part(dataset: Dataset, wanted: dict[str, Any]) -> Dataset:
    if len(dataset) == 1:
        wanted = {name: value for name, value in wanted.items() if name not in ("slices", "time")}
    return dataset.select(**wanted)


def _class_of(key: int | str) -> int:
    if isinstance(key, str):
        if key not in CLASSES:
            raise KeyError(key)
        return CLASSES.index(key)
    return key


class Group(_Container):
    """Datasets of any number of subjects, in order; a sequence of Dataset or None."""

    _core: _core.Group

    def __init__(self, datasets: Iterable[Dataset | None] = ()) -> None:
        self._core = _core.Group()
        self.extend(datasets)

    def __len__(self) -> int:
        return len(self._core.members)

    @overload
    def __getitem__(self, index: int) -> Dataset | None: ...

    @overload
    def __getitem__(self, index: slice) -> list[Dataset | None]: ...

    def __getitem__(self, index: int | slice) -> Dataset | None | list[Dataset | None]:
        if isinstance(index, slice):
            return [_wrapped(core) for core in self._core.members[index]]
        return _wrapped(self._core.members[index])

    def __setitem__(self, index: int, dataset: Dataset | None) -> None:
        members = self._core.members
        members[index] = None if dataset is None else dataset._core
        self._core.members = members

    def __delitem__(self, index: int | slice) -> None:
        members = self._core.members
        del members[index]
        self._core.members = members

    def __iter__(self) -> Iterator[Dataset | None]:
        return (_wrapped(core) for core in self._core.members)

    def append(self, dataset: Dataset | None) -> None:
        """Adds one dataset, or an empty entry, at the end."""
        self.extend([dataset])

    def extend(self, datasets: Iterable[Dataset | None]) -> None:
        """Adds datasets, or empty entries, at the end."""
        self._core.extend([None if dataset is None else dataset._core for dataset in datasets])

    def clear(self) -> None:
        """Empties the list; nothing is current any more."""
        self._core.members = []
        self.current = -1

    def average(self, *, progress: Progress | None = None) -> Dataset:
        """Appends and returns the mean of all datasets.

        The result has the largest size of each dimension, and every dataset counts in the
        divisor: where a smaller one has no value it counts as zero. Pairs and slices are taken by
        position; UserWarning for each dataset that differs from the first, whose description the
        result has. `progress` is in rows of the result; when the call is interrupted nothing is
        appended.

        Raises:
            CxcError: there is nothing to average, or not enough memory.
        """
        held = self._told()
        made = Dataset(self._core.average(progress))
        describe_like(made, held[0][1], f"Mean of {len(held)} datasets, value by value")
        return made

    def summary(self, *, progress: Progress | None = None) -> tuple[Dataset, Dataset, Dataset]:
        """Appends and returns minimum, mean and maximum of all datasets, as by `average`."""
        held = self._told()
        minimum, mean, maximum = map(Dataset, self._core.summarise(progress))
        for made, what in ((minimum, "Minimum"), (mean, "Mean"), (maximum, "Maximum")):
            describe_like(made, held[0][1], f"{what} of {len(held)} datasets, value by value")
        return minimum, mean, maximum

    def _told(self) -> list[tuple[str, Dataset]]:
        """The datasets, after warnings of what is not alike in them."""
        held = [(f"dataset {k}", dataset) for k, dataset in enumerate(self) if dataset is not None]
        if held:
            warn_of_differences(
                held, "pairs and slices are taken by position, and what is missing counts as 0"
            )
        return held

    def select(self, **wanted: Any) -> Group:
        """A new group of parts of the datasets; the arguments are those of `Dataset.select`."""
        parts = [None if dataset is None else dataset.select(**wanted) for dataset in self]
        return self._describe(Group(parts))

    def to_xarray(self) -> xarray.DataArray:
        """A copy with the dimensions dataset, time, row and column; empty entries are left out.

        Coordinates: `dataset`, the position in the group, and `name`; the others, and the
        attributes, are those that `Dataset.to_xarray` gives the first one.

        Raises:
            ValueError: the group is empty, or a dataset differs from the first in sensors, slices,
                latencies or band. Nothing is matched by position silently.
        """
        from .views import array_of_group

        return array_of_group(self)

    def to_pandas(self) -> pandas.DataFrame:
        """The tables of `Dataset.to_pandas` one after another, also of datasets that differ.

        They stand behind two columns: `dataset`, the position in the group, and `name`.

        Raises:
            ValueError: the group is empty.
        """
        from .views import table_of_group

        return table_of_group(self)

    def _repr_html_(self) -> str:
        """For notebooks."""
        from .views import html_of_group

        return html_of_group(self)

    def __repr__(self) -> str:
        held = [dataset for dataset in self if dataset is not None]
        shapes = list(dict.fromkeys(map(_shape_text, held)))
        of = f" of {shapes[0]}" if len(shapes) == 1 else f" of {len(shapes)} shapes" if held else ""
        return f"<cxc.Group {self.name!r}: {len(self)} datasets{of}{_band_text(held)}>"
