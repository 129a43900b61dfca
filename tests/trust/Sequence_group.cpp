#include "tests/trust/Player.h"

#include "cxcpkg/across_datasets.h"

#include <algorithm>

namespace test {

void Player::groupCounts() {
    const int id = m_in.smallIndex(m_plainGroup.total());
    equal("getCohDatasetListID", Int(m_group.getCohDatasetListID(id)),
          Int(m_plainGroup.total() == 0 ? -1 : m_plainGroup.clamp(id)));
    if (m_in.flag())
        equal("setCurrentCohDataset", Int(m_group.setCurrentCohDataset(id)),
              Int(m_plainGroup.setCurrent(id)));
    else
        equal("setCurntCohDataSetID", Int(m_group.setCurntCohDataSetID(id)),
              Int(m_plainGroup.setCurrentId(id)));
}

void Player::groupGet() {
    const int id = m_in.smallIndex(m_plainGroup.total());
    compareDataset(m_group.getCoherenceData(id), m_plainGroup.get(id));
    plain::Dataset* any = nullptr;
    if (m_plainGroup.total() > 0) any = m_plainGroup.get(m_plainGroup.clamp(m_plainGroup.current));
    compareDataset(m_group.getTrlCohDataAny(), any);
    equal("getCohTimSlcMax", m_group.getCohTimSlcMax(), any == nullptr ? 1 : any->longest);
}

void Player::groupDelete() {
    const int id = m_in.smallIndex(m_plainGroup.total());
    if (m_in.below(16) == 0) {
        equal("cleanSnsCohPkg", Int(m_group.cleanSnsCohPkg()), Int(1));
        m_plainGroup.entries.clear();
        m_plainGroup.current = -1;
        return;
    }
    equal("deleteCohDataset", Int(m_group.deleteCohDataset(id)), Int(m_plainGroup.erase(id)));
}

void Player::groupSized() {
    if (m_plainGroup.total() >= mostEntries) return;
    const int sensors = m_in.below(4);
    const Int slices = m_in.below(4);
    const bool flag = m_in.flag();
    equal("checkInitSnsCohPkg", Int(m_group.checkInitSnsCohPkg(sensors, slices, flag)),
          Int(m_plainGroup.addSized(sensors, slices, flag)));
}

void Player::groupAverage() {
    if (m_plainGroup.total() >= mostEntries) return;
    equal("averageAll", Int(m_group.averageAll()), Int(m_plainGroup.average()));
}

void Player::groupSummary() {
    if (m_plainGroup.total() >= mostEntries) return;
    equal("summaryAll", Int(m_group.summaryAll()), Int(m_plainGroup.summary()));
}

void Player::groupSums() {
    const Both both = orNew();
    const int id = m_in.smallIndex(m_plainGroup.total());
    plain::Dataset* const entry = m_plainGroup.get(id);
    equal("sumPkg", Int(m_group.sumPkg(*both.real, id)),
          Int(entry == nullptr ? 0 : entry->add(*both.model)));
}

void Player::groupSizes() {
    Int least[3] = {};
    Int most[3] = {};
    int count = 0;
    for (const plain::Slot& entry : m_plainGroup.entries) {
        if (!entry) continue;
        const Int sizes[3] = {entry->slices, entry->rows, entry->cols};
        for (int i = 0; i < 3; ++i) {
            least[i] = count == 0 ? sizes[i] : std::min(least[i], sizes[i]);
            most[i] = count == 0 ? sizes[i] : std::max(most[i], sizes[i]);
        }
        ++count;
    }
    Int rows = 7;
    Int cols = 7;
    equal("getTimeSliceMax", m_group.getTimeSliceMax(), most[0]);
    equal("getTimeSliceMin", m_group.getTimeSliceMin(), least[0]);
    equal("getCxcSizeMin", Int(m_group.getCxcSizeMin(rows, cols)), Int(count));
    equal("rows", rows, least[1]);
    equal("columns", cols, least[2]);
    equal("getCxcSizeMax", Int(m_group.getCxcSizeMax(rows, cols)), Int(count));
    equal("rows", rows, most[1]);
    equal("columns", cols, most[2]);
    const int show = m_in.below(3);
    equal("setShowAllCxc", Int(m_group.setShowAllCxc(show)), Int(m_plainGroup.total()));
    for (plain::Slot& entry : m_plainGroup.entries) {
        if (entry) entry->show = show != 0;
    }
}

void Player::groupLabels() {
    writeLabels(m_group, m_plainGroup.labels);
    m_group.m_actCtlOperation = m_plainGroup.operation = m_in.below(6) - 1;
    equal("getCurntCohDataSetID", Int(m_group.getCurntCohDataSetID()), Int(m_plainGroup.current));
}

void Player::groupViews() {
    const int id = m_in.smallIndex(m_plainGroup.total());
    equal("hasCohTimeData4Show", Int(m_group.hasCohTimeData4Show()), Int(m_plainGroup.total() > 0));
    // -1 stands for the current one, which is none itself where it is -1.
    const bool current = m_plainGroup.get(m_plainGroup.current) != nullptr;
    equal("hasCohData4show", Int(m_group.hasCohData4show()), Int(current));
    equal("getCxcDataName4Id", m_group.getCxcDataName4Id(id), current ? "None" : "");
    equal("getSnsCohMtx4class", Int(m_group.getSnsCohMtx4class(id) != nullptr), Int(0));
    equal("getLatency4PtSecond", m_group.getLatency4PtSecond(id), 0.0);
}

void Player::groupRanges() {
    const int id = m_in.smallIndex(m_plainGroup.total());
    plain::Dataset* const entry = m_plainGroup.get(id);
    const Int slices = entry == nullptr ? 3 : entry->slices;
    const Int first = m_in.index(slices);
    const Int last = m_in.index(slices);
    equal("checkSelect4Class", Int(m_group.checkSelect4Class(first, last, id)),
          Int(entry == nullptr ? 0 : entry->checkSelect(first, last)));
    double ends[4] = {7.0, 7.0, 0.0, 0.0};
    const bool useTime = m_in.flag();
    const int noDiagonal = m_in.below(3);
    const int wanted = entry == nullptr
                           ? 0
                           : entry->signedRange(ends[2], ends[3], useTime, -1, -1, noDiagonal != 0);
    equal("getSnsCohRange", Int(m_group.getSnsCohRange(id, ends[0], ends[1], useTime, noDiagonal)),
          Int(wanted));
    equal("min", ends[0], ends[2]);
    equal("max", ends[1], ends[3]);
}

void Player::groupAccumulate() {
    const Both both = chosen();
    equal("accumulateTrlCoh", Int(m_group.accumulateTrlCoh(both.real)),
          Int(m_plainPackage.accumulate(both.model)));
}

// What average and summary do, one dataset after the other.
void Player::groupOneByOne() {
    const plain::Group::Largest sizes = m_plainGroup.largest();
    if (!sizes.any()) return;
    Real real[3];
    plain::Dataset model[3];
    for (int i = 0; i < 3; ++i) {
        equal("sized", Int(real[i].checkInitSnsCohData(sizes.rows, sizes.cols, sizes.slices, true)),
              Int(model[i].checkInit(sizes.rows, sizes.cols, sizes.slices, true)));
    }
    const bool alone = m_in.flag();
    const bool pairs = m_in.flag();
    int count = 0;
    for (int i = 0; i < m_plainGroup.total(); ++i) {
        const Real* const entry = m_group.getCoherenceData(i);
        if (entry == nullptr) continue;
        cxc::Accumulation summary(real[0], real[1], real[2], count++ == 0);
        cxc::Accumulation sums(real[1]);
        cxc::Accumulation& taker = alone ? sums : summary;
        if (!pairs) taker.take(*entry);
        const plain::Dataset& shape = *m_plainGroup.get(i);
        for (Int r = 0; pairs && r < std::min(shape.rows, shape.realRows()); ++r) {
            for (Int c = 0; c < std::min(shape.cols, shape.realCols()); ++c)
                taker.takePair(r, c, entry->m_mCC[r][c], entry->m_cohTimTotal);
        }
    }
    cxc::sumsToMeans(real[1], count);
    equal("datasets", Int(count), Int(m_plainGroup.summarise(sizes, model[0], model[1], model[2])));
    compareDataset(&real[1], &model[1]);
    if (alone) return;
    compareDataset(&real[0], &model[0]);
    compareDataset(&real[2], &model[2]);
}

void Player::groupWatched() {
    if (m_plainGroup.total() >= mostEntries) return;
    const bool summary = m_in.flag();
    const Int stopAt = m_in.below(5);
    std::vector<Int> asked;
    std::vector<Int> expected;
    cxc::watchRows([&](Int done, Int rows) {
        asked.insert(asked.end(), {done, rows});
        return done != stopAt;
    });
    const int status = summary ? m_group.summaryAll() : m_group.averageAll();
    cxc::watchRows(nullptr);
    plain::Group model = m_plainGroup;
    int wanted = summary ? model.summary() : model.average();
    const Int rows = wanted == 0 ? 0 : model.entries.back()->rows;
    const bool stopped = stopAt >= 1 && stopAt <= rows;
    for (Int done = 1; done <= (stopped ? stopAt : rows); ++done)
        expected.insert(expected.end(), {done, rows});
    if (stopped)
        wanted = 0;
    else
        m_plainGroup = model;
    equal("watched result", Int(status), Int(wanted));
    if (asked != expected) differ("the rows that the watcher is asked about");
}

void Player::groupViewers() {
    playViewers(m_group, m_plainGroup.viewers);
}

}  // namespace test
