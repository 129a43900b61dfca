#include "tests/trust/every_operation.h"

#include "cxcdata/allocation.h"
#include "cxcdata/array_exchange.h"
#include "cxcfile/text_export.h"
#include "cxcpkg/across_datasets.h"
#include "siblings/matrix/CMMatrix2Dzq.h"
#include "tests/trust/RoughFile.h"

#include <limits>
#include <vector>

namespace test {
namespace {

constexpr __int64 least = std::numeric_limits<__int64>::min();
constexpr __int64 most = std::numeric_limits<__int64>::max();
constexpr __int64 wildIndices[] = {least, -2, -1, 0, 1, 2, 1000000000000000, most};

std::size_t g_largest = 0;
std::size_t g_left = 0;

bool beyondBudget(std::size_t bytes) {
    if (bytes > g_largest || bytes > g_left) return true;
    g_left -= bytes;
    return false;
}

// Two counters whose difference may not be taken.
template <class Use>
void eachPairOfIndices(Use use) {
    for (const __int64 first : wildIndices) {
        for (const __int64 last : {least, -1LL, 0LL, 1LL, most})
            use(first, last);
    }
}

template <class Record>
void store(Record& record, Digest& digest) {
    constexpr std::size_t kept = 1 << 14;
    RoughFile file(kept);
    digest.take(static_cast<int>(passThrough(file, CArchive::store, record)));
    const ULONGLONG end = std::min<ULONGLONG>(file.written(), kept);
    digest.take(static_cast<__int64>(file.written()));
    const std::string bytes = file.content();
    for (std::size_t i = 0; i < end; ++i)
        digest.take(static_cast<int>(bytes[i]));
}

void exportText(const CSnsCohDatazq& dataset, Digest& digest) {
    RoughFile file(std::size_t(0));
    file.failAt = 1 << 16;
    digest.take(static_cast<int>(outcomeOf([&] { return cxc::writeText(file, dataset) ? 1 : 0; })));
    digest.take(static_cast<__int64>(file.written()));
}

void exchangeMatrices(CSnsCohDatazq& dataset, Digest& digest) {
    CMMatrix2Dzq* made = nullptr;
    __int64 count = 0;
    digest.take(dataset.getData2MCohTimSnsSns(made, count));
    for (__int64 t = 0; t < count && t < 8; ++t) {
        double** const rows = made[t].getDataPP();
        for (__int64 r = 0; rows != nullptr && r < made[t].getRow() && r < 8; ++r) {
            for (__int64 c = 0; c < made[t].getCol() && c < 8; ++c)
                digest.take(rows[r][c]);
        }
    }
    delete[] made;

    CMMatrix2Dzq offered[4];
    CMMatrix2Dzq* given = offered;
    count = 4;
    digest.take(dataset.getData2MCohTimSnsSns(given, count));
    CMMatrix2Dzq slice;
    slice.checkInit(
        dataset.m_snsRowTotal >= 1 && dataset.m_snsRowTotal <= 16 ? dataset.m_snsRowTotal : 3, 9,
        true);
    for (const __int64 t : wildIndices)
        digest.take(dataset.addMSnsSnsTimID(&slice, t));
}

void readArray(const CSnsCohDatazq& dataset, Digest& digest) {
    const double cells = static_cast<double>(dataset.m_cohTimTotal) *
                         static_cast<double>(dataset.m_snsRowTotal) *
                         static_cast<double>(dataset.m_snsColTotal);
    if (dataset.m_cohTimTotal < 1 || dataset.m_snsRowTotal < 1 || dataset.m_snsColTotal < 1 ||
        cells > 100000)
        return;
    std::vector<double> values(static_cast<std::size_t>(cells), -7.0);
    cxc::arrayFromDataset(dataset, values.data());
    for (const double value : values)
        digest.take(value);
}

void lookAtVectors(CSnsCohDatazq& dataset, Digest& digest) {
    eachPairOfIndices([&](__int64 r, __int64 c) {
        for (const __int64 t : wildIndices)
            digest.take(dataset.getValue(t, r, c));
        digest.take(dataset.getValueSelect(-1, -1, r, c));
        digest.take(dataset.getValueSelect(0, most, r, c));
        digest.take(dataset.getValueSelect(least, c, r, -1));
    });
}

void select(CSnsCohDatazq& dataset, Digest& digest) {
    __int64 begin = 0;
    __int64 end = 0;
    digest.take(dataset.getSelect(begin, end));
    for (const int step : {1, -1, 2147483647, -2147483647}) {
        digest.take(dataset.nextSelect(step, 1));
        digest.take(dataset.nextSelect(step, 0));
    }
    eachPairOfIndices([&](__int64 first, __int64 last) {
        digest.take(dataset.checkSelect(first, last));
        digest.take(dataset.setSelect(first, last));
        digest.take(dataset.getLatency4PtSecond(first));
    });
    for (const int column : {-1, 0, 2, 2147483647})
        digest.take(dataset.setColumnCrt(column));
    bool show = false;
    digest.take(dataset.getCohAnaDataTscsInfo(show));
    digest.take(dataset.setCohAnaDataTscsInfo(!show));
    digest.take(dataset.resetCohTimeInfo());
}

CSnsCohDatazq* newSmall(__int64 rows, __int64 cols, __int64 slices) {
    auto* const dataset = new CSnsCohDatazq;
    dataset->checkInitSnsCohData(rows, cols, slices, true);
    for (__int64 r = 0; dataset->m_mCC != nullptr && r < rows; ++r) {
        for (__int64 c = 0; c < cols; ++c) {
            for (__int64 t = 0; t < slices; ++t)
                dataset->m_mCC[r][c].m_data[t] = 0.125 * static_cast<double>(r + 2 * c + 3 * t + 1);
        }
    }
    return dataset;
}

// Puts other sizes into the dataset, and other values.
void refill(CSnsCohDatazq& dataset, Digest& digest) {
    CMMatrix2Dzq matrices[2];
    for (CMMatrix2Dzq& matrix : matrices)
        matrix.checkInit(3, 2, true);
    digest.take(dataset.setData4MCohTimSnsSns(matrices, 2));
    const std::vector<double> values(2 * 3 * 5, 0.5);
    digest.take(cxc::datasetFromArray(dataset, values.data(), 5, 3, 2));
    digest.take(dataset.checkInitSnsCohData(2, 2, 3, true));
    digest.take(dataset.normRMS());
}

template <class Holder>
void lookAtViews(Holder& holder, Digest& digest) {
    digest.take(holder.hasCohData4show());
    digest.take(holder.hasCohTimeData4Show());
    digest.take(holder.getTotalCohDataset());
    digest.take(holder.getCohTimSlcMax());
    digest.take(holder.getCohDataPkgName());
    digest.take(holder.getCohDataPkgShow());
    digest.take(holder.getLatency4PtSecond(3));
    digest.take(holder.viewerAdd(nullptr));
    digest.take(holder.viewerInvalidate(true, nullptr, true));
    digest.take(holder.viewerRemove(nullptr, true));
    for (const int id : {-2147483647 - 1, -1, 0, 1, 2, 3, 2147483647}) {
        double lo = 0.0;
        double hi = 0.0;
        digest.take(holder.getSnsCohRange(id, lo, hi, true, 1));
        digest.take(holder.getSnsCohRange(id, lo, hi, false, 0));
        digest.take(lo);
        digest.take(hi);
        digest.take(holder.getCohDatasetListID(id));
        digest.take(holder.checkSelect4Class(0, 1, id));
        digest.take(holder.checkSelect4Class(least, most, id));
        delete[] holder.getSnsCohMtx4class(id);
    }
}

}  // namespace

MemoryBudget::MemoryBudget(std::size_t largest, std::size_t total) {
    g_largest = largest;
    g_left = total;
    cxc::setAllocationHook(beyondBudget);
}

MemoryBudget::~MemoryBudget() {
    cxc::setAllocationHook(nullptr);
}

void Digest::takeBits(std::uint64_t bits) {
    m_value = (m_value ^ bits) * 1099511628211u;
    m_value ^= m_value >> 29;
}

void Digest::take(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    // Which NaN arises may depend on the order of two operands.
    takeBits(value != value ? 1 : bits);
}

void Digest::take(__int64 value) {
    takeBits(static_cast<std::uint64_t>(value));
}

void Digest::take(const CString& text) {
    for (int i = 0; i < text.GetLength(); ++i)
        takeBits(static_cast<std::uint64_t>(text.GetString()[i]));
}

void useEverything(CWavChnlChnlDatazq& vector, Digest& digest) {
    double figures[6] = {};
    digest.take(vector.getSize());
    digest.take(vector.getData() != nullptr);
    digest.take(vector.getStatistic(figures[0], figures[1], figures[2], figures[3], figures[4],
                                    figures[5]));
    digest.take(vector.getDataRange(figures[0], figures[1], figures[2]));
    for (const double figure : figures)
        digest.take(figure);
    digest.take(vector.getValueMax());
    digest.take(vector.allValueNonZero());
    digest.take(vector.polynmlEval(0.5));
    eachPairOfIndices([&](__int64 from, __int64 to) {
        for (const int mode : {0, 1, 2})
            digest.take(vector.getSelectDataMean(from, to, mode));
    });
    store(vector, digest);
    digest.take(vector.bkDataInOut());
    digest.take(vector.normSumSqrt());
    digest.take(vector.bkDataIn());
    digest.take(vector.bkDataInOut());
    digest.take(vector.resize(vector.getSize() < 1000 ? vector.getSize() + 3 : 5));
    digest.take(vector.resize(2));
    digest.take(vector.copy2Mtx(figures, 6));
    digest.take(vector.copy2Mtx(figures, 4));
    digest.take(vector.checkInitData(3, true) != nullptr);
    digest.take(vector.resize(most));
    digest.take(vector.bkDataInOut());
    store(vector, digest);
    digest.take(vector.cleanData());
    digest.take(vector.cleanbkData());
}

void look(CSnsCohDatazq& dataset, Digest& digest) {
    __int64 rows = 0;
    __int64 cols = 0;
    double low = 0.0;
    double high = 0.0;
    digest.take(dataset.getChnlRowCol(rows, cols));
    digest.take(dataset.getAnaLatency(low, high));
    digest.take(dataset.getSnsCohTimTotal());
    digest.take(dataset.getSnsCohSnsTotal());
    digest.take(dataset.verifyWavCohDataSize(rows, dataset.m_cohTimTotal));
    digest.take(dataset.getChnlTypeIDname());
    digest.take(dataset.getCxcCmptInfo());
    digest.take(dataset.getStatistics());
    digest.take(dataset.checkDataRange());
    lookAtVectors(dataset, digest);
    eachPairOfIndices([&](__int64 from, __int64 to) {
        for (const bool useTime : {false, true}) {
            digest.take(dataset.getSnsCohRange(low, high, useTime, from, to, 0));
            digest.take(dataset.getSnsCohRange(low, high, useTime, from, to, 1));
            digest.take(dataset.getCxcAbsRange(low, high, true, useTime, from, to));
            digest.take(low);
            digest.take(high);
        }
    });
    readArray(dataset, digest);
    exportText(dataset, digest);
    store(dataset, digest);
}

void useEverything(CSnsCohDatazq& dataset, Digest& digest) {
    look(dataset, digest);
    exchangeMatrices(dataset, digest);
    select(dataset, digest);
    look(dataset, digest);
    digest.take(dataset.zeroDiagonal());
    digest.take(dataset.normRMS());
    digest.take(dataset.sumDatSetSns(dataset));
    look(dataset, digest);
    digest.take(dataset.accumulateTime1());
    look(dataset, digest);
    digest.take(dataset.checkInitSnsCohData(dataset.m_snsRowTotal, dataset.m_snsColTotal,
                                            dataset.m_cohTimTotal, false));
    look(dataset, digest);
    refill(dataset, digest);
    digest.take(dataset.resetSnsCoh());
    digest.take(dataset.setChnlRowCol(4, 2));
    digest.take(dataset.setAnaLatency(0.5, 1.0));
    look(dataset, digest);
    digest.take(dataset.cleanSnsCohData());
    digest.take(dataset.checkInitSnsCohData(2, 3, 2, true));
    look(dataset, digest);
}

int sizePackage(CSnsCohFacezq& package, int sensors, __int64 active, __int64 control, __int64 mixed,
                bool zero) {
    CSnsCohDatazq* const former = package.m_cohActive;
    // An exception must not lose it either.
    struct Keeper {
        CSnsCohFacezq& package;
        CSnsCohDatazq* former;
        ~Keeper() {
            if (package.m_cohActive != former) delete former;
        }
    } const keeper{package, former};
    return package.checkInitSnsCohPkg(sensors, active, control, mixed, zero);
}

void useEverything(CSnsCohFacezq& package, Digest& digest) {
    lookAtViews(package, digest);
    for (const int cls : {-1, 0, 1, 2, 3}) {
        digest.take(package.setTrlCxcClass(cls));
        digest.take(package.getCxcDataName4Class(cls));
        digest.take(package.accumulateTrlCoh(nullptr));
        if (CSnsCohDatazq* const dataset = package.getCoherenceData(cls)) look(*dataset, digest);
        digest.take(package.actCohDataset2ListID(cls) != nullptr);
        digest.take(package.setCurrentCohDataset(cls));
        digest.take(package.setCurntCohDataSetID(cls));
        digest.take(package.getCurntCohDataSetID());
    }
    eachPairOfIndices([&](__int64 first, __int64 last) {
        __int64 indices[4] = {first, last, 0, 1};
        digest.take(package.matchAtiveControl(indices[0], indices[1], indices[2], indices[3]));
        for (const __int64 index : indices)
            digest.take(index);
    });
    store(package, digest);
    for (int operation = -1; operation <= 4; ++operation) {
        package.m_actCtlOperation = operation;
        digest.take(package.doAct_Ctl_operation());
    }
    digest.take(package.sumFace(package));
    for (const int cls : {0, 1, 2}) {
        if (CSnsCohDatazq* const dataset = package.getCoherenceData(cls)) {
            digest.take(package.sumPkg(*dataset, 0));
            digest.take(package.accumulateTrlCoh(dataset));
        }
    }
    store(package, digest);
    digest.take(package.checkInitSnsCoh4Class(2, 2, 1, true) != nullptr);
    digest.take(sizePackage(package, 3, 2, 2, 2, true));
    digest.take(sizePackage(package, 2, 2, 0, 1, false));
    digest.take(package.setCohData(newSmall(2, 2, 2), 1));
    digest.take(package.getTrlCohDataAny() != nullptr);
    for (const int cls : {0, 1, 2}) {
        if (CSnsCohDatazq* const dataset = package.getCoherenceData(cls))
            useEverything(*dataset, digest);
    }
    digest.take(package.deleteCohDataset(-1));
    digest.take(package.cleanSnsCohPkg());
}

void useEverything(CGroupMeegCxcFacezq& group, Digest& digest) {
    lookAtViews(group, digest);
    digest.take(group.getTimeSliceMax());
    digest.take(group.getTimeSliceMin());
    __int64 rows = 0;
    __int64 cols = 0;
    digest.take(group.getCxcSizeMin(rows, cols));
    digest.take(group.getCxcSizeMax(rows, cols));
    for (const int id : {-1, 0, 1, 2, 2147483647}) {
        digest.take(group.getCxcDataName4Id(id));
        if (CSnsCohDatazq* const dataset = group.getCoherenceData(id)) look(*dataset, digest);
        digest.take(group.setCurrentCohDataset(id));
        digest.take(group.setCurntCohDataSetID(id));
        digest.take(group.getCurntCohDataSetID());
    }
    store(group, digest);
    digest.take(group.averageAll());
    digest.take(group.summaryAll());
    digest.take(group.setCohData(newSmall(2, 3, 2), 1));
    digest.take(group.checkInitSnsCohPkg(2, 3, true));
    digest.take(group.averageAll());
    digest.take(group.summaryAll());
    digest.take(group.setShowAllCxc(1));
    if (CSnsCohDatazq* const dataset = group.getTrlCohDataAny()) {
        digest.take(group.sumPkg(*dataset, 0));
        digest.take(group.accumulateTrlCoh(dataset));
        useEverything(*dataset, digest);
    }
    store(group, digest);
    digest.take(group.deleteCohDataset(1));
    digest.take(group.deleteCohDataset(-1));
    digest.take(group.averageAll());
    digest.take(group.cleanSnsCohPkg());
    digest.take(group.averageAll());
}

}  // namespace test
