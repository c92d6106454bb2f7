// One-line docs of script classes, for people who ask for help.
#pragma once

#include <ordo/export.h>

#include <span>
#include <string_view>

namespace quay::zero::mi {

/// A name and what is said of it.
struct Doc {
    char const* name;
    char const* text;
};

/// A type, by its script name, and its members.
struct TypeDocs {
    Doc type;
    std::span<Doc const> members;
};

/// Enters docs, in place of those that the same names have. The texts are copied, so that the library that brings them
/// can be unloaded.
ORDO_API void registerDocs(std::span<TypeDocs const> docs);

/// What is said of a type, or of one of its members; empty if nothing is. Good as long as the process lives.
ORDO_API std::string_view docOf(std::string_view type, std::string_view member = {});

}  // namespace quay::zero::mi
