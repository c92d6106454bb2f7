// Properties that scripts read and write by reflection and a marshaler.
#pragma once

#include <ordo/factory/property.h>

#include <quay/zero/meta/types.h>

#include <memory>
#include <string>
#include <string_view>

namespace quay::zero::mi {

class BoundProperty;

/// A property of elements that has no adapter of its own, such as one whose value is an array. A write is a transaction
/// of its own.
class ORDO_API PrimitiveProperty final : public ordo::factory::impl::PropertyImplBase {
public:
    /// `description` must live as long as the process.
    explicit PrimitiveProperty(meta::Property const& property, std::string_view description = {});
    ~PrimitiveProperty() override;

    std::string getTypeWord() const override;
    ordo::OrdoValue get(void* self) const override;
    void set(void* self, ordo::OrdoValue const& value) const override;
    void release(zxArray* array) const noexcept override;

private:
    std::unique_ptr<BoundProperty> property_;
};

}  // namespace quay::zero::mi
