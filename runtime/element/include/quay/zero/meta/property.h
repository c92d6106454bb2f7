// Properties as meta objects: the part of the meta objects that values and property descriptors need. The other classes
// of meta objects stand in <quay/zero/meta/types.h>.
#pragma once

#include <quay/zero/meta/meta_element.h>
#include <quay/zero/value_flags.h>

#include <boost/optional/optional_fwd.hpp>
#include <cstdint>
#include <optional>
#include <string>

namespace quay::zero {

class ClassTable;
class PropertyDescriptor;

}  // namespace quay::zero

namespace quay::zero::meta {

class QUAY_ZERO_API TypedElement::Impl : public MetaElement::Impl {
public:
    struct Descriptors;  // of its properties

    /// "No upper bound".
    static constexpr int UNBOUNDED = -1;

    Type getType() const { return Type::of(type_); }
    void setType(Type const& type);
    /// The type without counting; null while the property has none.
    ModelElement::Impl* type() const noexcept { return type_; }
    bool isOrdered() const noexcept { return ordered_; }
    void setIsOrdered(bool ordered);
    int getLower() const noexcept { return lower_; }
    void setLower(int lower);
    /// UNBOUNDED for none.
    int getUpper() const noexcept { return upper_; }
    void setUpper(int upper);

protected:
    Impl(Model const& model, boost::uuids::uuid const& id) : MetaElement::Impl(model, id) {}

private:
    ModelElement::Impl* type_ = nullptr;
    int lower_ = 0;
    int upper_ = 1;
    bool ordered_ = false;
};

class QUAY_ZERO_API Property::Impl final : public TypedElement::Impl {
public:
    struct Descriptors;  // of its properties

    Impl(Model const& model, boost::uuids::uuid const& id) : TypedElement::Impl(model, id) {}
    Class const& getMetaClass() const override { return Property::metaClass(); }
    ClassTable const& classTable() const override { return Property::classTable(); }

    /// The kind of property by number of values; the bounds follow from it.
    ValueFlags getFlags() const noexcept { return static_cast<ValueFlags>(flags_); }
    void setFlags(ValueFlags flags);
    /// Whether the property owns its values: true of exactly those whose type is a class.
    bool isComposite() const noexcept { return composite_; }
    void setIsComposite(bool composite);
    bool isUnique() const noexcept { return unique_; }
    void setIsUnique(bool unique);
    /// A derived property is computed on read; it has no index and no default.
    bool isDerived() const noexcept { return derived_; }
    void setIsDerived(bool derived);
    /// The text that the type's serializer parses, or none.
    boost::optional<std::u16string> getDefaultValue() const;
    void setDefaultValue(boost::optional<std::u16string> const& text);
    /// The index of the property along its class chain, from 1; 0 for a property without index.
    std::uint16_t getIndex() const noexcept { return static_cast<std::uint16_t>(index_); }
    void setIndex(int index);
    /// The property of the child by which a map is keyed, or an empty handle.
    Property getQualifiedBy() const { return Property::of(qualifiedBy_); }
    void setQualifiedBy(Property const& key);
    bool isQualificationUnique() const noexcept { return qualificationUnique_; }
    void setIsQualificationUnique(bool unique);
    /// The class or data type that declares the property, or an empty handle.
    Type getOwningType() const;
    void setOwningType(Type const& owner);

    /// The property descriptor and the class table of the class that declares the property; null for fields of data
    /// types.
    PropertyDescriptor const* descriptor() const noexcept { return descriptor_; }
    ClassTable const* declaringTable() const noexcept { return declaringTable_; }
    void setDescriptor(ClassTable const& table, PropertyDescriptor const* descriptor) noexcept {
        declaringTable_ = &table;
        descriptor_ = descriptor;
    }

private:
    PropertyDescriptor const* descriptor_ = nullptr;
    ClassTable const* declaringTable_ = nullptr;
    ModelElement::Impl* qualifiedBy_ = nullptr;
    std::optional<std::u16string> defaultValue_;
    int flags_ = static_cast<int>(ValueFlags::One);
    int index_ = 0;
    bool composite_ = false;
    bool unique_ = false;
    bool derived_ = false;
    bool qualificationUnique_ = true;
};

}  // namespace quay::zero::meta
