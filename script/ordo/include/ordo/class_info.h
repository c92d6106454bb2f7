// Class descriptions: what is known of a class before anybody uses it.
#pragma once

#include <ordo/export.h>

#include <string>
#include <string_view>

namespace ordo {

class OrdoClass;
class OrdoCollection;

/// Tells whether a native object can still be used. It is called before every access, so it should be a few
/// instructions.
using ValidityCheck = bool (*)(void const* native) noexcept;

/// A class as its maker describes it. Descriptions are cheap; the members come into being with defineClass, which is
/// called once, when the class is used for the first time.
class ORDO_API OrdoClassInfo {
public:
    OrdoClassInfo(OrdoClassInfo const&) = delete;
    OrdoClassInfo& operator=(OrdoClassInfo const&) = delete;
    virtual ~OrdoClassInfo();

    /// The name within the package, and the whole dotted one.
    virtual std::string_view getName() const noexcept = 0;
    virtual std::string_view getFullName() const noexcept = 0;
    /// One line for people who ask for help, and all there is to say.
    virtual std::string_view getDescription() const noexcept { return {}; }
    virtual std::string_view getDetailedDescription() const noexcept { return {}; }

    /// Whether objects have identity; they are values otherwise.
    virtual bool isHandleClass() const noexcept { return true; }
    virtual bool isEnumeration() const noexcept { return false; }
    virtual bool isConstructedOnLoad() const noexcept { return false; }
    virtual bool isAbstract() const noexcept { return false; }

    /// Adds superclasses and members to the class. If it throws, the class stays undefined and the next use tries
    /// again.
    virtual void defineClass(OrdoClass& ordoClass) = 0;

    /// A default native object, or null if the class makes none without its constructor.
    virtual void* makeInstance() { return nullptr; }
    /// Called when the last holder of a script object has let go; `native` isn't null.
    virtual void freeInstance(void* native) noexcept = 0;

    /// Null: objects are valid for as long as they are held. Members of objects that fail the check can't be used.
    virtual ValidityCheck validityCheck() const noexcept { return nullptr; }

    /// Null if objects are no collections. Derived classes have their ancestor's unless they bring one.
    virtual OrdoCollection const* collection() const noexcept { return nullptr; }
    /// Whether objects are transactions: they have methods `commit` and `rollback` without inputs, of which a host
    /// calls one at the end of a block of statements.
    virtual bool isTransaction() const noexcept { return false; }

    /// What tells one object from the others, in few words: a name, an id. Only asked of valid objects.
    virtual std::string describeInstance(void const* native) const;

protected:
    OrdoClassInfo() = default;
};

}  // namespace ordo
