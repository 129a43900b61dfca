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

// What both records say about their holders, beside the datasets. The operation is a group's only:
// a package keeps the one that its user has chosen.
template <class Holder>
void copyHead(const Holder& from, Holder& to) {
    to.m_pkgID = from.m_pkgID;
    to.m_pkgName = from.m_pkgName;
    to.m_pkgInfo = from.m_pkgInfo;
    to.m_pkgShow = from.m_pkgShow;
    to.m_curntCohDataSetID = from.m_curntCohDataSetID;
}

// Each gives all that was loaded to the holder that managers and viewers know.
void moveAll(CSnsCohFacezq& from, CSnsCohFacezq& to) {
    CSnsCohDatazq* const datasets[] = {from.m_cohActive, from.m_cohControl, from.m_cohActCtl};
    from.m_cohActive = from.m_cohControl = from.m_cohActCtl = nullptr;
    for (int cls = 0; cls < 3; ++cls)
        to.setCohData(datasets[cls], cls);
    copyHead(from, to);
}

void moveAll(CGroupMeegCxcFacezq& from, CGroupMeegCxcFacezq& to) {
    to.cleanSnsCohPkg();
    for (INT_PTR i = 0; i < from.m_cohDatasets.GetSize(); ++i)
        to.m_cohDatasets.Add(from.m_cohDatasets.GetAt(i));
    from.m_cohDatasets.RemoveAll();
    copyHead(from, to);
    to.m_actCtlOperation = from.m_actCtlOperation;
}

Opened openPackage(const CString& path, CSnsCohFacezq& package) {
    CSnsCohFacezq loaded;
    if (!load(path, loaded)) return Opened::nothing;
    moveAll(loaded, package);
    return Opened::intoPackage;
}

Opened openGroup(const CString& path, CGroupMeegCxcFacezq& group) {
    struct Group : CGroupMeegCxcFacezq {
        ~Group() { cleanSnsCohPkg(); }
    } loaded;
    if (!load(path, loaded)) return Opened::nothing;
    moveAll(loaded, group);
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
