// Reading the constructor text of a number.
#pragma once

#include <typesys/number_type.h>

#include <optional>
#include <string_view>

namespace VWTypeSys {

/// A text that is read from the front.
class ConstructorText {
public:
    explicit ConstructorText(std::string_view text) : rest_(text) {}

    /// The type, or nothing if the text has another form. What it says of a well-formed type may still be wrong.
    std::optional<fxpDataTypeProp> read();

private:
    /// Takes that token, if it comes next.
    bool take(std::string_view token);
    /// Takes the number that comes next. Nothing if there is none or it doesn't fit.
    template <class T>
    std::optional<T> takeNumber();
    std::optional<fxpDataTypeProp> readFixed();
    /// Whether a slope was read, which is normalised.
    bool readSlope(fxpDataTypeProp& type);

    std::string_view rest_;
};

}  // namespace VWTypeSys
