"""Files of any kind, told apart by their first bytes."""

from __future__ import annotations

import os

from .containers import Group, Package
from .dataset import Dataset
from .files import input_name
from .record import Progress

_KINDS: dict[str, type[Dataset] | type[Package] | type[Group]] = {
    "MEGCOHPTS": Dataset,
    "SNSCOHFACE": Package,
    "GROUPCXCDATAFACE": Group,
}


def open_file(
    path: str | os.PathLike[str], *, progress: Progress | None = None
) -> Dataset | Package | Group:
    """Reads a file of any version: a dataset, a package or a group, whatever its name ends with.

    `Dataset.open`, `Package.open` and `Group.open` insist on their kind. `progress` is in bytes.

    Raises:
        CxcError: as `Dataset.open`, also for files of no kind at all. OSError: no such file.
    """
    input_name(path)
    with open(path, "rb") as file:
        kind = _KINDS.get(_first_string(file.read(40)), Dataset)
    return kind.open(path, progress=progress)


def _first_string(head: bytes) -> str:
    """The magic, in 16-bit characters or, from a program without them, in 8-bit ones."""
    if head[:3] == b"\xff\xfe\xff" and len(head) > 3:
        return head[4 : 4 + 2 * head[3]].decode("utf-16-le", errors="replace")
    return head[1 : 1 + head[0]].decode("latin-1") if head else ""
