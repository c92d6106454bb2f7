// Records inputs and outputs as ports, numbered from 0 in the order of the file.
#include <ModelRefInfoRepo/ArgIndexMap.h>
#include <ModelRefInfoRepo/ArgNameMap.h>
#include <ModelRefInfoRepo/CompDataType.h>
#include <ModelRefInfoRepo/CompFunction.h>
#include <ModelRefInfoRepo/CompFunctionArgInfo.h>
#include <ModelRefInfoRepo/CompFunctionArgs.h>
#include <ModelRefInfoRepo/DataPortGroup.h>
#include <ModelRefInfoRepo/GrCompIOPortMaps.h>
#include <ModelRefInfoRepo/InportInformation.h>
#include <ModelRefInfoRepo/OutportInformation.h>
#include <ModelRefInfoRepo/VarlowFunctions.h>
#include <quay/zero/text.h>

#include <algorithm>
#include <limits>

#include "recording.h"
#include "values.h"

namespace modelref::fmi {

using namespace ModelRefInfoRepo;
using quay::zero::toUtf16;

namespace {

/// A struct with the attributes of the variable for which the record has no property.
zx::Array signalObject(Variable const& v, bool isVersion3) {
    zx::Array object(zxCreateStructMatrix(1, 1));
    auto const set = [&](char const* field, zxArray* value) { zxSetField(object.get(), 0, field, value); };
    set("DataType", zxCreateString_UTF8(typeNameOf(v)));
    std::vector<int> const sizes = dimensionsOf(v);
    zx::Array dimensions(zxCreateNumericMatrix(1, sizes.size(), zxDoubleClass));
    std::copy(sizes.begin(), sizes.end(), zx::valuesForWriting<double>(dimensions.get()).begin());
    set("Dimensions", dimensions.release());
    set("ValueReference", zx::scalar(v.valueReference).release());
    if (!v.description.empty()) set("Description", zxCreateString_UTF8(v.description));
    if (!v.quantity.empty()) set("Quantity", zxCreateString_UTF8(v.quantity));
    if (!v.unit.empty()) set("Unit", zxCreateString_UTF8(v.unit));
    if (!v.displayUnit.empty()) set("DisplayUnit", zxCreateString_UTF8(v.displayUnit));
    if (zx::Array start = startArray(v, isVersion3)) set("InitialValue", start.release());
    return object;
}

/// The data type of a variable, named as in the record.
std::unique_ptr<CompDataType::Builder> dataTypeOf(Variable const& variable) {
    auto type = std::make_unique<CompDataType::Builder>();
    bool const isNumeric = isNumber(variable.type) || variable.type == Type::Boolean;
    type->setDataClass(isNumeric                            ? DataClass::Numeric
                       : variable.type == Type::Enumeration ? DataClass::Enum
                       : variable.type == Type::String      ? DataClass::String
                                                            : DataClass::Custom);
    type->setDataTypeName(typeNameOf(variable));
    return type;
}

/// The dimensions as text: the names of the variables that give them, numbers for fixed ones; "" if all are fixed.
std::string symbolicDimensions(Description const& d, Variable const& v) {
    bool isSymbolic = false;
    std::string result;
    for (Dimension const& dimension : v.dimensions) {
        if (!result.empty()) result += ",";
        isSymbolic = isSymbolic || dimension.variable;
        result += dimension.variable ? d.variables[*dimension.variable].name : std::to_string(dimension.size);
    }
    return isSymbolic ? result : "";
}

void addMapRow(std::unique_ptr<GrCompIOPortMaps::Builder>& row, std::size_t number) {
    row = std::make_unique<GrCompIOPortMaps::Builder>();
    row->addGrAndCompPorts(static_cast<int>(number));
}

}  // namespace

/// Fills the properties that ports of both directions have.
template <class Port>
void Recording::fillPort(Port& port, std::size_t variable, std::size_t number) {
    Variable const& v = at(variable);
    constexpr double kNoLimit = std::numeric_limits<double>::infinity();
    port.setOriginalPortNumber(static_cast<unsigned>(number));
    port.setCompiledSignalLabel(toUtf16(v.name));
    for (RateInfo const& rate : ratesOf(variable)) port.addRateInfos(rate);
    port.setDesignMin(v.min.value_or(-kNoLimit));
    port.setDesignMax(v.max.value_or(kNoLimit));
    port.setDiscreteValuedOutput(v.variability != Variability::Continuous);
    port.setResolvedSignalObject(signalObject(v, d_.isVersion3).get());
    port.setResolvedSignalObjectSource(toUtf16(v.declaredType));
    // The event at which the port's value changes, if it has a triggered clock.
    std::vector<std::size_t> clocks = v.clocks;
    if (v.type == Type::Clock) clocks.assign(1, variable);
    auto const event = std::find_if(clocks.begin(), clocks.end(), [&](std::size_t c) { return isEvent(c); });
    if (event != clocks.end()) port.setModelWideEventId(toUtf16(at(*event).name));
}

void Recording::recordPorts() {
    // An input is a derivative port if a derivative depends on it or may depend on it.
    std::vector<bool> feedsDerivative(d_.variables.size(), false);
    for (Unknown const& derivative : d_.derivatives) {
        if (!derivative.dependencies) {
            feedsDerivative.assign(feedsDerivative.size(), true);
            break;
        }
        for (std::size_t const v : *derivative.dependencies) feedsDerivative[v] = true;
    }
    std::vector<bool> isState(d_.variables.size(), false);
    for (std::size_t const state : continuousStates_) isState[state] = true;
    for (std::size_t number = 0; number < inports_.size(); ++number) {
        std::size_t const i = inports_[number];
        auto port = std::make_unique<InportInformation::Builder>();
        fillPort(*port, i, number);
        port->setIsNotDerivPort(!feedsDerivative[i]);
        port->setIsFunctionCallInitiator(at(i).type == Type::Clock);
        root_.addInports(std::move(port));
        mark(i);
    }
    for (std::size_t number = 0; number < outports_.size(); ++number) {
        std::size_t const i = outports_[number];
        Variable const& v = at(i);
        auto port = std::make_unique<OutportInformation::Builder>();
        fillPort(*port, i, number);
        port->setNonContinuous(v.variability != Variability::Continuous);
        port->setIsInitializedWithIC(!v.start.empty());
        port->setIsState(isState[i]);
        if (v.variability == Variability::Constant && v.start.size() == 1)
            port->setConstantOutputValue(v.start.front());
        root_.addOutports(std::move(port));
        mark(i);
    }
    recordDataPortGroup();
    recordStepFunction();
}

/// Records the ports that carry data, all but clocks, and the maps between the two numberings, which are equal here.
void Recording::recordDataPortGroup() {
    auto group = std::make_unique<DataPortGroup::Builder>();
    int dataInputs = 0;
    std::unique_ptr<GrCompIOPortMaps::Builder> row;
    for (std::size_t n = 0; n < inports_.size(); ++n) {
        addMapRow(row, n);
        root_.addGrToCompInputPortsMaps(std::move(row));
        addMapRow(row, n);
        root_.addCompToGrInputPortMaps(std::move(row));
        if (at(inports_[n]).type == Type::Clock) continue;
        group->addDataInputPorts(static_cast<int>(n));
        group->addCompDataInputPorts(static_cast<int>(n));
        ++dataInputs;
    }
    for (std::size_t n = 0; n < outports_.size(); ++n) {
        addMapRow(row, n);
        root_.addGrToCompOutputPortsMaps(std::move(row));
        addMapRow(row, n);
        root_.addCompToGrOutputPortMaps(std::move(row));
        if (at(outports_[n]).type == Type::Clock) continue;
        group->addDataOutputPorts(static_cast<int>(n));
        group->addCompDataOutputPorts(static_cast<int>(n));
    }
    root_.setDataPortGroup(std::move(group));
    root_.setNumDataInputPorts(dataInputs);
    root_.setNumSigs(inports_.size() + outports_.size());
}

/// Records types and dimensions of ports as arguments of the function that computes one step of the model.
void Recording::recordStepFunction() {
    auto arguments = std::make_unique<CompFunctionArgs::Builder>();
    int position = 0;
    auto const add = [&](std::size_t variable, auto append) {
        Variable const& v = at(variable);
        if (v.type == Type::Clock) return;
        auto argument = std::make_unique<CompFunctionArgInfo::Builder>();
        for (int const size : dimensionsOf(v)) argument->addDims(size);
        argument->setSymbDimsStr(toUtf16(symbolicDimensions(d_, v)));
        argument->setDataType(dataTypeOf(v));
        argument->setPassByType(v.dimensions.empty() ? u"value" : u"pointer");
        append(std::move(argument));
        auto name = std::make_unique<ArgNameMap::Builder>();
        name->setName(toUtf16(v.name));
        name->setPosition(position);
        arguments->addArgNameMap(std::move(name));
        auto index = std::make_unique<ArgIndexMap::Builder>();
        index->setIndex(toUtf16(std::to_string(position)));
        index->setPosition(position);
        arguments->addArgIndexMap(std::move(index));
        ++position;
    };
    for (std::size_t const i : inports_) add(i, [&](auto argument) { arguments->addInArgs(std::move(argument)); });
    for (std::size_t const i : outports_) add(i, [&](auto argument) { arguments->addOutArgs(std::move(argument)); });
    arguments->setReturnStatus(true);

    auto function = std::make_unique<CompFunction::Builder>();
    function->setFunctionName(u"step");
    function->setScopeName(toUtf16(d_.modelName));
    function->setSourceModel(toUtf16(d_.modelName));
    function->setFullPathToFunction(toUtf16(d_.modelName + "/step"));
    function->setVisibility(u"global");
    function->setIsDefined(true);
    function->setHasDeclaration(true);
    function->setMultiInstance(std::none_of(d_.kinds.begin(), d_.kinds.end(), [](InterfaceKind const& kind) {
        return kind.has("canBeInstantiatedOnlyOncePerProcess");
    }));
    function->setFcnArgs(std::move(arguments));
    auto functions = std::make_unique<VarlowFunctions::Builder>();
    functions->addCompFunctions(std::move(function));
    root_.setVarlowFunctions(std::move(functions));
}

}  // namespace modelref::fmi
