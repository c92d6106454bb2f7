// A property of the meta-model as an adapter holds it.
#pragma once

#include <quay/zero/meta/types.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

#include <string>

#include "property_failures.h"

namespace quay::zero::mi {

/// A property that stays usable when its schema is declared again because the library was unloaded and loaded: it then
/// refers to the new declaration's property of the same class and name.
class BoundProperty {
public:
    explicit BoundProperty(meta::Property const& property);

    meta::Property const& get() const {
        if (!property_) [[unlikely]]
            rebind();
        return property_;
    }
    PropertyDescriptor const& descriptor() const { return *get()->descriptor(); }

    Value read(ModelElement::Impl const& element) const {
        return descriptor().get(element, property_, ReflectionPrivateTag::PUBLIC_ACCESS);
    }
    void write(ModelElement::Impl& element, Value const& value) const {
        forProperty(get(), [&] { descriptor().set(element, property_, value, ReflectionPrivateTag::PUBLIC_ACCESS); });
    }

private:
    void rebind() const;

    mutable meta::Property property_;
    std::string owner_;  // script name
    std::u16string name_;
};

/// Finds a class by its script name, once, and keeps it.
class BoundClass {
public:
    explicit BoundClass(std::string scriptName) : scriptName_(std::move(scriptName)) {}

    meta::Class const& get() const {
        if (!class_) [[unlikely]]
            rebind();
        return class_;
    }
    std::string const& scriptName() const noexcept { return scriptName_; }

private:
    void rebind() const;

    mutable meta::Class class_;
    std::string scriptName_;
};

/// The type with this script name. Throws NoSuchType if there is none.
meta::Type typeOfScriptName(std::string_view scriptName);
/// A type's script name; empty if it has none.
std::string scriptNameOfType(meta::Type const& type);

}  // namespace quay::zero::mi
