#include "element_maker.h"

#include <quay/zero/builder.h>

#include <utility>

#include "failures.h"

namespace quay::zero::io {

namespace {

void requireConcrete(ClassForm const& form) {
    if (form.type->isAbstract()) throw Refused("the class " + inQuotes(form.name) + " is abstract");
}

}  // namespace

void ElementMaker::requireNew(ClassForm const& form, boost::uuids::uuid const& id) const {
    requireConcrete(form);
    if (model_->findElement(id, FindElementBehavior::InMemoryOnly).impl() != nullptr) refuseSecondId();
}

ModelElement ElementMaker::make(ClassForm const& form, boost::uuids::uuid const& id) {
    requireNew(form, id);
    auto const builder = form.type->instantiateBuilder(model_);
    if (builder == nullptr) throw Refused("elements of " + inQuotes(form.name) + " can't be made");
    return builder->create(id);
}

ModelElement ElementMaker::makePostponed(ClassForm const& form, ProxyId const& id) {
    return model_->createProxy(form.type, id);
}

ModelElement ElementMaker::makeReference(ClassForm const& form, boost::uuids::uuid const& id, std::string place) {
    requireConcrete(form);
    ModelElement const proxy = model_->createProxy(form.type, ProxyId(id));
    references_.push_back({proxy, std::move(place)});
    return proxy;
}

void ElementMaker::checkReferences(std::string& place) const {
    for (Reference const& reference : references_) {
        auto const found = model_->findElement(reference.proxy->getProxyId().id(), FindElementBehavior::InMemoryOnly);
        if (found.impl() != nullptr && found->getMetaClass()->conformsTo(reference.proxy->getMetaClass())) continue;
        place = reference.place;
        throw Refused(found.impl() == nullptr ? "there is no element of that id" : "the element is of another class");
    }
}

}  // namespace quay::zero::io
