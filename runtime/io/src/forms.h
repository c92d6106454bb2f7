// What saving and loading need to know of classes: their stored properties, and how the values of each type are
// written.
#pragma once

#include <quay/zero/meta/serializers.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/property_descriptor.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quay::zero::io {

struct FieldForm;

/// How one value of a type is written.
struct ValueForm {
    enum class Kind {
        Boolean,
        Integer,
        UnlimitedNatural,
        UInteger64,
        Real,
        String,
        StdString,
        Array,
        Enumeration,
        Structure,
        Element,
        Unknown
    };

    Kind kind = Kind::Unknown;
    meta::Type type;
    meta::PropertySerializer const* serializer = nullptr;  // of primitive types and, by name, of enumerations
    meta::PropertySerializer const* byNumber = nullptr;    // of enumerations
    meta::DatatypeSerializer const* structure = nullptr;
    std::vector<FieldForm> fields;  // of structures, sorted by name
};

/// A property of a class, or a field of a structure.
struct FieldForm {
    meta::Property property;
    std::string name;
    ValueForm value;
    bool isSeveral = false;
    bool isSet = false;
    std::string key{};      // the name as a JSON member's key: in quotes, with the colon
    std::string initial{};  // the text of its value in a new element; only in forms that are prepared for writing
};

/// Appends the key of a property or field, behind a comma unless it is the first of its object.
inline void appendKey(std::string& out, FieldForm const& form, bool isFirst) {
    if (!isFirst) out.push_back(',');
    out += form.key;
}

/// A class and its stored properties.
struct ClassForm {
    meta::Class type;
    std::string name;                   // qualified
    std::vector<FieldForm> properties;  // sorted by name
    bool isPrepared = false;            // for writing: the properties have their initial texts

    /// The property of that name, or null.
    FieldForm const* find(std::string_view property) const noexcept;
};

/// The forms of the classes that occur in one text. They aren't kept for the next text, since the library of a class
/// may be unloaded in between.
class Forms {
public:
    /// The class of that qualified name, or null if there is none.
    ClassForm* find(std::string_view qualifiedName);
    ClassForm& of(meta::Class const& type);

private:
    std::unordered_map<std::string, std::unique_ptr<ClassForm>> byName_;
    std::unordered_map<ModelElement::Impl const*, ClassForm*> byType_;
};

/// How a property is written.
FieldForm formOf(meta::Property const& property);

/// The qualified name of a type for a message.
std::string quotedName(meta::Type const& type);

/// Throws Refused for a type whose values have no text.
[[noreturn]] void refuseType(ValueForm const& form);

/// The URI of the package that a class belongs to.
std::string schemaOf(meta::Class const& type);

}  // namespace quay::zero::io
