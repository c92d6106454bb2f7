// One class of a chain, as its elements see it.
#pragma once

#include <quay/zero/model.h>
#include <quay/zero/property_row.h>

namespace quay::zero::elements {

/// Base of the Impl of class X, whose superclass is `Base`. It says which class this is; all that the runtime does to
/// an element goes from there to the class's rows.
template <class X, class Base>
class Level : public Base::Impl {
public:
    Level(Model const& model, boost::uuids::uuid const& id) : Base::Impl(model, id) {}

    meta::Class const& getMetaClass() const override { return X::metaClass(); }
    ClassTable const& classTable() const override { return X::classTable(); }

    /// A new handle to this element.
    X This() const { return X::of(const_cast<typename X::Impl*>(static_cast<typename X::Impl const*>(this))); }

protected:
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
