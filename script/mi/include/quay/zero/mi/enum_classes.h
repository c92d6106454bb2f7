// The script classes of enumerations, based on int32.
#pragma once

#include <ordo/enumeration.h>
#include <ordo/factory/class_info.h>
#include <ordo/method.h>
#include <ordo/type_repository.h>

#include <quay/zero/meta/types.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quay::zero::mi {

/// The script class of an enumeration of a schema, found by its script name. Members are added in this order: the
/// superclass, a constructor, the literals of the schema, and the methods getValue, getLiteral and getPublicIdentifier.
class ORDO_API QUAY0EnumInfo final : public ordo::factory::OrdoFactoryClassInfo {
public:
    using OrdoFactoryClassInfo::OrdoFactoryClassInfo;

    bool isHandleClass() const noexcept override { return false; }
    bool isEnumeration() const noexcept override { return true; }
    bool isConstructedOnLoad() const noexcept override { return false; }
    void defineClass(ordo::OrdoClass& ordoClass) override;
    /// Enumeration values have no native objects.
    void freeInstance(void* /*native*/) noexcept override {}
    std::string_view getDescription() const noexcept override;

private:
    std::string underlyingWord_;  // empty until it is first asked for
};

/// One literal. The value object is made when it is first asked for.
class ORDO_API QUAY0EnumValueInfo final : public ordo::OrdoEnumInfo {
public:
    QUAY0EnumValueInfo(std::string_view name, ordo::OrdoClass& enumeration, std::int32_t value,
                       std::string_view description)
        : name_(ordo::internName(name)), class_(&enumeration), value_(value), description_(description) {}

    ordo::InternedName getName() const noexcept override { return name_; }
    ordo::OrdoClass& getClass() const noexcept override { return *class_; }
    std::int32_t getNumericValue() const noexcept override { return value_; }
    zxArray const* getValue() override;
    std::string_view getDescription() const noexcept override { return description_; }

private:
    ordo::InternedName name_;
    ordo::OrdoClass* class_;
    std::int32_t value_;
    std::string_view description_;
    zx::Array object_;
};

/// The constructor: takes one value of the enumeration, a literal's name, or a number that a literal has.
class ORDO_API Ctor final : public ordo::OrdoMethodInfo {
public:
    explicit Ctor(ordo::OrdoClass& enumeration);

    void call(ordo::MethodCall& call) const override;
    std::string_view getDescription() const noexcept override;

private:
    ordo::OrdoClass* class_;
};

/// Converts a value of any type (a literal's name, a number) to a value of an enumeration, so that a script can assign
/// a literal's name.
class ORDO_API FromAnyAsStringTypeConverter final : public ordo::OrdoTypeConverter {
public:
    FromAnyAsStringTypeConverter(ordo::OrdoClass* enumeration, meta::Enum const& type)
        : class_(enumeration), type_(type) {}

    zx::Array convert(zxArray const* value) override;

private:
    ordo::OrdoClass* class_;
    meta::Enum type_;
};

}  // namespace quay::zero::mi
