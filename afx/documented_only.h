// The framework without what the subset has of its own. scripts/strict.sh includes this before
// every source of the library: a source that names one of the words below does not compile. With
// the real framework it would not compile either, or it would rely on what is not documented there.
#pragma once

#include "framework.h"

#include <afxdllx.h>

#undef AFX_API
#undef AFX_MESSAGE_BOX_DECLARED

// The subset's own namespaces and macros.
#pragma GCC poison afx afx_headless AFX_API AFX_EXPORTS AFX_MESSAGE_BOX_DECLARED
// What answers dialogs where nobody sits, and members that are the subset's own.
#pragma GCC poison AnswerFileDialog AnswerColorDialog m_bOpenFileDialog m_nExitCode ownerWindow
// What the macros of message maps and run-time classes are made of.
#pragma GCC poison AFX_MESSAGE AFX_NOTIFY AFX_MSGMAP AFX_MSGMAP_ENTRY AfxHandler GetThisMessageMap
// Exported by the framework, but not documented.
#pragma GCC poison AfxReadStringLength AfxWriteStringLength
// Macros that other macros need cannot be taken away; the script looks for them in the text.
// not used: AFX_ENTRY WM_REFLECT_BASE
