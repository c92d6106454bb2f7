// The script package of the record: 103 classes, 8 enumerations and 2 data types.
#pragma once

#include <string_view>

namespace mi {

/// Registers "Varlow.ModelReference.internal.compileInfo". Its class descriptions are made from the meta-model by
/// libordo and contain none of this library's code, so that they can outlive this library.
class ModelRefInfoRepoPackage {
public:
    static constexpr std::string_view kName = "Varlow.ModelReference.internal.compileInfo";

    ModelRefInfoRepoPackage() = delete;

    /// Called by the library's entry point, any number of times; each call registers a package object.
    static void registerPackage();
};

}  // namespace mi
