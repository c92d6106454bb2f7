#include <quay/zero/query/constrainable.h>

namespace quay::zero::query {

HeldProperty::HeldProperty(meta::Property const& property) noexcept : property_(property) {}
HeldProperty::~HeldProperty() = default;

}  // namespace quay::zero::query
