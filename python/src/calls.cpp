#include "calls.h"

#include "afx/core/utf8.h"

#include <cerrno>
#include <climits>
#include <mutex>
#include <new>
#include <utility>

namespace py = pybind11;

namespace binding {
namespace {

// Bytes for error texts: what is no UTF-8, as in file names, stays visible in Python's way.
std::string bytesOf(const CString& text) {
    return afx::utf8(text);
}

py::object textOf(const std::string& bytes) {
    auto text = py::reinterpret_steal<py::object>(
        PyUnicode_DecodeFSDefaultAndSize(bytes.data(), static_cast<Py_ssize_t>(bytes.size())));
    if (!text) throw py::error_already_set();
    return text;
}

// The application object of the interpreter: nobody sits here, so boxes are noted and dialogs
// answered as the call asks.
class PythonApp : public CWinApp {
public:
    PythonApp() : CWinApp(_T("cxc")) {}

    int DoMessageBox(LPCTSTR text, UINT type, UINT) override {
        messages.push_back(bytesOf(text));
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
// The library is made for one thread. Only waited for without the interpreter lock, so that the
// two cannot wait for each other. Recursive: collecting garbage can call in again.
std::recursive_mutex g_oneCall;
// Whether the thread that has g_oneCall is in Python code that a watched call asks.
bool g_asking = false;
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
            caught.text = "the file ends early";
        } else {
            TCHAR text[300];
            e->GetErrorMessage(text, 300);
            caught.text = bytesOf(text);
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
            const py::object name = textOf(subject);
            errno = caught.number;
            PyErr_SetFromErrnoWithFilenameObject(PyExc_OSError, name.ptr());
            break;
        }
        case Caught::Kind::memory:
            PyErr_NoMemory();
            break;
        default:
            fail(about(subject, caught.text));
    }
    throw py::error_already_set();
}

constexpr char busy[] = "the library is in the call that is being watched";

// The call itself, in the thread that has the library.
Outcome runAlone(const std::function<int()>& call, const Answers& answers, Caught& caught) {
    Outcome outcome;
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
    return outcome;
}

}  // namespace

py::str toPython(const CString& text) {
    int littleEndian = -1;
    auto made = py::reinterpret_steal<py::str>(PyUnicode_DecodeUTF16(
        reinterpret_cast<const char*>(text.GetString()),
        static_cast<Py_ssize_t>(text.GetLength()) * static_cast<Py_ssize_t>(sizeof(TCHAR)),
        "surrogatepass", &littleEndian));
    if (!made) throw py::error_already_set();
    return made;
}

CString fromPython(const py::str& text) {
    const auto bytes = py::reinterpret_steal<py::bytes>(
        PyUnicode_AsEncodedString(text.ptr(), "utf-16-le", "surrogatepass"));
    if (!bytes) throw py::error_already_set();
    const auto units = PyBytes_GET_SIZE(bytes.ptr()) / static_cast<Py_ssize_t>(sizeof(TCHAR));
    if (units > INT_MAX) throw py::value_error("the text is too long");
    return CString(reinterpret_cast<LPCTSTR>(PyBytes_AS_STRING(bytes.ptr())),
                   static_cast<int>(units));
}

CString toPath(const std::string& path) {
    if (path.find('\0') != std::string::npos) throw py::value_error("embedded null byte");
    return afx::utf16(path);
}

Exclusive::Exclusive(For use) {
    {
        const py::gil_scoped_release unlocked;
        g_oneCall.lock();
    }
    if (use == For::changing && g_asking) {
        g_oneCall.unlock();
        fail(busy);
    }
}

Exclusive::~Exclusive() {
    g_oneCall.unlock();
}

struct Watch::Raised {
    py::error_already_set error;
};

Watch::Watch(py::object progress) : m_progress(std::move(progress)) {
    if (!m_progress.is_none() && PyCallable_Check(m_progress.ptr()) == 0)
        throw py::type_error("progress must be a function of two numbers, or None");
}

Watch::~Watch() = default;

bool Watch::goesOn(__int64 done, __int64 total) noexcept {
    if (m_raised != nullptr) return false;
    const py::gil_scoped_acquire locked;
    g_asking = true;
    try {
        if (PyErr_CheckSignals() != 0) throw py::error_already_set();
        if (!m_progress.is_none()) m_progress(done, total);
    } catch (py::error_already_set& error) {
        m_raised.reset(new Raised{std::move(error)});
    }
    g_asking = false;
    m_next = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
    return m_raised == nullptr;
}

void Watch::orThrow(__int64 done, __int64 total) {
    if (!goesOn(done, total)) AfxThrowUserException();
}

void Watch::raise() {
    if (m_raised != nullptr) throw py::error_already_set(std::move(m_raised->error));
}

Outcome run(const std::function<int()>& call, const std::string& subject, const Answers& answers,
            Watch* watch) {
    Outcome outcome;
    Caught caught;
    bool refused = false;
    {
        const py::gil_scoped_release unlocked;
        const std::lock_guard<std::recursive_mutex> one(g_oneCall);
        refused = g_asking;
        if (!refused) outcome = runAlone(call, answers, caught);
    }
    if (refused) fail(busy);
    if (watch != nullptr) watch->raise();
    if (caught.kind != Caught::Kind::none) raise(caught, subject);
    return outcome;
}

Outcome require(const std::function<int()>& call, const std::string& subject,
                const std::string& otherwise, const Answers& answers, Watch* watch) {
    Outcome outcome = run(call, subject, answers, watch);
    if (outcome.result == 0)
        fail(about(subject, outcome.messages.empty() ? otherwise : outcome.message()));
    return outcome;
}

void fail(const std::string& message) {
    PyErr_SetObject(g_error, textOf(message).ptr());
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
