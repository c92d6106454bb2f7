"""Checks properties: type and shape, key, default, source."""

from __future__ import annotations

from compiler import defaults, form
from compiler.mistakes import Report, did_you_mean
from compiler.names import SHAPES
from compiler.scope import ClassType, EnumerationType, PrimitiveType, Scope, Type, describe

_KEY_TYPES = ("String", "StdString", "Integer", "Real")
_MAPS = ("map owned", "multimap owned")


def check(scope: Scope, report: Report) -> None:
    for cls in scope.classes.values():
        for prop in cls.properties:
            _Judge(scope, cls.entry.name, prop, report).member(cls)
    for data_type in scope.data_types.values():
        if not data_type.properties:
            report.add(data_type.entry.place, data_type.entry.name, "the data type has no field")
        for prop in data_type.properties:
            _Judge(scope, data_type.entry.name, prop, report).field()


class _Judge:
    """Checks one property."""

    def __init__(self, scope: Scope, owner: str, prop: form.Property, report: Report) -> None:
        self._scope = scope
        self._prop = prop
        self._report = report
        self._subject = f"{owner}.{prop.name}"
        self._type = self._find_type()

    def member(self, owner: ClassType) -> None:
        """Checks a class's property."""
        if self._check_shape() and self._type is not None:
            self._check_type(self._type)
            self._check_default(self._type)
        if self._prop.derives is not None:
            self._check_derived(owner)
        elif self._prop.shape in SHAPES:
            self._check_key()

    def field(self) -> None:
        """Checks a data type's field: it must be a plain value, and its position is its index."""
        prop = self._prop
        if prop.unqueried:
            self._fault("queries have no word for a field of a data type")
        if prop.index is not None or prop.derives is not None or prop.key is not None:
            self._fault("a field of a data type has neither an index nor a source nor a key")
        if prop.shape != "single":
            self._fault(f'a field of a data type is single, not "{prop.shape}"')
        elif isinstance(self._type, (PrimitiveType, EnumerationType)) and prop.type != "ZxArray":
            self._check_default(self._type)
        elif self._type is not None:
            self._fault(f"a field of a data type can't be of the type {prop.type}")

    def _fault(self, text: str) -> None:
        self._report.add(self._prop.place, self._subject, text)

    def _find_type(self) -> Type | None:
        name = self._prop.type
        found = self._scope.find(name)
        if found is None:
            self._fault(f'unknown type "{name}"{did_you_mean(name, self._scope.names())}')
        return found

    def _check_shape(self) -> bool:
        if self._prop.shape in SHAPES:
            return True
        self._fault(f'unknown shape "{self._prop.shape}"{did_you_mean(self._prop.shape, SHAPES)}')
        return False

    def _check_type(self, found: Type) -> None:
        """Values are plain and elements owned: the shape must fit the type."""
        shape, name = self._prop.shape, self._prop.type
        if shape.endswith("owned") and not isinstance(found, ClassType):
            self._fault(f'the shape "{shape}" needs a class, but {name} is {describe(found)}')
        elif not shape.endswith("owned") and isinstance(found, ClassType):
            owned = f"{shape} owned" if f"{shape} owned" in SHAPES else "single owned"
            self._fault(f'{name} is a class, whose elements are always owned; the shape should be "{owned}"')
        elif name == "ZxArray" and shape != "single":
            self._fault(f'a ZxArray is single, not "{shape}"')

    def _check_default(self, found: Type) -> None:
        prop = self._prop
        if prop.default is None:
            if isinstance(found, EnumerationType) and prop.shape == "single" and prop.derives is None:
                literals = found.entry.literals
                first = f'; the first literal is "{literals[0].name}"' if literals else ""
                self._fault(f"a single property of an enumeration needs a default{first}")
        elif prop.derives is not None:
            self._fault("a derived property takes no default")
        elif prop.shape != "single":
            self._fault(f'a property of the shape "{prop.shape}" takes no default; it starts empty')
        else:
            try:
                defaults.parse(found, prop.default)
            except ValueError as error:
                self._fault(str(error))

    def _check_derived(self, owner: ClassType) -> None:
        prop = self._prop
        if prop.shape != "single":
            self._fault(f'a derived property is single, not "{prop.shape}"')
        if prop.key is not None:
            self._fault("a derived property has no key")
        sources = [p.name for p in owner.properties if p.derives is None]
        if prop.derives not in sources:
            hint = did_you_mean(prop.derives or "", sources)
            self._fault(f'derives from "{prop.derives}", which is no indexed property of the class{hint}')

    def _check_key(self) -> None:
        prop, child = self._prop, self._type
        if prop.shape not in _MAPS:
            if prop.key is not None:
                self._fault(f'only a map has a key, and this has the shape "{prop.shape}"')
            return
        if prop.key is None:
            self._fault("a map needs a key: the name of a single property of its entries")
            return
        if not isinstance(child, ClassType):
            return
        chain = [child, *self._scope.ancestors(child)]
        holders = {p.name: (cls, p) for cls in reversed(chain) for p in cls.properties}
        if prop.key not in holders:
            hint = did_you_mean(prop.key, holders)
            self._fault(f'the key "{prop.key}" is no property of {child.entry.name}{hint}')
            return
        holder, key = holders[prop.key]
        if key.shape != "single" or key.derives is not None or key.type not in _KEY_TYPES:
            what = f"{'derived' if key.derives is not None else key.shape} {key.type}"
            self._fault(f'the key "{prop.key}" is {what}, but must be a single {", ".join(_KEY_TYPES[:-1])} or Real')
        elif holder.scope is not self._scope:
            owner = f"{holder.scope.package.schema.name}.{holder.entry.name}"
            self._fault(f'the key "{prop.key}" belongs to {owner}, whose setter knows no map of this package')
