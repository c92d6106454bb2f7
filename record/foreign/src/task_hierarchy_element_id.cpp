#include <vwexec/mm/sto/MetaPackageVwexec_mm_sto.h>
#include <vwexec/mm/sto/TaskHierarchyElementId.h>

quay::zero::meta::Type const& quay::zero::TypeOf<vwexec::mm::sto::TaskHierarchyElementId>::type() {
    return vwexec::mm::MetaPackageVwexec_mm_sto::getInstance()->TaskHierarchyElementId;
}
