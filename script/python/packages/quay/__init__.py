"""The modelling runtime and the record of a referenced model's interface.

Importing this package loads the native libraries. `quay.zero` has models, elements and collections; the record's classes
are in `Varlow.ModelReference.internal.compileInfo`.
"""

import importlib

import ordo

ordo.load("libvw_modelref_info.so.1", "ZLInitialize_vw_modelref_info")
ordo.attach(__name__)

zero = importlib.import_module("quay.zero")
for _name in ("load", "loads"):
    setattr(zero, _name, getattr(zero.Model, _name))
