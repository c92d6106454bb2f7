# The meta objects that scripts see. Scripts find them through StaticMetaClass and can't create any.
from typing import NoReturn

from quay.zero import ModelElement

class MetaElement(ModelElement):
    """Base of all meta objects."""

    def __init__(self, *nothing: NoReturn) -> None: ...
    @property
    def name(self) -> str: ...

class Package(MetaElement):
    """A package of types."""

    @property
    def uri(self) -> str: ...
    @property
    def types(self) -> list[Type]: ...
    @property
    def packages(self) -> list[Package]: ...

class Type(MetaElement):
    """The type of a property or a value."""

    @property
    def qualifiedName(self) -> str: ...
    @property
    def scriptName(self) -> str: ...
    @property
    def properties(self) -> list[Property]: ...

class Class(Type):
    """A class of elements."""

    @property
    def isAbstract(self) -> bool: ...
    @property
    def superclass(self) -> Class | None: ...

class DataType(Type):
    """A structured type of values."""

class PrimitiveType(Type):
    """A type of values without parts."""

class Enum(Type):
    """An enumeration."""

    @property
    def literals(self) -> list[EnumLiteral]: ...

class EnumLiteral(MetaElement):
    """One named value of an enumeration."""

    @property
    def value(self) -> int: ...

class TypedElement(MetaElement):
    """Base of what has a name, a type and bounds."""

    @property
    def type(self) -> Type | None: ...
    @property
    def lower(self) -> int: ...
    @property
    def upper(self) -> int: ...
    @property
    def isOrdered(self) -> bool: ...

class Property(TypedElement):
    """A property of a class, or a field of a data type."""

    @property
    def isComposite(self) -> bool: ...
    @property
    def isDerived(self) -> bool: ...
    @property
    def index(self) -> int: ...
    @property
    def qualifiedBy(self) -> Property | None: ...

class Operation(TypedElement):
    """An operation of a class."""

class Argument(TypedElement):
    """An argument of an operation."""
