// Checks references to rates by number.
#include <ModelRefInfoRepo/InportInformation.h>
#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/OutportInformation.h>
#include <ModelRefInfoRepo/RateInfo.h>
#include <ModelRefInfoRepo/SampleTimeGraphEdge.h>
#include <ModelRefInfoRepo/UnionTsContainedTsElem.h>
#include <ModelRefInfoRepo/VarTsUIDEntry.h>
#include <ModelRefInfoRepo/VarTsUIDMap.h>

#include <algorithm>

#include "checks.h"

namespace modelref {

using namespace ModelRefInfoRepo;

/// The number of sample times; a negative number is ignored.
std::size_t Checks::sampleTimes() const {
    auto const told = std::max<std::int64_t>(root_->getNumTs().value_or(0), 0);
    return std::max(rates_, static_cast<std::size_t>(told));
}

void Checks::checkRates() {
    // A rate that isn't one of the model's own rates has the number -1.
    auto const check = [&](ModelElement const& element, std::string const& property, auto const& rates) {
        std::size_t position = 0;
        for (RateInfo const& rate : rates) {
            std::string const place = property + "/" + std::to_string(position++);
            if (rate.getRateIdx() != -1) number(element, place, rate.getRateIdx(), rates_, "rate");
        }
    };
    check(root_, "runtimeNonFcnCallRateInfos", *root_->getRuntimeNonFcnCallRateInfos());
    for (InportInformation const& port : *root_->getInports()) check(port, "rateInfos", *port->getRateInfos());
    for (OutportInformation const& port : *root_->getOutports()) check(port, "rateInfos", *port->getRateInfos());
    std::size_t const nodes = sampleTimes();
    for (SampleTimeGraphEdge const& edge : *root_->getAllEdges()) {
        auto const node = [](unsigned long n) { return static_cast<std::int64_t>(std::min(n, 1UL << 62)); };
        number(edge, "srcNodeIdx", node(edge->getSrcNodeIdx()), nodes, "sample time");
        number(edge, "dstNodeIdx", node(edge->getDstNodeIdx()), nodes, "sample time");
    }
    for (VarTsUIDMap const& map :
         {root_->getVarTsUIDMap(), root_->getControllableInputRatesMap(), root_->getControllableOutputRatesMap()}) {
        if (!map) continue;
        for (VarTsUIDEntry const& entry : *map->getEntries()) {
            number(entry, "varTsIdx", entry->getVarTsIdx(), nodes, "sample time");
        }
    }
}

void Checks::checkUnionRates() {
    std::size_t const nodes = sampleTimes();
    std::set<int> unions;
    for (UnionTsContainedTsElem const& entry : *root_->getUnionTsContainedTs()) {
        unions.insert(entry->getUnionTs());
        number(entry, "unionTs", entry->getUnionTs(), nodes, "sample time");
        number(entry, "containedTs", entry->getContainedTs(), nodes, "sample time");
    }
    std::size_t position = 0;
    for (int const index : *root_->getSortedUnionRateIndices()) {
        std::string const place = "sortedUnionRateIndices/" + std::to_string(position++);
        if (!unions.contains(index)) report(root_, place, std::to_string(index) + " is no union rate");
    }
}

}  // namespace modelref
