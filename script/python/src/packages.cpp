#include "packages.h"

#include "errors.h"
#include "objects.h"
#include "text.h"

#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/binding_registry.h>
#include <ordo/package.h>

#include <dlfcn.h>

#include <string>

namespace host {
namespace {

std::string nameArgument(PyObject* text) {
    if (!PyUnicode_Check(text)) {
        PyErr_SetString(PyExc_TypeError, "a name is a str");
        throw PythonError();
    }
    return nameFromPython(text);
}

/// The package of a dotted name, null if there is none.
ordo::OrdoPackage* packageNamed(PyObject* name) {
    ordo::LookupName const given(nameArgument(name));
    return ordo::InternedName(given) ? ordo::OrdoPackage::getPackage(given) : nullptr;
}

PyObject* hasPackage(PyObject*, PyObject* name) noexcept {
    return guarded([&] { return PyBool_FromLong(packageNamed(name) != nullptr ? 1 : 0); });
}

PyObject* describePackage(PyObject*, PyObject* name) noexcept {
    return guarded([&]() -> PyObject* {
        ordo::OrdoPackage const* const package = packageNamed(name);
        if (package == nullptr) {
            Py_RETURN_NONE;
        }
        return nameToPython(package->info().getDescription()).release();
    });
}

/// The short names of a package's subpackages and classes.
PyObject* listPackage(PyObject*, PyObject* name) noexcept {
    return guarded([&] {
        Ref list(PyList_New(0));
        if (ordo::OrdoPackage const* const package = packageNamed(name)) {
            for (ordo::OrdoPackage const* const inner : package->subPackages()) {
                Ref const text = nameToPython(inner->shortName().text());
                checked(PyList_Append(list.get(), text.get()));
            }
            for (ordo::InternedName const className : package->classNames()) {
                Ref const text = nameToPython(className.text());
                checked(PyList_Append(list.get(), text.get()));
            }
        }
        return list.release();
    });
}

/// The class with this whole dotted name; None if there is none.
PyObject* findClass(PyObject*, PyObject* name) noexcept {
    return guarded([&]() -> PyObject* {
        ordo::LookupName const given(nameArgument(name));
        ordo::OrdoClass* const found = ordo::InternedName(given) ? ordo::OrdoClass::getClass(given) : nullptr;
        if (found == nullptr) {
            Py_RETURN_NONE;
        }
        return Ref::borrow(reinterpret_cast<PyObject*>(peerOf(*found).type)).release();
    });
}

/// Raises the error of an access to a member that doesn't exist.
PyObject* raiseNoSuchMember(PyObject*, PyObject* const* arguments, Py_ssize_t count) noexcept {
    return guarded([&]() -> PyObject* {
        std::vector<std::string> texts;
        for (Py_ssize_t i = 0; i < count; ++i) {
            texts.push_back(PyUnicode_Check(arguments[i]) ? nameFromPython(arguments[i]) : std::string());
        }
        ordo::raiseWith(ordo::failures::NoSuchMember, texts);
    });
}

/// Opens a library; one without a folder in its name is first searched beside libordo. The system's loader would search
/// there too, but doesn't if a sanitizer intercepts the call.
void* openLibrary(std::string const& name) {
    Dl_info ours;
    auto const* const known = reinterpret_cast<void const*>(&ordo::internName);
    if (name.find('/') == std::string::npos && dladdr(known, &ours) != 0) {
        std::string const file = ours.dli_fname;
        std::string const beside = file.substr(0, file.rfind('/') + 1) + name;
        if (void* const found = dlopen(beside.c_str(), RTLD_NOW | RTLD_LOCAL)) return found;
    }
    return dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
}

/// Loads a native library, which stays loaded, and calls its entry point.
PyObject* loadLibrary(PyObject*, PyObject* const* arguments, Py_ssize_t count) noexcept {
    return guarded([&]() -> PyObject* {
        if (count != 2 || !PyUnicode_Check(arguments[0]) || !PyUnicode_Check(arguments[1])) {
            PyErr_SetString(PyExc_TypeError, "load(library, entry_point) takes two names");
            throw PythonError();
        }
        Ref const path(PyUnicode_EncodeFSDefault(arguments[0]));
        void* const library = openLibrary(PyBytes_AS_STRING(path.get()));
        if (library == nullptr) {
            PyErr_SetString(PyExc_ImportError, dlerror());
            throw PythonError();
        }
        auto* const entry = reinterpret_cast<void (*)()>(dlsym(library, nameFromPython(arguments[1]).c_str()));
        if (entry == nullptr) {
            PyErr_SetString(PyExc_ImportError, dlerror());
            throw PythonError();
        }
        entry();
        Py_RETURN_NONE;
    });
}

PyObject* setErrors(PyObject*, PyObject* classes) noexcept {
    if (!PyTuple_Check(classes) || PyTuple_GET_SIZE(classes) != static_cast<Py_ssize_t>(ordo::ErrorKind::Index) + 1) {
        PyErr_SetString(PyExc_TypeError, "there is a class of errors for each family");
        return nullptr;
    }
    return Ref::borrow(setErrorClasses(classes)).release();
}

PyObject* checkInterpreter(PyObject*, PyObject*) noexcept {
    return guarded([]() -> PyObject* {
        requireMainInterpreter();
        Py_RETURN_NONE;
    });
}

PyObject* countBindings(PyObject*, PyObject*) noexcept {
    return PyLong_FromSize_t(ordo::factory::basic::BindingRegistry::size());
}

template <class Function>
PyCFunction asFunction(Function* function) {
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

PyMethodDef functions[] = {
    {"has_package", hasPackage, METH_O, "Whether a package of this dotted name is registered."},
    {"describe_package", describePackage, METH_O, "A package's line of help."},
    {"list_package", listPackage, METH_O, "The names of a package's subpackages and classes."},
    {"find_class", findClass, METH_O, "The class of a whole dotted name, or None."},
    {"no_such_member", asFunction(raiseNoSuchMember), METH_FASTCALL, "Raises the error of a name that isn't there."},
    {"load", asFunction(loadLibrary), METH_FASTCALL, "Loads a native library for good and calls its entry point."},
    {"check_interpreter", checkInterpreter, METH_NOARGS, "Raises ImportError in any but the main interpreter."},
    {"set_errors", setErrors, METH_O,
     "Says which classes errors have, by family. The first call counts; returns its classes."},
    {"count_bindings", countBindings, METH_NOARGS, "How many native objects have a script object now."},
    {},
};

}  // namespace

void requireMainInterpreter() {
    if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
        PyErr_SetString(PyExc_ImportError, "ordo can be imported by the main interpreter of a process only");
        throw PythonError();
    }
}

void setUpPackages(PyObject* module) { checked(PyModule_AddFunctions(module, functions)); }

}  // namespace host
