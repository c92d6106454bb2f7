// How this room reports failures.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quay::zero::io {

/// Why something can't be read or written, without the place, which whoever knows it adds.
class Refused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

[[noreturn]] void reportLoad(std::string_view file, std::string_view place, std::string_view reason);
[[noreturn]] void reportSave(std::string_view place, std::string_view reason);
/// With the reason that the operating system gives under that number.
[[noreturn]] void reportUnreadable(std::string_view file, int error);
[[noreturn]] void reportUnwritable(std::string_view file, int error);

/// A name as it stands in a sentence: in quotes, shortened if it is long, without anything that could break the line.
std::string inQuotes(std::string_view name);

}  // namespace quay::zero::io
