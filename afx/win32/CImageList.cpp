#include "afx_imagelist.h"

#include "afx/win32/handle_map.h"
#include "afx/win32/window_creation.h"

IMPLEMENT_DYNAMIC(CImageList, CObject)

namespace {

using ImageLists = afx::HandleMap<CImageList, HIMAGELIST>;

}  // namespace

CImageList::~CImageList() {
    CImageList::DeleteImageList();
}

CImageList* PASCAL CImageList::FromHandle(HIMAGELIST hImageList) {
    if (hImageList == nullptr) return nullptr;
    return ImageLists::instance().object(
        hImageList, [hImageList](CImageList& list) { list.m_hImageList = hImageList; });
}

BOOL CImageList::Attach(HIMAGELIST hImageList) {
    if (hImageList == nullptr) return FALSE;
    m_hImageList = hImageList;
    ImageLists::instance().attach(hImageList, this);
    return TRUE;
}

HIMAGELIST CImageList::Detach() {
    const HIMAGELIST handle = m_hImageList;
    ImageLists::instance().detach(handle, this);
    m_hImageList = nullptr;
    return handle;
}

BOOL CImageList::Create(int cx, int cy, UINT nFlags, int nInitial, int nGrow) {
    afx::initCommonControls();
    return Attach(::ImageList_Create(cx, cy, nFlags, nInitial, nGrow));
}

BOOL CImageList::DeleteImageList() {
    return m_hImageList != nullptr && ::ImageList_Destroy(Detach());
}

int CImageList::GetImageCount() const {
    return ::ImageList_GetImageCount(m_hImageList);
}

int CImageList::Add(HICON hIcon) {
    return ::ImageList_ReplaceIcon(m_hImageList, -1, hIcon);
}
