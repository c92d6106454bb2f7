#include <typesys/fixed_point.h>

#include "constructor_text.h"

#include <charconv>
#include <cmath>

namespace {

using VWTypeSys::DataTypeException;
using VWTypeSys::DataTypeMessage;

/// The shortest text that parses to this number.
template <class T>
std::string toText(T number) {
    char buffer[32];
    return {buffer, std::to_chars(std::begin(buffer), std::end(buffer), number).ptr};
}

std::string slopeText(fxpDataTypeProp const& type, FxpDT::scalingRepPrefer scaling) {
    if (scaling == FxpDT::scalingRepPrefer::WholeSlope) return toText(std::ldexp(type.slopeFraction, type.exponent));
    std::string const power = "2^" + toText(type.exponent);
    return type.slopeFraction == 1 ? power : toText(type.slopeFraction) + "*" + power;
}

}  // namespace

std::vector<fxpBuiltIn> const& fxpBuiltIns() {
    static std::vector<fxpBuiltIn> const all = {
        {"double", fxpDataTypeProp::floating(64)},   {"single", fxpDataTypeProp::floating(32)},
        {"int8", fxpDataTypeProp::fixed(true, 8)},   {"uint8", fxpDataTypeProp::fixed(false, 8)},
        {"int16", fxpDataTypeProp::fixed(true, 16)}, {"uint16", fxpDataTypeProp::fixed(false, 16)},
        {"int32", fxpDataTypeProp::fixed(true, 32)}, {"uint32", fxpDataTypeProp::fixed(false, 32)},
        {"int64", fxpDataTypeProp::fixed(true, 64)}, {"uint64", fxpDataTypeProp::fixed(false, 64)},
        {"boolean", fxpDataTypeProp::boolean()},
    };
    return all;
}

std::optional<std::string> fxpDataTypeFault(fxpDataTypeProp const& type) {
    if (type.kind == fxpDataTypeProp::Kind::Boolean) {
        if (type == fxpDataTypeProp::boolean()) return std::nullopt;
        return "a bool has one bit, no slope and no bias";
    }
    if (type.kind == fxpDataTypeProp::Kind::FloatingPoint) {
        if (type == fxpDataTypeProp::floating(32) || type == fxpDataTypeProp::floating(64)) return std::nullopt;
        return "a floating-point number has 32 or 64 bits, no slope and no bias";
    }
    if (type.kind != fxpDataTypeProp::Kind::FixedPoint) return "its kind is unknown";
    if (type.wordLength < 1 || type.wordLength > fxpDataTypeProp::maxWordLength) {
        return "the word length is from 1 to " + toText(fxpDataTypeProp::maxWordLength) + ", not " +
               toText(type.wordLength);
    }
    // Written so that NaN fails too.
    if (!(type.slopeFraction >= 1 && type.slopeFraction < 2)) return "the slope's fraction is at least 1 and below 2";
    if (type.exponent < fxpDataTypeProp::minExponent || type.exponent > fxpDataTypeProp::maxExponent) {
        return "the slope is too large or too small";
    }
    if (!std::isfinite(type.bias)) return "the bias isn't finite";
    return std::nullopt;
}

std::string fxpDataTypeToConstructorString(fxpDataTypeProp const& type, FxpDT::baseCtorPrefer base,
                                           FxpDT::scalingRepPrefer scaling) {
    if (auto const fault = fxpDataTypeFault(type)) {
        throw DataTypeException(DataTypeMessage("InvalidFixedPointType", {*fault}));
    }
    if (base == FxpDT::baseCtorPrefer::BuiltInName) {
        for (fxpBuiltIn const& builtIn : fxpBuiltIns()) {
            if (builtIn.type == type) return builtIn.name;
        }
    }
    if (type.kind == fxpDataTypeProp::Kind::Boolean) return "bool";
    if (type.kind == fxpDataTypeProp::Kind::FloatingPoint) return "float(" + toText(type.wordLength) + ")";
    std::string text = type.isSigned ? "fixed(signed," : "fixed(unsigned,";
    text += toText(type.wordLength);
    bool const isScaled = type.slopeFraction != 1 || type.exponent != 0;
    if (isScaled || type.bias != 0) text += "," + slopeText(type, scaling);
    if (type.bias != 0) text += "," + toText(type.bias);
    return text + ")";
}

fxpDataTypeProp constructorStringToFxpDataType(std::string const& text) {
    for (fxpBuiltIn const& builtIn : fxpBuiltIns()) {
        if (text == builtIn.name) return builtIn.type;
    }
    auto const type = VWTypeSys::ConstructorText(text).read();
    if (!type || fxpDataTypeFault(*type)) throw DataTypeException(DataTypeMessage("InvalidConstructorText", {text}));
    return *type;
}
