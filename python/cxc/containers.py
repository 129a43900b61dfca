"""Packages (Active, Control and Act-Ctl of one recording) and groups (any number of subjects).

Datasets are shared, not moved: one that was put into a package or a group, or taken out of one,
stays valid as long as anybody holds it, and a change is seen everywhere. While one thread
computes or saves, changes that others make to the same package or group wait.
"""

from __future__ import annotations

import os
from typing import Iterable, Iterator

from . import _core
from .dataset import Dataset, save_record
from .forwarded import forwarded

OPERATIONS = {"subtract": 0, "add": 1, "multiply": 2, "divide": 3}
CLASSES = ("active", "control", "act_ctl")


def _wrapped(core: _core.Dataset | None) -> Dataset | None:
    return None if core is None else Dataset(core)


class _Container:
    """What the records of packages and groups have in common."""

    _core: _core.Package | _core.Group

    id = forwarded("id", "The owner's identifier; stored.")
    name = forwarded("name", "Name; stored.")
    info = forwarded("info", "A second descriptive text; stored.")
    show = forwarded("show", "Show flag; stored.")
    current = forwarded(
        "current", "Current class or index, -1 for none; stored and restored as it stands."
    )

    def save(self, path: str | os.PathLike, *, overwrite: bool = True) -> None:
        """Writes the record to `path`, whole or not at all, as `Dataset.save`."""
        save_record(self._core, path, overwrite)

    @classmethod
    def open(cls, path: str | os.PathLike):
        """Reads a record of this kind."""
        container = cls()
        container._core.load(os.fsencode(path))
        return container


class Package(_Container):
    """The datasets of one recording: active, control and act_ctl, each a Dataset or None.

    package["active"] and package[0] are the same slot. Iterating gives the datasets that are
    there, and len() counts them.
    """

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

    @property
    def active(self) -> Dataset | None:
        return self[0]

    @active.setter
    def active(self, dataset: Dataset | None) -> None:
        self[0] = dataset

    @property
    def control(self) -> Dataset | None:
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
        return Dataset(self._core.combine(OPERATIONS[operation], accumulate_control))

    def match_selections(
        self, active: tuple[int, int], control: tuple[int, int]
    ) -> tuple[tuple[int, int], tuple[int, int]]:
        """The two ranges of slices with the narrower one widened to the width of the other."""
        return self._core.match_selections(active, control)

    def __repr__(self) -> str:
        held = [name for name in CLASSES if self[name] is not None]
        return f"<cxc.Package {self.name!r}: {', '.join(held) or 'empty'}>"


def _class_of(key: int | str) -> int:
    if isinstance(key, str):
        if key not in CLASSES:
            raise KeyError(key)
        return CLASSES.index(key)
    return key


class Group(_Container):
    """Datasets of any number of subjects, in order; a sequence of Dataset or None."""

    def __init__(self, datasets: Iterable[Dataset | None] = ()) -> None:
        self._core = _core.Group()
        self.extend(datasets)

    def __len__(self) -> int:
        return len(self._core.members)

    def __getitem__(self, index):
        if isinstance(index, slice):
            return [_wrapped(core) for core in self._core.members[index]]
        return _wrapped(self._core.members[index])

    def __setitem__(self, index: int, dataset: Dataset | None) -> None:
        members = self._core.members
        members[index] = None if dataset is None else dataset._core
        self._core.members = members

    def __delitem__(self, index) -> None:
        members = self._core.members
        del members[index]
        self._core.members = members

    def __iter__(self) -> Iterator[Dataset | None]:
        return (_wrapped(core) for core in self._core.members)

    def append(self, dataset: Dataset | None) -> None:
        self.extend([dataset])

    def extend(self, datasets: Iterable[Dataset | None]) -> None:
        self._core.extend([None if dataset is None else dataset._core for dataset in datasets])

    def clear(self) -> None:
        """Empties the list; nothing is current any more."""
        self._core.members = []
        self.current = -1

    def average(self) -> Dataset:
        """Appends and returns the mean of all datasets.

        The result has the largest size of each dimension, and every dataset counts in the
        divisor: where a smaller one has no value it counts as zero.
        """
        return Dataset(self._core.average())

    def summary(self) -> tuple[Dataset, Dataset, Dataset]:
        """Appends and returns minimum, mean and maximum of all datasets, sized as by `average`."""
        minimum, mean, maximum = map(Dataset, self._core.summarise())
        return minimum, mean, maximum

    def __repr__(self) -> str:
        return f"<cxc.Group {self.name!r}: {len(self)} datasets>"
