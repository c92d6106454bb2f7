// Checks references to functions by name, to their arguments by number, and to the states that they access.
#include <ModelRefInfoRepo/ArgIndexMap.h>
#include <ModelRefInfoRepo/ArgNameMap.h>
#include <ModelRefInfoRepo/CallerToStateAccessInfo.h>
#include <ModelRefInfoRepo/ChildCaller.h>
#include <ModelRefInfoRepo/CompFunction.h>
#include <ModelRefInfoRepo/CompFunctionArgs.h>
#include <ModelRefInfoRepo/CompPortBlockService.h>
#include <ModelRefInfoRepo/CompService.h>
#include <ModelRefInfoRepo/CompServicePort.h>
#include <ModelRefInfoRepo/FcnCallPortGroup.h>
#include <ModelRefInfoRepo/InOutArg.h>
#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/QualifiedFunctionName.h>
#include <ModelRefInfoRepo/ResetEventInfo.h>
#include <ModelRefInfoRepo/VarlowFunctions.h>

#include "checks.h"

namespace modelref {

using namespace ModelRefInfoRepo;

void Checks::checkFunctions() {
    VarlowFunctions const all = root_->getVarlowFunctions();
    if (!all) return;
    Names events;
    for (ResetEventInfo const& event : *root_->getResetEvents()) events.insert(event->getResetEvent());
    for (CompFunction const& function : *all->getCompFunctions()) {
        if (CompFunctionArgs const arguments = function->getFcnArgs()) checkArguments(arguments);
        std::size_t position = 0;
        for (std::u16string const& owner : *function->getStateOwners()) {
            name(function, "stateOwners/" + std::to_string(position++), owner, stateOwners_, "state of");
        }
        position = 0;
        for (std::u16string const& event : *function->getResetEventsContainingCallers()) {
            name(function, "resetEventsContainingCallers/" + std::to_string(position++), event, events, "reset event");
        }
    }
}

void Checks::checkArguments(CompFunctionArgs const& arguments) {
    std::size_t const inputs = arguments->getInArgs()->size();
    std::size_t const outputs = arguments->getOutArgs()->size();
    for (ArgNameMap const& entry : *arguments->getArgNameMap()) {
        number(entry, "position", entry->getPosition(), inputs + outputs, "argument");
    }
    for (ArgIndexMap const& entry : *arguments->getArgIndexMap()) {
        number(entry, "position", entry->getPosition(), inputs + outputs, "argument");
    }
    for (InOutArg const& pair : *arguments->getInOutArgs()) {
        number(pair, "inputArgIndex", pair->getInputArgIndex(), inputs, "input argument");
        number(pair, "outputArgIndex", pair->getOutputArgIndex(), outputs, "output argument");
    }
    if (!arguments->getReturnArgName().empty()) {
        number(arguments, "returnArgIdx", arguments->getReturnArgIdx(), outputs, "output argument");
    }
}

void Checks::checkServices() {
    VarlowFunctions const all = root_->getVarlowFunctions();
    if (!all) return;
    for (CompServicePort const& port : *all->getCompServicePorts()) {
        for (auto const* services : {port->getRequestingServices(), port->getProvidingServices()}) {
            for (CompService const& service : *services) {
                if (CompFunctionArgs const arguments = service->getServiceArgs()) checkArguments(arguments);
                CompPortBlockService const block = CompPortBlockService::cast(service);
                if (!block) continue;
                for (QualifiedFunctionName const& response : *block->getResponseFcns()) {
                    name(response, "functionName", response->getFunctionName(), functions_, "function");
                }
            }
        }
    }
}

void Checks::checkCallers() {
    for (FcnCallPortGroup const& group : *root_->getFcnCallPortGroups()) {
        if (QualifiedFunctionName const function = group->getVarlowFunctionName()) {
            name(function, "functionName", function->getFunctionName(), functions_, "function");
        }
        for (QualifiedFunctionName const& caller : *group->getCallerNames()) {
            name(caller, "functionName", caller->getFunctionName(), functions_, "function");
        }
    }
    VarlowFunctions const all = root_->getVarlowFunctions();
    if (!all) return;
    for (CompFunction const& function : *all->getCompFunctions()) {
        for (ChildCaller const& caller : *function->getChildCallers()) {
            name(caller, "functionName", caller->getFunctionName(), functions_, "function");
        }
    }
    for (CallerToStateAccessInfo const& caller : *all->getCallerToStateAccessInfos()) {
        std::size_t position = 0;
        for (std::u16string const& owner : *caller->getStateOwners()) {
            name(caller, "stateOwners/" + std::to_string(position++), owner, stateOwners_, "state of");
        }
    }
}

}  // namespace modelref
