#include <quay/zero/mi/enum_classes.h>

#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/method.h>
#include <ordo/factory/text.h>
#include <ordo/factory/value_type.h>

#include <quay/zero/mi/docs.h>

#include <zx/containers.h>
#include <zx/text.h>
#include <zx/values.h>

#include <algorithm>

#include "bound_property.h"

namespace quay::zero::mi {

using ordo::MethodCall;
using ordo::OrdoMethodSignature;
using ordo::OrdoValue;
using ordo::factory::impl::MethodImpl;

namespace {

constexpr unsigned kMethodAttributes = 4098;

/// The number of the value that a method was called on, and its class.
std::int32_t selfNumber(MethodCall const& call, ordo::OrdoClass*& enumeration) {
    OrdoValue const& self = call.argument(0);
    std::int32_t number = 0;
    if (self.kind() == OrdoValue::Kind::Enumeration) {
        enumeration = &self.enumerationClass();
        return self.enumerationNumber();
    }
    zx::Array storage;
    zxArray const* const array = self.array(storage);
    if (zxIsObject(array)) enumeration = ordo::OrdoClass::getClass(ordo::LookupName(zxGetClassName(array)));
    if (enumeration == nullptr || !self.enumerationOf(*enumeration, number)) {
        ordo::raiseWith(ordo::failures::WrongType, {self.describe(), "an enumeration value"});
    }
    return number;
}

/// Gives the literal's name, which is its public identifier as well: schemas here have no separate ones.
void getLiteral(MethodImpl::Function /*function*/, MethodCall& call) {
    ordo::OrdoClass* enumeration = nullptr;
    std::int32_t const number = selfNumber(call, enumeration);
    ordo::OrdoEnumInfo const* const literal = enumeration->findEnumeration(number);
    call.setResult(OrdoValue::text(literal == nullptr ? u"" : ordo::factory::unitsOf(literal->getName().text())));
}

void getValue(MethodImpl::Function /*function*/, MethodCall& call) {
    ordo::OrdoClass* enumeration = nullptr;
    call.setResult(OrdoValue::int32(selfNumber(call, enumeration)));
}

zx::Array makeObject(ordo::OrdoClass const& enumeration, std::int32_t number) {
    zx::Array underlying = zx::scalar(number);
    zx::Array object(zxCreateObjectFromUnderlying(enumeration.name().text(), underlying.get()));
    static_cast<void>(underlying.release());
    return object;
}

}  // namespace

// --- The class ------------------------------------------------------------------------------------------------------

std::string_view QUAY0EnumInfo::getDescription() const noexcept { return docOf(getFullName()); }

void QUAY0EnumInfo::defineClass(ordo::OrdoClass& ordoClass) {
    std::string const full(getFullName());
    auto const type = meta::Enum::cast(typeOfScriptName(full));
    if (underlyingWord_.empty()) {
        underlyingWord_ = ordo::factory::withoutScalar(ordo::factory::ValueType<std::int32_t>::typeWord());
    }
    ordoClass.addSuperclass(underlyingWord_, 0, 0, 1);
    ordoClass.addMethod(std::make_unique<Ctor>(ordoClass));

    std::vector<meta::EnumLiteral> literals;
    for (meta::EnumLiteral const& literal : *type->getLiterals()) literals.push_back(literal);
    // The map is ordered by name; scripts see literals in the order of their values.
    std::stable_sort(literals.begin(), literals.end(),
                     [](auto const& a, auto const& b) { return a->getValue() < b->getValue(); });
    for (meta::EnumLiteral const& literal : literals) {
        std::string const name = ordo::factory::bytesOf(literal->getName());
        ordoClass.addEnumeration(
            std::make_unique<QUAY0EnumValueInfo>(name, ordoClass, literal->getValue(), docOf(full, name)));
    }

    auto const add = [&](char const* name, char const* result, MethodImpl::CallThunk run, char const* description) {
        ordoClass.addMethod(std::make_unique<MethodImpl>(name, ordo::factory::MethodAttributes{kMethodAttributes},
                                                         OrdoMethodSignature::createMethodSignature("", result, {full}),
                                                         run, nullptr, description));
    };
    add("getValue", "int32 scalar", &getValue, "The value as a number.");
    add("getLiteral", "OrdoFactoryString scalar", &getLiteral,
        "The literal's name; empty if no literal has the value.");
    add("getPublicIdentifier", "OrdoFactoryString scalar", &getLiteral, "The name by which others know the literal.");
}

zxArray const* QUAY0EnumValueInfo::getValue() {
    if (object_ == nullptr) object_ = makeObject(*class_, value_);
    return object_.get();
}

Ctor::Ctor(ordo::OrdoClass& enumeration)
    : OrdoMethodInfo(enumeration.shortName().text(),
                     OrdoMethodSignature::createMethodSignature("value", enumeration.name().text(), {"any"})),
      class_(&enumeration) {}

void Ctor::call(MethodCall& call) const { call.setResult(class_->constructEnumeration(call.argument(0))); }

std::string_view Ctor::getDescription() const noexcept { return docOf(class_->name().text()); }

// --- Conversion -----------------------------------------------------------------------------------------------------

zx::Array FromAnyAsStringTypeConverter::convert(zxArray const* value) {
    if (zxIsClass(value, class_->name().text())) return zx::copy(value);
    zxArray const* const content = zxIsCell(value) && zxGetNumberOfElements(value) == 1 ? zxGetCell(value, 0) : value;
    if (!zxIsText(content)) {
        OrdoValue const given = OrdoValue::borrowedArray(content);
        ordo::raiseWith(ordo::failures::WrongType, {given.describe(), std::string(class_->name().text())});
    }
    std::string const name = zx::utf8Of(content);
    ordo::OrdoEnumInfo* const literal = class_->findEnumeration(ordo::LookupName(name));
    if (literal == nullptr) {
        ordo::raiseWith(ordo::failures::NoSuchLiteral, {name, ordo::factory::bytesOf(type_->getQualifiedName())});
    }
    return zx::copy(literal->getValue());
}

}  // namespace quay::zero::mi
