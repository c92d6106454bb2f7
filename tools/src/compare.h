// What differs between two models by meaning, whatever the ids of their elements.
#pragma once

#include <string>
#include <vector>

#include "elements.h"

namespace modelref {

struct Difference {
    enum class Kind { Added, Removed, Changed, Moved };
    Kind kind;
    std::string path;
    std::string before;
    std::string after;
};

/// Ports are matched by name, entries of maps by key, members of sets by content, all else by position.
std::vector<Difference> compare(Model const& before, Model const& after);

}  // namespace modelref
