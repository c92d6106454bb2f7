#include <quay/zero/diagnostics.h>

#include <memory>
#include <mutex>
#include <utility>

namespace quay::zero {

namespace {

using Hook = std::function<void(Diagnostic const&)>;

struct Installed {
    std::mutex mutex;
    std::shared_ptr<Hook const> hook;  // null while there is none
};

/// Never destroyed, since diagnostics may arise while the process ends.
Installed& installed() {
    static auto& one = *new Installed;
    return one;
}

}  // namespace

void setDiagnosticHook(std::function<void(Diagnostic const&)> hook) {
    auto next = hook ? std::make_shared<Hook const>(std::move(hook)) : nullptr;
    std::lock_guard const lock(installed().mutex);
    installed().hook.swap(next);
}

void emitDiagnostic(DiagnosticLevel level, std::string_view text, std::string_view place) noexcept {
    try {
        std::shared_ptr<Hook const> hook;
        {
            std::lock_guard const lock(installed().mutex);
            hook = installed().hook;
        }
        if (hook != nullptr) (*hook)({level, std::string(text), std::string(place)});
    } catch (...) {  // NOLINT(bugprone-empty-catch): there is nobody left to tell
    }
}

}  // namespace quay::zero
