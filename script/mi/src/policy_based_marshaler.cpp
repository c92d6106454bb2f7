#include <quay/zero/mi/policy_based_marshaler.h>

#include <ordo/error.h>
#include <ordo/factory/binding_registry.h>
#include <ordo/factory/marshaler.h>
#include <ordo/factory/value_type.h>
#include <ordo/type_repository.h>

#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>

#include <zx/containers.h>
#include <zx/text.h>
#include <zx/values.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace quay::zero::mi {

using ordo::OrdoValue;

std::int32_t numberIn(Value const& value) noexcept {
    std::int32_t number = 0;
    if (void const* const payload = value.data()) std::memcpy(&number, payload, sizeof number);
    return number;
}

void putNumber(Value& value, std::int32_t number) noexcept { std::memcpy(value.data(), &number, sizeof number); }

// --- Data types -----------------------------------------------------------------------------------------------------

PolicyBasedValueMarshaler::PolicyBasedValueMarshaler(meta::Type const& type, std::string typeName)
    : TypedValueMarshaler(type, std::move(typeName)),
      className_(ordo::internName(meta::MetaRegistry::getInstance()->getTypeNames(type).script)) {}

std::string PolicyBasedValueMarshaler::getTypeName() const {
    std::string const given = TypedValueMarshaler::getTypeName();
    return given.empty() ? std::string(className_.text()) : given;
}

ordo::OrdoClass& PolicyBasedValueMarshaler::scriptClass() const {
    ordo::OrdoClass* const found = ordo::OrdoClass::getClass(className_);
    if (found == nullptr) ordo::raiseWith(ordo::failures::NoSuchClass, {std::string(className_.text())});
    return *found;
}

OrdoValue PolicyBasedValueMarshaler::toScript(Value const& value) const {
    if (!value.hasPayload()) return OrdoValue::fromArray(zx::Array(zxCreateEmptyObject(className_.text())));
    auto copy = std::make_unique<Value>(value);
    constexpr auto copier = &ordo::factory::Marshaler<ordo::factory::DataTypePolicy>::copier<Value>;
    auto object = ordo::factory::basic::BindingRegistry::announceWithoutStoring(copy.get(), className_, copier);
    static_cast<void>(copy.release());
    return OrdoValue::fromObject(std::move(object));
}

Value PolicyBasedValueMarshaler::fromScript(OrdoValue const& value) const {
    if (value.isEmpty()) return {getType(), ValueFlags::One};
    auto const* const native = static_cast<Value const*>(value.native(className_));
    if (native == nullptr || value.count() != 1) {
        ordo::raiseWith(ordo::failures::WrongType, {value.describe(), std::string(className_.text())});
    }
    return *native;
}

// --- Enumerations ---------------------------------------------------------------------------------------------------

zx::Array PolicyBasedEnumValueMarshaler::emptyForm() const {
    return zx::Array(zxCreateEmptyObject(className().text()));
}

zx::Array PolicyBasedEnumValueMarshaler::wrap(std::vector<std::int32_t> const& numbers) const {
    if (numbers.empty()) return emptyForm();
    zx::Array row(zxCreateNumericMatrix(1, numbers.size(), zxInt32Class));
    std::copy(numbers.begin(), numbers.end(), zx::valuesForWriting<std::int32_t>(row.get()).begin());
    zx::Array objects(zxCreateObjectFromUnderlying(className().text(), row.get()));
    static_cast<void>(row.release());
    return objects;
}

Value PolicyBasedEnumValueMarshaler::valueOf(std::int32_t number) const {
    auto const* const serializer = meta::PropertySerializerRegistry::getInstance()->getPropertySerializer(getType());
    Value value = serializer->createDefaultValue(getType());
    putNumber(value, number);
    return value;
}

zx::Array PolicyBasedEnumValueMarshaler::fromCollection(AbstractPrimitiveCollection const& collection) const {
    return fromValueVector(collection.getAllValues());
}

zx::Array PolicyBasedEnumValueMarshaler::fromValueVector(std::vector<Value> const& values) const {
    std::vector<std::int32_t> numbers(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) numbers[i] = numberIn(values[i]);
    return wrap(numbers);
}

Value PolicyBasedEnumValueMarshaler::unmarshal(zxArray const* array) const {
    zx::Array converted;
    if (zxIsChar(array) || zxIsClass(array, "string") || zxIsCell(array)) {
        auto* const conversion =
            ordo::OrdoTypeRepository::getConversion(ordo::internName("any"), ordo::internName(getTypeName()));
        if (conversion != nullptr) {
            converted = conversion->convert(array);
            array = converted.get();
        }
    }
    std::size_t const count = zxGetNumberOfElements(array);
    if (count > 1) refuse();
    if (count == 0) return {getType(), ValueFlags::One};
    std::int32_t number = 0;
    if (zxIsClass(array, className().text())) {
        if (zxArray const* const underlying = zxGetUnderlyingArray(array))
            number = zx::valueAt<std::int32_t>(underlying);
    }
    return valueOf(number);
}

std::vector<Value> PolicyBasedEnumValueMarshaler::toValueVector(zxArray_tag* array) const {
    if (!isCorrectType(array)) refuse();
    std::vector<Value> values;
    zxArray const* const underlying = zxGetUnderlyingArray(array);
    if (underlying != nullptr && zxGetClassCode(underlying) == zxInt32Class) {
        for (std::int32_t const number : zx::values<std::int32_t>(underlying)) values.push_back(valueOf(number));
    } else if (!zxIsEmpty(array)) {
        values.assign(zxGetNumberOfElements(array), valueOf(0));
    }
    return values;
}

bool PolicyBasedEnumValueMarshaler::isCorrectType(zxArray_tag const* array) const {
    return zxIsClass(array, className().text()) || zxIsChar(array) || zxIsClass(array, "string") || zxIsCell(array);
}

OrdoValue PolicyBasedEnumValueMarshaler::toScript(Value const& value) const {
    if (!value.hasPayload()) return OrdoValue::fromArray(emptyForm());
    return OrdoValue::enumeration(scriptClass(), numberIn(value));
}

Value PolicyBasedEnumValueMarshaler::fromScript(OrdoValue const& value) const {
    return valueOf(ordo::factory::enumerationNumber(scriptClass(), value));
}

}  // namespace quay::zero::mi
