#include <quay/zero/collection_row.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/value.h>

namespace quay::zero {

namespace {

/// The cell holds a detached copy; null while the content was empty.
using Copy = std::unique_ptr<AbstractOwnedCollection>;

}  // namespace

void CollectionRow::save(ModelElement::Impl const& e, Cell& old) const {
    AbstractOwnedCollection const& content = *collection(e);
    old.emplace<Copy>(content.holdsNothing() ? nullptr : content.detachedCopy());
}

void CollectionRow::exchange(ModelElement::Impl& /*e*/, Cell& /*old*/) const noexcept {}

void CollectionRow::restore(ModelElement::Impl& e, Cell const& old) const {
    Copy const& copy = old.get<Copy>();
    collection(e)->basicCopyContents(copy.get());
}

bool CollectionRow::unchanged(ModelElement::Impl const& e, Cell const& old) const {
    Copy const& copy = old.get<Copy>();
    return copy == nullptr ? collection(e)->empty() : collection(e)->sameByRule(*copy);
}

void CollectionRow::discard(Cell& old) const noexcept { old.drop<Copy>(); }
void CollectionRow::relocate(Cell& from, Cell& to) const noexcept { from.moveTo<Copy>(to); }

Value CollectionRow::wrap(ModelElement::Impl const& e, meta::Property const& property, Cell& old) const {
    Copy& copy = old.get<Copy>();
    if (copy == nullptr) {
        copy = collection(e)->detachedCopy();
        copy->clear();
    }
    return {ValueMeta(property), copy.get()};
}

Value CollectionRow::get(ModelElement::Impl const& e, meta::Property const& property,
                         ReflectionPrivateTag const& tag) const {
    AbstractOwnedCollection* const content = collection(e);
    if (tag.mayResolve()) content->prepareForReading();
    return {ValueMeta(property), content};
}

void CollectionRow::set(ModelElement::Impl& e, meta::Property const& /*property*/, Value const& value,
                        ReflectionPrivateTag const& /*tag*/) const {
    collection(e)->assignValue(value);
}

}  // namespace quay::zero
