// The numbers that a data type can be, and the texts that stand for them.
//
//     bool
//     float(32)  float(64)
//     fixed(signed,16)                        an integer
//     fixed(unsigned,8,2^-3)                  the stored integer times a slope
//     fixed(signed,32,1.25*2^-5,-0.5)         ... plus a bias
//
// A text reads back to the type that it was made of, to the last bit.
#pragma once

#include <typesys/diagnostic.h>
#include <typesys/export.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A number: its value is the stored integer * slopeFraction * 2^exponent + bias. Of a bool or floating-point number
/// only the word length counts, and the other members stay as they are at the start.
struct TYPESYS_API fxpDataTypeProp {
    enum class Kind { FixedPoint, FloatingPoint, Boolean };

    static constexpr int maxWordLength = 128;
    /// Of a normal double, so that the whole slope is one.
    static constexpr int minExponent = -1022;
    static constexpr int maxExponent = 1023;

    Kind kind = Kind::FixedPoint;
    bool isSigned = false;
    int wordLength = 0;
    double slopeFraction = 1;  ///< at least 1, below 2
    int exponent = 0;
    double bias = 0;

    static fxpDataTypeProp boolean() { return {Kind::Boolean, false, 1}; }
    static fxpDataTypeProp floating(int wordLength) { return {Kind::FloatingPoint, true, wordLength}; }
    static fxpDataTypeProp fixed(bool isSigned, int wordLength, int exponent = 0) {
        return {Kind::FixedPoint, isSigned, wordLength, 1, exponent};
    }

    friend bool operator==(fxpDataTypeProp const&, fxpDataTypeProp const&) = default;
};

namespace FxpDT {

/// Which of its texts a type gets that is also a built-in.
enum class baseCtorPrefer : int { Constructor = 0, BuiltInName = 1 };
/// How a slope is written: 1.25*2^-5, or 0.0390625.
enum class scalingRepPrefer : int { FractionAndExponent = 0, WholeSlope = 1 };

}  // namespace FxpDT

/// A built-in number under its name.
struct fxpBuiltIn {
    char const* name = nullptr;
    fxpDataTypeProp type;
};
/// In the order of their ids, from 0.
TYPESYS_API std::vector<fxpBuiltIn> const& fxpBuiltIns();

/// What is wrong with the type, or nothing if it can be used.
TYPESYS_API std::optional<std::string> fxpDataTypeFault(fxpDataTypeProp const& type);

/// The type's text. InvalidFixedPointType if there is no such type.
TYPESYS_API std::string fxpDataTypeToConstructorString(fxpDataTypeProp const& type, FxpDT::baseCtorPrefer base,
                                                       FxpDT::scalingRepPrefer scaling);
/// The type of a text in any of its forms, the names of built-ins included; blanks between its parts don't matter.
/// Throws InvalidConstructorText.
TYPESYS_API fxpDataTypeProp constructorStringToFxpDataType(std::string const& text);
