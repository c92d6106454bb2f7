#include <quay/zero/collection.h>
#include <quay/zero/model.h>
#include <quay/zero/undo_log.h>

#include <quay/zero/slot_resolution.h>

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
    for (std::size_t i = steps.size(); i-- > step;) letGo(steps[i]);
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

ModelElement::Impl* UndoLog::changedBy(Step const& step) noexcept {
    bool const isOfElement = step.kind == StepKind::Contained || step.kind == StepKind::Resolved;
    return isOfElement ? static_cast<ModelElement::Impl*>(step.subject)
                       : static_cast<AbstractOwnedCollection*>(step.subject)->owner();
}

void UndoLog::letGo(Step& step) noexcept {
    if (step.kind == StepKind::Contained) {
        if (step.count == 1) static_cast<ModelElement::Impl*>(step.subject)->removeRef();
    } else if (step.kind == StepKind::Resolved) {
        delete static_cast<SlotResolution*>(step.payload);
    } else if (step.payload != nullptr && step.kind != StepKind::Touched) {
        static_cast<AbstractOwnedCollection*>(step.subject)->discard(step);
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
