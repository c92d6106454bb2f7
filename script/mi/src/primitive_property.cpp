#include <quay/zero/mi/primitive_property.h>

#include <ordo/factory/text.h>

#include <quay/zero/mi/meta_marshaler_registry.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include "bound_property.h"
#include "primitive_marshalers.h"

namespace quay::zero::mi {

using ordo::OrdoValue;

namespace {

ValueMarshaler& marshalerOf(meta::Property const& property) {
    return MetaMarshalerRegistry::getInstance().getPropertyMarshaler(property->getType());
}

bool isMultiValued(meta::Property const& property) {
    return property->getUpper() >= 2 || property->getUpper() == meta::TypedElement::Impl::UNBOUNDED;
}

AbstractPrimitiveCollection& collectionIn(Value const& value) {
    AbstractPrimitiveCollection* const found =
        value.pointsAtCollection()
            ? dynamic_cast<AbstractPrimitiveCollection*>(value.getCollection<AbstractOwnedCollection>())
            : nullptr;
    if (found == nullptr) value.reportIncompatible();
    return *found;
}

}  // namespace

PrimitiveProperty::PrimitiveProperty(meta::Property const& property, std::string_view description)
    : PropertyImplBase(ordo::factory::bytesOf(property->getName()), 0, description),
      property_(std::make_unique<BoundProperty>(property)) {
    marshalerOf(property).initializeDependencies();
}

PrimitiveProperty::~PrimitiveProperty() = default;

std::string PrimitiveProperty::getTypeWord() const {
    meta::Property const& property = property_->get();
    meta::Type const type = property->getType();
    if (isMultiValued(property) &&
        (type == meta::StandardTypes::stringMeta || type == meta::StandardTypes::stdstringMeta)) {
        return "OrdoFactoryString vector";
    }
    return marshalerOf(property).getTypeName();
}

OrdoValue PrimitiveProperty::get(void* self) const {
    ModelElement const element(static_cast<ModelElement::Impl*>(self));
    meta::Property const& property = property_->get();
    Value const value = property_->read(*element.impl());
    ValueMarshaler const& marshaler = marshalerOf(property);
    if (isMultiValued(property)) return OrdoValue::fromArray(marshaler.fromCollection(collectionIn(value)));
    return marshaler.toScript(value);
}

void PrimitiveProperty::set(void* self, OrdoValue const& given) const {
    ModelElement const element(static_cast<ModelElement::Impl*>(self));
    meta::Property const& property = property_->get();
    ValueMarshaler const& marshaler = marshalerOf(property);
    Transaction transaction = element->model().beginTransaction(false);
    forProperty(property, [&] {
        if (isMultiValued(property)) {
            AbstractPrimitiveCollection& collection = collectionIn(property_->read(*element.impl()));
            zx::Array storage;
            std::vector<Value> const values = marshaler.toValueVector(const_cast<zxArray*>(given.array(storage)));
            collection.clear();
            for (Value const& value : values) collection.genericAdd(value);
        } else {
            Value const value = marshaler.fromScript(given);
            // The element keeps a copy of its own.
            zx::Array const carried(isArrayType(property->getType()) ? value.getValue<zxArray_tag*>() : nullptr);
            property_->write(*element.impl(), value);
        }
    });
    transaction.commit(boost::none);
}

void PrimitiveProperty::release(zxArray* array) const noexcept {
    ValueMarshaler const* const marshaler =
        MetaMarshalerRegistry::getInstance().findPropertyMarshaler(property_->get()->getType());
    if (marshaler != nullptr) {
        marshaler->release(array);
    } else {
        zxDestroyArray(array);
    }
}

}  // namespace quay::zero::mi
