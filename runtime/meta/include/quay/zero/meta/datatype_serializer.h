// The fields of structured value types as properties.
#pragma once

#include <quay/zero/value.h>

#include <vector>

namespace quay::zero::meta {

/// Reaches the fields of a structured value type as properties.
class QUAY_ZERO_API DatatypeSerializer {
public:
    virtual ~DatatypeSerializer();

    virtual Value fromOptionalValue(Value const& value) const;
    virtual Value toOptionalValue(Value const& value) const;
    /// A field's value. NoSuchProperty for a property that is no field.
    virtual Value getPropertyValue(Value const& object, Property const& property) const = 0;
    /// A new value with that field changed; the argument stays as it is.
    virtual Value setPropertyValue(Value const& object, Property const& property, Value const& field) const = 0;
    virtual Value createEmptyOptionalValue() const = 0;
    virtual Value createDefaultValue() const = 0;
    virtual Value combineAsUnmanagedSequenceValue(Type const& type, std::vector<Value> const& values) const = 0;
    virtual Value combineAsUnmanagedSetValue(Type const& type, std::vector<Value> const& values) const = 0;
};

}  // namespace quay::zero::meta
