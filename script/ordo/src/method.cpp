#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/binding_registry.h>
#include <ordo/factory/method.h>

#include <sstream>

namespace ordo {

OrdoMethodSignature OrdoMethodSignature::createMethodSignature(std::string_view parameterNames, std::string_view result,
                                                               std::vector<std::string> inputs,
                                                               std::size_t optionalInputs) {
    OrdoMethodSignature signature;
    std::istringstream names{std::string(parameterNames)};
    for (std::string name; names >> name;) {
        signature.parameterNames.push_back(name);
    }
    signature.result = result;
    signature.inputs = std::move(inputs);
    signature.optionalInputs = optionalInputs;
    return signature;
}

std::string OrdoMethodSignature::describe(std::string_view method) const {
    std::string text(method);
    text += '(';
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        text += i == 0 ? "" : ", ";
        text += i < parameterNames.size() ? parameterNames[i] + ": " + inputs[i] : inputs[i];
        text += i + optionalInputs >= inputs.size() ? " = None" : "";
    }
    text += variadic ? (inputs.empty() ? "..." : ", ...") : "";
    text += ')';
    return result.empty() || result == "void" ? text : text + " -> " + result;
}

OrdoMethodInfo::~OrdoMethodInfo() = default;

OrdoValue const& MethodCall::missing() noexcept {
    static OrdoValue const nothing;
    return nothing;
}

namespace factory {

OrdoMethod::~OrdoMethod() = default;

namespace impl {

OrdoConstructor::OrdoConstructor(std::string_view shortName, std::string_view fullName, NativeCopier copier,
                                 std::string_view description)
    : OrdoMethod(shortName, {}, OrdoMethodSignature::createMethodSignature("", fullName, {}), description),
      className_(internName(fullName)),
      copier_(copier) {}

void OrdoConstructor::call(MethodCall& call) const {
    if (void* const native = definingClass()->info().makeInstance()) {
        basic::BindingRegistry::announceForConstructor(native, className_, *call.constructed(), false, copier_);
    }
}

}  // namespace impl
}  // namespace factory
}  // namespace ordo
