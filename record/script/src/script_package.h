// The script package of the record: 103 classes, 8 enumerations and 2 data types.
#pragma once

#include <string_view>

namespace mi {

/// Registers "Varlow.ModelReference.internal.compileInfo". The descriptions are made by one rule from the meta-model
/// and live in libordo, none of their code here, so that they outlive this library.
class ModelRefInfoRepoPackage {
public:
    static constexpr std::string_view kName = "Varlow.ModelReference.internal.compileInfo";

    ModelRefInfoRepoPackage() = delete;

    /// What the library's entry point does. Any number of calls; each registers a package object.
    static void registerPackage();
};

}  // namespace mi
