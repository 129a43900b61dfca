// The C++ objects of handles that are not windows: menus, device contexts, drawing tools, images.
#pragma once

#include <map>

namespace afx {

/// Called when the program is idle.
using FreeTemporaries = void (*)();
void addTemporaries(FreeTemporaries freeThem);
void freeTemporaryObjects();

template <class Object, class Handle>
class HandleMap {
public:
    /// Never destroyed: static objects may outlive any order of destruction.
    static HandleMap& instance() {
        static HandleMap& map = *new HandleMap;
        return map;
    }

    void attach(Handle handle, Object* object) { m_permanent[handle] = object; }
    void detach(Handle handle, const Object* object) {
        const auto entry = m_permanent.find(handle);
        if (entry != m_permanent.end() && entry->second == object) m_permanent.erase(entry);
    }

    Object* permanent(Handle handle) const {
        const auto entry = m_permanent.find(handle);
        return entry != m_permanent.end() ? entry->second : nullptr;
    }

    /// The permanent object, or a temporary one. `attachTo` gives a new object the handle.
    template <class Attach>
    Object* object(Handle handle, Attach attachTo) {
        if (Object* const found = permanent(handle)) return found;
        Object*& temporary = m_temporary[handle];
        if (temporary == nullptr) {
            temporary = new Object;
            attachTo(*temporary);
        }
        return temporary;
    }

private:
    HandleMap() {
        addTemporaries([] { instance().freeTemporaries(); });
    }

    void freeTemporaries() {
        std::map<Handle, Object*> objects;
        objects.swap(m_temporary);
        for (const auto& entry : objects) {
            entry.second->Detach();  // the handle is not its own
            delete entry.second;
        }
    }

    std::map<Handle, Object*> m_permanent;
    std::map<Handle, Object*> m_temporary;
};

}  // namespace afx
