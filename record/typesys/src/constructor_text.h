// Reading the constructor text of a number.
#pragma once

#include <typesys/number_type.h>

#include <optional>
#include <string_view>

namespace VWTypeSys {

/// A constructor text that is parsed from its beginning.
class ConstructorText {
public:
    explicit ConstructorText(std::string_view text) : rest_(text) {}

    /// Parses the type; nothing if the text has another form. A well-formed text may still describe an invalid type.
    std::optional<fxpDataTypeProp> read();

private:
    /// Consumes this token, if it comes next, and returns whether it did.
    bool take(std::string_view token);
    /// Consumes the number that comes next. Nothing if there is none or it doesn't fit.
    template <class T>
    std::optional<T> takeNumber();
    std::optional<fxpDataTypeProp> readFixed();
    /// Parses a slope and normalises it; returns whether there was one.
    bool readSlope(fxpDataTypeProp& type);

    std::string_view rest_;
};

}  // namespace VWTypeSys
