// What the shapes of several owned children share: creating a child into its place.
#pragma once

#include <quay/zero/builder.h>
#include <quay/zero/elements/create.h>
#include <quay/zero/elements/handle.h>
#include <quay/zero/owned_collection_descriptor.h>

namespace quay::zero::elements {

/// Creates a child and puts it into a descriptor's place, in one savepoint: a failure leaves neither.
template <class T>
T createInto(PropertyDescriptor const& descriptor, ModelElement::Impl& owner) {
    owner.requireWritable();
    Savepoint savepoint(owner.model().journal());
    T const child = T::of(new typename T::Impl(Model(&owner.model()), boost::uuids::uuid{}));
    child->notifyCreated();
    descriptor.place(owner, child);
    savepoint.commit();
    return child;
}

/// Creates a child by a builder, in the owner's model whatever model the builder had, and puts it into its place.
template <class T>
T createInto(PropertyDescriptor const& descriptor, ModelElement::Impl& owner, BuilderWrapper<T> const& wrapper,
             boost::uuids::uuid const& id) {
    owner.requireWritable();
    wrapper.builder().setModel(Model(&owner.model()));
    Savepoint savepoint(owner.model().journal());
    ModelElement const child = wrapper.builder().create(id);
    descriptor.place(owner, child);
    savepoint.commit();
    return T::cast(child);
}

/// The descriptor of a collection `C` of children of class T; `Base` is its descriptor's base.
template <class T, class C, class Base = CollectionDescriptor>
class Children : public OwnedCollectionDescriptor<C, Base> {
public:
    using Element = ModelElement::Impl;
    using OwnedCollectionDescriptor<C, Base>::OwnedCollectionDescriptor;

    T createInto(Element& owner) const { return elements::createInto<T>(*this, owner); }
    T createInto(Element& owner, BuilderWrapper<T> const& builder, boost::uuids::uuid const& id) const {
        return elements::createInto<T>(*this, owner, builder, id);
    }

protected:
    ~Children() = default;
};

}  // namespace quay::zero::elements
