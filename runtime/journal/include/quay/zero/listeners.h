// The listeners of a model, and the locks that keep it from being written.
#pragma once

#include <keel/export.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace quay::zero {

class ChangeSet;

/// The listeners of a model and its two locks: the model can't be written while it is frozen, and while listeners are
/// being told.
class QUAY_ZERO_API Listeners {
public:
    using Listener = std::function<void(ChangeSet const&)>;

    bool any() const noexcept { return all_ != nullptr; }
    std::uint64_t add(Listener listener);
    void remove(std::uint64_t id);
    /// Calls every listener. What a listener throws becomes a diagnostic, and the others are still called. The model is
    /// locked meanwhile; `lockChanged` is called after it was locked and after it was unlocked.
    template <class F>
    void tell(ChangeSet const& changes, F&& lockChanged) noexcept {
        telling_ = true;
        lockChanged();
        callAll(changes);
        telling_ = false;
        lockChanged();
    }

    bool isTelling() const noexcept { return telling_; }
    bool isFrozen() const noexcept { return freezes_ != 0; }
    /// Adds or removes a freeze. The model is frozen while there is any.
    void freeze() noexcept { ++freezes_; }
    void thaw() noexcept { --freezes_; }
    bool isLocked() const noexcept { return telling_ || isFrozen(); }
    /// Raises ListenerMayNotWrite while listeners are being told, ModelIsFrozen while the model is frozen.
    void requireUnlocked() const;
    /// Raises ListenerMayNotWrite while listeners are being told.
    void requireNotTelling() const;

private:
    struct Numbered {
        std::uint64_t id;
        Listener call;
    };

    void callAll(ChangeSet const& changes) noexcept;

    std::shared_ptr<std::vector<Numbered> const> all_;  // null while there is none
    std::uint64_t last_ = 0;
    int freezes_ = 0;
    bool telling_ = false;
};

}  // namespace quay::zero
