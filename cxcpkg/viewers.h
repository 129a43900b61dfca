// The list of viewer windows that a package or a group asks to repaint.
#pragma once

#include "framework.h"

namespace cxc {

/// Appends a window, null included. Returns the new number of entries, 0 when it is in the list
/// already.
int addViewer(CPtrArray& viewers, CWnd* wnd);

/// Removes the first entry that is wnd: number of entries left, or -1 without such an entry.
/// `all` empties the list instead: 0.
int removeViewer(CPtrArray& viewers, CWnd* wnd, bool all);

/// Registers wnd where it is not null and not yet listed, then asks for repainting of the whole
/// client area: of wnd (1, or 0 for null), or with `all` of every visible viewer (number of
/// entries).
int invalidateViewers(CPtrArray& viewers, bool erase, CWnd* wnd, bool all);

}  // namespace cxc
