#include <quay/zero/step.h>
#include <quay/zero/undo_log.h>

#include <algorithm>
#include <utility>

namespace quay::zero {

UndoLog::UndoLog() noexcept = default;
UndoLog::~UndoLog() = default;

UndoLog::UndoLog(UndoLog&& other) noexcept { swap(other); }
UndoLog& UndoLog::operator=(UndoLog&& other) noexcept {
    swap(other);
    return *this;
}

void UndoLog::swap(UndoLog& other) noexcept {
    lives.swap(other.lives);
    steps.swap(other.steps);
    std::swap(storages, other.storages);
    std::swap(done_, other.done_);
}

bool UndoLog::empty() const noexcept { return lives.empty() && steps.empty() && storages == nullptr; }

void UndoLog::reserveSteps(std::size_t more) {
    if (steps.capacity() - steps.size() < more) {
        steps.reserve(std::max(steps.size() + more, 2 * steps.capacity()));
    }
}

void UndoLog::moveSteps(UndoLog& to) noexcept {
    for (Step& step : steps) to.steps.push_back(std::move(step));
    steps.clear();
}

// Storages and steps are discarded first: they refer to elements that discarding births and deaths may release.
void UndoLog::discard(Disposal& to) noexcept {
    while (storages != nullptr) {
        Storage& s = *storages;
        storages = s.tracking().next;
        to.giveBack(s);
    }
    if (!steps.empty() || !lives.empty()) discardFrom(0, 0, to);
    done_ = true;
}

void UndoLog::discardFrom(std::size_t step, std::size_t life, Disposal& to) noexcept {
    while (steps.size() > step) steps.pop_back();
    while (lives.size() > life) {
        LifeEntry const entry = lives.back();
        lives.pop_back();
        if (entry.born && entry.count == 0) entry.first->removeRef();  // a proxy: only the entry referred to it
        for (ModelElement::Impl* e = entry.born ? nullptr : entry.first; e != nullptr;) {
            auto* const next = e == entry.last ? nullptr : ElementList::next(*e);
            to.release(*e);
            e = next;
        }
    }
}

void UndoLog::reverse(ElementDirectory& elements, LifeChanges* changes) noexcept {
    // If an element has two storages, their order matters, so the list is reversed as well.
    Storage* turned = nullptr;
    while (Storage* const s = storages) {
        s->exchange();
        storages = std::exchange(s->tracking().next, turned);
        turned = s;
    }
    storages = turned;
    exchangeSteps(0);
    exchangeLives(0, elements, changes);
    done_ = !done_;
}

void UndoLog::exchangeSteps(std::size_t from) noexcept {
    if (done_) {
        for (std::size_t i = steps.size(); i-- > from;) steps[i].exchange();
    } else {
        for (Step& step : steps) step.exchange();
    }
}

void UndoLog::exchangeLives(std::size_t from, ElementDirectory& elements, LifeChanges* changes) noexcept {
    auto const exchange = [&](LifeEntry& entry) {
        if (entry.born) {
            for (auto* e = entry.last; changes != nullptr; e = ElementList::previous(*e)) {
                changes->died.emplace_back(e);
                if (e == entry.first) break;
            }
            elements.takeOut(*entry.first, *entry.last, entry.count);
        } else {
            for (auto* e = entry.first; changes != nullptr; e = ElementList::next(*e)) {
                changes->revived.emplace_back(e);
                if (e == entry.last) break;
            }
            elements.putBack(*entry.first, *entry.last, entry.count);
        }
        entry.born = !entry.born;
    };
    if (done_) {
        for (std::size_t i = lives.size(); i-- > from;) exchange(lives[i]);
    } else {
        std::for_each(lives.begin(), lives.end(), exchange);
    }
}

bool UndoLog::onlyResolves() const noexcept {
    return lives.empty() && std::all_of(steps.begin(), steps.end(), [](Step const& s) { return s.isResolution(); });
}

std::size_t UndoLog::lifeCount() const noexcept {
    std::size_t count = 0;
    for (LifeEntry const& entry : lives) count += entry.count;
    return count;
}

}  // namespace quay::zero
