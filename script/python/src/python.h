// The interpreter's interface, and the few things that make it safe to use from C++.
//
// Every function of the host runs with the interpreter's lock held. Whatever converts values may run code of scripts,
// which may do anything, so a native object is checked after its arguments are converted and right before it is used.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>
#include <structmember.h>

#include <utility>

namespace host {

/// Thrown where an error of the interpreter's is set, to get to the boundary.
struct PythonError {};

/// A counted reference that one owns, or null.
class Ref {
public:
    Ref() noexcept = default;
    /// Takes over what a function of the interpreter gave; null there is an error.
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

/// For functions of the interpreter that answer -1 for an error.
inline int checked(int result) {
    if (result < 0) {
        throw PythonError();
    }
    return result;
}

inline Ref none() { return Ref::borrow(Py_None); }

}  // namespace host
