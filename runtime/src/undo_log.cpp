#include <quay/zero/collection.h>
#include <quay/zero/model.h>
#include <quay/zero/undo_log.h>

#include "slot_resolution.h"

#include <algorithm>

namespace quay::zero {

// Storages and steps go first: they point at elements that the last births and deaths may let go.
void UndoLog::discard() noexcept {
    while (storages != nullptr) {
        Storage* const s = storages;
        storages = s->next_;
        s->element().model().giveBack(s);
    }
    if (!steps.empty() || !lives.empty()) discardFrom(0, 0);
    done = true;
}

void UndoLog::discardFrom(std::size_t step, std::size_t life) noexcept {
    for (std::size_t i = steps.size(); i-- > step;) {
        Step& s = steps[i];
        if (s.kind == StepKind::Contained) {
            if (s.count == 1) static_cast<ModelElement::Impl*>(s.subject)->removeRef();
        } else if (s.kind == StepKind::Resolved) {
            delete static_cast<SlotResolution*>(s.payload);
        } else if (s.payload != nullptr && s.kind != StepKind::Touched) {
            static_cast<AbstractOwnedCollection*>(s.subject)->discard(s);
        }
    }
    steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(step), steps.end());
    for (std::size_t i = lives.size(); i-- > life;) {
        bool const born = lives.back().born;
        std::size_t const count = lives.back().count;
        auto* e = lives.back().first;
        auto const* const last = lives.back().last;
        lives.pop_back();
        if (born && count == 0) e->removeRef();  // a proxy that came back: nobody else held it
        while (!born) {
            auto* const next = e == last ? nullptr : e->next_;
            e->model().letGo(*e);
            if (next == nullptr) break;
            e = next;
        }
    }
}

bool UndoLog::onlyResolves() const noexcept {
    return lives.empty() && std::all_of(steps.begin(), steps.end(), [](Step const& s) { return s.quiet; });
}

std::size_t UndoLog::lifeCount() const noexcept {
    std::size_t count = 0;
    for (LifeEntry const& entry : lives) count += entry.count;
    return count;
}

}  // namespace quay::zero
