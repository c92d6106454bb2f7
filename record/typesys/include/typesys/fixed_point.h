// Constructor texts: the texts for the numbers that a data type can be.
//
//     bool
//     float(32)  float(64)
//     fixed(signed,16)                        an integer
//     fixed(unsigned,8,2^-3)                  the stored integer times a slope
//     fixed(signed,32,1.25*2^-5,-0.5)         ... plus a bias
//
// Parsing a text gives exactly the type that it was made from.
#pragma once

#include <typesys/diagnostic.h>
#include <typesys/export.h>
#include <typesys/number_type.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FxpDT {

/// Which text a type gets if it equals a built-in.
enum class baseCtorPrefer : int { Constructor = 0, BuiltInName = 1 };
/// How a slope is written: 1.25*2^-5, or 0.0390625.
enum class scalingRepPrefer : int { FractionAndExponent = 0, WholeSlope = 1 };

}  // namespace FxpDT

/// A built-in number and its name.
struct fxpBuiltIn {
    char const* name = nullptr;
    fxpDataTypeProp type;
};
/// All built-in numbers, in the order of their ids from 0.
TYPESYS_API std::vector<fxpBuiltIn> const& fxpBuiltIns();

/// The fault of the type as a sentence, or nothing if it can be used.
TYPESYS_API std::optional<std::string> fxpDataTypeFault(fxpDataTypeProp const& type);

/// The type's text. Throws InvalidFixedPointType if there is no such type.
TYPESYS_API std::string fxpDataTypeToConstructorString(fxpDataTypeProp const& type, FxpDT::baseCtorPrefer base,
                                                       FxpDT::scalingRepPrefer scaling);
/// Parses a type's text in any of its forms, the names of built-ins included; blanks between its parts are ignored.
/// Throws InvalidConstructorText.
TYPESYS_API fxpDataTypeProp constructorStringToFxpDataType(std::string const& text);
