#include "world.h"

#include "dump.h"
#include "values.h"

#include <keel/text.h>

#include <algorithm>
#include <limits>

namespace records {

using namespace quay::zero;
using Shape = Slot::Shape;

World::World(Plan const& plan, std::size_t limit, bool listening) : plan_(plan), listening_(listening) {
    reference_.setLimit(limit);
    model_->enableHistory(limit);
    if (listening) model_->addListener([this](ChangeSet const& c) { hear(c); });
}

World::~World() {
    while (!open_.empty()) open_.pop_back();
}

void World::run(Operation const& o) {
    step(o);
    auto const expected = reference_.takeReport();
    if (listening_) RC_ASSERT(heard_ == expected);
    heard_.clear();
}

void World::run(std::vector<Operation> const& operations) {
    for (std::size_t i = 0; i < operations.size(); ++i) {
        run(operations[i]);
        if (i % 4 == 0) compare();
    }
    compare();
}

void World::compare() {
    RC_ASSERT(text() == reference_.dump());
    RC_ASSERT(model_->elementCount() == reference_.order().size());
    model_->forEachElement([&](ModelElement::Impl& e) { RC_ASSERT(&e == identity_.at(numberOf(e.uuid()))); });
    for (auto const& [n, handle] : held_) RC_ASSERT(bool(handle) == reference_.isAlive(n));
}

// --- Looking ---------------------------------------------------------------------------------------------------------

/// The number of the element with this id. A new element may have taken the id of a dead one: the living one counts.
int World::numberOf(boost::uuids::uuid const& id) const {
    int found = -1;
    for (auto const& [n, known] : ids_) {
        if (known == id && (found < 0 || reference_.isAlive(n))) found = n;
    }
    return found;
}

ModelElement World::element(int n) const {
    ModelElement found;
    model_->forEachElement([&](ModelElement::Impl& e) {
        if (e.uuid() == ids_.at(n)) found = ModelElement(&e);
    });
    return found;
}

/// The model as text, in the form of Reference::dump.
std::string World::text() const {
    std::string out;
    model_->forEachElement([&](ModelElement::Impl& e) {
        int const n = numberOf(e.uuid());
        out += show(e.uuid()) + ' ' + keel::toUtf8(e.getMetaClass()->getName());
        if (e.containerImpl() != nullptr) {
            auto const feature = e.containmentFeature();
            for (int s : slotsOf(numberOf(e.containerImpl()->uuid()))) {
                if (slotAt(s).property == feature)
                    out += " in " + show(e.containerImpl()->uuid()) + '.' + slotAt(s).name;
            }
        }
        for (int s : slotsOf(n)) {
            out += ' ' + slotAt(s).name + '=' + show(e.getPropertyValue(slotAt(s).property, kPublic));
        }
        out += '\n';
    });
    return out + dumpHistory(model_);
}

void World::hear(ChangeSet const& c) {
    RC_ASSERT(heard_.empty());
    for (auto const& e : c.created()) heard_.insert('+' + show(e->uuid()));
    for (auto const& e : c.destroyed()) heard_.insert('-' + show(e->uuid()));
    for (auto const& e : c.changed()) {
        std::string const owner = show(e.element()->uuid());
        for (auto const& p : e.properties()) {
            std::string name;
            for (int s : slotsOf(numberOf(e.element()->uuid()))) {
                if (slotAt(s).property == p) name = slotAt(s).name;
            }
            heard_.insert(owner + '.' + name + ' ' + show(e.oldValue(p)) + " -> " + show(e.newValue(p)));
        }
    }
}

Value World::valueOf(Slot const& s, std::uint8_t by) {
    auto const type = s.property->getType();
    if (type == meta::StandardTypes::realMeta && by % 5 == 4) {
        return {type, std::numeric_limits<double>::quiet_NaN(), ValueFlags::One};
    }
    return sample(type, by % 4);
}

ReferenceCollection& World::children(ModelElement const& e, int s) const {
    auto const view = e->getPropertyValue(slotAt(s).property, kPublic);
    return dynamic_cast<ReferenceCollection&>(*view.getCollection<AbstractOwnedCollection>());
}

// --- Elements and transactions ---------------------------------------------------------------------------------------

int World::enter(int kind) {
    ModelElement::Impl* made = nullptr;
    model_->forEachElement([&](ModelElement::Impl& e) {
        int const known = numberOf(e.uuid());
        if (made == nullptr && (known < 0 || !reference_.isAlive(known))) made = &e;
    });
    RC_ASSERT(made != nullptr);
    int const n = reference_.create(kind, show(made->uuid()));
    ids_[n] = made->uuid();
    identity_[n] = made;
    return n;
}

void World::create(int kind) {
    both([&] { plan_.make(kind, model_); }, [&] { enter(kind); });
}

void World::createUnderUsedId(Operation const& o) {
    if (ids_.empty()) return;
    boost::uuids::uuid const id = std::next(ids_.begin(), o.a % static_cast<int>(ids_.size()))->second;
    int const kind = o.b % plan_.kinds();
    if (reference_.isAlive(numberOf(id))) {
        refused("UniquenessConstraint", [&] { plan_.make(kind, model_, id); });
    } else if (!full()) {
        both([&] { plan_.make(kind, model_, id); }, [&] { enter(kind); });
    }
}

void World::destroy(Operation const& o, int n) {
    both(
        [&] {
            // Without a savepoint of its own, if a transaction is open.
            bool const plain = model_->inTransaction() && o.b % 2 == 0;
            plain ? element(n)->destroyRecursively(false, true, false) : element(n)->destroy();
        },
        [&] { reference_.destroy(n); });
}

/// Removes a child from its property and adds it again, in one transaction.
void World::putBack(Operation const& o, int n) {
    int const owner = reference_.at(n).container;
    if (owner < 0) return;
    int const s = reference_.at(n).slot;
    if (slotAt(s).shape == Shape::Child) return;
    reference_.begin();
    Transaction transaction = model_->beginTransaction(false);
    for (int i = 0; i <= o.b % 2; ++i) {
        auto& place = *children(element(owner), s).getGenericInterface();
        both([&] { place.genericRemove(element(n)); }, [&] { reference_.remove(owner, s, itemOf(n)); });
        both([&] { place.genericAdd(element(n)); }, [&] { return reference_.add(owner, s, n); });
    }
    reference_.commit();
    transaction.commit(boost::none);
}

/// Ends an open savepoint, and with it those inside; their objects are destroyed afterwards.
void World::endSavepoint(std::size_t number, bool commit) {
    while (reference_.depth() > number + 1) reference_.rollback();
    commit ? reference_.commit() : reference_.rollback();
    if (commit) {
        open_[number]->commit(boost::none);
        open_[number]->commit(boost::none);  // a second commit does nothing
    }
    open_[number].reset();
    open_.resize(number);
}

void World::replay(bool redo) {
    bool did = false;
    bool expected = false;
    both([&] { did = redo ? model_->redo() : model_->undo(); },
         [&] { return redo ? reference_.redo(expected) : reference_.undo(expected); });
    RC_ASSERT(did == expected);
}

void World::step(Operation const& o) {
    if (o.kind == Kind::ActAgain) return step({Kind::Act, last_.a, last_.b, o.c, o.d});
    if (o.kind == Kind::Act) last_ = o;
    bool const isOpen = !open_.empty();
    switch (o.kind) {
        case Kind::Particular:
            return actParticularly(o);
        case Kind::Create:
            return full() ? void() : create(o.a % plan_.kinds());
        case Kind::CreateUnderUsedId:
            return createUnderUsedId(o);
        case Kind::Begin:
        case Kind::BeginSystem:
            if (open_.size() >= 5) return;
            reference_.begin(o.kind == Kind::BeginSystem);
            open_.emplace_back(model_->beginTransaction(o.kind == Kind::BeginSystem));
            return;
        case Kind::Commit:
        case Kind::Rollback:
            return isOpen ? endSavepoint(open_.size() - 1, o.kind == Kind::Commit) : void();
        case Kind::CommitOuter:
        case Kind::RollbackOuter:
            return isOpen ? endSavepoint(o.a % open_.size(), o.kind == Kind::CommitOuter) : void();
        case Kind::Undo:
        case Kind::Redo:
            return replay(o.kind == Kind::Redo);
        case Kind::Limit:
            reference_.setLimit(o.a % 5);
            return model_->enableHistory(o.a % 5);
        case Kind::LetGo:
            return held_.clear();
        default:
            break;
    }
    if (o.kind == Kind::Find && !ids_.empty()) {
        auto const& id = std::next(ids_.begin(), o.a % static_cast<int>(ids_.size()))->second;
        auto const found = model_->findElement(id, FindElementBehavior::InMemoryOnly);
        int const n = numberOf(id);
        RC_ASSERT(found.impl() == (reference_.isAlive(n) ? identity_.at(n) : nullptr));
    }
    if (!any()) return;
    int const n = pick(o.a);
    if (o.kind == Kind::Hold) held_.insert_or_assign(n, element(n));
    if (o.kind == Kind::Destroy) destroy(o, n);
    if (o.kind == Kind::PutBack) putBack(o, n);
    if ((o.kind != Kind::Refused && o.kind != Kind::Act) || slotsOf(n).empty()) return;
    int const s = slotsOf(n)[o.b % slotsOf(n).size()];
    if (o.kind == Kind::Refused) refuse(o, n, s);
    if (o.kind == Kind::Act) act(o, n, s);
}

// --- Properties ------------------------------------------------------------------------------------------------------

void World::act(Operation const& o, int n, int s) {
    switch (slotAt(s).shape) {
        case Shape::Single:
        case Shape::Optional:
        case Shape::Array:
            return actOnValue(o, n, s);
        case Shape::Sequence:
        case Shape::Set:
            return actOnValues(o, n, s);
        case Shape::Child:
            return actOnChild(o, n, s);
        default:
            return actOnChildren(o, n, s);
    }
}

void World::actOnValue(Operation const& o, int n, int s) {
    Slot const& slot = slotAt(s);
    int const place = reference_.at(n).slot;
    if (!plan_.rekeys() && place >= 0 && slotAt(place).keySlot == s) return;
    bool const unset = slot.shape == Shape::Optional && o.c % 4 == 0;
    Value const value = unset ? Value(slot.property->getType(), ValueFlags::Optional) : valueOf(slot, o.d);
    both([&] { element(n)->setPropertyValue(slot.property, value, kPublic); },
         [&] { return reference_.write(n, s, unset ? std::nullopt : std::optional(itemOf(value))); });
}

void World::actOnValues(Operation const& o, int n, int s) {
    Value const view = element(n)->getPropertyValue(slotAt(s).property, kPublic);
    auto& values = dynamic_cast<AbstractPrimitiveCollection&>(*view.getCollection<AbstractOwnedCollection>());
    auto* const positions = values.getGenericInterface();
    Value const value = valueOf(slotAt(s), o.d);
    Item const item = itemOf(value);
    std::size_t const size = values.size();
    std::size_t const position = o.d / 4U % (size + 2);
    switch (o.c % (positions == nullptr ? 4 : 7)) {
        case 0:
            return both([&] { values.genericAdd(value); }, [&] { return reference_.insert(n, s, size, item); });
        case 1:
            // Removing a value that the sequence doesn't contain changes nothing.
            return both([&] { values.genericRemove(value); }, [&] { reference_.remove(n, s, item); });
        case 2:
            return both([&] { values.clear(); }, [&] { reference_.clear(n, s); });
        case 3:
            return assign(o, n, s);
        case 4:
            return both([&] { positions->genericInsert(value, position); },
                        [&] { return reference_.insert(n, s, position, item); });
        case 5:
            return both([&] { positions->genericRemoveAt(position); },
                        [&] { return reference_.erase(n, s, position); });
        default:
            return both([&] { positions->genericReplace(value, position); },
                        [&] { return reference_.replace(n, s, position, item); });
    }
}

/// Assigns the content of the same property of another element, or of the same one.
void World::assign(Operation const& o, int n, int s) {
    auto const has = [&](int other) { return std::count(slotsOf(other).begin(), slotsOf(other).end(), s) > 0; };
    int const other = pickIf(o.d, has);
    // Not for a map while keys may clash, nor when an element would become a child of something that it contains.
    auto const items = reference_.items(other, s);
    for (Item const& i : items) {
        if (i.child >= 0 && reference_.isAbove(i.child, n)) return;
    }
    Value const view = element(other)->getPropertyValue(slotAt(s).property, kPublic);
    both([&] { element(n)->setPropertyValue(slotAt(s).property, view, kPublic); },
         [&] {
             reference_.together([&] {
                 reference_.clear(n, s);
                 for (Item const& i : items) {
                     i.child >= 0 ? reference_.add(n, s, i.child)
                                  : reference_.insert(n, s, reference_.items(n, s).size(), i);
                 }
             });
         });
}

void World::actOnChild(Operation const& o, int n, int s) {
    int const child = o.c % 4 == 0 ? -1 : pickChild(slotAt(s), o.d);
    Value const value = Value::createElementValue(slotAt(s).property, child < 0 ? ModelElement() : element(child));
    both([&] { element(n)->setPropertyValue(slotAt(s).property, value, kPublic); },
         [&] { return reference_.writeChild(n, s, child); });
}

void World::actOnChildren(Operation const& o, int n, int s) {
    int const child = pickChild(slotAt(s), o.d);
    if (child < 0) return;
    auto& generic = *children(element(n), s).getGenericInterface();
    auto* const positions = dynamic_cast<GenericSequenceInterface*>(&generic);
    Item const item = itemOf(child);
    std::size_t const size = generic.genericSize();
    std::size_t const position = o.d / 4U % (size + 2);
    switch (o.c % (positions == nullptr ? 6 : 10)) {
        case 0:
        case 1:
            return both([&] { generic.genericAdd(element(child)); }, [&] { return reference_.add(n, s, child); });
        case 2:
            return both([&] { generic.genericRemove(element(child)); }, [&] { reference_.remove(n, s, item); });
        case 3:
            return both([&] { generic.genericClear(); }, [&] { reference_.clear(n, s); });
        case 4:
            // Positions aren't counted if a member occurs twice.
            return positions == nullptr ? assign(o, n, s) : void();
        case 5:
            return both([&] { generic.genericEnsureAt(element(child), position); },
                        [&] {
                            if (positions == nullptr) return reference_.add(n, s, child);
                            return reference_.insert(n, s, std::min(position, size), item);
                        });
        case 6:
            return both([&] { positions->genericInsertAt(element(child), position); },
                        [&] { return reference_.insert(n, s, position, item); });
        case 7:
            return both([&] { positions->genericRemoveAt(position); },
                        [&] { return reference_.erase(n, s, position); });
        default:
            return both([&] { positions->genericSetAt(element(child), position); },
                        [&] { return reference_.replace(n, s, position, item); });
    }
}

/// Values that no element takes: a value of another type, and an element of another class or of another model.
void World::refuse(Operation const& o, int n, int s) {
    Slot const& slot = slotAt(s);
    Value const wrong = wrongValue(slot.property->getType());
    auto const set = [&](Value const& value) { element(n)->setPropertyValue(slot.property, value, kPublic); };
    refused("CannotCastIncompatibleTypes", [&] { set(wrong); });
    if (slot.shape == Shape::Sequence || slot.shape == Shape::Set) {
        Value const view = element(n)->getPropertyValue(slot.property, kPublic);
        auto& values = dynamic_cast<AbstractPrimitiveCollection&>(*view.getCollection<AbstractOwnedCollection>());
        refused("CannotCastIncompatibleTypes", [&] { values.genericAdd(wrong); });
    }
    if (!slot.owns) return;
    Model const elsewhere = Model::create();
    ModelElement foreign;
    ModelElement stranger;
    for (int k = 0; k < plan_.kinds(); ++k) (plan_.fits(k, slot) ? foreign : stranger) = plan_.make(k, elsewhere);
    auto const valueOfElement = [&](ModelElement const& e) { return Value::createElementValue(slot.property, e); };
    if (slot.shape == Shape::Child) {
        refused("CannotCreateCrossModelAssociation", [&] { set(valueOfElement(foreign)); });
        if (stranger) refused("CannotCastIncompatibleTypes", [&] { set(valueOfElement(stranger)); });
        return;
    }
    auto& generic = *children(element(n), s).getGenericInterface();
    refused("CannotCreateCrossModelAssociation", [&] { generic.genericAdd(foreign); });
    if (stranger) refused("CannotAddIncompatibleTypes", [&] { generic.genericAdd(stranger); });
    // Fails as a whole: the present members would be removed, but the new one isn't accepted.
    ModelElement const other = plan_.make(reference_.at(n).kind, elsewhere);
    children(other, s).getGenericInterface()->genericAdd(foreign);
    Value const theirs = other->getPropertyValue(slot.property, kPublic);
    if (o.c % 2 == 0) refused("CannotCreateCrossModelAssociation", [&] { set(theirs); });
}

}  // namespace records
