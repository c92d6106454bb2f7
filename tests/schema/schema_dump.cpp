// schema_dump LIBRARY URI
// Loads a library that declares a package, and prints what the meta registry then has for the package with that URI: a
// line of tab-separated columns for every meta object, in order of declaration. Linked only to the runtime.
#include <keel/text.h>
#include <quay/zero/builder.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>

#include <boost/uuid/uuid_io.hpp>

#include <dlfcn.h>

#include <iostream>
#include <memory>
#include <string>

namespace {

using namespace quay::zero::meta;
namespace qz = quay::zero;

template <class... Columns>
void print(Columns const&... columns) {
    char const* between = "";
    ((std::cout << between << columns, between = "\t"), ...);
    std::cout << '\n';
}

std::string utf8(std::u16string const& text) { return keel::toUtf8(text); }
std::string nameOf(Type const& type) { return type ? utf8(type->getQualifiedName()) : "-"; }

/// Everything that the registry has for a type besides the type itself.
std::string registrationOf(Type const& type) {
    MetaRegistry const& registry = *MetaRegistry::getInstance();
    MetaRegistry::TypeNames const names = registry.getTypeNames(type);
    bool const found =
        registry.getType(type->getQualifiedName()) == type && registry.findTypeByScriptName(names.script) == type;
    return names.native + '\t' + names.script + '\t' + names.third + '\t' + (found ? "found" : "lost");
}

void printProperty(std::string const& owner, Property const& p) {
    Property const key = p->getQualifiedBy();
    print("property", owner + "." + utf8(p->getName()), p->uuid(), nameOf(p->getType()),
          static_cast<int>(p->getFlags()), p->isComposite(), p->isOrdered(), p->isUnique(), p->getLower(),
          p->getUpper(), p->isDerived(), p->getIndex(),
          p->getDefaultValue() ? '"' + utf8(*p->getDefaultValue()) + '"' : "none",
          key ? nameOf(key->getOwningType()) + "." + utf8(key->getName()) : "-", p->isQualificationUnique());
}

void printOperation(std::string const& owner, Operation const& o) {
    std::string const name = owner + "." + utf8(o->getName());
    print("operation", name, o->uuid(), nameOf(o->getType()), o->getLower(), o->getUpper(), o->isAbstract(),
          o->isStatic(), o->isPublic(), o->isEvent());
    for (Argument const& a : *o->getArguments()) {
        print("argument", name + "." + utf8(a->getName()), a->uuid(), nameOf(a->getType()), a->getLower(),
              a->getUpper(), a->isInput());
    }
}

void printEnum(std::string const& name, Enum const& e) {
    std::string forms;
    for (char const* form : {"", "ID", "PublicID"}) {
        forms += PropertySerializerRegistry::getInstance()->getPropertySerializer(e, form) == nullptr ? '-' : '+';
    }
    print("enum", name, e->uuid(), nameOf(e->getUnderlyingType()), e->getScriptName(), forms, registrationOf(e));
    for (EnumLiteral const& l : *e->getLiterals())
        print("literal", name + "." + utf8(l->getName()), l->uuid(), l->getValue());
}

void printType(Type const& type) {
    std::string const name = nameOf(type);
    if (Enum const e = Enum::cast(type)) {
        printEnum(name, e);
    } else if (Class const c = Class::cast(type)) {
        bool const builds = c->instantiateBuilder(qz::Model::create()) != nullptr;
        print("class", name, c->uuid(), nameOf(c->getSuperclass()), c->isAbstract(), builds, c->getScriptName(),
              registrationOf(c));
    } else {
        DataType const d = DataType::cast(type);
        bool const reaches = PropertySerializerRegistry::getInstance()->getDatatypeSerializer(d) != nullptr;
        print("data type", name, d->uuid(), reaches, d->getScriptName(), registrationOf(d));
    }
    for (Property const& p : *type->getOwnedProperties()) printProperty(name, p);
    if (Class const c = Class::cast(type)) {
        for (Operation const& o : *c->getOwnedOperations()) printOperation(name, o);
    }
}

void printPackage(Package const& package) {
    print("package", '"' + utf8(package->getName()) + '"', package->uuid(), utf8(package->getUri()));
    for (std::u16string const& uri : *package->getImportedPackageURIs()) print("import", utf8(uri));
    for (Type const& type : *package->getOwnedTypes()) printType(type);
    for (Package const& inner : *package->getPackages()) printPackage(inner);
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: schema_dump LIBRARY URI\n";
        return 2;
    }
    if (dlopen(arguments[1], RTLD_NOW) == nullptr) {
        std::cerr << dlerror() << '\n';
        return 1;
    }
    std::string const uri = arguments[2];
    Package const root = MetaRegistry::getInstance()->findRootPackage({uri.begin(), uri.end()});
    if (!root) {
        std::cerr << "no package " << uri << '\n';
        return 1;
    }
    printPackage(root);
}
