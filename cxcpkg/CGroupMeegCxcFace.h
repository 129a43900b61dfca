// A group: any number of coherence datasets, as of subjects or trials, in one list. Holds all
// fields of the group chain and adds the list.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

/// The group, base of its chain: all fields, and the list of datasets.
///
/// Datasets are addressed by their index in the list, whose entries may be null; null entries
/// count in sizes and indices. The current index names the dataset in use; -1 is none. It is not
/// kept in step with the list.
///
/// In an index argument -1 stands for the current index. To clamp an index means to take 0 for a
/// negative one and the last entry for one beyond the list.
///
/// The group owns its datasets, but its destructor deliberately does not release them: call
/// cleanSnsCohPkg first. It does not own its viewers. Status results are 1 for success and 0 for
/// failure. Groups cannot be copied. One thread at a time.
class CXC_API CGroupMeegCxcFace {
public:
    /// Without datasets and viewers; the fields as listed with them.
    CGroupMeegCxcFace();
    /// Not to be copied.
    CGroupMeegCxcFace(const CGroupMeegCxcFace&) = delete;
    /// Not to be assigned.
    CGroupMeegCxcFace& operator=(const CGroupMeegCxcFace&) = delete;

    /// Number of entries.
    __int64 getTotalCohDataset();

    /// `id` clamped; -1 for an empty list.
    int getCohDatasetListID(int id);

    /// Makes `id`, clamped, the current index: 1. For an empty list the current index becomes 0
    /// and the result is 0.
    int setCurrentCohDataset(int id);

    /// Makes `id`, clamped, the current index and returns it. For an empty list the result is 0
    /// and the current index stays.
    int setCurntCohDataSetID(int id);

    /// The current index; -1 for none.
    int getCurntCohDataSetID();

    /// Inserts `data`, which may be null, at `index`, and moves the later entries up; a negative
    /// index becomes 0, one beyond the list appends. Nothing is replaced or released. The group
    /// owns it from now on. Returns 1; 0 without memory, then `data` stays the caller's.
    int setCohData(CSnsCohDatazq* data, int index);

    /// The entry at `index`; null outside the list. The current index stays.
    CSnsCohDatazq* getCoherenceData(int index);

    /// The entry at the current index, clamped; null for an empty list.
    CSnsCohDatazq* getTrlCohDataAny();

    /// 1 when the list has entries.
    int hasCohTimeData4Show();

    /// Releases and removes the entry at `index`, clamped; the later entries move down, the
    /// current index stays. 0 for an empty list.
    int deleteCohDataset(int index);

    /// Appends a new dataset with a grid of nSns x nSns pairs of nTime slices, named "CxcData"
    /// and the number of entries before it. Never resizes another. `flag` has no effect: all
    /// values of the new dataset are 0.0. Returns 1; 0, with nothing changed, for nSns below 2,
    /// nTime below 1, and without memory.
    int checkInitSnsCohPkg(int nSns, __int64 nTime, bool flag);

    /// Releases all datasets, empties the list, current index -1. Always 1.
    int cleanSnsCohPkg();

    /// Copy of the group's name.
    CString getCohDataPkgName();
    /// Show flag of the group.
    bool getCohDataPkgShow();

    /// Largest slice count of the datasets; 0 without any.
    __int64 getTimeSliceMax();
    /// Smallest slice count of the datasets; 0 without any.
    __int64 getTimeSliceMin();

    /// Smallest row count and, independently of it, smallest column count of the datasets; 0
    /// without any. Returns the number of datasets, null entries not counted.
    int getCxcSizeMin(__int64& rows, __int64& cols);
    /// As getCxcSizeMin, the largest counts.
    int getCxcSizeMax(__int64& rows, __int64& cols);

    /// @name Fields
    /// Public: where there is no operation, hosts and windows read and write them. Each line tells
    /// what the field holds and, last, its value after construction.
    /// @{
    int m_pkgID;              ///< the host's identifier, stored; 0
    CString m_pkgName;        ///< name, stored; "SnsCohFace", as a package, deliberately
    CString m_pkgInfo;        ///< descriptive text, stored; "Unknown"
    bool m_pkgShow;           ///< shown or hidden, stored; false
    int m_actCtlOperation;    ///< carried: stored, used by no operation of a group; 0
    int m_curntCohDataSetID;  ///< current index, -1 for none, stored; -1
    CPtrArray m_cohDatasets;  ///< CSnsCohDatazq pointers, owning, see above; may hold null
    CPtrArray m_viewers;      ///< CWnd pointers in the order of registration, not owned
    /// @}
};
