#include "cxcpkg/CSnsCohFace09File.h"

#include "cxcfile/record_io.h"
#include "cxcpkg/class_slots.h"
#include "cxcpkg/nested_dataset.h"

namespace {

using cxc::Nested;

constexpr TCHAR packageMagic[] = _T("SNSCOHFACE");

// A version word is the day on which its layout was fixed. Only the newest is written.
constexpr DWORD newestVersion = 20121016;

using Pass = void (*)(CArchive& ar, CSnsCohFace& package);

// Stores or loads one member; the archive decides.
template <auto Member>
void pass(CArchive& ar, CSnsCohFace& package) {
    cxc::passItem(ar, package.*Member);
}

// A field of older layouts that nothing is known of: stored as 0, skipped while loading.
template <class T>
void reserved(CArchive& ar, CSnsCohFace&) {
    T nothing = 0;
    cxc::passItem(ar, nothing);
}

// What follows the datasets.
constexpr Pass others[] = {
    pass<&CSnsCohFace::m_pkgID>,
    pass<&CSnsCohFace::m_pkgName>,
    pass<&CSnsCohFace::m_pkgInfo>,
    pass<&CSnsCohFace::m_pkgShow>,
};
constexpr Pass others20080721[] = {
    reserved<int>,
    reserved<int>,
    pass<&CSnsCohFace::m_pkgID>,
    pass<&CSnsCohFace::m_pkgName>,
    pass<&CSnsCohFace::m_pkgShow>,
    reserved<__int64>,
    reserved<__int64>,
};

template <std::size_t Count>
int passAll(CArchive& ar, CSnsCohFace& package, const Pass (&fields)[Count]) {
    for (const Pass field : fields)
        field(ar, package);
    return 1;
}

// Reads the dataset of `cls`. It comes into its slot when its record ends, however that happens:
// while a message of the record stands, the user may delete what the slots hold.
Nested loadSlot(CArchive& ar, CSnsCohFace& package, const cxc::CohClass& cls) {
    struct Placed {
        ~Placed() {
            if (dataset == nullptr) return;
            cxc::releaseSlot(package, cls);
            package.*cls.slot = dataset;
        }
        CSnsCohFace& package;
        const cxc::CohClass& cls;
        CSnsCohDatazq* dataset;
    } placed = {package, cls, nullptr};
    return cxc::passNested(ar, placed.dataset);
}

// Whether the record goes on behind the dataset of `cls`. Deliberate: while loading, a Control
// record that was refused is passed over, and what follows is read from where it stopped.
bool goesOn(Nested dataset, const cxc::CohClass& cls, bool loading) {
    if (dataset == Nested::refused) return loading && &cls == &cxc::controlClass;
    return dataset != Nested::noMemory;
}

}  // namespace

int CSnsCohFace09File::_01SerializeCohDataPA(CArchive& ar) {
    if (ar.IsLoading()) cleanSnsCohPkg();
    cxc::passItem(ar, m_curntCohDataSetID);
    for (const cxc::CohClass& cls : cxc::cohClasses) {
        const Nested dataset =
            ar.IsLoading() ? loadSlot(ar, *this, cls) : cxc::passNested(ar, this->*cls.slot);
        if (!goesOn(dataset, cls, ar.IsLoading())) return 0;
    }
    return 1;
}

int CSnsCohFace09File::_03SerializeOthers(CArchive& ar) {
    return passAll(ar, *this, others);
}

int CSnsCohFace09File::_03SerializeOthers_obsolete(CArchive& ar) {
    return passAll(ar, *this, others20080721);
}

int CSnsCohFace09File::serialize20121016(CArchive& ar) {
    if (ar.IsLoading()) cleanSnsCohPkg();
    return _01SerializeCohDataPA(ar) != 0 ? _03SerializeOthers(ar) : 0;
}

int CSnsCohFace09File::serialize20080721(CArchive& ar) {
    if (ar.IsLoading()) cleanSnsCohPkg();
    return _01SerializeCohDataPA(ar) != 0 ? _03SerializeOthers_obsolete(ar) : 0;
}

int CSnsCohFace09File::serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        cxc::storeMagic(ar, packageMagic);
        ar << newestVersion;
        if (serialize20121016(ar) == 0) return 0;
        ar.Flush();
        return 1;
    }

    if (!cxc::loadMagic(ar, packageMagic)) {
        AfxMessageBox(_T("Unknown Coherence file!"));
        return 0;
    }
    DWORD version = 0;
    ar >> version;
    if (version == 20121016) return serialize20121016(ar);
    if (version == 20080721) return serialize20080721(ar);
    AfxMessageBox(_T("Coherence data format error!"));
    return 0;
}
