#include "afx_dialogex.h"

IMPLEMENT_DYNAMIC(CDialogEx, CDialog)

CDialogEx::CDialogEx() = default;
CDialogEx::CDialogEx(LPCTSTR lpszTemplateName, CWnd* pParent)
    : CDialog(lpszTemplateName, pParent) {}
CDialogEx::CDialogEx(UINT nIDTemplate, CWnd* pParent) : CDialog(nIDTemplate, pParent) {}
