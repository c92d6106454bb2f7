// The parts of the factory layer that don't depend on a native type.
#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/binding_registry.h>
#include <ordo/factory/class_info.h>
#include <ordo/factory/method.h>
#include <ordo/factory/property.h>
#include <ordo/factory/text.h>

#include <zx/text.h>

#include <string>
#include <utility>

namespace ordo::factory {

OrdoFactoryClassInfo::~OrdoFactoryClassInfo() = default;
OrdoMethod::~OrdoMethod() = default;

std::string withoutScalar(std::string_view typeWord) {
    constexpr std::string_view ending = " scalar";
    if (typeWord != "OrdoFactoryString scalar" && typeWord.ends_with(ending)) {
        typeWord.remove_suffix(ending.size());
    }
    return std::string(typeWord);
}

OrdoValue firstOf(OrdoValue const& value) {
    if (value.kind() != OrdoValue::Kind::Array) {
        return value;
    }
    zxArray const* const array = value.arrayContent();
    bool const isOne = zxGetNumberOfElements(array) < 2 || zxIsText(array);
    return isOne ? OrdoValue::borrowedArray(array) : OrdoValue::fromArray(zx::Array(zxDuplicateElement(array, 0)));
}

std::int32_t enumerationNumber(OrdoClass& enumeration, OrdoValue const& value) {
    std::int32_t number = 0;
    bool const isKnown = value.isNothing() || value.enumerationOf(enumeration, number);
    return isKnown ? number : enumeration.constructEnumeration(value).enumerationNumber();
}

namespace impl {

PropertyImplBase::~PropertyImplBase() = default;
PropertyGetter::~PropertyGetter() = default;
PropertySetter::~PropertySetter() = default;

PropertyImpl::PropertyImpl(std::string_view name, unsigned attributes, std::unique_ptr<PropertyGetter> getter,
                           std::unique_ptr<PropertySetter> setter, std::string_view description)
    : PropertyImplBase(name, attributes, description), getter_(std::move(getter)), setter_(std::move(setter)) {}

PropertyImpl::~PropertyImpl() = default;

void PropertyImpl::set(void* self, OrdoValue const& value) const {
    validateSelfPointer(self);
    std::string_view const className = definingClass() != nullptr ? definingClass()->shortName().text() : "";
    if (setter_ == nullptr) {
        raiseWith(failures::ReadOnly, {std::string(name().text()), std::string(className)});
    }
    try {
        setter_->set(self, value);
    } catch (keel::core::except::Exception<Failure> const& failure) {
        // The conversion doesn't know its property, so the name is added here.
        Failure message = failure.message();
        if (!message.subject()) {
            message.about(unitsOf(std::string(className) + '.' + std::string(name().text())));
        }
        throw keel::core::except::Exception<Failure>(std::move(message));
    }
}

OrdoConstructor::OrdoConstructor(std::string_view shortName, std::string_view fullName, NativeCopier copier,
                                 std::string_view description)
    : OrdoMethod(shortName, {}, OrdoMethodSignature::createMethodSignature("", fullName, {}), description),
      className_(internName(fullName)),
      copier_(copier) {}

void OrdoConstructor::call(MethodCall& call) const {
    if (void* const native = definingClass()->info().makeInstance()) {
        basic::BindingRegistry::announceForConstructor(native, className_, *call.constructed(), false, copier_);
    }
}

}  // namespace impl
}  // namespace ordo::factory
