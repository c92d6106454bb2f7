// Conversion of texts between Python's str, UTF-16 and UTF-8.
#pragma once

#include "python.h"

#include <ordo/value.h>

#include <string>
#include <string_view>

namespace host {

/// A str from UTF-16. Surrogate pairs become one character; lone surrogates are kept.
Ref textToPython(std::u16string_view units);
/// A str from UTF-8; other bytes become lone surrogates, as by the error handler "surrogateescape".
Ref bytesToPython(std::string_view bytes);
/// A str from a text for people, such as a name; no content makes it fail.
inline Ref nameToPython(std::string_view name) { return bytesToPython(name); }

/// The UTF-16 units of a str.
std::u16string textFromPython(PyObject* text);
/// The value of a str; borrows the str's memory where its form allows that.
ordo::OrdoValue textValue(PyObject* text);
/// The UTF-8 of a str, the reverse of bytesToPython. Throws NotEncodable for lone surrogates that stand for no byte.
std::string bytesFromPython(PyObject* text);

/// UTF-8 of a str for messages; unpaired surrogates are replaced.
std::string nameFromPython(PyObject* text);

}  // namespace host
