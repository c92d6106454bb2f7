#include "element_properties.h"

#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/property.h>
#include <ordo/factory/text.h>

#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/meta_marshaler_registry.h>
#include <quay/zero/mi/policy_based_marshaler.h>
#include <quay/zero/mi/primitive_property.h>
#include <quay/zero/value_descriptor.h>

#include "bound_property.h"
#include "primitive_marshalers.h"
#include "script_names.h"

namespace quay::zero::mi {

namespace {

using ordo::OrdoValue;
using ordo::factory::ValueType;
using ordo::factory::impl::PropertyGetter;
using ordo::factory::impl::PropertyImpl;
using ordo::factory::impl::PropertySetter;

ModelElement::Impl& elementAt(void* self) { return *static_cast<ModelElement::Impl*>(self); }

// --- Numbers, truth values, texts, and optional ones -----------------------------------------------------------------

/// Reads a V. Nearly every descriptor of a plain value has a field, which is read in place.
template <class V>
class FieldGetter final : public PropertyGetter {
public:
    explicit FieldGetter(BoundProperty property) : property_(std::move(property)) {}

    std::string typeWord() const override { return ValueType<V>::typeWord(); }
    OrdoValue get(void* self) const override {
        ModelElement::Impl const& element = elementAt(self);
        PropertyDescriptor const& descriptor = property_.descriptor();
        if (&descriptor != known_) [[unlikely]] {
            field_ = dynamic_cast<ValueDescriptor<V> const*>(&descriptor);
            known_ = &descriptor;
        }
        if (field_ != nullptr) [[likely]]
            return ValueType<V>::toScript(field_->read(element));
        V const value = property_.read(element).template getValue<V>();
        OrdoValue borrowed = ValueType<V>::toScript(value);
        return OrdoValue(std::as_const(borrowed));  // a copy owns its text
    }

private:
    BoundProperty property_;
    mutable PropertyDescriptor const* known_ = nullptr;
    mutable ValueDescriptor<V> const* field_ = nullptr;
};

template <class V>
class FieldSetter final : public PropertySetter {
public:
    explicit FieldSetter(BoundProperty property) : property_(std::move(property)) {}

    void set(void* self, OrdoValue const& value) const override {
        property_.write(elementAt(self),
                        Value::createPrimitiveValue<V>(property_.get(), ValueType<V>::fromScript(value)));
    }

private:
    BoundProperty property_;
};

// --- Enumerations ---------------------------------------------------------------------------------------------------

class EnumGetter final : public PropertyGetter {
public:
    EnumGetter(BoundProperty property, ordo::OrdoClass& enumeration)
        : property_(std::move(property)), enumeration_(&enumeration) {}

    std::string typeWord() const override { return std::string(enumeration_->name().text()); }
    OrdoValue get(void* self) const override {
        return OrdoValue::enumeration(*enumeration_, numberIn(property_.read(elementAt(self))));
    }

private:
    BoundProperty property_;
    ordo::OrdoClass* enumeration_;
};

class EnumSetter final : public PropertySetter {
public:
    EnumSetter(BoundProperty property, ordo::OrdoClass& enumeration)
        : property_(std::move(property)), enumeration_(&enumeration) {}

    void set(void* self, OrdoValue const& value) const override {
        std::int32_t const number = ordo::factory::enumerationNumber(*enumeration_, value);
        // Change the number in a copy of the present value, so that only the schema's library needs the C++ type.
        Value changed = property_.read(elementAt(self));
        putNumber(changed, number);
        property_.write(elementAt(self), changed);
    }

private:
    BoundProperty property_;
    ordo::OrdoClass* enumeration_;
};

// --- Data types -----------------------------------------------------------------------------------------------------

class DataTypeAdapter {
protected:
    explicit DataTypeAdapter(BoundProperty property) : property_(std::move(property)) {}

    ValueMarshaler& marshaler() const {
        return MetaMarshalerRegistry::getInstance().getPropertyMarshaler(property_.get()->getType());
    }

    BoundProperty property_;
};

class DataTypeGetter final : public PropertyGetter, private DataTypeAdapter {
public:
    explicit DataTypeGetter(BoundProperty property) : DataTypeAdapter(std::move(property)) {}

    std::string typeWord() const override { return marshaler().getTypeName(); }
    OrdoValue get(void* self) const override { return marshaler().toScript(property_.read(elementAt(self))); }
};

class DataTypeSetter final : public PropertySetter, private DataTypeAdapter {
public:
    explicit DataTypeSetter(BoundProperty property) : DataTypeAdapter(std::move(property)) {}

    void set(void* self, OrdoValue const& value) const override {
        if (value.isEmpty()) ordo::raiseWith(ordo::failures::NoValue, {marshaler().getTypeName()});
        Value const given = marshaler().fromScript(value);
        // A derived property may write others in several steps. For a script, an assignment is one transaction.
        Savepoint savepoint(elementAt(self).model().journal(), false);
        property_.write(elementAt(self), given);
        savepoint.commit();
    }
};

// --- Children and collections ----------------------------------------------------------------------------------------

class ChildGetter final : public PropertyGetter {
public:
    explicit ChildGetter(BoundProperty property) : property_(std::move(property)) {}

    std::string typeWord() const override { return scriptNameOfType(property_.get()->getType()); }
    OrdoValue get(void* self) const override {
        Value const value = property_.read(elementAt(self));
        return value.hasPayload() ? toScript(*static_cast<ModelElement const*>(value.data())) : OrdoValue();
    }

private:
    BoundProperty property_;
};

class ChildSetter final : public PropertySetter {
public:
    explicit ChildSetter(BoundProperty property) : property_(std::move(property)) {}

    void set(void* self, OrdoValue const& value) const override {
        property_.write(elementAt(self), Value::createElementValue(property_.get(), elementIn(value)));
    }

private:
    BoundProperty property_;
};

/// Gives a collection's script object. The declared type is only a base: the object's class follows from the
/// collection.
class CollectionGetter final : public PropertyGetter {
public:
    CollectionGetter(BoundProperty property, std::string word)
        : property_(std::move(property)), word_(std::move(word)) {}

    std::string typeWord() const override { return word_; }
    OrdoValue get(void* self) const override {
        return toScript(*property_.read(elementAt(self)).getCollection<AbstractOwnedCollection>());
    }

private:
    BoundProperty property_;
    std::string word_;
};

template <class Getter, class Setter, class... Arguments>
std::unique_ptr<PropertyImpl> makeAdapted(meta::Property const& property, std::string_view description,
                                          Arguments&... arguments) {
    BoundProperty const bound(property);
    return std::make_unique<PropertyImpl>(ordo::factory::bytesOf(property->getName()), 0U,
                                          std::make_unique<Getter>(bound, arguments...),
                                          std::make_unique<Setter>(bound, arguments...), description);
}

std::unique_ptr<PropertyImpl> makeEnumProperty(meta::Property const& property, std::string_view description) {
    std::string const name = scriptNameOfType(property->getType());
    ordo::OrdoClass* const enumeration = ordo::OrdoClass::getClass(ordo::internName(name));
    if (enumeration == nullptr) ordo::raiseWith(ordo::failures::NoSuchClass, {name});
    return makeAdapted<EnumGetter, EnumSetter>(property, description, *enumeration);
}

}  // namespace

bool isCollection(meta::Property const& property) {
    return property->getFlags() != ValueFlags::One && property->getFlags() != ValueFlags::Optional;
}

std::unique_ptr<ordo::OrdoPropInfo> makeElementProperty(meta::Property const& property, std::string_view description) {
    meta::Type const type = property->getType();
    bool const ownsElements = property->descriptor()->ownsElements();
    if (isCollection(property)) {
        return std::make_unique<PropertyImpl>(
            ordo::factory::bytesOf(property->getName()), 0U,
            std::make_unique<CollectionGetter>(BoundProperty(property),
                                               ownsElements ? names::kSet : names::kPrimitiveSet),
            nullptr, description);
    }
    if (ownsElements) return makeAdapted<ChildGetter, ChildSetter>(property, description);
    if (isArrayType(type)) return std::make_unique<PrimitiveProperty>(property, description);
    if (type->isEnum()) return makeEnumProperty(property, description);
    if (meta::DataType::cast(type)) return makeAdapted<DataTypeGetter, DataTypeSetter>(property, description);
    std::unique_ptr<ordo::OrdoPropInfo> made;
    visitPrimitive(type, [&]<class T>(std::type_identity<T>) {
        if (property->getFlags() == ValueFlags::Optional) {
            // Optional texts have no form of their own in scripts.
            if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, unsigned int>) {
                using Held = boost::optional<T>;
                made = makeAdapted<FieldGetter<Held>, FieldSetter<Held>>(property, description);
            }
        } else {
            made = makeAdapted<FieldGetter<T>, FieldSetter<T>>(property, description);
        }
    });
    if (made == nullptr) reportException(quay0::messages::NoSuchType(type->getQualifiedName()));
    return made;
}

}  // namespace quay::zero::mi
