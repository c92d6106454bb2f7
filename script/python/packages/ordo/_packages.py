"""Packages of the class-object system as Python modules."""

from __future__ import annotations

import importlib
import importlib.machinery
import os
import sys
import types
from collections.abc import Sequence

from ordo import _core


class Package(types.ModuleType):
    """A module whose contents are the subpackages and classes of a package, each looked up when it is first
    accessed."""

    def __getattr__(self, name: str) -> object:
        full = f"{self.__name__}.{name}"
        if name == "__all__":
            return _core.list_package(self.__name__)
        if name.startswith("__"):
            raise AttributeError(f"module '{self.__name__}' has no attribute '{name}'")
        found: object = importlib.import_module(full) if _core.has_package(full) else _core.find_class(full)
        if found is None:
            import difflib

            _core.no_such_member(name, self.__name__, *difflib.get_close_matches(name, dir(self), 1))
        setattr(self, name, found)
        return found

    def __dir__(self) -> list[str]:
        return sorted({*super().__dir__(), *_core.list_package(self.__name__)})


class _Loader:
    """Creates the module of a package that has no file."""

    def create_module(self, spec: importlib.machinery.ModuleSpec) -> types.ModuleType:
        return Package(spec.name, _core.describe_package(spec.name))

    def exec_module(self, module: types.ModuleType) -> None:
        pass


class _Finder:
    """Finds packages below loaded ones; as the last finder of `sys.meta_path`, it also finds outermost packages."""

    def __init__(self, outermost: bool) -> None:
        self._outermost = outermost

    def find_spec(
        self, name: str, path: Sequence[str] | None = None, target: types.ModuleType | None = None
    ) -> importlib.machinery.ModuleSpec | None:
        top, _, below = name.partition(".")
        # If another finder has a module of that name, that module is used, and so is everything below it.
        ours = self._outermost if not below else isinstance(sys.modules.get(top), Package)
        if not ours or not _core.has_package(name):
            return None
        return importlib.machinery.ModuleSpec(name, _Loader(), is_package=True)  # type: ignore[arg-type]


def attach(name: str) -> None:
    """Adds the contents of the package of the same name to the module `name`, which is being imported."""
    module = sys.modules[name]
    module.__class__ = Package
    description = _core.describe_package(name)
    module.__doc__ = module.__doc__ or description


def load(library: str | os.PathLike[str], entry_point: str) -> None:
    """Loads a native library, which stays loaded for the rest of the process, and calls the function that registers its
    classes. `library` is a path, or a name that is searched beside this package's own libraries."""
    _core.load(os.fspath(library), entry_point)


sys.meta_path.insert(0, _Finder(outermost=False))
sys.meta_path.append(_Finder(outermost=True))
