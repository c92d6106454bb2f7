// What arrays do with native objects.
#pragma once

namespace zx {

/// What arrays do with the native objects that they own. Must outlive every array that refers to it, as must
/// the functions.
struct NativeOperations {
    /// Gives what another array can own: a copy, or the same object with one more reference. May throw.
    void* (*copy)(void* native);
    void (*destroy)(void* native) noexcept;
    /// Null: an object equals only itself.
    bool (*equals)(void const* left, void const* right);
};

}  // namespace zx
