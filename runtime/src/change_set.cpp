#include <quay/zero/change_set.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/property_row.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace quay::zero {

namespace {

bool changesCollection(Step const& step) noexcept { return step.kind != StepKind::Contained; }

/// A collection's steps in a log, in the order in which undoing them goes.
std::vector<Step*> stepsOf(UndoLog& log, AbstractOwnedCollection const& collection) {
    std::vector<Step*> result;
    for (Step& step : log.steps) {
        if (changesCollection(step) && step.kind != StepKind::Touched && step.subject == &collection) {
            result.push_back(&step);
        }
    }
    if (log.done) std::reverse(result.begin(), result.end());
    return result;
}

}  // namespace

// --- ElementChange --------------------------------------------------------------------------------------------------

std::vector<meta::Property> ElementChange::properties() const {
    std::vector<meta::Property> result;
    result.reserve(parts_.size());
    for (Part const& part : parts_) result.push_back(element_->getPropertyByIndex(part.index));
    return result;
}

Value ElementChange::oldValue(meta::Property const& property) const {
    PropertyRow const* const row = element_->rowOf(property);
    if (row == nullptr) return {};
    for (Part const& part : parts_) {
        if (part.index != row->index() || part.index == 0) continue;
        if (part.old != nullptr) return row->wrap(*element_.impl(), property, *part.old);
        return {ValueMeta(property), &set_->oldContent(*part.collection)};
    }
    return {};
}

Value ElementChange::newValue(meta::Property const& property) const {
    return element_->getPropertyValue(property, ReflectionPrivateTag::NO_PROXY_RESOLVE);
}

// --- ChangeSet ------------------------------------------------------------------------------------------------------

ChangeSet::ChangeSet(ModelImpl& model, UndoLog& log, std::uint64_t bornSince) : model_(model), log_(log) {
    auto const isNew = [&](ModelElement::Impl const& e) { return ModelImpl::isBornSince(e, bornSince); };
    // Creation appends, so what is new stands at the end of the list.
    for (auto* e = model.elements_.last(); e != nullptr && isNew(*e); e = ElementList::previous(*e)) {
        created_.emplace_back(e);
    }
    std::reverse(created_.begin(), created_.end());
    for (LifeEntry const& entry : log.lives) {
        if (!entry.born && entry.count > 0 && !isNew(*entry.first)) destroyed_.emplace_back(entry.first);
    }
    collect(isNew);
}

ChangeSet::ChangeSet(ModelImpl& model, UndoLog& log, std::vector<ModelElement> created,
                     std::vector<ModelElement> destroyed)
    : model_(model), log_(log), created_(std::move(created)), destroyed_(std::move(destroyed)) {
    // What came and went within the transaction is dead and in both lists.
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

    // A storage that could not be merged stands before an older one of the same element, whose values count.
    for (Storage* s = log_.storages; s != nullptr; s = s->next_) {
        if (!s->element().isAlive() || isNew(s->element())) continue;
        s->forEach([&](Storage::Entry& entry) {
            if (entry.row->unchanged(s->element(), entry.old)) return;
            auto& parts = partsOf(s->element());
            std::uint16_t const index = entry.row->index();
            std::erase_if(parts, [&](ElementChange::Part const& p) { return p.index == index; });
            parts.push_back({index, &entry.old, nullptr});
        });
    }

    std::vector<AbstractOwnedCollection*> touched;
    for (Step const& step : log_.steps) {
        if (changesCollection(step)) touched.push_back(static_cast<AbstractOwnedCollection*>(step.subject));
    }
    std::sort(touched.begin(), touched.end());
    touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
    for (AbstractOwnedCollection* collection : touched) {
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

/// Only a collection of at most one member can count as unchanged.
bool ChangeSet::isChanged(AbstractOwnedCollection& collection) const {
    if (collection.size() > 1) return true;
    return !collection.sameByRule(oldContent(collection));
}

/// The collection itself goes back to its old content for a moment, is copied, and comes forward again.
AbstractOwnedCollection& ChangeSet::oldContent(AbstractOwnedCollection& collection) const {
    for (auto const& [of, content] : oldContents_) {
        if (of == &collection) return *content;
    }
    std::vector<Step*> const steps = stepsOf(log_, collection);
    for (Step* step : steps) {
        if (step->kind == StepKind::Inserted) collection.prepare(*step);
    }
    oldContents_.reserve(oldContents_.size() + 1);
    for (Step* step : steps) collection.exchange(*step);
    std::unique_ptr<AbstractOwnedCollection> copy;
    auto const forward = [&] {
        for (auto step = steps.rbegin(); step != steps.rend(); ++step) collection.exchange(**step);
    };
    try {
        copy = collection.detachedCopy();
    } catch (...) {
        forward();
        throw;
    }
    forward();
    return *oldContents_.emplace_back(&collection, std::move(copy)).second;
}

}  // namespace quay::zero
