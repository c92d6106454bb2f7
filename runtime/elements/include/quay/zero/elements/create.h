// How elements, builders and collections of a class are made.
#pragma once

#include <quay/zero/bool_sequence.h>
#include <quay/zero/element_sequence.h>
#include <quay/zero/element_set.h>
#include <quay/zero/meta/types.h>

#include <memory>

namespace quay::zero::elements {

/// Creates an element with its defaults, in a transaction. A nil id is replaced by a new one; one in use raises
/// UniquenessConstraint.
template <class X>
X create(Model const& model, boost::uuids::uuid const& id) {
    if (!model) reportException(quay0::messages::CannotCreateWithoutModel());
    Savepoint savepoint(model->journal());
    X made = X::of(new typename X::Impl(model, id));
    made->notifyCreated();
    savepoint.commit();
    return made;
}

/// The factories of a class table. Collections are detached and empty.
template <class X>
std::unique_ptr<ModelElement::Builder> makeBuilder(Model const& model) {
    return std::make_unique<typename X::Builder>(model);
}

template <class X>
AbstractOwnedCollection* makeCollection(ModelElement const& /*owner*/, meta::Property const& property) {
    if (property->isOrdered()) return new ElementSequence<X>(property, property->isUnique());
    return new UnorderedElementSet<X>(property);
}

template <class T>
AbstractOwnedCollection* makeValueCollection(ModelElement const& /*owner*/, meta::Property const& property) {
    if (property->isOrdered()) return new PrimitiveSequence<T>(property, property->isUnique());
    return new PrimitiveSet<T>(property);
}

}  // namespace quay::zero::elements
