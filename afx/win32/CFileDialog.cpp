// The system's file dialogs: the shell's newer one, and the older one where that is not to be had.
#include "afx_filedialog.h"

#include <shobjidl.h>

#include <memory>
#include <string>
#include <vector>

namespace {

struct ReleaseInterface {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using InterfacePtr = std::unique_ptr<Interface, ReleaseInterface>;

// COM on this thread for the lifetime of the object. The shell's dialog wants an apartment of a
// single thread; on a thread that has chosen otherwise there is none.
class Apartment {
public:
    Apartment() : m_result(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~Apartment() {
        if (ready()) ::CoUninitialize();
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

    bool ready() const { return SUCCEEDED(m_result); }

private:
    HRESULT m_result;
};

struct FilterEntry {
    std::wstring text;
    std::wstring pattern;
};

std::vector<FilterEntry> filterEntries(LPCTSTR filter) {
    std::vector<FilterEntry> entries;
    while (filter != nullptr && *filter != 0) {
        const std::wstring text = filter;
        filter += text.size() + 1;
        const std::wstring pattern = filter;
        if (!pattern.empty()) filter += pattern.size() + 1;
        entries.push_back({text, pattern});
    }
    return entries;
}

bool runsUnderWine() {
    const HMODULE system = ::GetModuleHandle(_T("ntdll.dll"));
    return system != nullptr && ::GetProcAddress(system, "wine_get_version") != nullptr;
}

// Wine appends the first pattern's extension to the name even when no default extension was given,
// Windows does not. An empty first pattern matches no file and has no extension.
std::wstring withoutExtension(const std::wstring& pattern) {
    static const bool wine = runsUnderWine();
    return wine ? L";" + pattern : pattern;
}

void applyFilter(IFileDialog& dialog, const OPENFILENAME& ofn) {
    std::vector<FilterEntry> entries = filterEntries(ofn.lpstrFilter);
    if (entries.empty()) return;
    std::vector<COMDLG_FILTERSPEC> specs;
    for (FilterEntry& entry : entries) {
        if (ofn.lpstrDefExt == nullptr) entry.pattern = withoutExtension(entry.pattern);
        specs.push_back({entry.text.c_str(), entry.pattern.c_str()});
    }
    dialog.SetFileTypes(static_cast<UINT>(specs.size()), specs.data());
    if (ofn.nFilterIndex > 0) dialog.SetFileTypeIndex(ofn.nFilterIndex);
}

// The shell's dialogs come with flags of their own set; those that have an older twin follow it.
FILEOPENDIALOGOPTIONS optionsFor(FILEOPENDIALOGOPTIONS given, DWORD flags) {
    struct Twin {
        DWORD flag;
        FILEOPENDIALOGOPTIONS option;
    };
    static const Twin twins[] = {
        {OFN_OVERWRITEPROMPT, FOS_OVERWRITEPROMPT},   {OFN_PATHMUSTEXIST, FOS_PATHMUSTEXIST},
        {OFN_FILEMUSTEXIST, FOS_FILEMUSTEXIST},       {OFN_CREATEPROMPT, FOS_CREATEPROMPT},
        {OFN_NOREADONLYRETURN, FOS_NOREADONLYRETURN},
    };
    if ((flags & OFN_FILEMUSTEXIST) != 0) flags |= OFN_PATHMUSTEXIST;
    for (const Twin& twin : twins) {
        given &= ~twin.option;
        if ((flags & twin.flag) != 0) given |= twin.option;
    }
    return given | FOS_FORCEFILESYSTEM;
}

InterfacePtr<IFileDialog> newShellDialog(bool open) {
    IFileDialog* dialog = nullptr;
    const HRESULT result =
        open ? ::CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER,
                                  IID_IFileOpenDialog, reinterpret_cast<void**>(&dialog))
             : ::CoCreateInstance(CLSID_FileSaveDialog, nullptr, CLSCTX_INPROC_SERVER,
                                  IID_IFileSaveDialog, reinterpret_cast<void**>(&dialog));
    return InterfacePtr<IFileDialog>(SUCCEEDED(result) ? dialog : nullptr);
}

void applySettings(IFileDialog& dialog, const OPENFILENAME& ofn) {
    FILEOPENDIALOGOPTIONS options = 0;
    dialog.GetOptions(&options);
    dialog.SetOptions(optionsFor(options, ofn.Flags));
    applyFilter(dialog, ofn);
    if (ofn.lpstrDefExt != nullptr) dialog.SetDefaultExtension(ofn.lpstrDefExt);
    if (ofn.lpstrFile != nullptr && ofn.lpstrFile[0] != 0) dialog.SetFileName(ofn.lpstrFile);
    if (ofn.lpstrTitle != nullptr) dialog.SetTitle(ofn.lpstrTitle);
}

CString chosenPath(IFileDialog& dialog) {
    IShellItem* chosen = nullptr;
    if (FAILED(dialog.GetResult(&chosen)) || chosen == nullptr) return CString();
    const InterfacePtr<IShellItem> item(chosen);
    LPWSTR text = nullptr;
    if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &text))) return CString();
    const CString path(text);
    ::CoTaskMemFree(text);
    return path;
}

}  // namespace

INT_PTR CFileDialog::DoModal() {
    return m_bVistaStyle ? showShellDialog() : showOlderDialog();
}

INT_PTR CFileDialog::showShellDialog() {
    const Apartment apartment;
    if (!apartment.ready()) return showOlderDialog();
    const InterfacePtr<IFileDialog> dialog = newShellDialog(m_bOpenFileDialog != FALSE);
    if (dialog == nullptr) return showOlderDialog();

    applySettings(*dialog, m_ofn);
    if (dialog->Show(ownerWindow()) != S_OK) return IDCANCEL;
    const CString path = chosenPath(*dialog);
    if (path.IsEmpty()) return IDCANCEL;
    storePath(path);
    UINT index = 0;
    if (SUCCEEDED(dialog->GetFileTypeIndex(&index))) m_ofn.nFilterIndex = index;
    return IDOK;
}

INT_PTR CFileDialog::showOlderDialog() {
    m_ofn.hwndOwner = ownerWindow();
    m_ofn.Flags |= OFN_EXPLORER | OFN_ENABLESIZING;
    const BOOL chosen = m_bOpenFileDialog ? ::GetOpenFileName(&m_ofn) : ::GetSaveFileName(&m_ofn);
    if (!chosen) return IDCANCEL;
    storePath(m_ofn.lpstrFile);
    return IDOK;
}
