// How the runtime, and everything built on it, fails.
#pragma once

#include <keel/exception.h>

namespace quay::zero {

/// Throws `message` as the exception of its class.
template <class M>
[[noreturn]] void reportException(M const& message) {
    throw keel::core::except::Exception<M, std::exception, void>(message);
}

}  // namespace quay::zero
