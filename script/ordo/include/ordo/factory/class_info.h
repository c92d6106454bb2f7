// Class descriptions for native classes.
#pragma once

#include <ordo/class_info.h>
#include <ordo/export.h>
#include <ordo/factory/binding_registry.h>
#include <ordo/interned.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace ordo::factory {

/// A description that holds only its two names until it is asked to define the class.
class ORDO_API OrdoFactoryClassInfo : public OrdoClassInfo {
public:
    OrdoFactoryClassInfo(std::string shortName, std::string fullName)
        : shortName_(std::move(shortName)), fullName_(std::move(fullName)), internedName_(internName(fullName_)) {}
    ~OrdoFactoryClassInfo() override;

    std::string_view getName() const noexcept override { return shortName_; }
    std::string_view getFullName() const noexcept override { return fullName_; }
    InternedName internedName() const noexcept { return internedName_; }

private:
    std::string shortName_;
    std::string fullName_;
    InternedName internedName_;
};

/// A class of objects that have identity and whose references are counted by native code. `T` tells descriptions of
/// different native classes apart; `Destructible` says whether scripts may destroy objects directly.
template <class T, bool Destructible>
class HandleClassInfo : public OrdoFactoryClassInfo {
public:
    using OrdoFactoryClassInfo::OrdoFactoryClassInfo;

    bool isHandleClass() const noexcept override { return true; }
    void* makeInstance() override { return nullptr; }
    /// Removes the binding, and releases the reference that it owned.
    void freeInstance(void* native) noexcept override {
        if (basic::BindingRegistry::remove(native, internedName())) {
            dropReference(native);
        }
    }

protected:
    /// Releases one counted reference to the native object.
    virtual void dropReference(void* native) noexcept = 0;
};

/// A class of values: each script object has a native `T` of its own. `U` is what the value converts to, usually `T`
/// itself. Enumerations have no native objects and override both operations.
template <class T, class U>
class NonHandleClassInfo : public OrdoFactoryClassInfo {
public:
    using OrdoFactoryClassInfo::OrdoFactoryClassInfo;

    bool isHandleClass() const noexcept override { return false; }
    void* makeInstance() override { return std::make_unique<T>().release(); }
    void freeInstance(void* native) noexcept override { delete static_cast<T*>(native); }
};

}  // namespace ordo::factory
