// The state of one conversion: the description, the builders, and the result for each variable.
#pragma once

#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/RateInfo.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "record.h"

namespace modelref::fmi {

/// Each step fills its part of the root's builder and marks the variables that it records. The ports come first, since
/// the other steps refer to them by number.
class Recording {
public:
    explicit Recording(Description const& description);

    Record make(quay::zero::Model const& model);

private:
    using Root = ModelRefInfoRepo::ModelRefInfoRoot;
    using Rate = ModelRefInfoRepo::RateInfo;

    // record_model.cpp
    void recordModel();
    void recordInterfaceKinds();
    void recordMethods();
    void recordExperiment();
    void recordEnumerations();
    // record_rates.cpp
    void recordClocks();
    void recordRateFlags();
    void recordPortGroups();
    void recordPortGroup(std::size_t inport, std::vector<int> const& inputs, std::vector<int> const& outputs);
    std::vector<Rate> ratesOf(std::size_t variable) const;
    // record_ports.cpp
    void recordPorts();
    template <class Port>
    void fillPort(Port& port, std::size_t variable, std::size_t number);
    void recordDataPortGroup();
    void recordStepFunction();
    // record_parameters.cpp
    void recordParameters();
    // record_states.cpp
    void recordStates();
    void recordIndicators();

    Variable const& at(std::size_t variable) const { return d_.variables[variable]; }
    void mark(std::size_t variable) { recorded_[variable] = true; }
    bool isEvent(std::size_t clock) const { return at(clock).clock.kind == ClockInterval::Kind::Triggered; }
    std::string reasonFor(Variable const& variable) const;

    Description const& d_;
    Root::Builder root_;
    std::vector<bool> recorded_;
    std::vector<std::string> warnings_;
    std::vector<std::size_t> inports_;           // variables by port number
    std::vector<std::size_t> outports_;          // variables by port number
    std::map<std::size_t, int> rateIndices_;     // by clock
    std::vector<std::size_t> ratedClocks_;       // by rate index
    std::vector<std::size_t> continuousStates_;  // positions of variables
};

}  // namespace modelref::fmi
