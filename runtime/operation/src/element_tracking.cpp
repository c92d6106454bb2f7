// How elements keep and restore the values of their properties.
#include <quay/zero/changes.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/owned_collection.h>
#include <quay/zero/property_descriptor.h>

namespace quay::zero {

void ModelElement::Impl::notifyModifying(unsigned long index) {
    requireWritable();
    PropertyDescriptor const* const descriptor = classTable().descriptorAt(index);
    if (descriptor == nullptr) return;
    Journal& journal = model_->journal();
    if (AbstractOwnedCollection* const collection = descriptor->collection(*this)) {
        collection->modifying();
    } else if (journal.admit(*this) == Admission::Recorded && !journal.isRecorded(*this, *descriptor)) {
        Cell present;
        descriptor->save(*this, present);
        Cell* kept = nullptr;
        try {
            kept = &journal.record(*this, *descriptor);
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

}  // namespace quay::zero
