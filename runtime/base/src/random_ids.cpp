#include <quay/zero/random_ids.h>

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <exception>
#include <random>

namespace quay::zero {

namespace {

std::uint64_t readEntropy() noexcept {
    try {
        std::random_device device;
        return (std::uint64_t{device()} << 32) ^ device();
    } catch (std::exception const&) {
        // Without a source of randomness, the time makes ids differ from run to run.
        return static_cast<std::uint64_t>(std::chrono::high_resolution_clock::now().time_since_epoch().count());
    }
}

std::uint64_t mix(std::uint64_t z) noexcept {
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return z ^ (z >> 31);
}

}  // namespace

constinit std::atomic<std::uint32_t> RandomIds::forks{0};

void RandomIds::seed() noexcept {
    static int const isWatched =
        pthread_atfork(nullptr, nullptr, [] { forks.fetch_add(1, std::memory_order_relaxed); });
    static_cast<void>(isWatched);
    forks_ = forks.load(std::memory_order_relaxed);
    // The entropy is read once, and in a forked process once for each generator. Each generator starts at its own
    // position of one long sequence (splitmix64).
    static std::uint64_t const ofProcess[2] = {readEntropy(), readEntropy()};
    static std::atomic<std::uint64_t> generators{0};
    std::uint64_t const entropy[2] = {forks_ == 0 ? ofProcess[0] : readEntropy(),
                                      forks_ == 0 ? ofProcess[1] : readEntropy()};
    std::uint64_t seed = entropy[0] + generators.fetch_add(1, std::memory_order_relaxed) * 0xd1342543de82ef95;
    for (std::uint64_t& word : state_) word = mix(seed += 0x9e3779b97f4a7c15) ^ entropy[1];
    state_[0] |= 1;  // the state may not be all zero
}

}  // namespace quay::zero
