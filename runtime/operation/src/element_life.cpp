// How elements are created and destroyed.
#include <quay/zero/builder.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/owned_collection.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>
#include <quay/zero/text.h>

#include <quay0/messages.h>

namespace quay::zero {

namespace {

ModelImpl& requireModel(Model const& model) {
    if (!model) reportException(quay0::messages::CannotCreateWithoutModel());
    return *model.impl();
}

}  // namespace

ModelElement::Impl::Impl(Model const& model, boost::uuids::uuid const& id)
    : ElementImpl(id), model_(&requireModel(model)) {
    if (id.is_nil()) {
        id_ = model_->elements().drawId();
    } else if (model_->elements().find(id) != nullptr) {
        reportException(quay0::messages::UniquenessConstraint().about(u"element id").withValue(textOf(id)));
    }
}

ModelElement::Impl::Impl(Builder& builder, boost::uuids::uuid const& id) : Impl(builder.getModel(), id) {}

ModelElement::Impl::~Impl() {
    if (isProxy()) model_->proxies().forget(*this);
}

void ModelElement::Impl::removeRef() const noexcept { ElementImpl::removeRef(); }

Model ModelElement::Impl::getModel() const { return model_->isAlive() ? Model(model_) : Model(); }

std::u16string ModelElement::Impl::identifier() const { return getMetaClass()->getName() + u" " + textOf(uuid()); }

void ModelElement::Impl::notifyCreated() {
    if (ElementDirectory::wasEntered(*this)) return;
    model_->journal().recordBirth(*this);
    didCreate();
}

void ModelElement::Impl::destroy() {
    if (!isAlive()) return;
    ModelElement const alive(this);
    Savepoint savepoint(model_->journal());
    destroyNow(false, true, false);
    savepoint.commit();
}

void ModelElement::Impl::destroyRecursively(bool a, bool detach, bool b) {
    if (!isAlive()) return;
    ModelElement const alive(this);
    ImplicitTransaction transaction(model_->journal());
    destroyNow(a, detach, b);
    transaction.commit();
}

/// Destroys the element in an open transaction. The caller holds a reference.
void ModelElement::Impl::destroyNow(bool a, bool detach, bool b) {
    aboutToDestroy();
    model_->proxies().leaveReferences(*this);
    if (detach && container_ != nullptr) {
        Impl* const owner = container_;
        ModelElement const held(owner);
        if (PropertyDescriptor const* descriptor = owner->classTable().descriptorAt(containmentIndex_)) {
            descriptor->leave(*owner, ModelElement(this));
        }
        model_->journal().setContainer(*this, nullptr, 0);
    }
    doDestroy(a, b);
}

void ModelElement::Impl::doDestroy(bool a, bool b) {
    for (ClassTable const* level = hasOwned() ? &classTable() : nullptr; level != nullptr; level = level->base()) {
        for (PropertyDescriptor const* descriptor : level->descriptors()) {
            if (descriptor->ownsElements()) descriptor->destroyChildren(*this, a, b);
        }
    }
    model_->journal().setContainer(*this, nullptr, 0);
    model_->journal().recordDeath(*this);
}

void ModelElement::Impl::invalidate() {
    if (m_callback == nullptr) return;
    for (ClassTable const* level = &classTable(); level != nullptr; level = level->base()) {
        // The order within a class is that of the fields: collections of values come before those of children.
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

}  // namespace quay::zero
