// Random element ids: a generator for each user, seeded from one source of the process.
#pragma once

#include <keel/export.h>

#include <boost/uuid/uuid.hpp>
#include <cstdint>

namespace quay::zero {

/// Draws version 4 ids by xoshiro256++. Ids must differ, not be unguessable, and a generator without a lock or a
/// system call is what lets a million elements be created in a fraction of a second.
class QUAY_ZERO_API RandomIds {
public:
    /// Seeds from the process's source. Any thread may construct one.
    RandomIds() noexcept;

    boost::uuids::uuid draw() noexcept;

private:
    std::uint64_t next() noexcept;

    std::uint64_t state_[4];
};

}  // namespace quay::zero
