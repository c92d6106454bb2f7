// Conversion of lists of numbers, truth values or literals to one array.
#pragma once

#include "python.h"

#include <ordo/value.h>

namespace host {

/// The kind of a list's item, which decides what the list is converted to. Each kind of number can represent the kinds
/// of numbers before it.
enum class ItemKind { Integer, Real, Complex, Bool, Literal, Dict, Other };

/// The common kind of all items of a tuple that isn't empty. For numbers of several kinds it is the widest; literals
/// must be of one enumeration.
ItemKind kindOfAll(PyObject* tuple);

/// A 1 by n array of items of this common kind; null for other kinds, and if no class of numbers holds all of them
/// unchanged.
zx::Array rowFrom(PyObject* tuple, ItemKind kind);

/// The value of an int of any size. An int without a 64-bit form becomes the nearest double, which no integer property
/// takes.
ordo::OrdoValue integerValue(PyObject* number);

}  // namespace host
