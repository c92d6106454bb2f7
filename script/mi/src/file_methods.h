// Saving and loading for scripts.
#pragma once

#include <ordo/class.h>

namespace quay::zero::mi {

/// Gives quay.zero.Model its methods for files and texts.
void addFileMethods(ordo::OrdoClass& model);

}  // namespace quay::zero::mi
