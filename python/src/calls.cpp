#include "calls.h"

#include "afx/core/utf8.h"

#include <cerrno>
#include <memory>
#include <mutex>

namespace py = pybind11;

namespace binding {
namespace {

// The application object of the interpreter: nobody sits here, so boxes are noted and dialogs
// answered as the call asks.
class PythonApp : public CWinApp {
public:
    PythonApp() : CWinApp(_T("cxc")) {}

    int DoMessageBox(LPCTSTR text, UINT type, UINT) override {
        messages.push_back(toText(text));
        return (type & 0xF) == 0 ? IDOK : answers.question;
    }

    INT_PTR AnswerFileDialog(CFileDialog&, CString& path) override {
        if (answers.filePath.IsEmpty()) return IDCANCEL;
        path = answers.filePath;
        return IDOK;
    }

    Answers answers;
    std::vector<std::string> messages;
};

PythonApp* g_app = nullptr;
std::mutex g_oneCall;  // the library is made for one thread
PyObject* g_error = nullptr;

// What a framework exception leaves when it is caught without the interpreter lock.
struct Caught {
    enum class Kind { none, file, archive, memory } kind = Kind::none;
    int number = 0;
    std::string text;
};

Caught describe(CException* e) {
    Caught caught;
    if (auto* file = dynamic_cast<CFileException*>(e)) {
        caught.kind = Caught::Kind::file;
        caught.number = file->m_lOsError > 0 ? file->m_lOsError : EIO;
    } else if (dynamic_cast<CMemoryException*>(e) != nullptr) {
        caught.kind = Caught::Kind::memory;
    } else {
        caught.kind = Caught::Kind::archive;
        auto* archive = dynamic_cast<CArchiveException*>(e);
        if (archive != nullptr && archive->m_cause == CArchiveException::endOfFile) {
            caught.text = "the file ends too early";
        } else {
            TCHAR text[300];
            e->GetErrorMessage(text, 300);
            caught.text = toText(text);
        }
    }
    e->Delete();
    return caught;
}

std::string about(const std::string& subject, const std::string& message) {
    return subject.empty() ? message : subject + ": " + message;
}

[[noreturn]] void raise(const Caught& caught, const std::string& subject) {
    switch (caught.kind) {
        case Caught::Kind::file: {
            errno = caught.number;
            const py::str name(subject);
            PyErr_SetFromErrnoWithFilenameObject(PyExc_OSError, name.ptr());
            break;
        }
        case Caught::Kind::memory:
            PyErr_NoMemory();
            break;
        default:
            PyErr_SetString(g_error, about(subject, caught.text).c_str());
            break;
    }
    throw py::error_already_set();
}

}  // namespace

std::string toText(const CString& text) {
    std::string bytes;
    // Zeros inside the text end what utf8() converts, so it is taken piece by piece.
    for (int at = 0; at <= text.GetLength();) {
        const CString piece(text.GetString() + at);
        if (at > 0) bytes += '\0';
        bytes += afx::utf8(piece);
        at += piece.GetLength() + 1;
    }
    return bytes;
}

CString toCString(const std::string& text) {
    return afx::utf16(text);
}

Outcome run(const std::function<int()>& call, const std::string& subject, const Answers& answers) {
    Outcome outcome;
    Caught caught;
    {
        const py::gil_scoped_release unlocked;
        const std::lock_guard<std::mutex> one(g_oneCall);
        g_app->answers = answers;
        g_app->messages.clear();
        try {
            outcome.result = call();
        } catch (CException* e) {
            caught = describe(e);
        } catch (const std::bad_alloc&) {
            caught.kind = Caught::Kind::memory;
        }
        outcome.messages.swap(g_app->messages);
    }
    if (caught.kind != Caught::Kind::none) raise(caught, subject);
    return outcome;
}

Outcome require(const std::function<int()>& call, const std::string& subject,
                const std::string& otherwise, const Answers& answers) {
    Outcome outcome = run(call, subject, answers);
    if (outcome.result == 0)
        fail(about(subject, outcome.messages.empty() ? otherwise : outcome.message()));
    return outcome;
}

void fail(const std::string& message) {
    PyErr_SetString(g_error, message.c_str());
    throw py::error_already_set();
}

void registerCalls(py::module_& m) {
    g_app = new PythonApp;  // lives as long as the interpreter
    g_error = PyErr_NewExceptionWithDoc(
        "cxc.CxcError", "What the library refuses; the text is the library's own message.",
        PyExc_RuntimeError, nullptr);
    m.attr("CxcError") = py::reinterpret_borrow<py::object>(g_error);
}

}  // namespace binding
