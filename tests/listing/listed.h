// What the managers must show of a record, said by a second reader of the same bytes; what they
// show; and the records: the smallest inputs that the fuzz targets keep, and the hand-made ones
// with every byte damaged.
#pragma once

#include "cxcpkg/CSnsCohFacezq.h"
#include "framework.h"
#include "tests/trust/ReferenceRecords.h"
#include "tests/trust/RoughFile.h"
#include "tests/trust/golden_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace listed {

using Text = std::wstring;
using Texts = std::vector<Text>;

constexpr int least = std::numeric_limits<int>::min();
constexpr int most = std::numeric_limits<int>::max();
// Bytes of a pair vector without values, and rows that the list of pairs may have beyond the grid.
constexpr std::size_t leastPair = 65;
constexpr long long rowsBeyond = 1000;

// ---- what must be seen

template <class Value>
Text formatted(const wchar_t* format, Value value) {
    CString text;
    text.Format(format, value);
    return text.GetString();
}

template <class Value>
Value valueOf(const std::string& stored, std::size_t at = 0) {
    Value value = 0;
    std::memcpy(&value, stored.data() + at, sizeof(value));
    return value;
}

// Of a string's stored form: two bytes each behind marker and length; controls end at a zero.
inline Text textOf(const std::string& stored) {
    std::size_t at = 4;
    if (valueOf<unsigned char>(stored, 3) == 0xFF)
        at = valueOf<unsigned short>(stored, 4) == 0xFFFF ? 10 : 6;
    Text text;
    for (; at < stored.size() && valueOf<wchar_t>(stored, at) != 0; at += sizeof(wchar_t))
        text += valueOf<wchar_t>(stored, at);
    return text;
}

inline Text number(long long value) {
    return std::to_wstring(value);
}

inline double real(const reference::Dataset& data, int item) {
    return valueOf<double>(data.field(item));
}

inline bool isShown(const reference::Dataset& data) {
    return data.field(23)[0] != 0;
}

inline Text joined(const Texts& texts) {
    Text all;
    for (const Text& text : texts)
        all += (&text == texts.data() ? L"" : L"|") + text;
    return all;
}

// Row of a package's list.
inline Text datasetRow(const reference::Dataset& data) {
    const auto narrow = [&](int item) { return number(static_cast<int>(data.number(item))); };
    return joined({textOf(data.field(22)), textOf(data.field(32)), formatted(L"%f", real(data, 17)),
                   formatted(L"%f", real(data, 18)), narrow(9), narrow(7), narrow(8)});
}

// Row of a group's list.
inline Text entryRow(const reference::Dataset& data, bool active, bool shown) {
    return joined(
        {textOf(data.field(22)), active ? L"Active" : L"Layer", shown ? L"Show" : L"Hide",
         number(data.number(4)) + L": (" + number(data.number(5)) + L"->" + number(data.number(6)),
         formatted(L"%.3f", real(data, 17)) + L"->" + formatted(L"%.3f", real(data, 18)),
         formatted(L"%.3f", real(data, 20)) + L"->" + formatted(L"%.3f", real(data, 21)),
         textOf(data.field(32))});
}

// Rows of the list of pairs, and of the box of row sensors.
inline long long pairRows(const reference::Dataset& data) {
    if (!data.hasGrid) return 0;
    const long long wanted = static_cast<int>(data.number(9));
    const long long there = data.realCols < 1 ? 0 : std::max(data.realRows, data.realCols);
    return std::clamp(wanted, 0LL, there + rowsBeyond);
}

inline long long sensorRows(const reference::Dataset& data) {
    if (!data.hasGrid) return 0;
    const long long there = data.realCols < 1 ? std::min(data.realRows, rowsBeyond) : data.realRows;
    return std::clamp(data.number(9), 0LL, there);
}

inline const reference::Vector* pairAt(const reference::Dataset& data, long long row,
                                       long long col) {
    const bool inside = row >= 0 && row < data.realRows && col >= 0 && col < data.realCols;
    return inside ? &data.grid[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)]
                  : nullptr;
}

inline double valueAt(const reference::Vector& pair, long long slice) {
    const auto at = static_cast<std::size_t>(slice) * sizeof(double);
    const bool there = pair.data.has_value() && slice < pair.size && at < pair.data->size();
    return there ? valueOf<double>(*pair.data, at) : 0.0;
}

// What a user may have changed of a dataset since it was read.
struct Chosen {
    long long slice;
    long long row;
};

inline Text pairRow(const reference::Dataset& data, const Chosen& chosen, int item) {
    const reference::Vector* const pair = pairAt(data, chosen.row, item);
    const auto channel = [&](const std::string& stored) {
        return number(static_cast<int>(valueOf<long long>(stored)));
    };
    const long long slices = data.number(4);
    const long long slice = std::clamp(chosen.slice, 0LL, std::max(slices, 1LL) - 1);
    const double value = pair == nullptr || slices < 1 ? 0.0 : valueAt(*pair, slice);
    return joined({L"CxC" + number(item + 1LL), pair == nullptr ? L"0" : channel(pair->chnlA),
                   pair == nullptr ? L"0" : channel(pair->chnlB), number(slices),
                   number(chosen.slice), formatted(L"%f", value)});
}

// ---- what is seen

inline Text rowOf(const CListCtrl& list, int row, int columns) {
    Texts texts;
    for (int column = 0; column < columns; ++column)
        texts.emplace_back(list.GetItemText(row, column).GetString());
    return joined(texts);
}

inline Text windowText(HWND window) {
    CString text;
    CWnd::FromHandle(window)->GetWindowText(text);
    return text.GetString();
}

// Up to eight of `count` items: the first ones, one in the middle, the last.
inline std::vector<int> someOf(int count) {
    std::vector<int> items;
    for (int i = 0; i < count; ++i) {
        if (count <= 8 || i < 3 || i == count / 2 || i == count - 1) items.push_back(i);
    }
    return items;
}

// The class and the dataset of each row of a package's list.
inline std::vector<int> classesOf(const reference::Package& model) {
    std::vector<int> classes;
    for (int cls = 0; cls < 3; ++cls) {
        if (model.slots[cls]) classes.push_back(cls);
    }
    return classes;
}

inline CSnsCohDatazq* slotOf(const CSnsCohFacezq& package, int cls) {
    return cls == 0 ? package.m_cohActive : cls == 1 ? package.m_cohControl : package.m_cohActCtl;
}

// ---- records

using Files = std::vector<golden::File>;

inline Files corpus(const std::string& kind) {
    Files files;
    const std::filesystem::path folder = std::filesystem::path(CXC_CORPUS) / kind;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream in(entry.path(), std::ios::binary);
        files.push_back(
            {entry.path().filename().string(), {std::istreambuf_iterator<char>(in), {}}});
    }
    std::sort(files.begin(), files.end(),
              [](const golden::File& a, const golden::File& b) { return a.name < b.name; });
    return files;
}

// Gives bytes to `use`, with their name in every message. Stops at the first that fails.
template <class Use>
class Cases {
public:
    explicit Cases(Use use) : m_use(use) {}

    void whole(const Files& files) {
        for (const golden::File& file : files)
            check(file.bytes, file.name + " whole, ", file.bytes.size());
    }
    // Cut at every `step`th byte, and that byte replaced in the ways of the tests of damage.
    void damaged(const Files& files, std::size_t step) {
        for (const golden::File& file : files) {
            for (std::size_t at = 0; at < file.bytes.size(); at += step) {
                check(file.bytes.substr(0, at), file.name + " cut at ", at);
                const auto old = static_cast<unsigned char>(file.bytes[at]);
                for (const unsigned value : {0x00u, 0x7Fu, 0x80u, 0xFFu, old ^ 0xFFu, old ^ 1u})
                    if (value != old) replace(file, at, value);
            }
        }
    }
    int tell() const {
        std::printf("%d cases\n", m_count);
        return m_count;
    }

private:
    void replace(const golden::File& file, std::size_t at, unsigned value) {
        std::string bytes = file.bytes;
        bytes[at] = static_cast<char>(value);
        check(bytes, file.name + " with " + std::to_string(value) + " at ", at);
    }
    void check(const std::string& bytes, const std::string& what, std::size_t at) {
        if (testing::Test::HasFailure()) return;
        SCOPED_TRACE(what + std::to_string(at));
        ++m_count;
        m_use(bytes);
    }

    Use m_use;
    int m_count = 0;
};

// Reads the record in both ways. Returns whether both end alike.
template <class Record, class Model>
bool readBoth(const std::string& bytes, Record& record, Model& model) {
    reference::Reader in(bytes);
    const test::Outcome expected = reference::outcomeOfReading(model, in);
    test::RoughFile file(bytes);
    const test::Outcome outcome = test::passThrough(file, CArchive::load, record);
    EXPECT_STREQ(test::name(outcome), test::name(expected));
    return outcome == expected;
}

}  // namespace listed
