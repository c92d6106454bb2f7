// The script classes quay.zero.Model and quay.zero.Transaction.
#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/class_info.h>
#include <ordo/factory/method.h>
#include <ordo/factory/text.h>

#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/builder_from_struct.h>
#include <quay/zero/report.h>
#include <quay/zero/value.h>

#include <quay0/messages.h>

#include "file_methods.h"
#include "methods.h"
#include "runtime_classes.h"
#include "script_names.h"

namespace quay::zero::mi {

using ordo::MethodCall;
using ordo::OrdoMethodSignature;
using ordo::OrdoValue;

namespace {

// --- Transactions ---------------------------------------------------------------------------------------------------

/// A script's transaction, with the model that it is open in.
struct ScriptTransaction {
    Model model;
    Transaction transaction;
    bool wasEndedByScript = false;  // by its own commit or rollback
};

ScriptTransaction& transactionOf(MethodCall const& call) {
    static ordo::InternedName const name = ordo::internName(names::kTransaction);
    void* const native = call.argument(0).native(name);
    if (native == nullptr) ordo::raiseInvalidHandle();
    return *static_cast<ScriptTransaction*>(native);
}

void commit(MethodCall& call) {
    ScriptTransaction& own = transactionOf(call);
    if (own.wasEndedByScript) ordo::raiseInvalidHandle();
    if (!own.transaction.isOpen()) ordo::raise(ordo::failures::TransactionEnded);
    own.transaction.commit();
    own.wasEndedByScript = true;
}

void rollback(MethodCall& call) {
    // Destroying an uncommitted transaction rolls it back; if an outer one has ended already, there is nothing left to
    // do.
    ScriptTransaction& own = transactionOf(call);
    own.wasEndedByScript = true;
    Transaction const ended = std::move(own.transaction);
}

class TransactionInfo final : public ordo::factory::OrdoFactoryClassInfo {
public:
    TransactionInfo() : OrdoFactoryClassInfo("Transaction", names::kTransaction) {}

    bool isTransaction() const noexcept override { return true; }
    bool isOpenTransaction(void const* native) const noexcept override {
        return static_cast<ScriptTransaction const*>(native)->transaction.isOpen();
    }
    void freeInstance(void* native) noexcept override { delete static_cast<ScriptTransaction*>(native); }
    std::string_view getDescription() const noexcept override {
        return "An open transaction of a model. It ends without a trace unless it is committed.";
    }
    void defineClass(ordo::OrdoClass& c) override {
        std::string const name(getFullName());
        addMethod(c, name, "commit", "self", {}, "void", &commit,
                  "Ends the transaction and keeps what was done in it.");
        addMethod(c, name, "rollback", "self", {}, "void", &rollback,
                  "Ends the transaction and takes back what was done in it.");
    }
};

// --- Models ---------------------------------------------------------------------------------------------------------

void transaction(MethodCall& call) {
    static ordo::InternedName const name = ordo::internName(names::kTransaction);
    Model const model = liveModelIn(call.argument(0));
    auto made = std::make_unique<ScriptTransaction>(ScriptTransaction{model, model->beginTransaction()});
    auto object = ordo::factory::basic::BindingRegistry::announceWithoutStoring(made.get(), name, nullptr);
    static_cast<void>(made.release());
    call.setResult(OrdoValue::fromObject(std::move(object)));
}

void find(MethodCall& call) {
    Model const model = liveModelIn(call.argument(0));
    auto const id = detail::extractUuid(call.argument(1));
    if (!id) reportException(quay0::messages::InvalidValue().about(u"quay.zero.Model.find"));
    call.setResult(toScript(model->findElement(*id, FindElementBehavior::ResolveProxies)));
}

void elements(MethodCall& call) { call.setResult(toScript(liveModelIn(call.argument(0))->getElements())); }
void roots(MethodCall& call) { call.setResult(toScript(liveModelIn(call.argument(0))->getRoots())); }
void enableHistory(MethodCall& call) { liveModelIn(call.argument(0))->enableHistory(call.argument(1).toSize()); }
void undo(MethodCall& call) { call.setResult(OrdoValue::logical(liveModelIn(call.argument(0))->undo())); }
void redo(MethodCall& call) { call.setResult(OrdoValue::logical(liveModelIn(call.argument(0))->redo())); }

class ConstructModel final : public ordo::factory::OrdoMethod {
public:
    ConstructModel()
        : OrdoMethod("Model", {}, OrdoMethodSignature::createMethodSignature("", names::kModel, {}),
                     "A new model, without elements.") {}

    void call(MethodCall& call) const override { bindConstructed(Model::create(), *call.constructed()); }
};

class ModelInfo final : public ordo::factory::HandleClassInfo<ModelImpl, false> {
public:
    ModelInfo() : HandleClassInfo("Model", names::kModel) {}

    std::string_view getDescription() const noexcept override {
        return "Where elements live, are found, and are written in transactions.";
    }
    std::string describeInstance(void const* native) const override {
        return "of " + std::to_string(static_cast<ModelImpl const*>(native)->elementCount()) + " elements";
    }
    void defineClass(ordo::OrdoClass& c) override {
        c.addMethod(std::make_unique<ConstructModel>());
        struct {
            char const* name;
            char const* parameters;
            std::vector<std::string> inputs;
            char const* result;
            void (*run)(MethodCall&);
            char const* description;
        } const methods[] = {
            {"transaction",
             "self",
             {},
             names::kTransaction,
             &transaction,
             "Opens a transaction, or a savepoint in the open one, for a block of statements."},
            {"find", "self uuid", {"char"}, names::kElement, &find, "The element of an id, or nothing."},
            {"elements", "self", {}, "cell", &elements, "All elements, in order of creation."},
            {"roots", "self", {}, "cell", &roots, "The elements without a container, in order of creation."},
            {"enableHistory",
             "self limit",
             {"double scalar"},
             "void",
             &enableHistory,
             "Keeps the last transactions for undo, so many at most; 0 keeps none."},
            {"undo", "self", {}, "logical scalar", &undo, "Takes the last kept transaction back, if there is one."},
            {"redo", "self", {}, "logical scalar", &redo, "Does the transaction again that was taken back last."},
        };
        for (auto const& m : methods) {
            addMethod(c, names::kModel, m.name, m.parameters, m.inputs, m.result, m.run, m.description);
        }
        addFileMethods(c);
    }

protected:
    void dropReference(void* native) noexcept override { releaseHeld(native); }
};

}  // namespace

void addModelClasses(ordo::OrdoPackage& package) {
    package.addClass(std::make_unique<ModelInfo>().release(), 2);
    package.addClass(std::make_unique<TransactionInfo>().release(), 2);
}

}  // namespace quay::zero::mi
