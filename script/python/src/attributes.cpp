// Attribute access: properties and methods are read directly from the type, and a missing name gets a suggestion.
#include "attributes.h"

#include "errors.h"
#include "members.h"
#include "objects.h"
#include "text.h"

#include <ordo/error.h>

#include <algorithm>
#include <cctype>
#include <numeric>
#include <string>
#include <vector>

namespace host {
namespace {

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// The edit distance: how many letters must be inserted, removed, replaced or swapped with their neighbour.
std::size_t distance(std::string const& left, std::string const& right) {
    std::vector<std::size_t> before;
    std::vector<std::size_t> line(right.size() + 1);
    std::iota(line.begin(), line.end(), 0U);
    std::vector<std::size_t> next(right.size() + 1);
    for (std::size_t i = 1; i <= left.size(); ++i) {
        next[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            bool const same = left[i - 1] == right[j - 1];
            next[j] = std::min({line[j] + 1, next[j - 1] + 1, line[j - 1] + (same ? 0U : 1U)});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1]) {
                next[j] = std::min(next[j], before[j - 2] + 1);
            }
        }
        before = std::exchange(line, next);
    }
    return line.back();
}

/// The attribute of a type whose name is most similar to `name`; empty if none is similar.
std::string nearestName(PyTypeObject* type, std::string const& name) {
    std::string const wanted = lower(name);
    std::size_t best = std::max<std::size_t>(1, wanted.size() / 3) + 1;
    std::string nearest;
    if (wanted.starts_with('_') || wanted.size() > 100) {
        return nearest;
    }
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(type->tp_mro); ++i) {
        PyObject* const dict = reinterpret_cast<PyTypeObject*>(PyTuple_GET_ITEM(type->tp_mro, i))->tp_dict;
        PyObject* key = nullptr;
        for (Py_ssize_t place = 0; PyDict_Next(dict, &place, &key, nullptr) != 0;) {
            std::string const candidate = PyUnicode_Check(key) ? nameFromPython(key) : std::string();
            std::size_t const difference =
                candidate.size() > wanted.size() ? candidate.size() - wanted.size() : wanted.size() - candidate.size();
            if (candidate.empty() || candidate.front() == '_' || difference >= best) {
                continue;
            }
            std::size_t const found = distance(wanted, lower(candidate));
            if (found < best) {
                best = found;
                nearest = candidate;
            }
        }
    }
    return nearest;
}

/// Whether a member is a property of objects of this type; the member may come from another class's dictionary.
bool isProperty(PyObject* member, PyTypeObject* type) {
    if (!Py_IS_TYPE(member, propertyType)) {
        return false;
    }
    PyTypeObject* const owner = reinterpret_cast<PropertyMember*>(member)->type;
    return owner == type || PyType_IsSubtype(type, owner) != 0;
}

[[noreturn]] void raiseNoSuchMember(PyTypeObject* type, PyObject* name) {
    std::string const missing = nameFromPython(name);
    std::vector<std::string> arguments{missing, type->tp_name};
    if (ordo::OrdoClass const* const ordoClass = classOf(type)) {
        arguments[1] = ordoClass->shortName().text();
    }
    if (std::string nearest = nearestName(type, missing); !nearest.empty()) {
        arguments.push_back(std::move(nearest));
    }
    ordo::raiseWith(ordo::failures::NoSuchMember, arguments);
}

}  // namespace

PyObject* getAttribute(PyObject* self, PyObject* name) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    if (PyObject* const member = PyUnicode_Check(name) ? _PyType_Lookup(type, name) : nullptr) [[likely]] {
        if (isProperty(member, type)) {
            return readProperty(*reinterpret_cast<PropertyMember*>(member), self);
        }
        if (Py_IS_TYPE(member, methodType)) {
            return bindMethod(member, self);
        }
    }
    PyObject* const found = PyObject_GenericGetAttr(self, name);
    if (found != nullptr || !PyUnicode_Check(name) || !clearAttributeError()) {
        return found;
    }
    return guarded([&]() -> PyObject* { raiseNoSuchMember(type, name); });
}

PyObject* getClassAttribute(PyObject* type, PyObject* name) noexcept {
    PyObject* const found = PyType_Type.tp_getattro(type, name);
    if (found != nullptr || !PyUnicode_Check(name) || !clearAttributeError()) {
        return found;
    }
    return guarded([&]() -> PyObject* { raiseNoSuchMember(reinterpret_cast<PyTypeObject*>(type), name); });
}

int setAttribute(PyObject* self, PyObject* name, PyObject* value) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    PyObject* const member = PyUnicode_Check(name) ? _PyType_Lookup(type, name) : nullptr;
    if (member != nullptr && isProperty(member, type)) {
        return writeProperty(*reinterpret_cast<PropertyMember*>(member), self, value);
    }
    if (!PyUnicode_Check(name) || (member != nullptr && Py_TYPE(member)->tp_descr_set != nullptr)) {
        return PyObject_GenericSetAttr(self, name, value);
    }
    return guarded(-1, [&]() -> int {
        if (member != nullptr) {
            ordo::raiseWith(ordo::failures::ReadOnly, {nameFromPython(name), type->tp_name});
        }
        raiseNoSuchMember(type, name);
    });
}

}  // namespace host
