"""Attributes of a Python object that are fields of the library's object behind it."""

from __future__ import annotations

from typing import Any, Callable, Generic, TypeVar, overload

T = TypeVar("T")


class forwarded(Generic[T]):  # noqa: N801  used as a property is
    """An attribute that reads and writes `field` of the object's `_core`."""

    def __init__(self, field: str, doc: str, convert: Callable[[T], Any] | None = None) -> None:
        self._field = field
        self._convert = convert
        self.__doc__ = doc

    @overload
    def __get__(self, owner: None, kind: type) -> forwarded[T]: ...

    @overload
    def __get__(self, owner: Any, kind: type) -> T: ...

    def __get__(self, owner: Any, kind: type) -> T | forwarded[T]:
        if owner is None:
            return self
        value: T = getattr(owner._core, self._field)
        return value

    def __set__(self, owner: Any, value: T) -> None:
        put = value if self._convert is None else self._convert(value)
        setattr(owner._core, self._field, put)


class forwarded_color:  # noqa: N801
    """A colour (red, green, blue), 0 to 255 each, which the library holds as one number."""

    def __init__(self, field: str, doc: str) -> None:
        self._field = field
        self.__doc__ = doc

    @overload
    def __get__(self, owner: None, kind: type) -> forwarded_color: ...

    @overload
    def __get__(self, owner: Any, kind: type) -> tuple[int, int, int]: ...

    def __get__(self, owner: Any, kind: type) -> tuple[int, int, int] | forwarded_color:
        if owner is None:
            return self
        color: int = getattr(owner._core, self._field)
        return color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF

    def __set__(self, owner: Any, value: tuple[int, int, int]) -> None:
        red, green, blue = value
        if not all(0 <= part <= 255 for part in value):
            raise ValueError("colours are (red, green, blue), 0 to 255")
        setattr(owner._core, self._field, red | green << 8 | blue << 16)
