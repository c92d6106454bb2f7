// Records the model as a whole: its name, interface kinds, capabilities, experiment and types.
#include <ModelRefInfoRepo/ConfigSettingsForConsistencyChecks.h>
#include <ModelRefInfoRepo/FMUBlockAssociation.h>
#include <ModelRefInfoRepo/FMUBlockInfo.h>
#include <ModelRefInfoRepo/MethodExistenceInfo.h>
#include <ModelRefInfoRepo/SFcnInformation.h>
#include <ModelRefInfoRepo/SFcnParameter.h>
#include <ModelRefInfoRepo/StandaloneEnumInfo.h>
#include <quay/zero/text.h>
#include <vw/ci/Model.h>
#include <zx/zx.h>

#include <algorithm>
#include <limits>

#include "../failure.h"
#include "numbers.h"
#include "recording.h"

namespace modelref::fmi {

using namespace ModelRefInfoRepo;
using quay::zero::toUtf16;

Record makeRecord(quay::zero::Model const& model, Description const& description) {
    return Recording(description).make(model);
}

Recording::Recording(Description const& description)
    : d_(description), recorded_(description.variables.size(), false), warnings_(description.warnings) {
    for (std::size_t i = 0; i < d_.variables.size(); ++i) {
        if (at(i).causality == Causality::Input) inports_.push_back(i);
        if (at(i).causality == Causality::Output) outports_.push_back(i);
    }
    for (Unknown const& unknown : d_.derivatives) continuousStates_.push_back(*at(unknown.variable).derivativeOf);
}

Record Recording::make(quay::zero::Model const& model) {
    recordModel();
    recordEnumerations();
    recordClocks();
    recordPorts();
    recordPortGroups();
    recordParameters();
    recordStates();
    recordIndicators();

    Record result;
    root_.setModel(model);
    root_.create();
    result.warnings = warnings_;
    for (std::size_t i = 0; i < d_.variables.size(); ++i) {
        if (recorded_[i]) {
            ++result.recorded;
        } else {
            result.notPlaced.push_back({at(i).name, reasonFor(at(i))});
        }
    }
    return result;
}

std::string Recording::reasonFor(Variable const& variable) const {
    if (variable.causality == Causality::Independent) return "the independent variable is time itself";
    if (variable.type == Type::Clock) return "a local clock that is triggered is no rate";
    if (variable.derivativeOf) return "a derivative that the model's structure doesn't list";
    return "a local variable is no part of the interface";
}

void Recording::recordModel() {
    auto interface = std::make_unique<vw::ci::Model::Builder>();
    interface->setName(toUtf16(d_.modelName));
    root_.setRootBlockDiagramInterface(std::move(interface));

    std::u16string modes;
    for (InterfaceKind const& kind : d_.kinds) modes += (modes.empty() ? u"" : u", ") + toUtf16(kind.name);
    auto block = std::make_unique<FMUBlockAssociation::Builder>();
    block->setFullPath(toUtf16(d_.modelName));
    block->setFmuMode(modes);
    auto blocks = std::make_unique<FMUBlockInfo::Builder>();
    blocks->addEntries(std::move(block));
    root_.setFMUBlockMap(std::move(blocks));

    root_.setIsNumAllowedInstancesOne(std::any_of(d_.kinds.begin(), d_.kinds.end(), [](InterfaceKind const& kind) {
        return kind.has("canBeInstantiatedOnlyOncePerProcess");
    }));
    recordInterfaceKinds();
    recordMethods();
    recordExperiment();
}

/// Records the attributes of each interface kind, capability flags among them, unchanged: a struct with a field for
/// each.
void Recording::recordInterfaceKinds() {
    for (InterfaceKind const& kind : d_.kinds) {
        zx::Array attributes(zxCreateStructMatrix(1, 1));
        auto const set = [&](std::string const& name, zxArray* value) { zxSetField(attributes.get(), 0, name, value); };
        set("interfaceKind", zxCreateString_UTF8(kind.name));
        set("fmiVersion", zxCreateString_UTF8(d_.version));
        for (auto const& [name, text] : kind.attributes) {
            bool truth = false;
            bool const isTruth = text == "true" || text == "false";
            if (isTruth) parseBoolean(text, truth);
            set(name, isTruth ? zx::scalar(truth).release() : zxCreateString_UTF8(text));
        }
        auto parameter = std::make_unique<SFcnParameter::Builder>();
        parameter->setParameter(attributes.get());
        auto info = std::make_unique<SFcnInformation::Builder>();
        info->setName(toUtf16(kind.identifier));
        info->setBlockSID(toUtf16(d_.token));
        for (std::string const& file : kind.sourceFiles) info->addModules(toUtf16(file));
        info->setWillBeDynamicallyLoaded(true);
        info->addParameters(std::move(parameter));
        root_.addSFcnInfo(std::move(info));
    }
}

void Recording::recordMethods() {
    auto methods = std::make_unique<MethodExistenceInfo::Builder>();
    bool const hasEvents = d_.namelessIndicators > 0 || !d_.eventIndicators.empty() || !d_.isVersion3 ||
                           std::any_of(d_.kinds.begin(), d_.kinds.end(), [](auto& k) { return k.has("hasEventMode"); });
    // The FMI standard requires these of every model.
    methods->setHasStartMethod(true);
    methods->setHasInitializeMethod(true);
    methods->setHasSystemInitializeMethod(true);
    methods->setHasSystemResetMethod(true);
    methods->setHasTerminateMethod(true);
    methods->setHasDerivMethod(d_.kind("ModelExchange") != nullptr && !continuousStates_.empty());
    methods->setHasUpdateMethod(hasEvents || d_.kind("ScheduledExecution") != nullptr);
    root_.setMethodInfo(std::move(methods));
}

void Recording::recordExperiment() {
    auto settings = std::make_unique<ConfigSettingsForConsistencyChecks::Builder>();
    bool const isFixedStep = !d_.kinds.empty() && d_.kind("ModelExchange") == nullptr;
    settings->setSolverType(isFixedStep ? vwSolverType::SOLVER_TYPE_FIXEDSTEP : vwSolverType::SOLVER_TYPE_VARIABLESTEP);
    bool const isScheduled = d_.kind("ScheduledExecution") != nullptr;
    settings->setSolverMode(isScheduled ? SolverMode::SOLVER_MODE_MULTITASKING : SolverMode::SOLVER_MODE_SINGLETASKING);
    settings->setConcurrentTaskSupport(isScheduled);
    settings->setStartTime(d_.startTime.value_or(0));
    if (d_.stepSize) {
        settings->setFixedStepSize(*d_.stepSize);
        root_.setUserSpecifiedFixedStepSize(*d_.stepSize);
    }
    root_.setConfigSettingsForConsistencyChecks(std::move(settings));
    root_.setHasExplicitPartitions(isScheduled);
    root_.setNeedAbsoluteTimeForNonLoggingPurpose(std::any_of(
        d_.variables.begin(), d_.variables.end(), [](auto const& v) { return v.causality == Causality::Independent; }));
}

void Recording::recordEnumerations() {
    for (Enumeration const& enumeration : d_.enumerations) {
        bool const fits = std::all_of(enumeration.items.begin(), enumeration.items.end(), [](auto const& item) {
            using Limits = std::numeric_limits<std::int32_t>;
            return item.second >= Limits::min() && item.second <= Limits::max();
        });
        if (!fits) {
            warnings_.push_back(d_.file.string() + ": the enumeration " + inQuotes(enumeration.name) +
                                " isn't recorded: it has values of more than 32 bits");
            continue;
        }
        auto info = std::make_unique<StandaloneEnumInfo::Builder>();
        info->setEnumName(toUtf16(enumeration.name));
        for (auto const& [label, value] : enumeration.items) {
            info->addLabels(toUtf16(label));
            info->addValues(static_cast<int>(value));
        }
        info->setDefaultValue(toUtf16(enumeration.items.front().first));
        info->setStorageType(d_.isVersion3 ? u"int64" : u"int32");
        root_.addStandaloneEnumInfos(std::move(info));
    }
}

}  // namespace modelref::fmi
