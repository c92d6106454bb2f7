// Records parameters and constants, each by the kind of its type, and their start values.
#include <ModelRefInfoRepo/ArgumentValue.h>
#include <ModelRefInfoRepo/ArgumentValueMap.h>
#include <ModelRefInfoRepo/ArgumentValueSource.h>
#include <ModelRefInfoRepo/ArgumentValueSourceMap.h>
#include <ModelRefInfoRepo/BuiltinParameter.h>
#include <ModelRefInfoRepo/EnumParameter.h>
#include <ModelRefInfoRepo/FixedPointParameter.h>
#include <ModelRefInfoRepo/GroupedArgument.h>
#include <ModelRefInfoRepo/InterfaceParameterInfo.h>
#include <quay/zero/text.h>

#include <algorithm>

#include "recording.h"
#include "values.h"

namespace modelref::fmi {

using namespace ModelRefInfoRepo;
using quay::zero::toUtf16;

namespace {

template <class B>
std::unique_ptr<B> common(Variable const& v) {
    auto parameter = std::make_unique<B>();
    parameter->setParameterName(toUtf16(v.name));
    parameter->setNumDimensions(static_cast<unsigned>(v.dimensions.size()));
    for (Dimension const& dimension : v.dimensions) parameter->addDimensions(static_cast<int>(dimension.size));
    parameter->setIsUsed(true);
    parameter->setDatatypeName(typeNameOf(v));
    parameter->setIsUsedAsNonTunableParam(v.variability != Variability::Tunable);
    return parameter;
}

/// Makes the parameter of a variable. Numbers of up to 32 bits, and truth values, are built-in types; integers of 64
/// bits are fixed-point types without scaling; texts and bytes are built-in types without a number.
std::unique_ptr<quay::zero::ModelElement::Builder> parameterOf(Variable const& v) {
    if (v.type == Type::Enumeration) {
        auto parameter = common<EnumParameter::Builder>(v);
        parameter->setEnumName(toUtf16(v.declaredType));
        return parameter;
    }
    if (v.type == Type::Int64 || v.type == Type::UInt64) {
        auto parameter = common<FixedPointParameter::Builder>(v);
        parameter->setIsSigned(v.type == Type::Int64);
        parameter->setWordLength(64);
        parameter->setFractionalSlope(1);
        return parameter;
    }
    auto parameter = common<BuiltinParameter::Builder>(v);
    parameter->setDatatypeID(builtInIdOf(v.type));
    return parameter;
}

}  // namespace

void Recording::recordParameters() {
    auto info = std::make_unique<InterfaceParameterInfo::Builder>();
    auto values = std::make_unique<ArgumentValueMap::Builder>();
    auto sources = std::make_unique<ArgumentValueSourceMap::Builder>();
    for (std::size_t i = 0; i < d_.variables.size(); ++i) {
        Variable const& v = at(i);
        bool const isArgument = v.causality == Causality::Parameter || v.causality == Causality::StructuralParameter;
        bool const isConstant = v.causality == Causality::Local && v.variability == Variability::Constant;
        bool const isGlobal = v.causality == Causality::CalculatedParameter || isConstant;
        if ((!isArgument && !isGlobal) || v.type == Type::Clock) continue;
        if (isArgument) {
            info->addModelArguments(parameterOf(v));
        } else {
            info->addGlobalVariables(parameterOf(v));
        }
        if (isConstant) root_.addInlinedVariables(toUtf16(v.name));
        if (v.causality == Causality::StructuralParameter) {
            auto group = std::make_unique<GroupedArgument::Builder>();
            group->setParameterName(v.name);
            group->setGroupName("structuralParameter");
            info->addGroupedArgumentMap(std::move(group));
        }
        if (zx::Array const start = startArray(v, d_.isVersion3)) {
            auto value = std::make_unique<ArgumentValue::Builder>();
            value->setName(v.name);
            value->setValue(start.get());
            values->addEntries(std::move(value));
            auto source = std::make_unique<ArgumentValueSource::Builder>();
            source->setName(v.name);
            source->setSrcPath(toUtf16(d_.modelName));
            source->setSrcPrmName(v.name);
            sources->addEntries(std::move(source));
        }
        mark(i);
    }
    root_.setInterfaceParameterInfo(std::move(info));
    root_.setArgumentParameters(std::move(values));
    root_.setArgumentParameterSourceMap(std::move(sources));
}

}  // namespace modelref::fmi
