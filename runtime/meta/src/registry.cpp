#include <quay/zero/meta/registry.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include <algorithm>

namespace quay::zero::meta {

MetaRegistry::MetaRegistry() : model_(Model::create()), freezer_(std::make_unique<Model::Freezer>(model_)) {}

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
    // A dead package of that URI is left from a declaration that was rolled back and is now repeated.
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
        if (ForgetHook const hook = whenForgotten_) hook(entry.first);
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
