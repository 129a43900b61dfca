"""Properties of a Python object that are fields of the library's object behind it."""

from __future__ import annotations

from typing import Callable


def forwarded(field: str, doc: str, convert: Callable | None = None) -> property:
    """A property that reads and writes `field` of the object's `_core`."""

    def get(self):
        return getattr(self._core, field)

    def put(self, value):
        setattr(self._core, field, value if convert is None else convert(value))

    return property(get, put, doc=doc)
