// The numbers that a data type can be.
#pragma once

#include <typesys/export.h>

/// A number: its value is the stored integer * slopeFraction * 2^exponent + bias. For a bool or floating-point number
/// only the word length counts, and the other members keep their initial values.
struct TYPESYS_API fxpDataTypeProp {
    enum class Kind { FixedPoint, FloatingPoint, Boolean };

    static constexpr int maxWordLength = 128;
    /// The range of a normal double's exponent, so that the whole slope is a normal double.
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
