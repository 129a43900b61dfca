// How Python reaches the library: one call at a time, without the interpreter lock, with the
// library's messages and exceptions turned into Python's.
#pragma once

#include "cxc.h"

#include <pybind11/pybind11.h>

#include <exception>
#include <functional>
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

/// Runs `call` with the interpreter lock released. A framework exception becomes a Python one
/// that names `subject` (a path, or empty): OSError and its kinds, MemoryError, CxcError.
Outcome run(const std::function<int()>& call, const std::string& subject = {},
            const Answers& answers = {});

/// As run, but a result of 0 is an error too: CxcError with the library's own message, or
/// `otherwise` when it had none.
Outcome require(const std::function<int()>& call, const std::string& subject,
                const std::string& otherwise, const Answers& answers = {});

/// Keeps the library to this thread while Python's side looks into a dataset, so that no call of
/// another thread changes it meanwhile. The interpreter lock is held again afterwards.
class Exclusive {
public:
    Exclusive();
    ~Exclusive();
    Exclusive(const Exclusive&) = delete;
    Exclusive& operator=(const Exclusive&) = delete;
};

/// Raises CxcError.
[[noreturn]] void fail(const std::string& message);

/// Makes the application object and the exception type.
void registerCalls(pybind11::module_& m);

}  // namespace binding
