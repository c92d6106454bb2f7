// One class of a chain, as its elements see it.
#pragma once

#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

namespace quay::zero::elements {

/// Base of the Impl of class X, whose superclass is `Base`. It says which class this is; all that the runtime does to
/// an element goes from there to the class's descriptors. A property is found by a comparison a level.
template <class X, class Base>
class Level : public Base::Impl {
public:
    using ReflectionPrivateTag = quay::zero::ReflectionPrivateTag;

    Level(Model const& model, boost::uuids::uuid const& id) : Base::Impl(model, id) {}

    meta::Class const& getMetaClass() const override { return X::metaClass(); }
    ClassTable const& classTable() const override { return X::classTable(); }

    // NOLINTBEGIN(bugprone-parent-virtual-call): a property that no level knows is for the end of the chain
    bool hasPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const override {
        return knows(property) ? property->descriptor()->has(*this)
                               : ModelElement::Impl::hasPropertyValue(property, tag);
    }
    Value getPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const override {
        if (!knows(property)) return ModelElement::Impl::getPropertyValue(property, tag);
        return property->descriptor()->get(*this, property, tag);
    }
    void setPropertyValue(meta::Property const& property, Value const& value,
                          ReflectionPrivateTag const& tag) override {
        if (!knows(property)) return ModelElement::Impl::setPropertyValue(property, value, tag);
        property->descriptor()->set(*this, property, value, tag);
    }
    // NOLINTEND(bugprone-parent-virtual-call)

    /// A new handle to this element.
    X This() const { return X::of(const_cast<typename X::Impl*>(static_cast<typename X::Impl const*>(this))); }

protected:
    /// Whether that is the table of this level or of one above it.
    static bool isOfChain(ClassTable const* table) noexcept {
        if (table == &X::classTable()) return true;
        if constexpr (requires { Base::Impl::isOfChain(table); }) {
            return Base::Impl::isOfChain(table);
        } else {
            return false;
        }
    }
    static bool knows(meta::Property const& property) noexcept {
        return bool(property) && isOfChain(property->declaringTable());
    }

    /// A collection of children as it is handed out: never that of a proxy, and a map's proxies are resolved first.
    template <class C>
    C const* readable(C const& collection) const {
        this->requireLoaded();
        const_cast<C&>(collection).prepareForReading();
        return &collection;
    }
    template <class C>
    C* readable(C& collection) {
        this->requireLoaded();
        collection.prepareForReading();
        return &collection;
    }
};

}  // namespace quay::zero::elements
