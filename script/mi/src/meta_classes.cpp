// The script package quay.zero.meta: meta objects, read only.
#include <ordo/class.h>
#include <ordo/factory/text.h>

#include <quay/zero/meta/types.h>
#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/element_classes.h>

#include "bound_property.h"
#include "function_property.h"
#include "runtime_classes.h"
#include "script_names.h"

namespace quay::zero::mi {

using ordo::OrdoValue;

namespace {

template <class H>
typename H::Impl& as(ModelElement::Impl& element) {
    return static_cast<typename H::Impl&>(element);
}

template <class Elements>
OrdoValue listOf(Elements const& elements) {
    return toScript(std::vector<ModelElement>(elements.begin(), elements.end()));
}

using Define = void (*)(ordo::OrdoClass&);

void defineElement(ordo::OrdoClass& c) {
    addReadOnly(
        c, "name", "OrdoFactoryString scalar",
        [](ModelElement::Impl& e) { return OrdoValue::borrowedText(as<meta::MetaElement>(e).getName()); },
        "The name within what it belongs to.");
}

void definePackage(ordo::OrdoClass& c) {
    addReadOnly(
        c, "uri", "OrdoFactoryString scalar",
        [](ModelElement::Impl& e) { return OrdoValue::borrowedText(as<meta::Package>(e).getUri()); },
        "The URI by which the package is known.");
    addReadOnly(
        c, "types", "cell", [](ModelElement::Impl& e) { return listOf(*as<meta::Package>(e).getOwnedTypes()); },
        "The types that the package has.");
    addReadOnly(
        c, "packages", "cell", [](ModelElement::Impl& e) { return listOf(*as<meta::Package>(e).getPackages()); },
        "The packages below this one.");
}

void defineType(ordo::OrdoClass& c) {
    addReadOnly(
        c, "qualifiedName", "OrdoFactoryString scalar",
        [](ModelElement::Impl& e) { return OrdoValue::text(as<meta::Type>(e).getQualifiedName()); },
        "Package and name, with a dot between them.");
    addReadOnly(
        c, "scriptName", "char",
        [](ModelElement::Impl& e) { return OrdoValue::bytes(scriptNameOfType(meta::Type::of(&as<meta::Type>(e)))); },
        "The name by which scripts know the type; empty if they don't.");
    addReadOnly(
        c, "properties", "cell", [](ModelElement::Impl& e) { return listOf(as<meta::Type>(e).getProperties()); },
        "Own and inherited properties, inherited ones first.");
}

void defineClassOfClasses(ordo::OrdoClass& c) {
    addReadOnly(
        c, "isAbstract", "logical scalar",
        [](ModelElement::Impl& e) { return OrdoValue::logical(as<meta::Class>(e).isAbstract()); },
        "Whether there are elements of derived classes alone.");
    addReadOnly(
        c, "superclass", "quay.zero.meta.Class",
        [](ModelElement::Impl& e) { return toScript(as<meta::Class>(e).getSuperclass()); },
        "The class from which this one derives.");
}

void defineEnum(ordo::OrdoClass& c) {
    addReadOnly(
        c, "literals", "cell", [](ModelElement::Impl& e) { return listOf(*as<meta::Enum>(e).getLiterals()); },
        "The literals, by name.");
}

void defineLiteral(ordo::OrdoClass& c) {
    addReadOnly(
        c, "value", "int32 scalar",
        [](ModelElement::Impl& e) { return OrdoValue::int32(as<meta::EnumLiteral>(e).getValue()); },
        "The literal's number.");
}

void defineTyped(ordo::OrdoClass& c) {
    addReadOnly(
        c, "type", "quay.zero.meta.Type",
        [](ModelElement::Impl& e) { return toScript(as<meta::TypedElement>(e).getType()); }, "The type of its values.");
    addReadOnly(
        c, "lower", "int32 scalar",
        [](ModelElement::Impl& e) { return OrdoValue::int32(as<meta::TypedElement>(e).getLower()); },
        "The least number of values.");
    addReadOnly(
        c, "upper", "int32 scalar",
        [](ModelElement::Impl& e) { return OrdoValue::int32(as<meta::TypedElement>(e).getUpper()); },
        "The greatest number of values; -1 for no limit.");
    addReadOnly(
        c, "isOrdered", "logical scalar",
        [](ModelElement::Impl& e) { return OrdoValue::logical(as<meta::TypedElement>(e).isOrdered()); },
        "Whether the values have an order of their own.");
}

void defineProperty(ordo::OrdoClass& c) {
    addReadOnly(
        c, "isComposite", "logical scalar",
        [](ModelElement::Impl& e) { return OrdoValue::logical(as<meta::Property>(e).isComposite()); },
        "Whether the property owns its values.");
    addReadOnly(
        c, "isDerived", "logical scalar",
        [](ModelElement::Impl& e) { return OrdoValue::logical(as<meta::Property>(e).isDerived()); },
        "Whether the value is computed from another property's.");
    addReadOnly(
        c, "index", "int32 scalar",
        [](ModelElement::Impl& e) { return OrdoValue::int32(as<meta::Property>(e).getIndex()); },
        "The property's number along its class chain; 0 for none.");
    addReadOnly(
        c, "qualifiedBy", "quay.zero.meta.Property",
        [](ModelElement::Impl& e) { return toScript(as<meta::Property>(e).getQualifiedBy()); },
        "The property of the children by which a map is keyed.");
}

class MetaClassInfo final : public QUAY0WrapperInfo {
public:
    MetaClassInfo(std::string const& shortName, std::string base, Define define, std::string_view description)
        : QUAY0WrapperInfo(shortName, std::string(names::kMetaPackage) + "." + shortName),
          base_(std::move(base)),
          define_(define),
          description_(description) {}

    /// Scripts find meta objects and can't create any.
    bool isAbstract() const noexcept override { return true; }
    std::string_view getDescription() const noexcept override { return description_; }
    std::string describeInstance(void const* native) const override {
        auto const& element =
            *static_cast<meta::MetaElement::Impl const*>(static_cast<ModelElement::Impl const*>(native));
        return "'" + ordo::factory::bytesOf(element.getName()) + "'";
    }
    void defineClass(ordo::OrdoClass& c) override {
        c.addSuperclass(base_, 1, 0, 1);
        if (define_ != nullptr) define_(c);
    }

private:
    std::string base_;
    Define define_;
    std::string_view description_;
};

}  // namespace

void addMetaClasses(ordo::OrdoPackage& package) {
    struct {
        char const* name;
        char const* base;
        Define define;
        char const* description;
    } const classes[] = {
        {"MetaElement", "", &defineElement, "What every meta object has."},
        {"Package", "MetaElement", &definePackage, "A package of types."},
        {"Type", "MetaElement", &defineType, "The type of a property or a value."},
        {"Class", "Type", &defineClassOfClasses, "A class of elements."},
        {"DataType", "Type", nullptr, "A structured type of values."},
        {"PrimitiveType", "Type", nullptr, "A type of values without parts."},
        {"Enum", "Type", &defineEnum, "An enumeration."},
        {"EnumLiteral", "MetaElement", &defineLiteral, "One named value of an enumeration."},
        {"TypedElement", "MetaElement", &defineTyped, "What has a name, a type and bounds."},
        {"Property", "TypedElement", &defineProperty, "A property of a class, or a field of a data type."},
        {"Operation", "TypedElement", nullptr, "An operation of a class."},
        {"Argument", "TypedElement", nullptr, "An argument of an operation."},
    };
    for (auto const& c : classes) {
        std::string const base = c.base[0] == '\0' ? names::kElement : std::string(names::kMetaPackage) + "." + c.base;
        package.addClass(std::make_unique<MetaClassInfo>(c.name, base, c.define, c.description).release(), 2);
    }
}

}  // namespace quay::zero::mi
