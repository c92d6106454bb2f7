// Definitions of the templates that generated classes use, to be instantiated once, in the class's own source.
#pragma once

#include <quay/zero/elements/builder.h>
#include <quay/zero/elements/level.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

namespace quay::zero::elements {

// --- Elements -------------------------------------------------------------------------------------------------------

template <class X, class Base>
Level<X, Base>::Level(Model const& model, boost::uuids::uuid const& id) : Base::Impl(model, id) {}

template <class X, class Base>
meta::Class const& Level<X, Base>::getMetaClass() const {
    return X::metaClass();
}

template <class X, class Base>
ClassTable const& Level<X, Base>::classTable() const {
    return X::classTable();
}

// NOLINTBEGIN(bugprone-parent-virtual-call): ModelElement::Impl handles the properties that no level has
template <class X, class Base>
bool Level<X, Base>::hasPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const {
    return knows(property) ? property->descriptor()->has(*this) : ModelElement::Impl::hasPropertyValue(property, tag);
}

template <class X, class Base>
Value Level<X, Base>::getPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const {
    if (!knows(property)) return ModelElement::Impl::getPropertyValue(property, tag);
    return property->descriptor()->get(*this, property, tag);
}

template <class X, class Base>
void Level<X, Base>::setPropertyValue(meta::Property const& property, Value const& value,
                                      ReflectionPrivateTag const& tag) {
    if (!knows(property)) return ModelElement::Impl::setPropertyValue(property, value, tag);
    property->descriptor()->set(*this, property, value, tag);
}
// NOLINTEND(bugprone-parent-virtual-call)

template <class X, class Base>
bool Level<X, Base>::isOfChain(ClassTable const* table) noexcept {
    if (table == &X::classTable()) return true;
    if constexpr (requires { Base::Impl::isOfChain(table); }) {
        return Base::Impl::isOfChain(table);
    } else {
        return false;
    }
}

template <class X, class Base>
bool Level<X, Base>::knows(meta::Property const& property) noexcept {
    return bool(property) && isOfChain(property->declaringTable());
}

// --- Builders -------------------------------------------------------------------------------------------------------

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
