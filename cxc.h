/// @mainpage The model
///
/// CxC is coherence channel by channel: for every pair of sensors, a value per time slice, the
/// slices being the positions of a sliding window over a recording. A host computes the values;
/// the library holds, combines, shows and stores them. cxc.h is everything in one include: the
/// framework, the matrix class and every exported class.
///
/// - A package, CSnsCohFacezq, has three classes with one dataset each: 0 Active, 1 Control and
///   2 Act-Ctl, which is made of the two. A group, CGroupMeegCxcFacezq, has a list of many, as of
///   subjects, their average and their summary.
/// - A dataset, CSnsCohDatazq, is a grid of sensor pairs, rows x columns, with its name, frequency
///   band, latency, time selection and colours.
/// - A pair, CWavChnlChnlDatazq, is a vector of slices: one double for each, and a backup.
///
/// Indexes begin at 0: value(t, r, c) is slice t of the pair at row r and column c, in the grid
/// `m_mCC[r][c].m_data[t]`, in the matrix CMMatrix2Dzq of slice t the element (r, c). In an
/// argument -1 stands for what is current: slice, row, column, class, or index in a group.
///
/// Owners: a package owns its datasets, a dataset its grid, a vector its arrays, and a package or
/// group its manager window. A group does not release its datasets by itself: cleanSnsCohPkg.
/// Copies of datasets and vectors share what they point to. Viewer windows stay the host's.
///
/// Results: 1 is success and 0 failure, unless an operation says otherwise. Most failures are
/// silent; where a text is quoted, it is shown in a message box, which in programs without windows
/// is the application object's DoMessageBox. Unless a program overrides that, it writes the text to
/// standard error and answers no question, which counts as no. The framework's exceptions of
/// archives and files pass through serialize, opening and saving; the library has none of its own.
///
/// Text: 16-bit units everywhere. Off Windows TCHAR is char16_t, literals stand in _T(), and
/// printf does not know such text: std::filesystem::path(text.GetString()).string() is the
/// text as UTF-8.
///
/// Threads: nothing locks. One thread at a time uses an object and what it owns; windows, viewers
/// and messages belong to the thread of the user interface.
///
/// Archive: serialize stores or loads, as the CArchive does. A record begins with its name and
/// version; the newest layout is written, older ones are read. A ".cxc" file is one dataset.
///
/// In a function of a host that has its application object:
/// @code{.cpp}
/// CSnsCohFacezq package;
/// CSnsCohDatazq* const active = package.checkInitSnsCoh4Class(32, 9, 0, true);   // 9 slices
/// CSnsCohDatazq* const control = package.checkInitSnsCoh4Class(32, 1, 1, true);  // a baseline
/// CMMatrix2Dzq slice;
/// double** const rows = slice.checkInit(32, 32, true);
/// if (active == nullptr || control == nullptr || rows == nullptr) return 1;  // no memory
/// rows[2][1] = 0.75;                                 // row sensor 2 with column sensor 1
/// active->addMSnsSnsTimID(&slice, 5);                // in slice 5
/// if (package.doAct_Ctl_operation() == 0) return 2;  // Act-Ctl is Active minus Control
/// CFile file(_T("example.cxc"), CFile::modeCreate | CFile::modeWrite);
/// CArchive archive(&file, CArchive::store);
/// return package.m_cohActCtl->serialize(archive) == 1 ? 0 : 3;
/// @endcode
#pragma once

#include "framework.h"

#include "siblings/matrix/CMMatrix2Dzq.h"

#include "cxcdata/CWavChnlChnlDatazq.h"

#include "cxcdata/CSnsCohDatazq.h"

#include "cxcdata/array_exchange.h"

#include "cxcpkg/CSnsCohFacezq.h"

#include "cxcpkg/CGroupMeegCxcFacezq.h"

#if defined(_WIN32)
#include "cxcui/CDlgGroupTrlCxcDataManager.h"

#include "cxcui/CDlgSnsCohManager.h"
#endif
