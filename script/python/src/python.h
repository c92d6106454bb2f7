// The interpreter's C interface, and helpers that make it safe to use from C++.
//
// Every function of the host runs with the interpreter's lock held. Whatever converts values may run code of scripts,
// which may do anything, so a native object is checked after its arguments are converted and right before it is used.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>
#include <structmember.h>

#include <utility>

namespace host {

/// Thrown when an error of the interpreter is set already; caught where C++ returns to the interpreter.
struct PythonError {};

/// A counted reference to a Python object, or null.
class Ref {
public:
    Ref() noexcept = default;
    /// Takes ownership of a result of the interpreter's functions; throws PythonError for null.
    explicit Ref(PyObject* owned) : object_(owned) {
        if (object_ == nullptr) {
            throw PythonError();
        }
    }
    static Ref borrow(PyObject* object) {
        Py_XINCREF(object);
        return Ref(object);
    }
    Ref(Ref const&) = delete;
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Ref& operator=(Ref const&) = delete;
    Ref& operator=(Ref&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() { Py_XDECREF(object_); }

    PyObject* get() const noexcept { return object_; }
    PyObject* release() noexcept { return std::exchange(object_, nullptr); }
    explicit operator bool() const noexcept { return object_ != nullptr; }

private:
    PyObject* object_ = nullptr;
};

/// Checks the result of interpreter functions that return -1 for an error; throws PythonError.
inline int checked(int result) {
    if (result < 0) {
        throw PythonError();
    }
    return result;
}

inline Ref none() { return Ref::borrow(Py_None); }

}  // namespace host
