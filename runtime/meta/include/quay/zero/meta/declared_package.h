// A schema package that is declared from tables: the base of the packages that the schema compiler writes.
#pragma once

#include <quay/zero/meta/abstract_meta_package.h>
#include <quay/zero/meta/serializers.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace quay::zero::meta {

/// The tables of a package. Every entry names the member of the package object that holds its meta object.
namespace declare {

template <class H>
using Slot = H AbstractMetaPackage::*;

/// A member of the package class as a slot.
template <class H, class P>
constexpr Slot<H> slot(H P::*member) noexcept {
    return static_cast<Slot<H>>(member);
}

/// The shapes of properties, as the schema names them.
enum class Shape : std::uint8_t {
    Single,
    Optional,
    SingleOwned,
    Sequence,
    SequenceOwned,
    Set,
    SetOwned,
    MapOwned,
    MultimapOwned
};

struct Property {
    char16_t const* name;
    Shape shape;
    char16_t const* type;
    std::uint16_t index;           ///< 0: derived, or the field of a data type
    char16_t const* defaultValue;  ///< null: none
    char16_t const* key;           ///< of a map: the child's property; else null
    char const* id;
    Slot<meta::Property> slot;
};

struct Argument {
    char16_t const* name;
    char16_t const* type;
    char const* id;
    Slot<meta::Argument> slot;
};

struct Operation {
    char16_t const* name;
    char16_t const* result;
    char const* id;
    std::span<Argument const> arguments;
    Slot<meta::Operation> slot;
};

struct Class {
    char16_t const* name;
    bool isAbstract;
    char16_t const* base;
    char const* id;
    std::span<Property const> properties;
    std::span<Operation const> operations;
    Slot<meta::Class> slot;
    ClassTable::TableFunction table;
    char const* scriptName = nullptr;  ///< null: the package's prefix and the name
};

struct DataType {
    char16_t const* name;
    char const* id;
    std::span<Property const> fields;
    Slot<meta::DataType> slot;
    ClassTable::CollectionFactory makeCollection;
    std::unique_ptr<DatatypeSerializer> (*makeSerializer)();
    char const* scriptName = nullptr;
};

struct Literal {
    char16_t const* name;
    int value;
    char const* id;
    Slot<meta::EnumLiteral> slot;
};

/// The serializers of an enumeration, each with its form.
using EnumSerializers = std::vector<std::pair<std::string, std::unique_ptr<PropertySerializer>>>;

struct Enum {
    char16_t const* name;
    char const* id;
    std::span<Literal const> literals;
    Slot<meta::Enum> slot;
    ClassTable::CollectionFactory makeCollection;
    EnumSerializers (*makeSerializers)();
    char const* scriptName = nullptr;
};

struct Primitive {
    char16_t const* name;
    Slot<meta::PrimitiveType> slot;
};

struct Package {
    char const* id;  ///< of the root package
    char16_t const* uri;
    std::span<char16_t const* const> imports;
    char16_t const* schemaName;
    char16_t const* schemaUri;
    char const* nativePrefix;
    char const* scriptPrefix;
    Slot<meta::Package> root;
    Slot<meta::Package> schema;
    std::span<Class const> classes;  ///< in byte order of the names, as are the other two
    std::span<DataType const> dataTypes;
    std::span<Primitive const> primitives;
    std::span<Enum const> enums;
};

template <class S>
std::unique_ptr<DatatypeSerializer> makeSerializer() {
    return std::make_unique<S>();
}

template <class E>
EnumSerializers makeEnumSerializers() {
    EnumSerializers result;
    result.emplace_back("", std::make_unique<EnumPropertySerializerAsName<E>>());
    result.emplace_back("ID", std::make_unique<EnumPropertySerializerAsValue<E>>());
    result.emplace_back("PublicID", std::make_unique<EnumPropertySerializerAsPublicId<E>>());
    return result;
}

}  // namespace declare

/// Declares a package in the registry from its tables, in two phases: all meta objects are created, then connected and
/// registered. Packages live as long as the process.
class QUAY_ZERO_API DeclaredPackage : public AbstractMetaPackage {
protected:
    explicit DeclaredPackage(declare::Package const& tables);
    ~DeclaredPackage() = default;

    using BringUp = std::function<void()>;
    using Instantiate = std::function<void(MetaRegistry*)>;
    using Weave = std::function<void(MetaRegistry*, PropertySerializerRegistry*)>;

    /// Declares the package, under the registry's mutex and in one transaction. `bringUp` declares the packages that
    /// this one refers to; then an earlier declaration of this package is destroyed, and `instantiate` and `weave` run
    /// the two phases. If it throws, every slot is empty, and the registry is as it was before, except that an earlier
    /// declaration is gone.
    void declareInRegistry(BringUp const& bringUp, Instantiate const& instantiate, Weave const& weave);
    void instantiate(MetaRegistry* registry);
    void weave(MetaRegistry* registry, PropertySerializerRegistry* serializers);

private:
    template <class E, class H>
    void fill(E const& entry, H object) {
        this->*entry.slot = std::move(object);
    }
    void clearSlots() noexcept;
    void replaceFormer(MetaRegistry* registry);
    void instantiateProperty(declare::Property const& p, bool isField);
    void weaveProperty(MetaRegistry* registry, Type const& owner, declare::Property const& p);
    void weaveClass(MetaRegistry* registry, declare::Class const& c);
    void weaveOperation(MetaRegistry* registry, Class const& owner, declare::Operation const& o);
    void registerNames(MetaRegistry* registry, Type const& type, char16_t const* name, char const* scriptName);
    std::string scriptNameOf(char16_t const* name, char const* given) const;
    Type typeOf(MetaRegistry* registry, char16_t const* name) const;
    Property keyOf(std::u16string_view className, std::u16string_view key) const;
    template <class F>
    void inDeclarationOrder(F&& visit) const;

    declare::Package const& tables_;
    std::map<std::u16string_view, Type> types_;  // the package's own, by bare name, while it is being declared
};

}  // namespace quay::zero::meta
