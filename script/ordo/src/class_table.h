// The table of all classes of the process, by their whole names.
#pragma once

#include <ordo/class.h>

#include <memory>

namespace ordo {

/// Stores each class in the entry of its interned name, so that finding it is one memory access.
struct ClassTable {
    /// Registers a description under its whole name, and owns it from then on; no effect if the class is defined
    /// already.
    static void add(std::unique_ptr<OrdoClassInfo> description);

    /// Sets how OrdoClass::getClass finds classes by their names.
    static void setFinder(OrdoClass::Finder* finder) noexcept { OrdoClass::finder_ = finder; }

    /// Finds a class, defined or not; null if the name is unknown.
    static OrdoClass* find(InternedName name) noexcept {
        return name.entry_ != nullptr ? name.entry_->ordoClass : nullptr;
    }
};

}  // namespace ordo
