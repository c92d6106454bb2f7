#include "string_expression.h"

#include <charconv>

namespace VWTypeSys {

bool isStringExpression(std::string_view text) noexcept {
    if (text == "string") return true;
    if (!text.starts_with("string(") || !text.ends_with(')')) return false;
    text.remove_prefix(7);
    text.remove_suffix(1);
    if (text.empty() || text.front() < '1' || text.front() > '9') return false;
    int length = 0;
    auto const* const last = text.data() + text.size();
    auto const [end, error] = std::from_chars(text.data(), last, length);
    return error == std::errc() && end == last;
}

}  // namespace VWTypeSys
