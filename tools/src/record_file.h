// Loading and saving of records.
#pragma once

#include <quay/zero/model.h>

#include <filesystem>
#include <string_view>

namespace modelref {

/// Loads the model in a file. Throws Failure with file, place and reason.
quay::zero::Model loadRecord(std::filesystem::path const& path);
/// Writes a model to a file. If it throws Failure, the file is unchanged.
void saveRecord(quay::zero::Model const& model, std::filesystem::path const& path);
void saveText(std::string_view text, std::filesystem::path const& path);

}  // namespace modelref
