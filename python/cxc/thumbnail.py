"""A matrix as a small PNG, for notebooks, without loading a library for pictures."""

from __future__ import annotations

import base64
import struct
import zlib

import numpy as np
import numpy.typing as npt

_WEAK_TO_STRONG = ["#fcfdbf", "#fe9f6d", "#de4968", "#8c2981", "#3b0f70", "#150e37"]
_MINUS_TO_PLUS = ["#053061", "#4393c3", "#f7f7f7", "#d6604d", "#67001f"]
_LEVELS = 128
_NONE = _LEVELS  # colour of what is no number
_SIDE = 160


def picture(matrix: npt.NDArray[np.float64], text: str, *, same: bool) -> str:
    """An HTML image of a sensors x sensors matrix; `text` (escaped) for who cannot see it.

    Blue to red with white for 0 where there are negative values, else from light to dark. The
    scale ends with the largest magnitude, beside the diagonal where rows and columns are the same
    sensors.
    """
    height = _SIDE * matrix.shape[0] // max(matrix.shape)
    width = _SIDE * matrix.shape[1] // max(matrix.shape)
    data = base64.b64encode(_png(matrix, same)).decode()
    return (
        f'<img alt="{text}" title="{text}" width="{max(width, 1)}" height="{max(height, 1)}" '
        f'style="image-rendering:pixelated" src="data:image/png;base64,{data}">'
    )


def _png(matrix: npt.NDArray[np.float64], same: bool) -> bytes:
    finite = np.isfinite(matrix)
    beside = finite & ~np.eye(matrix.shape[0], dtype=bool) if same else finite
    counted = matrix[beside if beside.any() else finite]
    top = float(np.abs(counted).max(initial=0.0)) or 1.0
    signed = bool((counted < 0).any())
    part = (np.where(finite, matrix, 0.0) / top + signed) / (1 + signed)
    levels = np.clip(np.rint(part * (_LEVELS - 1)), 0, _LEVELS - 1).astype(np.uint8)
    levels[~finite] = _NONE
    rows, columns = matrix.shape
    lines = np.zeros((rows, columns + 1), dtype=np.uint8)  # each begins with its filter, none
    lines[:, 1:] = levels
    head = struct.pack(">IIBBBBB", columns, rows, 8, 3, 0, 0, 0)
    return (
        b"\x89PNG\r\n\x1a\n"
        + _chunk(b"IHDR", head)
        + _chunk(b"PLTE", _palette(_MINUS_TO_PLUS if signed else _WEAK_TO_STRONG))
        + _chunk(b"IDAT", zlib.compress(lines.tobytes(), 9))
        + _chunk(b"IEND", b"")
    )


def _palette(colours: list[str]) -> bytes:
    given = np.array([[int(colour[i : i + 2], 16) for i in (1, 3, 5)] for colour in colours])
    at = np.linspace(0, len(colours) - 1, _LEVELS)
    between = [np.interp(at, np.arange(len(colours)), given[:, part]) for part in range(3)]
    ramp = np.rint(np.stack(between, axis=1)).astype(np.uint8)
    return ramp.tobytes() + bytes([0xC8, 0xC8, 0xC8])


def _chunk(kind: bytes, data: bytes) -> bytes:
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
