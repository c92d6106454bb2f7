// The floor: the baseline that measurements are compared with, namely what the cheapest hand-written code costs.
//
// Plain structs with a 128-bit id in a hash index, whose out-of-line setters compare, log the old value and store, with
// nested transactions and a ring of logs for undo. No reflection, no schema, no handles, no checks: the measured code
// can hardly be faster than this, and is slow if it is much slower.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace hand {

struct Id {
    std::uint64_t high;
    std::uint64_t low;
    bool operator==(Id const&) const = default;
};

struct IdHash {
    std::size_t operator()(Id const& id) const noexcept { return id.high ^ (id.low * 0x9e3779b97f4a7c15); }
};

/// How an object of some class is removed from its owning list, put back, and destroyed.
struct LifeOperations {
    void (*leave)(void* object);
    void (*comeBack)(void* object, std::size_t position);
    void (*end)(void* object);
};

/// One change in the log.
struct Entry {
    enum class Kind : std::uint32_t { Word, HalfWord, Text, Made, Gone };
    Entry(Kind k, void* field, std::uint64_t bits) noexcept : kind(k), position(0), where(field), old(bits) {}
    Entry(Kind k, std::size_t at, void* object, LifeOperations const& life) noexcept
        : kind(k), position(static_cast<std::uint32_t>(at)), where(object), operations(&life) {}

    Kind kind;
    std::uint32_t position;  // of a removed object, in its owning list
    void* where;             // the field or the object
    union {
        std::uint64_t old;                 // the old bits of a field
        LifeOperations const* operations;  // of an object
    };
};

/// Old values, in the order in which they were written. Texts are kept separately.
struct Log {
    std::vector<Entry> entries;
    std::vector<std::u16string> texts;
    bool hasGone = false;

    void undo(std::size_t from);
    void forget();
};

/// The floor's model: a mark per nested transaction, and a ring of committed logs.
class Store {
public:
    Store() = default;
    Store(Store const&) = delete;
    Store& operator=(Store const&) = delete;
    ~Store();

    void begin() { marks_.push_back(log_.entries.size()); }
    void commit();
    void rollback();
    bool open() const noexcept { return !marks_.empty(); }
    void keepHistory(std::size_t limit) { ring_.resize(limit); }
    bool undo();

    Log& log() noexcept { return log_; }
    Id drawId() noexcept {
        auto const next = [this] {
            seed_ ^= seed_ << 13;
            seed_ ^= seed_ >> 7;
            seed_ ^= seed_ << 17;
            return seed_;
        };
        std::uint64_t const high = next();
        return {high, next()};
    }
    std::unordered_map<Id, void*, IdHash> index;

private:
    Log log_;
    std::vector<std::size_t> marks_;
    std::vector<Log> ring_;
    std::size_t next_ = 0;
    std::size_t kept_ = 0;
    std::uint64_t seed_ = 0x123456789abcdef;
};

/// Base of the structs: no virtual functions.
struct Object {
    explicit Object(Store& s) : store(&s), id(s.drawId()) {}
    Store* store;
    Id id;
};

template <class T>
using List = std::vector<std::unique_ptr<T>>;

template <class T>
LifeOperations const lifeOf{
    [](void* object) {
        auto& o = *static_cast<T*>(object);
        o.store->index.erase(o.id);
        o.home->back().release();
        o.home->pop_back();
    },
    [](void* object, std::size_t position) {
        auto& o = *static_cast<T*>(object);
        o.store->index.emplace(o.id, object);
        o.home->insert(o.home->begin() + static_cast<std::ptrdiff_t>(position), std::unique_ptr<T>(&o));
    },
    [](void* object) { delete static_cast<T*>(object); },
};

/// Makes a T at the end of its home, the list that owns it.
template <class T>
T& make(Store& store, List<T>& home) {
    T& made = *home.emplace_back(std::make_unique<T>(store));
    made.home = &home;
    store.index.emplace(made.id, &made);
    if (store.open()) store.log().entries.emplace_back(Entry::Kind::Made, std::size_t{0}, &made, lifeOf<T>);
    return made;
}

template <class T>
void destroy(T& object) {
    Store& store = *object.store;
    List<T>& home = *object.home;
    std::size_t position = home.size() - 1;
    while (home[position].get() != &object) --position;
    store.index.erase(object.id);
    std::unique_ptr<T> gone = std::move(home[position]);
    home.erase(home.begin() + static_cast<std::ptrdiff_t>(position));
    if (!store.open()) return;
    store.log().entries.emplace_back(Entry::Kind::Gone, position, gone.release(), lifeOf<T>);
    store.log().hasGone = true;
}

/// Two 64-bit values, as a small element has.
struct Small : Object {
    using Object::Object;
    void setFirst(double value);
    void setSecond(double value);

    double first = 0;
    double second = 0;
    List<Small>* home = nullptr;
};

struct Note : Object {
    using Object::Object;
    void setText(std::u16string const& value);

    int key = 0;
    std::u16string text;
    List<Note>* home = nullptr;
};

}  // namespace hand
