// Meta objects: packages, types, properties and operations. They are elements of a model: their setters run in
// transactions, a declaration that fails is rolled back, and a frozen model refuses writes.
//
// Any thread may read them once the declaring transaction has ended. Returned texts and references are valid until the
// meta object is written.
#pragma once

#include <quay/zero/element_map.h>
#include <quay/zero/element_sequence.h>
#include <quay/zero/meta/standard_types.h>
#include <quay/zero/primitive_collection.h>
#include <quay/zero/property_value.h>

#include <boost/optional.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quay::zero::meta {

class QUAY_ZERO_API Package::Impl final : public MetaElement::Impl {
public:
    struct Descriptors;  // of its properties

    Impl(Model const& model, boost::uuids::uuid const& id);
    Class const& getMetaClass() const override { return Package::metaClass(); }
    ClassTable const& classTable() const override { return Package::classTable(); }

    std::u16string const& getUri() const noexcept { return uri_; }
    void setUri(std::u16string const& uri);
    PrimitiveSequence<std::u16string> const* getImportedPackageURIs() const noexcept { return &importedPackageURIs_; }
    PrimitiveSequence<std::u16string>* getImportedPackageURIsMutable() noexcept { return &importedPackageURIs_; }
    /// The package above, or an empty handle; a package belongs to the one above it.
    Package getParentPackage() const;
    void setParentPackage(Package const& parent);
    ElementSequence<Type> const* getOwnedTypes() const noexcept { return &ownedTypes_; }
    ElementSequence<Type>* getOwnedTypesMutable() noexcept { return &ownedTypes_; }
    ElementSequence<Package> const* getPackages() const noexcept { return &packages_; }
    ElementSequence<Package>* getPackagesMutable() noexcept { return &packages_; }
    /// The names from the outermost package down, joined by dots; packages without a name are left out.
    std::u16string getQualifiedName() const override;

private:
    std::u16string uri_;
    PrimitiveSequence<std::u16string> importedPackageURIs_{this, 3};
    ElementSequence<Type> ownedTypes_{this, 4};
    ElementSequence<Package> packages_{this, 5};
};

class QUAY_ZERO_API Type::Impl : public MetaElement::Impl {
public:
    struct Descriptors;  // of its properties

    Package getOwningPackage() const;
    void setOwningPackage(Package const& package);
    /// Package and name with a dot between them: "ModelRefInfoRepo.DataClass".
    std::u16string getQualifiedName() const override;
    bool isEnum() const noexcept;

    /// The class's script name; empty where there is none.
    std::string const& getScriptName() const noexcept { return scriptName_; }
    void setScriptName(std::string const& name);

    /// The type's own properties (of a class) or fields (of a data type), in order of declaration.
    ElementSequence<Property> const* getOwnedProperties() const noexcept { return &ownedProperties_; }
    ElementSequence<Property>* getOwnedPropertiesMutable() noexcept { return &ownedProperties_; }
    /// The property of that name, own or inherited, or an empty handle. Linear in their number.
    Property findProperty(std::u16string_view name) const;
    /// Own and inherited properties, inherited ones first.
    std::vector<Property> getProperties() const;

protected:
    Impl(Model const& model, boost::uuids::uuid const& id);

private:
    std::string scriptName_;
    ElementSequence<Property> ownedProperties_{this, 3};
};

class QUAY_ZERO_API Class::Impl final : public Type::Impl {
public:
    struct Descriptors;  // of its properties

    Impl(Model const& model, boost::uuids::uuid const& id);
    Class const& getMetaClass() const override { return Class::metaClass(); }
    ClassTable const& classTable() const override { return Class::classTable(); }

    bool isAbstract() const noexcept { return abstract_; }
    void setIsAbstract(bool abstract);
    Class getSuperclass() const { return Class::of(superclass_); }
    void setSuperclass(Class const& superclass);
    /// The superclass without counting; null for none.
    Class::Impl const* superclass() const noexcept { return static_cast<Class::Impl const*>(superclass_); }
    /// Whether elements of this class are elements of the other.
    bool conformsTo(Class const& other) const noexcept { return isKindOf(other.ModelElement::impl()); }
    bool isKindOf(ModelElement::Impl const* type) const noexcept override;
    ElementSequence<Operation> const* getOwnedOperations() const noexcept { return &ownedOperations_; }
    ElementSequence<Operation>* getOwnedOperationsMutable() noexcept { return &ownedOperations_; }

    /// The property of an index along the class chain, or an empty handle.
    Property getPropertyByIndex(unsigned long index) const;
    /// The highest index of the chain; 0 without properties.
    unsigned long getHighestIndex() const noexcept;
    /// The class as a level of its inheritance chain (class_chain.h): its superclass, and the lowest and the highest
    /// index of its own properties, 0 if none of them has one.
    Class::Impl const* base() const noexcept { return superclass(); }
    std::uint16_t firstIndex() const noexcept;
    std::uint16_t lastIndex() const noexcept;
    /// A builder for an element of this class, or null if the class is abstract.
    std::unique_ptr<ModelElement::Builder> instantiateBuilder(Model const& model) const;

private:
    /// The position of the first own property that has an index.
    std::optional<std::size_t> firstIndexed() const noexcept;

    bool abstract_ = false;
    ModelElement::Impl* superclass_ = nullptr;
    ElementSequence<Operation> ownedOperations_{this, 6};
};

class QUAY_ZERO_API DataType::Impl final : public Type::Impl {
public:
    Impl(Model const& model, boost::uuids::uuid const& id) : Type::Impl(model, id) {}
    Class const& getMetaClass() const override { return DataType::metaClass(); }
    ClassTable const& classTable() const override { return DataType::classTable(); }
};

class QUAY_ZERO_API PrimitiveType::Impl final : public Type::Impl {
public:
    Impl(Model const& model, boost::uuids::uuid const& id) : Type::Impl(model, id) {}
    Class const& getMetaClass() const override { return PrimitiveType::metaClass(); }
    ClassTable const& classTable() const override { return PrimitiveType::classTable(); }
};

class QUAY_ZERO_API Enum::Impl final : public Type::Impl {
public:
    struct Descriptors;  // of its properties

    Impl(Model const& model, boost::uuids::uuid const& id);
    Class const& getMetaClass() const override { return Enum::metaClass(); }
    ClassTable const& classTable() const override { return Enum::classTable(); }

    Type getUnderlyingType() const { return Type::of(underlyingType_); }
    void setUnderlyingType(Type const& type);
    /// The literals by name.
    ElementMap<std::u16string, EnumLiteral> const* getLiterals() const noexcept { return &literals_; }
    ElementMap<std::u16string, EnumLiteral>* getLiteralsMutable() noexcept { return &literals_; }
    /// The literal of that value, or an empty handle; the first by name if several have it.
    EnumLiteral findLiteral(int value) const;

private:
    ModelElement::Impl* underlyingType_ = nullptr;
    ElementMap<std::u16string, EnumLiteral> literals_{this, 5};
};

class QUAY_ZERO_API EnumLiteral::Impl final : public MetaElement::Impl {
public:
    struct Descriptors;  // of its properties

    Impl(Model const& model, boost::uuids::uuid const& id) : MetaElement::Impl(model, id) {}
    Class const& getMetaClass() const override { return EnumLiteral::metaClass(); }
    ClassTable const& classTable() const override { return EnumLiteral::classTable(); }

    int getValue() const noexcept { return value_; }
    void setValue(int value);
    Enum getParentEnum() const;
    /// Adds the literal to the enumeration. UniquenessConstraint if the enumeration has a literal of that name.
    void setParentEnum(Enum const& parent);

private:
    int value_ = 0;
};

class QUAY_ZERO_API Operation::Impl final : public TypedElement::Impl {
public:
    struct Descriptors;  // of its properties

    Impl(Model const& model, boost::uuids::uuid const& id);
    Class const& getMetaClass() const override { return Operation::metaClass(); }
    ClassTable const& classTable() const override { return Operation::classTable(); }

    bool isAbstract() const noexcept { return abstract_; }
    void setIsAbstract(bool value);
    bool isStatic() const noexcept { return static_; }
    void setIsStatic(bool value);
    bool isPublic() const noexcept { return public_; }
    void setIsPublic(bool value);
    bool isEvent() const noexcept { return event_; }
    void setIsEvent(bool value);
    Class getOwningType() const;
    void setOwningType(Class const& owner);
    ElementSequence<Argument> const* getArguments() const noexcept { return &arguments_; }
    ElementSequence<Argument>* getArgumentsMutable() noexcept { return &arguments_; }

private:
    bool abstract_ = false;
    bool static_ = false;
    bool public_ = false;
    bool event_ = false;
    ElementSequence<Argument> arguments_{this, 10};
};

class QUAY_ZERO_API Argument::Impl final : public TypedElement::Impl {
public:
    struct Descriptors;  // of its properties

    Impl(Model const& model, boost::uuids::uuid const& id) : TypedElement::Impl(model, id) {}
    Class const& getMetaClass() const override { return Argument::metaClass(); }
    ClassTable const& classTable() const override { return Argument::classTable(); }

    bool isInput() const noexcept { return input_; }
    void setIsInput(bool value);
    Operation getOperation() const;
    void setOperation(Operation const& operation);

private:
    bool input_ = false;
};

}  // namespace quay::zero::meta
