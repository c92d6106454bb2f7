// What a model of nodes ought to do, done the plain and slow way: all state is copied whole wherever it may be wanted
// again. Random tests compare the runtime with it.
#pragma once

#include "node.h"

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace nodes {

/// Nodes are known by number, in order of creation. Operations that fail return the message's name or, out of range,
/// "out_of_range", and change nothing; all others return an empty text.
class Reference {
public:
    struct Node {
        bool special = false;
        bool alive = true;
        int container = -1;
        int property = 0;
        std::u16string text;
        double number = 0;
        boost::optional<int> count;
        int rank = 0;
        double box = 0;
        std::string note;
        std::vector<int> numbers;
        std::set<std::u16string> tags;
        std::vector<int> children;
        std::vector<int> parts;
        std::multimap<std::u16string, int> byName;
        std::multimap<int, int> byRank;
        std::multimap<double, int> byNumber;
    };

    // --- Looking.

    std::vector<int> const& order() const { return now_.order; }
    Node const& at(int n) const { return now_.nodes.at(n); }
    bool exists(int n) const { return now_.nodes.contains(n); }
    bool isAlive(int n) const { return exists(n) && at(n).alive; }
    std::size_t depth() const { return levels_.size(); }
    bool inSystem() const { return !levels_.empty() && levels_.front().system; }
    std::string name(int n) const { return names_.at(static_cast<std::size_t>(n)); }
    /// In the form of nodes::dump.
    std::string dump() const;
    /// What a listener ought to have been told since the last call: nothing, or the report of one commit.
    std::optional<std::string> takeReport() { return std::exchange(report_, std::nullopt); }

    // --- Transactions.

    void begin(bool system);
    void commit();
    void rollback();
    std::string undo(bool& did);
    std::string redo(bool& did);
    void setLimit(std::size_t limit);

    // --- Operations: each is a transaction of its own when none is open.

    /// The node's number. `name`: what it is called, that of an earlier node if it takes over its id.
    int create(bool special, std::string name);
    template <class T>
    void set(int n, Index index, T Node::*field, T const& value) {
        run([&] {
            if (at(n).*field == value) return;
            touch(n, index);
            node(n).*field = value;
        });
    }
    /// Any change of the numbers or tags; they count as touched.
    template <class F>
    void change(int n, Index index, F&& f) {
        run([&] {
            touch(n, index);
            f(node(n));
        });
    }
    std::string insertChild(int owner, Index index, std::size_t position, int child);
    std::string replaceChild(int owner, Index index, std::size_t position, int child);
    std::string eraseChild(int owner, Index index, std::size_t position);
    void removeChild(int owner, Index index, int child);
    std::string insertKeyed(int owner, Index index, int child, int policy);
    void removeKeyed(int owner, Index index, int child);
    void clearMembers(int owner, Index index);
    void destroy(int n);
    /// How many nodes go with it.
    int subtreeSize(int n) const;

private:
    using Touched = std::set<std::pair<int, int>>;
    struct State {
        std::map<int, Node> nodes;  // the dead ones too
        std::vector<int> order;
        Touched touched;          // in the open transaction
        bool structural = false;  // births and deaths in it
    };
    struct Level {
        State before;
        bool system;
    };
    struct Entry {
        State other;
        Touched touched;
    };

    Node& node(int n) { return now_.nodes.at(n); }
    void touch(int n, int index) { now_.touched.insert({n, index}); }
    template <class F>
    void run(F&& f) {
        bool const own = levels_.empty();
        if (own) begin(false);
        f();
        if (own) commit();
    }
    std::vector<int>& sequence(int owner, Index index);
    bool isAbove(int n, int below) const;
    void leave(int child);
    void contain(int owner, int index, int child);
    void release(int owner, int index, int child);
    std::vector<int> members(int n, int index) const;
    void kill(int n);
    static std::string show(State const& values, State const& lives, std::vector<std::string> const& names, int n,
                            int index);
    static bool isSame(State const& a, State const& b, int n, int index);
    std::optional<std::string> reportOf(State const& before, Touched const& touched) const;
    void replay(Entry& entry);

    State now_;
    std::vector<Level> levels_;
    std::vector<std::string> names_;
    std::size_t limit_ = 0;
    std::deque<Entry> done_;
    std::vector<Entry> undone_;
    std::optional<std::string> report_;
};

}  // namespace nodes
