// Loads the roots of a file at once, and the elements that they own when these are reached.
#pragma once

#include <quay/zero/io/limits.h>
#include <quay/zero/model.h>

#include <filesystem>

namespace quay::zero::io {

/// Reads the roots of a file into a model and sets the model's proxy resolver, which reads the other elements. A file
/// that can only be read from the begin to the end, such as a pipe, is read as a whole.
void loadLazily(Model const& model, std::filesystem::path const& path, Limits const& limits);

}  // namespace quay::zero::io
