#include "errors.h"

#include "text.h"

#include <ordo/error.h>

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

namespace host {
namespace {

PyObject* errorClasses = nullptr;  // a tuple, never released

void setError(ordo::ErrorKind kind, std::string const& identifier, std::string const& sentence,
              std::vector<std::u16string> const& arguments) {
    auto const count = static_cast<Py_ssize_t>(arguments.size());
    Ref const tuple(PyTuple_New(count));
    for (Py_ssize_t i = 0; i < count; ++i) {
        PyTuple_SET_ITEM(tuple.get(), i, textToPython(arguments[static_cast<std::size_t>(i)]).release());
    }
    if (errorClasses == nullptr) {
        PyErr_SetString(PyExc_RuntimeError, sentence.c_str());
        return;
    }
    PyObject* const errorClass = PyTuple_GET_ITEM(errorClasses, static_cast<Py_ssize_t>(kind));
    Ref const text = bytesToPython(sentence);
    Ref const name = bytesToPython(identifier);
    Ref const error(PyObject_CallFunctionObjArgs(errorClass, text.get(), name.get(), tuple.get(), nullptr));
    PyErr_SetObject(errorClass, error.get());
}

void setUnexpected(ordo::ErrorKind kind, char const* words) {
    try {
        ordo::raiseWith(ordo::failures::Unexpected, {words});
    } catch (keel::core::except::Error const& error) {
        keel::Message const& message = error.GetBaseMsgIDObj();
        setError(kind, message.identifier(), message.sentence(), message.arguments());
    }
}

void translate() {
    try {
        throw;
    } catch (PythonError const&) {
        if (PyErr_Occurred() == nullptr) {
            PyErr_SetString(PyExc_SystemError, "an error was announced and not set");
        }
    } catch (keel::core::except::Error const& error) {
        keel::Message const& message = error.GetBaseMsgIDObj();
        setError(ordo::errorKindOf(message.identifier()), message.identifier(), message.sentence(),
                 message.arguments());
    } catch (std::bad_alloc const&) {
        PyErr_NoMemory();
    } catch (std::logic_error const& error) {
        setUnexpected(ordo::ErrorKind::Value, error.what());
    } catch (std::exception const& error) {
        setUnexpected(ordo::ErrorKind::Plain, error.what());
    } catch (...) {
        setUnexpected(ordo::ErrorKind::Plain, "native code failed without saying why");
    }
}

}  // namespace

PyObject* setErrorClasses(PyObject* classes) {
    if (errorClasses == nullptr) {
        Py_INCREF(classes);
        errorClasses = classes;
    }
    return errorClasses;
}

void translateException() noexcept {
    try {
        translate();
    } catch (PythonError const&) {
        // Making the error failed, which has set an error of its own.
    } catch (...) {
        PyErr_NoMemory();
    }
}

std::string describeObject(PyObject* object) {
    return std::string("an object of type '") + Py_TYPE(object)->tp_name + "'";
}

bool clearAttributeError() noexcept {
    if (PyErr_ExceptionMatches(PyExc_AttributeError) == 0) {
        return false;
    }
    PyErr_Clear();
    return true;
}

}  // namespace host
