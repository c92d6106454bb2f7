// The accessors of the two derived properties.
#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/RootIOPortInformation.h>

namespace ModelRefInfoRepo {

// A second name for solverStatusFlags, without storage of its own.
unsigned int ModelRefInfoRoot::Impl::getAutoSolverStatusFlags() const { return getSolverStatusFlags(); }
void ModelRefInfoRoot::Impl::setAutoSolverStatusFlags(unsigned int value) { setSolverStatusFlags(value); }

RateInfo RootIOPortInformation::Impl::getRateInfo() const {
    auto const& rates = *getRateInfos();
    return rates.empty() ? RateInfo() : rates[0];
}

// Clears the sequence and adds the value, also when the value is there already.
void RootIOPortInformation::Impl::setRateInfo(RateInfo const& value) {
    RateInfo const rate = value;  // copied first: `value` may be a member of the sequence
    auto* const rates = getRateInfosMutable();
    rates->clear();
    rates->push_back(rate);
}

}  // namespace ModelRefInfoRepo
