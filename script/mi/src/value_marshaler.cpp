#include <quay/zero/mi/value_marshaler.h>

#include <ordo/error.h>

#include <quay/zero/meta/serializers.h>
#include <quay/zero/report.h>

#include <zx/containers.h>

#include <quay0/messages.h>

namespace quay::zero::mi {

ValueMarshaler::~ValueMarshaler() = default;

zx::Array ValueMarshaler::fromCollection(AbstractPrimitiveCollection const& collection) const {
    return fromValueVector(collection.getAllValues());
}

zx::Array ValueMarshaler::fromValueVector(std::vector<Value> const& values) const {
    zx::Array cells(zxCreateCellMatrix(values.empty() ? 0 : 1, values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) zxSetCell(cells.get(), i, toZxArray(values[i]).release());
    return cells;
}

std::vector<Value> ValueMarshaler::toValueVector(zxArray_tag* array) const {
    if (!isCorrectType(array)) refuse();
    std::vector<Value> values;
    std::size_t const count = zxIsChar(array) ? 1 : zxGetNumberOfElements(array);
    values.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (zxIsCell(array)) {
            values.push_back(unmarshal(zxGetCell(array, i)));
        } else if (zxIsChar(array)) {
            values.push_back(unmarshal(array));
        } else {
            values.push_back(unmarshal(zx::Array(zxDuplicateElement(array, i)).get()));
        }
    }
    return values;
}

bool ValueMarshaler::isCorrectType(zxArray_tag const* array) const { return array != nullptr; }

void ValueMarshaler::requireContent(Value const& value) const {
    if (!value.hasPayload()) ordo::raiseWith(ordo::failures::NoValue, {getTypeName()});
}

void ValueMarshaler::refuse() const {
    std::string const name = getTypeName();
    reportException(quay0::messages::CannotCastIncompatibleTypes(toUtf16(name)));
}

namespace {

/// Runs `combine(serializer, values)` with the type's serializer, whatever its kind.
template <class F>
Value combined(meta::Type const& type, F const& combine) {
    auto* const serializers = meta::PropertySerializerRegistry::getInstance();
    if (auto const* const one = serializers->getPropertySerializer(type)) return combine(*one);
    if (auto const dataType = meta::DataType::cast(type)) {
        if (auto const* const one = serializers->getDatatypeSerializer(dataType)) return combine(*one);
    }
    reportException(quay0::messages::NoSuchType(type->getQualifiedName()));
}

}  // namespace

Value TypedValueMarshaler::toUnmanagedSequenceValue(zxArray_tag* array) const {
    std::vector<Value> const values = toValueVector(array);
    return combined(type_, [&](auto& s) { return s.combineAsUnmanagedSequenceValue(type_, values); });
}

Value TypedValueMarshaler::toUnmanagedSetValue(zxArray_tag* array) const {
    std::vector<Value> const values = toValueVector(array);
    return combined(type_, [&](auto& s) { return s.combineAsUnmanagedSetValue(type_, values); });
}

}  // namespace quay::zero::mi
