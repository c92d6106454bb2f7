// Properties of native classes: one object each, with adapters that call plain functions.
#pragma once

#include <ordo/error.h>
#include <ordo/export.h>
#include <ordo/factory/value_type.h>
#include <ordo/property.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace ordo::factory::impl {

/// Throws InvalidHandle for a null self.
inline void validateSelfPointer(void const* self) {
    if (self == nullptr) [[unlikely]] {
        raiseInvalidHandle();
    }
}

/// Base of the properties of native classes.
class ORDO_API PropertyImplBase : public OrdoPropInfo {
public:
    PropertyImplBase(std::string_view name, unsigned attributes, std::string_view description = {})
        : OrdoPropInfo(name), description_(description), attributes_(attributes) {}
    ~PropertyImplBase() override;

    unsigned getAttributes() const noexcept override { return attributes_; }
    std::string_view getDescription() const noexcept override { return description_; }

    /// Destroys an array that the property has made.
    virtual void release(zxArray* array) const noexcept { zxDestroyArray(array); }

private:
    std::string_view description_;  // lives as long as the process
    std::string second_;            // always empty; required by the interface
    unsigned attributes_;
};

class ORDO_API PropertyGetter {
public:
    virtual ~PropertyGetter();
    virtual std::string typeWord() const = 0;
    virtual OrdoValue get(void* self) const = 0;
};

class ORDO_API PropertySetter {
public:
    virtual ~PropertySetter();
    virtual void set(void* self, OrdoValue const& value) const = 0;
};

/// A property that reads through one adapter and, unless it is read-only, writes through another.
class ORDO_API PropertyImpl final : public PropertyImplBase {
public:
    /// `description` must live as long as the process.
    PropertyImpl(std::string_view name, unsigned attributes, std::unique_ptr<PropertyGetter> getter,
                 std::unique_ptr<PropertySetter> setter = nullptr, std::string_view description = {});
    ~PropertyImpl() override;

    std::string getTypeWord() const override { return getter_->typeWord(); }
    bool isReadOnly() const noexcept override { return setter_ == nullptr; }
    OrdoValue get(void* self) const override {
        validateSelfPointer(self);
        return getter_->get(self);
    }
    void set(void* self, OrdoValue const& value) const override;

private:
    std::unique_ptr<PropertyGetter> getter_;
    std::unique_ptr<PropertySetter> setter_;
};

/// Reads a `V` of an `X` by the plain function `F`, which gives an `R`: a `V` or a reference to one. All properties of
/// a type share this class; they differ in the function object.
template <class V, class X, class F = V (*)(X*), class R = std::invoke_result_t<F, X*>>
class AdaptedClassGetter final : public PropertyGetter {
public:
    explicit AdaptedClassGetter(F function) noexcept : function_(function) {}

    std::string typeWord() const override { return ValueType<V>::typeWord(); }
    OrdoValue get(void* self) const override {
        if constexpr (std::is_reference_v<R>) {
            return ValueType<V>::toScript(function_(static_cast<X*>(self)));
        } else {
            // The value is destroyed on return, so the answer can't borrow from it.
            R const value = function_(static_cast<X*>(self));
            OrdoValue result = ValueType<V>::toScript(value);
            result.own();
            return result;
        }
    }

private:
    F function_;
    [[maybe_unused]] std::uintptr_t spare_ = 0;
};

/// Converts the script's value and writes it as a `V` by the plain function `F`.
template <class V, class X, class F = void (*)(X*, V)>
class AdaptedClassSetter final : public PropertySetter {
public:
    explicit AdaptedClassSetter(F function) noexcept : function_(function) {}

    void set(void* self, OrdoValue const& value) const override {
        function_(static_cast<X*>(self), ValueType<V>::fromScript(value));
    }

private:
    F function_;
};

}  // namespace ordo::factory::impl
