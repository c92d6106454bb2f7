#include "constructor_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace VWTypeSys {

bool ConstructorText::take(std::string_view token) {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
    if (!rest_.starts_with(token)) return false;
    rest_.remove_prefix(token.size());
    return true;
}

template <class T>
std::optional<T> ConstructorText::takeNumber() {
    take("");
    T number{};
    auto const [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (error != std::errc()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return number;
}

std::optional<fxpDataTypeProp> ConstructorText::read() {
    std::optional<fxpDataTypeProp> type;
    if (take("bool")) {
        type = fxpDataTypeProp::boolean();
    } else if (take("float")) {
        auto const length = take("(") ? takeNumber<int>() : std::nullopt;
        if (length && take(")")) type = fxpDataTypeProp::floating(*length);
    } else if (take("fixed")) {
        type = readFixed();
    }
    take("");
    return rest_.empty() ? type : std::nullopt;
}

std::optional<fxpDataTypeProp> ConstructorText::readFixed() {
    if (!take("(")) return std::nullopt;
    bool const isSigned = take("signed");
    if (!isSigned && !take("unsigned")) return std::nullopt;
    auto const length = take(",") ? takeNumber<int>() : std::nullopt;
    if (!length) return std::nullopt;
    auto type = fxpDataTypeProp::fixed(isSigned, *length);
    if (take(",")) {
        if (!readSlope(type)) return std::nullopt;
        if (take(",")) {
            auto const bias = takeNumber<double>();
            if (!bias) return std::nullopt;
            type.bias = *bias;
        }
    }
    if (!take(")")) return std::nullopt;
    return type;
}

bool ConstructorText::readSlope(fxpDataTypeProp& type) {
    double factor = 1;
    int power = 0;
    bool hasPower = take("2^");
    if (!hasPower) {
        auto const number = takeNumber<double>();
        if (!number || !std::isfinite(*number) || *number <= 0) return false;
        factor = *number;
        hasPower = take("*");
        if (hasPower && !take("2^")) return false;
    }
    if (hasPower) {
        auto const number = takeNumber<int>();
        // Refuse exponents that no factor can bring into range; the limit also keeps the computation below from
        // overflowing.
        if (!number || std::abs(*number) > 4 * fxpDataTypeProp::maxExponent) return false;
        power = *number;
    }
    int exponent = 0;
    type.slopeFraction = 2 * std::frexp(factor, &exponent);
    type.exponent = exponent - 1 + power;
    return true;
}

}  // namespace VWTypeSys
