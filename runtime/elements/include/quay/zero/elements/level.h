// One level of the inheritance chain of a generated class.
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/property_value.h>

namespace quay::zero::elements {

/// Base of the Impl of class X, whose superclass is `Base`. It connects elements with the class table of X, through
/// which the runtime reaches the properties; finding a property costs one comparison for each level.
template <class X, class Base>
class Level : public Base::Impl {
public:
    using ReflectionPrivateTag = quay::zero::ReflectionPrivateTag;

    Level(Model const& model, boost::uuids::uuid const& id) : Base::Impl(model, id) {}

    meta::Class const& getMetaClass() const override { return X::metaClass(); }
    ClassTable const& classTable() const override { return X::classTable(); }

    // NOLINTBEGIN(bugprone-parent-virtual-call): ModelElement::Impl handles the properties that no level has
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
    /// Whether `table` is that of this level or of one above it.
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

    /// Returns a collection of children for reading: raises CannotModifyProxy on a proxy, and resolves the proxies of a
    /// map.
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
