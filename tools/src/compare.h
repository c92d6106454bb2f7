// Comparison of two models by meaning, regardless of the ids of their elements.
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

/// The differences between two models. Ports are matched by name, entries of maps by key, members of sets by content,
/// roots by their interface or by content, all else by position; references are compared by the paths of their targets.
/// Paths are those of the first model, and of the second one for what only that has.
std::vector<Difference> compare(Model const& before, Model const& after);

}  // namespace modelref
