#include <ordo/enumeration.h>

namespace ordo {

OrdoEnumInfo::~OrdoEnumInfo() = default;

}  // namespace ordo
