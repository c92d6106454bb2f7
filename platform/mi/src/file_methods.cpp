// Saving and loading as methods of quay.zero.Model.
#include "file_methods.h"

#include <ordo/error.h>
#include <ordo/method.h>

#include <quay/zero/io/io.h>
#include <quay/zero/mi/bindings.h>

#include "methods.h"
#include "script_names.h"

namespace quay::zero::mi {

using ordo::MethodCall;
using ordo::OrdoValue;

namespace {

void save(MethodCall& call) { io::save(liveModelIn(call.argument(0)), call.argument(1).toBytes()); }
void dumps(MethodCall& call) { call.setResult(OrdoValue::bytes(io::toText(liveModelIn(call.argument(0))))); }
void load(MethodCall& call) { call.setResult(toScript(io::load(call.argument(0).toBytes()))); }
void loads(MethodCall& call) { call.setResult(toScript(io::fromText(call.argument(0).toBytes()))); }

}  // namespace

void addFileMethods(ordo::OrdoClass& model) {
    addMethod(model, names::kModel, "save", "self path", {"char"}, "void", &save,
              "Writes all elements to a file, in whose place it comes when it is whole.");
    addMethod(model, names::kModel, "dumps", "self", {}, "char", &dumps, "The text that save would write.");
    addStaticMethod(model, "load", "path", {"char"}, names::kModel, &load,
                    "A new model with the elements that a file tells.");
    addStaticMethod(model, "loads", "text", {"char"}, names::kModel, &loads,
                    "A new model with the elements that a text tells.");
}

}  // namespace quay::zero::mi
