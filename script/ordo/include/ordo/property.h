// Properties of a class.
#pragma once

#include <ordo/export.h>
#include <ordo/interned.h>
#include <ordo/value.h>

#include <string>
#include <string_view>

namespace ordo {

class OrdoClass;

/// A property as a class defines it. `self` is the native object behind a script object of the class or a derived one;
/// the caller has checked it.
class ORDO_API OrdoPropInfo {
public:
    OrdoPropInfo(OrdoPropInfo const&) = delete;
    OrdoPropInfo& operator=(OrdoPropInfo const&) = delete;
    virtual ~OrdoPropInfo();

    InternedName name() const noexcept { return name_; }
    /// The class that defines it; null until it is added to one.
    OrdoClass* definingClass() const noexcept { return definingClass_; }

    /// The word by which the property names its type, such as "int32 scalar".
    virtual std::string getTypeWord() const = 0;
    virtual unsigned getAttributes() const noexcept { return 0; }
    /// One line for help texts.
    virtual std::string_view getDescription() const noexcept { return {}; }
    virtual bool isReadOnly() const noexcept { return false; }

    /// Reads the property. Texts in the answer may be borrowed from `self`: use them before anything else is done with
    /// it.
    virtual OrdoValue get(void* self) const = 0;
    /// Converts the value and writes it. A refused value throws and changes nothing.
    virtual void set(void* self, OrdoValue const& value) const = 0;

protected:
    explicit OrdoPropInfo(std::string_view name) : name_(internName(name)) {}

private:
    friend OrdoClass;

    InternedName name_;
    OrdoClass* definingClass_ = nullptr;
};

}  // namespace ordo
