// Conversion of values of one type to scripts and back, for callers that have no typed accessor: collections, structs
// that fill builders, arrays.
#pragma once

#include <ordo/export.h>
#include <ordo/value.h>

#include <quay/zero/meta/types.h>
#include <quay/zero/primitive_collection.h>
#include <quay/zero/value.h>

#include <zx/array.h>

#include <string>
#include <utility>
#include <vector>

namespace quay::zero::mi {

/// Base of all marshalers. A value of another type, and an array that doesn't fit, throws CannotCastIncompatibleTypes
/// or a message of ordo, before anything is changed. Marshaler classes are part of libordo, so that their code stays
/// loaded when the library that registered them is unloaded.
class ORDO_API ValueMarshaler {
public:
    ValueMarshaler(ValueMarshaler const&) = delete;
    ValueMarshaler& operator=(ValueMarshaler const&) = delete;
    virtual ~ValueMarshaler();

    /// Called when a class that uses the marshaler is being defined.
    virtual void initializeDependencies() {}

    /// A collection's values as one array: by default, what fromValueVector makes of them.
    virtual zx::Array fromCollection(AbstractPrimitiveCollection const& collection) const;
    /// Values as one array: by default a 1 by n cell array that holds one array per value.
    virtual zx::Array fromValueVector(std::vector<Value> const& values) const;

    /// One value as an array that the caller releases by `release`. A value without content gives an empty array.
    virtual zxArray* marshal(Value const& value) const = 0;
    /// One value as an array that the result owns.
    virtual zx::Array toZxArray(Value const& value) const { return zx::Array(marshal(value)); }
    virtual void release(zxArray* array) const noexcept = 0;

    /// One value from an array.
    virtual Value unmarshal(zxArray const* array) const = 0;
    virtual Value fromZxArray(zxArray_tag* array) const { return unmarshal(array); }
    /// A value for each element of the array, or for each cell.
    virtual std::vector<Value> toValueVector(zxArray_tag* array) const;
    /// One unmanaged value that holds all elements of an array, as a vector or as a set.
    virtual Value toUnmanagedSequenceValue(zxArray_tag* array) const = 0;
    virtual Value toUnmanagedSetValue(zxArray_tag* array) const = 0;

    virtual std::string getTypeName() const = 0;
    /// Whether the array may hold values of the type. False for null.
    virtual bool isCorrectType(zxArray_tag const* array) const;
    virtual meta::Type getType() const = 0;

    // Conversions to and from values in transit, which most values pass through.

    /// Texts in the answer may be borrowed from `value`.
    virtual ordo::OrdoValue toScript(Value const& value) const = 0;
    virtual Value fromScript(ordo::OrdoValue const& value) const = 0;

    /// Throws NoValue for a value without content, which an empty array gives and most callers can't use.
    void requireContent(Value const& value) const;

protected:
    ValueMarshaler() = default;

    /// Throws CannotCastIncompatibleTypes with the marshaler's type name.
    [[noreturn]] void refuse() const;
};

/// Base of the marshalers of named types: the type, its name and the unmanaged forms.
class ORDO_API TypedValueMarshaler : public ValueMarshaler {
public:
    /// An empty name stands for the one that the class gives.
    explicit TypedValueMarshaler(meta::Type type, std::string typeName = {})
        : type_(std::move(type)), typeName_(std::move(typeName)) {}

    zxArray* marshal(Value const& value) const override { return toScript(value).toArray().release(); }
    void release(zxArray* array) const noexcept override { zxDestroyArray(array); }
    Value unmarshal(zxArray const* array) const override { return fromScript(ordo::OrdoValue::borrowedArray(array)); }
    Value toUnmanagedSequenceValue(zxArray_tag* array) const override;
    Value toUnmanagedSetValue(zxArray_tag* array) const override;
    std::string getTypeName() const override { return typeName_; }
    meta::Type getType() const override { return type_; }

private:
    meta::Type type_;
    std::string typeName_;
};

}  // namespace quay::zero::mi
