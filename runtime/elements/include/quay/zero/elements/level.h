// One level of the inheritance chain of a generated class.
#pragma once

#include <quay/zero/model.h>

namespace quay::zero::elements {

/// Base of the Impl of class X, whose superclass is `Base`. It connects elements with the class table of X, through
/// which the runtime reaches the properties; finding a property costs one comparison for each level. Functions that
/// aren't inline are defined in definitions.h and instantiated only in the source of the class.
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
    /// Whether `table` is that of this level or of one above it.
    static bool isOfChain(ClassTable const* table) noexcept;
    static bool knows(meta::Property const& property) noexcept;

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
