// Message maps and the way of a command through them.
#include "afx_cmdtarget.h"

namespace {

const AFX_MSGMAP_ENTRY* find(const AFX_MSGMAP* map, UINT message, UINT code, UINT id) {
    for (; map->pfnGetBaseMap != nullptr; map = map->pfnGetBaseMap()) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nMessage != 0; ++entry) {
            if (entry->nMessage == message && entry->nCode == code && entry->nID == id)
                return entry;
        }
    }
    return nullptr;
}

}  // namespace

const AFX_MSGMAP* PASCAL CCmdTarget::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, nullptr}};
    static const AFX_MSGMAP map = {nullptr, entries};
    return &map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
    return GetThisMessageMap();
}

BOOL CCmdTarget::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) {
    UINT message = WM_COMMAND;
    UINT code = static_cast<UINT>(nCode);
    if (nCode != CN_UPDATE_COMMAND_UI) {
        if (HIWORD(code) != 0) message = HIWORD(code);
        code = LOWORD(code);
    }
    const AFX_MSGMAP_ENTRY* const entry = find(GetMessageMap(), message, code, nID);
    if (entry == nullptr) return FALSE;
    if (pHandlerInfo != nullptr) {
        pHandlerInfo->pTarget = this;
    } else {
        AFX_MESSAGE unpacked = {0, 0, pExtra, 0};
        entry->pfn(*this, unpacked);
    }
    return TRUE;
}
