// Whether what a window remembers is still there. Between two messages a host, or a command of
// the window itself, may release a dataset or the whole package.
#pragma once

#include "cxcpkg/CGroupMeegCxcFace.h"
#include "cxcpkg/CSnsCohFace.h"
#include "framework.h"

#include <memory>

namespace cxc {

/// Whether the package or group still holds the dataset. False for null.
bool isThere(const CSnsCohFace& package, const CSnsCohDatazq* dataset);
bool isThere(const CGroupMeegCxcFace& group, const CSnsCohDatazq* dataset);

/// Held by a window for as long as it lives, so that a handler can tell afterwards whether
/// something modal, or the host, has destroyed it.
class Life {
public:
    /// Tells whether the window is still alive.
    class Witness {
    public:
        explicit Witness(const Life& life) : m_life(life.m_life) {}
        bool ended() const { return m_life.expired(); }

    private:
        std::weak_ptr<int> m_life;
    };

private:
    std::shared_ptr<int> m_life = std::make_shared<int>(0);
};

/// Disables a manager for as long as something modal is open that it has started: a second
/// command, or the destruction of its window, cannot come in between by its own controls.
class ModalScope {
public:
    ModalScope(CWnd& window, const Life& life);
    ~ModalScope();
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;

private:
    CWnd& m_window;
    Life::Witness m_witness;
    bool m_wasActive;
    bool m_wasEnabled;
};

}  // namespace cxc
