#include "transactions.h"

#include "errors.h"

namespace host {
namespace {

PyObject* enter(PyObject* self, PyObject*) noexcept {
    Py_INCREF(self);
    return self;
}

PyObject* leave(PyObject* self, PyObject* const* arguments, Py_ssize_t count) noexcept {
    bool const failed = count > 0 && arguments[0] != Py_None;
    PyObject* const answer = PyObject_CallMethod(self, failed ? "rollback" : "commit", nullptr);
    if (answer == nullptr) {
        return nullptr;
    }
    Py_DECREF(answer);
    Py_RETURN_FALSE;
}

PyMethodDef methods[] = {
    {"__enter__", enter, METH_NOARGS, "The transaction itself, which is open already."},
    {"__exit__", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(leave)), METH_FASTCALL,
     "Commits, or rolls back if an exception leaves the block."},
};

}  // namespace

void addTransactionMethods(PyTypeObject* type) {
    for (PyMethodDef& method : methods) {
        Ref const descriptor(PyDescr_NewMethod(type, &method));
        checked(PyObject_SetAttrString(reinterpret_cast<PyObject*>(type), method.ml_name, descriptor.get()));
    }
}

}  // namespace host
