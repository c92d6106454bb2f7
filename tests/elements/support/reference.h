// The reference model: does what a model must do, in a simple and slow way, with one list of items per property of any
// shape, and copies of the whole state wherever it may be needed again. Random tests compare the object model with it.
#pragma once

#include <quay/zero/meta/types.h>
#include <quay/zero/model.h>
#include <quay/zero/value.h>

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace records {

/// One value, child or entry. Values compare by number and text; `shown` is the text of the value, or of the key, in a
/// dump.
struct Item {
    double number = 0;
    std::u16string text;
    std::string shown;
    int child = -1;
    int serial = 0;  // of an array: identifies the write that set it
};
Item itemOf(quay::zero::Value const& value);
Item itemOf(int child);

/// A property that the random tests use.
struct Slot {
    enum class Shape { Single, Optional, Array, Child, Sequence, Set, Children, ChildSet, Map, Multimap };
    quay::zero::meta::Property property;
    std::string name;
    Shape shape;
    bool owns;
    int keySlot = -1;             // of maps: the slot of the child's key
    std::optional<Item> initial;  // of single values and arrays
    bool keyed() const { return shape == Shape::Map || shape == Shape::Multimap; }
};

/// A class, and its slots.
struct ElementKind {
    quay::zero::meta::Class type;
    std::string name;
    std::vector<int> slots;
};

/// The classes and properties of one random test.
class Plan {
public:
    using Make = quay::zero::ModelElement (*)(quay::zero::meta::Type const&, quay::zero::Model const&,
                                              boost::uuids::uuid const&);
    using Chosen = std::vector<std::pair<quay::zero::meta::Class, std::vector<quay::zero::meta::Property>>>;
    /// `rekeys`: whether an element's key may be written while the element is in a map.
    Plan(Chosen const& chosen, Make make, bool rekeys = true);

    int kind(std::string const& name) const;
    int slot(std::string const& name) const;
    bool rekeys() const { return rekeys_; }
    ElementKind const& kindAt(int k) const { return kinds_[static_cast<std::size_t>(k)]; }
    Slot const& slotAt(int s) const { return slots_[static_cast<std::size_t>(s)]; }
    int kinds() const { return static_cast<int>(kinds_.size()); }
    /// Whether elements of that kind can be children in the slot.
    bool fits(int kind, Slot const& slot) const;
    quay::zero::ModelElement make(int k, quay::zero::Model const& model, boost::uuids::uuid const& id = {}) const {
        return make_(kindAt(k).type, model, id);
    }

private:
    std::vector<ElementKind> kinds_;
    std::vector<Slot> slots_;
    Make make_;
    bool rekeys_;
};

/// Elements are identified by number, in order of creation. Operations that fail return the message's name or, for an
/// index out of range, "out_of_range", and change nothing; all others return an empty text. Each is a transaction of
/// its own if none is open.
class Reference {
public:
    explicit Reference(Plan const& plan) : plan_(plan) {}

    struct Element {
        int kind = 0;
        bool alive = true;
        int container = -1;
        int slot = -1;
        std::map<int, std::vector<Item>> content;  // by slot
    };
    using Report = std::set<std::string>;

    std::vector<int> const& order() const { return now_.order; }
    Element const& at(int n) const { return now_.elements.at(n); }
    std::vector<Item> const& items(int n, int slot) const { return itemsIn(now_, n, slot); }
    bool isAlive(int n) const { return now_.elements.contains(n) && at(n).alive; }
    std::size_t depth() const { return savepoints_.size(); }
    std::string const& name(int n) const { return names_.at(static_cast<std::size_t>(n)); }
    std::string dump() const;
    Report takeReport() { return std::exchange(report_, {}); }

    void begin(bool system = false) { savepoints_.push_back({now_, system}); }
    void commit();
    void rollback();
    std::string undo(bool& did) { return step(did, done_, undone_); }
    std::string redo(bool& did) { return step(did, undone_, done_); }
    void setLimit(std::size_t limit);

    /// Creates an element with its defaults and returns its number. An earlier element with that name must be dead.
    int create(int kind, std::string name);
    void destroy(int n);
    /// Whether an element is `below` itself or contains it.
    bool isAbove(int n, int below) const;
    /// The number of elements that are destroyed with it, itself included.
    int subtreeSize(int n) const;
    /// Writes a single value, an optional (nothing clears it) or an array; writing a key moves the element's entry.
    std::string write(int n, int slot, std::optional<Item> const& value);
    std::string writeChild(int n, int slot, int child);  // -1 for none
    std::string insert(int n, int slot, std::size_t position, Item const& item);
    std::string erase(int n, int slot, std::size_t position);
    std::string replace(int n, int slot, std::size_t position, Item const& item);
    /// Removes the first equal value, or child.
    void remove(int n, int slot, Item const& item);
    void clear(int n, int slot);
    /// Adds a child to a set or a map.
    std::string add(int n, int slot, int child);
    /// Runs several operations as one transaction.
    template <class F>
    void together(F&& f) {
        run(f);
    }
    void touch(int n, int slot) { now_.touched.insert({n, slot}); }

private:
    using Touched = std::set<std::pair<int, int>>;
    struct State {
        std::map<int, Element> elements;  // including dead ones
        std::vector<int> order;
        Touched touched;  // in the open transaction
    };
    struct Savepoint {
        State before;
        bool system;
    };
    struct Entry {
        State other;
        Touched touched;
    };

    template <class F>
    void run(F&& f) {
        bool const own = savepoints_.empty();
        if (own) begin();
        f();
        if (own) commit();
    }
    Slot const& slotAt(int s) const { return plan_.slotAt(s); }
    std::vector<int> const& slotsOf(int n) const { return plan_.kindAt(at(n).kind).slots; }
    std::vector<Item>& content(int n, int slot) { return now_.elements.at(n).content[slot]; }
    void leave(int child);
    void contain(int owner, int slot, int child);
    void release(int owner, int slot, int child);
    void releaseLast(int owner, int slot, int child);
    void place(int owner, int slot, int child);
    Item entryOf(int slot, int child) const;
    bool isTaken(int owner, int slot, Item const& key, int child) const;
    void kill(int n);
    static std::vector<Item> const& itemsIn(State const& state, int n, int slot);
    std::string show(State const& values, State const& lives, int n, int slot) const;
    static bool isSame(State const& a, State const& b, int n, int slot);
    Report reportOf(State const& before, Touched const& touched) const;
    std::string step(bool& did, std::deque<Entry>& from, std::deque<Entry>& to);

    Plan const& plan_;
    State now_;
    std::vector<Savepoint> savepoints_;
    std::vector<std::string> names_;
    std::size_t limit_ = 0;
    std::deque<Entry> done_;
    std::deque<Entry> undone_;
    Report report_;
    int lastSerial_ = 0;
};

}  // namespace records
