"""Packages of Varlow. `Varlow.ModelReference.internal.compileInfo` has the classes of a referenced model's record."""

import ordo
import quay  # noqa: F401 - the import loads the library that has the packages

ordo.attach(__name__)
