#include "afx_framewnd.h"

#include "afx_app.h"
#include "afx_module.h"
#include "afxmsg_.h"

IMPLEMENT_DYNAMIC(CFrameWnd, CWnd)

BEGIN_MESSAGE_MAP(CFrameWnd, CWnd)
ON_WM_INITMENUPOPUP()
END_MESSAGE_MAP()

namespace {

// Commands from here on belong to the system.
constexpr UINT firstSystemCommand = 0xF000;

}  // namespace

const CRect CFrameWnd::rectDefault(CW_USEDEFAULT, CW_USEDEFAULT, 0, 0);

CFrameWnd::CFrameWnd() = default;

CFrameWnd::~CFrameWnd() {
    if (m_hAccelTable != nullptr) ::DestroyAcceleratorTable(m_hAccelTable);
}

BOOL CFrameWnd::Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                       const RECT& rect, CWnd* pParentWnd, LPCTSTR lpszMenuName, DWORD dwExStyle,
                       CCreateContext* pContext) {
    HMENU menu = nullptr;
    if (lpszMenuName != nullptr) {
        menu = ::LoadMenu(AfxFindResourceHandle(lpszMenuName, RT_MENU), lpszMenuName);
        if (menu == nullptr) return FALSE;
    }
    const bool place = rect.left != CW_USEDEFAULT;
    const int width = place ? rect.right - rect.left : CW_USEDEFAULT;
    const int height = place ? rect.bottom - rect.top : CW_USEDEFAULT;
    const HWND owner = pParentWnd != nullptr ? pParentWnd->m_hWnd : nullptr;
    const BOOL created = CreateEx(dwExStyle, lpszClassName, lpszWindowName, dwStyle, rect.left,
                                  rect.top, width, height, owner, menu, pContext);
    if (!created && menu != nullptr) ::DestroyMenu(menu);
    return created;
}

BOOL CFrameWnd::LoadFrame(UINT nIDResource, DWORD dwDefaultStyle, CWnd* pParentWnd,
                          CCreateContext* pContext) {
    const LPCTSTR name = MAKEINTRESOURCE(nIDResource);
    const HICON icon = ::LoadIcon(AfxFindResourceHandle(name, RT_GROUP_ICON), name);
    const LPCTSTR className = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursor(nullptr, IDC_ARROW),
                                                  reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1), icon);
    const CWinApp* const app = AfxGetApp();
    const LPCTSTR title = app != nullptr ? app->m_pszAppName : nullptr;
    if (!Create(className, title, dwDefaultStyle, rectDefault, pParentWnd, name, 0, pContext))
        return FALSE;
    LoadAccelTable(name);
    return TRUE;
}

BOOL CFrameWnd::LoadAccelTable(LPCTSTR lpszResourceName) {
    const HINSTANCE module = AfxFindResourceHandle(lpszResourceName, RT_ACCELERATOR);
    m_hAccelTable = ::LoadAccelerators(module, lpszResourceName);
    return m_hAccelTable != nullptr;
}

BOOL CFrameWnd::PreTranslateMessage(MSG* pMsg) {
    if (CWnd::PreTranslateMessage(pMsg)) return TRUE;
    return m_hAccelTable != nullptr && ::TranslateAccelerator(m_hWnd, m_hAccelTable, pMsg);
}

BOOL CFrameWnd::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) {
    if (CWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo)) return TRUE;
    CWinApp* const app = AfxGetApp();
    return app != nullptr && app->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

void CFrameWnd::PostNcDestroy() {
    delete this;
}

void CFrameWnd::OnInitMenuPopup(CMenu* pPopupMenu, UINT, BOOL bSysMenu) {
    if (bSysMenu) return;
    const UINT count = pPopupMenu->GetMenuItemCount();
    for (UINT i = 0; i < count; ++i) {
        CCmdUI state;
        state.m_nID = pPopupMenu->GetMenuItemID(static_cast<int>(i));
        state.m_nIndex = i;
        state.m_pMenu = pPopupMenu;
        if (state.m_nID == 0 || state.m_nID == static_cast<UINT>(-1)) continue;
        state.DoUpdate(this, m_bAutoMenuEnable && state.m_nID < firstSystemCommand);
    }
}
