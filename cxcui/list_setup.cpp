#include "cxcui/list_setup.h"

#include "cxcdata/allocation.h"
#include "res/resource.h"

namespace cxc {
namespace {

// The picture of the icon that was drawn for this size; a scaled one where there is none.
HICON loadIcon(UINT id, int size) {
    const LPCTSTR name = MAKEINTRESOURCE(id);
    const HINSTANCE module = AfxFindResourceHandle(name, RT_GROUP_ICON);
    return static_cast<HICON>(::LoadImage(module, name, IMAGE_ICON, size, size, LR_SHARED));
}

// A control that has no list is a new one; what the object holds has ended with the one before.
// Forgotten before any new list is made, which may be given the same handle.
void forgetDead(const CListCtrl& list, int kind, CImageList* images) {
    if (images != nullptr && list.GetImageList(kind) == nullptr) images->Detach();
}

void giveImages(CListCtrl& list, int kind, CImageList*& images, int size) {
    if (list.GetImageList(kind) != nullptr) return;
    if (images == nullptr) images = newObject<CImageList>();
    if (images == nullptr || !images->Create(size, size, ILC_COLOR16, 0, 1)) return;
    images->Add(loadIcon(IDI_DATASET_HIDDEN, size));
    images->Add(loadIcon(IDI_DATASET_SHOWN, size));
    list.SetImageList(images, kind);
}

}  // namespace

void setUpColumns(CListCtrl& list, const LPCTSTR* titles, int count) {
    const CHeaderCtrl* const header = list.GetHeaderCtrl();
    const int present = header == nullptr ? 0 : header->GetItemCount();
    for (int column = 0; column < present; ++column)
        list.DeleteColumn(0);
    for (int column = 0; column < count; ++column)
        list.InsertColumn(column, titles[column], LVCFMT_LEFT, columnWidth, column + 1);
}

void setUpImages(CListCtrl& list, CImageList*& large, CImageList*& small) {
    forgetDead(list, LVSIL_NORMAL, large);
    forgetDead(list, LVSIL_SMALL, small);
    giveImages(list, LVSIL_NORMAL, large, 32);
    giveImages(list, LVSIL_SMALL, small, 16);
}

bool setTexts(CListCtrl& list, int row, const CString* texts, int count) {
    for (int i = 0; i < count; ++i) {
        if (!list.SetItemText(row, i + 1, texts[i])) return false;
    }
    return true;
}

}  // namespace cxc
