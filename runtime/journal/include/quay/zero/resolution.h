// The scope of the resolution of one proxy.
#pragma once

#include <quay/zero/savepoint.h>

#include <optional>

namespace quay::zero {

/// Encloses the resolution of one proxy. Inside a transaction it opens a savepoint, unless an operation has one open.
class QUAY_ZERO_API Resolution {
public:
    /// Reserves memory for all that is recorded, so that what follows can't fail.
    explicit Resolution(Journal& journal);
    Resolution(Resolution const&) = delete;
    Resolution& operator=(Resolution const&) = delete;

    void commit();

private:
    std::optional<Savepoint> savepoint_;
};

}  // namespace quay::zero
