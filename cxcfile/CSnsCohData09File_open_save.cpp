#include "cxcdata/CSnsCohData09File.h"

#include "cxcfile/file_commands.h"
#include "cxcfile/pass_record.h"

namespace {

// The file dialog of a dataset file, with the filter and without a default extension.
class CxcFileDialog {
public:
    CxcFileDialog(BOOL open, LPCTSTR name, DWORD flags)
        : m_dialog(open, nullptr, name, flags, m_filter, nullptr, 0, TRUE) {
        m_dialog.m_ofn.nFilterIndex = 1;
    }

    bool confirmed() { return m_dialog.DoModal() == IDOK; }
    CString path() const { return m_dialog.GetPathName(); }

private:
    // The dialog may rewrite the separators, so it gets a copy that may be written to.
    TCHAR m_filter[64] = _T("Channel cross channel(*.cxc)|*.cxc|All Files(*.*)|*.*||");
    CFileDialog m_dialog;
};

}  // namespace

int cxc::saveDataset(CSnsCohData09File& data, const StillThere& stillThere) {
    // Deliberate: the dataset keeps this name, also when the user cancels.
    if (data.m_cxcName.IsEmpty()) data.m_cxcName = _T("CxC Data");
    CxcFileDialog dialog(FALSE, data.m_cxcName, OFN_OVERWRITEPROMPT);
    if (!dialog.confirmed() || !stillThere()) return 0;
    CString path = dialog.path();
    // Deliberate: the extension counts wherever it stands in the path, folders included, and only
    // in small letters.
    if (path.Find(_T(".cxc")) < 0) path += _T(".cxc");

    CFile file;
    if (!file.Open(path, CFile::modeCreate | CFile::modeWrite)) return 0;
    // Deliberate: what the record returns is not looked at; it has told the user itself.
    cxc::passRecord(file, CArchive::store, data);
    file.Flush();
    file.Close();
    return 1;
}

int CSnsCohData09File::saveCxcDataStd() {
    return cxc::saveDataset(*this, [] { return true; });
}

int CSnsCohData09File::openCxcDataStd() {
    // Covers the dialog too, and ends on every way out.
    const CWaitCursor wait;
    CxcFileDialog dialog(TRUE, nullptr, OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST);
    if (!dialog.confirmed()) return 0;
    CFile file;
    if (!file.Open(dialog.path(), CFile::modeRead)) return 0;
    // Deliberate, as above: its status is not looked at.
    cxc::passRecord(file, CArchive::load, *this);
    file.Close();
    return 1;
}
