// The bracket around the resolution of one proxy.
#pragma once

#include <quay/zero/savepoint.h>

#include <optional>

namespace quay::zero {

/// Inside a transaction a resolution is an operation of its own, as any change of a collection is.
class QUAY_ZERO_API Resolution {
public:
    /// Makes room for all that is recorded, so that what follows can't fail.
    explicit Resolution(Journal& journal);
    Resolution(Resolution const&) = delete;
    Resolution& operator=(Resolution const&) = delete;

    void commit();

private:
    std::optional<Savepoint> savepoint_;
};

}  // namespace quay::zero
