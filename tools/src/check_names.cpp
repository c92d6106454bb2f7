// Checks references to parameters, types, states and data stores by name.
#include <ModelRefInfoRepo/ArgumentValue.h>
#include <ModelRefInfoRepo/ArgumentValueMap.h>
#include <ModelRefInfoRepo/ArgumentValueSource.h>
#include <ModelRefInfoRepo/ArgumentValueSourceMap.h>
#include <ModelRefInfoRepo/AutosarPerInstanceParameterInfo.h>
#include <ModelRefInfoRepo/CompDataType.h>
#include <ModelRefInfoRepo/CompFunction.h>
#include <ModelRefInfoRepo/CompFunctionArgInfo.h>
#include <ModelRefInfoRepo/CompFunctionArgs.h>
#include <ModelRefInfoRepo/EnumParameter.h>
#include <ModelRefInfoRepo/GlobalDSMRateSpecAssociation.h>
#include <ModelRefInfoRepo/GlobalDSMRateSpecMap.h>
#include <ModelRefInfoRepo/GlobalDataStoreMemoryInfo.h>
#include <ModelRefInfoRepo/GroupedArgument.h>
#include <ModelRefInfoRepo/InterfaceParameter.h>
#include <ModelRefInfoRepo/InterfaceParameterInfo.h>
#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/PeriodicStateInfo.h>
#include <ModelRefInfoRepo/ScopedDataStoreMemoryInfo.h>
#include <ModelRefInfoRepo/StateAssociation.h>
#include <ModelRefInfoRepo/StateWriterInfo.h>
#include <ModelRefInfoRepo/ValueInterfaceInfo.h>
#include <ModelRefInfoRepo/ValueInterfaceInfoMap.h>
#include <ModelRefInfoRepo/VarlowFunctions.h>
#include <quay/zero/text.h>

#include "checks.h"

namespace modelref {

using namespace ModelRefInfoRepo;

void Checks::checkParameters() {
    auto const check = [&](auto const& map, char const* property, auto const& nameOfEntry) {
        for (auto const& entry : map) name(entry, property, nameOfEntry(entry), parameters_, "parameter");
    };
    auto const byName = [](auto const& entry) { return entry->getName(); };
    auto const byParameter = [](auto const& entry) { return entry->getParameterName(); };
    if (auto const map = root_->getArgumentParameters()) check(*map->getEntries(), "name", byName);
    if (auto const map = root_->getArgumentParameterSourceMap()) check(*map->getEntries(), "name", byName);
    if (auto const map = root_->getValueInterfaceParameters()) check(*map->getEntries(), "name", byName);
    InterfaceParameterInfo const info = root_->getInterfaceParameterInfo();
    if (!info) return;
    check(*info->getGroupedArgumentMap(), "parameterName", byParameter);
    check(*info->getAutosarPerInstanceParameterInfo(), "parameterName", byParameter);
    std::size_t position = 0;
    for (std::string const& inactive : *info->getInactiveParamNames()) {
        name(info, "inactiveParamNames/" + std::to_string(position++), inactive, parameters_, "parameter");
    }
}

void Checks::checkTypes() {
    if (InterfaceParameterInfo const info = root_->getInterfaceParameterInfo()) {
        for (auto const* list : {info->getModelArguments(), info->getBlockArguments(), info->getGlobalVariables()}) {
            for (InterfaceParameter const& parameter : *list) {
                EnumParameter const enumerated = EnumParameter::cast(parameter);
                if (enumerated) name(enumerated, "enumName", enumerated->getEnumName(), enumerations_, "enumeration");
            }
        }
    }
    VarlowFunctions const all = root_->getVarlowFunctions();
    if (!all) return;
    for (CompFunction const& function : *all->getCompFunctions()) {
        CompFunctionArgs const arguments = function->getFcnArgs();
        if (!arguments) continue;
        for (auto const* list : {arguments->getInArgs(), arguments->getOutArgs()}) {
            for (CompFunctionArgInfo const& argument : *list) {
                CompDataType const type = argument->getDataType();
                if (!type || type->getDataClass() != DataClass::Enum) continue;
                name(type, "dataTypeName", type->getDataTypeName(), enumerations_, "enumeration");
            }
        }
    }
}

void Checks::checkStates() {
    std::size_t const states = static_cast<std::size_t>(std::max(root_->getNumContinuousStates(), 0));
    for (PeriodicStateInfo const& state : *root_->getPeriodicStateInfo()) {
        number(state, "continuousStateIndex", state->getContinuousStateIndex(), states, "continuous state");
    }
    if (StateWriterInfo const writers = root_->getStateWriterToOwnerMap()) {
        for (StateAssociation const& writer : *writers->getEntries()) {
            name(writer, "ownerBlkPath", writer->getOwnerBlkPath(), stateOwners_, "state of");
        }
    }
}

void Checks::checkDataStores() {
    Names stores;
    for (GlobalDataStoreMemoryInfo const& store : *root_->getGlobalDSMInfo()) {
        stores.insert(quay::zero::toUtf16(store->getName()));
    }
    for (GlobalDSMRateSpecMap const& map :
         {root_->getRateSpecOfGlobalDSMAccessedByDescExpFcnMdlMap(), root_->getRateBasedMdlGlobalDSMRateSpec()}) {
        if (!map) continue;
        for (GlobalDSMRateSpecAssociation const& entry : *map->getEntries()) {
            name(entry, "dSMName", entry->getDSMName(), stores, "global data store");
        }
    }
    for (ScopedDataStoreMemoryInfo const& store : *root_->getScopedDSMInfo()) {
        numbers(store, "accessorPortGroups", *store->getAccessorPortGroups(), groups_, "port group");
    }
}

}  // namespace modelref
