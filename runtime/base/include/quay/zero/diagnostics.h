// What the library has to say where nobody can catch an exception, such as a failing listener.
#pragma once

#include <keel/export.h>

#include <functional>
#include <string>
#include <string_view>

namespace quay::zero {

enum class DiagnosticLevel { Note, Warning, Error };

struct Diagnostic {
    DiagnosticLevel level;
    std::string text;   ///< UTF-8
    std::string place;  ///< what was being done, such as "a listener of a model"
};

/// Sets the function that is told of each diagnostic, or none with an empty one. The library itself writes no log, so
/// without a hook diagnostics are dropped. Any thread may call it. The hook is called by the thread in which the
/// diagnostic arises, at any time, so it may not use a model. What it throws is ignored.
QUAY_ZERO_API void setDiagnosticHook(std::function<void(Diagnostic const&)> hook);

/// Tells the hook.
QUAY_ZERO_API void emitDiagnostic(DiagnosticLevel level, std::string_view text, std::string_view place) noexcept;

}  // namespace quay::zero
