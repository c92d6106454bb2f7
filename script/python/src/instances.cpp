#include "instances.h"

#include "errors.h"
#include "objects.h"
#include "text.h"
#include "to_python.h"

#include <ordo/error.h>

#include <string>
#include <string_view>

namespace host {
namespace {

/// The fields of a value, as "RateInfo(period=0.1, ...)".
std::string describeValue(PyObject* self, ordo::OrdoClass const& ordoClass) {
    std::string text(ordoClass.shortName().text());
    text += '(';
    bool isFirst = true;
    for (auto const& property : ordoClass.properties()) {
        Ref const value = toPython(property->get(instance(self).native));
        Ref const shown(PyObject_Repr(value.get()));
        text += (isFirst ? "" : ", ") + std::string(property->name().text()) + '=' + nameFromPython(shown.get());
        isFirst = false;
    }
    return text + ')';
}

/// A text with characters that a terminal can't show, or would interpret, escaped as by repr.
std::string printable(std::string_view bytes) {
    Ref const text = bytesToPython(bytes);
    std::string result;
    for (Py_ssize_t i = 0; i < PyUnicode_GET_LENGTH(text.get()); ++i) {
        Ref const character(PyUnicode_Substring(text.get(), i, i + 1));
        Py_UCS4 const code = PyUnicode_READ_CHAR(character.get(), 0);
        bool const isShown = Py_UNICODE_ISPRINTABLE(code) != 0 && code != '\\';
        std::string const shown = nameFromPython(isShown ? character.get() : Ref(PyObject_Repr(character.get())).get());
        result += isShown ? shown : shown.substr(1, shown.size() - 2);
    }
    return result;
}

std::string describe(PyObject* self) {
    Instance const& object = instance(self);
    ordo::OrdoClass const& ordoClass = object.object->getClass();
    std::string const name(ordoClass.shortName().text());
    if (!isValid(object)) {
        return '<' + name + " (destroyed)>";
    }
    if (!ordoClass.info().isHandleClass()) {
        return describeValue(self, ordoClass);
    }
    if (ordo::OrdoCollection const* const collection = ordoClass.collection()) {
        std::size_t const size = collection->size(object.native);
        return '<' + name + " of " + std::to_string(size) + (size == 1 ? " member>" : " members>");
    }
    std::string const own = printable(ordoClass.info().describeInstance(object.native));
    return '<' + name + (own.empty() ? "" : ' ' + own) + '>';
}

/// Calls a method that compares two values of one class.
bool holds(ordo::OrdoMethodInfo const& method, PyObject* left, PyObject* right) {
    ordo::OrdoValue const arguments[] = {ordo::OrdoValue::fromObject(ordo::OrdoObject(instance(left).object)),
                                         ordo::OrdoValue::fromObject(ordo::OrdoObject(instance(right).object))};
    ordo::MethodCall call(arguments);
    method.call(call);
    return call.result().toLogical();
}

}  // namespace

PyObject* represent(PyObject* self) noexcept {
    PyObject* const text = guarded([&] { return nameToPython(describe(self)).release(); });
    if (text != nullptr) {
        return text;
    }
    // A failed description must not make repr fail.
    PyErr_Clear();
    return PyUnicode_FromFormat("<%s>", Py_TYPE(self)->tp_name);
}

PyObject* compare(PyObject* left, PyObject* right, int operation) noexcept {
    return guarded([&]() -> PyObject* {
        ordo::OrdoClass* const ordoClass = classOf(Py_TYPE(left));
        if (!isInstance(right) || ordoClass == nullptr || classOf(Py_TYPE(right)) != ordoClass) {
            Py_RETURN_NOTIMPLEMENTED;
        }
        ClassPeer const& peer = peerOf(*ordoClass);
        if (operation == Py_EQ || operation == Py_NE) {
            return PyBool_FromLong(holds(*peer.equals, left, right) == (operation == Py_EQ) ? 1 : 0);
        }
        if (peer.lessThan == nullptr) {
            Py_RETURN_NOTIMPLEMENTED;
        }
        bool const isSwapped = operation == Py_GT || operation == Py_LE;
        bool const isLess = isSwapped ? holds(*peer.lessThan, right, left) : holds(*peer.lessThan, left, right);
        bool const isNegated = operation == Py_LE || operation == Py_GE;
        return PyBool_FromLong(isLess != isNegated ? 1 : 0);
    });
}

}  // namespace host
