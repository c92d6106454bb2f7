#include <ordo/interned.h>

#include <mutex>
#include <unordered_set>

namespace ordo {
namespace {

struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
};

struct Names {
    std::mutex mutex;
    std::unordered_set<std::string, Hash, std::equal_to<>> texts;  // whose addresses stay
};

}  // namespace

InternedName internName(std::string_view text) {
    if (text.empty()) {
        return InternedName();
    }
    // Never destroyed: names are used while the process ends.
    static auto* const names = new Names;
    std::scoped_lock const lock(names->mutex);
    auto found = names->texts.find(text);
    if (found == names->texts.end()) {
        found = names->texts.emplace(text).first;
    }
    return InternedName(&*found);
}

}  // namespace ordo
