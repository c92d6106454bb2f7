#include <ordo/class_identity.h>

#include <algorithm>

namespace ordo {

bool ClassIdentity::isA(InternedName name) const noexcept {
    return name_ == name || std::find(ancestors_.begin(), ancestors_.end(), name) != ancestors_.end();
}

}  // namespace ordo
