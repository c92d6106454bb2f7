// A diagram: the owner of blocks that share a type table.
#pragma once

#include <typesys/block.h>

namespace VWTypeSys {

/// Registers names that its table has, and those of a dictionary, from which they are copied into the table when first
/// asked for. Both must outlive it. The options of a resolution make no difference to it.
class TYPESYS_API Diagram final : public BlockOwner {
public:
    explicit Diagram(DataTypeTable& table, DataTypeTable const* dictionary = nullptr)
        : table_(&table), dictionary_(dictionary) {}

    /// NoSuchType, if neither the table nor the dictionary has the name.
    vwsvDiagnosticImpl* registerByName(VWBlock* block, char const* name, int* id) override;
    /// Takes the expressions of string types, and enters those that are new. InvalidStringType.
    vwsvDiagnosticImpl* resolveWithOptions(VWBlock* block, char const* expression, char const* parameter,
                                           ResolveOptions const& options, int* id) override;
    DataTypeTable& typeTable() override { return *table_; }

private:
    DataTypeTable* table_;
    DataTypeTable const* dictionary_;
};

}  // namespace VWTypeSys
