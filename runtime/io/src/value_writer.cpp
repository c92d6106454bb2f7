// Writes property values as JSON.
#include <keel/text.h>
#include <quay/zero/primitive_collection.h>

#include "scalars.h"
#include "values.h"

namespace quay::zero::io {

namespace {

/// Appends the name of the literal, or the number of a value that has no literal.
void appendEnumeration(std::string& out, ValueForm const& form, Value const& value) {
    std::u16string const name = form.serializer->serializeValue(value);
    if (name.empty()) {
        out += keel::toUtf8(form.byNumber->serializeValue(value));
    } else {
        appendText(out, name);
    }
}

/// Appends the fields whose values differ from those of a new structure.
void appendStructure(std::string& out, ValueForm const& form, Value const& value) {
    Value const fresh = form.structure->createDefaultValue();
    out.push_back('{');
    bool first = true;
    for (FieldForm const& field : form.fields) {
        std::string initial;
        std::string present;
        appendValue(initial, field.value, form.structure->getPropertyValue(fresh, field.property));
        appendValue(present, field.value, form.structure->getPropertyValue(value, field.property));
        if (present == initial) continue;
        appendKey(out, field, first);
        out += present;
        first = false;
    }
    out.push_back('}');
}

}  // namespace

void appendValue(std::string& out, ValueForm const& form, Value const& value) {
    using Kind = ValueForm::Kind;
    if (!value.hasPayload()) {
        out += "null";
        return;
    }
    switch (form.kind) {
        case Kind::Boolean:
            out += value.getValue<bool>() ? "true" : "false";
            break;
        case Kind::Integer:
            appendInteger(out, value.getValue<int>());
            break;
        case Kind::UnlimitedNatural:
            appendInteger(out, value.getValue<unsigned>());
            break;
        case Kind::UInteger64:
            appendInteger(out, value.getValue<unsigned long>());
            break;
        case Kind::Real:
            appendReal(out, value.getValue<double>());
            break;
        case Kind::String:
            appendText(out, value.getValue<std::u16string>());
            break;
        case Kind::StdString:
            appendBytes(out, value.getValue<std::string>());
            break;
        case Kind::Enumeration:
            appendEnumeration(out, form, value);
            break;
        case Kind::Structure:
            appendStructure(out, form, value);
            break;
        case Kind::Array:
            if (zxArray_tag const* const array = value.getValue<zxArray_tag*>()) {
                out.push_back('{');
                appendKey(out, kArrayKey, true);
                appendArray(out, array);
                out.push_back('}');
            } else {
                out += "null";
            }
            break;
        case Kind::Element:
        case Kind::Unknown:
            refuseType(form);
    }
}

void appendProperty(std::string& out, FieldForm const& form, Value const& value) {
    if (!form.isSeveral) {
        appendValue(out, form.value, value);
        return;
    }
    auto const* const collection =
        dynamic_cast<AbstractPrimitiveCollection*>(value.getCollection<AbstractOwnedCollection>());
    std::vector<Value> const members = collection->getAllValues();
    appendList(out, members.size(), [&](std::size_t i) { appendValue(out, form.value, members[i]); });
}

}  // namespace quay::zero::io
