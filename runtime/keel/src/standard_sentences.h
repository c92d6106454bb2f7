// The catalogue's own sentences: those of the runtime and of the script layer.
#pragma once

#include <string>
#include <vector>

namespace keel {

struct StandardEntry {
    char const* identifier;
    std::vector<std::string> sentences;
};

std::vector<StandardEntry> standardSentences();

}  // namespace keel
