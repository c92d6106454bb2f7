// How elements are read and written by property.
#include <quay/zero/meta/no_such_property.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

namespace quay::zero {

ReflectionPrivateTag const ReflectionPrivateTag::PUBLIC_ACCESS;
ReflectionPrivateTag const ReflectionPrivateTag::NO_PROXY_RESOLVE;
ReflectionPrivateTag const ReflectionPrivateTag::IN_MEMORY_ONLY;

meta::Property ModelElement::Impl::getPropertyByIndex(unsigned long index) const {
    return getMetaClass()->getPropertyByIndex(index);
}

PropertyDescriptor const* ModelElement::Impl::descriptorOf(meta::Property const& property) const noexcept {
    return classTable().descriptorOf(property);
}

bool ModelElement::Impl::hasPropertyValue(meta::Property const& property, ReflectionPrivateTag const& /*tag*/) const {
    PropertyDescriptor const* const descriptor = descriptorOf(property);
    return descriptor != nullptr && descriptor->has(*this);
}

Value ModelElement::Impl::getPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const {
    PropertyDescriptor const* const descriptor = descriptorOf(property);
    if (descriptor == nullptr) meta::reportNoSuchProperty(property, getMetaClass());
    return descriptor->get(*this, property, tag);
}

void ModelElement::Impl::setPropertyValue(meta::Property const& property, Value const& value,
                                          ReflectionPrivateTag const& tag) {
    PropertyDescriptor const* const descriptor = descriptorOf(property);
    if (descriptor == nullptr) meta::reportNoSuchProperty(property, getMetaClass());
    descriptor->set(*this, property, value, tag);
}

}  // namespace quay::zero
