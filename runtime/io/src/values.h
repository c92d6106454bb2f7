// Writes and reads property values as JSON, by the form of their type.
#pragma once

#include <quay/zero/value.h>

#include <string>

#include "forms.h"
#include "node.h"

struct zxArray_tag;

namespace quay::zero::io {

/// Appends one value; `null` if it has no payload. Refused for a value that has no text.
void appendValue(std::string& out, ValueForm const& form, Value const& value);

/// Appends the value of a property that owns no elements: one, or a list of several.
void appendProperty(std::string& out, FieldForm const& form, Value const& value);

/// Sets a property that owns no elements to the value of a node. Refused if the node isn't a value of the type.
void storeProperty(ModelElement::Impl& element, FieldForm const& form, Node const& node);

/// Appends an array, without the object {"$array": ...} around it. Refused for an array that has no text.
void appendArray(std::string& out, zxArray_tag const* array);
/// Makes an array, which the caller owns, from a node. Refused if the node isn't an array.
zxArray_tag* parseArray(Node const& node);

}  // namespace quay::zero::io
