// Methods of native classes.
#pragma once

#include <ordo/export.h>
#include <ordo/interned.h>
#include <ordo/method.h>

#include <string_view>
#include <utility>

namespace ordo::factory {

/// The attribute word of a method: 0, or what the method's creator passes, such as staticMethodAttributes.
struct MethodAttributes {
    unsigned word = 0;
};

/// A method of a native class; derived classes implement the call. `description` must live as long as the process.
class ORDO_API OrdoMethod : public OrdoMethodInfo {
public:
    OrdoMethod(std::string_view name, MethodAttributes attributes, OrdoMethodSignature signature,
               std::string_view description = {})
        : OrdoMethodInfo(name, std::move(signature)), description_(description), attributes_(attributes) {}
    ~OrdoMethod() override;

    unsigned getAttributes() const noexcept override { return attributes_.word; }
    std::string_view getDescription() const noexcept override { return description_; }

private:
    std::string_view description_;
    MethodAttributes attributes_;
};

namespace impl {

/// A method that calls a plain function.
class ORDO_API MethodImpl final : public OrdoMethod {
public:
    /// The function behind the method, in the type-erased form in which the call thunk receives it.
    using Function = void (*)();
    /// Takes the call's arguments, calls the function with them and sets the result.
    using CallThunk = void (*)(Function function, MethodCall& call);

    MethodImpl(std::string_view name, MethodAttributes attributes, OrdoMethodSignature signature, CallThunk thunk,
               Function function = nullptr, std::string_view description = {})
        : OrdoMethod(name, attributes, std::move(signature), description), thunk_(thunk), function_(function) {}

    void call(MethodCall& call) const override { thunk_(function_, call); }

private:
    CallThunk thunk_;
    Function function_;
};

/// The constructor of a class of values: it has no inputs and gives the script object the default value that the class
/// description makes, without a binding.
class ORDO_API OrdoConstructor final : public OrdoMethod {
public:
    /// `copier` is used as by BindingRegistry::announceWithoutStoring.
    OrdoConstructor(std::string_view shortName, std::string_view fullName, NativeCopier copier,
                    std::string_view description = {});

    void call(MethodCall& call) const override;

private:
    InternedName className_;
    NativeCopier copier_;
};

}  // namespace impl
}  // namespace ordo::factory
