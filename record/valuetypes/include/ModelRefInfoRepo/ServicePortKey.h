// The key of a service port: its block and port.
#pragma once

#include <quay/zero/structured_value.h>

#include <ModelRefInfoRepo/export.h>

#include <string>
#include <tuple>

namespace ModelRefInfoRepo {

/// A plain value: copied, compared and hashed, without identity or model. Setters only assign.
class VW_MODELREF_INFO_API ServicePortKey {
public:
    int getPortIdx() const noexcept { return portIdx_; }
    void setPortIdx(int value) noexcept { portIdx_ = value; }
    std::u16string const& getPortType() const noexcept { return portType_; }
    void setPortType(std::u16string const& value) { portType_ = value; }
    std::u16string const& getBlockPath() const noexcept { return blockPath_; }
    void setBlockPath(std::u16string const& value) { blockPath_ = value; }
    int getStartElemIdx() const noexcept { return startElemIdx_; }
    void setStartElemIdx(int value) noexcept { startElemIdx_ = value; }

    /// Compares by the fields in order and gives -1, 0 or 1.
    int compareWith(ServicePortKey const& other) const;
    bool operator==(ServicePortKey const& other) const;
    bool operator<(ServicePortKey const& other) const { return compareWith(other) < 0; }

    static constexpr auto fields() {
        return std::make_tuple(&ServicePortKey::portIdx_, &ServicePortKey::portType_, &ServicePortKey::blockPath_,
                               &ServicePortKey::startElemIdx_);
    }

private:
    int portIdx_ = 0;
    std::u16string portType_;
    std::u16string blockPath_;
    int startElemIdx_ = 0;
};

class VW_MODELREF_INFO_API ServicePortKeyDatatypeSerializer final
    : public quay::zero::FieldwiseSerializer<ServicePortKey> {};

}  // namespace ModelRefInfoRepo

template <>
struct VW_MODELREF_INFO_API std::hash<ModelRefInfoRepo::ServicePortKey> {
    std::size_t operator()(ModelRefInfoRepo::ServicePortKey const& v) const;
};

template <>
struct VW_MODELREF_INFO_API quay::zero::TypeOf<ModelRefInfoRepo::ServicePortKey> {
    static meta::Type const& type();
};
