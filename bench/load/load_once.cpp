// load_once LIBRARY TIMES
// Loads a library and closes it again, that many times, and prints how many nanoseconds the last load took.
// Linked to nothing, so that the first load is one into a process that has none of what the library needs.
#include <dlfcn.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

int main(int count, char** arguments) {
    if (count != 3) return 2;
    std::chrono::nanoseconds took{};
    for (int times = std::atoi(arguments[2]); times > 0; --times) {
        auto const start = std::chrono::steady_clock::now();
        void* const library = dlopen(arguments[1], RTLD_NOW);
        took = std::chrono::steady_clock::now() - start;
        if (library == nullptr || dlclose(library) != 0) return 1;
    }
    std::printf("%lld\n", static_cast<long long>(took.count()));
}
