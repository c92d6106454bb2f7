#include <quay/zero/change_set.h>
#include <quay/zero/meta/property.h>
#include <quay/zero/step.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace quay::zero {

// --- ElementChange --------------------------------------------------------------------------------------------------

std::vector<meta::Property> ElementChange::properties() const {
    std::vector<meta::Property> result;
    result.reserve(parts_.size());
    for (Part const& part : parts_) result.push_back(element_->getPropertyByIndex(part.index));
    return result;
}

Value ElementChange::oldValue(meta::Property const& property) const {
    PropertyDescriptor const* const descriptor = element_->descriptorOf(property);
    if (descriptor == nullptr) return {};
    for (Part const& part : parts_) {
        if (part.index != descriptor->index() || part.index == 0) continue;
        if (part.old != nullptr) return descriptor->wrap(*element_.impl(), property, *part.old);
        return {ValueMeta(property), &set_->oldContent(*part.collection)};
    }
    return {};
}

Value ElementChange::newValue(meta::Property const& property) const {
    return element_->getPropertyValue(property, ReflectionPrivateTag::NO_PROXY_RESOLVE);
}

// --- ChangeSet ------------------------------------------------------------------------------------------------------

ChangeSet::ChangeSet(ElementDirectory const& elements, UndoLog& log, std::uint64_t bornSince) : log_(log) {
    auto const isNew = [&](ModelElement::Impl const& e) { return ElementDirectory::isBornSince(e, bornSince); };
    // Elements are appended when they are created, so the new ones are at the end of the list.
    for (auto* e = elements.list().last(); e != nullptr && isNew(*e); e = ElementList::previous(*e)) {
        created_.emplace_back(e);
    }
    std::reverse(created_.begin(), created_.end());
    for (LifeEntry const& entry : log.lives) {
        if (!entry.born && entry.count > 0 && !isNew(*entry.first)) destroyed_.emplace_back(entry.first);
    }
    collect(isNew);
}

ChangeSet::ChangeSet(UndoLog& log, LifeChanges lives)
    : log_(log), created_(std::move(lives.revived)), destroyed_(std::move(lives.died)) {
    // Elements that were born and destroyed within the transaction are dead, and are in both lists.
    std::unordered_set<ModelElement::Impl const*> revived;
    for (ModelElement const& e : created_) revived.insert(e.impl());
    std::erase_if(created_, [](ModelElement const& e) { return !e; });
    std::erase_if(destroyed_, [&](ModelElement const& e) { return revived.contains(e.impl()); });
    collect([&](ModelElement::Impl const& e) { return revived.contains(&e); });
}

template <class IsNew>
void ChangeSet::collect(IsNew const& isNew) {
    std::unordered_map<ModelElement::Impl*, std::size_t> places;
    auto const partsOf = [&](ModelElement::Impl& e) -> std::vector<ElementChange::Part>& {
        auto const [place, fresh] = places.emplace(&e, changed_.size());
        if (fresh) changed_.push_back(ElementChange(*this, ModelElement(&e)));
        return changed_[place->second].parts_;
    };

    // If a storage couldn't be merged, it precedes an older one of the same element; the older values count.
    for (Storage* s = log_.storages; s != nullptr; s = s->tracking().next) {
        if (!s->element().isAlive() || isNew(s->element())) continue;
        s->forEach([&](PropertyDescriptor const& descriptor, Cell& old) {
            auto& parts = partsOf(s->element());
            std::uint16_t const index = descriptor.index();
            std::erase_if(parts, [&](ElementChange::Part const& p) { return p.index == index; });
            if (!descriptor.unchanged(s->element(), old)) parts.push_back({index, &old, nullptr});
        });
    }

    for (Step& step : log_.steps) {
        AbstractOwnedCollection* const collection = step.collection();
        if (collection == nullptr) continue;
        Touched& touched = touched_[collection];
        if (step.as<AnnouncementStep>() == nullptr) touched.steps.push_back(&step);
        touched.isChange = touched.isChange || !step.isResolution();
    }
    for (auto& [collection, touched] : touched_) {
        if (log_.isDone()) std::reverse(touched.steps.begin(), touched.steps.end());
        if (!touched.isChange) continue;
        ModelElement::Impl& owner = *collection->owner();
        if (!owner.isAlive() || isNew(owner)) continue;
        if (isChanged(*collection)) partsOf(owner).push_back({collection->index(), nullptr, collection});
    }

    std::erase_if(changed_, [](ElementChange const& c) { return c.parts_.empty(); });
    for (ElementChange& change : changed_) {
        std::sort(change.parts_.begin(), change.parts_.end(),
                  [](auto const& a, auto const& b) { return a.index < b.index; });
    }
}

/// Whether a collection with steps has changed. Only one of at most one member can count as unchanged.
bool ChangeSet::isChanged(AbstractOwnedCollection& collection) const {
    if (collection.size() > 1) return true;
    return !collection.sameByRule(oldContent(collection));
}

/// Reverses the collection's steps, copies the old content, and restores the present content.
AbstractOwnedCollection& ChangeSet::oldContent(AbstractOwnedCollection& collection) const {
    Touched& touched = touched_.at(&collection);
    if (touched.oldContent != nullptr) return *touched.oldContent;
    for (Step* step : touched.steps) step->prepare();
    for (Step* step : touched.steps) step->exchange();
    auto const forward = [&] {
        for (auto step = touched.steps.rbegin(); step != touched.steps.rend(); ++step) (*step)->exchange();
    };
    try {
        touched.oldContent = collection.detachedCopy();
    } catch (...) {
        forward();
        throw;
    }
    forward();
    return *touched.oldContent;
}

/// The first change that is looked at usually decides. The set is put together only if nothing changed except
/// collections of at most one member.
bool ChangeSet::isNothingLeft(ElementDirectory const& elements, UndoLog& log, std::uint64_t bornSince) {
    auto const isNew = [&](ModelElement::Impl const& e) { return ElementDirectory::isBornSince(e, bornSince); };
    for (Storage* s = log.storages; s != nullptr; s = s->tracking().next) {
        bool changed = false;
        if (s->element().isAlive() && !isNew(s->element())) {
            s->forEach([&](PropertyDescriptor const& descriptor, Cell& old) {
                changed = changed || !descriptor.unchanged(s->element(), old);
            });
        }
        if (changed) return false;
    }
    ModelElement::Impl const* const last = elements.list().last();
    if (last != nullptr && isNew(*last)) return false;
    for (LifeEntry const& entry : log.lives) {
        if (!entry.born && entry.count > 0 && !isNew(*entry.first)) return false;
    }
    bool unsure = false;
    for (Step const& step : log.steps) {
        AbstractOwnedCollection const* const collection = step.collection();
        if (collection == nullptr || step.isResolution()) continue;
        if (!collection->owner()->isAlive() || isNew(*collection->owner())) continue;
        if (collection->size() > 1) return false;
        unsure = true;
    }
    return !unsure || ChangeSet(elements, log, bornSince).empty();
}

}  // namespace quay::zero
