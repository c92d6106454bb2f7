// The runtime's own primitive types.
#pragma once

#include <quay/zero/meta/handles.h>

#include <string>

struct zxArray_tag;

namespace quay::zero::meta {

namespace internal {
/// The primitive type of that name, or an empty handle.
QUAY_ZERO_API PrimitiveType getPrimitiveTypeFromMetaRegistry(char16_t const* name);
/// Whether a type is an enumeration.
QUAY_ZERO_API bool isEnumType(Type const& type);
}  // namespace internal

/// The standard types. The first use of the registry sets them, and they never change.
class QUAY_ZERO_API StandardTypes {
public:
    static PrimitiveType booleanMeta;
    static PrimitiveType integerMeta;
    static PrimitiveType unlimitedNaturalMeta;
    static PrimitiveType uinteger64Meta;
    static PrimitiveType realMeta;
    static PrimitiveType stringMeta;
    static PrimitiveType stdstringMeta;
    static PrimitiveType zxArrayMeta;

    /// The standard type of a C++ type.
    template <class T>
    static PrimitiveType const& of() = delete;
};

template <>
inline PrimitiveType const& StandardTypes::of<bool>() {
    return booleanMeta;
}
template <>
inline PrimitiveType const& StandardTypes::of<int>() {
    return integerMeta;
}
template <>
inline PrimitiveType const& StandardTypes::of<unsigned int>() {
    return unlimitedNaturalMeta;
}
template <>
inline PrimitiveType const& StandardTypes::of<unsigned long>() {
    return uinteger64Meta;
}
template <>
inline PrimitiveType const& StandardTypes::of<double>() {
    return realMeta;
}
template <>
inline PrimitiveType const& StandardTypes::of<std::u16string>() {
    return stringMeta;
}
template <>
inline PrimitiveType const& StandardTypes::of<std::string>() {
    return stdstringMeta;
}
template <>
inline PrimitiveType const& StandardTypes::of<zxArray_tag*>() {
    return zxArrayMeta;
}

}  // namespace quay::zero::meta
