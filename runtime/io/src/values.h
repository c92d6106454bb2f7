// Property values as JSON: writing and reading, by the form of their type.
#pragma once

#include <quay/zero/value.h>

#include <string>

#include "forms.h"
#include "node.h"

struct zxArray_tag;

namespace quay::zero::io {

/// Appends one value, `null` if it has no payload. Refused for what has no text.
void appendValue(std::string& out, ValueForm const& form, Value const& value);

/// Appends the value of a property that owns no elements: one, or a list of several.
void appendProperty(std::string& out, FieldForm const& form, Value const& value);

/// Writes into a property that owns no elements what a piece of JSON tells. Refused if that is no value of the type.
void storeProperty(ModelElement::Impl& element, FieldForm const& form, Node const& node);

/// The same for arrays, inside their escape object. The caller owns the array.
void appendArray(std::string& out, zxArray_tag const* array);
zxArray_tag* parseArray(Node const& node);

/// What a piece of JSON is, for messages: "a number".
char const* describe(Node const& node) noexcept;

}  // namespace quay::zero::io
