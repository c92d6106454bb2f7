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

/// Ports are matched by name, entries of maps by key, members of sets by content, roots by the interface they tell of
/// or by content, all else by position; references to elements by the paths of these. Paths are those of the first
/// model, and of the second one for what it alone has.
std::vector<Difference> compare(Model const& before, Model const& after);

}  // namespace modelref
