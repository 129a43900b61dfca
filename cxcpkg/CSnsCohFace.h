// A package: the coherence datasets of one recording, one for each of three classes. Holds all
// fields of the package chain and adds the slots and their sizes.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

/// The package, base of its chain: all fields, and one slot for each of three classes.
///
/// Class ids: 0 Active, 1 Control, 2 Act-Ctl (Active combined with the baseline Control). A class
/// is a slot of the package, not a property of the dataset: each slot holds one dataset or none.
///
/// The current class is what windows use when no class is named; -1 is none. It is not kept in
/// step with the slots: a slot may be emptied while its class stays current.
///
/// In a class argument -1 stands for the current class where an operation says so. Counts that
/// limit an index are the number of datasets, not the highest class id: with Active and Act-Ctl
/// only, index 2 is clamped to 1, which is the class id of the missing Control. Deliberate.
///
/// The package owns its datasets and releases them; a pointer that it gave out is dead then. It
/// does not own its viewers. Status results are 1 for success and 0 for failure. Packages cannot
/// be copied. One thread at a time.
class CXC_API CSnsCohFace {
public:
    /// Without datasets and viewers; the fields as listed with them.
    CSnsCohFace();
    /// Not to be copied.
    CSnsCohFace(const CSnsCohFace&) = delete;
    /// Not to be assigned.
    CSnsCohFace& operator=(const CSnsCohFace&) = delete;
    /// Releases the datasets.
    ~CSnsCohFace();

    /// Number of datasets, 0 to 3.
    __int64 getTotalCohDataset();

    /// `id` clamped into the number of datasets; -1 without datasets.
    int getCohDatasetListID(int id);

    /// Makes `id`, clamped into the number of datasets, the current class. Returns 1; without
    /// datasets the current class becomes 0 and the result is 0.
    int setCurrentCohDataset(int id);

    /// Makes `id`, clamped into the number of datasets, the current class and returns it; without
    /// datasets both are -1.
    int setCurntCohDataSetID(int id);

    /// The current class; -1 for none.
    int getCurntCohDataSetID();

    /// Releases the dataset of class cls (-1: the current one) and puts `data`, which may be
    /// null, in its place; the package owns it from now on. Returns 1, or 0 for no such class:
    /// then `data` stays the caller's.
    /// `data` must not be the slot's own dataset already: that is released all the same and the
    /// slot is empty afterwards (result 1).
    int setCohData(CSnsCohDatazq* data, int cls);

    /// The dataset of class cls, which becomes the current class; null where there is none, and
    /// then the class still becomes current. -1 stands for the current class and shows
    /// "This is no data!" where that is none. Null, and the current class stays, for no such
    /// class.
    CSnsCohDatazq* getCoherenceData(int cls);

    /// The first dataset there is, in class order; its class becomes current. Null without one.
    CSnsCohDatazq* getTrlCohDataAny();

    /// 1 when there is a dataset.
    int hasCohTimeData4Show();

    /// The first dataset, in class order, whose item index m_headerInt9 is listID; its class
    /// becomes current. Null without one.
    CSnsCohDatazq* actCohDataset2ListID(int listID);

    /// Releases the dataset of class cls (-1: the current one), if there is one. The current
    /// class stays. 0 for no such class.
    int deleteCohDataset(int cls);

    /// Gives the classes grids of nSns x nSns pairs: Active nActTime slices, Control nCtlTime,
    /// Act-Ctl nMixTime. A count below 1 releases Control or Act-Ctl. Missing Active and Act-Ctl
    /// datasets are made and named "Active CxC" and "Act-Ctl CxC"; `flag` clears kept values.
    /// Returns 1, or 0: nothing changed for nSns below 2 or nActTime below 1, otherwise where a
    /// grid could not be had; steps done before stay.
    /// A missing Control is deliberately not made: the call then leaves a fresh dataset without a
    /// grid as Active, forgets the former Active without releasing it, and returns 0. Control
    /// comes from checkInitSnsCoh4Class, setCohData or a record.
    int checkInitSnsCohPkg(int nSns, __int64 nActTime, __int64 nCtlTime, __int64 nMixTime,
                           bool flag);

    /// Gives class cls (-1: the current one) a grid of nSns x nSns pairs of nTime slices, makes
    /// its dataset where it is missing, named "Active CxC", "Control CxC" or "Act-Ctl CxC", and
    /// makes the class current. `flag` clears kept values.
    /// Returns the dataset, owned by the package; null for nSns below 2 or nTime below 1 (nothing
    /// changed), without memory (the dataset stays, without a grid), and for no such class, after
    /// the message "Wrong wave selection class!".
    CSnsCohDatazq* checkInitSnsCoh4Class(int nSns, __int64 nTime, int cls, bool flag);

    /// Releases all datasets; the current class and the viewers stay. Always 1.
    int cleanSnsCohPkg();

    /// Makes cls current when it has a dataset: 1, else 0. -1 is not resolved: as any other value
    /// but 0, 1 and 2 it shows "The set class is wrong!?" and gives 0.
    int setTrlCxcClass(int cls);

    /// Copy of the package's name.
    CString getCohDataPkgName();
    /// Show flag of the package.
    bool getCohDataPkgShow();

    /// @name Fields
    /// Public: where there is no operation, hosts and windows read and write them. Each line tells
    /// what the field holds and, last, its value after construction.
    /// @{
    int m_pkgID;                  ///< the host's identifier, stored; 0
    CString m_pkgName;            ///< name, stored; "SnsCohFace"
    CString m_pkgInfo;            ///< descriptive text, stored; "Unknown"
    bool m_pkgShow;               ///< shown or hidden, stored; false
    int m_actCtlOperation;        ///< 0 subtract, 1 add, 2 multiply, 3 divide; not stored; 0
    int m_curntCohDataSetID;      ///< current class, -1 for none, stored; -1
    CSnsCohDatazq* m_cohActive;   ///< class 0, owning; null
    CSnsCohDatazq* m_cohControl;  ///< class 1, owning; null
    CSnsCohDatazq* m_cohActCtl;   ///< class 2, owning; null
    CPtrArray m_viewers;          ///< CWnd pointers in the order of registration, not owned
    /// @}
};
