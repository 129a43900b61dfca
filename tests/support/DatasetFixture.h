// Datasets for tests: filled ones with a different value in every cell, and ones whose counters
// and vectors disagree with the grid, as files and hosts can make them.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/allocation.h"
#include "framework.h"
#include "siblings/matrix/CMMatrix2Dzq.h"

#include <functional>
#include <string>
#include <vector>

namespace test {

/// The value in cell (t, r, c) of a filled dataset: its digits are r + 1, c + 1, t + 1.
inline double cellValue(__int64 t, __int64 r, __int64 c) {
    return static_cast<double>(100 * (r + 1) + 10 * (c + 1) + (t + 1));
}

inline CWavChnlChnlDatazq& pairOf(CSnsCohData& data, __int64 r, __int64 c) {
    return data.m_mCC[r][c];
}

inline double& cell(CSnsCohData& data, __int64 t, __int64 r, __int64 c) {
    return data.m_mCC[r][c].m_data[t];
}

inline void fill(CSnsCohData& data, __int64 rows, __int64 cols, __int64 nTim) {
    data.checkInitSnsCohData(rows, cols, nTim, true);
    for (__int64 r = 0; r < rows; ++r) {
        for (__int64 c = 0; c < cols; ++c) {
            for (__int64 t = 0; t < nTim; ++t)
                cell(data, t, r, c) = cellValue(t, r, c);
        }
    }
}

/// One slice, values row by row.
inline void fillSlice(CSnsCohData& data, __int64 rows, __int64 cols,
                      const std::vector<double>& values) {
    data.checkInitSnsCohData(rows, cols, 1, true);
    for (__int64 r = 0; r < rows; ++r) {
        for (__int64 c = 0; c < cols; ++c)
            cell(data, 0, r, c) = values[static_cast<std::size_t>(r * cols + c)];
    }
}

inline void setPair(CSnsCohData& data, __int64 r, __int64 c, const std::vector<double>& values) {
    double* const array = new double[values.size() + 1];
    for (std::size_t t = 0; t < values.size(); ++t)
        array[t] = values[t];
    pairOf(data, r, c).setData(array, static_cast<__int64>(values.size()));
}

inline std::vector<double> valuesOf(CSnsCohData& data, __int64 r, __int64 c) {
    CWavChnlChnlDatazq& pair = pairOf(data, r, c);
    return pair.m_data == nullptr ? std::vector<double>()
                                  : std::vector<double>(pair.m_data, pair.m_data + pair.m_size);
}

/// A vector that claims values but has none, as a record can leave it.
inline void claimValues(CSnsCohData& data, __int64 r, __int64 c, __int64 size) {
    pairOf(data, r, c).cleanData();
    pairOf(data, r, c).m_size = size;
}

/// Element (r, c) as in slice t of a filled dataset.
inline void fillMatrix(CMMatrix2Dzq& matrix, __int64 rows, __int64 cols, __int64 t) {
    matrix.checkInit(rows, cols, false);
    for (__int64 r = 0; r < rows; ++r) {
        for (__int64 c = 0; c < cols; ++c)
            matrix.getDataPP()[r][c] = cellValue(t, r, c);
    }
}

/// ASCII text of a string.
inline std::string ascii(const CString& text) {
    std::string result;
    for (int i = 0; i < text.GetLength(); ++i)
        result += static_cast<char>(text.GetString()[i]);
    return result;
}

/// While it lives, the n-th allocation of the library (counted from 1) and all later ones fail;
/// 0 lets all succeed and only counts them.
class FailingMemory {
public:
    explicit FailingMemory(int n, bool onlyOne = false) {
        s_first = n;
        s_onlyOne = onlyOne;
        s_count = 0;
        cxc::setAllocationHook(refuse);
    }
    ~FailingMemory() { cxc::setAllocationHook(nullptr); }
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    static int count() { return s_count; }

private:
    static bool refuse(std::size_t) {
        ++s_count;
        return s_first > 0 && (s_onlyOne ? s_count == s_first : s_count >= s_first);
    }

    inline static int s_first = 0;
    inline static bool s_onlyOne = false;
    inline static int s_count = 0;
};

struct HostileDataset {
    std::string name;
    std::function<void(CSnsCohDatazq&)> make;
};

/// Datasets that no operation may leave the real grid of.
inline std::vector<HostileDataset> hostileDatasets() {
    constexpr __int64 huge = 1000000000000000LL;
    constexpr __int64 least = -0x7FFFFFFFFFFFFFFFLL - 1;
    constexpr __int64 most = 0x7FFFFFFFFFFFFFFFLL;
    return {
        {"no grid, counters set",
         [](CSnsCohDatazq& d) {
             d.setChnlRowCol(3, 5);
             d.m_cohTimTotal = 2;
         }},
        {"no grid, huge counters",
         [](CSnsCohDatazq& d) {
             d.setChnlRowCol(huge, huge);
             d.m_cohTimTotal = huge;
         }},
        {"more rows announced than there are",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             d.m_snsRowTotal = huge;
         }},
        {"more columns announced than there are",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             d.m_snsColTotal = huge;
         }},
        {"a few more rows, columns and slices announced",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             d.setChnlRowCol(5, 4);
             d.m_cohTimTotal = 4;
         }},
        {"fewer rows and columns announced",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 5, 2);
             d.setChnlRowCol(2, 2);
         }},
        {"counters 0 beside a grid",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             d.setChnlRowCol(0, 0);
             d.m_cohTimTotal = 0;
         }},
        {"negative counters",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             d.setChnlRowCol(-1, least);
             d.m_cohTimTotal = least;
         }},
        {"more slices announced than there are",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             d.m_cohTimTotal = huge;
             d.m_selectEnd = huge - 1;
         }},
        {"largest counters",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             d.setChnlRowCol(most, most);
             d.m_cohTimTotal = most;
         }},
        {"wild selection and pair",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             d.m_selectBegin = least;
             d.m_selectEnd = most;
             d.m_rowCrt = 9;
             d.m_columnCrt = least;
         }},
        {"short, empty and null vectors",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 5);
             pairOf(d, 0, 0).resize(2);
             pairOf(d, 1, 1).resize(0);
             claimValues(d, 2, 2, 5);
             claimValues(d, 0, 1, huge);
             pairOf(d, 1, 0).m_size = -5;
         }},
        {"long vectors",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 5);
             d.m_cohTimTotal = 2;
         }},
        {"more columns than rows", [](CSnsCohDatazq& d) { fill(d, 2, 7, 3); }},
        {"more rows than columns", [](CSnsCohDatazq& d) { fill(d, 7, 2, 3); }},
        {"missing row",
         [](CSnsCohDatazq& d) {
             fill(d, 3, 3, 2);
             delete[] d.m_mCC[1];
             d.m_mCC[1] = nullptr;
         }},
    };
}

}  // namespace test
