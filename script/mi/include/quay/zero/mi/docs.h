// One-line docs of script classes, which help texts show.
#pragma once

#include <ordo/export.h>

#include <span>
#include <string_view>

namespace quay::zero::mi {

/// The name of a type's member and its doc.
struct Doc {
    char const* name;
    char const* text;
};

/// A type's script name, the docs of its members, and its own.
struct TypeDocs {
    Doc type;
    std::span<Doc const> members;
};

/// Adds docs and replaces those of the same names. The texts are copied, so that the library that passed them can be
/// unloaded.
ORDO_API void registerDocs(std::span<TypeDocs const> docs);

/// The doc of a type, or of one of its members; empty if there is none. The view stays valid for the rest of the
/// process.
ORDO_API std::string_view docOf(std::string_view type, std::string_view member = {});

}  // namespace quay::zero::mi
