// The two operations of CompDataType, which convert a data type between the record and the environment's type system.
#include <ModelRefInfoRepo/CompDataType.h>
#include <quay/zero/report.h>
#include <quay0/messages.h>
#include <typesys/typesys.h>
#include <zx/error.h>

#include <string>

namespace ModelRefInfoRepo {
namespace {

struct Description {
    DataClass dataClass = DataClass::Inherit;
    std::string name;
};

/// Describes a type for the record. The first case that applies counts: an alias of a number is recorded as an alias,
/// one of an enumeration, bus or string isn't.
Description describe(VWTypeSys::DataTypeTable const& table, int id) {
    using VWTypeSys::Category;
    if (id == VWTypeSys::inheritedId) return {DataClass::Inherit, "auto"};
    auto const& type = table.get(id);
    std::string const name = type.getName();
    bool const isAlias = DtIsAliasType(&table, id);
    if (!isAlias && type.isNumeric()) {
        return {DataClass::Numeric, fxpDataTypeToConstructorString(type.getFxpDataTypeProp(), FxpDT::baseCtorPrefer{0},
                                                                   FxpDT::scalingRepPrefer{0})};
    }
    if (type.category() == Category::Enumeration) return {DataClass::Enum, name};
    if (type.category() == Category::Bus) return {DataClass::Bus, type.getNameStripDTOPrefix()};
    if (type.category() == Category::String) return {DataClass::String, DtGetStringDataTypeExpression(&table, id)};
    if (isAlias) return {DataClass::Alias, name};
    if (type.category() == Category::BuiltIn) {
        // Nothing is recorded of the other built-ins that aren't numbers.
        return id == VWTypeSys::pointerId ? Description{DataClass::Pointer, name} : Description();
    }
    if (DtIsImageType(&table, id)) return {DataClass::Image, name};
    return {type.isOpaque() ? DataClass::Opaque : DataClass::Custom, name};
}

vwsvDiagnosticImpl* registerNumber(VWBlock const* block, std::string const& text, int* id) {
    fxpDataTypeProp const type = constructorStringToFxpDataType(text);
    fxpBlockProperties properties;
    Block_fxpBlockProp_SetBuiltin(&properties, block, true);
    return fxpDataTypeRegisterWithCheck(&properties, id, &type);
}

constexpr VWTypeSys::ResolveOptions stringOptions = {0, 1, 16, 0, 1.0, 0, 0};

}  // namespace

CompDataType CompDataType::createCompDataTypeFromID(quay::zero::Model const& quay0Model,
                                                    VWTypeSys::DataTypeTable* dataTypeTable, int dataTypeID) {
    if (dataTypeTable == nullptr) quay::zero::reportException(quay0::messages::InvalidValue());
    if (!DtIsDataTypeIdValid(dataTypeTable, dataTypeID)) return {};
    Description const description = describe(*dataTypeTable, dataTypeID);
    CompDataType made = create(quay0Model, boost::uuids::uuid{});
    made->setDataClass(description.dataClass);
    made->setDataTypeName(description.name);
    return made;
}

int CompDataType::registerDataTypeForBlock(VWBlock* block, CompDataType const& dtm,
                                           VWTypeSys::DataTypeTable* dataTypeTable) {
    if (!dtm) zxRaiseErrorById("ZELDRA:class", "InvalidHandle");
    if (dtm->getDataClass() == DataClass::Inherit) return VWTypeSys::inheritedId;
    if (block == nullptr || dataTypeTable == nullptr) quay::zero::reportException(quay0::messages::InvalidValue());

    // The environment takes NUL-terminated names, so a name that contains a NUL is cut there.
    std::string const name = dtm->getDataTypeName().c_str();
    int id = VWTypeSys::notRegistered;
    vwsvDiagnosticImpl* diagnostic = nullptr;
    switch (dtm->getDataClass()) {
        case DataClass::Numeric:
            diagnostic = registerNumber(block, name, &id);
            break;
        case DataClass::String:
            diagnostic = block->owner().resolveWithOptions(block, name.c_str(), "DataType", stringOptions, &id);
            break;
        case DataClass::Opaque:
            if (VWTH_OpaqueTypeFbt == 0 || name != NameOfTypeForOpaqueTypeFbt()) return VWTypeSys::inheritedId;
            diagnostic = block->owner().registerByName(block, name.c_str(), &id);
            break;
        case DataClass::Image:
            id = VWTypeSys::ImageDataType::ImageNameToDataTypeId(name, dataTypeTable);
            break;
        default:
            diagnostic = block->owner().registerByName(block, name.c_str(), &id);
    }
    if (diagnostic != nullptr) vwsvThrowIExceptionFromDiagnostic(diagnostic, nullptr);
    return id;
}

}  // namespace ModelRefInfoRepo
