// Records continuous and discrete states, derivatives, and event indicators (as zero crossings).
#include <ModelRefInfoRepo/StateAccessInfo.h>
#include <ModelRefInfoRepo/StateRecordInfo.h>
#include <ModelRefInfoRepo/ZeroCrossingInfo.h>
#include <quay/zero/text.h>

#include <limits>

#include "../failure.h"
#include "recording.h"
#include "values.h"

namespace modelref::fmi {

using namespace ModelRefInfoRepo;
using quay::zero::toUtf16;

namespace {

std::unique_ptr<StateRecordInfo::Builder> stateRecord(Variable const& v, std::string const& model, char const* label) {
    auto record = std::make_unique<StateRecordInfo::Builder>();
    record->setBlockName(toUtf16(model));
    record->setLabel(label);
    record->setName(toUtf16(v.name));
    record->setWidth(static_cast<int>(v.width()));
    record->setDataType(builtInIdOf(v.type));
    return record;
}

}  // namespace

void Recording::recordStates() {
    std::uint64_t width = 0;
    for (Unknown const& unknown : d_.derivatives) {
        std::size_t const state = *at(unknown.variable).derivativeOf;
        root_.addContStateRecordInfo(stateRecord(at(state), d_.modelName, "CSTATE"));
        width += at(state).width();
        // The derivative is recorded as the accessor of the state.
        auto access = std::make_unique<StateAccessInfo::Builder>();
        access->setStateOwner(toUtf16(at(state).name));
        access->addStateAccessors(toUtf16(at(unknown.variable).name));
        root_.addStateAccessInfos(std::move(access));
        mark(state);
        mark(unknown.variable);
    }
    int discrete = 0;
    for (std::size_t i = 0; i < d_.variables.size(); ++i) {
        if (!at(i).previous) continue;
        root_.addDiscStateRecordInfo(stateRecord(at(i), d_.modelName, "DSTATE"));
        auto access = std::make_unique<StateAccessInfo::Builder>();
        access->setStateOwner(toUtf16(at(i).name));
        access->addStateAccessors(toUtf16(at(*at(i).previous).name));
        root_.addStateAccessInfos(std::move(access));
        ++discrete;
        mark(i);
        mark(*at(i).previous);
    }
    int const continuous = static_cast<int>(continuousStates_.size());
    if (width > std::numeric_limits<int>::max()) {
        throw Failure(d_.file.string() + ": there are " + std::to_string(width) +
                      " continuous states, which are too many");
    }
    root_.setNumContinuousStates(static_cast<int>(width));
    root_.setNumCStateRecs(continuous);
    root_.setNumLoggableCStateRecs(continuous);
    root_.setNumDStateRecs(discrete);
    root_.setNumLoggableDStateRecs(discrete);
    root_.setHasPotentialStates(continuous + discrete > 0);
}

void Recording::recordIndicators() {
    auto const add = [&](std::string const& name, std::uint64_t width, bool isDiscrete) {
        auto crossing = std::make_unique<ZeroCrossingInfo::Builder>();
        crossing->setName(name);
        crossing->setWidth(static_cast<int>(width));
        // One word per signal, unless there are more signals than any real model has.
        constexpr std::uint64_t kMost = 1 << 16;
        for (std::uint64_t i = 0; i < width && width <= kMost; ++i) crossing->addIsDiscrete(isDiscrete);
        crossing->setNeedsEventNotification(true);
        crossing->setNeedsSolverReset(true);
        root_.addZeroCrossingInfo(std::move(crossing));
    };
    // Version 2 only gives their number.
    if (d_.namelessIndicators > 0) add("eventIndicators", d_.namelessIndicators, false);
    for (Unknown const& unknown : d_.eventIndicators) {
        Variable const& v = at(unknown.variable);
        add(v.name, v.width(), v.variability != Variability::Continuous);
        mark(unknown.variable);
    }
}

}  // namespace modelref::fmi
