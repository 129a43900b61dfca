"""What is compared with what, and how near it has to come."""

from __future__ import annotations

from dataclasses import dataclass

SHAPES = ("64x64x100", "128x128x500", "306x306x100", "306x306x1", "32x32x20000")
GROUPS = ("10x64x64x100", "50x64x64x100")
QUICK_SHAPES = ("64x64x100", "306x306x1")
QUICK_GROUPS = ("10x64x64x100",)

# Bytes that opening may ask for beyond the dataset itself.
OPEN_BEYOND = 1 << 20


@dataclass(frozen=True)
class Row:
    """An operation of ours beside something else: time of the one / time of the other."""

    operation: str
    against: str  # who/what
    target: float | None = None  # greatest ratio that is good; None: only told
    single: float | None | str = "target"  # the same for a single slice, where it differs

    def target_on(self, shape: str) -> float | None:
        if self.single != "target" and shape.endswith("x1"):
            return self.single
        return self.target


# With a single slice each value is an array of its own and takes 78 bytes more in a file: what
# holds all values in one array is no measure then.
ROWS = (
    Row("open", "limit/arrays made afresh, plain reads", 1.2, single=1.5),
    Row("open", "h5py/open", 1.0, single=None),
    Row("open", "npy/open"),
    Row("open", "netCDF/open"),
    Row("save", "limit/plain write", 1.5, single=None),
    Row("save", "limit/small copies, plain write", None, single=3.0),
    Row("save", "h5py/save", 1.0, single=None),
    Row("save", "npy/save", 2.5, single=None),
    Row("save", "netCDF/save"),
    Row("save, flushed", "limit/plain write, flushed", 1.5, single=3.0),
    Row("sum", "limit/add, separate vectors", 1.15),
    Row("sum", "NumPy/sum", 1.0, single=None),
    Row("Act-Ctl", "limit/subtract a constant, separate vectors", 1.15),
    Row("Act-Ctl", "NumPy/Act-Ctl", 1.0, single=None),
    Row("range", "limit/read once, separate vectors", 1.5),
    Row("range", "NumPy/range", 1 / 3, single=None),
    Row("data range", "limit/read once, separate vectors", 1.5),
    Row("data range", "NumPy/range", 1 / 3, single=None),
    Row("absolute range", "limit/read once, separate vectors", 1.5),
    Row("absolute range", "NumPy/absolute range", 1 / 3, single=None),
    Row("statistics", "limit/read once, separate vectors", 3.0),
    Row("statistics", "NumPy/statistics", 1 / 3, single=None),
    Row("normalise", "limit/read once, then divide, separate vectors", 1.5),
    Row("normalise", "NumPy/normalise", 1.0, single=None),
    Row("zero diagonal", "limit/fill the diagonal, separate vectors"),
    Row("zero diagonal", "NumPy/zero diagonal"),
    Row("matrices from dataset", "limit/copy", 3.5, single=None),
    Row("matrices from dataset", "limit/copy, separate vectors", None, single=3.5),
    Row("matrices from dataset", "NumPy/matrices from dataset", 1.0, single=None),
    Row("dataset from matrices", "limit/copy", 3.5, single=None),
    Row("dataset from matrices", "limit/copy, separate vectors", None, single=3.5),
    Row("dataset from matrices", "NumPy/dataset from matrices", 1.0, single=None),
    Row("to_array", "limit/copy into an array made afresh", 3.5, single=None),
    Row("to_array, Python", "NumPy/to_array", 1.0, single=None),
    Row("from_array", "limit/copy into vectors made afresh", 3.5),
    Row("from_array, Python", "NumPy/from_array", 1.0, single=None),
    Row("format", "limit/snprintf", 1 / 8),
    Row("text export", "limit/plain write of the text, as many flushes", 2.0),
    Row("text export", "savetxt/text export", 1.0),
    Row("text export", "pandas/text export", 1.0),
    Row("average", "limit/members read once, result made afresh", 1.2),
    Row("average", "NumPy/average", 1.0),
    Row("average, Python", "NumPy/average", 1.0),
    Row("summary", "limit/members read once, three results made afresh", 1.5),
    Row("summary", "NumPy/summary", 0.5),
    Row("summary, Python", "NumPy/summary", 0.5),
    Row("cxc average, on disk", "cat/files on disk", 1.5),
    Row("cxc average, in memory", "cat/files in memory", 1.5),
)

# The machine's own speed, told in bytes of the dataset a second.
SPEEDS = (
    "limit/copy",
    "limit/copy, separate vectors",
    "limit/add",
    "limit/add, separate vectors",
    "limit/read once, separate vectors",
    "limit/plain read",
    "limit/plain write",
    "limit/plain write, flushed",
)
