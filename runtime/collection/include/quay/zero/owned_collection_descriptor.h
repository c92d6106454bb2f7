// The descriptor of a property whose children stand in a collection: a sequence, a set or a map.
#pragma once

#include <quay/zero/collection_descriptor.h>

namespace quay::zero {

/// The containment and destruction of children in a collection. `Base` is the base class of the descriptor; `C` is the
/// collection, a member of the element.
template <class C, class Base = CollectionDescriptor>
class OwnedCollectionDescriptor : public Base {
public:
    using Element = ModelElement::Impl;

    template <class X, class... Args>
    constexpr OwnedCollectionDescriptor(std::uint16_t index, C X::*field, Args... args) noexcept
        : Base(index, args...), field_(static_cast<C Element::*>(field)) {}

    C& of(Element& e) const noexcept { return e.*field_; }
    C const& of(Element const& e) const noexcept { return e.*field_; }

    void join(Element& owner, ModelElement const& child) const override {
        owner.notifyModifying(this->index());
        Element::_basicAdd(&of(owner), child);
    }
    void leave(Element& owner, ModelElement const& child) const override { of(owner).basicRemove(child); }
    void disassociate(Element& owner) const override { Element::_basicClear(&of(owner)); }
    /// Destroys the children from a snapshot, which keeps them alive while the collection changes. Proxies and
    /// references without containment are only removed, since the elements that they stand for or refer to aren't owned
    /// here.
    void destroyChildren(Element& owner, bool a, bool b) const override {
        if (of(owner).holdsNothing()) return;
        for (ModelElement const& child : of(owner).getAllValuesAndProxies()) {
            if (!child) continue;
            if (child->isProxy()) {
                if (child->containerImpl() == &owner) owner._basicSetUncontained(child.impl());
            } else if (owner.owns(*child.impl())) {
                child->destroyRecursively(a, false, b);
            }
        }
        Element::_basicClear(&of(owner));
    }
    AbstractOwnedCollection* collection(Element const& owner) const override { return const_cast<C*>(&of(owner)); }

protected:
    ~OwnedCollectionDescriptor() = default;

private:
    C Element::*field_;
};

}  // namespace quay::zero
