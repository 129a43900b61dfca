#include "tests/trust/Player.h"

#include "tests/trust/every_operation.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace test {

void Player::packageCounts() {
    const int id = m_in.smallIndex(3);
    equal("getTotalCohDataset", m_package.getTotalCohDataset(), m_plainPackage.total());
    equal("getCohDatasetListID", Int(m_package.getCohDatasetListID(id)),
          Int(m_plainPackage.clampList(id)));
    switch (m_in.below(3)) {
        case 0:
            equal("setCurrentCohDataset", Int(m_package.setCurrentCohDataset(id)),
                  Int(m_plainPackage.setCurrent(id)));
            break;
        case 1:
            equal("setCurntCohDataSetID", Int(m_package.setCurntCohDataSetID(id)),
                  Int(m_plainPackage.setCurrentId(id)));
            break;
        default:
            equal("setTrlCxcClass", Int(m_package.setTrlCxcClass(id)),
                  Int(m_plainPackage.setClass(id, m_messages)));
    }
    equal("hasCohTimeData4Show", Int(m_package.hasCohTimeData4Show()),
          Int(m_plainPackage.total() > 0));
}

void Player::packageGet() {
    const int cls = m_in.smallIndex(3);
    const Real* const real = m_package.getCoherenceData(cls);
    compareDataset(real, m_plainPackage.get(cls, m_messages));
    const int item = m_in.below(4);
    const Real* const listed = m_package.actCohDataset2ListID(item);
    plain::Dataset* found = nullptr;
    for (int i = 0; i < 3 && found == nullptr; ++i) {
        plain::Slot& slot = m_plainPackage.slots[i];
        if (!slot || slot->listItem != item) continue;
        found = &*slot;
        m_plainPackage.current = i;
    }
    compareDataset(listed, found);
    if (m_in.flag()) return;
    const Real* const any = m_package.getTrlCohDataAny();
    found = nullptr;
    for (int i = 0; i < 3 && found == nullptr; ++i) {
        if (!m_plainPackage.slots[i]) continue;
        found = &*m_plainPackage.slots[i];
        m_plainPackage.current = i;
    }
    compareDataset(any, found);
}

void Player::packageDelete() {
    const int cls = m_in.smallIndex(3);
    const int resolved = cls == -1 ? m_plainPackage.current : cls;
    const bool known = resolved >= 0 && resolved <= 2;
    equal("deleteCohDataset", Int(m_package.deleteCohDataset(cls)), Int(known));
    if (known) m_plainPackage.slots[resolved].reset();
}

// Of one size, so that they can be combined. Chance alone hardly ever has both.
void Player::makeActiveAndControl() {
    if (!m_plainPackage.slots[0])
        m_package.setCohData(makeReal(m_plainPackage.slots[0].emplace()), 0);
    if (!m_plainPackage.slots[1])
        m_package.setCohData(makeReal(m_plainPackage.slots[1].emplace()), 1);
    const plain::Dataset& active = *m_plainPackage.slots[0];
    plain::Dataset& control = *m_plainPackage.slots[1];
    const Int slices = 1 + m_in.below(2);
    equal("sized",
          Int(m_package.m_cohControl->checkInitSnsCohData(active.rows, active.cols, slices, true)),
          Int(control.checkInit(active.rows, active.cols, slices, true)));
    fill({m_package.m_cohControl, &control});
}

// Which of two NaNs their product is, is open.
void Player::takeNaNsOfProducts() {
    const plain::Slot& active = m_plainPackage.slots[0];
    const plain::Slot& control = m_plainPackage.slots[1];
    plain::Slot& product = m_plainPackage.slots[2];
    for (Int r = 0; r < product->realRows(); ++r) {
        for (Int c = 0; c < product->realCols(); ++c) {
            const plain::Vector* const from = active->cell(r, c);
            const plain::Vector* const base = control->cell(r, c);
            if (from == nullptr || base == nullptr || base->size() < 1) continue;
            if (!std::isnan((*base->data)[0])) continue;
            plain::Vector& to = *product->cell(r, c);
            const RealVector& real = m_package.m_cohActCtl->m_mCC[r][c];
            for (Int t = 0; t < std::min({from->size(), to.size(), Int(real.m_size)}); ++t) {
                const auto at = static_cast<std::size_t>(t);
                if (std::isnan((*from->data)[at]) && std::isnan(real.m_data[t]))
                    (*to.data)[at] = real.m_data[t];
            }
        }
    }
}

void Player::packageCombine() {
    m_package.m_actCtlOperation = m_plainPackage.operation = m_in.below(5);
    const bool yes = m_in.below(4) != 0;
    m_app.question = yes ? IDYES : IDNO;
    if (m_in.flag()) makeActiveAndControl();
    // What an unknown operation leaves is open.
    if (m_plainPackage.operation > 3 && m_plainPackage.slots[2]) return;
    const int status = m_plainPackage.combine(yes, m_messages);
    equal("doAct_Ctl_operation", Int(m_package.doAct_Ctl_operation()), Int(status));
    if (m_wrong.empty() && status != 0 && m_plainPackage.operation == 2) takeNaNsOfProducts();
}

void Player::packageMatch() {
    if (m_in.flag()) makeActiveAndControl();
    Int real[4] = {};
    Int model[4] = {};
    for (int i = 0; i < 4; ++i)
        real[i] = model[i] = m_in.below(60) - 20;
    equal("matchAtiveControl", Int(m_package.matchAtiveControl(real[0], real[1], real[2], real[3])),
          Int(m_plainPackage.match(model, m_messages)));
    for (int i = 0; i < 4; ++i)
        equal("matched", real[i], model[i]);
    const int cls = m_in.smallIndex(3);
    equal("checkSelect4Class", Int(m_package.checkSelect4Class(real[0], real[1], cls)),
          Int(m_plainPackage.checkSelect(real[0], real[1], cls, m_messages)));
}

void Player::packageSizes() {
    const int sensors = m_in.below(4);
    const Int active = m_in.below(4);
    const Int control = m_in.below(4) - 1;
    const Int mixed = m_in.below(4) - 1;
    const bool flag = m_in.flag();
    equal("checkInitSnsCohPkg", Int(sizePackage(m_package, sensors, active, control, mixed, flag)),
          Int(m_plainPackage.sizeAll(sensors, active, control, mixed, flag)));
}

void Player::packageOne() {
    const int sensors = m_in.below(4);
    const Int slices = m_in.below(4);
    const int cls = m_in.smallIndex(3);
    const bool flag = m_in.flag();
    const Real* const real = m_package.checkInitSnsCoh4Class(sensors, slices, cls, flag);
    compareDataset(real, m_plainPackage.sizeOne(sensors, slices, cls, flag, m_messages));
}

void Player::packageSums() {
    const Both both = orNew();
    const int cls = m_in.smallIndex(3);
    equal("sumPkg", Int(m_package.sumPkg(*both.real, cls)),
          Int(m_plainPackage.sumPackage(*both.model, cls)));
    if (m_in.flag()) return;
    equal("sumFace", Int(m_package.sumFace(m_package)),
          Int(m_plainPackage.sumFirstOf(m_plainPackage)));
}

void Player::packageNames() {
    const int cls = m_in.smallIndex(3);
    equal("getCxcDataName4Class", m_package.getCxcDataName4Class(cls),
          m_plainPackage.className(cls));
    const plain::Slot& active = m_plainPackage.slots[0];
    equal("getCohTimSlcMax", m_package.getCohTimSlcMax(), active ? active->longest : 1);
    const int asked = m_in.smallIndex(3);
    double ends[4] = {7.0, 7.0, 0.0, 0.0};
    const bool useTime = m_in.flag();
    const int noDiagonal = m_in.below(2);
    int wanted = 0;
    if (asked >= 0 && asked <= 2 && m_plainPackage.slots[asked])
        wanted = m_plainPackage.slots[asked]->signedRange(ends[2], ends[3], useTime, -1, -1,
                                                          noDiagonal != 0);
    equal("getSnsCohRange",
          Int(m_package.getSnsCohRange(asked, ends[0], ends[1], useTime, noDiagonal)), Int(wanted));
    equal("min", ends[0], ends[2]);
    equal("max", ends[1], ends[3]);
}

void Player::packageLabels() {
    writeLabels(m_package, m_plainPackage.labels);
    m_package.m_actCtlOperation = m_plainPackage.operation = m_in.below(6) - 1;
    equal("getCurntCohDataSetID", Int(m_package.getCurntCohDataSetID()),
          Int(m_plainPackage.current));
}

void Player::packageViews() {
    equal("hasCohData4show", Int(m_package.hasCohData4show()),
          Int(m_plainPackage.hasCurrent(m_messages)));
    equal("getLatency4PtSecond", m_package.getLatency4PtSecond(m_in.below(9)), 0.0);
    const int cls = m_in.smallIndex(3);
    const std::unique_ptr<CMMatrix2Dzq[]> matrices(m_package.getSnsCohMtx4class(cls));
    const int resolved = cls == -1 ? m_plainPackage.current : cls;
    const bool known = resolved >= 0 && resolved <= 2;
    if (known) m_plainPackage.current = resolved;
    const plain::Slot none;
    const plain::Slot& slot = known ? m_plainPackage.slots[resolved] : none;
    const bool wanted = slot && slot->grid && (slot->rows >= 1 || slot->slices < 1);
    equal("getSnsCohMtx4class", Int(matrices != nullptr), Int(wanted));
    if (matrices != nullptr && wanted) compareMatrices(matrices.get(), *slot);
}

void Player::packageAccumulate() {
    const Both both = chosen();
    equal("accumulateTrlCoh", Int(m_package.accumulateTrlCoh(both.real)),
          Int(m_plainPackage.accumulate(both.model)));
}

void Player::packageEmpty() {
    if (m_in.below(4) == 0) {
        equal("cleanSnsCohPkg", Int(m_package.cleanSnsCohPkg()), Int(1));
        for (plain::Slot& slot : m_plainPackage.slots)
            slot.reset();
        return;
    }
    const int cls = m_in.smallIndex(3);
    const int resolved = cls == -1 ? m_plainPackage.current : cls;
    const bool known = resolved >= 0 && resolved <= 2;
    equal("setCohData", Int(m_package.setCohData(nullptr, cls)), Int(known));
    if (known) m_plainPackage.slots[resolved].reset();
}

void Player::packageOther() {
    CSnsCohFacezq other;
    plain::Package model;
    // Of other sizes there would hardly be a sum.
    const Both like = orNew();
    for (int cls = 0; cls < 3; ++cls) {
        if (!m_in.flag()) continue;
        plain::Dataset& dataset = model.slots[cls].emplace();
        auto* const real = new Real;
        other.setCohData(real, cls);
        equal("sized",
              Int(real->checkInitSnsCohData(like.model->rows, like.model->cols, like.model->slices,
                                            true)),
              Int(dataset.checkInit(like.model->rows, like.model->cols, like.model->slices, true)));
        fill({real, &dataset});
    }
    equal("sumFace", Int(m_package.sumFace(other)), Int(m_plainPackage.sumFirstOf(model)));
}

void Player::packageViewers() {
    playViewers(m_package, m_plainPackage.viewers);
}

}  // namespace test
