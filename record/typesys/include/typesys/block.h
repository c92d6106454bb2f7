// Blocks, and how a type is entered on behalf of one.
#pragma once

#include <typesys/data_type_table.h>
#include <typesys/diagnostic.h>
#include <typesys/export.h>

#include <cstdint>
#include <string>
#include <utility>

class VWBlock;

namespace VWTypeSys {

/// Options of a resolution. What they mean is up to the owner; others pass them along as they stand.
struct ResolveOptions {
    std::int32_t first;
    std::int32_t second;
    std::int64_t third;
    std::int32_t fourth;
    double fifth;
    std::int64_t sixth;
    std::int32_t seventh;
};

/// Where a block stands. Both operations write `*id` and give null, or give a diagnostic and leave `*id` alone.
class TYPESYS_API BlockOwner {
public:
    virtual ~BlockOwner();

    /// The id of the type of that name.
    virtual vwsvDiagnosticImpl* registerByName(VWBlock* block, char const* name, int* id) = 0;
    /// The id of the type that `expression`, the value of the block's parameter of that name, comes to.
    virtual vwsvDiagnosticImpl* resolveWithOptions(VWBlock* block, char const* expression, char const* parameter,
                                                   ResolveOptions const& options, int* id) = 0;
    /// The table in which the block's types are entered.
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

/// How the fixed-point layer treats a block's types.
class TYPESYS_API fxpBlockProperties {
public:
    fxpBlockProperties() = default;
    ~fxpBlockProperties() = default;
    fxpBlockProperties(fxpBlockProperties const&) = delete;
    fxpBlockProperties& operator=(fxpBlockProperties const&) = delete;

    VWBlock const* block = nullptr;
    bool takesBuiltIns = false;
};

/// Sets the block, and whether a type that is a built-in gets that one's id rather than an entry of its own.
TYPESYS_API void Block_fxpBlockProp_SetBuiltin(fxpBlockProperties* properties, VWBlock const* block,
                                               bool takesBuiltIns);
/// Enters the type in the block's table, unless it is there, and writes its id. Otherwise gives a diagnostic, NoBlock
/// or InvalidFixedPointType, and leaves `*id` alone.
TYPESYS_API vwsvDiagnosticImpl* fxpDataTypeRegisterWithCheck(fxpBlockProperties* properties, int* id,
                                                             fxpDataTypeProp const* type);
