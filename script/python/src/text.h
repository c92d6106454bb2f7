// Texts between the interpreter's form and UTF-16, unit by unit.
#pragma once

#include "python.h"

#include <ordo/value.h>

#include <string>
#include <string_view>

namespace host {

/// Surrogates that have their other half become one character, others stay as they are.
Ref textToPython(std::u16string_view units);
/// UTF-8; other bytes become lone surrogates, as by the error handler "surrogateescape".
Ref bytesToPython(std::string_view bytes);
/// A text that one gives to people, such as a name: never fails for what is in it.
inline Ref nameToPython(std::string_view name) { return bytesToPython(name); }

/// The units of a str.
std::u16string textFromPython(PyObject* text);
/// The value of a str; borrows its units if it has them.
ordo::OrdoValue textValue(PyObject* text);
/// UTF-8 of a str, as in bytesToPython.
std::string bytesFromPython(PyObject* text);

/// UTF-8 of a str for messages; unpaired surrogates are replaced.
std::string nameFromPython(PyObject* text);

}  // namespace host
