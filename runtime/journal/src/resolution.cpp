#include <quay/zero/resolution.h>

namespace quay::zero {

Resolution::Resolution(Journal& journal) {
    if (journal.inTransaction() && !journal.inOperation()) savepoint_.emplace(journal);
    constexpr std::size_t most = 4;  // removing the proxy, adding the element, and two containers
    journal.reserveResolution(most);
}

void Resolution::commit() {
    if (savepoint_) savepoint_->commit();
}

}  // namespace quay::zero
