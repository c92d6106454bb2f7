#include <quay/zero/query/comparison.h>

#include <string>

namespace quay::zero::query {

template struct Comparisons<bool, bool>;
template struct Comparisons<int, long long>;
template struct Comparisons<int, unsigned long long>;
template struct Comparisons<unsigned int, long long>;
template struct Comparisons<unsigned int, unsigned long long>;
template struct Comparisons<unsigned long, long long>;
template struct Comparisons<unsigned long, unsigned long long>;
template struct Comparisons<double, double>;
template struct Comparisons<std::u16string, std::u16string>;
template struct Comparisons<std::string, std::string>;

template struct Presence<bool>;
template struct Presence<int>;
template struct Presence<unsigned int>;
template struct Presence<unsigned long>;
template struct Presence<double>;
template struct Presence<std::u16string>;
template struct Presence<std::string>;

}  // namespace quay::zero::query
