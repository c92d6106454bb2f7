// All classes of the process, by their whole names.
#pragma once

#include <ordo/class.h>

#include <string_view>
#include <unordered_map>

namespace ordo {

struct ClassTable {
    static ClassTable& instance();

    /// Enters a description under its whole name, and owns it from then on, unless the class is defined already.
    void add(std::unique_ptr<OrdoClassInfo> description);

    /// Defined or not; null if the name is unknown.
    OrdoClass* find(InternedName name) const noexcept;

    std::unordered_map<InternedName, OrdoClass*> classes;

private:
    ClassTable();
};

}  // namespace ordo
