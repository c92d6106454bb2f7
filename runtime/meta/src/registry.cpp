#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <quay0/messages.h>

#include <algorithm>
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

MetaRegistry* MetaRegistry::getInstance() {
    static auto* const instance = new MetaRegistry;
    return instance;
}

MetaRegistry::MetaRegistry() : model_(Model::create()) {
    declareOwnTypes();
    freezer_ = std::make_unique<Model::Freezer>(model_);
}

/// The runtime's own package: names without a dot, `nativeTypes`, and the classes of meta objects themselves. Their ids
/// are the same in every process: name-based ones under a name space of the runtime's own.
void MetaRegistry::declareOwnTypes() {
    boost::uuids::name_generator_md5 const idOf(
        boost::uuids::name_generator_md5(boost::uuids::ns::url())("quay0://quay/quay0/meta/19700101"));
    Transaction transaction = model_->beginTransaction(true);

    Package const root = Package::create(model_, idOf(""));
    root->setUri(u"quay0://quay/quay0/meta/19700101");
    auto const addPackage = [&](char const* name) {
        Package package = Package::create(model_, idOf(name));
        package->setName(toUtf16(name));
        package->setParentPackage(root);
        return package;
    };
    auto const add = [&]<class X>(X const& /*tag*/, Package const& package, std::string const& prefix,
                                  char const* name) {
        X type = X::create(model_, idOf(prefix + name));
        type->setName(toUtf16(name));
        type->setOwningPackage(package);
        registerType(type, nullptr, nullptr);
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

    own_.modelElement = add(Class(), root, "", "ModelElement");
    own_.modelElement->setIsAbstract(true);
    own_.model = add(Class(), root, "", "Model");
    Package const meta = addPackage("quay.zero.meta");
    struct {
        Class& slot;
        char const* name;
        Class const& base;
        bool isAbstract;
    } const classes[] = {{own_.metaElement, "MetaElement", own_.modelElement, true},
                         {own_.package, "Package", own_.metaElement, false},
                         {own_.type, "Type", own_.metaElement, true},
                         {own_.classClass, "Class", own_.type, false},
                         {own_.dataType, "DataType", own_.type, false},
                         {own_.primitiveType, "PrimitiveType", own_.type, false},
                         {own_.enumClass, "Enum", own_.type, false},
                         {own_.enumLiteral, "EnumLiteral", own_.metaElement, false},
                         {own_.typedElement, "TypedElement", own_.metaElement, true},
                         {own_.property, "Property", own_.typedElement, false},
                         {own_.operation, "Operation", own_.typedElement, false},
                         {own_.argument, "Argument", own_.typedElement, false}};
    for (auto const& c : classes) {
        c.slot = add(Class(), meta, "quay.zero.meta.", c.name);
        c.slot->setIsAbstract(c.isAbstract);
        c.slot->setSuperclass(c.base);
        std::string const script = std::string("quay.zero.meta.") + c.name;
        c.slot->setScriptName(script);
        registerTypeNames(c.slot, "quay::zero::meta::" + std::string(c.name), script, "");
    }
    registerTypeNames(own_.modelElement, "quay::zero::ModelElement", "quay.zero.ModelElement", "");
    registerTypeNames(own_.model, "quay::zero::Model", "quay.zero.Model", "");
    transaction.commit(boost::none);
    registerRootPackage(root);
}

// --- Look-up --------------------------------------------------------------------------------------------------------

Type MetaRegistry::getType(std::u16string const& qualifiedName) const {
    std::lock_guard const lock(mutex_);
    auto const found = byName_.find(qualifiedName);
    if (found == byName_.end() || !found->second->isAlive()) {
        reportException(quay0::messages::NoSuchType(qualifiedName));
    }
    return Type::of(found->second);
}

PrimitiveType MetaRegistry::getPrimitiveType(std::u16string const& name) const {
    std::lock_guard const lock(mutex_);
    auto const found = byName_.find(name);
    if (found == byName_.end() || !found->second->isAlive()) return {};
    return PrimitiveType::cast(ModelElement(found->second));
}

Type MetaRegistry::findTypeByScriptName(std::string_view scriptName) const {
    std::lock_guard const lock(mutex_);
    auto const found = byScriptName_.find(scriptName);
    return found == byScriptName_.end() || !found->second->isAlive() ? Type() : Type::of(found->second);
}

Package MetaRegistry::findRootPackage(std::u16string const& uri) const {
    std::lock_guard const lock(mutex_);
    for (Package const& p : rootPackages_) {
        if (p && p->getUri() == uri) return p;
    }
    return {};
}

std::vector<Package> MetaRegistry::getRootPackages() const {
    std::lock_guard const lock(mutex_);
    return rootPackages_;
}

MetaRegistry::Registration const* MetaRegistry::find(Type const& type) const {
    auto const found = types_.find(type.impl());
    return found == types_.end() ? nullptr : &found->second;
}

MetaRegistry::TypeNames MetaRegistry::getTypeNames(Type const& type) const {
    std::lock_guard const lock(mutex_);
    Registration const* const r = find(type);
    return r == nullptr ? TypeNames() : r->names;
}

std::unique_ptr<AbstractOwnedCollection> MetaRegistry::makeCollection(ModelElement const& owner,
                                                                      Property const& property) const {
    std::lock_guard const lock(mutex_);
    Registration const* const r = find(property->getType());
    if (r == nullptr || r->makeCollection == nullptr) return nullptr;
    return std::unique_ptr<AbstractOwnedCollection>(r->makeCollection(owner, property));
}

MetaRegistry::BuilderFactory MetaRegistry::builderFactory(Class const& type) const {
    std::lock_guard const lock(mutex_);
    Registration const* const r = find(type);
    return r == nullptr ? nullptr : r->makeBuilder;
}

// --- Registration ---------------------------------------------------------------------------------------------------

void MetaRegistry::registerType(Type const& type, CollectionFactory makeCollection, BuilderFactory makeBuilder) {
    std::lock_guard const lock(mutex_);
    std::u16string const name = type->getQualifiedName();
    auto& slot = byName_[name];
    if (slot != nullptr && slot != type.impl() && slot->isAlive()) {
        reportException(quay0::messages::UniquenessConstraint().about(u"type name").withValue(name));
    }
    slot = type.impl();
    Registration& r = types_[type.impl()];
    r.type = type;
    r.makeCollection = makeCollection;
    r.makeBuilder = makeBuilder;
}

void MetaRegistry::registerTypeNames(Type const& type, std::string native, std::string script, std::string third) {
    std::lock_guard const lock(mutex_);
    if (!script.empty()) byScriptName_[script] = type.impl();
    Registration& r = types_[type.impl()];
    r.type = type;
    r.names = {std::move(native), std::move(script), std::move(third)};
}

void MetaRegistry::registerRootPackage(Package const& package) {
    std::lock_guard const lock(mutex_);
    // One of that URI that is dead was taken back by a rollback, and is declared again.
    std::erase_if(rootPackages_, [&](Package const& p) { return !p && p->getUri() == package->getUri(); });
    rootPackages_.push_back(package);
}

namespace {

bool isBelow(ModelElement::Impl const* element, ModelElement::Impl const* top) {
    for (; element != nullptr; element = element->containerImpl()) {
        if (element == top) return true;
    }
    return false;
}

}  // namespace

template <class Condition>
void MetaRegistry::forgetTypes(Condition const& isMeant) {
    std::erase_if(types_, [&](auto const& entry) {
        if (!isMeant(entry.first)) return false;
        PropertySerializerRegistry::getInstance()->forget(entry.first);
        return true;
    });
    std::erase_if(byName_, [&](auto const& entry) { return isMeant(entry.second); });
    std::erase_if(byScriptName_, [&](auto const& entry) { return isMeant(entry.second); });
}

void MetaRegistry::unregisterRootPackage(std::u16string const& uri) {
    std::lock_guard const lock(mutex_);
    Package const package = findRootPackage(uri);
    if (!package) return;
    forgetTypes([&](ModelElement::Impl const* type) { return isBelow(type, package.impl()); });
    std::erase(rootPackages_, package);
}

void MetaRegistry::unregisterType(Type const& type) {
    std::lock_guard const lock(mutex_);
    forgetTypes([&](ModelElement::Impl const* registered) { return registered == type.impl(); });
}

void MetaRegistry::withdrawRootPackage(Package const& package) noexcept {
    std::lock_guard const lock(mutex_);
    std::erase(rootPackages_, package);
}

void MetaRegistry::keep(void const* object) {
    std::lock_guard const lock(mutex_);
    kept_.push_back(object);
}

}  // namespace quay::zero::meta

namespace quay::zero {

meta::Class const& ModelElement::metaClass() { return meta::MetaRegistry::getInstance()->ownClasses().modelElement; }
meta::Class const& Model::metaClass() { return meta::MetaRegistry::getInstance()->ownClasses().model; }

}  // namespace quay::zero
