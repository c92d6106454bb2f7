// The native objects of a small library for tests: items that are counted and can be destroyed, with properties of all
// types and collections of all kinds.
#pragma once

#include <ordo/ordo.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace workshop {

enum class Color : std::int32_t { Red = 1, Green = 2, Blue = 5 };

struct Extent {
    double width = 1;
    std::int32_t height = 2;
    bool operator==(Extent const&) const = default;
    bool operator<(Extent const& other) const {
        return width != other.width ? width < other.width : height < other.height;
    }
};

class Item;

/// The number of items that exist, dead ones included, and the result of the last transaction.
struct Record {
    static Record& instance();

    int items = 0;
    std::string lastTransaction;
};

class ItemRef {
public:
    ItemRef() = default;
    explicit ItemRef(Item* item);
    ItemRef(ItemRef const& other) : ItemRef(other.item_) {}
    ItemRef(ItemRef&& other) noexcept : item_(std::exchange(other.item_, nullptr)) {}
    ItemRef& operator=(ItemRef other) noexcept {
        std::swap(item_, other.item_);
        return *this;
    }
    ~ItemRef();

    Item* get() const { return item_; }
    Item* operator->() const { return item_; }

private:
    Item* item_ = nullptr;
};

/// A collection of an item, for which scripts have an object of its own.
struct Members {
    explicit Members(Item* itsOwner) : owner(itsOwner) {}

    Item* owner;
    std::vector<ItemRef> items;
};

struct Tags {
    explicit Tags(Item* itsOwner) : owner(itsOwner) {}

    Item* owner;
    std::set<std::u16string> texts;
};

class Item {
public:
    explicit Item(bool isTool = false) : isTool_(isTool) { ++Record::instance().items; }
    Item(Item const&) = delete;
    Item& operator=(Item const&) = delete;
    virtual ~Item() { --Record::instance().items; }

    void addReference() { ++references; }
    void dropReference();
    /// Destroys the item and all its parts; the memory is freed when the last reference is released.
    void destroy();
    bool isTool() const { return isTool_; }

    int references = 0;
    bool alive = true;

    bool ready = false;
    std::int32_t count = 0;
    std::uint32_t size = 0;
    std::uint64_t serial = 0;
    double weight = 0;
    std::u16string name;
    std::string label;
    boost::optional<bool> limit;
    boost::optional<std::int32_t> rank;
    boost::optional<std::uint64_t> stamp;
    Color color = Color::Red;
    Extent extent;
    zx::Array notes;
    ItemRef child;
    Members parts{this};   // a sequence
    Members bag{this};     // a set
    Members index{this};   // a map by name
    Members groups{this};  // a multimap by count
    Tags tags{this};       // a set of texts

private:
    bool isTool_;
};

/// The script object of an item, or of one of its collections, which keeps the item.
ordo::OrdoValue announceItem(Item* item);
ordo::OrdoValue announceMembers(Members& members, char const* className);
ordo::OrdoValue announceTags(Tags& tags);

ItemRef itemOf(ordo::OrdoValue const& value);

}  // namespace workshop
