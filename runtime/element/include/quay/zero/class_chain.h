// Functions that walk the inheritance chain of a class: whether the class conforms to another one, and which level has
// an index.
//
// A class is described twice: by its class table, which lies in the library of the class and which elements use, and by
// its meta object, which reflection shows and which stays when that library is unloaded. Both form a chain of levels,
// and these functions work on either.
#pragma once

namespace quay::zero {

/// Whether `wanted` is `level` or one above it. A Level has base(), which returns the level above or null.
template <class Level, class Wanted>
bool conformsInChain(Level const* level, Wanted const* wanted) noexcept {
    for (; level != nullptr; level = level->base()) {
        if (level == wanted) return true;
    }
    return false;
}

/// The level that would have the property of that index, or null. A Level has base() and firstIndex(), which may return
/// 0 for a level without indexed properties.
template <class Level>
Level const* levelOfIndex(Level const* level, unsigned long index) noexcept {
    while (level != nullptr && (level->firstIndex() == 0 || index < level->firstIndex())) level = level->base();
    return level;
}

/// The highest index of the chain; 0 without properties. A Level has base() and lastIndex(), which returns 0 for a
/// level without indexed properties.
template <class Level>
unsigned long highestIndexInChain(Level const* level) noexcept {
    for (; level != nullptr; level = level->base()) {
        if (unsigned long const last = level->lastIndex()) return last;
    }
    return 0;
}

}  // namespace quay::zero
