#include "members.h"

#include "errors.h"
#include "from_python.h"
#include "objects.h"
#include "text.h"
#include "to_python.h"

#include <ordo/error.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace host {

PyTypeObject* propertyType = nullptr;
PyTypeObject* methodType = nullptr;

namespace {

using ordo::OrdoValue;

PropertyMember& propertyOf(PyObject* object) { return *reinterpret_cast<PropertyMember*>(object); }
MethodMember& methodOf(PyObject* object) { return *reinterpret_cast<MethodMember*>(object); }

bool isNumberWord(std::string_view word) {
    for (std::string_view const start : {"logical", "double", "single", "int", "uint"}) {
        if (word.starts_with(start)) {
            return true;
        }
    }
    return false;
}

void checkNative(PropertyMember const& property, Instance const& self) {
    if (self.native == nullptr || (property.isValid != nullptr && !property.isValid(self.native))) [[unlikely]] {
        ordo::raiseInvalidHandle();
    }
}

/// The uuid.UUID of a text.
Ref uuidFromText(Ref const& text) {
    // Not initialised in one step: importing a module lets other threads run, and they must not wait for this one.
    static PyObject* uuidClass = nullptr;
    if (uuidClass == nullptr) {
        Ref const module(PyImport_ImportModule("uuid"));
        uuidClass = Ref(PyObject_GetAttrString(module.get(), "UUID")).release();
    }
    return Ref(PyObject_CallOneArg(uuidClass, text.get()));
}

/// The Python object for a value; if the type word is that of a list, an empty value becomes an empty list.
Ref shown(OrdoValue const& value, bool isList) {
    return isList && value.isEmpty() ? Ref(PyList_New(0)) : toPython(value);
}

OrdoValue valueFor(PropertyMember const& property, PyObject* value) {
    if (property.isLogical && PyLong_Check(value)) {
        return OrdoValue::logical(_PyLong_Sign(value) != 0);  // whatever its size
    }
    OrdoValue converted = fromPython(value);
    // An int without a 64-bit form is converted to a double. That is close enough for a property of numbers only.
    if (converted.kind() == OrdoValue::Kind::Double && !property.isNumber && PyLong_Check(value)) {
        ordo::raiseWith(ordo::failures::OutOfRange, {"an integer of that size", "a 64-bit integer"});
    }
    return converted;
}

/// The value for an argument of a method. If the parameter is a text, a path is passed as its text.
OrdoValue argumentFor(ordo::OrdoMethodInfo const& method, std::size_t index, PyObject* given) {
    std::vector<std::string> const& inputs = method.signature().inputs;
    bool const mayBePath = index < inputs.size() && inputs[index] == "char" && !PyUnicode_Check(given);
    if (!mayBePath || PyObject_HasAttrString(reinterpret_cast<PyObject*>(Py_TYPE(given)), "__fspath__") == 0) {
        return fromPython(given);
    }
    Ref path(PyOS_FSPath(given));
    if (PyBytes_Check(path.get())) {
        path = Ref(PyUnicode_DecodeFSDefaultAndSize(PyBytes_AS_STRING(path.get()), PyBytes_GET_SIZE(path.get())));
    }
    return OrdoValue::text(textFromPython(path.get()));
}

/// The arguments of one call. The usual few need no heap allocation.
class Arguments {
public:
    explicit Arguments(std::size_t size) : size_(size) {
        if (size_ > few_.size()) {
            many_.resize(size_);
        }
    }
    OrdoValue& operator[](std::size_t index) { return all()[index]; }
    std::span<OrdoValue const> span() { return {all(), size_}; }

private:
    OrdoValue* all() { return many_.empty() ? few_.data() : many_.data(); }

    std::array<OrdoValue, 4> few_;
    std::vector<OrdoValue> many_;
    std::size_t size_;
};

void checkArguments(ordo::OrdoMethodInfo const& method, std::size_t count, bool hasKeywords) {
    if (hasKeywords || !method.signature().accepts(count)) {
        std::string const name(method.name().text());
        ordo::raiseWith(ordo::failures::WrongArguments, {name, method.signature().describe(name)});
    }
}

/// The value that a method gets as its object.
OrdoValue selfValue(MethodMember const& method, PyObject* self) {
    if (PyObject_TypeCheck(self, method.type) == 0) {
        ordo::raiseWith(ordo::failures::WrongType,
                        {describeObject(self), std::string("an object of class '") + method.type->tp_name + "'"});
    }
    if (ordo::OrdoClass* const enumeration = enumerationOf(self)) {
        return OrdoValue::enumeration(*enumeration, static_cast<std::int32_t>(PyLong_AsLong(self)));
    }
    return OrdoValue::fromObject(ordo::OrdoObject(instance(self).object));
}

PyObject* callMethod(PyObject* callable, PyObject* const* given, std::size_t flags, PyObject* keywords) noexcept {
    return guarded([&] {
        MethodMember const& method = methodOf(callable);
        auto count = static_cast<std::size_t>(PyVectorcall_NARGS(flags));
        checkArguments(*method.info, count, keywords != nullptr && PyTuple_GET_SIZE(keywords) != 0);
        count = method.info->signature().countRead(count);
        Arguments arguments(count);
        std::size_t const first = method.info->isStatic() ? 0 : 1;
        for (std::size_t i = first; i < count; ++i) {
            arguments[i] = argumentFor(*method.info, i, given[i]);
        }
        if (first == 1 && count > 0) {
            arguments[0] = selfValue(method, given[0]);
            if (arguments[0].kind() != OrdoValue::Kind::Enumeration) {
                validNative(given[0]);
            }
        }
        ordo::MethodCall call(arguments.span());
        method.info->call(call);
        if (call.resultCount() == 0) {
            return none().release();
        }
        return shown(call.result(), method.isList).release();
    });
}

PyObject* getFromProperty(PyObject* self, PyObject* object, PyObject*) noexcept {
    PropertyMember const& property = propertyOf(self);
    if (object == nullptr) {
        Py_INCREF(self);
        return self;
    }
    if (PyObject_TypeCheck(object, property.type) == 0) {
        PyErr_Format(PyExc_TypeError, "the property belongs to objects of class '%s'", property.type->tp_name);
        return nullptr;
    }
    return readProperty(property, object);
}

int setThroughProperty(PyObject* self, PyObject* object, PyObject* value) noexcept {
    PropertyMember const& property = propertyOf(self);
    if (PyObject_TypeCheck(object, property.type) == 0) {
        PyErr_Format(PyExc_TypeError, "the property belongs to objects of class '%s'", property.type->tp_name);
        return -1;
    }
    return writeProperty(property, object, value);
}

PyObject* getFromMethod(PyObject* self, PyObject* object, PyObject*) noexcept {
    if (object == nullptr || object == Py_None) {
        Py_INCREF(self);
        return self;
    }
    return bindMethod(self, object);
}

void freeMember(PyObject* self) noexcept {
    PyTypeObject* const type = Py_TYPE(self);
    PyObject_Free(self);
    Py_DECREF(type);
}

// Introspection of members: name, class, type word and the line of help.

template <auto Describe>
PyObject* tell(PyObject* self, void*) noexcept {
    return guarded([&] { return Describe(self).release(); });
}

Ref propertyName(PyObject* self) { return nameToPython(propertyOf(self).info->name().text()); }
Ref propertyTypeWord(PyObject* self) { return nameToPython(propertyOf(self).info->getTypeWord()); }
Ref propertyAttributes(PyObject* self) { return Ref(PyLong_FromUnsignedLong(propertyOf(self).info->getAttributes())); }
Ref propertyReadOnly(PyObject* self) { return Ref::borrow(propertyOf(self).info->isReadOnly() ? Py_True : Py_False); }
Ref propertyClass(PyObject* self) { return Ref::borrow(reinterpret_cast<PyObject*>(propertyOf(self).type)); }
Ref propertyDoc(PyObject* self) {
    ordo::OrdoPropInfo const& info = *propertyOf(self).info;
    std::string text(info.getDescription());
    text += (text.empty() ? "(" : " (") + info.getTypeWord() + (info.isReadOnly() ? ", read only)" : ")");
    return nameToPython(text);
}

Ref methodName(PyObject* self) { return nameToPython(methodOf(self).info->name().text()); }
Ref methodAttributes(PyObject* self) { return Ref(PyLong_FromUnsignedLong(methodOf(self).info->getAttributes())); }
Ref methodClass(PyObject* self) { return Ref::borrow(reinterpret_cast<PyObject*>(methodOf(self).type)); }
Ref methodQualifiedName(PyObject* self) {
    return nameToPython(std::string(methodOf(self).ordoClass->shortName().text()) + '.' +
                        std::string(methodOf(self).info->name().text()));
}
Ref methodDoc(PyObject* self) {
    ordo::OrdoMethodInfo const& info = *methodOf(self).info;
    std::string text = info.signature().describe(info.name().text());
    if (!info.getDescription().empty()) {
        text += "\n\n" + std::string(info.getDescription());
    }
    return nameToPython(text);
}

PyGetSetDef propertyAttributesTable[] = {
    {"__name__", tell<propertyName>, nullptr, nullptr, nullptr},
    {"__objclass__", tell<propertyClass>, nullptr, nullptr, nullptr},
    {"__doc__", tell<propertyDoc>, nullptr, nullptr, nullptr},
    {"type_word", tell<propertyTypeWord>, nullptr, "The word by which the property names its type.", nullptr},
    {"attributes", tell<propertyAttributes>, nullptr, "The attribute word.", nullptr},
    {"read_only", tell<propertyReadOnly>, nullptr, "Whether the property can't be assigned to.", nullptr},
    {},
};

PyGetSetDef methodAttributesTable[] = {
    {"__name__", tell<methodName>, nullptr, nullptr, nullptr},
    {"__qualname__", tell<methodQualifiedName>, nullptr, nullptr, nullptr},
    {"__objclass__", tell<methodClass>, nullptr, nullptr, nullptr},
    {"__doc__", tell<methodDoc>, nullptr, nullptr, nullptr},
    {"attributes", tell<methodAttributes>, nullptr, "The attribute word.", nullptr},
    {},
};

PyMemberDef methodMembersTable[] = {
    {"__vectorcalloffset__", T_PYSSIZET, offsetof(MethodMember, call), READONLY, nullptr},
    {},
};

template <class Function>
PyType_Slot slot(int number, Function* function) {
    return {number, reinterpret_cast<void*>(function)};
}

PyTypeObject* makeType(PyObject* module, char const* name, std::size_t size, unsigned flags, PyType_Slot* slots) {
    PyType_Spec spec{name, static_cast<int>(size), 0, static_cast<unsigned>(Py_TPFLAGS_DEFAULT) | flags, slots};
    Ref type(PyType_FromSpec(&spec));
    checked(PyModule_AddType(module, reinterpret_cast<PyTypeObject*>(type.get())));
    return reinterpret_cast<PyTypeObject*>(type.release());
}

}  // namespace

void setUpMembers(PyObject* module) {
    PyType_Slot properties[] = {
        slot(Py_tp_dealloc, freeMember),
        slot(Py_tp_descr_get, getFromProperty),
        slot(Py_tp_descr_set, setThroughProperty),
        {Py_tp_getset, propertyAttributesTable},
        {0, nullptr},
    };
    constexpr unsigned fixed = Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_IMMUTABLETYPE;
    propertyType = makeType(module, "ordo.Property", sizeof(PropertyMember), fixed, properties);
    PyType_Slot methods[] = {
        slot(Py_tp_dealloc, freeMember),     slot(Py_tp_descr_get, getFromMethod),
        slot(Py_tp_call, PyVectorcall_Call), {Py_tp_getset, methodAttributesTable},
        {Py_tp_members, methodMembersTable}, {0, nullptr},
    };
    constexpr unsigned callable = Py_TPFLAGS_HAVE_VECTORCALL | Py_TPFLAGS_METHOD_DESCRIPTOR;
    methodType = makeType(module, "ordo.Method", sizeof(MethodMember), fixed | callable, methods);
}

Ref makeProperty(ordo::OrdoPropInfo& info, ordo::OrdoClass& ordoClass, PyTypeObject* type) {
    auto* const made = PyObject_New(PropertyMember, propertyType);
    Ref result(reinterpret_cast<PyObject*>(made));
    made->info = &info;
    made->ordoClass = &ordoClass;
    made->type = type;
    made->isValid = ordoClass.validityCheck();
    std::string const word = info.getTypeWord();
    made->isNumber = isNumberWord(word);
    made->isLogical = word.starts_with("logical");
    made->isUuid = word == "uuid";
    made->isList = word == "cell";
    return result;
}

Ref makeMethod(ordo::OrdoMethodInfo& info, ordo::OrdoClass& ordoClass, PyTypeObject* type) {
    auto* const made = PyObject_New(MethodMember, methodType);
    Ref result(reinterpret_cast<PyObject*>(made));
    made->call = callMethod;
    made->isList = info.signature().result == "cell";
    made->info = &info;
    made->ordoClass = &ordoClass;
    made->type = type;
    return result;
}

PyObject* readProperty(PropertyMember const& property, PyObject* self) noexcept {
    return guarded([&] {
        Instance const& object = instance(self);
        checkNative(property, object);
        Ref value = shown(property.info->get(object.native), property.isList);
        return (property.isUuid ? uuidFromText(value) : std::move(value)).release();
    });
}

int writeProperty(PropertyMember const& property, PyObject* self, PyObject* value) noexcept {
    return guarded(-1, [&] {
        if (value == nullptr) {
            ordo::raiseWith(ordo::failures::NotDeletable, {std::string(property.info->name().text()),
                                                           std::string(property.ordoClass->shortName().text())});
        }
        OrdoValue const converted = valueFor(property, value);
        Instance const& object = instance(self);
        checkNative(property, object);
        property.info->set(object.native, converted);
        return 0;
    });
}

PyObject* bindMethod(PyObject* method, PyObject* self) noexcept {
    if (methodOf(method).info->isStatic()) {
        Py_INCREF(method);
        return method;
    }
    return PyMethod_New(method, self);
}

PyObject* construct(ordo::OrdoClass& ordoClass, PyObject* given, PyObject* keywords) {
    auto count = static_cast<std::size_t>(PyTuple_GET_SIZE(given));
    if (ordoClass.constructor() != nullptr) count = ordoClass.constructor()->signature().countRead(count);
    Arguments arguments(count);
    for (std::size_t i = 0; i < count; ++i) {
        arguments[i] = fromPython(PyTuple_GET_ITEM(given, static_cast<Py_ssize_t>(i)));
    }
    if (keywords != nullptr && PyDict_GET_SIZE(keywords) != 0 && ordoClass.constructor() != nullptr) {
        checkArguments(*ordoClass.constructor(), count, true);
    }
    return toPython(ordoClass.construct(arguments.span())).release();
}

}  // namespace host
