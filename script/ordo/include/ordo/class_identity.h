// The part of a class that script objects and values refer to.
#pragma once

#include <ordo/class_info.h>
#include <ordo/export.h>
#include <ordo/interned.h>

#include <vector>

namespace ordo {

/// The base of OrdoClass only: the class's names, its description and its ancestors. Objects and values refer to their
/// class by it; members of the class need class.h.
class ORDO_API ClassIdentity {
public:
    ClassIdentity(ClassIdentity const&) = delete;
    ClassIdentity& operator=(ClassIdentity const&) = delete;

    InternedName name() const noexcept { return name_; }            ///< the whole name
    InternedName shortName() const noexcept { return shortName_; }  ///< the constructor's name too
    OrdoClassInfo& info() const noexcept { return *info_; }

    /// Whether this is the class with this name or derives from it. Built-in classes count.
    bool isA(InternedName name) const noexcept;

private:
    friend OrdoClass;
    friend struct ClassTable;

    ClassIdentity(InternedName name, OrdoClassInfo& info)
        : name_(name), shortName_(internName(info.getName())), info_(&info) {}
    ~ClassIdentity() = default;

    InternedName name_;
    InternedName shortName_;
    OrdoClassInfo* info_;
    std::vector<InternedName> ancestors_;  // of all distances; a class may occur more than once
};

}  // namespace ordo
