// The baseline for scripts: a class written by hand in the interpreter's C interface, with an attribute and a method
// that makes a child and keeps it. No change tracking, no ids, no transactions.
#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>
#include <vector>

namespace {

struct Port {
    PyObject_HEAD std::int32_t count;
    std::vector<PyObject*>* children;
};

Port& portOf(PyObject* object) { return *reinterpret_cast<Port*>(object); }

PyObject* getCount(PyObject* self, void*) { return PyLong_FromLong(portOf(self).count); }

int setCount(PyObject* self, PyObject* value, void*) {
    long const count = value != nullptr ? PyLong_AsLong(value) : -1;
    if (value == nullptr || (count == -1 && PyErr_Occurred() != nullptr)) {
        return -1;
    }
    portOf(self).count = static_cast<std::int32_t>(count);
    return 0;
}

PyObject* makePort(PyTypeObject* type, PyObject*, PyObject*) {
    PyObject* const made = type->tp_alloc(type, 0);
    if (made != nullptr) {
        portOf(made).children = new std::vector<PyObject*>;
    }
    return made;
}

PyObject* createChild(PyObject* self, PyObject*) {
    PyObject* const child = makePort(Py_TYPE(self), nullptr, nullptr);
    Py_XINCREF(child);
    portOf(self).children->push_back(child);
    return child;
}

void freePort(PyObject* self) {
    PyTypeObject* const type = Py_TYPE(self);
    for (PyObject* const child : *portOf(self).children) {
        Py_DECREF(child);
    }
    delete portOf(self).children;
    type->tp_free(self);
    Py_DECREF(type);
}

PyGetSetDef attributes[] = {{"count", getCount, setCount, nullptr, nullptr}, {}};
PyMethodDef methods[] = {{"create", createChild, METH_NOARGS, nullptr}, {}};
PyType_Slot slots[] = {{Py_tp_new, reinterpret_cast<void*>(makePort)},
                       {Py_tp_dealloc, reinterpret_cast<void*>(freePort)},
                       {Py_tp_getset, attributes},
                       {Py_tp_methods, methods},
                       {0, nullptr}};
PyType_Spec spec{"floor_port.Port", sizeof(Port), 0, Py_TPFLAGS_DEFAULT, slots};
PyModuleDef definition{PyModuleDef_HEAD_INIT, "floor_port", nullptr, -1, nullptr, nullptr, nullptr, nullptr, nullptr};

}  // namespace

PyMODINIT_FUNC PyInit_floor_port();

PyMODINIT_FUNC PyInit_floor_port() {
    PyObject* const module = PyModule_Create(&definition);
    PyObject* const type = PyType_FromSpec(&spec);
    PyModule_AddObject(module, "Port", type);
    return module;
}
