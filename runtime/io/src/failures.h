// How failures to save and to load are reported.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quay::zero::io {

/// Why something can't be read or written. It is thrown where the place in the text isn't known, and caught where it
/// is, to be reported with it.
class Refused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws Refused for a key that an object has twice.
[[noreturn]] void refuseSecond(std::string_view key);
/// Throws Refused for an element whose id is that of an earlier one.
[[noreturn]] void refuseSecondId();

[[noreturn]] void reportLoad(std::string_view file, std::string_view place, std::string_view reason);
[[noreturn]] void reportSave(std::string_view place, std::string_view reason);
/// `error` is a number of the operating system, whose text for it becomes the reason.
[[noreturn]] void reportUnreadable(std::string_view file, int error);
[[noreturn]] void reportUnwritable(std::string_view file, int error);
[[noreturn]] void reportUnwritable(std::string_view file, std::string_view reason);

/// A name for a message: in quotes, cut if it is long, and with spaces for control characters, which could break the
/// line.
std::string inQuotes(std::string_view name);

}  // namespace quay::zero::io
