// A diagram: the owner of blocks that share a type table.
#pragma once

#include <typesys/block.h>

namespace VWTypeSys {

/// Registers types whose names its table has, and those of a dictionary, which are copied into the table when they are
/// first asked for. The table and the dictionary must outlive it. The options of a resolution have no effect.
class TYPESYS_API Diagram final : public BlockOwner {
public:
    explicit Diagram(DataTypeTable& table, DataTypeTable const* dictionary = nullptr)
        : table_(&table), dictionary_(dictionary) {}

    /// Returns NoSuchType if neither the table nor the dictionary has the name.
    vwsvDiagnosticImpl* registerByName(VWBlock* block, char const* name, int* id) override;
    /// Takes expressions of string types, and registers new ones. Returns InvalidStringType for any other expression.
    vwsvDiagnosticImpl* resolveWithOptions(VWBlock* block, char const* expression, char const* parameter,
                                           ResolveOptions const& options, int* id) override;
    DataTypeTable& typeTable() override { return *table_; }

private:
    DataTypeTable* table_;
    DataTypeTable const* dictionary_;
};

}  // namespace VWTypeSys
