// Message maps: which handler of a class deals with which message (Windows).
//
// Differences from MFC:
//  1. An entry holds a function that unpacks the message for its handler, not a signature number
//     and a cast member pointer; a handler of the wrong form does not compile.
//  2. Ranges of ids and registered messages have no entries.
#pragma once

#include "afx_user.h"

#ifdef _WIN32

class CCmdTarget;

/// A message on its way to a handler.
struct AFX_MESSAGE {
    WPARAM wParam;
    LPARAM lParam;
    void* pExtra;    // AFX_NOTIFY of a notification, CCmdUI of an update, otherwise null
    LRESULT result;  // result of the message, 0 until a handler sets it
};

/// What a notification brings.
struct AFX_NOTIFY {
    LRESULT* pResult;
    NMHDR* pNMHDR;
};

/// Filled in instead of running the handler.
struct AFX_CMDHANDLERINFO {
    CCmdTarget* pTarget;  // object that has a handler
};

struct AFX_MSGMAP_ENTRY {
    UINT nMessage;  // 0 ends the table
    UINT nCode;     // notification code; 0 for window messages
    UINT nID;       // control or command; 0 for window messages
    void (*pfn)(CCmdTarget& target, AFX_MESSAGE& message);
};

struct AFX_MSGMAP {
    const AFX_MSGMAP*(PASCAL* pfnGetBaseMap)();  // null at CCmdTarget
    const AFX_MSGMAP_ENTRY* lpEntries;
};

/// Codes of OnCmdMsg beside those of the controls.
#define CN_COMMAND 0
#define CN_UPDATE_COMMAND_UI (-1)

/// Added to the message in the entries that a control has for its own notifications.
#define WM_REFLECT_BASE (WM_USER + 0x1C00)

#define DECLARE_MESSAGE_MAP()                            \
protected:                                               \
    static const AFX_MSGMAP* PASCAL GetThisMessageMap(); \
    const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)               \
    const AFX_MSGMAP* theClass::GetMessageMap() const {      \
        return GetThisMessageMap();                          \
    }                                                        \
    const AFX_MSGMAP* PASCAL theClass::GetThisMessageMap() { \
        using ThisClass [[maybe_unused]] = theClass;         \
        using TheBaseClass = baseClass;                      \
        static const AFX_MSGMAP_ENTRY messageEntries[] = {
#define END_MESSAGE_MAP()                                                                    \
    { 0, 0, 0, nullptr }                                                                     \
    }                                                                                        \
    ;                                                                                        \
    static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, messageEntries}; \
    return &messageMap;                                                                      \
    }

#endif
