#include "diagnostics.h"

#include <quay/zero/diagnostics.h>

#include "errors.h"
#include "text.h"

namespace host {
namespace {

using quay::zero::Diagnostic;
using quay::zero::DiagnosticLevel;

char const* methodFor(DiagnosticLevel level) noexcept {
    switch (level) {
        case DiagnosticLevel::Note:
            return "info";
        case DiagnosticLevel::Warning:
            return "warning";
        default:
            return "error";
    }
}

void log(Diagnostic const& diagnostic) {
    Ref const logging(PyImport_ImportModule("logging"));
    Ref const logger(PyObject_CallMethod(logging.get(), "getLogger", "s", "quay"));
    Ref const place = bytesToPython(diagnostic.place);
    Ref const text = bytesToPython(diagnostic.text);
    Ref const done(
        PyObject_CallMethod(logger.get(), methodFor(diagnostic.level), "sOO", "%s: %s", place.get(), text.get()));
}

/// A diagnostic may arise while an error is set, which stays set.
void logFromAnyThread(Diagnostic const& diagnostic) {
    if (Py_IsInitialized() == 0) return;
    PyGILState_STATE const state = PyGILState_Ensure();
    PyObject* type = nullptr;
    PyObject* error = nullptr;
    PyObject* trace = nullptr;
    PyErr_Fetch(&type, &error, &trace);
    try {
        log(diagnostic);
    } catch (PythonError const&) {
        PyErr_Clear();  // there is nobody to tell
    }
    PyErr_Restore(type, error, trace);
    PyGILState_Release(state);
}

}  // namespace

void logDiagnostics() { quay::zero::setDiagnosticHook(logFromAnyThread); }

}  // namespace host
