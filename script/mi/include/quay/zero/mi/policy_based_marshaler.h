// The marshalers of data types and of enumerations, for any schema.
#pragma once

#include <quay/zero/mi/value_marshaler.h>

#include <ordo/class.h>

#include <cstdint>
#include <string>
#include <utility>

namespace quay::zero::mi {

/// The marshaler of a type that has a script class of its own. Data types use it unchanged: their script objects hold a
/// copy, a `Value` each.
class ORDO_API PolicyBasedValueMarshaler : public TypedValueMarshaler {
public:
    /// An empty name stands for the class's full script name.
    explicit PolicyBasedValueMarshaler(meta::Type const& type, std::string typeName = {});

    std::string getTypeName() const override;
    ordo::OrdoValue toScript(Value const& value) const override;
    Value fromScript(ordo::OrdoValue const& value) const override;

protected:
    ordo::InternedName className() const noexcept { return className_; }
    /// The type's script class. Throws NoSuchClass if it isn't registered.
    ordo::OrdoClass& scriptClass() const;

private:
    ordo::InternedName className_;
};

/// The marshaler of an enumeration, whose script class is based on int32. Vectors of enumeration values are converted
/// without making an object for each.
class ORDO_API PolicyBasedEnumValueMarshaler final : public PolicyBasedValueMarshaler {
public:
    using PolicyBasedValueMarshaler::PolicyBasedValueMarshaler;

    zx::Array fromCollection(AbstractPrimitiveCollection const& collection) const override;
    zx::Array fromValueVector(std::vector<Value> const& values) const override;
    /// An empty input gives a value without content. A text is converted first; an object of another class is read as
    /// the literal of value 0.
    Value unmarshal(zxArray const* array) const override;
    /// Unlike `unmarshal`, this doesn't convert texts.
    std::vector<Value> toValueVector(zxArray_tag* array) const override;
    /// Accepts char, `string` and cell inputs as well.
    bool isCorrectType(zxArray_tag const* array) const override;
    ordo::OrdoValue toScript(Value const& value) const override;
    Value fromScript(ordo::OrdoValue const& value) const override;

private:
    zx::Array emptyForm() const;
    zx::Array wrap(std::vector<std::int32_t> const& numbers) const;
    Value valueOf(std::int32_t number) const;
};

/// The number in an enumeration's value; 0 without content.
ORDO_API std::int32_t numberIn(Value const& value) noexcept;
/// Puts another number into an enumeration's value, which has content.
ORDO_API void putNumber(Value& value, std::int32_t number) noexcept;

}  // namespace quay::zero::mi
