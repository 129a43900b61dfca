#include "tests/trust/Player.h"

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
        m_plainGroup = plain::Group();
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

}  // namespace test
