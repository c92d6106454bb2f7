#include "reference.h"

#include "dump.h"

#include <algorithm>
#include <cmath>

namespace nodes {

namespace {

template <class K>
void eraseMember(std::multimap<K, int>& map, int child) {
    std::erase_if(map, [&](auto const& entry) { return entry.second == child; });
}

}  // namespace

// --- Transactions ---------------------------------------------------------------------------------------------------

void Reference::begin(bool system) { levels_.push_back({now_, system}); }

void Reference::rollback() {
    now_ = std::move(levels_.back().before);
    levels_.pop_back();
}

void Reference::commit() {
    if (levels_.size() > 1) {
        levels_.pop_back();
        return;
    }
    Level const level = std::move(levels_.back());
    levels_.pop_back();
    Touched const touched = std::exchange(now_.touched, {});
    bool const structural = std::exchange(now_.structural, false);
    if (level.system) {
        if (structural || !touched.empty()) {
            done_.clear();
            undone_.clear();
        }
        return;
    }
    report_ = reportOf(level.before, touched);
    if (!report_ || limit_ == 0) return;
    undone_.clear();
    done_.push_back({level.before, touched});
    if (done_.size() > limit_) done_.pop_front();
}

/// Exchanges the present state with the entry's.
void Reference::replay(Entry& entry) {
    State target = std::move(entry.other);
    for (auto const& [n, node] : now_.nodes) {
        auto const [place, fresh] = target.nodes.emplace(n, node);
        if (fresh) place->second.alive = false;
    }
    target.touched.clear();
    target.structural = false;
    entry.other = std::exchange(now_, std::move(target));
    report_ = reportOf(entry.other, entry.touched);
}

std::string Reference::undo(bool& did) {
    if (!levels_.empty()) return "TransactionIsOpen";
    did = !done_.empty();
    if (did) {
        replay(done_.back());
        undone_.push_back(std::move(done_.back()));
        done_.pop_back();
    }
    return {};
}

std::string Reference::redo(bool& did) {
    if (!levels_.empty()) return "TransactionIsOpen";
    did = !undone_.empty();
    if (did) {
        replay(undone_.back());
        done_.push_back(std::move(undone_.back()));
        undone_.pop_back();
    }
    return {};
}

void Reference::setLimit(std::size_t limit) {
    limit_ = limit;
    undone_.clear();
    while (done_.size() > limit) done_.pop_front();
}

// --- Reports and dumps ----------------------------------------------------------------------------------------------

std::string Reference::show(State const& values, State const& lives, std::vector<std::string> const& names, int n,
                            int index) {
    Node const& node = values.nodes.at(n);
    std::string list = "[";
    auto const add = [&](std::string const& item) { list += (list.size() > 1 ? ", " : "") + item; };
    auto const nameOf = [&](int m) {
        return (lives.nodes.at(m).alive ? "" : "+") + names[static_cast<std::size_t>(m)];
    };
    auto const addAll = [&](auto const& map) {
        for (auto const& [key, m] : map) add(nodes::show(key) + ": " + nameOf(m));
    };
    switch (index) {
        case kText:
            return nodes::show(node.text);
        case kNumber:
            return nodes::show(node.number);
        case kCount:
            return node.count ? nodes::show(*node.count) : "none";
        case kRank:
            return nodes::show(node.rank);
        case kBox:
            return nodes::show(node.box);
        case kNote:
            return nodes::show(node.note);
        case kNumbers:
            for (int i : node.numbers) add(nodes::show(i));
            break;
        case kTags:
            for (auto const& tag : node.tags) add(nodes::show(tag));
            break;
        case kChildren:
            for (int m : node.children) add(nameOf(m));
            break;
        case kParts:
            for (int m : node.parts) add(nameOf(m));
            break;
        case kByName:
            addAll(node.byName);
            break;
        case kByRank:
            addAll(node.byRank);
            break;
        case kByNumber:
            addAll(node.byNumber);
            break;
        default:
            break;
    }
    return list + "]";
}

std::string Reference::dump() const {
    static char const* const properties[] = {"",     "text",     "number", "count",  "rank",     "box",  "numbers",
                                             "tags", "children", "byName", "byRank", "byNumber", "note", "parts"};
    std::string out;
    for (int n : now_.order) {
        Node const& node = at(n);
        out += name(n) + (node.special ? " Special" : " Node");
        if (node.container >= 0) out += " in " + name(node.container) + "." + std::to_string(node.property);
        for (int i = 1; i <= (node.special ? kParts : kByNumber); ++i) {
            out += std::string(" ") + properties[i] + "=" + show(now_, now_, names_, n, i);
        }
        out += '\n';
    }
    out += levels_.empty() ? "closed" : "open";
    return out + ", undo " + std::to_string(done_.size()) + ", redo " + std::to_string(undone_.size()) + '\n';
}

/// By the rule of the house: values by ==, collections of none or one member if that is the same.
bool Reference::isSame(State const& a, State const& b, int n, int index) {
    Node const& x = a.nodes.at(n);
    Node const& y = b.nodes.at(n);
    auto const few = [](auto const& s, auto const& t) { return s.size() <= 1 && s == t; };
    switch (index) {
        case kText:
            return x.text == y.text;
        case kNumber:
            return x.number == y.number;
        case kCount:
            return x.count == y.count;
        case kRank:
            return x.rank == y.rank;
        case kBox:
            return x.box == y.box;
        case kNote:
            return x.note == y.note;
        case kNumbers:
            return few(x.numbers, y.numbers);
        case kTags:
            return few(x.tags, y.tags);
        case kChildren:
            return few(x.children, y.children);
        case kParts:
            return few(x.parts, y.parts);
        case kByName:
            return few(x.byName, y.byName);
        case kByRank:
            return few(x.byRank, y.byRank);
        default:
            return few(x.byNumber, y.byNumber);
    }
}

std::optional<std::string> Reference::reportOf(State const& before, Touched const& touched) const {
    auto const lived = [&](int n) { return before.nodes.contains(n) && before.nodes.at(n).alive; };
    std::string created = "created";
    std::string destroyed = "destroyed";
    std::string changed = "changed";
    bool any = false;
    for (auto const& [n, node] : now_.nodes) {
        if (node.alive == lived(n)) continue;
        (node.alive ? created : destroyed) += " " + name(n);
        any = true;
    }
    for (auto const& [n, index] : touched) {
        if (!lived(n) || !isAlive(n) || isSame(before, now_, n, index)) continue;
        changed += " " + name(n) + "." + std::to_string(index) + " " + show(before, now_, names_, n, index) + " -> " +
                   show(now_, now_, names_, n, index);
        any = true;
    }
    if (!any) return std::nullopt;
    return created + "; " + destroyed + "; " + changed;
}

// --- Operations -----------------------------------------------------------------------------------------------------

int Reference::create(bool special, std::string name) {
    int const n = static_cast<int>(names_.size());
    names_.push_back(std::move(name));
    run([&] {
        now_.nodes[n].special = special;
        now_.order.push_back(n);
        now_.structural = true;
    });
    return n;
}

std::vector<int>& Reference::sequence(int owner, Index index) {
    return index == kChildren ? node(owner).children : node(owner).parts;
}

bool Reference::isAbove(int n, int below) const {
    for (int i = below; i >= 0; i = at(i).container) {
        if (i == n) return true;
    }
    return false;
}

/// The child leaves its container.
void Reference::leave(int child) {
    int const owner = at(child).container;
    if (owner < 0) return;
    touch(owner, at(child).property);
    Node& o = node(owner);
    switch (at(child).property) {
        case kChildren:
            std::erase(o.children, child);
            break;
        case kParts:
            std::erase(o.parts, child);
            break;
        case kByName:
            eraseMember(o.byName, child);
            break;
        case kByRank:
            eraseMember(o.byRank, child);
            break;
        default:
            eraseMember(o.byNumber, child);
            break;
    }
    node(child).container = -1;
    node(child).property = 0;
}

void Reference::contain(int owner, int index, int child) {
    touch(owner, index);
    Node& c = node(child);
    if (c.container == owner && c.property == index) return;
    leave(child);
    c.container = owner;
    c.property = index;
}

void Reference::release(int owner, int index, int child) {
    Node& c = node(child);
    if (c.container != owner || c.property != index) return;
    c.container = -1;
    c.property = 0;
}

std::string Reference::insertChild(int owner, Index index, std::size_t position, int child) {
    if (position > sequence(owner, index).size()) return "out_of_range";
    if (isAbove(child, owner)) return "InvalidValue";
    run([&] {
        auto& s = sequence(owner, index);
        contain(owner, index, child);
        s.insert(s.begin() + static_cast<std::ptrdiff_t>(position), child);
    });
    return {};
}

std::string Reference::replaceChild(int owner, Index index, std::size_t position, int child) {
    auto& s = sequence(owner, index);
    if (position >= s.size()) return "out_of_range";
    int const gone = s[position];
    if (gone == child) return {};
    if (isAbove(child, owner)) return "InvalidValue";
    run([&] {
        contain(owner, index, child);
        s[position] = child;
        if (std::count(s.begin(), s.end(), gone) == 0) release(owner, index, gone);
    });
    return {};
}

std::string Reference::eraseChild(int owner, Index index, std::size_t position) {
    auto& s = sequence(owner, index);
    if (position >= s.size()) return "out_of_range";
    run([&] {
        touch(owner, index);
        int const gone = s[position];
        s.erase(s.begin() + static_cast<std::ptrdiff_t>(position));
        if (std::count(s.begin(), s.end(), gone) == 0) release(owner, index, gone);
    });
    return {};
}

void Reference::removeChild(int owner, Index index, int child) {
    auto const& s = sequence(owner, index);
    auto const found = std::find(s.begin(), s.end(), child);
    if (found != s.end()) eraseChild(owner, index, static_cast<std::size_t>(found - s.begin()));
}

std::string Reference::insertKeyed(int owner, Index index, int child, int policy) {
    if (isAbove(child, owner)) return "InvalidValue";
    Node const& c = at(child);
    if (index == kByNumber && std::isnan(c.number)) return "InvalidValue";
    if (c.container == owner && c.property == index) return {};
    auto const into = [&](auto Node::*map, auto const& key) -> std::string {
        auto const found = (at(owner).*map).find(key);
        bool const taken = index != kByRank && found != (at(owner).*map).end();
        if (taken && policy == 1) return {};
        if (taken && policy == 0) return "UniquenessConstraint";
        run([&] {
            if (taken) {
                release(owner, index, found->second);
                (node(owner).*map).erase(key);
            }
            contain(owner, index, child);
            (node(owner).*map).emplace(key, child);
        });
        return {};
    };
    if (index == kByName) return into(&Node::byName, c.text);
    if (index == kByRank) return into(&Node::byRank, c.rank);
    return into(&Node::byNumber, c.number);
}

void Reference::removeKeyed(int owner, Index index, int child) {
    if (at(child).container == owner && at(child).property == index) run([&] { leave(child); });
}

std::vector<int> Reference::members(int n, int index) const {
    Node const& o = at(n);
    std::vector<int> result;
    auto const addAll = [&](auto const& map) {
        for (auto const& entry : map) result.push_back(entry.second);
    };
    switch (index) {
        case kChildren:
            return o.children;
        case kParts:
            return o.parts;
        case kByName:
            addAll(o.byName);
            break;
        case kByRank:
            addAll(o.byRank);
            break;
        default:
            addAll(o.byNumber);
            break;
    }
    return result;
}

void Reference::clearMembers(int owner, Index index) {
    run([&] {
        touch(owner, index);
        for (int m : members(owner, index)) {
            if (at(m).container == owner) leave(m);
        }
    });
}

int Reference::subtreeSize(int n) const {
    std::set<int> direct;
    for (int index : {kChildren, kParts, kByName, kByRank, kByNumber}) {
        for (int m : members(n, index)) direct.insert(m);
    }
    int size = 1;
    for (int m : direct) size += subtreeSize(m);
    return size;
}

void Reference::kill(int n) {
    for (int index : {kChildren, kParts, kByName, kByRank, kByNumber}) {
        for (int m : members(n, index)) {
            if (isAlive(m)) kill(m);
        }
    }
    Node& dead = node(n);
    dead.children.clear();
    dead.parts.clear();
    dead.byName.clear();
    dead.byRank.clear();
    dead.byNumber.clear();
    dead.alive = false;
    dead.container = -1;
    dead.property = 0;
    std::erase(now_.order, n);
}

void Reference::destroy(int n) {
    run([&] {
        leave(n);
        kill(n);
        now_.structural = true;
    });
}

}  // namespace nodes
