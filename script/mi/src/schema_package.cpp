#include <quay/zero/mi/registration.h>

#include <ordo/class.h>

#include <quay/zero/mi/data_type_classes.h>
#include <quay/zero/mi/element_classes.h>
#include <quay/zero/mi/enum_classes.h>
#include <quay/zero/mi/policy_based_marshaler.h>

#include <set>
#include <vector>

#include "bound_property.h"

namespace quay::zero::mi {

namespace {

void collectTypes(meta::Package const& package, std::vector<meta::Type>& types) {
    for (meta::Type const& type : *package->getOwnedTypes()) types.push_back(type);
    for (meta::Package const& inner : *package->getPackages()) collectTypes(inner, types);
}

std::vector<meta::Type> typesOf(meta::Package const& root) {
    std::vector<meta::Type> types;
    collectTypes(root, types);
    return types;
}

std::string_view packageOf(std::string_view scriptName) { return scriptName.substr(0, scriptName.rfind('.')); }
std::string shortNameOf(std::string_view scriptName) {
    return std::string(scriptName.substr(scriptName.rfind('.') + 1));
}

template <class Info>
void addClass(ordo::OrdoPackage& package, std::string const& scriptName) {
    package.addClass(std::make_unique<Info>(shortNameOf(scriptName), scriptName).release(), 2);
}

/// Registers an enumeration's class, and the conversion of texts to its values.
void addEnumeration(ordo::OrdoPackage& package, meta::Enum const& type, std::string const& scriptName) {
    addClass<QUAY0EnumInfo>(package, scriptName);
    // Define the class now, before other classes refer to it.
    ordo::OrdoClass* const enumeration = ordo::OrdoClass::getClass(ordo::internName(scriptName));
    ordo::InternedName const any = ordo::internName("any");
    for (char const* ending : {"", " property", " scalar"}) {
        auto conversion = std::make_unique<FromAnyAsStringTypeConverter>(enumeration, type);
        ordo::InternedName const to = ordo::internName(scriptName + ending);
        ordo::OrdoTypeRepository::removeConversion(any, to);
        ordo::OrdoTypeRepository::addConversion(any, to, std::move(conversion));
    }
}

}  // namespace

SchemaPackage::SchemaPackage(std::string_view dottedName, meta::Package const& root)
    : EmptyParentPackage(dottedName), dottedName_(dottedName), root_(root) {}

void SchemaPackage::initializePackage(ordo::OrdoPackage* package) {
    std::vector<std::pair<meta::Type, std::string>> types;
    for (meta::Type const& type : typesOf(root_)) {
        std::string name = scriptNameOfType(type);
        if (packageOf(name) == dottedName_) types.emplace_back(type, std::move(name));
    }
    for (auto const& [type, name] : types) {
        if (meta::Class::cast(type).impl() != nullptr) addClass<ElementWrapper>(*package, name);
    }
    for (auto const& [type, name] : types) {
        if (auto const enumeration = meta::Enum::cast(type)) addEnumeration(*package, enumeration, name);
    }
    for (auto const& [type, name] : types) {
        if (meta::DataType::cast(type).impl() != nullptr) addClass<DataTypeWrapper>(*package, name);
    }
}

std::unique_ptr<ValueMarshaler> makeMarshaler(meta::Type const& type) {
    if (type->isEnum()) return std::make_unique<PolicyBasedEnumValueMarshaler>(type);
    return std::make_unique<PolicyBasedValueMarshaler>(type, scriptNameOfType(type));
}

void registerSchema(meta::Package const& root) {
    MetaMarshalerRegistry& marshalers = MetaMarshalerRegistry::getInstance();
    std::set<std::string> packages;
    for (meta::Type const& type : typesOf(root)) {
        std::string const name = scriptNameOfType(type);
        if (name.empty()) continue;
        packages.emplace(packageOf(name));
        bool const isClass = meta::Class::cast(type).impl() != nullptr;
        if (!isClass && marshalers.findPropertyMarshaler(type) == nullptr) {
            marshalers.registerTypeMarshaler(type, makeMarshaler(type));
        }
    }
    for (std::string const& name : packages) {
        ordo::OrdoPackage* const present = ordo::OrdoPackage::getPackage(ordo::internName(name));
        if (present != nullptr && !present->classNames().empty()) continue;
        EmptyParentPackage::registerPackage(std::make_unique<SchemaPackage>(name, root));
    }
}

}  // namespace quay::zero::mi
