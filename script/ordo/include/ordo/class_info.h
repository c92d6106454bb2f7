// Class descriptions: what is known of a class before it is used.
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

/// The description of a class, made when the class is registered. It is cheap; the members are made by defineClass,
/// which is called once, when the class is used for the first time.
class ORDO_API OrdoClassInfo {
public:
    OrdoClassInfo(OrdoClassInfo const&) = delete;
    OrdoClassInfo& operator=(OrdoClassInfo const&) = delete;
    virtual ~OrdoClassInfo();

    /// The name within the package, then the whole dotted name.
    virtual std::string_view getName() const noexcept = 0;
    virtual std::string_view getFullName() const noexcept = 0;
    /// One line for help texts, and the complete description.
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
    /// Called when the last reference to a script object is released; `native` isn't null.
    virtual void freeInstance(void* native) noexcept = 0;

    /// The check for objects that can become invalid. Null: objects are valid while they are held. Members of an object
    /// that fails the check can't be used.
    virtual ValidityCheck validityCheck() const noexcept { return nullptr; }

    /// The collection protocol, null if objects aren't collections. Derived classes inherit their ancestor's unless
    /// they define one.
    virtual OrdoCollection const* collection() const noexcept { return nullptr; }
    /// Whether objects are transactions: they have methods `commit` and `rollback` without inputs, of which a host
    /// calls one at the end of a block of statements.
    virtual bool isTransaction() const noexcept { return false; }
    /// Whether a transaction is open. A block of statements can't begin with one that isn't.
    virtual bool isOpenTransaction(void const* /*native*/) const noexcept { return true; }

    /// A short text that distinguishes the object from others: a name, an id. Called for valid objects only.
    virtual std::string describeInstance(void const* native) const;

protected:
    OrdoClassInfo() = default;
};

}  // namespace ordo
