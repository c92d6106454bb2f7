// Blocks, and the registration of types on behalf of a block.
#pragma once

#include <typesys/data_type_table.h>
#include <typesys/diagnostic.h>
#include <typesys/export.h>

#include <cstdint>
#include <string>
#include <utility>

class VWBlock;

namespace VWTypeSys {

/// Options of a resolution. Their meaning is up to the owner; others pass them on unchanged.
struct ResolveOptions {
    std::int32_t first;
    std::int32_t second;
    std::int64_t third;
    std::int32_t fourth;
    double fifth;
    std::int64_t sixth;
    std::int32_t seventh;
};

/// The owner of a block. Both operations either write `*id` and return null, or return a diagnostic and leave `*id`
/// unchanged.
class TYPESYS_API BlockOwner {
public:
    virtual ~BlockOwner();

    /// Gets the id of the type with this name.
    virtual vwsvDiagnosticImpl* registerByName(VWBlock* block, char const* name, int* id) = 0;
    /// Gets the id of the type that `expression`, the value of the block's parameter of that name, evaluates to.
    virtual vwsvDiagnosticImpl* resolveWithOptions(VWBlock* block, char const* expression, char const* parameter,
                                                   ResolveOptions const& options, int* id) = 0;
    /// The table in which the block's types are registered.
    virtual DataTypeTable& typeTable() = 0;
};

}  // namespace VWTypeSys

/// A block of a diagram, as far as data types are concerned.
class TYPESYS_API VWBlock {
public:
    /// The owner must outlive the block.
    VWBlock(VWTypeSys::BlockOwner& owner, std::string path) : owner_(&owner), path_(std::move(path)) {}

    VWTypeSys::BlockOwner& owner() const noexcept { return *owner_; }
    std::string const& path() const noexcept { return path_; }

private:
    VWTypeSys::BlockOwner* owner_;
    std::string path_;
};

/// Settings of the fixed-point layer for a block's types.
class TYPESYS_API fxpBlockProperties {
public:
    fxpBlockProperties() = default;
    ~fxpBlockProperties() = default;
    fxpBlockProperties(fxpBlockProperties const&) = delete;
    fxpBlockProperties& operator=(fxpBlockProperties const&) = delete;

    VWBlock const* block = nullptr;
    bool takesBuiltIns = false;
};

/// Sets the block, and whether a type that equals a built-in gets the built-in's id rather than an entry of its own.
TYPESYS_API void Block_fxpBlockProp_SetBuiltin(fxpBlockProperties* properties, VWBlock const* block,
                                               bool takesBuiltIns);
/// Registers the type in the block's table, unless it is there, and writes its id. Otherwise returns a diagnostic,
/// NoBlock or InvalidFixedPointType, and leaves `*id` unchanged.
TYPESYS_API vwsvDiagnosticImpl* fxpDataTypeRegisterWithCheck(fxpBlockProperties* properties, int* id,
                                                             fxpDataTypeProp const* type);
