"""Channel-by-channel coherence of MEG and EEG: hold it, process it, show it, store it.

>>> import cxc
>>> ds = cxc.Dataset.from_array(values, sampling_rate=2.0, band=(8, 12))   # [slice, row, column]
>>> ds.save("alpha.cxc")
>>> cxc.open("alpha.cxc").to_array()
"""

from ._core import CxcError
from ._core import version as __version__
from .dataset import Dataset, slice_count
from .containers import Group, Package
from .opening import open_file as open  # noqa: A004  the package's own word, as in gzip.open

__all__ = ["CxcError", "Dataset", "Group", "Package", "open", "slice_count"]
