// Checks references to ports and port groups by number.
#include <ModelRefInfoRepo/DataPortGroup.h>
#include <ModelRefInfoRepo/FcnCallPortGroup.h>
#include <ModelRefInfoRepo/GrCompIOPortMaps.h>
#include <ModelRefInfoRepo/IRTSideIOPortGroup.h>
#include <ModelRefInfoRepo/InputQueue.h>
#include <ModelRefInfoRepo/MessageCompPortInfo.h>
#include <ModelRefInfoRepo/MessageInformation.h>
#include <ModelRefInfoRepo/MessageListener.h>
#include <ModelRefInfoRepo/MessageModeMap.h>
#include <ModelRefInfoRepo/MessageRootPortInfo.h>
#include <ModelRefInfoRepo/ModelRefInfoRoot.h>
#include <ModelRefInfoRepo/NameIntVectAssociation.h>
#include <ModelRefInfoRepo/NameToPortGroupIdxVectMap.h>
#include <ModelRefInfoRepo/PortGroupsRequireSameRate.h>

#include "checks.h"

namespace modelref {

using namespace ModelRefInfoRepo;

void Checks::checkPortGroups() {
    for (DataPortGroup const& group : {root_->getDataPortGroup(), root_->getExpFcnUnconnectedDataPortGroup()}) {
        if (group) checkPortGroup(group);
    }
    for (IRTSideIOPortGroup const& group : *root_->getIRTSideIOPortGroups()) checkPortGroup(group);
    for (FcnCallPortGroup const& group : *root_->getFcnCallPortGroups()) {
        checkPortGroup(group);
        checkFunctionCallGroup(group);
    }
}

void Checks::checkPortGroup(DataPortGroup const& group) {
    numbers(group, "dataInputPorts", *group->getDataInputPorts(), inports_, "inport");
    numbers(group, "compDataInputPorts", *group->getCompDataInputPorts(), inports_, "inport");
    numbers(group, "dataOutputPorts", *group->getDataOutputPorts(), outports_, "outport");
    numbers(group, "compDataOutputPorts", *group->getCompDataOutputPorts(), outports_, "outport");
    numbers(group, "srcPortGroups", *group->getSrcPortGroups(), groups_, "port group");
}

void Checks::checkFunctionCallGroup(FcnCallPortGroup const& group) {
    // A group that represents a function has no port of its own.
    if (!group->getIsVarlowFunction()) {
        number(group, "fcnCallInputPort", group->getFcnCallInputPort(), inports_, "inport");
        number(group, "compFcnCallInputPort", group->getCompFcnCallInputPort(), inports_, "inport");
    }
    // -1 means that there is none.
    if (int const port = group->getServiceInputPort(); port != -1) {
        number(group, "serviceInputPort", port, inports_, "inport");
    }
    if (int const port = group->getCompServiceInputPort(); port != -1) {
        number(group, "compServiceInputPort", port, inports_, "inport");
    }
    numbers(group, "latchedDataInputPorts", *group->getLatchedDataInputPorts(), inports_, "inport");
    numbers(group, "dataInputPortsWithMultiDsts", *group->getDataInputPortsWithMultiDsts(), inports_, "inport");
    numbers(group, "portGroupsWithDataTransferConnection", *group->getPortGroupsWithDataTransferConnection(), groups_,
            "port group");
    numbers(group, "muxedPortGroups", *group->getMuxedPortGroups(), groups_, "port group");
}

void Checks::checkPortMaps() {
    auto const check = [&](auto const& rows, std::size_t count, char const* kind) {
        for (GrCompIOPortMaps const& row : rows) numbers(row, "grAndCompPorts", *row->getGrAndCompPorts(), count, kind);
    };
    check(*root_->getGrToCompInputPortsMaps(), inports_, "inport");
    check(*root_->getCompToGrInputPortMaps(), inports_, "inport");
    check(*root_->getGrToCompOutputPortsMaps(), outports_, "outport");
    check(*root_->getCompToGrOutputPortMaps(), outports_, "outport");
}

void Checks::checkSameRateGroups() {
    PortGroupsRequireSameRate const all = root_->getPortGroupsRequireSameRate();
    if (!all) return;
    for (NameToPortGroupIdxVectMap const& map :
         {all->getMergedPortGroups(), all->getDSMPortGroups(), all->getGlobalDSMPortGroups()}) {
        if (!map) continue;
        for (NameIntVectAssociation const& entry : *map->getEntries()) {
            numbers(entry, "idxVect", *entry->getIdxVect(), groups_, "port group");
        }
    }
}

void Checks::checkMessages() {
    MessageInformation const info = root_->getMessageInfo();
    if (!info) return;
    for (InputQueue const& queue : *info->getInputQueues()) {
        number(queue, "inputPortIdx", queue->getInputPortIdx(), inports_, "inport");
    }
    for (MessageListener const& listener : *info->getMessageListeners()) {
        number(listener, "inputPortIdx", listener->getInputPortIdx(), inports_, "inport");
        name(listener, "functionName", listener->getFunctionName(), functions_, "function");
    }
    auto const check = [&](MessageRootPortInfo const& ports, std::size_t count, char const* kind) {
        if (!ports) return;
        for (MessageModeMap const& mode : *ports->getGrHierarchyMsgModeMap()) {
            number(mode, "portIdx", mode->getPortIdx(), count, kind);
        }
        for (MessageCompPortInfo const& port : *ports->getCompMsgInfoMap()) {
            number(port, "portIdx", port->getPortIdx(), count, kind);
        }
    };
    check(info->getRootInportInfo(), inports_, "inport");
    check(info->getRootOutportInfo(), outports_, "outport");
}

}  // namespace modelref
