#include "tests/trust/ReferenceRecords.h"

#include "tests/support/Bytes.h"

#include <algorithm>
#include <cstring>

namespace reference {
namespace {

using test::Bytes;

template <class T>
T numberIn(const std::string& bytes) {
    T value = 0;
    std::memcpy(&value, bytes.data(), sizeof(T));
    return value;
}

int takeInt(Reader& in) {
    return numberIn<int>(in.take(4));
}

long long takeLong(Reader& in) {
    return numberIn<long long>(in.take(8));
}

std::string text(const char* ascii) {
    return Bytes().string(ascii).str();
}

// A claim beyond this needs the bytes for it in the file.
constexpr unsigned long long unbacked = 64ull << 20;

bool backed(const Reader& in, long long count, unsigned long long memoryEach, double storedEach) {
    if (count < 0) return false;
    return static_cast<unsigned long long>(count) <= unbacked / memoryEach ||
           static_cast<double>(count) * storedEach <= static_cast<double>(in.left());
}

// --- strings -----------------------------------------------------------------------------------

unsigned codePoint(unsigned char byte) {
    constexpr unsigned upper[32] = {0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021,
                                    0x2C6,  0x2030, 0x160,  0x2039, 0x152,  0x8D,   0x17D,  0x8F,
                                    0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};
    return byte >= 0x80 && byte < 0xA0 ? upper[byte - 0x80] : byte;
}

unsigned long long takeLength(Reader& in, int& charSize) {
    charSize = 1;
    auto byte = static_cast<unsigned char>(in.take(1)[0]);
    if (byte != 0xFF) return byte;
    auto word = numberIn<unsigned short>(in.take(2));
    if (word == 0xFFFE) {
        charSize = 2;
        byte = static_cast<unsigned char>(in.take(1)[0]);
        if (byte != 0xFF) return byte;
        word = numberIn<unsigned short>(in.take(2));
    }
    if (word != 0xFFFF) return word;
    const auto dword = numberIn<unsigned>(in.take(4));
    if (dword != 0xFFFFFFFF) return dword;
    return numberIn<unsigned long long>(in.take(8));
}

// The string as it would be stored.
std::string takeString(Reader& in) {
    int charSize = 1;
    const unsigned long long length = takeLength(in, charSize);
    if (length > in.left()) throw Ended();
    const std::string bytes = in.take(length * static_cast<unsigned long long>(charSize));
    Bytes stored;
    stored.u8(0xFF).u16(0xFFFE).length(length);
    for (std::size_t i = 0; i < bytes.size(); i += static_cast<std::size_t>(charSize)) {
        const auto low = static_cast<unsigned char>(bytes[i]);
        stored.u16(charSize == 1 ? codePoint(low)
                                 : low | static_cast<unsigned char>(bytes[i + 1]) << 8);
    }
    return stored.str();
}

bool takesMagic(Reader& in, const char* magic) {
    return takeString(in) == text(magic);
}

// --- fields of a dataset -------------------------------------------------------------------------

enum class Kind { i32, i64, f64, flag, text };

struct Item {
    int number;
    Kind kind;
};

// The rows of the format's table, a run of like members one by one.
const std::vector<Item>& items() {
    static const std::vector<Item> list = {
        {3, Kind::i32},  {4, Kind::i64},  {5, Kind::i64},   {6, Kind::i64},   {7, Kind::i64},
        {8, Kind::i64},  {9, Kind::i64},  {10, Kind::i64},  {13, Kind::i32},  {13, Kind::i32},
        {13, Kind::i32}, {13, Kind::i32}, {14, Kind::i32},  {15, Kind::i32},  {15, Kind::i32},
        {15, Kind::i32}, {15, Kind::i32}, {16, Kind::f64},  {17, Kind::f64},  {18, Kind::f64},
        {19, Kind::i64}, {19, Kind::i64}, {19, Kind::i64},  {19, Kind::i64},  {19, Kind::i64},
        {20, Kind::f64}, {21, Kind::f64}, {22, Kind::text}, {23, Kind::flag}, {24, Kind::i32},
        {25, Kind::i32}, {26, Kind::f64}, {27, Kind::f64},  {28, Kind::f64},  {29, Kind::f64},
        {30, Kind::i32}, {31, Kind::f64}, {32, Kind::text}, {33, Kind::i64},  {34, Kind::f64},
        {35, Kind::f64}, {36, Kind::f64}, {37, Kind::i32},  {38, Kind::i32},
    };
    return list;
}

std::size_t indexOf(int item) {
    std::size_t i = 0;
    while (items()[i].number != item)
        ++i;
    return i;
}

std::string takeField(Reader& in, Kind kind) {
    switch (kind) {
        case Kind::i32:
            return in.take(4);
        case Kind::flag:
            return std::string(1, in.take(1)[0] == 0 ? '\0' : '\1');
        case Kind::text:
            return takeString(in);
        default:
            return in.take(8);
    }
}

}  // namespace

std::string Reader::take(unsigned long long n) {
    if (n > left()) {
        m_at = m_bytes.size();
        throw Ended();
    }
    return takeSome(n);
}

std::string Reader::takeSome(unsigned long long n) {
    const auto step = static_cast<std::size_t>(std::min(n, left()));
    m_at += step;
    return m_bytes.substr(m_at - step, step);
}

// --- vector --------------------------------------------------------------------------------------

bool Vector::read(Reader& in) {
    if (!takesMagic(in, "MMATRIX1DX")) {
        in.say("Unknown MMatrix1D file!");
        return false;
    }
    if (takeInt(in) != 20120222) {
        in.say("MMatrix1D format error!");
        return false;
    }
    data.reset();
    size = 0;
    curIdx.assign(8, '\0');
    for (std::string* field : {&curIdx, &chnlA, &chnlB})
        *field = in.take(8);
    pairFlag = in.take(2);
    size = takeLong(in);
    return readValues(in) && readBackup(in);
}

bool Vector::readValues(Reader& in) {
    if (takeInt(in) == 0 || size < 1) return true;
    if (!backed(in, size, 8, 8)) {
        size = 0;
        in.say("Not enough memory!");
        return false;
    }
    const auto bytes = static_cast<unsigned long long>(size) * 8;
    in.claim(bytes);
    data = in.takeSome(bytes);
    const bool whole = data->size() == bytes;
    data->resize(static_cast<std::size_t>(bytes), '\0');
    if (!whole) in.say("Read Cxc data error!?");
    return whole;
}

bool Vector::readBackup(Reader& in) {
    const long long length = takeLong(in);
    const bool follows = takeInt(in) != 0 && length > 0;
    // A stored length never exceeds an array that stays.
    if (follows || length > bkSize) bkData.reset();
    bkSize = length;
    if (!follows) return true;
    if (!backed(in, length, 8, 8)) {
        in.say("Not enough memory!");
        return false;
    }
    const auto bytes = static_cast<unsigned long long>(length) * 8;
    in.claim(bytes);
    bkData = in.takeSome(bytes);
    const bool any = !bkData->empty();
    bkData->resize(static_cast<std::size_t>(bytes), '\0');
    if (!any) in.say("Read back up data error!?");
    return any;
}

std::string Vector::stored() const {
    const auto block = [](const std::string& values, long long count) {
        return values.substr(0, static_cast<std::size_t>(std::max<long long>(count, 0)) * 8);
    };
    std::string bytes = text("MMATRIX1DX") + Bytes().u32(20120222).str();
    bytes += curIdx + chnlA + chnlB + pairFlag + Bytes().i64(size).str();
    const bool values = data.has_value() && size > 0;
    bytes += Bytes().i32(values ? 1 : 0).str();
    if (values) bytes += block(*data, size);
    bytes += Bytes().i64(bkSize).i32(bkData.has_value() ? 1 : 0).str();
    if (bkData.has_value()) bytes += block(*bkData, bkSize);
    return bytes;
}

// --- dataset -------------------------------------------------------------------------------------

Dataset::Dataset() {
    for (const Item& item : items()) {
        const bool four = item.kind == Kind::i32;
        const bool one = item.kind == Kind::flag;
        fields.emplace_back(four ? 4 : one ? 1 : 8, '\0');
    }
    // What a new dataset has besides zeros.
    const auto set = [&](int item, const std::string& form) { fields[indexOf(item)] = form; };
    set(6, Bytes().i64(1).str());
    set(20, Bytes().f64(0.1).str());
    set(21, Bytes().f64(1.0).str());
    set(22, text("CxcTrial"));
    set(32, text("CxC ComputeInfo"));
    set(35, Bytes().f64(1.0).str());
    set(37, Bytes().i32(1).str());
}

const std::string& Dataset::field(int item) const {
    return fields[indexOf(item)];
}

long long Dataset::number(int item) const {
    return numberIn<long long>(field(item));
}

void Dataset::clean() {
    hasGrid = false;
    grid.clear();
    realRows = 0;
    realCols = 0;
    for (int item = 4; item <= 10; ++item)
        fields[indexOf(item)].assign(8, '\0');
}

void Dataset::readItems(Reader& in, int first, int last) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Item item = items()[i];
        if (item.number >= first && item.number <= last) fields[i] = takeField(in, item.kind);
    }
}

bool Dataset::readGridPart(Reader& in) {
    clean();
    readItems(in, 3, 10);
    const int marker = takeInt(in);
    if (marker == 0 || number(9) == 0) return true;
    return readGrid(in);
}

bool Dataset::readGrid(Reader& in) {
    constexpr double leastRecord = 65;  // bytes of a vector without values, with a narrow magic
    const long long nr = number(9);
    const long long nc = number(10);
    const bool table = nc < 1 ? nr >= 0 && nr <= 1 << 20
                              : backed(in, nr, 8, static_cast<double>(nc) * leastRecord);
    if (!table) return false;
    in.claim(static_cast<unsigned long long>(nr) * 8 + 64);
    std::vector<std::vector<Vector>> made;
    for (long long r = 0; r < nr; ++r) {
        if (!backed(in, nc, 64, leastRecord)) {
            clean();
            return false;
        }
        in.claim(static_cast<unsigned long long>(nc) * 64 + 64);
        made.emplace_back();
        for (long long c = 0; c < nc; ++c) {
            made.back().emplace_back();
            if (!made.back().back().read(in)) {
                clean();
                return false;
            }
        }
    }
    grid = std::move(made);
    realRows = nr;
    realCols = nc;
    hasGrid = true;
    return true;
}

void Dataset::read20080720(Reader& in) {
    for (const int item : {9, 7, 8, 17, 18, 24, 23, 22})
        fields[indexOf(item)] = takeField(in, items()[indexOf(item)].kind);
}

bool Dataset::read(Reader& in) {
    if (!takesMagic(in, "MEGCOHPTS")) {
        in.say("The opened file is not CCoherenceData09File or corrupted!");
        return false;
    }
    const int version = takeInt(in);
    int last = 0;
    switch (version) {
        case 20160311:
            last = 38;
            break;
        case 20130511:
            last = 32;
            break;
        case 20130402:
            last = 31;
            break;
        case 20120714:
            clean();
            readItems(in, 13, 25);
            return readGridPart(in);
        case 20080720:
            read20080720(in);
            return true;
        case 20080601:
            return true;
        default:
            in.say("Wrong CxC data format!");
            return false;
    }
    if (!readGridPart(in)) return false;
    readItems(in, 13, last);
    return true;
}

bool Dataset::covered() const {
    return hasGrid && number(9) >= 1 && number(10) >= 1 && number(9) <= realRows &&
           number(10) <= realCols;
}

std::string Dataset::stored() const {
    std::string bytes = text("MEGCOHPTS") + Bytes().u32(20160311).str();
    std::size_t i = 0;
    for (; items()[i].number <= 10; ++i)
        bytes += fields[i];
    bytes += Bytes().i32(covered() ? 1 : 0).str();
    for (long long r = 0; covered() && r < number(9); ++r) {
        for (long long c = 0; c < number(10); ++c)
            bytes += grid[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)].stored();
    }
    for (; i < fields.size(); ++i)
        bytes += fields[i];
    return bytes;
}

// --- package -------------------------------------------------------------------------------------

Package::Package() : name(text("SnsCohFace")), info(text("Unknown")) {}

bool Package::read(Reader& in) {
    if (!takesMagic(in, "SNSCOHFACE")) {
        in.say("Unknown Coherence file!");
        return false;
    }
    const int version = takeInt(in);
    if (version != 20121016 && version != 20080721) {
        in.say("Coherence data format error!");
        return false;
    }
    for (std::optional<Dataset>& slot : slots)
        slot.reset();
    current = in.take(4);
    for (int i = 0; i < 3; ++i) {
        if (takeInt(in) == 0) continue;
        slots[i].emplace();
        // A Control record that is refused is passed over.
        if (!slots[i]->read(in) && i != 1) return false;
    }
    if (version == 20080721) in.take(8);
    id = in.take(4);
    name = takeString(in);
    if (version == 20121016) info = takeString(in);
    show = takeField(in, Kind::flag);
    if (version == 20080721) {
        in.take(8);
        in.take(8);
    }
    return true;
}

std::string Package::stored() const {
    std::string bytes = text("SNSCOHFACE") + Bytes().u32(20121016).str() + current;
    for (const std::optional<Dataset>& slot : slots) {
        bytes += Bytes().i32(slot ? 1 : 0).str();
        if (slot) bytes += slot->stored();
    }
    return bytes + id + name + info + show;
}

// --- group ---------------------------------------------------------------------------------------

Group::Group() : name(text("SnsCohFace")), info(text("Unknown")) {}

bool Group::readEntries(Reader& in) {
    current = in.take(4);
    const int count = takeInt(in);
    for (int i = 0; i < count; ++i) {
        if (takeInt(in) == 0) continue;
        Dataset entry;
        if (!entry.read(in)) return false;
        entries.push_back(std::move(entry));
    }
    return true;
}

bool Group::read(Reader& in) {
    if (!takesMagic(in, "GROUPCXCDATAFACE")) {
        in.say("Unknown Coherence file!");
        return false;
    }
    if (takeInt(in) != 20180725) {
        in.say("Group Cxc data format error!");
        return false;
    }
    entries.clear();
    if (!readEntries(in)) return false;
    id = in.take(4);
    name = takeString(in);
    info = takeString(in);
    show = takeField(in, Kind::flag);
    operation = in.take(4);
    return true;
}

std::string Group::stored() const {
    std::string bytes = text("GROUPCXCDATAFACE") + Bytes().u32(20180725).str() + current;
    bytes += Bytes().i32(static_cast<int>(entries.size())).str();
    for (const Dataset& entry : entries)
        bytes += Bytes().i32(1).str() + entry.stored();
    return bytes + id + name + info + show + operation;
}

}  // namespace reference
