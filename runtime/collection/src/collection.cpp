#include <quay/zero/collection.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/primitive_collection.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>
#include <quay/zero/value.h>

#include <quay0/messages.h>

namespace quay::zero {

AbstractOwnedCollection::AbstractOwnedCollection(meta::Property const& property, bool eachOnce) noexcept
    : property_(property.impl()),
      index_(property.impl() == nullptr ? std::uint16_t{0} : property->getIndex()),
      detached_(true),
      eachOnce_(eachOnce) {}

meta::Property AbstractOwnedCollection::getCollectionProperty() const {
    if (!detached_) return owner_->getPropertyByIndex(index_);
    return meta::Property::of(static_cast<ModelElement::Impl*>(property_));
}

std::u16string AbstractOwnedCollection::describe() const {
    return detached_ ? std::u16string() : owner_->nameOf(index_);
}

void AbstractOwnedCollection::modifying() {
    if (recording() && owner_->model().lastStep(StepKind::Touched, this) == nullptr) record(StepKind::Touched);
}

AbstractOwnedCollection::Operation::Operation(AbstractOwnedCollection& collection) {
    ModelElement::Impl* const owner = collection.owner();
    if (owner == nullptr) return;
    owner->requireWritable();
    savepoint_.emplace(owner->model(), false);
}

void AbstractOwnedCollection::Operation::commit() {
    if (savepoint_) savepoint_->commit();
}

meta::Type AbstractPrimitiveCollection::propertyTypeOr(meta::Type const& other) const {
    meta::Property const property = getCollectionProperty();
    return property.impl() == nullptr ? other : property->getType();
}

meta::Type ReferenceCollection::getCollectionType() const { return memberClass(); }

void ReferenceCollection::checkCompatibleModel(ModelElement::Impl* e) const {
    if (owner() == nullptr) return;
    owner()->requireWritable();
    owner()->checkCompatibleModel(e, std::uint64_t{index()});
}

ModelElement ReferenceCollection::resolveProxy(ModelElement const& e) const {
    return owner() == nullptr ? e : owner()->model().resolveProxy(owner(), e);
}

ModelElement ReferenceCollection::peekResolveProxy(ModelElement const& e) const {
    if (owner() == nullptr || !e || !e->isProxy()) return e;
    ProxyId const id = e->getProxyId();
    ModelImpl const& model = owner()->model();
    if (id.hasOutsidePart(model.storeName())) return {};
    return model.findElement(id.id(), FindElementBehavior::InMemoryOnly);
}

void ReferenceCollection::assignValue(Value const& value) {
    auto const* const other =
        value.pointsAtCollection()
            ? dynamic_cast<ReferenceCollection const*>(value.getCollection<AbstractOwnedCollection>())
            : nullptr;
    if (other == nullptr) value.reportIncompatible();
    std::vector<ModelElement> const members = other->getAllValuesAndProxies();
    for (ModelElement const& e : members) requireMemberClass(e);
    Operation operation(*this);
    clear();
    // Otherwise each member would leave its former collection by itself, with a search.
    if (other != this && other->owner() != nullptr) const_cast<ReferenceCollection*>(other)->clear();
    for (ModelElement const& e : members) getGenericInterface()->genericAdd(e);
    operation.commit();
}

bool ReferenceCollection::isMemberClass(ModelElement const& e) const noexcept { return conformsTo(e, memberTable()); }

void ReferenceCollection::requireMemberClass(ModelElement const& e) const {
    if (isMemberClass(e)) return;
    reportException(quay0::messages::CannotAddIncompatibleTypes(e->getMetaClass()->getQualifiedName(),
                                                                memberClass()->getQualifiedName())
                        .about(describe()));
}

void ReferenceCollection::contain(ModelElement::Impl* e) const {
    if (owner() != nullptr) owner()->_setContainedByThis(e, index());
}

void ReferenceCollection::release(ModelElement::Impl* e) const {
    if (owner() != nullptr && e->containerImpl() == owner() && e->containmentIndex() == index()) {
        owner()->_basicSetUncontained(e);
    }
}

}  // namespace quay::zero
