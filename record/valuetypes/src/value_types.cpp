#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <ModelRefInfoRepo/RateInfo.h>
#include <ModelRefInfoRepo/ServicePortKey.h>

namespace quay::zero {

meta::Type const& TypeOf<ModelRefInfoRepo::RateInfo>::type() {
    return MetaPackageVw_modelref_info::getInstance()->RateInfo;
}

meta::Type const& TypeOf<ModelRefInfoRepo::ServicePortKey>::type() {
    return MetaPackageVw_modelref_info::getInstance()->ServicePortKey;
}

}  // namespace quay::zero
