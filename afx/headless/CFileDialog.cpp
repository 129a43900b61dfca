// The file dialog where nobody sits: the application's policy answers.
#include "afx_filedialog.h"

#include "afx_app.h"

#include "afx/core/utf8.h"

#include <filesystem>
#include <system_error>

INT_PTR CFileDialog::DoModal() {
    CWinApp* const app = AfxGetApp();
    CString answer = m_ofn.lpstrFile;
    if (app == nullptr || app->AnswerFileDialog(*this, answer) != IDOK || answer.IsEmpty())
        return IDCANCEL;

    std::error_code failed;
    std::filesystem::path path = std::filesystem::absolute(afx::utf8(answer), failed);
    if (failed) return IDCANCEL;
    if (m_ofn.lpstrDefExt != nullptr && !path.has_extension())
        path += "." + afx::utf8(m_ofn.lpstrDefExt);

    // A dialog on a screen would refuse these and stay.
    const bool fileMustExist = (m_ofn.Flags & OFN_FILEMUSTEXIST) != 0;
    const bool folderMustExist = fileMustExist || (m_ofn.Flags & OFN_PATHMUSTEXIST) != 0;
    if (fileMustExist && !std::filesystem::exists(path, failed)) return IDCANCEL;
    if (folderMustExist && !std::filesystem::is_directory(path.parent_path(), failed))
        return IDCANCEL;

    storePath(afx::utf16(path.string()));
    return IDOK;
}
