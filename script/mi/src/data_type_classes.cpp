#include <quay/zero/mi/data_type_classes.h>

#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/marshaler.h>
#include <ordo/factory/method.h>
#include <ordo/factory/property.h>
#include <ordo/factory/text.h>

#include <quay/zero/meta/serializers.h>
#include <quay/zero/mi/docs.h>
#include <quay/zero/mi/meta_marshaler_registry.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include "bound_property.h"
#include "primitive_marshalers.h"

namespace quay::zero::mi {

using ordo::MethodCall;
using ordo::OrdoMethodSignature;
using ordo::OrdoValue;
using ordo::factory::impl::MethodImpl;
using ordo::factory::impl::PropertyGetter;
using ordo::factory::impl::PropertyImpl;
using ordo::factory::impl::PropertySetter;

namespace {

constexpr unsigned kFieldAttributes = 64;

meta::DatatypeSerializer const& serializerOf(meta::Type const& type) {
    auto const* const found =
        meta::PropertySerializerRegistry::getInstance()->getDatatypeSerializer(meta::DataType::cast(type));
    if (found == nullptr) reportException(quay0::messages::NoSuchType(type->getQualifiedName()));
    return *found;
}

/// Reads and writes one field; the adapters for both use the marshaler of the field's type.
class Field {
protected:
    explicit Field(BoundProperty property) : property_(std::move(property)) {}

    ValueMarshaler& marshaler() const {
        return MetaMarshalerRegistry::getInstance().getPropertyMarshaler(property_.get()->getType());
    }

    BoundProperty property_;
};

class FieldGetter final : public PropertyGetter, private Field {
public:
    explicit FieldGetter(BoundProperty property) : Field(std::move(property)) {}

    std::string typeWord() const override { return marshaler().getTypeName(); }
    OrdoValue get(void* self) const override {
        Value const& object = *static_cast<Value const*>(self);
        Value const field = serializerOf(object.getType()).getPropertyValue(object, property_.get());
        OrdoValue borrowed = marshaler().toScript(field);
        return OrdoValue(std::as_const(borrowed));
    }
};

class FieldSetter final : public PropertySetter, private Field {
public:
    explicit FieldSetter(BoundProperty property) : Field(std::move(property)) {}

    void set(void* self, OrdoValue const& value) const override {
        Value& object = *static_cast<Value*>(self);
        object =
            serializerOf(object.getType()).setPropertyValue(object, property_.get(), marshaler().fromScript(value));
    }
};

/// Compares by the fields in order and gives -1, 0 or 1. Numbers are compared by < alone, texts by code unit.
int compare(Value const& a, Value const& b) {
    meta::DatatypeSerializer const& serializer = serializerOf(a.getType());
    for (meta::Property const& property : *a.getType()->getOwnedProperties()) {
        Value const x = serializer.getPropertyValue(a, property);
        Value const y = serializer.getPropertyValue(b, property);
        int order = 0;
        visitPrimitive(property->getType(), [&]<class T>(std::type_identity<T>) {
            T const left = x.getValue<T>();
            T const right = y.getValue<T>();
            order = left < right ? -1 : right < left ? 1 : 0;
        });
        if (order != 0) return order;
    }
    return 0;
}

Value const& operand(MethodCall const& call, std::size_t index) {
    ordo::OrdoInterface* const first = call.argument(0).object();
    void* const native = first == nullptr ? nullptr : call.argument(index).native(first->getClass().name());
    if (native == nullptr) {
        ordo::raiseWith(ordo::failures::WrongType,
                        {call.argument(index).describe(),
                         first == nullptr ? "a value" : std::string(first->getClass().name().text())});
    }
    return *static_cast<Value const*>(native);
}

template <class F>
constexpr MethodImpl::CallThunk comparison(F /*compare*/) {
    return [](MethodImpl::Function, MethodCall& call) {
        call.setResult(OrdoValue::logical(F()(operand(call, 0), operand(call, 1))));
    };
}

}  // namespace

void DataTypeWrapper::defineClass(ordo::OrdoClass& ordoClass) {
    std::string const full(getFullName());
    meta::Type const type = typeOfScriptName(full);
    constexpr auto copier = &ordo::factory::Marshaler<ordo::factory::DataTypePolicy>::copier<Value>;
    ordoClass.addMethod(
        std::make_unique<ordo::factory::impl::OrdoConstructor>(getName(), full, copier, getDescription()));
    for (meta::Property const& property : *type->getOwnedProperties()) {
        BoundProperty const bound(property);
        std::string const name = ordo::factory::bytesOf(property->getName());
        ordoClass.addProperty(std::make_unique<PropertyImpl>(name, kFieldAttributes,
                                                             std::make_unique<FieldGetter>(bound),
                                                             std::make_unique<FieldSetter>(bound), docOf(full, name)));
    }
    auto const add = [&](char const* name, MethodImpl::CallThunk run, char const* description) {
        auto signature = OrdoMethodSignature::createMethodSignature("", "logical scalar", {full, full});
        ordoClass.addMethod(std::make_unique<MethodImpl>(name, ordo::factory::MethodAttributes{}, std::move(signature),
                                                         run, nullptr, description));
    };
    add("eq", comparison([](Value const& a, Value const& b) { return a == b; }), "Whether all fields are equal.");
    add("ne", comparison([](Value const& a, Value const& b) { return !(a == b); }), "Whether a field differs.");
    add("lt", comparison([](Value const& a, Value const& b) { return compare(a, b) < 0; }),
        "Whether the first field that differs is smaller here.");
}

void* DataTypeWrapper::makeInstance() {
    meta::Type const type = typeOfScriptName(getFullName());
    return std::make_unique<Value>(serializerOf(type).createDefaultValue()).release();
}

std::string_view DataTypeWrapper::getDescription() const noexcept { return docOf(getFullName()); }

}  // namespace quay::zero::mi
