#include "primitive_marshalers.h"

#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/value_type.h>

#include <zx/containers.h>
#include <zx/text.h>
#include <zx/values.h>

namespace quay::zero::mi {

namespace {

using ordo::OrdoValue;
using ordo::factory::ValueType;

/// The marshaler of numbers, truth values and texts. Several numbers become a 1 by n array of their class, several
/// texts a 1 by n cell array.
template <class T>
class PrimitiveMarshaler final : public TypedValueMarshaler {
    static constexpr bool kIsNumber = std::is_arithmetic_v<T>;

public:
    PrimitiveMarshaler() : TypedValueMarshaler(meta::StandardTypes::of<T>(), ValueType<T>::typeWord()) {}

    OrdoValue toScript(Value const& value) const override {
        value.checkCompatible<boost::optional<T>>();
        if (value.hasPayload()) return ValueType<T>::toScript(*static_cast<T const*>(value.data()));
        if constexpr (kIsNumber) {
            return OrdoValue(ValueType<T>::emptyClass());
        } else {
            return OrdoValue(zxCharClass);
        }
    }
    Value fromScript(OrdoValue const& value) const override {
        return {getType(), ValueType<T>::fromScript(value), ValueFlags::One};
    }
    zx::Array fromValueVector(std::vector<Value> const& values) const override {
        if constexpr (kIsNumber) {
            zx::Array row(zxCreateNumericMatrix(values.empty() ? 0 : 1, values.size(), zx::classCodeOf<T>()));
            auto const places = zx::valuesForWriting<T>(row.get());
            for (std::size_t i = 0; i < values.size(); ++i) places[i] = values[i].getValue<T>();
            return row;
        } else {
            return ValueMarshaler::fromValueVector(values);
        }
    }
    bool isCorrectType(zxArray_tag const* array) const override {
        if (zxIsCell(array)) return true;
        if constexpr (kIsNumber) {
            return zxIsNumeric(array) || zxIsLogical(array);
        } else {
            return zxIsChar(array) || zxIsClass(array, "string") || (array != nullptr && zxIsEmpty(array));
        }
    }
};

/// Throws if the array holds, at any depth, an object with identity. An element whose value held another element, its
/// model or a transaction would keep itself alive, and changing it could end a transaction.
void requirePlain(zxArray const* whole) {
    std::vector<zxArray const*> pending{whole};
    while (!pending.empty()) {
        zxArray const* const array = pending.back();
        pending.pop_back();
        std::size_t const count = zxGetNumberOfElements(array);
        if (zxIsCell(array)) {
            for (std::size_t i = 0; i < count; ++i) pending.push_back(zxGetCell(array, i));
        } else if (zxIsStruct(array)) {
            for (std::size_t field = 0; field < zxGetNumberOfFields(array); ++field) {
                for (std::size_t i = 0; i < count; ++i) pending.push_back(zxGetFieldByNumber(array, i, field));
            }
        } else if (zxIsNativeObject(array)) {
            for (std::size_t i = 0; i < count; ++i) {
                ordo::OrdoInterface* const object = ordo::objectAt(array, i);
                if (object == nullptr || object->copier() != nullptr) continue;
                OrdoValue const refused = OrdoValue::fromObject(ordo::OrdoObject(object));
                ordo::raiseWith(ordo::failures::WrongType, {refused.describe(), "a plain value"});
            }
        }
    }
}

/// The marshaler of arrays, which pass unchanged unless they hold objects with identity. The value that `unmarshal`
/// gives points to a copy, which the caller destroys after storing the value: an element keeps a copy of its own.
class ArrayMarshaler final : public TypedValueMarshaler {
public:
    ArrayMarshaler() : TypedValueMarshaler(meta::StandardTypes::zxArrayMeta, "any") {}

    OrdoValue toScript(Value const& value) const override {
        return OrdoValue::borrowedArray(value.getValue<zxArray_tag*>());
    }
    /// An empty array without content becomes null.
    Value fromScript(OrdoValue const& value) const override {
        zx::Array array = value.isNothing() ? zx::Array() : value.toArray();
        requirePlain(array.get());
        if (array != nullptr && zxGetClassCode(array.get()) == zxDoubleClass && zxIsEmpty(array.get())) array.reset();
        Value result(getType(), array.get(), ValueFlags::One);
        static_cast<void>(array.release());
        return result;
    }
};

}  // namespace

std::vector<std::unique_ptr<TypedValueMarshaler>> makePrimitiveMarshalers() {
    std::vector<std::unique_ptr<TypedValueMarshaler>> made;
    auto const add = [&]<class... T>(std::type_identity<T>...) {
        (made.push_back(std::make_unique<PrimitiveMarshaler<T>>()), ...);
    };
    add(std::type_identity<bool>(), std::type_identity<int>(), std::type_identity<unsigned int>(),
        std::type_identity<unsigned long>(), std::type_identity<double>(), std::type_identity<std::u16string>(),
        std::type_identity<std::string>());
    made.push_back(std::make_unique<ArrayMarshaler>());
    return made;
}

}  // namespace quay::zero::mi
