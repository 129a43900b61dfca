#include "cxcpkg/CGroupMeegCxcFace09File.h"

#include "cxcfile/record_io.h"
#include "cxcpkg/nested_dataset.h"

namespace {

using cxc::Nested;

constexpr TCHAR groupMagic[] = _T("GROUPCXCDATAFACE");

// The day on which the layout was fixed; there is one version.
constexpr DWORD newestVersion = 20180725;

using Pass = void (*)(CArchive& ar, CGroupMeegCxcFace& group);

// Stores or loads one member; the archive decides.
template <auto Member>
void pass(CArchive& ar, CGroupMeegCxcFace& group) {
    cxc::passItem(ar, group.*Member);
}

// What follows the datasets.
constexpr Pass others[] = {
    pass<&CGroupMeegCxcFace::m_pkgID>,           pass<&CGroupMeegCxcFace::m_pkgName>,
    pass<&CGroupMeegCxcFace::m_pkgInfo>,         pass<&CGroupMeegCxcFace::m_pkgShow>,
    pass<&CGroupMeegCxcFace::m_actCtlOperation>,
};

int storeEntry(CArchive& ar, const CPtrArray& list, INT_PTR index) {
    CSnsCohDatazq* dataset = cxc::datasetAt(list, index);
    const Nested stored = cxc::passNested(ar, dataset);
    return stored == Nested::absent || stored == Nested::whole ? 1 : 0;
}

// Reads a dataset to the end of the list. One that cannot be read is released, also where an
// exception ends the reading.
int loadEntry(CArchive& ar, CPtrArray& list) {
    struct Owner {
        ~Owner() { cxc::releaseDataset(dataset); }
        CSnsCohDatazq* dataset = nullptr;
    } owner;
    const Nested loaded = cxc::passNested(ar, owner.dataset);
    if (loaded == Nested::absent) return 1;
    const INT_PTR n = list.GetSize();
    if (loaded != Nested::whole || !cxc::makeRoom(list, n, 1)) return 0;
    list.SetAt(n, owner.dataset);
    owner.dataset = nullptr;
    return 1;
}

}  // namespace

int CGroupMeegCxcFace09File::_01SerializeCohDataPA(CArchive& ar) {
    if (ar.IsLoading()) cleanSnsCohPkg();
    cxc::passItem(ar, m_curntCohDataSetID);
    int count = static_cast<int>(m_cohDatasets.GetSize());
    cxc::passItem(ar, count);
    // Nothing is reserved for the count, which a file may set to anything: each entry takes bytes.
    for (int i = 0; i < count; ++i) {
        const int passed =
            ar.IsLoading() ? loadEntry(ar, m_cohDatasets) : storeEntry(ar, m_cohDatasets, i);
        if (passed == 0) return 0;
    }
    return 1;
}

int CGroupMeegCxcFace09File::_03SerializeOthers(CArchive& ar) {
    for (const Pass field : others)
        field(ar, *this);
    return 1;
}

int CGroupMeegCxcFace09File::serialize20180725(CArchive& ar) {
    return _01SerializeCohDataPA(ar) != 0 ? _03SerializeOthers(ar) : 0;
}

int CGroupMeegCxcFace09File::serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        cxc::storeMagic(ar, groupMagic);
        ar << newestVersion;
        if (serialize20180725(ar) == 0) return 0;
        ar.Flush();
        return 1;
    }

    if (!cxc::loadMagic(ar, groupMagic)) {
        AfxMessageBox(_T("Unknown Coherence file!"));
        return 0;
    }
    DWORD version = 0;
    ar >> version;
    if (version == newestVersion) return serialize20180725(ar);
    AfxMessageBox(_T("Group Cxc data format error!"));
    return 0;
}
