// Saving and loading as methods of quay.zero.Model.
#include "file_methods.h"

#include <ordo/error.h>
#include <ordo/method.h>

#include <quay/zero/io/io.h>
#include <quay/zero/mi/bindings.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include "methods.h"
#include "script_names.h"

namespace quay::zero::mi {

using ordo::MethodCall;
using ordo::OrdoValue;

namespace {

/// A path from a script. Rejects a null character, at which the operating system would end the path.
std::string pathIn(OrdoValue const& value) {
    std::string path = value.toBytes();
    if (path.find('\0') != std::string::npos) {
        reportException(quay0::messages::InvalidValue().about(u"the path").withValue(u"a text with a null character"));
    }
    return path;
}

void save(MethodCall& call) { io::save(liveModelIn(call.argument(0)), pathIn(call.argument(1))); }
void dumps(MethodCall& call) { call.setResult(OrdoValue::bytes(io::toText(liveModelIn(call.argument(0))))); }
void load(MethodCall& call) { call.setResult(toScript(io::load(pathIn(call.argument(0))))); }
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
