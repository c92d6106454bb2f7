// Conversions of a value in transit to numbers and texts. No number is wrapped, cut or rounded, except when it is
// converted to double.
#include <ordo/error.h>
#include <ordo/factory/encoding.h>
#include <ordo/value.h>

#include <zx/objects.h>
#include <zx/text.h>
#include <zx/values.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <utility>
#include <variant>

namespace ordo {
namespace {

using Number = std::variant<std::int64_t, std::uint64_t, double>;

[[noreturn]] void refuse(OrdoValue const& value, char const* wanted) {
    if (value.isEmpty() && !value.isText()) {
        raiseWith(failures::NoValue, {wanted});
    }
    raiseWith(failures::WrongType, {value.describe(), wanted});
}

Number elementOf(zxArray const* array) {
    void const* const data = zxGetData(array);
    switch (zxGetClassCode(array)) {
        case zxLogicalClass:
            return std::int64_t{*static_cast<bool const*>(data) ? 1 : 0};
        case zxDoubleClass:
            return *static_cast<double const*>(data);
        case zxSingleClass:
            return double{*static_cast<float const*>(data)};
        case zxInt8Class:
            return std::int64_t{*static_cast<std::int8_t const*>(data)};
        case zxUint8Class:
            return std::uint64_t{*static_cast<std::uint8_t const*>(data)};
        case zxInt16Class:
            return std::int64_t{*static_cast<std::int16_t const*>(data)};
        case zxUint16Class:
            return std::uint64_t{*static_cast<std::uint16_t const*>(data)};
        case zxInt32Class:
            return std::int64_t{*static_cast<std::int32_t const*>(data)};
        case zxUint32Class:
            return std::uint64_t{*static_cast<std::uint32_t const*>(data)};
        case zxInt64Class:
            return *static_cast<std::int64_t const*>(data);
        default:
            return *static_cast<std::uint64_t const*>(data);
    }
}

Number numberOf(OrdoValue const& value, char const* wanted) {
    switch (value.kind()) {
        case OrdoValue::Kind::Logical:
        case OrdoValue::Kind::Int32:
        case OrdoValue::Kind::UInt32:
        case OrdoValue::Kind::Int64:
            return value.integerContent();
        case OrdoValue::Kind::UInt64:
            return value.unsignedContent();
        case OrdoValue::Kind::Double:
            return value.realContent();
        case OrdoValue::Kind::Enumeration:
            return std::int64_t{value.enumerationNumber()};
        case OrdoValue::Kind::Array:
            break;
        default:
            refuse(value, wanted);
    }
    zxArray const* array = value.arrayContent();
    if (zxIsObject(array) && zxGetUnderlyingArray(array) != nullptr) {
        array = zxGetUnderlyingArray(array);
    }
    if (zxGetNumberOfElements(array) != 1 || zxIsComplex(array) || !(zxIsNumeric(array) || zxIsLogical(array))) {
        refuse(value, wanted);
    }
    return elementOf(array);
}

std::string spell(Number const& number) {
    return std::visit(
        [](auto value) {
            char buffer[32];
            return std::string(buffer, std::to_chars(std::begin(buffer), std::end(buffer), value).ptr);
        },
        number);
}

template <class T>
bool fits(double value) {
    // Both limits are powers of two or zero, so they are exact as doubles; NaN fails both comparisons.
    double const past = std::ldexp(1.0, std::numeric_limits<T>::digits);
    return value >= static_cast<double>(std::numeric_limits<T>::min()) && value < past;
}

template <class T>
T integerOf(OrdoValue const& value, char const* wanted) {
    Number const number = numberOf(value, wanted);
    if (double const* const real = std::get_if<double>(&number)) {
        if (std::isfinite(*real) && std::trunc(*real) != *real) {
            raiseWith(failures::NotInteger, {spell(number), wanted});
        }
        if (fits<T>(*real)) {
            return static_cast<T>(*real);
        }
    } else if (std::int64_t const* const whole = std::get_if<std::int64_t>(&number)) {
        if (std::in_range<T>(*whole)) {
            return static_cast<T>(*whole);
        }
    } else if (std::in_range<T>(std::get<std::uint64_t>(number))) {
        return static_cast<T>(std::get<std::uint64_t>(number));
    }
    raiseWith(failures::OutOfRange, {spell(number), wanted});
}

}  // namespace

bool OrdoValue::toLogical() const {
    if (kind_ == Kind::Logical) {
        return logicalContent();
    }
    return std::visit([](auto value) { return value != 0; }, numberOf(*this, "a logical or a number"));
}

std::int32_t OrdoValue::toInt32() const {
    return kind_ == Kind::Int32 ? static_cast<std::int32_t>(word_.int64) : integerOf<std::int32_t>(*this, "an int32");
}

std::uint32_t OrdoValue::toUInt32() const {
    return kind_ == Kind::UInt32 ? static_cast<std::uint32_t>(word_.int64)
                                 : integerOf<std::uint32_t>(*this, "a uint32");
}

std::int64_t OrdoValue::toInt64() const { return integerOf<std::int64_t>(*this, "an int64"); }
std::uint64_t OrdoValue::toUInt64() const { return integerOf<std::uint64_t>(*this, "a uint64"); }

double OrdoValue::toDouble() const {
    if (kind_ == Kind::Double) {
        return word_.real;
    }
    return std::visit([](auto value) { return static_cast<double>(value); }, numberOf(*this, "a number"));
}

std::size_t OrdoValue::toSize() const { return integerOf<std::size_t>(*this, "a position or count"); }

std::u16string OrdoValue::toText() const {
    if (kind_ == Kind::Text) {
        return std::u16string(textContent());
    }
    if (kind_ == Kind::Bytes) {
        return factory::unitsOf(bytesContent());
    }
    if (!isText()) {
        refuse(*this, "a text");
    }
    return std::u16string(zx::textOf(word_.array));
}

std::string OrdoValue::toBytes() const {
    if (kind_ == Kind::Bytes) {
        return std::string(bytesContent());
    }
    if (kind_ == Kind::Text) {
        return factory::bytesOf(textContent());
    }
    if (!isText()) {
        refuse(*this, "a text");
    }
    return factory::bytesOf(zx::textOf(word_.array));
}

}  // namespace ordo
