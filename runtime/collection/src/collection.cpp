#include <quay/zero/collection.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/property.h>
#include <quay/zero/report.h>
#include <quay/zero/value.h>

#include <quay0/messages.h>

namespace quay::zero {

namespace {

/// The last step of the open savepoint if it is a change of that kind to that collection; else null.
template <class C>
C* lastStep(Journal& journal, AbstractOwnedCollection const& collection) noexcept {
    Step* const last = journal.lastStep();
    C* const change = last == nullptr ? nullptr : last->as<C>();
    return change != nullptr && change->collection == &collection ? change : nullptr;
}

}  // namespace

void RecordedCollection::modifying() {
    if (!recording() || lastStep<AnnouncementStep>(journal(), *this) != nullptr) return;
    reserveStep();
    record(AnnouncementStep{this});
}

void RecordedCollection::recordInsertion(std::size_t position) {
    auto* const last = lastStep<RunStep>(journal(), *this);
    RunStep next{this, true, position, 1, {}, nullptr};
    if (last != nullptr && last->continuesWith(next)) {
        ++last->count;
        return;
    }
    reserveStep();
    record(std::move(next));
}

AbstractOwnedCollection::Operation::Operation(AbstractOwnedCollection& collection) {
    ModelElement::Impl* const owner = collection.owner();
    if (owner == nullptr) return;
    owner->requireWritable();
    savepoint_.emplace(owner->model().journal(), false);
}

void AbstractOwnedCollection::Operation::commit() {
    if (savepoint_) savepoint_->commit();
}

meta::Type ReferenceCollection::getCollectionType() const { return memberClass(); }

void ReferenceCollection::checkCompatibleModel(ModelElement::Impl* e) const {
    if (owner() == nullptr) return;
    owner()->requireWritable();
    owner()->checkCompatibleModel(e, std::uint64_t{index()});
}

ModelElement ReferenceCollection::resolveProxy(ModelElement const& e) const {
    if (owner() == nullptr) return e;
    ModelElement const found = owner()->model().resolveProxy(owner(), e);
    return owner()->isAlive() ? found : e;  // the resolver may have destroyed the owner, or released the model
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
    for (ModelElement const& e : members) {
        requireMemberClass(e);
        checkCompatibleModel(e.impl());
    }
    Operation operation(*this);
    clear();
    // Clearing the other collection first avoids that each member is searched for and removed there singly.
    if (other != this && other->owner() != nullptr) const_cast<ReferenceCollection*>(other)->clear();
    for (ModelElement const& e : members) getGenericInterface()->genericAdd(e);
    operation.commit();
}

bool ReferenceCollection::isMemberClass(ModelElement const& e) const noexcept { return conformsTo(e, memberTable()); }

std::unique_ptr<AbstractOwnedCollection> ReferenceCollection::filled(ReferenceCollection* made) const {
    std::unique_ptr<AbstractOwnedCollection> copy(made);
    made->basicCopyValues(*this);
    return copy;
}

void ReferenceCollection::requireMemberClass(ModelElement const& e) const {
    if (isMemberClass(e)) return;
    meta::MetaElement const& given = e->getMetaClass();
    meta::MetaElement const& wanted = memberClass();
    reportException(quay0::messages::CannotAddIncompatibleTypes(given->getQualifiedName(), wanted->getQualifiedName())
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
