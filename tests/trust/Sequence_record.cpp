#include "cxcfile/each_pair.h"
#include "cxcfile/text_export.h"
#include "tests/trust/Player.h"
#include "tests/trust/RoughFile.h"

#include <algorithm>
#include <memory>

namespace test {

template <class Record>
void Player::load(const std::string& bytes, Record& record) {
    equal("loaded", Int(loadFrom(bytes, record)), Int(Outcome::accepted));
}

// --- records and text ----------------------------------------------------------------------------

void Player::vectorRecord() {
    plain::Vector* model = nullptr;
    RealVector* const real = vectorOf(orNew(), model);
    if (real == nullptr) return;
    plain::Vector* otherModel = nullptr;
    const Both into = orNew();
    RealVector* const other = vectorOf(into, otherModel);
    const std::string bytes = bytesOf(*real);
    // A vector of a dataset is at most as long as the dataset.
    if (other != nullptr && model->size() <= into.model->slices) {
        load(bytes, *other);
        otherModel->load(*model);
        return;
    }
    RealVector made;
    plain::Vector madeModel;
    load(bytes, made);
    madeModel.load(*model);
    compareVector(made, madeModel, 0, 0);
}

void Player::record() {
    const Both both = orNew();
    const Both into = orNew();
    load(bytesOf(*both.real), *into.real);
    into.model->load(*both.model);
}

void Player::eachPair() {
    const Both both = orNew();
    const Both into = orNew();
    const std::string bytes = bytesOf(*both.real);
    into.model->load(*both.model);
    const plain::Dataset& model = *into.model;
    Int count = 0;
    const cxc::PairTaker take = [&](const CSnsCohDatazq& dataset, Int r, Int c,
                                    const CWavChnlChnlDatazq& pair) {
        equal("another dataset", Int(&dataset == into.real), Int(1));
        equal("place", r * model.cols + c, count++);
        const plain::Vector* const wanted = model.cell(r, c);
        if (wanted == nullptr)
            differ("a pair outside the grid");
        else
            compareVector(pair, *wanted, r, c);
    };
    cxc::EachPair pairs{*into.real, take};
    load(bytes, pairs);
    equal("pairs", count, model.realRows() * model.realCols());
    into.model->grid.reset();
}

void Player::text() {
    const Both both = orNew();
    RoughFile file(std::size_t(1) << 17);
    const bool written = cxc::writeText(file, *both.real);
    std::string wanted;
    equal("writeText", Int(written), Int(both.model->text(wanted)));
    std::string units;
    for (const char one : wanted)
        units.append({one, '\0'});
    if (file.content() != units) differ("the text");
}

void Player::packageRecord() {
    const std::string bytes = bytesOf(m_package, std::size_t(1) << 17);
    const plain::Package stored = m_plainPackage;
    // What the package holds meanwhile.
    writeLabels(m_package, m_plainPackage.labels);
    m_package.m_curntCohDataSetID = m_in.below(4) - 1;
    m_package.setCohData(nullptr, m_in.below(3));
    load(bytes, m_package);
    m_plainPackage.load(stored);
}

void Player::groupRecord() {
    const std::string bytes = bytesOf(m_group, std::size_t(1) << 17);
    const plain::Group stored = m_plainGroup;
    writeLabels(m_group, m_plainGroup.labels);
    m_group.m_curntCohDataSetID = m_in.below(4) - 1;
    m_group.m_actCtlOperation = m_in.below(4);
    if (m_in.flag()) m_group.deleteCohDataset(0);
    load(bytes, m_group);
    m_plainGroup.load(stored);
}

// --- what packages and groups share --------------------------------------------------------------

CString Player::label(std::string& model) {
    constexpr const char* names[] = {"", "a", "CxC Data", "two\nlines", "100 % (x)"};
    model = names[m_in.below(5)];
    // Longer than the shortest form of a stored string knows.
    if (m_in.below(16) == 0) model.assign(300, 'n');
    CString made;
    for (const char one : model)
        made += static_cast<TCHAR>(one);
    return made;
}

template <class Holder>
void Player::writeLabels(Holder& real, plain::Labels& model) {
    real.m_pkgID = model.id = m_in.below(256) - 100;
    real.m_pkgName = label(model.name);
    real.m_pkgInfo = label(model.info);
    real.m_pkgShow = model.show = m_in.flag();
    equal("getCohDataPkgName", real.getCohDataPkgName(), model.name);
    equal("getCohDataPkgShow", Int(real.getCohDataPkgShow()), Int(model.show));
}

template void Player::writeLabels(CSnsCohFacezq& real, plain::Labels& model);
template void Player::writeLabels(CGroupMeegCxcFacezq& real, plain::Labels& model);

// In the plain list a window is its number, and no window is -1.
template <class Holder>
void Player::playViewers(Holder& real, std::vector<int>& model) {
    const int number = m_in.below(3) - 1;
    CWnd* const wnd = number == -1 ? nullptr : &m_windows[number];
    const auto place = number == -1 ? model.end() : std::find(model.begin(), model.end(), number);
    const bool listed = place != model.end();
    const bool all = m_in.below(4) == 0 || model.size() > 8;
    switch (m_in.below(3)) {
        case 0:
            if (!listed) model.push_back(number);
            equal("viewerAdd", Int(real.viewerAdd(wnd)), listed ? 0 : Int(model.size()));
            break;
        case 1: {
            if (all)
                model.clear();
            else if (listed)
                model.erase(place);
            const Int left = all ? 0 : listed ? Int(model.size()) : -1;
            equal("viewerRemove", Int(real.viewerRemove(wnd, all)), left);
            break;
        }
        default:
            if (number != -1 && !listed) model.push_back(number);
            equal("viewerInvalidate", Int(real.viewerInvalidate(m_in.flag(), wnd, all)),
                  all ? Int(model.size()) : Int(number != -1));
    }
    equal("viewers", Int(real.m_viewers.GetSize()), Int(model.size()));
    for (int i = 0; i < static_cast<int>(model.size()) && m_wrong.empty(); ++i) {
        const int at = model[static_cast<std::size_t>(i)];
        equal("viewer", Int(real.m_viewers.GetAt(i) == (at == -1 ? nullptr : &m_windows[at])),
              Int(1));
    }
}

template void Player::playViewers(CSnsCohFacezq& real, std::vector<int>& model);
template void Player::playViewers(CGroupMeegCxcFacezq& real, std::vector<int>& model);

}  // namespace test
