// How values of one type cross to scripts and back where no typed accessor is at hand: in collections, in structs that
// fill builders, in arrays.
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

/// Base of all marshalers. A value of another type, and an array that doesn't fit, is CannotCastIncompatibleTypes or a
/// message of ordo; nothing was changed then. Marshalers live in libordo, so that none of their code goes with the
/// library that registered them.
class ORDO_API ValueMarshaler {
public:
    ValueMarshaler(ValueMarshaler const&) = delete;
    ValueMarshaler& operator=(ValueMarshaler const&) = delete;
    virtual ~ValueMarshaler();

    /// Called when a class that uses the marshaler is being defined.
    virtual void initializeDependencies() {}

    /// A collection's values as one array: by default what fromValueVector makes of them.
    virtual zx::Array fromCollection(AbstractPrimitiveCollection const& collection) const;
    /// Values as one array: by default a row of cells with an array in each.
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
    /// One unmanaged value that holds all of an array's elements: as a vector, and as a set.
    virtual Value toUnmanagedSequenceValue(zxArray_tag* array) const = 0;
    virtual Value toUnmanagedSetValue(zxArray_tag* array) const = 0;

    virtual std::string getTypeName() const = 0;
    /// Whether the array may hold values of the type. False for null.
    virtual bool isCorrectType(zxArray_tag const* array) const;
    virtual meta::Type getType() const = 0;

    // Values in transit, which is how most of them cross.

    /// Texts in the answer may be borrowed from `value`.
    virtual ordo::OrdoValue toScript(Value const& value) const = 0;
    virtual Value fromScript(ordo::OrdoValue const& value) const = 0;

    /// Raises NoValue for a value without content: an empty array gives one, and few places have a use for it.
    void requireContent(Value const& value) const;

protected:
    ValueMarshaler() = default;

    /// Raises CannotCastIncompatibleTypes with the marshaler's type name.
    [[noreturn]] void refuse() const;
};

/// What all marshalers of a named type share: the type, its name and the unmanaged forms.
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
