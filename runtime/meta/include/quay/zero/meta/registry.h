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

/// Holds the meta model, and knows every registered type by name and every root package by URI. There is one, made by
/// the first call and never destroyed, so that libraries may call it while the process exits. The meta model is frozen
/// except while somebody thaws it, under the mutex.
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
    /// What makes builders for the class; null if it is abstract.
    BuilderFactory builderFactory(Class const& type) const;

    // --- Registration, by packages that are being declared.

    /// Enters a type under its qualified name. A name that a live type has already is UniquenessConstraint.
    void registerType(Type const& type, CollectionFactory makeCollection, BuilderFactory makeBuilder);
    void registerTypeNames(Type const& type, std::string native, std::string script, std::string third);
    /// Only now can the package be found by its URI.
    void registerRootPackage(Package const& package);
    /// Forgets the package, and types, names, factories and serializers below it. Calls nothing of them: the library
    /// that they came from may be gone.
    void unregisterRootPackage(std::u16string const& uri);
    /// Forgets one type in the same way, as a failed declaration leaves it.
    void unregisterType(Type const& type);
    /// Forgets a root package and nothing below it, as a failed declaration leaves it.
    void withdrawRootPackage(Package const& package) noexcept;

    // --- For the runtime.

    /// Keeps an object of a library reachable for ever.
    void keep(void const* object);
    using ForgetHook = void (*)(ModelElement::Impl const* type);
    /// Called, under the mutex, with each type that is forgotten. Set once, by the registry of serializers.
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
