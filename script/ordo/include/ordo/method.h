// Methods of a class, and how they are called.
#pragma once

#include <ordo/export.h>
#include <ordo/interned.h>
#include <ordo/value.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ordo {

class OrdoClass;

/// The inputs and the result of a method, for checks and help texts.
struct ORDO_API OrdoMethodSignature {
    /// `parameterNames` are separated by blanks; there may be fewer than inputs, also none. Of the inputs, the last
    /// `optionalInputs` may be missing. `result` is empty or "void" if there is none.
    static OrdoMethodSignature createMethodSignature(std::string_view parameterNames, std::string_view result,
                                                     std::vector<std::string> inputs, std::size_t optionalInputs = 0);

    bool accepts(std::size_t arguments) const noexcept {
        bool const isEnough = arguments + optionalInputs >= inputs.size();
        return variadic || (isEnough && (ignoresFurther || arguments <= inputs.size()));
    }
    /// How many of so many arguments the method reads.
    std::size_t countRead(std::size_t arguments) const noexcept {
        return ignoresFurther && arguments > inputs.size() ? inputs.size() : arguments;
    }
    /// "(model, opt_init=, opt_uuid=) -> Class", with type words where there are no names.
    std::string describe(std::string_view method) const;

    std::vector<std::string> parameterNames;
    std::string result;
    std::vector<std::string> inputs;
    std::size_t optionalInputs = 0;
    bool variadic = false;        ///< takes any number of arguments
    bool ignoresFurther = false;  ///< takes arguments beyond its inputs, and doesn't read them
};

/// One call: its arguments and its result. The object is the first argument, except for constructors and static
/// methods.
class MethodCall {
public:
    explicit MethodCall(std::span<OrdoValue const> arguments, bool wantsResult = true,
                        OrdoInterface* constructed = nullptr) noexcept
        : arguments_(arguments), constructed_(constructed), wantsResult_(wantsResult) {}

    std::span<OrdoValue const> arguments() const noexcept { return arguments_; }
    std::size_t count() const noexcept { return arguments_.size(); }
    /// The argument at this index; the value "nothing" if it wasn't given.
    OrdoValue const& argument(std::size_t index) const noexcept {
        return index < arguments_.size() ? arguments_[index] : missing();
    }

    /// For a constructor: the script object that was made for the call and has no native object yet.
    OrdoInterface* constructed() const noexcept { return constructed_; }

    /// False if the caller ignores the result, which then needn't be made.
    bool wantsResult() const noexcept { return wantsResult_; }
    std::size_t resultCount() const noexcept { return resultCount_; }
    void setResultCount(std::size_t count) noexcept { resultCount_ = count; }
    OrdoValue& result() noexcept { return result_; }
    void setResult(OrdoValue result) noexcept {
        result_ = std::move(result);
        resultCount_ = 1;
    }

private:
    ORDO_API static OrdoValue const& missing() noexcept;

    std::span<OrdoValue const> arguments_;
    OrdoInterface* constructed_;
    OrdoValue result_;
    std::size_t resultCount_ = 0;
    bool wantsResult_;
};

/// The attribute word of static methods.
inline constexpr unsigned staticMethodAttributes = 520;

/// A method as a class defines it. The method that has the class's short name is the constructor.
class ORDO_API OrdoMethodInfo {
public:
    OrdoMethodInfo(OrdoMethodInfo const&) = delete;
    OrdoMethodInfo& operator=(OrdoMethodInfo const&) = delete;
    virtual ~OrdoMethodInfo();

    InternedName name() const noexcept { return name_; }
    OrdoClass* definingClass() const noexcept { return definingClass_; }
    OrdoMethodSignature const& signature() const noexcept { return signature_; }

    virtual unsigned getAttributes() const noexcept { return 0; }
    bool isStatic() const noexcept { return (getAttributes() & staticMethodAttributes) == staticMethodAttributes; }
    /// One line for help texts.
    virtual std::string_view getDescription() const noexcept { return {}; }

    /// Runs the method. The caller has checked the number of arguments against the signature.
    virtual void call(MethodCall& call) const = 0;

protected:
    OrdoMethodInfo(std::string_view name, OrdoMethodSignature signature)
        : name_(internName(name)), signature_(std::move(signature)) {}

private:
    friend OrdoClass;

    InternedName name_;
    OrdoMethodSignature signature_;
    OrdoClass* definingClass_ = nullptr;
};

}  // namespace ordo
