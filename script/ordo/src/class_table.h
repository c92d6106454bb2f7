// All classes of the process, by their whole names.
#pragma once

#include <ordo/class.h>

#include <memory>

namespace ordo {

/// Keeps each class with its name, so that finding one is a look at the name.
struct ClassTable {
    /// Enters a description under its whole name, and owns it from then on, unless the class is defined already.
    static void add(std::unique_ptr<OrdoClassInfo> description);

    /// Sets how OrdoClass::getClass finds classes by their names.
    static void setFinder(OrdoClass::Finder* finder) noexcept { OrdoClass::finder_ = finder; }

    /// Defined or not; null if the name is unknown.
    static OrdoClass* find(InternedName name) noexcept {
        return name.entry_ != nullptr ? name.entry_->ordoClass : nullptr;
    }
};

}  // namespace ordo
