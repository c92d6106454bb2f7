// Files that hold a model description: the XML itself, or an FMU, which is a zip archive with the XML in it.
#pragma once

#include <filesystem>
#include <string>

namespace modelref::fmi {

/// The text of the model description in a file. Nothing else of an archive is unpacked. Failure for a file that can't
/// be read or is too large, and for an archive that is damaged, has no description or names what lies outside it.
std::string readDescriptionText(std::filesystem::path const& path);

}  // namespace modelref::fmi
