// Records in files.
#pragma once

#include <quay/zero/model.h>

#include <filesystem>
#include <string_view>

namespace modelref {

/// The model in a file. Failure with file, place and reason.
quay::zero::Model loadRecord(std::filesystem::path const& path);
/// Writes a model to a file; Failure leaves the file as it was.
void saveRecord(quay::zero::Model const& model, std::filesystem::path const& path);
void saveText(std::string_view text, std::filesystem::path const& path);

}  // namespace modelref
