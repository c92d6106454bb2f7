#include <ordo/interned.h>

#include <mutex>
#include <unordered_set>

namespace ordo {

InternedName internName(std::string_view text) {
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
        std::size_t operator()(InternedName::Entry const& entry) const { return (*this)(entry.text); }
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(std::string_view left, InternedName::Entry const& right) const { return left == right.text; }
        bool operator()(InternedName::Entry const& left, std::string_view right) const { return left.text == right; }
        bool operator()(InternedName::Entry const& left, InternedName::Entry const& right) const {
            return left.text == right.text;
        }
    };
    struct Names {
        std::mutex mutex;
        std::unordered_set<InternedName::Entry, Hash, Equal> entries;  // addresses of entries are stable
    };

    if (text.empty()) {
        return InternedName();
    }
    // Never destroyed: names are used while the process exits.
    static auto* const names = new Names;
    std::scoped_lock const lock(names->mutex);
    auto found = names->entries.find(text);
    if (found == names->entries.end()) {
        found = names->entries.emplace(text).first;
    }
    return InternedName(&*found);
}

}  // namespace ordo
