// How failures are reported: by throwing a message as an exception.
#pragma once

#include <keel/exception.h>

namespace quay::zero {

/// Throws `message` as the exception type of its class.
template <class M>
[[noreturn]] void reportException(M const& message) {
    throw keel::core::except::Exception<M, std::exception, void>(message);
}

}  // namespace quay::zero
