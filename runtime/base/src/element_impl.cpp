#include <quay/zero/element_impl.h>

#include <quay/zero/random_ids.h>

namespace quay::zero {

ElementImpl::InvalidateCallback ElementImpl::m_callback = nullptr;

ElementImpl::~ElementImpl() {
    // Only other threads need the sequentially consistent order.
    auto const order = __libc_single_threaded ? std::memory_order_relaxed : std::memory_order_seq_cst;
    count_.store(REFCOUNT_DELETING, order);
}

void ElementImpl::removeRef() const noexcept {
    if (changeCount(static_cast<std::uint32_t>(-1)) == 1) delete this;
}

boost::uuids::uuid ElementImpl::generateNewUuid() {
    thread_local RandomIds ids;
    return ids.draw();
}

}  // namespace quay::zero
