// Definitions of the builders of generated classes, to be instantiated once, in the class's own source.
#pragma once

#include <quay/zero/elements/builder.h>
#include <quay/zero/property_descriptor.h>

namespace quay::zero::elements {

template <class X>
ConcreteBuilder<X>::ConcreteBuilder() : Setters(X::classTable().highestIndex() + 1) {}

template <class X>
ConcreteBuilder<X>::ConcreteBuilder(Model const& model) : Setters(model, X::classTable().highestIndex() + 1) {}

template <class X>
ConcreteBuilder<X>::~ConcreteBuilder() = default;

template <class X>
meta::Class const& ConcreteBuilder<X>::getMetaClass() const {
    return X::metaClass();
}

template <class X>
ClassTable const& ConcreteBuilder<X>::classTable() const {
    return X::classTable();
}

template <class X>
X ConcreteBuilder<X>::create() {
    return create(boost::uuids::uuid{});
}

template <class X>
X ConcreteBuilder<X>::create(boost::uuids::uuid const& id) {
    return X::cast(ModelElement::Builder::create(id));
}

template <class X>
ModelElement::Impl* ConcreteBuilder<X>::allocate(boost::uuids::uuid const& id) const {
    return new typename X::Impl(this->getModel(), id);
}

}  // namespace quay::zero::elements
