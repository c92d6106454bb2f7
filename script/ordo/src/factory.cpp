// The parts of the factory layer that don't depend on a native type.
#include <ordo/class.h>
#include <ordo/collection.h>
#include <ordo/error.h>
#include <ordo/factory/class_info.h>
#include <ordo/factory/property.h>
#include <ordo/factory/text.h>
#include <ordo/type_repository.h>

#include <zx/text.h>

#include <string>
#include <utility>

namespace ordo {

OrdoCollection::~OrdoCollection() = default;
OrdoValue OrdoCollection::at(void*, std::size_t) const { return {}; }
std::vector<OrdoValue> OrdoCollection::keys(void*) const { return {}; }
std::vector<OrdoValue> OrdoCollection::find(void*, OrdoValue const&) const { return {}; }

namespace factory {

OrdoFactoryClassInfo::~OrdoFactoryClassInfo() = default;

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
    if (value.isNothing() || value.enumerationOf(enumeration, number)) {
        return number;
    }
    std::string const name(enumeration.name().text());
    bool const foreign = value.kind() == OrdoValue::Kind::Object || value.kind() == OrdoValue::Kind::Enumeration;
    bool const array = value.kind() == OrdoValue::Kind::Array;
    if (!foreign && !value.isText() && (!array || zxIsNumeric(value.arrayContent()))) {
        number = value.toInt32();
        if (enumeration.findEnumeration(number) == nullptr) {
            raiseWith(failures::NoSuchLiteral, {std::to_string(number), name});
        }
        return number;
    }
    OrdoTypeConverter* const conversion =
        foreign ? nullptr : OrdoTypeRepository::getConversion(internName("any"), internName(name + " property"));
    if (conversion != nullptr) {
        zx::Array storage;
        zx::Array converted = conversion->convert(value.array(storage));
        OrdoValue const result = OrdoValue::fromArray(std::move(converted));
        if (result.enumerationOf(enumeration, number)) {
            return number;
        }
    } else if (value.isText()) {
        std::string const text = value.toBytes();
        if (OrdoEnumInfo const* const literal = enumeration.findEnumeration(internName(text))) {
            return literal->getNumericValue();
        }
        raiseWith(failures::NoSuchLiteral, {text, name});
    }
    raiseWith(failures::WrongType, {value.describe(), "a value of '" + name + "'"});
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
        // The conversion doesn't know which property it is for.
        Failure message = failure.message();
        if (!message.subject()) {
            message.about(unitsOf(std::string(className) + '.' + std::string(name().text())));
        }
        throw keel::core::except::Exception<Failure>(std::move(message));
    }
}

}  // namespace impl
}  // namespace factory
}  // namespace ordo
