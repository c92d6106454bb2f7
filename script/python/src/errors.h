// The boundary: no exception of C++ gets past it, and every failure becomes an error of the interpreter's.
#pragma once

#include "python.h"

#include <string>
#include <utility>

namespace host {

/// Takes over the classes of errors, by the families of ordo::ErrorKind in order.
void setErrorClasses(PyObject* classes);

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

/// Whether the error that is set is an AttributeError, which it then isn't any more.
bool clearAttributeError() noexcept;

}  // namespace host
