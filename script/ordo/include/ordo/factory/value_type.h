// Conversion of the C++ types of properties and arguments to script values and back.
#pragma once

#include <ordo/export.h>
#include <ordo/value.h>

#include <boost/optional.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace ordo::factory {

/// The conversions of a C++ type `V` that adapters use. Other modules specialise it for their types, with three
/// functions:
///
///     static std::string typeWord();
///     static OrdoValue toScript(V const& value);       // may borrow a text from `value`
///     static V fromScript(OrdoValue const& value);     // throws if the value doesn't fit
///
/// A type without fromScript is read-only.
template <class V>
struct ValueType;

/// A type word without its ending " scalar", which only "OrdoFactoryString scalar" keeps.
ORDO_API std::string withoutScalar(std::string_view typeWord);

template <>
struct ValueType<bool> {
    static std::string typeWord() { return "logical scalar"; }
    static zxClassCode emptyClass() { return zxLogicalClass; }
    static OrdoValue toScript(bool value) { return OrdoValue::logical(value); }
    static bool fromScript(OrdoValue const& value) { return value.toLogical(); }
};

template <>
struct ValueType<std::int32_t> {
    static std::string typeWord() { return "int32 scalar"; }
    static zxClassCode emptyClass() { return zxInt32Class; }
    static OrdoValue toScript(std::int32_t value) { return OrdoValue::int32(value); }
    static std::int32_t fromScript(OrdoValue const& value) { return value.toInt32(); }
};

template <>
struct ValueType<std::uint32_t> {
    static std::string typeWord() { return "uint32 scalar"; }
    static zxClassCode emptyClass() { return zxUint32Class; }
    static OrdoValue toScript(std::uint32_t value) { return OrdoValue::uint32(value); }
    static std::uint32_t fromScript(OrdoValue const& value) { return value.toUInt32(); }
};

template <>
struct ValueType<std::uint64_t> {
    static std::string typeWord() { return "uint64 scalar"; }
    static zxClassCode emptyClass() { return zxUint64Class; }
    static OrdoValue toScript(std::uint64_t value) { return OrdoValue::uint64(value); }
    static std::uint64_t fromScript(OrdoValue const& value) { return value.toUInt64(); }
};

template <>
struct ValueType<double> {
    static std::string typeWord() { return "double scalar"; }
    static zxClassCode emptyClass() { return zxDoubleClass; }
    static OrdoValue toScript(double value) { return OrdoValue::real(value); }
    static double fromScript(OrdoValue const& value) { return value.toDouble(); }
};

template <>
struct ValueType<std::u16string> {
    static std::string typeWord() { return "OrdoFactoryString scalar"; }
    static OrdoValue toScript(std::u16string const& value) { return OrdoValue::borrowedText(value); }
    static std::u16string fromScript(OrdoValue const& value) { return value.toText(); }
};

template <>
struct ValueType<std::string> {
    static std::string typeWord() { return "char"; }
    static OrdoValue toScript(std::string const& value) { return OrdoValue::borrowedBytes(value); }
    static std::string fromScript(OrdoValue const& value) { return value.toBytes(); }
};

/// The first element if the value is an array of several, else the value itself. A text is one value.
ORDO_API OrdoValue firstOf(OrdoValue const& value);

/// An optional is an array in scripts: empty if it isn't set; of several elements the first counts. An empty text is a
/// text, and no number.
template <class T>
struct ValueType<boost::optional<T>> {
    static std::string typeWord() { return withoutScalar(ValueType<T>::typeWord()); }
    static OrdoValue toScript(boost::optional<T> const& value) {
        return value ? ValueType<T>::toScript(*value) : OrdoValue(ValueType<T>::emptyClass());
    }
    static boost::optional<T> fromScript(OrdoValue const& value) {
        bool const unset = value.isEmpty() && !value.isText();
        return unset ? boost::optional<T>() : boost::optional<T>(ValueType<T>::fromScript(firstOf(value)));
    }
};

/// The number for what a script may give as an enumeration: nothing (the literal 0), a value of the class, a number
/// that a literal has, or what the conversion from "any" to the class's property takes, such as a name. Throws for
/// anything else.
ORDO_API std::int32_t enumerationNumber(OrdoClass& enumeration, OrdoValue const& value);

}  // namespace ordo::factory
