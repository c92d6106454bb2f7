// Random element ids. Each user has a generator of its own, seeded from one source of the process.
#pragma once

#include <keel/export.h>

#include <atomic>
#include <bit>
#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <cstring>

namespace quay::zero {

/// Draws version 4 ids by xoshiro256++. Ids need to differ but not to be unguessable, so a generator without a lock or
/// a system call suffices; it makes creating many elements fast. After a fork, the child's generators are seeded anew.
class QUAY_ZERO_API RandomIds {
public:
    /// Seeds from the process's source. Any thread may construct one.
    RandomIds() noexcept { seed(); }

    boost::uuids::uuid draw() noexcept {
        if (forks_ != forks.load(std::memory_order_relaxed)) seed();
        // Version 4 and the usual variant, in bytes 6 and 8.
        std::uint64_t const words[2] = {(next() & ~kVersionMask) | kVersion, (next() & ~kVariantMask) | kVariant};
        boost::uuids::uuid id;
        static_assert(sizeof id == sizeof words && std::endian::native == std::endian::little);
        std::memcpy(&id, words, sizeof id);
        return id;
    }

private:
    static constexpr std::uint64_t kVersionMask = 0x00f0'0000'0000'0000;
    static constexpr std::uint64_t kVersion = 0x0040'0000'0000'0000;
    static constexpr std::uint64_t kVariantMask = 0xc0;
    static constexpr std::uint64_t kVariant = 0x80;

    static std::atomic<std::uint32_t> forks;  // how often the process, or one that it stems from, was forked off

    void seed() noexcept;
    std::uint64_t next() noexcept {
        std::uint64_t const result = std::rotl(state_[0] + state_[3], 23) + state_[0];
        std::uint64_t const t = state_[1] << 17;
        state_[2] ^= state_[0];
        state_[3] ^= state_[1];
        state_[1] ^= state_[2];
        state_[0] ^= state_[3];
        state_[2] ^= t;
        state_[3] = std::rotl(state_[3], 45);
        return result;
    }

    std::uint64_t state_[4];
    std::uint32_t forks_ = 0;
};

}  // namespace quay::zero
