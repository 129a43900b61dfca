// What a pass through an archive comes to, with exceptions as outcomes.
#pragma once

#include "framework.h"

namespace test {

enum class Outcome { refused, accepted, endOfFile, fileFailed, noMemory, otherException };

inline const char* name(Outcome outcome) {
    constexpr const char* names[] = {"refused",     "accepted",  "end of file",
                                     "file failed", "no memory", "other exception"};
    return names[static_cast<int>(outcome)];
}

/// Calls `action`, which returns a status.
template <class Action>
Outcome outcomeOf(Action action) {
    try {
        return action() == 0 ? Outcome::refused : Outcome::accepted;
    } catch (CArchiveException* e) {
        const bool ended = e->m_cause == CArchiveException::endOfFile;
        e->Delete();
        return ended ? Outcome::endOfFile : Outcome::otherException;
    } catch (CFileException* e) {
        const bool ended = e->m_cause == CFileException::endOfFile;
        e->Delete();
        return ended ? Outcome::endOfFile : Outcome::fileFailed;
    } catch (CMemoryException* e) {
        e->Delete();
        return Outcome::noMemory;
    } catch (CException* e) {
        e->Delete();
        return Outcome::otherException;
    }
}

}  // namespace test
