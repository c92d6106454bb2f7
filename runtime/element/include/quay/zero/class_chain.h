// Questions to a class that are answered by it or by a class above it: whether it conforms, and which level has an
// index.
//
// The runtime knows classes in two ways: by their tables, which lie in the library of the class and are what elements
// use, and by their meta objects, which reflection shows and which stay when that library is unmapped. Both are chains
// of levels, of which these functions are the one description.
#pragma once

namespace quay::zero {

/// Levels answer base(), the level above or null.
template <class Level, class Wanted>
bool conformsInChain(Level const* level, Wanted const* wanted) noexcept {
    for (; level != nullptr; level = level->base()) {
        if (level == wanted) return true;
    }
    return false;
}

/// The level that would have the property of that index, or null. Levels answer firstIndex() as well, 0 for one that
/// has no property with an index.
template <class Level>
Level const* levelOfIndex(Level const* level, unsigned long index) noexcept {
    while (level != nullptr && (level->firstIndex() == 0 || index < level->firstIndex())) level = level->base();
    return level;
}

/// The highest index of the chain; 0 without properties. Levels answer lastIndex() as well, 0 like firstIndex().
template <class Level>
unsigned long highestIndexInChain(Level const* level) noexcept {
    for (; level != nullptr; level = level->base()) {
        if (unsigned long const last = level->lastIndex()) return last;
    }
    return 0;
}

}  // namespace quay::zero
