// Classes of scripts, defined when they are first used.
#pragma once

#include <ordo/class_identity.h>
#include <ordo/class_info.h>
#include <ordo/collection.h>
#include <ordo/enumeration.h>
#include <ordo/export.h>
#include <ordo/interface.h>
#include <ordo/interned.h>
#include <ordo/method.h>
#include <ordo/property.h>
#include <ordo/value.h>

#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace ordo {

class OrdoPackage;

/// A class of scripts. It lives as long as the process. Members stay in the order in which they were added.
class ORDO_API OrdoClass : public ClassIdentity {
public:
    /// Finds a class by its whole name, first in `context` if that is given, and defines it unless it is defined. Null
    /// if no such class is registered. Throws what the definition throws.
    static OrdoClass* getClass(InternedName name, OrdoPackage* context = nullptr);

    bool isDefined() const noexcept { return state_ == State::Defined; }

    // Called by class descriptions while they define the class.

    /// Adds a superclass: a registered class, which is defined first, or the built-in class that objects are based on,
    /// such as "int32". The three numbers are stored and have no effect here.
    void addSuperclass(std::string_view name, int first, int second, int third);
    OrdoPropInfo& addProperty(std::unique_ptr<OrdoPropInfo> property);
    OrdoMethodInfo& addMethod(std::unique_ptr<OrdoMethodInfo> method);
    OrdoEnumInfo& addEnumeration(std::unique_ptr<OrdoEnumInfo> literal);

    // Members that this class defines; superclasses have the inherited ones.

    /// The three numbers with which each superclass was added, built-in ones included.
    struct SuperclassWords {
        int first;
        int second;
        int third;
    };
    std::span<SuperclassWords const> superclassWords() const noexcept { return superclassWords_; }
    std::span<OrdoClass* const> superclasses() const noexcept { return superclasses_; }
    std::span<std::unique_ptr<OrdoPropInfo> const> properties() const noexcept { return properties_; }
    std::span<std::unique_ptr<OrdoMethodInfo> const> methods() const noexcept { return methods_; }
    std::span<std::unique_ptr<OrdoEnumInfo> const> enumerations() const noexcept { return enumerations_; }
    /// The built-in class that objects are based on; null if there is none.
    InternedName builtInBase() const noexcept { return builtInBase_; }

    // Look-ups in this class and its superclasses; null if there is no such member.

    OrdoPropInfo* findProperty(InternedName name) const noexcept;
    OrdoMethodInfo* findMethod(InternedName name) const noexcept;
    OrdoEnumInfo* findEnumeration(InternedName name) const noexcept;
    OrdoEnumInfo* findEnumeration(std::int32_t number) const noexcept;
    /// The class's own constructor; constructors aren't inherited.
    OrdoMethodInfo* constructor() const noexcept { return constructor_; }
    OrdoCollection const* collection() const noexcept { return collection_; }
    ValidityCheck validityCheck() const noexcept { return validityCheck_; }

    using ClassIdentity::isA;
    /// Whether this is `other` or derives from it.
    bool isA(OrdoClass const& other) const noexcept;

    /// Calls the constructor and returns the new object. Throws AbstractClass if there is no constructor.
    OrdoValue construct(std::span<OrdoValue const> arguments);
    /// An enumeration's value from one of its values, a literal's name, or a number that a literal has.
    OrdoValue constructEnumeration(OrdoValue const& input);

    /// Throws InvalidHandle if the native object is null or no longer valid.
    void checkValid(void const* native) const {
        if (native == nullptr || (validityCheck_ != nullptr && !validityCheck_(native))) {
            raiseInvalid();
        }
    }

    /// Data that the host keeps with the class, such as its own class for it. Not owned.
    void* peer() const noexcept { return peer_; }
    void setPeer(void* peer) noexcept { peer_ = peer; }

private:
    friend struct ClassTable;
    enum class State { Undefined, Underway, Defined };

    /// Finds a class by its name as getClass does, defined or not.
    using Finder = OrdoClass*(InternedName name, OrdoPackage* context);

    OrdoClass(InternedName name, OrdoClassInfo& info) : ClassIdentity(name, info) {}
    ~OrdoClass() = default;

    void define();
    void clear() noexcept;
    [[noreturn]] static void raiseInvalid();

    static Finder* finder_;  // set by the packages; null until the first package is added

    State state_ = State::Undefined;
    ValidityCheck validityCheck_ = nullptr;
    OrdoCollection const* collection_ = nullptr;
    OrdoMethodInfo* constructor_ = nullptr;
    void* peer_ = nullptr;
    InternedName builtInBase_;
    std::vector<SuperclassWords> superclassWords_;
    std::vector<OrdoClass*> superclasses_;
    std::vector<std::unique_ptr<OrdoPropInfo>> properties_;
    std::vector<std::unique_ptr<OrdoMethodInfo>> methods_;
    std::vector<std::unique_ptr<OrdoEnumInfo>> enumerations_;
};

inline OrdoClass& OrdoInterface::getClass() const noexcept { return static_cast<OrdoClass&>(*class_); }
inline OrdoClass& OrdoValue::enumerationClass() const noexcept { return static_cast<OrdoClass&>(*word_.enumeration); }

}  // namespace ordo
