// Throwing a message that is known by its identifier only.
#pragma once

#include <keel/exception.h>

#include <string>
#include <string_view>
#include <vector>

namespace zx {

/// A message without a class of its own.
class ErrorById : public keel::MessageOf<ErrorById> {
public:
    using MessageOf::MessageOf;
};

}  // namespace zx

/// Throws the message `key` of `catalogue` as keel::core::except::Exception<zx::ErrorById>. Both texts must
/// live as long as the process.
[[noreturn]] QUAY_ZERO_API void zxRaiseErrorById(std::string_view catalogue, std::string_view key,
                                                 std::vector<std::u16string> arguments = {});
