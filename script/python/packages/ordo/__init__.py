"""Classes of native libraries as classes of Python.

Packages of the class-object system are imported by their dotted names. Each class is made when it is first accessed.
Failures raise `Error`.
"""

import pathlib
import sys

try:
    from ordo import _core
except ModuleNotFoundError as error:
    # The extension's file name tells for which Python it was built: _core.cpython-311-x86_64-linux-gnu.so.
    files = [file.name for file in pathlib.Path(__file__).parent.glob("_core.*")]
    raise ImportError(
        f"ordo has no extension for Python {sys.version_info.major}.{sys.version_info.minor}; it has {files}"
    ) from error
_core.check_interpreter()

from ordo import _errors
from ordo._core import Class, Method, Object, Property, count_bindings
from ordo._errors import Error
from ordo._packages import Package, attach, load

# So that the error classes which derive from a built-in one are displayed as `ordo.ValueError` and so on.
ValueError = _errors.ValueError
TypeError = _errors.TypeError
AttributeError = _errors.AttributeError
KeyError = _errors.KeyError
IndexError = _errors.IndexError

__all__ = ["Class", "Error", "Method", "Object", "Package", "Property", "attach", "count_bindings", "load"]
