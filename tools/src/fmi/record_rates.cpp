// Records clocks: those that tick in time as rates, triggered ones as events, and input clocks as function-call ports.
#include <ModelRefInfoRepo/FcnCallPortGroup.h>
#include <ModelRefInfoRepo/RateSpec.h>
#include <ModelRefInfoRepo/SampleTimeGraphEdge.h>
#include <ModelRefInfoRepo/VarTsUIDEntry.h>
#include <ModelRefInfoRepo/VarTsUIDMap.h>
#include <quay/zero/text.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "recording.h"

namespace modelref::fmi {

using namespace ModelRefInfoRepo;
using quay::zero::toUtf16;
using Kind = ClockInterval::Kind;

namespace {

bool isPeriodic(ClockInterval const& clock) { return clock.kind <= Kind::Tunable; }

/// The rate of a periodic clock; its period is -1, "not known", if the interval is determined at run time.
RateInfo clockRate(Variable const& v, int index) {
    RateInfo rate;
    rate.setPeriod(v.clock.interval.value_or(-1));
    rate.setOffset(v.clock.shift);
    rate.setNonFcnCallPartitionName(toUtf16(v.name));
    rate.setClockedByExternalRuntimeEvent(v.clock.kind == Kind::Triggered && v.causality == Causality::Input);
    rate.setRateIdx(index);
    rate.setPriority(v.clock.priority.value_or(-1));
    return rate;
}

}  // namespace

/// The rates of a variable: those of its clocks. Without a clock it is continuous (period 0), discrete at an unknown
/// rate (the period of a new rate), or constant while the model runs (period infinity).
std::vector<RateInfo> Recording::ratesOf(std::size_t variable) const {
    Variable const& v = at(variable);
    std::vector<std::size_t> clocks = v.clocks;
    if (v.type == Type::Clock) clocks.assign(1, variable);
    std::vector<RateInfo> result;
    for (std::size_t const clock : clocks) {
        auto const index = rateIndices_.find(clock);
        result.push_back(clockRate(at(clock), index == rateIndices_.end() ? -1 : index->second));
    }
    if (!result.empty()) return result;
    RateInfo rate;
    if (v.variability == Variability::Continuous) rate.setPeriod(0);
    if (v.variability < Variability::Discrete) rate.setPeriod(std::numeric_limits<double>::infinity());
    return {rate};
}

void Recording::recordClocks() {
    auto variable = std::make_unique<VarTsUIDMap::Builder>();
    bool hasVariable = false;
    for (std::size_t i = 0; i < d_.variables.size(); ++i) {
        Variable const& v = at(i);
        if (v.type != Type::Clock || isEvent(i)) continue;
        int const index = static_cast<int>(ratedClocks_.size());
        rateIndices_[i] = index;
        ratedClocks_.push_back(i);
        root_.addRuntimeNonFcnCallRateInfos(clockRate(v, index));
        if (!isPeriodic(v.clock) || !v.clock.interval) {
            auto entry = std::make_unique<VarTsUIDEntry::Builder>();
            entry->setVarTsIdx(index);
            entry->setVarTsUID(toUtf16(v.name));
            variable->addEntries(std::move(entry));
            hasVariable = true;
        }
        mark(i);
    }
    if (hasVariable) root_.setVarTsUIDMap(std::move(variable));
    // A clock that ticks with others depends on them.
    for (std::size_t const clock : ratedClocks_) {
        for (std::size_t const source : at(clock).clocks) {
            auto const from = rateIndices_.find(source);
            if (from == rateIndices_.end()) continue;
            auto edge = std::make_unique<SampleTimeGraphEdge::Builder>();
            edge->setSrcNodeIdx(static_cast<unsigned long>(from->second));
            edge->setDstNodeIdx(static_cast<unsigned long>(rateIndices_[clock]));
            root_.addAllEdges(std::move(edge));
        }
    }
    recordRateFlags();
}

void Recording::recordRateFlags() {
    int events = 0;
    bool isContinuous = !continuousStates_.empty();
    bool hasConstantOutput = false;
    std::vector<double> periods;
    for (std::size_t i = 0; i < d_.variables.size(); ++i) {
        Variable const& v = at(i);
        bool const isPort = v.causality == Causality::Input || v.causality == Causality::Output;
        events += v.type == Type::Clock && isEvent(i) && isPort ? 1 : 0;
        isContinuous = isContinuous || (isPort && v.variability == Variability::Continuous);
        hasConstantOutput =
            hasConstantOutput || (v.causality == Causality::Output && v.variability == Variability::Constant);
        if (v.type == Type::Clock && isPeriodic(v.clock) && v.clock.interval) periods.push_back(*v.clock.interval);
    }
    int const rates = static_cast<int>(ratedClocks_.size());
    root_.setHasContinuousSampleTime(isContinuous);
    root_.setHasBlockWithPeriodicDiscreteSampleTime(!periods.empty());
    root_.setHasConstantOutput(hasConstantOutput);
    root_.setHasModelWideEventTs(events > 0);
    root_.setNumModelWideEventTs(events);
    root_.setNumTs(rates + (isContinuous ? 1 : 0));
    root_.setNumRuntimeExportedRates(rates);
    root_.setIsPreCompSingleRate(rates + (isContinuous ? 1 : 0) <= 1);
    // The smallest period is the fundamental one only if it divides the others.
    auto const smallest = std::min_element(periods.begin(), periods.end());
    bool const divides = !periods.empty() && std::all_of(periods.begin(), periods.end(), [&](double period) {
        return std::remainder(period, *smallest) == 0;
    });
    if (divides) root_.setFundamentalSampleTimePeriod(*smallest);
}

void Recording::recordPortGroups() {
    // The ports that tick with each clock; each clock counts once.
    auto const tickingOf = [&](std::vector<std::size_t> const& ports) {
        std::map<std::size_t, std::vector<int>> ticking;
        for (std::size_t n = 0; n < ports.size(); ++n) {
            if (at(ports[n]).type == Type::Clock) continue;
            auto const number = static_cast<int>(n);
            for (std::size_t const clock : at(ports[n]).clocks) {
                std::vector<int>& numbers = ticking[clock];
                if (numbers.empty() || numbers.back() != number) numbers.push_back(number);
            }
        }
        return ticking;
    };
    auto inputs = tickingOf(inports_);
    auto outputs = tickingOf(outports_);
    int groups = 0;
    for (std::size_t n = 0; n < inports_.size(); ++n) {
        std::size_t const i = inports_[n];
        if (at(i).type != Type::Clock) continue;
        recordPortGroup(n, inputs[i], outputs[i]);
        ++groups;
    }
    root_.setNumInportFcnCallPortGroups(groups);
    root_.setIsRootFcnCallPortGroupsEmpty(groups == 0);
}

/// Records the ports that tick with the clock at an inport.
void Recording::recordPortGroup(std::size_t inport, std::vector<int> const& inputs, std::vector<int> const& outputs) {
    std::size_t const clock = inports_[inport];
    Variable const& v = at(clock);
    auto group = std::make_unique<FcnCallPortGroup::Builder>();
    group->setFcnCallInputPort(static_cast<int>(inport));
    group->setCompFcnCallInputPort(static_cast<int>(inport));
    for (int const n : inputs) {
        group->addDataInputPorts(n);
        group->addCompDataInputPorts(n);
    }
    for (int const n : outputs) {
        group->addDataOutputPorts(n);
        group->addCompDataOutputPorts(n);
    }
    group->setIsAsync(isEvent(clock));
    group->setIsPeriodicFcnCall(isPeriodic(v.clock));
    group->setHasTaskPriority(v.clock.priority.has_value());
    group->setTaskPriority(v.clock.priority.value_or(0));
    group->setSchedulingPriority(v.clock.priority.value_or(0));
    if (v.clock.interval) {
        auto rate = std::make_unique<RateSpec::Builder>();
        rate->setPeriod(*v.clock.interval);
        rate->setOffset(v.clock.shift);
        group->setPreCompRateSpec(std::move(rate));
    }
    root_.addFcnCallPortGroups(std::move(group));
}

}  // namespace modelref::fmi
