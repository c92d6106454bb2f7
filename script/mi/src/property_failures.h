// Failures of values, told with the property that the value was for.
#pragma once

#include <keel/exception.h>

#include <quay/zero/meta/types.h>

namespace quay::zero::mi {

/// Throws a failure that a value was refused with again, as what it is, with "Class.property" as its subject. Leaves
/// those that have a subject, and failures of any other kind.
void rethrowAbout(keel::core::except::Error const& failure, meta::Property const& property);

/// Runs `use()`, whose failures don't know which property the value is for.
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
