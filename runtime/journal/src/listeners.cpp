#include <quay/zero/diagnostics.h>
#include <quay/zero/listeners.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include <exception>

namespace quay::zero {

// A listener may add and remove listeners while it is called, so the list is replaced rather than changed.

std::uint64_t Listeners::add(Listener listener) {
    auto next = std::make_shared<std::vector<Numbered>>();
    if (all_) *next = *all_;
    next->push_back({last_ + 1, std::move(listener)});
    all_ = std::move(next);
    return ++last_;
}

void Listeners::remove(std::uint64_t id) {
    if (!all_) return;
    auto next = std::make_shared<std::vector<Numbered>>(*all_);
    std::erase_if(*next, [&](Numbered const& l) { return l.id == id; });
    all_ = next->empty() ? nullptr : std::move(next);
}

/// A listener that fails doesn't affect the commit, which stands, nor the other listeners.
void Listeners::callAll(ChangeSet const& changes) noexcept {
    constexpr char const* kPlace = "a listener of a model";
    auto const all = all_;
    for (Numbered const& listener : *all) {
        try {
            listener.call(changes);
        } catch (std::exception const& e) {
            emitDiagnostic(DiagnosticLevel::Error, e.what(), kPlace);
        } catch (...) {
            emitDiagnostic(DiagnosticLevel::Error, "an exception of an unknown type", kPlace);
        }
    }
}

void Listeners::requireUnlocked() const {
    requireNotTelling();
    if (isFrozen()) reportException(quay0::messages::ModelIsFrozen());
}

void Listeners::requireNotTelling() const {
    if (telling_) reportException(quay0::messages::ListenerMayNotWrite());
}

}  // namespace quay::zero
