#include <typesys/block.h>

#include "report.h"

#include <algorithm>

namespace {

/// Whether the entry is the wanted type: another type may have the name that the wanted one would get.
bool isThat(VWTypeSys::DataType const& type, fxpDataTypeProp const& wanted) {
    return !type.isAlias() && type.category() == VWTypeSys::Category::FixedPoint && type.getFxpDataTypeProp() == wanted;
}

}  // namespace

void Block_fxpBlockProp_SetBuiltin(fxpBlockProperties* properties, VWBlock const* block, bool takesBuiltIns) {
    properties->block = block;
    properties->takesBuiltIns = takesBuiltIns;
}

vwsvDiagnosticImpl* fxpDataTypeRegisterWithCheck(fxpBlockProperties* properties, int* id, fxpDataTypeProp const* type) {
    using namespace VWTypeSys;
    return reporting([&] {
        if (properties->block == nullptr) throw DataTypeException(DataTypeMessage("NoBlock"));
        if (properties->takesBuiltIns) {
            auto const& all = fxpBuiltIns();
            auto const builtIn =
                std::find_if(all.begin(), all.end(), [&](auto const& one) { return one.type == *type; });
            if (builtIn != all.end()) {
                *id = static_cast<int>(builtIn - all.begin());
                return;
            }
        }
        DataTypeTable& table = properties->block->owner().typeTable();
        auto const found = table.find(fxpDataTypeToConstructorString(*type, FxpDT::baseCtorPrefer::Constructor,
                                                                     FxpDT::scalingRepPrefer::FractionAndExponent));
        if (found && isThat(table.get(*found), *type)) {
            *id = *found;
        } else {
            *id = table.addFixedPoint(*type);
        }
    });
}
