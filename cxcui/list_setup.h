// What the list views of the managers have in common: how their columns and pictures are set up.
#pragma once

#include "framework.h"

#include <cstddef>

namespace cxc {

constexpr int columnWidth = 90;  // pixels

/// Index of a row's picture: by the show flag of its dataset.
inline int imageOf(bool shown) {
    return shown ? 1 : 0;
}

/// Deletes all columns, then inserts one for each title, left-aligned. Deliberately each column
/// carries the number behind its own as sub-item; which text it shows does not depend on that.
void setUpColumns(CListCtrl& list, const LPCTSTR* titles, int count);

template <std::size_t Count>
void setUpColumns(CListCtrl& list, const LPCTSTR (&titles)[Count]) {
    setUpColumns(list, titles, static_cast<int>(Count));
}

/// Makes the large and the small image list where the control has none, hidden first, shown second,
/// and gives them to the control, which destroys the system's lists with itself: a control that is
/// made again on the same object gets new ones. The objects are deliberately never deleted: they
/// would destroy the lists a second time. Without memory there are no pictures.
void setUpImages(CListCtrl& list, CImageList*& large, CImageList*& small);

/// Sets the texts of the sub-items 1, 2, ... of a row, up to the first that fails. Returns whether
/// all were set.
bool setTexts(CListCtrl& list, int row, const CString* texts, int count);

template <std::size_t Count>
bool setTexts(CListCtrl& list, int row, const CString (&texts)[Count]) {
    return setTexts(list, row, texts, static_cast<int>(Count));
}

/// Text of one value by a format with one conversion of that type.
template <class Value>
CString formatted(LPCTSTR format, Value value) {
    CString text;
    text.Format(format, value);
    return text;
}

}  // namespace cxc
