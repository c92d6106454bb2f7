#include <quay/zero/mi/builder_from_struct.h>

#include <ordo/error.h>
#include <ordo/factory/value_type.h>

#include <quay/zero/mi/meta_marshaler_registry.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <zx/containers.h>
#include <zx/text.h>

#include <quay0/messages.h>

#include "primitive_marshalers.h"
#include "property_failures.h"

namespace quay::zero::mi::detail {

using ordo::OrdoValue;

namespace {

/// How deep structs may be nested: far deeper than any record is, and shallow enough for any stack.
constexpr int kDeepest = 200;

std::unique_ptr<ModelElement::Builder> build(zxArray const* array, std::size_t index, Model const& model,
                                             meta::Class const& metaClass, int depth);

/// Whether the array is what a script's "nothing" becomes: empty, and of a numeric class. An empty text or list isn't.
bool isNothing(zxArray const* array) { return zxIsEmpty(array) && (array == nullptr || zxIsNumeric(array)); }

void giveChildren(ModelElement::Builder& builder, meta::Property const& property, zxArray const* array, int depth) {
    bool const isSingle = property->descriptor()->kind() == PropertyKind::Child;
    std::size_t const count = zxGetNumberOfElements(array);
    auto const child = meta::Class::cast(property->getType());
    bool const isList = zxIsCell(array) && count == 0;
    if ((!isList && !zxIsStruct(array)) || (isSingle && count != 1) || child->isAbstract()) {
        reportException(
            quay0::messages::InvalidValue().about(builder.getMetaClass()->getName() + u"." + property->getName()));
    }
    for (std::size_t i = 0; i < count; ++i) {
        auto made = build(array, i, builder.getModel(), child, depth + 1);
        builder.setOrAdd(property, made);
    }
}

void giveValues(ModelElement::Builder& builder, meta::Property const& property, zxArray const* array) {
    ValueMarshaler const& marshaler = MetaMarshalerRegistry::getInstance().getPropertyMarshaler(property->getType());
    if (property->descriptor()->kind() == PropertyKind::PrimitiveCollection) {
        for (Value const& value : marshaler.toValueVector(const_cast<zxArray*>(array))) {
            marshaler.requireContent(value);
            builder.setOrAdd(property, value);
        }
        return;
    }
    OrdoValue const given = OrdoValue::borrowedArray(array);
    if (isArrayType(property->getType())) {
        Value const value = marshaler.fromScript(given);
        // The builder keeps a copy of its own.
        zx::Array const carried(value.getValue<zxArray_tag*>());
        builder.setOrAdd(property, value);
        return;
    }
    bool const isOptional = property->getFlags() == ValueFlags::Optional;
    if (isOptional && given.isEmpty() && !given.isText()) return;
    Value const value = marshaler.fromScript(isOptional ? ordo::factory::firstOf(given) : given);
    marshaler.requireContent(value);
    builder.setOrAdd(property, value);
}

void give(ModelElement::Builder& builder, meta::Property const& property, zxArray const* array, int depth) {
    if (isNothing(array)) return;
    if (property->descriptor()->ownsElements()) {
        giveChildren(builder, property, array, depth);
    } else {
        forProperty(property, [&] { giveValues(builder, property, array); });
    }
}

std::unique_ptr<ModelElement::Builder> build(zxArray const* array, std::size_t index, Model const& model,
                                             meta::Class const& metaClass, int depth) {
    if (depth > kDeepest) ordo::raise(ordo::failures::NestedTooDeep);
    auto builder = createEmptyBuilder(model, metaClass);
    for (std::size_t field = 0; field < zxGetNumberOfFields(array); ++field) {
        std::u16string const name = toUtf16(zxGetFieldName(array, field));
        meta::Property const property = metaClass->findProperty(name);
        if (!property || property->isDerived()) {
            reportException(quay0::messages::NoSuchProperty(name, metaClass->getQualifiedName()));
        }
        give(*builder, property, zxGetFieldByNumber(array, index, field), depth);
    }
    return builder;
}

}  // namespace

std::unique_ptr<ModelElement::Builder> createEmptyBuilder(Model const& model, meta::Class const& metaClass) {
    auto builder = metaClass->instantiateBuilder(model);
    if (builder == nullptr) reportException(quay0::messages::InvalidValue().about(metaClass->getName()));
    return builder;
}

std::unique_ptr<ModelElement::Builder> createBuilderFromStruct(zxArray const* array, std::size_t index,
                                                               Model const& model, meta::Class const& metaClass) {
    if (!zxIsStruct(array) || index >= zxGetNumberOfElements(array)) {
        reportException(quay0::messages::InvalidValue().about(metaClass->getName()));
    }
    return build(array, index, model, metaClass, 0);
}

std::unique_ptr<ModelElement::Builder> createBuilderFromStructFirst(zxArray const* array, Model const& model,
                                                                    meta::Class const& metaClass) {
    return createBuilderFromStruct(array, 0, model, metaClass);
}

std::optional<boost::uuids::uuid> extractUuid(zxArray const* array) {
    return zxIsText(array) ? idFrom(keel::toUtf8(zx::textOf(array))) : std::nullopt;
}

std::optional<boost::uuids::uuid> extractUuid(OrdoValue const& value) {
    return value.isText() ? idFrom(keel::toUtf8(value.toText())) : std::nullopt;
}

}  // namespace quay::zero::mi::detail
