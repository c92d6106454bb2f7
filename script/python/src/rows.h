// Lists of numbers, truth values or literals, which become one array.
#pragma once

#include "python.h"

#include <ordo/value.h>

namespace host {

/// What an item of a list is, as far as that decides what becomes of the list. Numbers are in the order in which each
/// kind has room for those before it.
enum class ItemKind { Integer, Real, Complex, Bool, Literal, Dict, Other };

/// What all items of a tuple, which has some, are in common. Numbers of several kinds are of the widest, literals are
/// of one enumeration.
ItemKind kindOfAll(PyObject* tuple);

/// A row of numbers, truth values or literals out of items that have this in common; null if they are something else,
/// or if no class of numbers holds all of them as they are.
zx::Array rowFrom(PyObject* tuple, ItemKind kind);

/// An int of any size: one that no 64-bit integer holds goes as the double nearest to it, and so fits no integer.
ordo::OrdoValue integerValue(PyObject* number);

}  // namespace host
