// One sample rate of a referenced model.
#pragma once

#include <quay/zero/structured_value.h>

#include <ModelRefInfoRepo/export.h>

#include <string>
#include <tuple>

namespace ModelRefInfoRepo {

/// A plain value: copied, compared and hashed, without identity or model. Its fields are independent of each other;
/// isEmpty too is stored. Setters only assign. An element that records a rate of its own is a RateSpec.
class VW_MODELREF_INFO_API RateInfo {
public:
    /// Seconds between two hits; -1 at the start.
    double getPeriod() const noexcept { return period_; }
    void setPeriod(double value) noexcept { period_ = value; }
    /// Seconds from the start of the period to the hit.
    double getOffset() const noexcept { return offset_; }
    void setOffset(double value) noexcept { offset_ = value; }
    std::u16string const& getNonFcnCallPartitionName() const noexcept { return nonFcnCallPartitionName_; }
    void setNonFcnCallPartitionName(std::u16string const& value) { nonFcnCallPartitionName_ = value; }
    bool getClockedByExternalRuntimeEvent() const noexcept { return clockedByExternalRuntimeEvent_; }
    void setClockedByExternalRuntimeEvent(bool value) noexcept { clockedByExternalRuntimeEvent_ = value; }
    bool getTaskedExplicitly() const noexcept { return taskedExplicitly_; }
    void setTaskedExplicitly(bool value) noexcept { taskedExplicitly_ = value; }
    /// Initially -1, as is the priority.
    int getRateIdx() const noexcept { return rateIdx_; }
    void setRateIdx(int value) noexcept { rateIdx_ = value; }
    int getPriority() const noexcept { return priority_; }
    void setPriority(int value) noexcept { priority_ = value; }
    bool getCompiled() const noexcept { return compiled_; }
    void setCompiled(bool value) noexcept { compiled_ = value; }
    bool getNeedAbsoluteTime() const noexcept { return needAbsoluteTime_; }
    void setNeedAbsoluteTime(bool value) noexcept { needAbsoluteTime_ = value; }
    bool getIsEmpty() const noexcept { return isEmpty_; }
    void setIsEmpty(bool value) noexcept { isEmpty_ = value; }

    /// Compares by the fields in order and gives -1, 0 or 1. A NaN counts as equal to anything here, but not in ==.
    int compareWith(RateInfo const& other) const;
    bool operator==(RateInfo const& other) const;
    bool operator<(RateInfo const& other) const { return compareWith(other) < 0; }

    static constexpr auto fields() {
        return std::make_tuple(&RateInfo::period_, &RateInfo::offset_, &RateInfo::nonFcnCallPartitionName_,
                               &RateInfo::clockedByExternalRuntimeEvent_, &RateInfo::taskedExplicitly_,
                               &RateInfo::rateIdx_, &RateInfo::priority_, &RateInfo::compiled_,
                               &RateInfo::needAbsoluteTime_, &RateInfo::isEmpty_);
    }

private:
    double period_ = -1.0;
    double offset_ = 0.0;
    std::u16string nonFcnCallPartitionName_;
    int rateIdx_ = -1;
    int priority_ = -1;
    bool clockedByExternalRuntimeEvent_ = false;
    bool taskedExplicitly_ = false;
    bool compiled_ = false;
    bool needAbsoluteTime_ = false;
    bool isEmpty_ = false;
};

class VW_MODELREF_INFO_API RateInfoDatatypeSerializer final : public quay::zero::FieldwiseSerializer<RateInfo> {};

}  // namespace ModelRefInfoRepo

template <>
struct VW_MODELREF_INFO_API std::hash<ModelRefInfoRepo::RateInfo> {
    std::size_t operator()(ModelRefInfoRepo::RateInfo const& v) const;
};

template <>
struct VW_MODELREF_INFO_API quay::zero::TypeOf<ModelRefInfoRepo::RateInfo> {
    static meta::Type const& type();
};
