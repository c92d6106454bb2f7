#include <quay/zero/position.h>

#include <stdexcept>

namespace quay::zero {

void reportPosition() { throw std::out_of_range("position beyond the end of the sequence"); }

}  // namespace quay::zero
