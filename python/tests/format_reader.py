"""A reader of the files, written from docs/file-format.md alone.

It shares nothing with the library: plain Python, struct and NumPy. test_format_document.py compares
what it reads with what the package tells, so that the document is known to be enough for somebody
else's reader. Whoever changes the format changes the document first, then this file from it.

A record becomes a dict: field name -> value, with the names of the document's tables. A pair vector
has "values" and "backup" (an array, or None where the marker is 0); a dataset has "grid", a list of
pair vectors, row-major. A field that an older layout lacks is not in the dict.

Nothing is made before the bytes for it are known to be there: a count that the rest of the file
cannot hold raises FormatError, and so does everything else that is wrong in a file.
"""

import struct

import numpy as np

DATASET_MAGIC = "MEGCOHPTS"
VECTOR_MAGIC = "MMATRIX1DX"
PACKAGE_MAGIC = "SNSCOHFACE"
GROUP_MAGIC = "GROUPCXCDATAFACE"

CLASSES = ("active", "control", "act_ctl")

# The dataset's fields 3 to 38 in file order: number in the document, name, kind.
DATASET_FIELDS = [
    (3, "m_headerInt11", "i32"),
    (4, "m_cohTimTotal", "i64"),
    (5, "m_selectBegin", "i64"),
    (6, "m_selectEnd", "i64"),
    (7, "m_rowCrt", "i64"),
    (8, "m_columnCrt", "i64"),
    (9, "m_snsRowTotal", "i64"),
    (10, "m_snsColTotal", "i64"),
    (11, "data marker", "i32"),
    (12, "grid", "grid"),
    (13, "m_headerInt0", "i32"),
    (13, "m_headerInt1", "i32"),
    (13, "m_headerInt2", "i32"),
    (13, "m_headerInt3", "i32"),
    (14, "m_chnlTypeID", "i32"),
    (15, "m_headerInt5", "i32"),
    (15, "m_headerInt6", "i32"),
    (15, "m_headerInt7", "i32"),
    (15, "m_headerInt8", "i32"),
    (16, "m_samplingRate", "f64"),
    (17, "m_anaLatencyBegin", "f64"),
    (18, "m_anaLatencyEnd", "f64"),
    (19, "m_headerLong0", "i64"),
    (19, "m_headerLong1", "i64"),
    (19, "m_headerLong2", "i64"),
    (19, "m_headerLong3", "i64"),
    (19, "m_headerLong4", "i64"),
    (20, "m_headerReal0", "f64"),
    (21, "m_headerReal1", "f64"),
    (22, "m_cxcName", "str"),
    (23, "m_tscsInfo", "bool"),
    (24, "m_headerInt9", "i32"),
    (25, "m_headerInt10", "i32"),
    (26, "m_headerReal2", "f64"),
    (27, "m_dataMin", "f64"),
    (28, "m_dataMax", "f64"),
    (29, "m_dataMean", "f64"),
    (30, "m_rmsNormalized", "i32"),
    (31, "m_rmsValue", "f64"),
    (32, "m_cxcCmptInfo", "str"),
    (33, "m_headerLong5", "i64"),
    (34, "m_showRangeMin", "f64"),
    (35, "m_showRangeMax", "f64"),
    (36, "m_showRangeMid", "f64"),
    (37, "m_headerInt12", "i32"),
    (38, "m_headerInt13", "i32"),
]

# Version word -> the body as ranges of the numbers above.
DATASET_LAYOUTS = {
    20160311: [(3, 38)],
    20130511: [(3, 32)],
    20130402: [(3, 31)],
    20120714: [(13, 25), (3, 12)],
    20080601: [],
}

SMALL_DATASET = [
    ("m_snsRowTotal", "i64"),
    ("m_rowCrt", "i64"),
    ("m_columnCrt", "i64"),
    ("m_anaLatencyBegin", "f64"),
    ("m_anaLatencyEnd", "f64"),
    ("m_headerInt9", "i32"),
    ("m_tscsInfo", "bool"),
    ("m_cxcName", "str"),
]

# The shortest pair vector: an 8-bit magic without a marker, fields 2 to 8, 10 and 11, no block.
SMALLEST_VECTOR = 11 + 4 + 8 + 8 + 8 + 2 + 8 + 4 + 8 + 4

# The characters of code page 1252; five of its bytes have none and stand for themselves.
UNASSIGNED = b"\x81\x8d\x8f\x90\x9d"
CODE_PAGE = [
    chr(byte) if byte in UNASSIGNED else bytes([byte]).decode("cp1252") for byte in range(256)
]


class FormatError(Exception):
    """The bytes are no record of the kind that was asked for."""


class Source:
    """The bytes of a file and the place reached in them."""

    def __init__(self, data):
        self.data = bytes(data)
        self.position = 0

    @property
    def left(self):
        return len(self.data) - self.position

    def take(self, count):
        if not 0 <= count <= self.left:
            raise FormatError(f"{count} bytes wanted at {self.position}, {self.left} left")
        begin = self.position
        self.position += count
        return self.data[begin:self.position]

    def _number(self, code):
        return struct.unpack("<" + code, self.take(struct.calcsize("<" + code)))[0]

    def i32(self):
        return self._number("i")

    def u32(self):
        return self._number("I")

    def u16(self):
        return self._number("H")

    def i64(self):
        return self._number("q")

    def f64(self):
        return self._number("d")

    def bool(self):
        return self.take(1) != b"\0"

    def block(self, count):
        return np.frombuffer(self.take(8 * count), dtype="<f8")

    def str(self):
        wide = self.data[self.position:self.position + 3] == b"\xff\xfe\xff"
        if wide:
            self.take(3)
        count = self._number("B")
        if count == 0xFF:
            count = self._number("H")
            if count == 0xFFFF:
                count = self._number("I")
                if count == 0xFFFFFFFF:
                    count = self._number("Q")
        if wide:
            return self.take(2 * count).decode("utf-16-le", "surrogatepass")
        return "".join(CODE_PAGE[byte] for byte in self.take(count))

    def begin(self, magic, versions):
        """Reads magic and version word; returns the version."""
        found = self.str()
        if found != magic:
            raise FormatError(f"{magic} wanted, {found[:40]!r} found")
        version = self.u32()
        if version not in versions:
            raise FormatError(f"version {version} of {magic} is not known")
        return version


def vector(source):
    record = {"version": source.begin(VECTOR_MAGIC, [20120222])}
    record["current index"] = source.i64()
    record["channel A"] = source.i64()
    record["channel B"] = source.i64()
    record["pair flag"] = source.u16()
    for length, block in (("length", "values"), ("backup length", "backup")):
        record[length] = source.i64()
        present = source.i32() != 0
        record[block] = source.block(max(record[length], 0)) if present else None
    return record


def grid(source, record):
    rows, columns = record["m_snsRowTotal"], record["m_snsColTotal"]
    if not record["data marker"] or rows == 0:
        return []
    if rows < 0 or columns < 0:
        raise FormatError(f"a grid of {rows} x {columns} vectors")
    if rows * columns > source.left // SMALLEST_VECTOR:
        raise FormatError(f"a grid of {rows} x {columns} vectors in {source.left} bytes")
    return [vector(source) for _ in range(rows * columns)]


def dataset(source):
    version = source.begin(DATASET_MAGIC, [*DATASET_LAYOUTS, 20080720])
    record = {"version": version}
    if version == 20080720:
        for name, kind in SMALL_DATASET:
            record[name] = getattr(source, kind)()
        return record
    for first, last in DATASET_LAYOUTS[version]:
        for number, name, kind in DATASET_FIELDS:
            if first <= number <= last:
                record[name] = (grid(source, record) if kind == "grid"
                                else getattr(source, kind)())
    return record


def package(source):
    record = {"version": source.begin(PACKAGE_MAGIC, [20121016, 20080721])}
    record["current class"] = source.i32()
    for name in CLASSES:
        record[name] = dataset(source) if source.i32() else None
    if record["version"] == 20080721:
        record["reserved"] = [source.i32(), source.i32()]
    record["identifier"] = source.i32()
    record["name"] = source.str()
    if record["version"] == 20121016:
        record["text"] = source.str()
    record["show flag"] = source.bool()
    if record["version"] == 20080721:
        record["reserved"] += [source.i64(), source.i64()]
    return record


def group(source):
    record = {"version": source.begin(GROUP_MAGIC, [20180725])}
    record["current index"] = source.i32()
    count = source.i32()
    if count > source.left // 4:
        raise FormatError(f"{count} entries in {source.left} bytes")
    record["entries"] = [dataset(source) if source.i32() else None for _ in range(count)]
    record["identifier"] = source.i32()
    record["name"] = source.str()
    record["text"] = source.str()
    record["show flag"] = source.bool()
    record["operation code"] = source.i32()
    return record


def read_file(path, record=dataset):
    """The record that fills the file at path; `record` is the function of its kind."""
    with open(path, "rb") as file:
        source = Source(file.read())
    return record(source)
