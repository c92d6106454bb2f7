#include "reference.h"

#include "dump.h"
#include "samples.h"

#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <keel/text.h>

#include <algorithm>
#include <cmath>

namespace records {

using namespace quay::zero;
using Shape = Slot::Shape;

// --- The plan --------------------------------------------------------------------------------------------------------

int Plan::kind(std::string const& name) const {
    auto const found = std::find_if(kinds.begin(), kinds.end(), [&](auto const& k) { return k.name == name; });
    return found == kinds.end() ? -1 : static_cast<int>(found - kinds.begin());
}

int Plan::slot(std::string const& kindName, std::string const& name) const {
    for (int s : kinds.at(static_cast<std::size_t>(kind(kindName))).slots) {
        if (slots[static_cast<std::size_t>(s)].name == name) return s;
    }
    return -1;
}

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

Plan makePlan() {
    // An index above 63 lies beyond the first word of a mask, so the root has several of them here.
    std::vector<std::pair<char const*, std::vector<char16_t const*>>> const chosen = {
        {"ModelRefInfoRoot",
         {u"origInportBusType", u"runtimeNonFcnCallRateInfos", u"disableableTaskNums", u"solverStatusFlags",
          u"dataTransferInfos", u"isRefModelConstant", u"userSpecifiedFixedStepSize", u"hasHardwareSemantics",
          u"triggerType", u"numTs", u"numRuntimeExportedRates", u"resetEvents", u"inports", u"varTsUIDMap",
          u"controllableInputRatesMap", u"unionTsContainedTs", u"argumentParameters"}},
        {"InportInformation",
         {u"isNotDerivPort", u"rateInfos", u"resolvedSignalObject", u"designMin", u"trueHiers", u"hierCondInfos"}},
        {"VarTsUIDMap", {u"entries"}},
        {"VarTsUIDEntry", {u"varTsIdx", u"varTsUID"}},
        {"UnionTsContainedTsElem", {u"unionTs", u"containedTs"}},
        {"CompFunction",
         {u"functionName", u"irtCallerType", u"resetEventsContainingCallers", u"variantFunctionNetEMVCE",
          u"variantCallerNetEMVCEMap"}},
        {"IRTCallerType", {u"blockHandle"}},
        {"VariantFunctionNetEMVCE", {u"signalName"}},
        {"VariantCallerNetEMVCE", {u"refBlockPath", u"variantFunctionNetEMVCE"}},
        {"ResetEventInfo", {u"resetEvent", u"netHierCondInfo"}},
        {"HierCondInfo", {u"hierIdx"}},
        {"ArgumentValueMap", {u"entries"}},
        {"ArgumentValue", {u"name", u"value"}},
        {"CompServicePort", {u"servicePortKey", u"externalPortIdx"}},
    };
    Plan made;
    for (auto const& [name, properties] : chosen) {
        ElementKind kind{name, {}, {}};
        for (meta::Class const& c : schemaClasses()) {
            if (keel::toUtf8(c->getName()) == name) kind.type = c;
        }
        for (char16_t const* property : properties) {
            meta::Property const p = kind.type->findProperty(property);
            kind.slots.push_back(static_cast<int>(made.slots.size()));
            made.slots.push_back({keel::toUtf8(property), p, shapeOf(p)});
        }
        made.kinds.push_back(kind);
    }
    for (Slot& s : made.slots) {
        if (!s.property->isComposite()) continue;
        std::string const child = keel::toUtf8(s.property->getType()->getName());
        s.childKind = made.kind(child);
        if (s.keyed()) s.keySlot = made.slot(child, keel::toUtf8(s.property->getQualifiedBy()->getName()));
    }
    return made;
}

Slot const& slotOf(int s) { return plan().slots[static_cast<std::size_t>(s)]; }
ElementKind const& kindOf(int k) { return plan().kinds[static_cast<std::size_t>(k)]; }

bool isLess(Item const& a, Item const& b) { return std::tie(a.number, a.text) < std::tie(b.number, b.text); }
bool isEqual(Item const& a, Item const& b) { return a.shown == b.shown && a.child == b.child && a.shown != "nan"; }

}  // namespace

Plan const& plan() {
    static Plan const made = makePlan();
    return made;
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

// --- Transactions ----------------------------------------------------------------------------------------------------

void Reference::rollback() {
    now_ = std::move(levels_.back());
    levels_.pop_back();
}

void Reference::commit() {
    State before = std::move(levels_.back());
    levels_.pop_back();
    if (!levels_.empty()) return;
    Touched const touched = std::exchange(now_.touched, {});
    report_ = reportOf(before, touched);
    if (report_.empty() || limit_ == 0) return;
    undone_.clear();
    done_.push_back({std::move(before), touched});
    if (done_.size() > limit_) done_.pop_front();
}

std::string Reference::step(bool& did, std::deque<Entry>& from, std::deque<Entry>& to) {
    if (!levels_.empty()) return "TransactionIsOpen";
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

std::vector<Item> const& Reference::items(int n, int slot) const {
    static std::vector<Item> const none;
    auto const& all = at(n).content;
    auto const found = all.find(slot);
    return found == all.end() ? none : found->second;
}

std::string Reference::show(State const& values, State const& lives, int n, int slot) const {
    auto const& all = values.elements.at(n).content;
    auto const found = all.find(slot);
    std::vector<Item> list = found == all.end() ? std::vector<Item>() : found->second;
    auto const nameOf = [&](int m) { return (lives.elements.at(m).alive ? "" : "dead ") + name(m); };
    switch (slotOf(slot).shape) {
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
        if (i.child < 0 || slotOf(slot).keyed()) text += i.shown;
        if (slotOf(slot).keyed()) text += ": ";
        if (i.child >= 0) text += nameOf(i.child);
    }
    return text + "]";
}

std::string Reference::dump() const {
    std::string out;
    for (int n : now_.order) {
        Element const& e = at(n);
        out += name(n) + ' ' + kindOf(e.kind).name;
        if (e.container >= 0) out += " in " + name(e.container) + '.' + slotOf(e.slot).name;
        for (int s : kindOf(e.kind).slots) out += ' ' + slotOf(s).name + '=' + show(now_, now_, n, s);
        out += '\n';
    }
    return out + (levels_.empty() ? "closed" : "open") + ", undo " + std::to_string(done_.size()) + ", redo " +
           std::to_string(undone_.size()) + '\n';
}

/// By the rule of the house: values by ==, collections of none or one member if that is the same.
bool Reference::isSame(State const& a, State const& b, int n, int slot) {
    auto const itemsOf = [&](State const& s) {
        auto const& all = s.elements.at(n).content;
        auto const found = all.find(slot);
        return found == all.end() ? std::vector<Item>() : found->second;
    };
    auto const x = itemsOf(a);
    auto const y = itemsOf(b);
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
        report.insert(name(n) + '.' + slotOf(slot).name + ' ' + show(before, now_, n, slot) + " -> " +
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

Item Reference::entryOf(int slot, int child) const {
    Item entry;
    if (slotOf(slot).keyed()) entry = items(child, slotOf(slot).keySlot).front();
    entry.child = child;
    return entry;
}

bool Reference::isTaken(int owner, int slot, Item const& key, int child) const {
    if (slotOf(slot).shape != Shape::Map) return false;
    auto const& all = items(owner, slot);
    return std::any_of(all.begin(), all.end(),
                       [&](Item const& i) { return i.child != child && !isLess(i, key) && !isLess(key, i); });
}

/// Puts a child where a set or map has it; an entry goes last among its equals.
void Reference::place(int owner, int slot, int child) {
    auto& all = content(owner, slot);
    Item const entry = entryOf(slot, child);
    auto const position = slotOf(slot).keyed() ? std::upper_bound(all.begin(), all.end(), entry, isLess) : all.end();
    all.insert(position, entry);
}

// --- Operations ------------------------------------------------------------------------------------------------------

int Reference::create(int kind, std::string name) {
    int const n = static_cast<int>(names_.size());
    names_.push_back(std::move(name));
    run([&] {
        Element& made = now_.elements[n];
        made.kind = kind;
        // What a new element has is what a fresh one shows; that it is right is tested elsewhere.
        Model const scratch = Model::create();
        ModelElement const fresh = make(kindOf(kind).type, scratch);
        for (int s : kindOf(kind).slots) {
            Shape const shape = slotOf(s).shape;
            if (shape != Shape::Single && shape != Shape::Array) continue;
            made.content[s] = {
                itemOf(fresh->getPropertyValue(slotOf(s).property, ReflectionPrivateTag::PUBLIC_ACCESS))};
        }
        now_.order.push_back(n);
    });
    return n;
}

void Reference::kill(int n) {
    for (int s : kindOf(at(n).kind).slots) {
        if (!slotOf(s).owns()) continue;
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

std::string Reference::write(int n, int slot, std::optional<Item> const& value) {
    auto const& held = items(n, slot);
    if (held.empty() && !value) return {};
    if (!held.empty() && value && isEqual(held.front(), *value)) return {};
    int const owner = at(n).container;
    bool const keys = owner >= 0 && slotOf(at(n).slot).keySlot == slot;
    if (keys && std::isnan(value->number)) return "InvalidValue";
    if (keys && isTaken(owner, at(n).slot, *value, n)) return "UniquenessConstraint";
    run([&] {
        touch(n, slot);
        std::vector<Item> stored;
        if (value) stored.push_back(*value);
        if (slotOf(slot).shape == Shape::Array && value->shown != "null") stored.front().serial = ++lastSerial_;
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
        Item item;
        item.child = child;
        content(n, slot) = {item};
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
        if (slotOf(slot).shape != Shape::Set) {
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
        if (gone.child >= 0 &&
            std::none_of(all.begin(), all.end(), [&](auto const& i) { return i.child == gone.child; })) {
            release(n, slot, gone.child);
        }
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
        if (gone.child >= 0 &&
            std::none_of(all.begin(), all.end(), [&](auto const& i) { return i.child == gone.child; })) {
            release(n, slot, gone.child);
        }
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
    } else if (slotOf(slot).shape == Shape::Set) {
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
    if (slotOf(slot).shape == Shape::Children) {
        Item item;
        item.child = child;
        return insert(n, slot, all.size(), item);
    }
    if (isAbove(child, n)) return "InvalidValue";
    Item const entry = entryOf(slot, child);
    if (slotOf(slot).keyed() && std::isnan(entry.number)) return "InvalidValue";
    if (std::any_of(all.begin(), all.end(), [&](auto const& i) { return i.child == child; })) return {};
    if (isTaken(n, slot, entry, child)) return "UniquenessConstraint";
    run([&] {
        contain(n, slot, child);
        place(n, slot, child);
    });
    return {};
}

}  // namespace records
