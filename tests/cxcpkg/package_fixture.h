// Packages and groups for tests: filled datasets handed over, records passed through files.
#pragma once

#include "cxcpkg/CGroupMeegCxcFacezq.h"
#include "cxcpkg/CSnsCohFacezq.h"
#include "tests/cxcfile/golden_dataset.h"
#include "tests/support/ArchiveFile.h"
#include "tests/support/DatasetFixture.h"
#include "tests/support/Outcome.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace test {

using Texts = std::vector<std::string>;

constexpr int active = 0;
constexpr int control = 1;
constexpr int actCtl = 2;

constexpr __int64 leastIndex = -0x7FFFFFFFFFFFFFFFLL - 1;
constexpr __int64 mostIndex = 0x7FFFFFFFFFFFFFFFLL;

/// A dataset with a different value in every cell, for a package or a group to own.
inline CSnsCohDatazq* newFilled(__int64 rows, __int64 cols, __int64 nTim) {
    auto* const data = new CSnsCohDatazq;
    fill(*data, rows, cols, nTim);
    return data;
}

/// One pair with one slice.
inline CSnsCohDatazq* newSingle(double value) {
    auto* const data = new CSnsCohDatazq;
    fillSlice(*data, 1, 1, {value});
    return data;
}

/// A dataset that is stored as the golden record.
inline CSnsCohDatazq* newGolden() {
    auto* const data = new CSnsCohDatazq;
    golden::fill(*data);
    return data;
}

/// A package with datasets of 3 x 3 x 5, 3 x 3 x 2 and 3 x 3 x 7.
struct FullPackage : CSnsCohFacezq {
    FullPackage() {
        setCohData(newFilled(3, 3, 5), active);
        setCohData(newFilled(3, 3, 2), control);
        setCohData(newFilled(3, 3, 7), actCtl);
    }
};

/// A group that releases its datasets at the end.
struct CleanGroup : CGroupMeegCxcFacezq {
    ~CleanGroup() { cleanSnsCohPkg(); }

    /// Hands over what `data` points to, null included.
    void append(CSnsCohDatazq* data) { setCohData(data, 1000000); }
    CSnsCohDatazq& at(int index) {
        return *static_cast<CSnsCohDatazq*>(m_cohDatasets.GetAt(index));
    }
    std::string name(int index) { return ascii(at(index).m_cxcName); }
    int size() { return static_cast<int>(getTotalCohDataset()); }
};

/// An application whose user works on while a message or question stands.
class MeddlingApp : public TestApp {
public:
    std::function<void()> meddle;
    int DoMessageBox(LPCTSTR prompt, UINT type, UINT id) override {
        if (meddle) meddle();
        return TestApp::DoMessageBox(prompt, type, id);
    }
};

/// Whether fields stand in memory in the given order.
inline void expectAscending(const std::vector<const void*>& fields) {
    for (std::size_t i = 1; i < fields.size(); ++i)
        EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
}

template <class Holder>
std::string stored(Holder& holder) {
    ArchiveFile file;
    EXPECT_EQ(file.store([&](CArchive& ar) { return holder.serialize(ar); }), 1);
    return file.bytes();
}

/// Bytes that have reached the file when a stored holder's archive is not closed yet.
template <class Holder>
std::size_t bytesBeforeClosing(Holder& holder) {
    ArchiveFile file;
    return file.store([&](CArchive& ar) {
        EXPECT_EQ(holder.serialize(ar), 1);
        return static_cast<std::size_t>(ar.GetFile()->GetLength());
    });
}

template <class Holder>
int load(Holder& holder, const Bytes& bytes) {
    return ArchiveFile(bytes).load([&](CArchive& ar) { return holder.serialize(ar); });
}

/// What loading comes to, with exceptions as outcomes.
template <class Holder>
Outcome outcomeOfLoading(Holder& holder, const Bytes& bytes) {
    return outcomeOf([&] { return load(holder, bytes); });
}

/// The first difference is named by its offset.
inline void expectBytes(const std::string& actual, const std::string& expected) {
    for (std::size_t i = 0; i < actual.size() && i < expected.size(); ++i)
        ASSERT_EQ(actual[i], expected[i]) << "offset " << i;
    ASSERT_EQ(actual.size(), expected.size());
}

/// The record of a dataset of one pair with one slice, named "Rest".
inline Bytes smallRecord(double value) {
    return golden::opening(golden::newestVersion)
        .append(golden::sizes(1, 1, 1))
        .i32(1)
        .append(golden::vectorRecord({value}))
        .append(golden::header());
}

/// A dataset record that is refused for its magic string and ends with it.
inline Bytes refusedRecord() {
    return Bytes().string("NOTCOHPTS");
}

}  // namespace test
