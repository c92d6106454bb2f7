#include <ordo/class_info.h>

namespace ordo {

OrdoClassInfo::~OrdoClassInfo() = default;
std::string OrdoClassInfo::describeInstance(void const*) const { return {}; }

}  // namespace ordo
