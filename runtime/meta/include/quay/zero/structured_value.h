// Structured value types: order, equality, hash and reflection over their fields.
//
// A type T lists its fields once: `static constexpr auto fields()` returns a tuple of member pointers, in the order in
// which the data type declares its properties.
#pragma once

#include <quay/zero/meta/datatype_serializer.h>
#include <quay/zero/meta/property.h>
#include <quay/zero/value.h>

#include <cstddef>
#include <functional>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

namespace quay::zero {

/// -1, 0 or 1: the first field that differs decides. Numbers compare by < and > alone, so a NaN counts as equal to
/// anything and the next field decides; texts compare by code unit.
template <class T>
int compareFields(T const& a, T const& b) {
    int result = 0;
    auto const step = [&](auto const& x, auto const& y) { return (result = x < y ? -1 : y < x ? 1 : 0) == 0; };
    std::apply([&](auto... field) { static_cast<void>((step(a.*field, b.*field) && ...)); }, T::fields());
    return result;
}

/// Every field ==, so a NaN makes two values differ.
template <class T>
bool equalFields(T const& a, T const& b) {
    return std::apply([&](auto... field) { return ((a.*field == b.*field) && ...); }, T::fields());
}

/// The hash of all fields. Equal values have equal hashes.
template <class T>
std::size_t hashFields(T const& value) {
    std::size_t seed = 0;
    auto const fold = [&](auto const& x) { seed = combineHashes(seed, std::hash<std::decay_t<decltype(x)>>()(x)); };
    std::apply([&](auto... field) { (fold(value.*field), ...); }, T::fields());
    return seed;
}

/// The place of a field among the properties that a data type declares. NoSuchProperty for any other property.
QUAY_ZERO_API std::size_t fieldPosition(meta::Type const& type, meta::Property const& property);

/// Reflection over the fields of T, and the making of values of it. Has no state.
template <class T>
class FieldwiseSerializer : public meta::DatatypeSerializer {
public:
    Value doGetPropertyValue(T const& object, meta::Property const& property) const {
        Value result;
        visit(property, [&](auto field) { result = Value(property->getType(), object.*field, ValueFlags::One); });
        return result;
    }
    /// A value without a payload sets the field to its type's zero, not to the field's default.
    void doSetPropertyValue(T& object, meta::Property const& property, Value const& value) const {
        visit(property, [&](auto field) {
            using Field = std::decay_t<decltype(object.*field)>;
            object.*field = value.getValue<Field>();
        });
    }

    Value getPropertyValue(Value const& object, meta::Property const& property) const override {
        return doGetPropertyValue(object.getValue<T>(), property);
    }
    Value setPropertyValue(Value const& object, meta::Property const& property, Value const& field) const override {
        T copy = object.getValue<T>();
        doSetPropertyValue(copy, property, field);
        return {TypeOf<T>::type(), copy, ValueFlags::One};
    }
    Value createEmptyOptionalValue() const override { return {TypeOf<T>::type(), ValueFlags::Optional}; }
    Value createDefaultValue() const override { return {TypeOf<T>::type(), T(), ValueFlags::One}; }
    Value combineAsUnmanagedSequenceValue(meta::Type const& type, std::vector<Value> const& values) const override {
        std::vector<T> all;
        all.reserve(values.size());
        for (Value const& v : values) all.push_back(v.getValue<T>());
        return unmanaged({type, all, ValueFlags::Sequence});
    }
    Value combineAsUnmanagedSetValue(meta::Type const& type, std::vector<Value> const& values) const override {
        std::set<T> all;
        for (Value const& v : values) all.insert(v.getValue<T>());
        return unmanaged({type, all, ValueFlags::Set});
    }

private:
    static Value unmanaged(Value value) {
        value.setUnmanaged();
        return value;
    }

    /// Calls f with the member pointer of the field that the property names.
    template <class F>
    static void visit(meta::Property const& property, F&& f) {
        std::size_t const wanted = fieldPosition(TypeOf<T>::type(), property);
        std::size_t position = 0;
        std::apply([&](auto... field) { ((position++ == wanted ? f(field) : void()), ...); }, T::fields());
    }
};

}  // namespace quay::zero
