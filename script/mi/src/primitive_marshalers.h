// The marshalers of the runtime's own types.
#pragma once

#include <quay/zero/mi/value_marshaler.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace quay::zero::mi {

/// Calls f(tag) with a std::type_identity of the C++ type of a primitive type; false for any other type, and for
/// arrays.
template <class F>
bool visitPrimitive(meta::Type const& type, F&& f) {
    auto const tried = [&]<class T>(std::type_identity<T> tag) {
        if (type.ModelElement::impl() != meta::StandardTypes::of<T>().ModelElement::impl()) return false;
        f(tag);
        return true;
    };
    return tried(std::type_identity<bool>()) || tried(std::type_identity<int>()) ||
           tried(std::type_identity<unsigned int>()) || tried(std::type_identity<unsigned long>()) ||
           tried(std::type_identity<double>()) || tried(std::type_identity<std::u16string>()) ||
           tried(std::type_identity<std::string>());
}

inline bool isArrayType(meta::Type const& type) {
    return type.ModelElement::impl() == meta::StandardTypes::zxArrayMeta.ModelElement::impl();
}

/// A new marshaler for each primitive type and for arrays.
std::vector<std::unique_ptr<TypedValueMarshaler>> makePrimitiveMarshalers();

}  // namespace quay::zero::mi
