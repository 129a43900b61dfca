// How Python reaches the library: one call at a time, without the interpreter lock, with the
// library's messages and exceptions turned into Python's.
#pragma once

#include "cxc.h"

#include <pybind11/pybind11.h>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace binding {

/// Text as the library holds it and as Python does, unit for unit: also half surrogate pairs and
/// zeros, which files may hold, come back as they were.
pybind11::str toPython(const CString& text);
CString fromPython(const pybind11::str& text);

/// A file name from the system's bytes. Raises ValueError where a zero would cut it short.
CString toPath(const std::string& path);

/// What the user would have chosen in dialogs during a call.
struct Answers {
    int question = IDNO;
    CString filePath;  // of the next file dialog; empty: cancelled
};

/// What came of a call of the library.
struct Outcome {
    int result = 0;
    std::vector<std::string> messages;  // of the boxes that it wanted to show

    std::string message() const { return messages.empty() ? std::string() : messages.back(); }
};

/// Watches a long call: tells a Python function how far it is, and ends the call when that
/// function, or a signal handler such as that of Ctrl-C, raises. Lives longer than the call.
class Watch {
public:
    /// `progress(done, total)`, or None.
    explicit Watch(pybind11::object progress);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// Whether it is time to ask again: some hundredths of a second after the last time.
    bool due() const { return std::chrono::steady_clock::now() >= m_next; }
    /// Asks Python. Called inside run, without the interpreter lock; false when the call shall end.
    bool goesOn(__int64 done, __int64 total) noexcept;
    /// The same as an exception that passes through the library.
    void orThrow(__int64 done, __int64 total);

    /// With the interpreter lock: raises what ended the call, if anything did.
    void raise();

private:
    struct Raised;

    const pybind11::object m_progress;
    std::unique_ptr<Raised> m_raised;
    std::chrono::steady_clock::time_point m_next;
};

/// Runs `call` with the interpreter lock released. A framework exception becomes a Python one
/// that names `subject` (a path, or empty): OSError and its kinds, MemoryError, CxcError. What a
/// watch has raised comes before all others.
Outcome run(const std::function<int()>& call, const std::string& subject = {},
            const Answers& answers = {}, Watch* watch = nullptr);

/// As run, but a result of 0 is an error too: CxcError with the library's own message, or
/// `otherwise` when it had none.
Outcome require(const std::function<int()>& call, const std::string& subject,
                const std::string& otherwise, const Answers& answers = {}, Watch* watch = nullptr);

/// Keeps the library to this thread while Python's side looks into a dataset, so that no call of
/// another thread changes it meanwhile. The interpreter lock is held again afterwards.
/// Python code that a watched call asks may look, but is refused changes and calls (CxcError).
class Exclusive {
public:
    enum class For { looking, changing };

    explicit Exclusive(For use = For::looking);
    ~Exclusive();
    Exclusive(const Exclusive&) = delete;
    Exclusive& operator=(const Exclusive&) = delete;
};

/// Raises CxcError.
[[noreturn]] void fail(const std::string& message);

/// Makes the application object and the exception type.
void registerCalls(pybind11::module_& m);

}  // namespace binding
