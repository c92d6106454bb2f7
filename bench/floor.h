// The floor: what the cheapest hand-written code for the same work costs.
//
// Plain structs with a 128-bit id in a hash index, whose out-of-line setters compare, log the old value and store, with
// nesting transactions and an undo ring. No reflection, no schema, no handles, no rules: what is measured beside it can
// hardly be quicker, and is slow if it is much slower.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
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

/// Old values, in the order in which they were written; a mark per nested transaction; a ring of committed logs.
class Store {
public:
    struct Entry {
        void* field;
        std::uint64_t oldBits;
        void (*restore)(void* field, std::uint64_t bits);
        std::string* oldText;
    };

    void begin() { marks_.push_back(log_.size()); }
    void commit();
    void rollback();
    bool open() const noexcept { return !marks_.empty(); }
    void keepHistory(std::size_t limit) { ring_.resize(limit); }
    bool undo();

    void log(Entry const& entry) { log_.push_back(entry); }
    Id drawId() noexcept;
    std::unordered_map<Id, void*, IdHash> index;

private:
    std::vector<Entry> log_;
    std::vector<std::size_t> marks_;
    std::vector<std::vector<Entry>> ring_;
    std::size_t next_ = 0;
    std::size_t kept_ = 0;
    std::uint64_t seed_ = 0x123456789abcdef;
};

/// Two 64-bit values, as a small element has.
class Small {
public:
    Small(Store& store, Id id) : store_(store), id_(id) {}
    Id const& id() const noexcept { return id_; }
    double first() const { return first_; }
    void setFirst(double value);
    void setSecond(double value);

private:
    Store& store_;
    Id id_;
    double first_ = 0;
    double second_ = 0;
};

}  // namespace hand
