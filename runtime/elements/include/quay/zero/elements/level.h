// One class of a chain, as its elements see it.
#pragma once

#include <quay/zero/model.h>

namespace quay::zero::elements {

/// Base of the Impl of class X, whose superclass is `Base`. It says which class this is; all that the runtime does to
/// an element goes from there to the class's descriptors. A property is found by a comparison a level. What isn't
/// inline stands in definitions.h, and is instantiated in the class's source alone.
template <class X, class Base>
class QUAY_ZERO_API Level : public Base::Impl {
public:
    using ReflectionPrivateTag = quay::zero::ReflectionPrivateTag;

    Level(Model const& model, boost::uuids::uuid const& id);

    meta::Class const& getMetaClass() const override;
    ClassTable const& classTable() const override;
    bool hasPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const override;
    Value getPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const override;
    void setPropertyValue(meta::Property const& property, Value const& value, ReflectionPrivateTag const& tag) override;

    /// A new handle to this element.
    X This() const { return X::of(const_cast<typename X::Impl*>(static_cast<typename X::Impl const*>(this))); }

protected:
    /// Whether that is the table of this level or of one above it.
    static bool isOfChain(ClassTable const* table) noexcept;
    static bool knows(meta::Property const& property) noexcept;

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
