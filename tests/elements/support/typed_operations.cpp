#include "typed_operations.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>

#include "reference.h"

namespace records {

using namespace ModelRefInfoRepo;

namespace {

template <class X, class T>
TypedWrite typedWrite(char const* kind, char const* property, void (X::Impl::*setter)(T)) {
    return {plan().slot(kind, property), [setter](ModelElement const& e, Value const& v) {
                (X::cast(e).impl()->*setter)(v.getValue<std::decay_t<T>>());
            }};
}

template <class Owner, class Child>
TypedCreation typedCreation(char const* kind, char const* property, Child (Owner::Impl::*plain)(),
                            Child (Owner::Impl::*built)(typename Child::BuilderWrapper, boost::uuids::uuid const&)) {
    return {plan().slot(kind, property), [plain, built](ModelElement const& e, ModelElement::Builder* b) {
                auto* const owner = Owner::cast(e).impl();
                b == nullptr ? (owner->*plain)() : (owner->*built)(typename Child::BuilderWrapper(*b), {});
            }};
}

}  // namespace

std::vector<TypedWrite> const& typedWrites() {
    static std::vector<TypedWrite> const all = {
        typedWrite<ModelRefInfoRoot>("ModelRefInfoRoot", "triggerType", &ModelRefInfoRoot::Impl::setTriggerType),
        typedWrite<ModelRefInfoRoot>("ModelRefInfoRoot", "hasHardwareSemantics",
                                     &ModelRefInfoRoot::Impl::setHasHardwareSemantics),
        typedWrite<ModelRefInfoRoot>("ModelRefInfoRoot", "numTs", &ModelRefInfoRoot::Impl::setNumTs),
        typedWrite<ModelRefInfoRoot>("ModelRefInfoRoot", "solverStatusFlags",
                                     &ModelRefInfoRoot::Impl::setAutoSolverStatusFlags),
        typedWrite<VarTsUIDEntry>("VarTsUIDEntry", "varTsIdx", &VarTsUIDEntry::Impl::setVarTsIdx),
        typedWrite<UnionTsContainedTsElem>("UnionTsContainedTsElem", "unionTs",
                                           &UnionTsContainedTsElem::Impl::setUnionTs),
        typedWrite<IRTCallerType>("IRTCallerType", "blockHandle", &IRTCallerType::Impl::setBlockHandle),
        typedWrite<ArgumentValue>("ArgumentValue", "name", &ArgumentValue::Impl::setName),
        typedWrite<VariantFunctionNetEMVCE>("VariantFunctionNetEMVCE", "signalName",
                                            &VariantFunctionNetEMVCE::Impl::setSignalName),
        typedWrite<CompServicePort>("CompServicePort", "servicePortKey", &CompServicePort::Impl::setServicePortKey),
    };
    return all;
}

std::vector<TypedCreation> const& typedCreations() {
    using R = ModelRefInfoRoot::Impl;
    using I = InportInformation::Impl;
    static std::vector<TypedCreation> const all = {
        typedCreation<ModelRefInfoRoot, InportInformation>("ModelRefInfoRoot", "inports", &R::createIntoInports,
                                                           &R::createIntoInports),
        typedCreation<ModelRefInfoRoot, ResetEventInfo>("ModelRefInfoRoot", "resetEvents", &R::createIntoResetEvents,
                                                        &R::createIntoResetEvents),
        typedCreation<ModelRefInfoRoot, VarTsUIDMap>("ModelRefInfoRoot", "varTsUIDMap", &R::createIntoVarTsUIDMap,
                                                     &R::createIntoVarTsUIDMap),
        typedCreation<ModelRefInfoRoot, UnionTsContainedTsElem>("ModelRefInfoRoot", "unionTsContainedTs",
                                                                &R::createIntoUnionTsContainedTs,
                                                                &R::createIntoUnionTsContainedTs),
        typedCreation<InportInformation, HierCondInfo>("InportInformation", "hierCondInfos",
                                                       &I::createIntoHierCondInfos, &I::createIntoHierCondInfos),
        typedCreation<VarTsUIDMap, VarTsUIDEntry>("VarTsUIDMap", "entries", &VarTsUIDMap::Impl::createIntoEntries,
                                                  &VarTsUIDMap::Impl::createIntoEntries),
        typedCreation<ArgumentValueMap, ArgumentValue>("ArgumentValueMap", "entries",
                                                       &ArgumentValueMap::Impl::createIntoEntries,
                                                       &ArgumentValueMap::Impl::createIntoEntries),
        typedCreation<CompFunction, IRTCallerType>("CompFunction", "irtCallerType",
                                                   &CompFunction::Impl::createIntoIrtCallerType,
                                                   &CompFunction::Impl::createIntoIrtCallerType),
    };
    return all;
}

}  // namespace records
