// How elements contain each other.
#include <quay/zero/collection.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

namespace quay::zero {

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
    model_->journal().setContainer(*this, owner, static_cast<std::uint16_t>(owner == nullptr ? 0 : index));
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
    model_->journal().setContainer(*child, this, static_cast<std::uint16_t>(index));
}

void ModelElement::Impl::_basicSetUncontained(Impl* child) { model_->journal().setContainer(*child, nullptr, 0); }

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

}  // namespace quay::zero
