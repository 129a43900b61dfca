"""Results over many datasets of which only one is in memory at a time."""

from __future__ import annotations

import contextlib
import os
import shutil
import struct
import tempfile
from typing import Callable, Iterator

from . import _core
from .containers import Group
from .dataset import Dataset
from .files import whole_file

# In the record of a group the number of its entries follows the magic (a marker of 4 bytes and 16
# characters), the version and the current index.
_COUNT = slice(4 + 2 * 16 + 4 + 4, 4 + 2 * 16 + 4 + 4 + 4)


class Summary:
    """Minimum, mean and maximum of any number of datasets, value by value.

    To the last bit what `Group.summary` makes of the same datasets in the same order.

    Args:
        slices, rows, columns: the largest of each among the datasets. A smaller dataset counts as
            zeros where it has no value.
    """

    def __init__(self, slices: int, rows: int, columns: int) -> None:
        self._core = _core.Across(slices, rows, columns)

    def take(self, dataset: Dataset) -> None:
        self._core.take(dataset._core)

    def finish(self) -> tuple[Dataset, Dataset, Dataset]:
        """Minimum, mean and maximum; nothing can be taken afterwards."""
        minimum, mean, maximum = map(Dataset, self._core.finish())
        return minimum, mean, maximum


@contextlib.contextmanager
def group_file(
    path: str | os.PathLike, count: int, *, name: str, current: int = 0, overwrite: bool = True
) -> Iterator[Callable[[Dataset], None]]:
    """Writes a group's file dataset by dataset; gives the function that appends one.

    The file is whole or not there, and byte for byte what `Group.save` writes.

    Args:
        count: how many datasets will come; ValueError at the end when they were fewer or more.
    """
    empty = Group()
    empty.name, empty.current = name, current
    given = 0
    beside = os.path.dirname(os.path.abspath(os.fsdecode(path)))
    with tempfile.TemporaryDirectory(prefix=".", dir=beside) as scratch:
        entry = os.path.join(scratch, "entry")
        empty.save(entry)
        with open(entry, "rb") as source:
            record = source.read()
        with whole_file(path, overwrite=overwrite) as draft, open(draft, "wb") as file:
            file.write(record[: _COUNT.start] + struct.pack("<i", count))

            def append(dataset: Dataset) -> None:
                nonlocal given
                given += 1
                dataset.save(entry)
                file.write(struct.pack("<i", 1))
                with open(entry, "rb") as source:
                    shutil.copyfileobj(source, file, 1 << 20)

            yield append
            if given != count:
                raise ValueError(f"{given} datasets for a group of {count}")
            file.write(record[_COUNT.stop :])
            file.flush()
            os.fsync(file.fileno())
