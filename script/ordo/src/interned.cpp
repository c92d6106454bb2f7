#include <ordo/interned.h>

#include <mutex>
#include <unordered_set>

namespace ordo {

struct InternedName::Table {
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
        std::size_t operator()(Entry const& entry) const { return (*this)(entry.text); }
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(std::string_view left, Entry const& right) const { return left == right.text; }
        bool operator()(Entry const& left, std::string_view right) const { return left.text == right; }
        bool operator()(Entry const& left, Entry const& right) const { return left.text == right.text; }
    };

    /// Never destroyed: names are used while the process exits.
    static Table& instance() {
        static auto* const table = new Table;
        return *table;
    }

    std::mutex mutex;
    std::unordered_set<Entry, Hash, Equal> entries;  // addresses of entries are stable
};

InternedName internName(std::string_view text) {
    if (text.empty()) {
        return InternedName();
    }
    auto& table = InternedName::Table::instance();
    std::scoped_lock const lock(table.mutex);
    auto found = table.entries.find(text);
    if (found == table.entries.end()) {
        found = table.entries.emplace(text).first;
    }
    return InternedName(&*found);
}

LookupName::LookupName(std::string_view text) {
    if (text.empty()) {
        return;
    }
    auto& table = InternedName::Table::instance();
    std::scoped_lock const lock(table.mutex);
    auto const found = table.entries.find(text);
    name_ = InternedName(found != table.entries.end() ? &*found : &own_.emplace(text));
}

}  // namespace ordo
