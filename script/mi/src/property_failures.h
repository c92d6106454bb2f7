// Adds the property to the failures of values that are read or written.
#pragma once

#include <keel/exception.h>

#include <quay/zero/meta/types.h>

namespace quay::zero::mi {

/// Rethrows the failure of a refused value with "Class.property" as its subject, keeping its type. Does nothing for a
/// failure that has a subject already or is of another kind.
void rethrowAbout(keel::core::except::Error const& failure, meta::Property const& property);

/// Runs `use()` and adds the property to the failures that it throws.
template <class F>
void forProperty(meta::Property const& property, F const& use) {
    try {
        use();
    } catch (keel::core::except::Error const& failure) {
        rethrowAbout(failure, property);
        throw;
    }
}

}  // namespace quay::zero::mi
