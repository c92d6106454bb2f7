#include "reference.h"

#include "dump.h"

#include <keel/text.h>

#include <algorithm>
#include <cmath>

namespace records {

using namespace quay::zero;
using Shape = Slot::Shape;

// --- The plan --------------------------------------------------------------------------------------------------------

namespace {

Shape shapeOf(meta::Property const& p) {
    bool const owns = p->isComposite();
    switch (p->getFlags()) {
        case ValueFlags::One:
            if (p->getType() == meta::StandardTypes::zxArrayMeta) return Shape::Array;
            return owns ? Shape::Child : Shape::Single;
        case ValueFlags::Optional:
            return owns ? Shape::Child : Shape::Optional;
        case ValueFlags::Sequence:
            return owns ? Shape::Children : Shape::Sequence;
        case ValueFlags::Set:
            return owns ? Shape::ChildSet : Shape::Set;
        case ValueFlags::Map:
            return Shape::Map;
        default:
            return Shape::Multimap;
    }
}

bool isLess(Item const& a, Item const& b) { return std::tie(a.number, a.text) < std::tie(b.number, b.text); }
bool isEqual(Item const& a, Item const& b) { return a.shown == b.shown && a.child == b.child && a.shown != "nan"; }

}  // namespace

Plan::Plan(Chosen const& chosen, Make make, bool rekeys) : make_(make), rekeys_(rekeys) {
    for (auto const& [type, properties] : chosen) {
        Model const scratch = Model::create();
        ModelElement const fresh = make(type, scratch, {});
        ElementKind kind{type, keel::toUtf8(type->getName()), {}};
        for (meta::Property const& p : properties) {
            auto const known =
                std::find_if(slots_.begin(), slots_.end(), [&](Slot const& s) { return s.property == p; });
            kind.slots.push_back(static_cast<int>(known - slots_.begin()));
            if (known != slots_.end()) continue;
            slots_.push_back({p, kind.name + '.' + keel::toUtf8(p->getName()), shapeOf(p), p->isComposite(), -1, {}});
            // A new element's initial values are those of a fresh one; other tests check that they are right.
            if (slots_.back().shape == Shape::Single || slots_.back().shape == Shape::Array) {
                slots_.back().initial = itemOf(fresh->getPropertyValue(p, ReflectionPrivateTag::PUBLIC_ACCESS));
            }
        }
        kinds_.push_back(std::move(kind));
    }
    for (Slot& slot : slots_) {
        auto const key = slot.property->getQualifiedBy();
        if (!key) continue;
        auto const found = std::find_if(slots_.begin(), slots_.end(), [&](Slot const& s) { return s.property == key; });
        slot.keySlot = static_cast<int>(found - slots_.begin());
    }
}

int Plan::kind(std::string const& name) const {
    auto const found = std::find_if(kinds_.begin(), kinds_.end(), [&](auto const& k) { return k.name == name; });
    return static_cast<int>(found - kinds_.begin());
}

int Plan::slot(std::string const& name) const {
    auto const found = std::find_if(slots_.begin(), slots_.end(), [&](auto const& s) { return s.name == name; });
    return static_cast<int>(found - slots_.begin());
}

bool Plan::fits(int kind, Slot const& slot) const {
    return slot.owns && kindAt(kind).type->conformsTo(meta::Class::cast(slot.property->getType()));
}

Item itemOf(Value const& value) {
    using meta::StandardTypes;
    Item item;
    item.shown = show(value);
    auto const type = value.getType();
    if (type == StandardTypes::integerMeta) item.number = value.getValue<int>();
    if (type == StandardTypes::uinteger64Meta) item.number = double(value.getValue<unsigned long>());
    if (type == StandardTypes::realMeta) item.number = value.getValue<double>();
    if (type == StandardTypes::stringMeta) item.text = value.getValue<std::u16string>();
    if (type == StandardTypes::stdstringMeta) {
        for (unsigned char const c : value.getValue<std::string>()) item.text.push_back(c);
    }
    return item;
}

Item itemOf(int child) {
    Item item;
    item.child = child;
    return item;
}

// --- Transactions ----------------------------------------------------------------------------------------------------

void Reference::rollback() {
    now_ = std::move(savepoints_.back().before);
    savepoints_.pop_back();
}

void Reference::commit() {
    Savepoint savepoint = std::move(savepoints_.back());
    savepoints_.pop_back();
    if (!savepoints_.empty()) return;
    Touched const touched = std::exchange(now_.touched, {});
    Report report = reportOf(savepoint.before, touched);
    if (savepoint.system) {
        if (!report.empty()) {
            done_.clear();
            undone_.clear();
        }
        return;
    }
    report_ = std::move(report);
    if (report_.empty() || limit_ == 0) return;
    undone_.clear();
    done_.push_back({std::move(savepoint.before), touched});
    if (done_.size() > limit_) done_.pop_front();
}

void Reference::setLimit(std::size_t limit) {
    limit_ = limit;
    undone_.clear();
    while (done_.size() > limit) done_.pop_front();
}

std::string Reference::step(bool& did, std::deque<Entry>& from, std::deque<Entry>& to) {
    if (!savepoints_.empty()) return "TransactionIsOpen";
    did = !from.empty();
    if (!did) return {};
    Entry entry = std::move(from.back());
    from.pop_back();
    State target = std::move(entry.other);
    for (auto const& [n, element] : now_.elements) {
        auto const [place, fresh] = target.elements.emplace(n, element);
        if (fresh) place->second.alive = false;
    }
    target.touched.clear();
    entry.other = std::exchange(now_, std::move(target));
    report_ = reportOf(entry.other, entry.touched);
    to.push_back(std::move(entry));
    return {};
}

// --- Reports and dumps -----------------------------------------------------------------------------------------------

std::vector<Item> const& Reference::itemsIn(State const& state, int n, int slot) {
    static std::vector<Item> const none;
    auto const& all = state.elements.at(n).content;
    auto const found = all.find(slot);
    return found == all.end() ? none : found->second;
}

std::string Reference::show(State const& values, State const& lives, int n, int slot) const {
    std::vector<Item> list = itemsIn(values, n, slot);
    auto const nameOf = [&](int m) { return (lives.elements.at(m).alive ? "" : "+") + name(m); };
    switch (slotAt(slot).shape) {
        case Shape::Single:
        case Shape::Array:
            return list.front().shown;
        case Shape::Optional:
            return list.empty() ? "none" : list.front().shown;
        case Shape::Child:
            return list.empty() ? "-" : nameOf(list.front().child);
        case Shape::ChildSet:
            std::sort(list.begin(), list.end(),
                      [&](auto const& a, auto const& b) { return name(a.child) < name(b.child); });
            break;
        default:
            break;
    }
    std::string text = "[";
    for (Item const& i : list) {
        if (text.size() > 1) text += ", ";
        if (i.child < 0 || slotAt(slot).keyed()) text += i.shown;
        if (slotAt(slot).keyed()) text += ": ";
        if (i.child >= 0) text += nameOf(i.child);
    }
    return text + "]";
}

std::string Reference::dump() const {
    std::string out;
    for (int n : now_.order) {
        Element const& e = at(n);
        out += name(n) + ' ' + plan_.kindAt(e.kind).name;
        if (e.container >= 0) out += " in " + name(e.container) + '.' + slotAt(e.slot).name;
        for (int s : slotsOf(n)) out += ' ' + slotAt(s).name + '=' + show(now_, now_, n, s);
        out += '\n';
    }
    return out + (savepoints_.empty() ? "closed" : "open") + ", undo " + std::to_string(done_.size()) + ", redo " +
           std::to_string(undone_.size()) + '\n';
}

/// Whether two states are equal by the rule for listeners: values by ==, and collections if both have at most one
/// member and it is the same.
bool Reference::isSame(State const& a, State const& b, int n, int slot) {
    auto const& x = itemsIn(a, n, slot);
    auto const& y = itemsIn(b, n, slot);
    if (x.size() != y.size() || x.size() > 1) return false;
    if (x.empty()) return true;
    return isEqual(x.front(), y.front()) && x.front().serial == y.front().serial;
}

Reference::Report Reference::reportOf(State const& before, Touched const& touched) const {
    auto const lived = [&](int n) { return before.elements.contains(n) && before.elements.at(n).alive; };
    Report report;
    for (auto const& [n, element] : now_.elements) {
        if (element.alive != lived(n)) report.insert((element.alive ? '+' : '-') + name(n));
    }
    for (auto const& [n, slot] : touched) {
        if (!lived(n) || !isAlive(n) || isSame(before, now_, n, slot)) continue;
        report.insert(name(n) + '.' + slotAt(slot).name + ' ' + show(before, now_, n, slot) + " -> " +
                      show(now_, now_, n, slot));
    }
    return report;
}

// --- Containment -----------------------------------------------------------------------------------------------------

bool Reference::isAbove(int n, int below) const {
    for (int i = below; i >= 0; i = at(i).container) {
        if (i == n) return true;
    }
    return false;
}

void Reference::leave(int child) {
    int const owner = at(child).container;
    if (owner < 0) return;
    int const slot = at(child).slot;
    touch(owner, slot);
    std::erase_if(content(owner, slot), [&](Item const& i) { return i.child == child; });
    release(owner, slot, child);
}

void Reference::contain(int owner, int slot, int child) {
    touch(owner, slot);
    Element& c = now_.elements.at(child);
    if (c.container == owner && c.slot == slot) return;
    leave(child);
    c.container = owner;
    c.slot = slot;
}

void Reference::release(int owner, int slot, int child) {
    Element& c = now_.elements.at(child);
    if (c.container != owner || c.slot != slot) return;
    c.container = -1;
    c.slot = -1;
}

/// Releases the child unless it is in the collection at another position too.
void Reference::releaseLast(int owner, int slot, int child) {
    auto const& all = items(owner, slot);
    bool const stays = std::any_of(all.begin(), all.end(), [&](Item const& i) { return i.child == child; });
    if (child >= 0 && !stays) release(owner, slot, child);
}

Item Reference::entryOf(int slot, int child) const {
    Item entry;
    if (slotAt(slot).keyed()) entry = items(child, slotAt(slot).keySlot).front();
    entry.child = child;
    return entry;
}

bool Reference::isTaken(int owner, int slot, Item const& key, int child) const {
    if (slotAt(slot).shape != Shape::Map) return false;
    auto const& all = items(owner, slot);
    return std::any_of(all.begin(), all.end(),
                       [&](Item const& i) { return i.child != child && !isLess(i, key) && !isLess(key, i); });
}

/// Inserts a child at its position in a set or map; an entry comes after those with the same key.
void Reference::place(int owner, int slot, int child) {
    auto& all = content(owner, slot);
    Item const entry = entryOf(slot, child);
    auto const position = slotAt(slot).keyed() ? std::upper_bound(all.begin(), all.end(), entry, isLess) : all.end();
    all.insert(position, entry);
}

// --- Operations ------------------------------------------------------------------------------------------------------

int Reference::create(int kind, std::string name) {
    int const n = static_cast<int>(names_.size());
    names_.push_back(std::move(name));
    run([&] {
        Element& made = now_.elements[n];
        made.kind = kind;
        for (int s : slotsOf(n)) {
            if (slotAt(s).initial) made.content[s] = {*slotAt(s).initial};
        }
        now_.order.push_back(n);
    });
    return n;
}

void Reference::kill(int n) {
    for (int s : slotsOf(n)) {
        if (!slotAt(s).owns) continue;
        for (Item const& i : std::vector<Item>(items(n, s))) {
            if (isAlive(i.child)) kill(i.child);
        }
        content(n, s).clear();
    }
    Element& dead = now_.elements.at(n);
    dead.alive = false;
    dead.container = -1;
    dead.slot = -1;
    std::erase(now_.order, n);
}

void Reference::destroy(int n) {
    run([&] {
        leave(n);
        kill(n);
    });
}

int Reference::subtreeSize(int n) const {
    std::set<int> direct;
    for (int s : slotsOf(n)) {
        for (Item const& i : items(n, s)) direct.insert(i.child);
    }
    direct.erase(-1);
    int size = 1;
    for (int m : direct) size += subtreeSize(m);
    return size;
}

std::string Reference::write(int n, int slot, std::optional<Item> const& value) {
    auto const& held = items(n, slot);
    if (held.empty() && !value) return {};
    if (!held.empty() && value && isEqual(held.front(), *value)) return {};
    int const owner = at(n).container;
    bool const keys = owner >= 0 && slotAt(at(n).slot).keySlot == slot;
    if (keys && std::isnan(value->number)) return "InvalidValue";
    if (keys && isTaken(owner, at(n).slot, *value, n)) return "UniquenessConstraint";
    run([&] {
        touch(n, slot);
        std::vector<Item> stored;
        if (value) stored.push_back(*value);
        if (slotAt(slot).shape == Shape::Array && value->shown != "null") stored.front().serial = ++lastSerial_;
        content(n, slot) = stored;
        if (!keys) return;
        int const map = at(n).slot;
        touch(owner, map);
        std::erase_if(content(owner, map), [&](Item const& i) { return i.child == n; });
        place(owner, map, n);
    });
    return {};
}

std::string Reference::writeChild(int n, int slot, int child) {
    int const held = items(n, slot).empty() ? -1 : items(n, slot).front().child;
    if (held == child) return {};
    if (child >= 0 && isAbove(child, n)) return "InvalidValue";
    run([&] {
        touch(n, slot);
        if (held >= 0) release(n, slot, held);
        content(n, slot).clear();
        if (child < 0) return;
        contain(n, slot, child);
        content(n, slot) = {itemOf(child)};
    });
    return {};
}

std::string Reference::insert(int n, int slot, std::size_t position, Item const& item) {
    if (position > items(n, slot).size()) return "out_of_range";
    if (item.child >= 0 && isAbove(item.child, n)) return "InvalidValue";
    run([&] {
        touch(n, slot);
        if (item.child >= 0) contain(n, slot, item.child);
        auto& all = content(n, slot);
        if (slotAt(slot).shape != Shape::Set) {
            all.insert(all.begin() + static_cast<std::ptrdiff_t>(position), item);
        } else if (auto const place = std::lower_bound(all.begin(), all.end(), item, isLess);
                   place == all.end() || !isEqual(*place, item)) {
            all.insert(place, item);
        }
    });
    return {};
}

std::string Reference::erase(int n, int slot, std::size_t position) {
    if (position >= items(n, slot).size()) return "out_of_range";
    run([&] {
        touch(n, slot);
        auto& all = content(n, slot);
        Item const gone = all[position];
        all.erase(all.begin() + static_cast<std::ptrdiff_t>(position));
        releaseLast(n, slot, gone.child);
    });
    return {};
}

std::string Reference::replace(int n, int slot, std::size_t position, Item const& item) {
    if (position >= items(n, slot).size()) return "out_of_range";
    Item const gone = items(n, slot)[position];
    if (item.child >= 0 && gone.child == item.child) return {};
    if (item.child >= 0 && isAbove(item.child, n)) return "InvalidValue";
    run([&] {
        touch(n, slot);
        if (item.child >= 0) contain(n, slot, item.child);
        auto& all = content(n, slot);
        all[position] = item;
        releaseLast(n, slot, gone.child);
    });
    return {};
}

void Reference::remove(int n, int slot, Item const& item) {
    auto const& all = items(n, slot);
    auto const found = std::find_if(all.begin(), all.end(), [&](Item const& i) {
        return item.child >= 0 ? i.child == item.child : isEqual(i, item);
    });
    if (found != all.end()) {
        erase(n, slot, static_cast<std::size_t>(found - all.begin()));
    } else if (slotAt(slot).shape == Shape::Set) {
        run([&] { touch(n, slot); });
    }
}

void Reference::clear(int n, int slot) {
    run([&] {
        touch(n, slot);
        for (Item const& i : std::exchange(content(n, slot), {})) {
            if (i.child >= 0) release(n, slot, i.child);
        }
    });
}

std::string Reference::add(int n, int slot, int child) {
    auto const& all = items(n, slot);
    if (slotAt(slot).shape == Shape::Children) {
        return insert(n, slot, all.size(), itemOf(child));
    }
    if (isAbove(child, n)) return "InvalidValue";
    Item const entry = entryOf(slot, child);
    if (slotAt(slot).keyed() && std::isnan(entry.number)) return "InvalidValue";
    if (std::any_of(all.begin(), all.end(), [&](auto const& i) { return i.child == child; })) return {};
    if (isTaken(n, slot, entry, child)) return "UniquenessConstraint";
    run([&] {
        contain(n, slot, child);
        place(n, slot, child);
    });
    return {};
}

}  // namespace records
