// Translation of failures: no C++ exception reaches the interpreter, and every failure becomes a Python error.
#pragma once

#include "python.h"

#include <string>
#include <utility>

namespace host {

/// Sets the Python classes of errors, ordered as the kinds of ordo::ErrorKind, unless they are set already: a program
/// may refer to them, also after it imported the Python packages again. Returns those that are set.
PyObject* setErrorClasses(PyObject* classes);

/// Sets the interpreter's error for the exception that is being handled.
void translateException() noexcept;

/// Runs `work`; gives `failed` with an error set if it throws.
template <class Work, class Result>
Result guarded(Result failed, Work&& work) noexcept {
    try {
        return std::forward<Work>(work)();
    } catch (...) {
        translateException();
        return failed;
    }
}

template <class Work>
PyObject* guarded(Work&& work) noexcept {
    try {
        return std::forward<Work>(work)();
    } catch (...) {
        translateException();
        return nullptr;
    }
}

/// "an object of type 'x'", for messages.
std::string describeObject(PyObject* object);

/// Clears the error that is set if it is an AttributeError, and returns whether it was.
bool clearAttributeError() noexcept;

}  // namespace host
