#include "cxcui/list_setup.h"

#include "res/resource.h"

namespace cxc {
namespace {

// The picture of the icon that was drawn for this size; a scaled one where there is none.
HICON loadIcon(UINT id, int size) {
    const LPCTSTR name = MAKEINTRESOURCE(id);
    const HINSTANCE module = AfxFindResourceHandle(name, RT_GROUP_ICON);
    return static_cast<HICON>(::LoadImage(module, name, IMAGE_ICON, size, size, LR_SHARED));
}

CImageList* newImageList(int size) {
    auto* const images = new CImageList;
    images->Create(size, size, ILC_COLOR16, 0, 1);
    images->Add(loadIcon(IDI_DATASET_HIDDEN, size));
    images->Add(loadIcon(IDI_DATASET_SHOWN, size));
    return images;
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
    if (large == nullptr) large = newImageList(32);
    if (small == nullptr) small = newImageList(16);
    list.SetImageList(large, LVSIL_NORMAL);
    list.SetImageList(small, LVSIL_SMALL);
}

bool setTexts(CListCtrl& list, int row, const CString* texts, int count) {
    for (int i = 0; i < count; ++i) {
        if (!list.SetItemText(row, i + 1, texts[i])) return false;
    }
    return true;
}

}  // namespace cxc
