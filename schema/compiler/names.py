"""How schema names are written in C++, and which names can't be used."""

from __future__ import annotations

import re
from collections.abc import Iterator
from dataclasses import dataclass

from compiler import form
from compiler.mistakes import Place
from compiler.scope import ClassType, Scope

# No leading, trailing or doubled underscore: C++ reserves names with those, and fields have a trailing one.
_IDENTIFIER = re.compile(r"[A-Za-z][A-Za-z0-9]*(_[A-Za-z0-9]+)*")

KEYWORDS = frozenset(
    """alignas alignof and and_eq asm auto bitand bitor bool break case catch char char8_t char16_t char32_t class
    co_await co_return co_yield compl concept const consteval constexpr constinit const_cast continue decltype default
    delete do double dynamic_cast else enum explicit export extern false float for friend goto if inline int long
    mutable namespace new noexcept not not_eq nullptr operator or or_eq private protected public register
    reinterpret_cast requires return short signed sizeof static static_assert static_cast struct switch template this
    thread_local throw true try typedef typeid typename union unsigned using virtual void volatile wchar_t while xor
    xor_eq""".split()
)
# Macros of the standard headers and of the compilers.
MACROS = frozenset("NULL EOF NAN INFINITY HUGE_VAL assert errno offsetof stdin stdout stderr linux unix".split())

# Names in the scope of generated code that would hide a schema type of the same name.
HIDING = frozenset(
    """Attachment B Builder BuilderBase BuilderImpl BuilderWrapper Changes Children CollectionPrivateTag
    ConcreteBuilder Constrainable ConstrainableRelation Constrainables D Descriptors Element ElementImpl Given Handle Impl
    InvalidateCallback Level ModelElement OptionalConstrainable Orchestrator ReflectionPrivateTag Setters Storage builder child id model descriptors shapes table value values""".split()
)
# Member functions of every element and builder, which an accessor of the same name would hide.
MEMBER_FUNCTIONS = frozenset(
    """basicSetContainer getMetaClass getModel getPersistentProxyId getPropertyByIndex getPropertyValue getProxyId
    hasPropertyValue setModel setOrAdd setPropertyValue""".split()
)
# Members of every handle, which also has the properties' static accessors and the operations.
HANDLE_FUNCTIONS = frozenset("addRef cast classTable create impl metaClass of removeRef uuid".split())
# First parts of the qualified names that generated code writes.
ROOTS = frozenset({"quay", "std", "boost", "shapes", "declare"})

_ACCESSORS = {
    "single": ("get{}", "set{}"),
    "optional": ("get{}", "set{}", "has{}"),
    "single owned": ("get{}", "set{}", "has{}", "basicSet{}", "createInto{}"),
    "sequence": ("get{}", "get{}Mutable", "has{}", "add{}", "clear{}"),
    "sequence owned": ("get{}", "get{}Mutable", "has{}", "add{}", "clear{}", "createInto{}"),
}
_ACCESSORS["set"] = _ACCESSORS["sequence"]
for _shape in ("set owned", "map owned", "multimap owned"):
    _ACCESSORS[_shape] = _ACCESSORS["sequence owned"]

SHAPES = tuple(_ACCESSORS)


def upper(name: str) -> str:
    """The name with its first letter in upper case, as in accessors."""
    return name[:1].upper() + name[1:]


def lower(name: str) -> str:
    """The name with its first letter in lower case, as in fields."""
    return name[:1].lower() + name[1:]


def flat(name: str) -> str:
    """A dotted package name as one identifier."""
    return name.replace(".", "_")


def accessors(prop: form.Property) -> tuple[str, ...]:
    """The functions that a property gives its class and the class's builder."""
    return tuple(pattern.format(upper(prop.name)) for pattern in _ACCESSORS.get(prop.shape, ()))


def descriptor(name: str, scope: Scope) -> str:
    """The name of a property's member of Descriptors and of its function for queries: the property's name, changed if
    it is a keyword, a type that the member would hide, or a name that Descriptors itself uses."""
    lowered = lower(name)
    return f"{lowered}_" if lowered in KEYWORDS or lowered in scope.own or lowered in roots(scope) else lowered


def roots(scope: Scope) -> frozenset[str]:
    """The first namespaces of the qualified names in a package's generated code."""
    return ROOTS | {other.package.schema.namespace.split("::")[0] for other in scope.foreign.values()}


def is_identifier(name: str) -> bool:
    return _IDENTIFIER.fullmatch(name) is not None


def is_usable(name: str) -> bool:
    """Whether the name is valid in C++ unchanged."""
    return is_identifier(name) and name not in KEYWORDS and name not in MACROS


@dataclass(frozen=True)
class Slot:
    """A member of the meta package that holds one meta object."""

    meta: str
    name: str
    place: Place
    subject: str


def slot(*names: str) -> str:
    """The name of the slot of a type, or of something that a type owns."""
    return "_".join(names)


def slots(scope: Scope) -> Iterator[Slot]:
    """All slots of a package, in the order of the meta package's table."""
    package = scope.package
    yield Slot("Package", "rootPackage", package.place, "")
    yield Slot("Package", flat(package.schema.name), package.schema.place, package.schema.name)
    for one in scope.structured():
        yield _slot("Class" if isinstance(one, ClassType) else "DataType", one.entry)
        for prop in one.properties:
            yield _slot("Property", one.entry, prop)
        for operation in one.operations if isinstance(one, ClassType) else ():
            yield _slot("Operation", one.entry, operation)
            for argument in operation.arguments:
                yield _slot("Argument", one.entry, operation, argument)
    for word in package.primitives:
        yield Slot("PrimitiveType", word.text, word.place, word.text)
    for _, enumeration in sorted(scope.enumerations.items()):
        yield _slot("Enum", enumeration.entry)
        for literal in enumeration.entry.literals:
            yield _slot("EnumLiteral", enumeration.entry, literal)


def _slot(meta: str, *entries: form.Described) -> Slot:
    names = [entry.name for entry in entries]
    return Slot(meta, slot(*names), entries[-1].place, ".".join(names))
