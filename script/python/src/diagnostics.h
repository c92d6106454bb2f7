// Diagnostics of native code in Python's log.
#pragma once

namespace host {

/// Passes every diagnostic to the logger "quay" of the module `logging`.
void logDiagnostics();

}  // namespace host
