#include "element_methods.h"

#include <ordo/error.h>
#include <ordo/factory/text.h>

#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/builder_from_struct.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include "script_names.h"

namespace quay::zero::mi {

using ordo::OrdoMethodSignature;
using ordo::OrdoValue;

namespace {

using BuilderPointer = std::unique_ptr<ModelElement::Builder>;

/// "createInto" and the property's name with its first letter in upper case.
std::string creatorName(meta::Property const& property) {
    std::string name = ordo::factory::bytesOf(property->getName());
    if (!name.empty() && name[0] >= 'a' && name[0] <= 'z') name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return "createInto" + name;
}

boost::uuids::uuid requireUuid(OrdoValue const& value, meta::Class const& metaClass) {
    auto const id = detail::extractUuid(value);
    if (!id) reportException(quay0::messages::InvalidValue().about(metaClass->getName()));
    return *id;
}

BuilderPointer builderFrom(OrdoValue const& value, Model const& model, meta::Class const& metaClass) {
    return detail::createBuilderFromStructFirst(value.arrayContent(), model, metaClass);
}

OrdoMethodSignature signatureOf(std::string_view parameterNames, std::string const& result,
                                std::vector<std::string> inputs) {
    OrdoMethodSignature made = OrdoMethodSignature::createMethodSignature(parameterNames, result, std::move(inputs), 2);
    made.ignoresFurther = true;
    return made;
}

}  // namespace

// --- Construct ------------------------------------------------------------------------------------------------------

Construct::Construct(std::string_view shortName, std::string const& scriptName, std::string_view description)
    : OrdoMethod(shortName, {}, signatureOf("model opt_init opt_uuid", scriptName, {names::kModel, "any", "any"}),
                 description),
      class_(scriptName) {}

void Construct::call(ordo::MethodCall& call) const {
    meta::Class const metaClass = class_.get();
    Model const model = modelIn(call.argument(0));
    if (!model) reportException(quay0::messages::CannotCreateWithoutModel().about(metaClass->getName()));
    auto const isInitialiser = [](OrdoValue const& value) { return value.isStruct() && value.count() == 1; };

    BuilderPointer builder;
    boost::uuids::uuid id{};
    if (call.count() > 1) {
        if (isInitialiser(call.argument(1))) {
            builder = builderFrom(call.argument(1), model, metaClass);
        } else {
            id = requireUuid(call.argument(1), metaClass);
        }
    }
    if (call.count() > 2) {
        if (builder != nullptr) {
            id = requireUuid(call.argument(2), metaClass);
        } else if (isInitialiser(call.argument(2))) {
            builder = builderFrom(call.argument(2), model, metaClass);
        } else {
            reportException(quay0::messages::InvalidValue().about(metaClass->getName()));
        }
    }
    if (builder == nullptr) builder = detail::createEmptyBuilder(model, metaClass);
    Savepoint savepoint(model->journal());
    bindConstructed(builder->create(id), *call.constructed());
    savepoint.commit();
}

// --- CreateInto -----------------------------------------------------------------------------------------------------

CreateInto::CreateInto(meta::Property const& property, std::string const& ownerName, std::string_view description)
    : OrdoMethod(creatorName(property), {},
                 signatureOf("", scriptNameOfType(property->getType()), {ownerName, "any", "char"}), description),
      property_(property),
      owner_(ordo::internName(ownerName)) {}

BuilderPointer CreateInto::emptyBuilder(Model const& model) const {
    if (makeBuilder_ != nullptr && childClass_) return makeBuilder_(model);
    childClass_ = meta::Class::cast(property_.get()->getType());
    BuilderPointer builder = detail::createEmptyBuilder(model, childClass_);
    makeBuilder_ = builder->classTable().builderFactory();
    return builder;
}

void CreateInto::call(ordo::MethodCall& call) const {
    ModelElement const parent(static_cast<ModelElement::Impl*>(call.argument(0).native(owner_)));
    if (!parent) ordo::raiseInvalidHandle();
    Model const model = parent->getModel();
    auto const metaClass = [&] { return meta::Class::cast(property_.get()->getType()); };

    // One savepoint, so that a child that can't be added to the property, or wrapped for the script, is rolled back.
    Savepoint savepoint(model->journal());
    BuilderPointer builder;
    boost::uuids::uuid id{};  // for a nil id, the model generates one
    OrdoValue const& first = call.argument(1);
    if (call.count() > 1 && first.isStruct()) {
        builder = builderFrom(first, model, metaClass());
        if (call.count() > 2) id = requireUuid(call.argument(2), metaClass());
    } else if (call.count() > 2) {
        reportException(quay0::messages::InvalidValue().about(metaClass()->getName()));
    } else {
        if (call.count() == 2) id = requireUuid(first, metaClass());
        builder = emptyBuilder(model);
    }
    ModelElement const child = builder->create(id);
    property_.descriptor().place(*parent.impl(), child);
    call.setResultCount(1);
    if (call.wantsResult()) call.setResult(toScript(child));
    savepoint.commit();
}

}  // namespace quay::zero::mi
