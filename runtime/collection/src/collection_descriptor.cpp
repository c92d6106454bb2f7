#include <quay/zero/collection_descriptor.h>
#include <quay/zero/meta/property.h>
#include <quay/zero/value.h>

namespace quay::zero {

namespace {

/// The cell holds a detached copy of the content, or null if the content was empty.
using Copy = std::unique_ptr<AbstractOwnedCollection>;

}  // namespace

void CollectionDescriptor::save(ModelElement::Impl const& e, Cell& old) const {
    AbstractOwnedCollection const& content = *collection(e);
    old.emplace<Copy>(content.holdsNothing() ? nullptr : content.detachedCopy());
}

void CollectionDescriptor::exchange(ModelElement::Impl& /*e*/, Cell& /*old*/) const noexcept {}

void CollectionDescriptor::restore(ModelElement::Impl& e, Cell const& old) const {
    Copy const& copy = old.get<Copy>();
    collection(e)->basicCopyContents(copy.get());
}

bool CollectionDescriptor::unchanged(ModelElement::Impl const& e, Cell const& old) const {
    Copy const& copy = old.get<Copy>();
    return copy == nullptr ? collection(e)->empty() : collection(e)->sameByRule(*copy);
}

void CollectionDescriptor::discard(Cell& old) const noexcept { old.drop<Copy>(); }
void CollectionDescriptor::relocate(Cell& from, Cell& to) const noexcept { from.moveTo<Copy>(to); }

Value CollectionDescriptor::wrap(ModelElement::Impl const& e, meta::Property const& property, Cell& old) const {
    Copy& copy = old.get<Copy>();
    if (copy == nullptr) {
        copy = collection(e)->detachedCopy();
        copy->clear();
    }
    return {ValueMeta(property), copy.get()};
}

Value CollectionDescriptor::get(ModelElement::Impl const& e, meta::Property const& property,
                                ReflectionPrivateTag const& tag) const {
    AbstractOwnedCollection* const content = collection(e);
    if (tag.mayResolve()) content->prepareForReading();
    return {ValueMeta(property), content};
}

void CollectionDescriptor::set(ModelElement::Impl& e, meta::Property const& /*property*/, Value const& value,
                               ReflectionPrivateTag const& /*tag*/) const {
    collection(e)->assignValue(value);
}

}  // namespace quay::zero
