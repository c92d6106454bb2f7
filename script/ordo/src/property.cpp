#include <ordo/property.h>

namespace ordo {

OrdoPropInfo::~OrdoPropInfo() = default;

}  // namespace ordo
