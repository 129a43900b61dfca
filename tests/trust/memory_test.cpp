// Every allocation of every operation fails once, alone and with all that follow: the operation
// ends by a status or an exception of the framework, gives back what it took, and every operation
// of the object works afterwards.
#include "tests/trust/HeapWatch.h"
#include "tests/trust/QuietApp.h"
#include "tests/trust/RoughFile.h"
#include "tests/trust/every_operation.h"
#include "tests/trust/golden_files.h"

#include "cxcdata/array_exchange.h"
#include "cxcfile/text_export.h"
#include "siblings/matrix/CMMatrix2Dzq.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>

namespace {

using test::HeapWatch;
using test::Outcome;

constexpr __int64 most = 0x7FFFFFFFFFFFFFFFLL;

std::string datasetBytes() {
    return golden::newestRecord().str();
}

// What operations work on: one of each, loaded from golden files.
struct World {
    World() {
        test::loadFrom(golden::vectorFiles()[1].bytes, vector);
        test::loadFrom(datasetBytes(), dataset);
        test::loadFrom(golden::packageFiles()[0].bytes, package);
        test::loadFrom(golden::groupFiles()[0].bytes, group);
        for (CMMatrix2Dzq& matrix : matrices)
            matrix.checkInit(3, 3, true);
    }
    ~World() { group.cleanSnsCohPkg(); }

    CWavChnlChnlDatazq vector;
    CSnsCohDatazq dataset;
    CSnsCohFacezq package;
    CGroupMeegCxcFacezq group;
    CMMatrix2Dzq matrices[2];
};

struct Operation {
    std::string name;
    std::function<int(World&)> run;  // 0: failed
};

// The files stand before memory begins to fail.
template <class Record>
std::function<int(World&)> loading(Record World::*record, const std::string& bytes) {
    auto file = std::make_shared<test::RoughFile>(bytes);
    return [record, file](World& world) {
        file->rewind();
        return test::passOffHeap(*file, CArchive::load, world.*record);
    };
}

template <class Record>
std::function<int(World&)> storing(Record World::*record) {
    return [record](World& world) {
        test::RoughFile file;
        return test::passOffHeap(file, CArchive::store, world.*record);
    };
}

std::vector<Operation> vectorOperations() {
    return {
        {"vector: backup in",
         [](World& w) { return w.vector.cleanbkData() & w.vector.bkDataIn(); }},
        {"vector: backup out", [](World& w) { return w.vector.bkDataInOut(); }},
        {"vector: size", [](World& w) { return w.vector.checkInitData(9, true) ? 1 : 0; }},
        {"vector: resize", [](World& w) { return w.vector.resize(9); }},
        {"vector: copy",
         [](World& w) {
             double values[3] = {1, 2, 3};
             return w.vector.copy2Mtx(values, 3);
         }},
        {"vector: store", storing(&World::vector)},
        {"vector: load", loading(&World::vector, golden::vectorFiles()[1].bytes)},
    };
}

std::vector<Operation> datasetOperations() {
    std::vector<Operation> list = {
        {"dataset: size", [](World& w) { return w.dataset.checkInitSnsCohData(3, 2, 4, true); }},
        {"dataset: size again",
         [](World& w) {
             w.dataset.m_mCC[0][0].cleanData();
             return w.dataset.checkInitSnsCohData(2, 3, 2, false);
         }},
        {"dataset: to matrices",
         [](World& w) {
             CMMatrix2Dzq* matrices = nullptr;
             __int64 count = 0;
             const int status = w.dataset.getData2MCohTimSnsSns(matrices, count);
             delete[] matrices;
             return status;
         }},
        {"dataset: from matrices",
         [](World& w) { return w.dataset.setData4MCohTimSnsSns(w.matrices, 2); }},
        {"dataset: from an array",
         [](World& w) {
             const double values[24] = {};
             return cxc::datasetFromArray(w.dataset, values, 4, 2, 3);
         }},
        {"dataset: accumulate", [](World& w) { return w.dataset.accumulateTime1(); }},
        {"dataset: statistics",
         [](World& w) { return w.dataset.getStatistics().GetLength() > 0 ? 1 : 0; }},
        {"dataset: range", [](World& w) { return w.dataset.checkDataRange(); }},
        {"dataset: normalise", [](World& w) { return w.dataset.normRMS(); }},
        {"dataset: diagonal", [](World& w) { return w.dataset.zeroDiagonal(); }},
        {"dataset: names",
         [](World& w) { return w.dataset.getChnlTypeIDname().GetLength() > 0 ? 1 : 0; }},
        {"dataset: sum", [](World& w) { return w.dataset.sumDatSetSns(w.dataset); }},
        {"dataset: rows of doubles",
         [](World&) {
             double** const table = CSnsCohData00Time::s_newCohData(4);
             return CSnsCohData00Time::s_freeCohData(4, table);
         }},
        {"dataset: text",
         [](World& w) {
             test::RoughFile file;
             return cxc::writeText(file, w.dataset) ? 1 : 0;
         }},
        {"dataset: store", storing(&World::dataset)},
    };
    for (const golden::File& file : golden::datasetFiles())
        list.push_back({"load " + file.name, loading(&World::dataset, file.bytes)});
    return list;
}

std::vector<Operation> packageOperations() {
    std::vector<Operation> list = {
        {"package: active and control",
         [](World& w) {
             w.package.deleteCohDataset(2);
             return w.package.doAct_Ctl_operation();
         }},
        {"package: matrices",
         [](World& w) {
             CMMatrix2Dzq* const matrices = w.package.getSnsCohMtx4class(0);
             delete[] matrices;
             return matrices == nullptr ? 0 : 1;
         }},
        {"package: sizes", [](World& w) { return test::sizePackage(w.package, 3, 2, 2, 2, true); }},
        {"package: sizes without control",
         [](World& w) {
             w.package.deleteCohDataset(1);
             test::sizePackage(w.package, 3, 2, 2, 2, true);
             return 1;
         }},
        {"package: sizes of a new one",
         [](World& w) {
             w.package.cleanSnsCohPkg();
             return test::sizePackage(w.package, 3, 2, 0, 2, true);
         }},
        {"package: one class",
         [](World& w) {
             w.package.deleteCohDataset(1);
             return w.package.checkInitSnsCoh4Class(3, 2, 1, true) == nullptr ? 0 : 1;
         }},
        {"package: name",
         [](World& w) { return w.package.getCxcDataName4Class(0).GetLength() > 0 ? 1 : 0; }},
        {"package: viewer", [](World& w) { return w.package.viewerAdd(nullptr) > 0 ? 1 : 0; }},
        {"package: sum", [](World& w) { return w.package.sumFace(w.package); }},
        {"package: store", storing(&World::package)},
    };
    for (const golden::File& file : golden::packageFiles())
        list.push_back({"load " + file.name, loading(&World::package, file.bytes)});
    return list;
}

std::vector<Operation> groupOperations() {
    std::vector<Operation> list = {
        {"group: average", [](World& w) { return w.group.averageAll(); }},
        {"group: summary", [](World& w) { return w.group.summaryAll(); }},
        {"group: new dataset", [](World& w) { return w.group.checkInitSnsCohPkg(3, 2, true); }},
        {"group: insert", [](World& w) { return w.group.setCohData(nullptr, 1); }},
        {"group: viewer", [](World& w) { return w.group.viewerAdd(nullptr) > 0 ? 1 : 0; }},
        {"group: name",
         [](World& w) {
             w.group.getCxcDataName4Id(0);
             return 1;
         }},
        {"group: store", storing(&World::group)},
    };
    for (const golden::File& file : golden::groupFiles())
        list.push_back({"load " + file.name, loading(&World::group, file.bytes)});
    return list;
}

// A world in which operation `run` meets the n-th failing allocation. Returns whether there was
// one.
class FailingMemory {
public:
    bool meet(const Operation& operation, int n, HeapWatch::Failing failing) {
        auto world = std::make_unique<World>();
        m_app.forget();
        int count = 0;
        Outcome outcome = Outcome::accepted;
        {
            HeapWatch watch(n, failing);
            outcome = test::outcomeOf([&] { return operation.run(*world); });
            watch.stop();
            count = watch.count();
        }
        EXPECT_TRUE(outcome == Outcome::accepted || outcome == Outcome::refused ||
                    outcome == Outcome::noMemory)
            << test::name(outcome);
        EXPECT_EQ(m_app.waiting(), 0);
        if (n == 0) {
            EXPECT_EQ(outcome, Outcome::accepted);
        }
        test::Digest digest;
        test::useEverything(world->vector, digest);
        test::useEverything(world->dataset, digest);
        test::useEverything(world->package, digest);
        test::useEverything(world->group, digest);
        return count >= n && n > 0;
    }

private:
    test::QuietApp m_app;
};

void sweep(const std::vector<Operation>& operations) {
    FailingMemory memory;
    int cases = 0;
    for (const Operation& operation : operations) {
        for (const HeapWatch::Failing failing : {HeapWatch::onlyThat, HeapWatch::fromThereOn}) {
            SCOPED_TRACE(operation.name);
            memory.meet(operation, 0, failing);
            int n = 1;
            for (;; ++n) {
                SCOPED_TRACE("allocation " + std::to_string(n));
                if (!memory.meet(operation, n, failing)) break;
                if (testing::Test::HasFailure()) return;
            }
            cases += n - 1;
        }
    }
    std::printf("%d failing allocations in %d operations\n", cases,
                static_cast<int>(operations.size()));
    EXPECT_GT(cases, static_cast<int>(operations.size()));
}

// Else the memory of lists does not pass the watch.
#if !defined(_WIN32) && !defined(CXC_TEST_SANITIZED)
TEST(FailingMemory, ViewerThatFindsNoMemoryIsNotRegistered) {
    CSnsCohFacezq package;
    CWnd viewer;
    HeapWatch watch(1);
    const Outcome outcome = test::outcomeOf([&] { return package.viewerAdd(&viewer); });
    watch.stop();
    EXPECT_EQ(outcome, Outcome::noMemory);
    EXPECT_EQ(package.m_viewers.GetSize(), 0);
    EXPECT_EQ(package.viewerAdd(&viewer), 1);
}
#endif

TEST(FailingMemory, VectorsSurviveIt) {
    sweep(vectorOperations());
}

TEST(FailingMemory, DatasetsSurviveIt) {
    sweep(datasetOperations());
}

TEST(FailingMemory, PackagesSurviveIt) {
    sweep(packageOperations());
}

TEST(FailingMemory, GroupsSurviveIt) {
    sweep(groupOperations());
}

}  // namespace
