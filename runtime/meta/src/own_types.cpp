// The runtime's own types: the primitive ones, and the classes of models, elements and meta objects. The registry has
// them from its start.
#include <quay/zero/meta/registry.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <boost/none.hpp>
#include <boost/uuid/name_generator_md5.hpp>

namespace quay::zero::meta {

PrimitiveType StandardTypes::booleanMeta;
PrimitiveType StandardTypes::integerMeta;
PrimitiveType StandardTypes::unlimitedNaturalMeta;
PrimitiveType StandardTypes::uinteger64Meta;
PrimitiveType StandardTypes::realMeta;
PrimitiveType StandardTypes::stringMeta;
PrimitiveType StandardTypes::stdstringMeta;
PrimitiveType StandardTypes::zxArrayMeta;

namespace internal {

PrimitiveType getPrimitiveTypeFromMetaRegistry(char16_t const* name) {
    return MetaRegistry::getInstance()->getPrimitiveType(name);
}

bool isEnumType(Type const& type) { return type.impl() != nullptr && type->isEnum(); }

}  // namespace internal

namespace {

struct OwnClasses {
    Class modelElement, model, metaElement, package, type, classClass, dataType, primitiveType, enumClass, enumLiteral,
        typedElement, property, operation, argument;
};

/// The runtime's own package: names without a dot, `nativeTypes`, and the classes of meta objects themselves. Their ids
/// are the same in every process: name-based ones under a name space of the runtime's own.
void declareOwnTypes(MetaRegistry& registry, OwnClasses& own) {
    Model const model = registry.model();
    Model::Thawer const thawer = registry.freezer().thaw();
    boost::uuids::name_generator_md5 const idOf(
        boost::uuids::name_generator_md5(boost::uuids::ns::url())("quay0://quay/quay0/meta/19700101"));
    Transaction transaction = model->beginTransaction(true);

    Package const root = Package::create(model, idOf(""));
    root->setUri(u"quay0://quay/quay0/meta/19700101");
    auto const addPackage = [&](char const* name) {
        Package package = Package::create(model, idOf(name));
        package->setName(toUtf16(name));
        package->setParentPackage(root);
        return package;
    };
    auto const add = [&]<class X>(X const& /*tag*/, Package const& package, std::string const& prefix,
                                  char const* name) {
        X type = X::create(model, idOf(prefix + name));
        type->setName(toUtf16(name));
        type->setOwningPackage(package);
        registry.registerType(type, nullptr, nullptr);
        return type;
    };

    struct {
        PrimitiveType& slot;
        char const* name;
    } const primitives[] = {{StandardTypes::booleanMeta, "Boolean"},
                            {StandardTypes::integerMeta, "Integer"},
                            {StandardTypes::unlimitedNaturalMeta, "UnlimitedNatural"},
                            {StandardTypes::uinteger64Meta, "UInteger64"},
                            {StandardTypes::realMeta, "Real"},
                            {StandardTypes::stringMeta, "String"},
                            {StandardTypes::stdstringMeta, "StdString"},
                            {StandardTypes::zxArrayMeta, "ZxArray"}};
    for (auto const& p : primitives) p.slot = add(PrimitiveType(), root, "", p.name);

    Package const native = addPackage("nativeTypes");
    for (char const* name : {"DataTypeTablePtr", "VwBlockPtr"}) add(PrimitiveType(), native, "nativeTypes.", name);

    own.modelElement = add(Class(), root, "", "ModelElement");
    own.modelElement->setIsAbstract(true);
    own.model = add(Class(), root, "", "Model");
    Package const meta = addPackage("quay.zero.meta");
    struct {
        Class& slot;
        char const* name;
        Class const& base;
        bool isAbstract;
    } const classes[] = {{own.metaElement, "MetaElement", own.modelElement, true},
                         {own.package, "Package", own.metaElement, false},
                         {own.type, "Type", own.metaElement, true},
                         {own.classClass, "Class", own.type, false},
                         {own.dataType, "DataType", own.type, false},
                         {own.primitiveType, "PrimitiveType", own.type, false},
                         {own.enumClass, "Enum", own.type, false},
                         {own.enumLiteral, "EnumLiteral", own.metaElement, false},
                         {own.typedElement, "TypedElement", own.metaElement, true},
                         {own.property, "Property", own.typedElement, false},
                         {own.operation, "Operation", own.typedElement, false},
                         {own.argument, "Argument", own.typedElement, false}};
    for (auto const& c : classes) {
        c.slot = add(Class(), meta, "quay.zero.meta.", c.name);
        c.slot->setIsAbstract(c.isAbstract);
        c.slot->setSuperclass(c.base);
        std::string const script = std::string("quay.zero.meta.") + c.name;
        c.slot->setScriptName(script);
        registry.registerTypeNames(c.slot, "quay::zero::meta::" + std::string(c.name), script, "");
    }
    registry.registerTypeNames(own.modelElement, "quay::zero::ModelElement", "quay.zero.ModelElement", "");
    registry.registerTypeNames(own.model, "quay::zero::Model", "quay.zero.Model", "");
    transaction.commit(boost::none);
    registry.registerRootPackage(root);
}

/// The meta classes of the runtime's own classes. Set by the first use of the registry, and never destroyed, since
/// libraries may read them while the process exits.
OwnClasses& ownSlots() {
    static OwnClasses& made = *new OwnClasses;
    return made;
}

OwnClasses const& ownClasses() {
    MetaRegistry::getInstance();
    return ownSlots();
}

}  // namespace

MetaRegistry* MetaRegistry::getInstance() {
    static auto* const instance = [] {
        auto* const made = new MetaRegistry;
        declareOwnTypes(*made, ownSlots());
        return made;
    }();
    return instance;
}

Class const& MetaElement::metaClass() { return ownClasses().metaElement; }
Class const& Package::metaClass() { return ownClasses().package; }
Class const& Type::metaClass() { return ownClasses().type; }
Class const& Class::metaClass() { return ownClasses().classClass; }
Class const& DataType::metaClass() { return ownClasses().dataType; }
Class const& PrimitiveType::metaClass() { return ownClasses().primitiveType; }
Class const& Enum::metaClass() { return ownClasses().enumClass; }
Class const& EnumLiteral::metaClass() { return ownClasses().enumLiteral; }
Class const& TypedElement::metaClass() { return ownClasses().typedElement; }
Class const& Property::metaClass() { return ownClasses().property; }
Class const& Operation::metaClass() { return ownClasses().operation; }
Class const& Argument::metaClass() { return ownClasses().argument; }

}  // namespace quay::zero::meta

namespace quay::zero {

meta::Class const& ModelElement::metaClass() { return meta::ownClasses().modelElement; }
meta::Class const& Model::metaClass() { return meta::ownClasses().model; }

}  // namespace quay::zero
