// Files whose elements are read when they are reached.
#pragma once

#include <quay/zero/io/io.h>

namespace quay::zero::io {

/// Reads the roots of a file into the model and sets the model's resolver, which reads the rest. A file that can't be
/// read from any place, such as a pipe, is read as a whole.
void loadLazily(Model const& model, std::filesystem::path const& path, Limits const& limits);

}  // namespace quay::zero::io
