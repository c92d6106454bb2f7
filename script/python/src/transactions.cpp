#include "transactions.h"

#include "errors.h"
#include "objects.h"

#include <ordo/class.h>
#include <ordo/error.h>

namespace host {
namespace {

PyObject* enter(PyObject* self, PyObject*) noexcept {
    return guarded([&] {
        void const* const native = validNative(self);
        if (!instance(self).object->getClass().info().isOpenTransaction(native)) {
            ordo::raise(ordo::failures::TransactionEnded);
        }
        return Ref::borrow(self).release();
    });
}

/// Clears the error that is set if it says that the script has ended the transaction itself, and returns whether it
/// did.
bool clearInvalidHandle() noexcept {
    PyObject* type = nullptr;
    PyObject* error = nullptr;
    PyObject* trace = nullptr;
    PyErr_Fetch(&type, &error, &trace);
    PyErr_NormalizeException(&type, &error, &trace);
    PyObject* const identifier = PyObject_GetAttrString(error, "identifier");
    bool const isEnded = identifier != nullptr && PyUnicode_Check(identifier) &&
                         PyUnicode_CompareWithASCIIString(identifier, "ZELDRA:class:InvalidHandle") == 0;
    Py_XDECREF(identifier);
    PyErr_Restore(type, error, trace);
    if (isEnded) {
        PyErr_Clear();
    }
    return isEnded;
}

PyObject* leave(PyObject* self, PyObject* const* arguments, Py_ssize_t count) noexcept {
    bool const failed = count > 0 && arguments[0] != Py_None;
    PyObject* const answer = PyObject_CallMethod(self, failed ? "rollback" : "commit", nullptr);
    if (answer == nullptr && !clearInvalidHandle()) {
        return nullptr;
    }
    Py_XDECREF(answer);
    Py_RETURN_FALSE;
}

PyMethodDef methods[] = {
    {"__enter__", enter, METH_NOARGS,
     "The transaction itself, which is open already. Raises ordo.Error if it has ended."},
    {"__exit__", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(leave)), METH_FASTCALL,
     "Commits, or rolls back if an exception leaves the block. Does nothing if the block ended the transaction itself; "
     "raises ordo.Error if it was ended otherwise."},
};

}  // namespace

void addTransactionMethods(PyTypeObject* type) {
    for (PyMethodDef& method : methods) {
        Ref const descriptor(PyDescr_NewMethod(type, &method));
        checked(PyObject_SetAttrString(reinterpret_cast<PyObject*>(type), method.ml_name, descriptor.get()));
    }
}

}  // namespace host
