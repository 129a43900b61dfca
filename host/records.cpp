#include "host/records.h"

#include "cxc.h"

#include <memory>

namespace {

// The first string of a file, which names its kind; the rest of the file is not looked at.
CString magicOf(const CString& path) {
    CFile file(path, CFile::modeRead | CFile::shareDenyWrite);
    CArchive archive(&file, CArchive::load);
    CString magic;
    archive >> magic;
    archive.Close();
    return magic;
}

template <class Record>
bool load(const CString& path, Record& record) {
    CFile file(path, CFile::modeRead | CFile::shareDenyWrite);
    CArchive archive(&file, CArchive::load);
    const bool loaded = record.serialize(archive) != 0;
    archive.Close();
    return loaded;
}

// Gives the datasets of one holder to another.
void moveDatasets(CSnsCohFacezq& from, CSnsCohFacezq& to) {
    CSnsCohDatazq* const datasets[] = {from.m_cohActive, from.m_cohControl, from.m_cohActCtl};
    from.m_cohActive = from.m_cohControl = from.m_cohActCtl = nullptr;
    for (int cls = 0; cls < 3; ++cls)
        to.setCohData(datasets[cls], cls);
    to.m_curntCohDataSetID = from.m_curntCohDataSetID;
}

void moveDatasets(CGroupMeegCxcFacezq& from, CGroupMeegCxcFacezq& to) {
    to.cleanSnsCohPkg();
    for (INT_PTR i = 0; i < from.m_cohDatasets.GetSize(); ++i)
        to.m_cohDatasets.Add(from.m_cohDatasets.GetAt(i));
    from.m_cohDatasets.RemoveAll();
    to.m_curntCohDataSetID = from.m_curntCohDataSetID;
}

Opened openPackage(const CString& path, CSnsCohFacezq& package) {
    CSnsCohFacezq loaded;
    if (!load(path, loaded)) return Opened::nothing;
    moveDatasets(loaded, package);
    return Opened::intoPackage;
}

Opened openGroup(const CString& path, CGroupMeegCxcFacezq& group) {
    struct Group : CGroupMeegCxcFacezq {
        ~Group() { cleanSnsCohPkg(); }
    } loaded;
    if (!load(path, loaded)) return Opened::nothing;
    moveDatasets(loaded, group);
    return Opened::intoGroup;
}

Opened openDataset(const CString& path, CSnsCohFacezq& package, CGroupMeegCxcFacezq& group) {
    auto dataset = std::make_unique<CSnsCohDatazq>();
    if (!load(path, *dataset)) return Opened::nothing;
    const CSnsCohDatazq* const taken[] = {package.m_cohActive, package.m_cohControl,
                                          package.m_cohActCtl};
    for (int cls = 0; cls < 3; ++cls) {
        if (taken[cls] != nullptr) continue;
        package.setCohData(dataset.release(), cls);
        package.m_curntCohDataSetID = cls;
        return Opened::intoPackage;
    }
    const auto last = static_cast<int>(group.getTotalCohDataset());
    if (group.setCohData(dataset.get(), last) == 0) return Opened::nothing;
    dataset.release();
    group.m_curntCohDataSetID = last;
    return Opened::intoGroup;
}

Opened openKnown(const CString& path, CSnsCohFacezq& package, CGroupMeegCxcFacezq& group) {
    const CString magic = magicOf(path);
    if (magic == _T("SNSCOHFACE")) return openPackage(path, package);
    if (magic == _T("GROUPCXCDATAFACE")) return openGroup(path, group);
    // Anything else is for the dataset's reader to judge, and to tell the user about.
    return openDataset(path, package, group);
}

}  // namespace

Opened openRecord(const CString& path, CSnsCohFacezq& package, CGroupMeegCxcFacezq& group) {
    const CWaitCursor wait;
    try {
        return openKnown(path, package, group);
    } catch (CException* e) {
        e->Delete();
    }
    AfxMessageBox(_T("This file cannot be read to its end:\n") + path);
    return Opened::nothing;
}
