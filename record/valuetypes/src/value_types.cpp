#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <ModelRefInfoRepo/RateInfo.h>
#include <ModelRefInfoRepo/ServicePortKey.h>

namespace ModelRefInfoRepo {

int RateInfo::compareWith(RateInfo const& other) const { return quay::zero::compareFields(*this, other); }
bool RateInfo::operator==(RateInfo const& other) const { return quay::zero::equalFields(*this, other); }

int ServicePortKey::compareWith(ServicePortKey const& other) const { return quay::zero::compareFields(*this, other); }
bool ServicePortKey::operator==(ServicePortKey const& other) const { return quay::zero::equalFields(*this, other); }

}  // namespace ModelRefInfoRepo

std::size_t std::hash<ModelRefInfoRepo::RateInfo>::operator()(ModelRefInfoRepo::RateInfo const& v) const {
    return quay::zero::hashFields(v);
}
std::size_t std::hash<ModelRefInfoRepo::ServicePortKey>::operator()(ModelRefInfoRepo::ServicePortKey const& v) const {
    return quay::zero::hashFields(v);
}

namespace quay::zero {

meta::Type const& TypeOf<ModelRefInfoRepo::RateInfo>::type() {
    return MetaPackageVw_modelref_info::getInstance()->RateInfo;
}

meta::Type const& TypeOf<ModelRefInfoRepo::ServicePortKey>::type() {
    return MetaPackageVw_modelref_info::getInstance()->ServicePortKey;
}

}  // namespace quay::zero
