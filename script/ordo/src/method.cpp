#include <ordo/method.h>

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

}  // namespace ordo
