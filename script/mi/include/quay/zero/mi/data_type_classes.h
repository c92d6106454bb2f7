// The script classes of data types.
#pragma once

#include <ordo/factory/class_info.h>

#include <quay/zero/value.h>

#include <string_view>

namespace quay::zero::mi {

/// The script class of a data type of a schema, found by its script name. Behind each script object is a `Value` of its
/// own: changing a field changes that copy alone. The class has the fields as properties, a constructor without inputs,
/// and eq, ne and lt.
class ORDO_API DataTypeWrapper final : public ordo::factory::NonHandleClassInfo<Value, Value> {
public:
    using NonHandleClassInfo::NonHandleClassInfo;

    void defineClass(ordo::OrdoClass& ordoClass) override;
    /// The type's default value.
    void* makeInstance() override;
    std::string_view getDescription() const noexcept override;
};

}  // namespace quay::zero::mi
