// Reads property values from JSON and stores them in elements.
#include <quay/zero/text.h>
#include <zx/array.h>

#include <algorithm>
#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <cmath>

#include "failures.h"
#include "scalars.h"
#include "values.h"

namespace quay::zero::io {

namespace {

[[noreturn]] void refuse(char const* wanted, Node const& node) {
    std::string found = describe(node);
    if (node.is(Node::Kind::Number)) found = "the number " + node.text;
    throw Refused(std::string("expected ") + wanted + ", found " + found);
}

template <class N>
Value integer(ValueForm const& form, Node const& node, char const* wanted) {
    N value{};
    if (!parseInteger(node, value)) refuse(wanted, node);
    return {form.type, value, ValueFlags::One};
}

Value real(ValueForm const& form, Node const& node) {
    double value = 0;
    if (!parseReal(node, value)) refuse("a number", node);
    return {form.type, value, ValueFlags::One};
}

Value text(ValueForm const& form, Node const& node) {
    std::u16string value;
    if (!parseText(node, value)) {
        if (Node const* const escaped = node.escape(kUtf16Key)) refuse("units of a text", *escaped);
        refuse("a text", node);
    }
    return {form.type, value, ValueFlags::One};
}

Value bytes(ValueForm const& form, Node const& node) {
    std::string value;
    if (!parseBytes(node, value)) refuse("a text", node);
    return {form.type, value, ValueFlags::One};
}

Value enumeration(ValueForm const& form, Node const& node) {
    try {
        if (node.is(Node::Kind::Text)) return form.serializer->parseValue(toUtf16(node.text), form.type);
        if (node.is(Node::Kind::Number)) return form.byNumber->parseValue(toUtf16(node.text), form.type);
    } catch (boost::bad_lexical_cast const&) {
        throw Refused(inQuotes(node.text) + " is no literal of " + quotedName(form.type));
    }
    refuse("the name of a literal", node);
}

Value parseOne(ValueForm const& form, Node const& node);

Value structure(ValueForm const& form, Node const& node) {
    if (!node.is(Node::Kind::Object)) refuse("an object of fields", node);
    Value value = form.structure->createDefaultValue();
    std::size_t known = 0;
    for (FieldForm const& field : form.fields) {
        Node const* const given = node.find(field.name);
        if (given == nullptr) continue;
        ++known;
        try {
            value = form.structure->setPropertyValue(value, field.property, parseOne(field.value, *given));
        } catch (Refused const& refused) {
            throw Refused("field " + inQuotes(field.name) + ": " + refused.what());
        }
    }
    if (known == node.keys.size()) return value;
    for (std::string const& key : node.keys) {
        bool found = false;
        for (FieldForm const& field : form.fields) found = found || field.name == key;
        if (!found) {
            throw Refused(quotedName(form.type) + " has no field " + inQuotes(key));
        }
    }
    return value;
}

Value parseOne(ValueForm const& form, Node const& node) {
    using Kind = ValueForm::Kind;
    switch (form.kind) {
        case Kind::Boolean:
            if (!node.is(Node::Kind::Boolean)) refuse("true or false", node);
            return {form.type, node.truth, ValueFlags::One};
        case Kind::Integer:
            return integer<int>(form, node, "a whole number of 32 bits");
        case Kind::UnlimitedNatural:
            return integer<unsigned>(form, node, "a whole number of 32 bits without a sign");
        case Kind::UInteger64:
            return integer<unsigned long>(form, node, "a whole number of 64 bits without a sign");
        case Kind::Real:
            return real(form, node);
        case Kind::String:
            return text(form, node);
        case Kind::StdString:
            return bytes(form, node);
        case Kind::Enumeration:
            return enumeration(form, node);
        case Kind::Structure:
            return structure(form, node);
        default:
            refuseType(form);
    }
}

Value parseSeveral(FieldForm const& form, Node const& node) {
    if (!node.is(Node::Kind::List)) refuse("a list", node);
    std::vector<Value> values;
    values.reserve(node.items.size());
    for (std::size_t i = 0; i < node.items.size(); ++i) {
        try {
            values.push_back(parseOne(form.value, node.items[i]));
        } catch (Refused const& refused) {
            throw Refused("value " + std::to_string(i) + ": " + refused.what());
        }
    }
    ValueForm const& one = form.value;
    auto const combine = [&](auto const& serializer) {
        return form.isSet ? serializer.combineAsUnmanagedSetValue(one.type, values)
                          : serializer.combineAsUnmanagedSequenceValue(one.type, values);
    };
    if (one.structure != nullptr) return combine(*one.structure);
    if (one.serializer == nullptr) throw Refused("several values of that type have no text");
    return combine(*one.serializer);
}

void storeArray(ModelElement::Impl& element, FieldForm const& form, Node const& node) {
    zx::Array array;
    if (!node.is(Node::Kind::Null)) {
        Node const* const escaped = node.escape(kArrayKey);
        if (escaped == nullptr) refuse("an array's object", node);
        array.reset(parseArray(*escaped));
    }
    // The element takes a copy.
    element.setPropertyValue(form.property, {form.value.type, array.get(), ValueFlags::One},
                             ReflectionPrivateTag::NO_PROXY_RESOLVE);
}

/// Whether the value is a negative zero, or a structure that has one in a field. It compares equal to a positive zero.
bool hasNegativeZero(ValueForm const& form, Value const& value) {
    if (form.kind == ValueForm::Kind::Real) {
        auto const number = value.getValue<double>();
        return number == 0 && std::signbit(number);
    }
    return std::any_of(form.fields.begin(), form.fields.end(), [&](FieldForm const& field) {
        return hasNegativeZero(field.value, form.structure->getPropertyValue(value, field.property));
    });
}

/// A value that doesn't compare equal to any value of the type: a NaN, or a structure with a NaN in a field.
Value unequalToAny(ValueForm const& form) {
    if (form.kind == ValueForm::Kind::Real) return {form.type, std::nan(""), ValueFlags::One};
    Value value = form.structure->createDefaultValue();
    for (FieldForm const& field : form.fields) {
        bool const mayHold =
            field.value.kind == ValueForm::Kind::Real || field.value.kind == ValueForm::Kind::Structure;
        if (mayHold) value = form.structure->setPropertyValue(value, field.property, unequalToAny(field.value));
    }
    return value;
}

}  // namespace

void storeProperty(ModelElement::Impl& element, FieldForm const& form, Node const& node) {
    if (form.value.kind == ValueForm::Kind::Array && !form.isSeveral) {
        storeArray(element, form, node);
        return;
    }
    bool const isUnset = node.is(Node::Kind::Null) && form.property->getFlags() == ValueFlags::Optional;
    Value const value = isUnset          ? Value(form.value.type, ValueFlags::Optional)
                        : form.isSeveral ? parseSeveral(form, node)
                                         : parseOne(form.value, node);
    auto const& tag = ReflectionPrivateTag::NO_PROXY_RESOLVE;
    // Setting a property to a value that compares equal to the present one doesn't change it. A negative zero would
    // leave a positive one as it is, so that another value is set in between.
    bool const mayCompareEqual =
        form.value.kind == ValueForm::Kind::Real || form.value.kind == ValueForm::Kind::Structure;
    if (mayCompareEqual && !form.isSeveral && !isUnset && hasNegativeZero(form.value, value)) {
        element.setPropertyValue(form.property, unequalToAny(form.value), tag);
    }
    element.setPropertyValue(form.property, value, tag);
}

}  // namespace quay::zero::io
