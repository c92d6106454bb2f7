// The process's registry of types and packages.
#pragma once

#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/property_descriptor.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quay::zero::meta {

/// Holds the meta model, and knows every registered type by name and every root package by URI. The first call creates
/// the one registry, which is never destroyed, so that libraries may call it while the process exits. The meta model is
/// frozen; it is thawed, under the mutex, only while a package is declared.
class QUAY_ZERO_API MetaRegistry {
public:
    using CollectionFactory = ClassTable::CollectionFactory;
    using BuilderFactory = ClassTable::BuilderFactory;

    /// Any thread may make the first call.
    static MetaRegistry* getInstance();

    std::recursive_mutex& mutex() noexcept { return mutex_; }
    Model const& model() const noexcept { return model_; }
    Model::Freezer& freezer() noexcept { return *freezer_; }

    // --- Look-up. Any thread; takes the mutex.

    /// The type of a qualified name, "ModelRefInfoRepo.DataClass" or "Integer". NoSuchType if there is none.
    Type getType(std::u16string const& qualifiedName) const;
    /// The primitive type of that name, or an empty handle.
    PrimitiveType getPrimitiveType(std::u16string const& name) const;
    /// The type that was registered under a script name, or an empty handle.
    Type findTypeByScriptName(std::string_view scriptName) const;
    /// The registered root package of that URI, or an empty handle.
    Package findRootPackage(std::u16string const& uri) const;
    std::vector<Package> getRootPackages() const;

    struct TypeNames {
        std::string native;
        std::string script;
        std::string third;
    };
    /// The names of a registered type; empty ones for any other.
    TypeNames getTypeNames(Type const& type) const;
    /// An empty detached collection for a property of that type. Null if the type has no factory.
    std::unique_ptr<AbstractOwnedCollection> makeCollection(ModelElement const& owner, Property const& property) const;
    /// The factory of builders for the class; null if the class is abstract.
    BuilderFactory builderFactory(Class const& type) const;

    // --- Registration, by packages that are being declared.

    /// Registers a type under its qualified name. UniquenessConstraint if a live type has that name already.
    void registerType(Type const& type, CollectionFactory makeCollection, BuilderFactory makeBuilder);
    void registerTypeNames(Type const& type, std::string native, std::string script, std::string third);
    /// Registers a root package, which can be found by its URI from then on.
    void registerRootPackage(Package const& package);
    /// Forgets the package, with the types, names, factories and serializers below it. Calls none of these functions,
    /// since the library that they came from may be unloaded.
    void unregisterRootPackage(std::u16string const& uri);
    /// Forgets one type, without calling its functions. For a declaration that failed.
    void unregisterType(Type const& type);
    /// Forgets a root package, but not its types. For a declaration that failed.
    void withdrawRootPackage(Package const& package) noexcept;

    // --- For the runtime.

    /// Keeps a pointer to an object of a library as long as the process runs, so that the object doesn't count as
    /// leaked.
    void keep(void const* object);
    using ForgetHook = void (*)(ModelElement::Impl const* type);
    /// Sets the function that is called, under the mutex, with each type that is forgotten. The registry of serializers
    /// sets it once.
    void setForgetHook(ForgetHook hook) noexcept { whenForgotten_ = hook; }

private:
    struct Registration {
        Type type;
        CollectionFactory makeCollection = nullptr;
        BuilderFactory makeBuilder = nullptr;
        TypeNames names;
    };

    MetaRegistry();
    Registration const* find(Type const& type) const;
    template <class Condition>
    void forgetTypes(Condition const& isMeant);

    mutable std::recursive_mutex mutex_;
    Model model_;
    std::unique_ptr<Model::Freezer> freezer_;
    std::unordered_map<ModelElement::Impl const*, Registration> types_;
    std::unordered_map<std::u16string, ModelElement::Impl*> byName_;
    std::map<std::string, ModelElement::Impl*, std::less<>> byScriptName_;
    std::vector<Package> rootPackages_;
    std::vector<void const*> kept_;
    std::atomic<ForgetHook> whenForgotten_ = nullptr;
};

}  // namespace quay::zero::meta
