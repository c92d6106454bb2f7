#include <quay/zero/builder.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/report.h>
#include <quay/zero/value.h>

#include <quay0/messages.h>

namespace quay::zero {

ModelElement::Builder::Builder(Model const& model, unsigned long bits) : given_(bits), model_(model) {}
ModelElement::Builder::Builder(unsigned long bits) : given_(bits) {}
ModelElement::Builder::~Builder() = default;

ModelElement ModelElement::Builder::create(boost::uuids::uuid const& id) {
    if (!model_) reportException(quay0::messages::CannotCreateWithoutModel().about(getMetaClass()->getName()));
    return doCreate(false, id);
}

void ModelElement::Builder::setOrAdd(meta::Property const& property, Value const& /*value*/) {
    std::u16string const name = property.impl() == nullptr ? std::u16string() : property->getName();
    reportException(quay0::messages::NoSuchProperty(name, getMetaClass()->getQualifiedName()));
}

void ModelElement::Builder::setOrAdd(meta::Property const& property, std::unique_ptr<Builder>& /*child*/) {
    std::u16string const name = property.impl() == nullptr ? std::u16string() : property->getName();
    reportException(quay0::messages::NoSuchProperty(name, getMetaClass()->getQualifiedName()));
}

ModelElement::Impl::Impl(Builder& builder, boost::uuids::uuid const& id) : Impl(builder.getModel(), id) {}

}  // namespace quay::zero
