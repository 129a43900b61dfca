"""What the library writes as a file of its own: a dataset, a package or a group."""

from __future__ import annotations

import os
from typing import Callable

from . import _core
from .files import whole_file

Progress = Callable[[int, int], object]
"""Told how far a call is, and of how much, several times a second and at the end.

What it raises ends the call, as Ctrl-C does in the main thread. It may look at datasets, but not
change one or make another call of the library.
"""


class Record:
    """Saves what a class below it holds."""

    _core: _core.Dataset | _core.Package | _core.Group

    def save(
        self,
        path: str | os.PathLike[str],
        *,
        overwrite: bool = True,
        progress: Progress | None = None,
    ) -> None:
        """Writes the record to `path` in the current version.

        The file is written under another name in the same folder, flushed to the disk and then
        renamed: `path` is either as it was or complete. A file that is replaced keeps its
        permissions, a symbolic link stays one.

        Args:
            path: by custom with the ending `.cxc`, for a dataset.
            overwrite: whether an existing file may be replaced.
            progress: in bytes, whose number is known roughly before the end.

        Raises:
            FileExistsError: without `overwrite`, where `path` exists.
            OSError: `path` is a folder, a device or a pipe, or cannot be written.
        """
        with whole_file(path, overwrite=overwrite) as draft:
            self._core.save(os.fsencode(draft), progress)
