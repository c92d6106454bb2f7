#include "checks.h"

#include <ModelRefInfoRepo/ChartexAutoEnumInfo.h>
#include <ModelRefInfoRepo/CompFunction.h>
#include <ModelRefInfoRepo/InterfaceParameter.h>
#include <ModelRefInfoRepo/InterfaceParameterInfo.h>
#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/StandaloneEnumInfo.h>
#include <ModelRefInfoRepo/StateAccessInfo.h>
#include <ModelRefInfoRepo/StateRecordInfo.h>
#include <ModelRefInfoRepo/VarlowFunctions.h>
#include <keel/text.h>
#include <quay/zero/text.h>

#include "failure.h"

namespace modelref {

using namespace ModelRefInfoRepo;

Checks::Checks(Root const& root)
    : root_(root),
      inports_(root->getInports()->size()),
      outports_(root->getOutports()->size()),
      groups_(root->getFcnCallPortGroups()->size()),
      rates_(root->getRuntimeNonFcnCallRateInfos()->size()) {
    if (VarlowFunctions const all = root->getVarlowFunctions()) {
        for (CompFunction const& function : *all->getCompFunctions()) functions_.insert(function->getFunctionName());
    }
    if (InterfaceParameterInfo const info = root->getInterfaceParameterInfo()) {
        for (auto const* list : {info->getModelArguments(), info->getBlockArguments(), info->getGlobalVariables()}) {
            for (InterfaceParameter const& parameter : *list) parameters_.insert(parameter->getParameterName());
        }
    }
    for (StandaloneEnumInfo const& type : *root->getStandaloneEnumInfos()) enumerations_.insert(type->getEnumName());
    for (ChartexAutoEnumInfo const& type : *root->getChartexAutoEnumInfos()) {
        enumerations_.insert(quay::zero::toUtf16(type->getName()));
    }
    for (StateAccessInfo const& state : *root->getStateAccessInfos()) stateOwners_.insert(state->getStateOwner());
    for (auto const* list :
         {root->getContStateRecordInfo(), root->getDiscStateRecordInfo(), root->getMrefStateRecordInfo()}) {
        for (StateRecordInfo const& state : *list) {
            stateOwners_.insert(state->getBlockName());
            stateOwners_.insert(state->getName());
        }
    }
}

std::vector<Finding> Checks::run() {
    checkPortGroups();
    checkPortMaps();
    checkSameRateGroups();
    checkMessages();
    checkFunctions();
    checkServices();
    checkCallers();
    checkRates();
    checkUnionRates();
    checkParameters();
    checkTypes();
    checkStates();
    checkDataStores();
    return std::move(findings_);
}

void Checks::report(ModelElement const& element, std::string const& property, std::string const& message) {
    findings_.push_back({paths_.of(element) + "/" + property, message});
}

void Checks::number(ModelElement const& element, std::string const& property, std::int64_t value, std::size_t count,
                    char const* kind) {
    if (value >= 0 && static_cast<std::uint64_t>(value) < count) return;
    report(element, property,
           std::to_string(value) + " is no " + kind + ": there are " + std::to_string(count) + ", counted from 0");
}

void Checks::numbers(ModelElement const& element, std::string const& property, Numbers const& values, std::size_t count,
                     char const* kind) {
    std::size_t position = 0;
    for (int const value : values) number(element, property + "/" + std::to_string(position++), value, count, kind);
}

void Checks::name(ModelElement const& element, std::string const& property, std::u16string const& text,
                  Names const& known, char const* kind) {
    if (text.empty() || known.contains(text)) return;
    report(element, property, "there is no " + std::string(kind) + " " + inQuotes(keel::toUtf8(text)));
}

void Checks::name(ModelElement const& element, std::string const& property, std::string const& text, Names const& known,
                  char const* kind) {
    name(element, property, quay::zero::toUtf16(text), known, kind);
}

}  // namespace modelref
