// Lists the schema by reflection alone, as a generic tool would that works on any schema.
#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <keel/text.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>

#include <iomanip>
#include <iostream>
#include <map>
#include <string>

namespace {

using namespace quay::zero::meta;

std::string utf8(std::u16string const& text) { return keel::toUtf8(text); }

/// "1 class", "2 classes", in columns.
std::string several(int number, std::string const& one, std::string const& more) {
    std::string const digits = std::to_string(number);
    return std::string(digits.size() < 4 ? 4 - digits.size() : 0, ' ') + digits + " " + (number == 1 ? one : more);
}

struct Counts {
    int classes = 0, abstract = 0, dataTypes = 0, enums = 0, literals = 0, properties = 0, operations = 0;
};

Counts count(Package const& package) {
    Counts result;
    for (Type const& type : *package->getOwnedTypes()) {
        result.properties += static_cast<int>(type->getOwnedProperties()->size());
        if (Class const c = Class::cast(type)) {
            ++result.classes;
            result.abstract += c->isAbstract() ? 1 : 0;
            result.operations += static_cast<int>(c->getOwnedOperations()->size());
        } else if (Enum const e = Enum::cast(type)) {
            ++result.enums;
            result.literals += static_cast<int>(e->getLiterals()->size());
        } else {
            ++result.dataTypes;
        }
    }
    return result;
}

char const* shapeOf(Property const& p) {
    switch (p->getFlags()) {
        case quay::zero::ValueFlags::Optional:
            return "optional";
        case quay::zero::ValueFlags::Sequence:
            return p->isComposite() ? "sequence of children" : "sequence";
        case quay::zero::ValueFlags::Set:
            return p->isComposite() ? "set of children" : "set";
        case quay::zero::ValueFlags::Map:
            return "map of children";
        case quay::zero::ValueFlags::Multimap:
            return "multimap of children";
        default:
            return p->isComposite() ? "child" : "single";
    }
}

void showPackages() {
    std::cout << "Packages in the meta registry\n";
    for (Package const& root : MetaRegistry::getInstance()->getRootPackages()) {
        std::cout << "  " << utf8(root->getUri()) << '\n';
        for (Package const& package : *root->getPackages()) {
            Counts const n = count(package);
            if (n.classes + n.enums == 0) continue;
            std::cout << "    " << std::left << std::setw(18) << utf8(package->getName())
                      << several(n.classes, "class,  ", "classes,") << several(n.properties, "property", "properties")
                      << '\n';
        }
    }
}

void showSchema(Package const& schema) {
    Counts const n = count(schema);
    std::map<std::string, int> shapes;
    std::map<std::string, std::string> families;
    for (Type const& type : *schema->getOwnedTypes()) {
        for (Property const& p : *type->getOwnedProperties()) ++shapes[shapeOf(p)];
        Class const c = Class::cast(type);
        Class const base = c ? c->getSuperclass() : Class();
        if (base && base->getSuperclass()) families[utf8(base->getName())] += " " + utf8(c->getName());
    }
    std::cout << "\n"
              << utf8(schema->getName()) << ": " << n.classes << " classes (" << n.abstract << " abstract), "
              << n.dataTypes << " value types, " << n.enums << " enumerations with " << n.literals << " literals, "
              << n.operations << " operations, " << n.properties << " properties\n";
    for (auto const& [shape, number] : shapes)
        std::cout << std::right << std::setw(6) << number << "  " << shape << '\n';
    std::cout << "\nClasses that extend another\n";
    for (auto const& [base, names] : families) std::cout << "  " << base << " <-" << names << '\n';
}

void showType(Type const& type) {
    MetaRegistry::TypeNames const names = MetaRegistry::getInstance()->getTypeNames(type);
    std::cout << "\n"
              << utf8(type->getName()) << "\n  in C++ " << names.native << "\n  in scripts " << names.script << '\n';
    for (Property const& p : type->getProperties()) {
        std::cout << std::right << std::setw(4) << p->getIndex() << "  " << std::left << std::setw(31)
                  << utf8(p->getName()) << std::setw(20) << utf8(p->getType()->getName()) << shapeOf(p);
        if (Property const key = p->getQualifiedBy()) std::cout << " by " << utf8(key->getName());
        if (p->isDerived()) std::cout << ", derived";
        if (auto const& text = p->getDefaultValue()) std::cout << ", starts as \"" << utf8(*text) << '"';
        std::cout << '\n';
    }
}

void showEnumeration(Enum const& type) {
    auto const* const byName = PropertySerializerRegistry::getInstance()->getPropertySerializer(type);
    auto const* const byValue = PropertySerializerRegistry::getInstance()->getPropertySerializer(type, "ID");
    std::cout << "\n" << utf8(type->getName()) << '\n';
    for (EnumLiteral const& literal : *type->getLiterals()) {
        quay::zero::Value const value = byName->parseValue(literal->getName(), type);
        std::cout << "  " << std::left << std::setw(18) << utf8(literal->getName())
                  << utf8(byValue->serializeValue(value)) << '\n';
    }
}

}  // namespace

int main() {
    MetaPackageVw_modelref_info const& package = *MetaPackageVw_modelref_info::getInstance();
    showPackages();
    showSchema(package.ModelRefInfoRepo);
    showType(package.VwtpEventData);
    showType(package.CompDataType);
    showEnumeration(package.QueueType);
}
