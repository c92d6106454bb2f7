#include <quay/zero/changes.h>
#include <quay/zero/collection.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>
#include <quay/zero/value.h>

#include <quay0/messages.h>

namespace quay::zero {

ReflectionPrivateTag const ReflectionPrivateTag::PUBLIC_ACCESS;
ReflectionPrivateTag const ReflectionPrivateTag::NO_PROXY_RESOLVE;
ReflectionPrivateTag const ReflectionPrivateTag::IN_MEMORY_ONLY;

namespace {

ModelImpl& requireModel(Model const& model) {
    if (!model) reportException(quay0::messages::CannotCreateWithoutModel());
    return *model.impl();
}

}  // namespace

// --- Life -----------------------------------------------------------------------------------------------------------

ModelElement::Impl::Impl(Model const& model, boost::uuids::uuid const& id)
    : ElementImpl(id), model_(&requireModel(model)) {
    if (id.is_nil()) {
        id_ = model_->drawId();
    } else if (model_->findElement(id, FindElementBehavior::InMemoryOnly).impl() != nullptr) {
        reportException(quay0::messages::UniquenessConstraint().about(u"element id").withValue(textOf(id)));
    }
}

ModelElement::Impl::~Impl() {
    if (isProxy()) model_->forgetProxy(*this);
}

void ModelElement::Impl::removeRef() const noexcept { ElementImpl::removeRef(); }

Model ModelElement::Impl::getModel() const { return model_->isAlive() ? Model(model_) : Model(); }

std::u16string ModelElement::Impl::identifier() const { return getMetaClass()->getName() + u" " + textOf(uuid()); }

void ModelElement::Impl::notifyCreated() {
    model_->enter(*this);
    didCreate();
}

void ModelElement::Impl::destroy() {
    if (!isAlive()) return;
    ModelElement const alive(this);
    Savepoint savepoint(*model_);
    takeDown(false, true, false);
    savepoint.commit();
}

void ModelElement::Impl::destroyRecursively(bool a, bool detach, bool b) {
    if (!isAlive()) return;
    ModelElement const alive(this);
    ImplicitTransaction transaction(*model_);
    takeDown(a, detach, b);
    transaction.commit();
}

/// What destroying is, in an open transaction, for an element that somebody holds.
void ModelElement::Impl::takeDown(bool a, bool detach, bool b) {
    aboutToDestroy();
    if ((flags_ & kGuest) != 0) model_->dismissGuest(*this);
    if (detach && container_ != nullptr) {
        Impl* const owner = container_;
        ModelElement const held(owner);
        if (PropertyDescriptor const* descriptor = owner->classTable().descriptorAt(containmentIndex_)) {
            descriptor->leave(*owner, ModelElement(this));
        }
        model_->setContainer(*this, nullptr, 0);
    }
    doDestroy(a, b);
}

void ModelElement::Impl::doDestroy(bool a, bool b) {
    for (ClassTable const* level = hasOwned() ? &classTable() : nullptr; level != nullptr; level = level->base()) {
        for (PropertyDescriptor const* descriptor : level->descriptors()) {
            if (descriptor->ownsElements()) descriptor->destroyChildren(*this, a, b);
        }
    }
    model_->setContainer(*this, nullptr, 0);
    model_->bury(*this);
}

void ModelElement::Impl::invalidate() {
    if (m_callback == nullptr) return;
    for (ClassTable const* level = &classTable(); level != nullptr; level = level->base()) {
        // In the order of the fields: collections of values come before those of children.
        for (PropertyKind const kind : {PropertyKind::PrimitiveCollection, PropertyKind::ElementCollection}) {
            for (PropertyDescriptor const* descriptor : level->descriptors()) {
                if (descriptor->kind() == kind) m_callback(this, descriptor->collection(*this));
            }
        }
    }
}

void ModelElement::Impl::refuseWrite() const {
    if (isProxy()) refuseProxy();
    reportException(quay0::messages::CannotAddNonExistentObject().about(identifier()));
}

void ModelElement::Impl::refuseProxy() const {
    reportException(quay0::messages::CannotModifyProxy().about(identifier()));
}

// --- Change tracking ------------------------------------------------------------------------------------------------

void ModelElement::Impl::notifyModifying(unsigned long index) {
    requireWritable();
    PropertyDescriptor const* const descriptor = classTable().descriptorAt(index);
    if (descriptor == nullptr) return;
    if (!model_->inTransaction()) {
        model_->noteUnrecorded();
        return;
    }
    if (AbstractOwnedCollection* const collection = descriptor->collection(*this)) {
        collection->modifying();
    } else if (!model_->isRecorded(*this, *descriptor)) {
        Cell present;
        descriptor->save(*this, present);
        Cell* kept = nullptr;
        try {
            kept = &model_->record(*this, *descriptor);
        } catch (...) {
            descriptor->discard(present);
            throw;
        }
        descriptor->relocate(present, *kept);
    }
}

ModelElement::Impl::Changes* ModelElement::Impl::createChanges() const {
    meta::Class const& metaClass = getMetaClass();
    return new Changes(uuid(), getModel(), metaClass, metaClass->getHighestIndex());
}

Storage* ModelElement::Impl::createStorage() const { return new Storage(const_cast<Impl&>(*this)); }

void ModelElement::Impl::copyValue(Storage* storage, unsigned long index) const {
    PropertyDescriptor const* const descriptor = classTable().descriptorAt(index);
    if (descriptor == nullptr) return;
    Cell present;
    descriptor->save(*this, present);
    if (Cell* const kept = storage->find(index)) {
        descriptor->discard(*kept);
        descriptor->relocate(present, *kept);
        return;
    }
    Cell* kept = nullptr;
    try {
        kept = &storage->add(*descriptor);
    } catch (...) {
        descriptor->discard(present);
        throw;
    }
    descriptor->relocate(present, *kept);
}

void ModelElement::Impl::copyStateFromStorage(Storage* storage) {
    requireWritable();
    Model const alive = getModel();
    for (unsigned long const index : storage->indices()) {
        notifyModifying(index);
        classTable().descriptorAt(index)->restore(*this, *storage->find(index));
    }
}

// --- Reflection -----------------------------------------------------------------------------------------------------

meta::Property ModelElement::Impl::getPropertyByIndex(unsigned long index) const {
    return getMetaClass()->getPropertyByIndex(index);
}

PropertyDescriptor const* ModelElement::Impl::descriptorOf(meta::Property const& property) const noexcept {
    return classTable().descriptorOf(property);
}

namespace {

[[noreturn]] void reportNoSuchProperty(ModelElement::Impl const& e, meta::Property const& property) {
    std::u16string const name = property.impl() == nullptr ? std::u16string() : property->getName();
    reportException(quay0::messages::NoSuchProperty(name, e.getMetaClass()->getQualifiedName()));
}

}  // namespace

bool ModelElement::Impl::hasPropertyValue(meta::Property const& property, ReflectionPrivateTag const& /*tag*/) const {
    PropertyDescriptor const* const descriptor = descriptorOf(property);
    return descriptor != nullptr && descriptor->has(*this);
}

Value ModelElement::Impl::getPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const {
    PropertyDescriptor const* const descriptor = descriptorOf(property);
    if (descriptor == nullptr) reportNoSuchProperty(*this, property);
    return descriptor->get(*this, property, tag);
}

void ModelElement::Impl::setPropertyValue(meta::Property const& property, Value const& value,
                                          ReflectionPrivateTag const& tag) {
    PropertyDescriptor const* const descriptor = descriptorOf(property);
    if (descriptor == nullptr) reportNoSuchProperty(*this, property);
    descriptor->set(*this, property, value, tag);
}

// --- Containment ----------------------------------------------------------------------------------------------------

ModelElement ModelElement::Impl::basicContainer() const {
    return isAlive() ? ModelElement(container_) : ModelElement();
}

ModelElement ModelElement::Impl::container() const {
    ModelElement const stored = basicContainer();
    return stored && stored->isProxy() ? model_->resolveProxy(this, stored) : stored;
}

meta::Property ModelElement::Impl::containmentFeature() const {
    if (!isAlive() || container_ == nullptr) return {};
    return container_->getPropertyByIndex(containmentIndex_);
}

void ModelElement::Impl::basicSetContainer(Impl* owner, unsigned long index) {
    model_->setContainer(*this, owner, static_cast<std::uint16_t>(owner == nullptr ? 0 : index));
}

void ModelElement::Impl::basicSetContainer(Impl* owner, meta::Property const& property, unsigned long index) {
    basicSetContainer(owner, property.impl() == nullptr ? index : property->getIndex());
}

void ModelElement::Impl::_setContainedByThis(Impl* child, meta::Property const& property) {
    _setContainedByThis(child, property->getIndex());
}

void ModelElement::Impl::_setContainedByThis(Impl* child, unsigned long index) {
    if (child->container_ == this && child->containmentIndex_ == index) return;
    if (child->container_ != nullptr) {
        Impl* const former = child->container_;
        if (PropertyDescriptor const* descriptor = former->classTable().descriptorAt(child->containmentIndex_)) {
            descriptor->leave(*former, ModelElement(child));
        }
    }
    model_->setContainer(*child, this, static_cast<std::uint16_t>(index));
}

void ModelElement::Impl::_basicSetUncontained(Impl* child) { model_->setContainer(*child, nullptr, 0); }

void ModelElement::Impl::checkCompatibleModel(Impl* other, meta::Property const& property) const {
    checkCompatibleModel(other, property.impl() == nullptr ? 0UL : property->getIndex());
}

void ModelElement::Impl::checkCompatibleModel(Impl* other, unsigned long index) const {
    if (other == nullptr) return;
    if (!other->isAlive()) reportException(quay0::messages::CannotAddNonExistentObject().about(nameOf(index)));
    if (other->model_ != model_) {
        reportException(quay0::messages::CannotCreateCrossModelAssociation().about(nameOf(index)));
    }
    for (Impl const* above = this; above != nullptr; above = above->container_) {
        if (above == other) {
            reportException(
                quay0::messages::InvalidValue().about(nameOf(index)).withValue(u"an element that contains it"));
        }
    }
}

std::u16string ModelElement::Impl::nameOf(unsigned long index) const {
    meta::Property const property = getPropertyByIndex(index);
    std::u16string const& owner = getMetaClass()->getName();
    return property.impl() == nullptr ? owner : owner + u"." + property->getName();
}

void ModelElement::Impl::inverseAdd(ModelElement const& child, meta::Property const& property) {
    if (PropertyDescriptor const* const descriptor = descriptorOf(property)) descriptor->join(*this, child);
}

void ModelElement::Impl::inverseRemove(ModelElement const& child, meta::Property const& property) {
    if (PropertyDescriptor const* const descriptor = descriptorOf(property)) descriptor->leave(*this, child);
}

bool ModelElement::Impl::inverseContainsProxyTo(ModelElement const&, meta::Property const&) const { return false; }

void ModelElement::Impl::_inverseAddThis(Impl* other, meta::Property const& property, bool /*force*/) {
    other->inverseAdd(ModelElement(this), property);
}

void ModelElement::Impl::_inverseRemoveThis(Impl* other, meta::Property const& property) {
    other->inverseRemove(ModelElement(this), property);
}

bool ModelElement::Impl::_inverseContainsThis(Impl* other, meta::Property const& property) const {
    return other->inverseContainsProxyTo(ModelElement(const_cast<Impl*>(this)), property);
}

void ModelElement::Impl::basicDisassociateAll() {
    for (ClassTable const* level = &classTable(); level != nullptr; level = level->base()) {
        for (PropertyDescriptor const* descriptor : level->descriptors()) {
            if (descriptor->ownsElements()) descriptor->disassociate(*this);
        }
    }
}

void ModelElement::Impl::_basicAdd(ReferenceCollection* collection, ModelElement const& element) {
    collection->basicAddWithProxy(element);
}
void ModelElement::Impl::_basicRemove(ReferenceCollection* collection, ModelElement const& element) {
    collection->basicRemove(element);
}
void ModelElement::Impl::_basicClear(ReferenceCollection* collection) { collection->basicClear(); }
void ModelElement::Impl::_basicCopyValues(ReferenceCollection* target, ReferenceCollection const* source) {
    source == nullptr ? target->basicClear() : target->basicCopyValues(*source);
}

// --- Proxies --------------------------------------------------------------------------------------------------------

ProxyId ModelElement::Impl::getProxyId() const {
    ProxyId const* const id = model_->proxyIdOf(*this);
    return id == nullptr ? ProxyId(uuid()) : *id;
}

ProxyId ModelElement::Impl::getPersistentProxyId(bool withStore) const {
    if (isProxy()) return getProxyId();
    return withStore ? ProxyId(model_->storeName(), uuid()) : ProxyId(uuid());
}

}  // namespace quay::zero
