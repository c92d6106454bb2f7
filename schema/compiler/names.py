"""How schema names are spelt in C++, and which can't be."""

from __future__ import annotations

import re
from collections.abc import Iterator
from dataclasses import dataclass

from compiler import form
from compiler.mistakes import Place
from compiler.scope import ClassType, Scope

# No underscore at either end and none doubled: C++ keeps those for itself, and fields end in one.
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

# What generated code would find in its own scope, or beside it, instead of a schema type of that name.
HIDING = frozenset(
    """Attachment B Builder BuilderBase BuilderImpl BuilderWrapper Changes Children CollectionPrivateTag
    ConcreteBuilder Constrainable ConstrainableRelation Constrainables D Descriptors Element ElementImpl Given Handle Impl
    InvalidateCallback Level ModelElement OptionalConstrainable Orchestrator ReflectionPrivateTag Setters Storage builder child id model descriptors shapes table value values""".split()
)
# Operations of every element and builder that an accessor of the same name would hide.
MEMBER_FUNCTIONS = frozenset(
    """basicSetContainer getMetaClass getModel getPersistentProxyId getPropertyByIndex getPropertyValue getProxyId
    hasPropertyValue setModel setOrAdd setPropertyValue""".split()
)
# Members of every handle, among which a property's static accessor and an operation stand.
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
    """The name with its first letter raised, as accessors have it."""
    return name[:1].upper() + name[1:]


def lower(name: str) -> str:
    """The name with its first letter lowered, as fields have it."""
    return name[:1].lower() + name[1:]


def flat(name: str) -> str:
    """A dotted package name as one identifier."""
    return name.replace(".", "_")


def accessors(prop: form.Property) -> tuple[str, ...]:
    """The functions that a property gives its class and the class's builder."""
    return tuple(pattern.format(upper(prop.name)) for pattern in _ACCESSORS.get(prop.shape, ()))


def descriptor(name: str, scope: Scope) -> str:
    """A property's member of Descriptors and its word in queries: its name, made different from keywords, from types,
    which a member would hide, and from names that Descriptors itself uses."""
    lowered = lower(name)
    return f"{lowered}_" if lowered in KEYWORDS or lowered in scope.own or lowered in roots(scope) else lowered


def roots(scope: Scope) -> frozenset[str]:
    """The namespaces with which qualified names in a package's generated code begin."""
    return ROOTS | {other.package.schema.namespace.split("::")[0] for other in scope.foreign.values()}


def is_identifier(name: str) -> bool:
    return _IDENTIFIER.fullmatch(name) is not None


def is_usable(name: str) -> bool:
    """Whether C++ takes the name as it stands."""
    return is_identifier(name) and name not in KEYWORDS and name not in MACROS


@dataclass(frozen=True)
class Slot:
    """A member of the meta package that holds one meta object."""

    meta: str
    name: str
    place: Place
    subject: str


def slot(*names: str) -> str:
    """The slot's name of a type, or of something that a type owns."""
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
