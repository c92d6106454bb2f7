// Reads the files that hold a model description: an XML file, or an FMU, which is a zip archive that contains one.
#pragma once

#include <filesystem>
#include <string>

namespace modelref::fmi {

/// The text of the model description in a file. Nothing else in an archive is unpacked. Throws Failure for a file that
/// can't be read or is too large, and for an archive that is damaged, has no description or names files outside itself.
std::string readDescriptionText(std::filesystem::path const& path);

}  // namespace modelref::fmi
