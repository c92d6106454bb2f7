// Random sequences of typed and generic operations on records of every shape, step by step against the
// reference.
#include "../common/random.h"
#include "../common/expect.h"
#include "support/dump.h"
#include "support/reference.h"
#include "support/samples.h"
#include "support/typed_operations.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <keel/text.h>
#include <quay/zero/change_set.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/primitive_collection.h>

#include <boost/uuid/uuid_io.hpp>
#include <limits>
#include <optional>
#include <ostream>

namespace {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace records;
using Shape = Slot::Shape;

constexpr auto const& kPublic = ReflectionPrivateTag::PUBLIC_ACCESS;

enum class Kind : std::uint8_t {
    Act,
    Typed,
    Create,
    CreateInto,
    Build,
    Refused,
    Destroy,
    Begin,
    Commit,
    Rollback,
    Undo,
    Redo
};

struct Operation {
    Kind kind;
    std::uint8_t a, b, c, d;
};
std::ostream& operator<<(std::ostream& out, Operation const& o) {
    return out << int(o.kind) << '(' << int(o.a) << ' ' << int(o.b) << ' ' << int(o.c) << ' ' << int(o.d) << ')';
}

class World {
public:
    World(std::size_t limit, bool listening) {
        for (char const* kind : {"ModelRefInfoRoot", "VarTsUIDMap", "VarTsUIDEntry", "CompFunction",
                                 "VariantFunctionNetEMVCE", "InportInformation"}) {
            create(plan().kind(kind));
        }
        reference_.takeReport();
        reference_.setLimit(limit);
        model_->enableHistory(limit);
        if (listening) listener_ = model_->addListener([this](ChangeSet const& c) { hear(c); });
    }
    ~World() {
        while (!open_.empty()) open_.pop_back();
    }
    World(World const&) = delete;
    World& operator=(World const&) = delete;

    void run(Operation const& o) {
        step(o);
        auto const expected = reference_.takeReport();
        if (listener_ != 0) RC_ASSERT(heard_ == expected);
        heard_.clear();
    }
    void compare() {
        RC_ASSERT(text() == reference_.dump());
        model_->forEachElement([](ModelElement::Impl& e) {
            if (auto const port = InportInformation::cast(ModelElement(&e)); port.impl() != nullptr) {
                auto const& rates = *port->getRateInfos();
                RC_ASSERT(port->getRateInfo() == (rates.empty() ? RateInfo() : rates[0]));
            }
        });
    }

private:
    // --- Looking.

    std::string text() const {
        std::string out;
        model_->forEachElement([&](ModelElement::Impl& e) {
            ElementKind const& kind = kindOf(reference_.at(numbers_.at(e.uuid())).kind);
            out += boost::uuids::to_string(e.uuid()) + ' ' + keel::toUtf8(e.getMetaClass()->getName());
            if (e.containerImpl() != nullptr) {
                out += " in " + boost::uuids::to_string(e.containerImpl()->uuid()) + '.' +
                       keel::toUtf8(e.containmentFeature()->getName());
            }
            for (int s : kind.slots)
                out += ' ' + slotOf(s).name + '=' + show(e.getPropertyValue(slotOf(s).property, kPublic));
            out += '\n';
        });
        return out + (model_->inTransaction() ? "open" : "closed") + ", undo " + std::to_string(model_->undoDepth()) +
               ", redo " + std::to_string(model_->redoDepth()) + '\n';
    }
    void hear(ChangeSet const& c) {
        RC_ASSERT(heard_.empty());
        auto const name = [](ModelElement const& e) { return boost::uuids::to_string(e->uuid()); };
        for (auto const& e : c.created()) heard_.insert('+' + name(e));
        for (auto const& e : c.destroyed()) heard_.insert('-' + name(e));
        for (auto const& e : c.changed()) {
            for (auto const& p : e.properties()) {
                heard_.insert(name(e.element()) + '.' + keel::toUtf8(p->getName()) + ' ' + show(e.oldValue(p)) +
                              " -> " + show(e.newValue(p)));
            }
        }
    }

    static Slot const& slotOf(int s) { return plan().slots[static_cast<std::size_t>(s)]; }
    static ElementKind const& kindOf(int k) { return plan().kinds[static_cast<std::size_t>(k)]; }
    bool any() const { return !reference_.order().empty(); }
    int pick(std::uint8_t by) const { return reference_.order()[by % reference_.order().size()]; }
    /// One of that kind, or -1.
    int pickOf(int kind, std::uint8_t by) const {
        std::vector<int> fitting;
        for (int n : reference_.order()) {
            if (reference_.at(n).kind == kind) fitting.push_back(n);
        }
        return fitting.empty() ? -1 : fitting[by % fitting.size()];
    }
    ModelElement element(int n) const { return elements_.at(n); }
    static Value valueOf(Slot const& s, std::uint8_t by) {
        auto const type = s.property->getType();
        if (type == meta::StandardTypes::realMeta && by % 5 == 4) {
            return {type, std::numeric_limits<double>::quiet_NaN(), ValueFlags::One};
        }
        return sample(type, by % 4);
    }

    // --- Doing.

    /// The model goes first. A failure leaves no trace in it.
    template <class F, class G>
    void both(F&& inModel, G&& inReference) {
        std::string const failure = failureOf(inModel);
        std::string const expected = inReference();
        RC_ASSERT(failure == expected);
        if (!failure.empty()) compare();
    }
    template <class F>
    void refused(std::string const& expected, F&& f) {
        both(f, [&] { return expected; });
    }

    /// Enters an element that the model made; `inModel` made `position` others before it.
    int enter(int kind, std::size_t position = 0) {
        std::vector<ModelElement> fresh;
        model_->forEachElement([&](ModelElement::Impl& e) {
            if (!numbers_.contains(e.uuid())) fresh.emplace_back(&e);
        });
        RC_ASSERT(position < fresh.size());
        ModelElement const made = fresh[position];
        int const n = reference_.create(kind, boost::uuids::to_string(made->uuid()));
        pending_.emplace_back(n, made);
        return n;
    }
    void settle() {
        for (auto const& [n, made] : pending_) {
            elements_.emplace(n, made);
            numbers_.emplace(made->uuid(), n);
        }
        pending_.clear();
    }

    void create(int kind) {
        both([&] { make(kindOf(kind).type, model_); },
             [&] {
                 enter(kind);
                 return std::string();
             });
        settle();
    }
    bool full() const { return reference_.order().size() >= 14; }

    void step(Operation const& o) {
        switch (o.kind) {
            case Kind::Create:
                if (!full()) create(o.a % static_cast<int>(plan().kinds.size()));
                return;
            case Kind::CreateInto:
                return createInto(o);
            case Kind::Build:
                return build(o);
            case Kind::Begin:
                if (open_.size() >= 4) return;
                reference_.begin();
                open_.push_back(model_->beginTransaction(false));
                return;
            case Kind::Commit:
                if (open_.empty()) return;
                reference_.commit();
                open_.back().commit(boost::none);
                open_.pop_back();
                return;
            case Kind::Rollback:
                if (open_.empty()) return;
                reference_.rollback();
                open_.pop_back();
                return;
            case Kind::Undo:
            case Kind::Redo: {
                bool did = false;
                bool expected = false;
                bool const undo = o.kind == Kind::Undo;
                both([&] { did = undo ? model_->undo() : model_->redo(); },
                     [&] { return undo ? reference_.undo(expected) : reference_.redo(expected); });
                RC_ASSERT(did == expected);
                return;
            }
            default:
                break;
        }
        if (!any()) return;
        int const n = pick(o.a);
        if (o.kind == Kind::Destroy)
            // Without a level of its own, where there is one.
            return both(
                [&] {
                    bool const plain = model_->inTransaction() && o.b % 2 == 0;
                    plain ? element(n)->destroyRecursively(false, true, false) : element(n)->destroy();
                },
                [&] {
                    reference_.destroy(n);
                    return std::string();
                });
        auto const& slots = kindOf(reference_.at(n).kind).slots;
        int const s = slots[o.b % slots.size()];
        if (o.kind == Kind::Typed) return typed(o, n);
        if (o.kind == Kind::Refused) return refuse(o, n, s);
        act(o, n, s);
    }

    void act(Operation const& o, int n, int s) {
        Slot const& slot = slotOf(s);
        switch (slot.shape) {
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

    void actOnValue(Operation const& o, int n, int s) {
        Slot const& slot = slotOf(s);
        bool const unset = slot.shape == Shape::Optional && o.c % 4 == 0;
        Value const value = unset ? Value(slot.property->getType(), ValueFlags::Optional) : valueOf(slot, o.d);
        both([&] { element(n)->setPropertyValue(slot.property, value, kPublic); },
             [&] { return reference_.write(n, s, unset ? std::nullopt : std::optional(itemOf(value))); });
    }

    void typed(Operation const& o, int n) {
        std::vector<TypedWrite const*> fitting;
        for (auto const& w : typedWrites()) {
            auto const& slots = kindOf(reference_.at(n).kind).slots;
            if (std::find(slots.begin(), slots.end(), w.slot) != slots.end()) fitting.push_back(&w);
        }
        if (auto const port = InportInformation::cast(element(n)); port.impl() != nullptr) {
            RateInfo rate;
            rate.setPeriod(o.d % 3);
            Value const value(TypeOf<RateInfo>::type(), rate, ValueFlags::One);
            int const s = plan().slot("InportInformation", "rateInfos");
            // Two changes, so that a listener would hear of two commits; as one here.
            auto transaction = model_->beginTransaction(false);
            port->setRateInfo(rate);
            transaction.commit(boost::none);
            reference_.together([&] {
                reference_.clear(n, s);
                reference_.insert(n, s, 0, itemOf(value));
            });
            return;
        }
        if (fitting.empty()) return;
        auto const& w = *fitting[o.c % fitting.size()];
        if (slotOf(w.slot).shape == Shape::Optional) {
            auto const value = o.d % 4 == 0 ? boost::optional<int>() : boost::optional<int>(o.d % 4);
            auto const held = Value(meta::StandardTypes::integerMeta, value.value_or(0), ValueFlags::One);
            return both(
                [&] { ModelRefInfoRoot::cast(element(n))->setNumTs(value); },
                [&] { return reference_.write(n, w.slot, value ? std::optional(itemOf(held)) : std::nullopt); });
        }
        Value const value = valueOf(slotOf(w.slot), o.d);
        both([&] { w.write(element(n), value); }, [&] { return reference_.write(n, w.slot, itemOf(value)); });
    }

    void actOnValues(Operation const& o, int n, int s) {
        Slot const& slot = slotOf(s);
        Value const view = element(n)->getPropertyValue(slot.property, kPublic);
        auto& values = dynamic_cast<AbstractPrimitiveCollection&>(*view.getCollection<AbstractOwnedCollection>());
        auto* const positions = values.getGenericInterface();
        Value const value = valueOf(slot, o.d);
        Item const item = itemOf(value);
        std::size_t const size = values.size();
        std::size_t const position = o.d / 4U % (size + 2);
        auto const none = std::string();
        switch (o.c % (positions == nullptr ? 4 : 7)) {
            case 0:
                return both([&] { values.genericAdd(value); }, [&] { return reference_.insert(n, s, size, item); });
            case 1:
                // Taking a value out of a sequence that hasn't got it is no change at all.
                return both([&] { values.genericRemove(value); },
                            [&] {
                                reference_.remove(n, s, item);
                                return none;
                            });
            case 2:
                return both([&] { values.clear(); },
                            [&] {
                                reference_.clear(n, s);
                                return none;
                            });
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

    /// The content becomes that of the same property of another element, or of itself.
    void assign(Operation const& o, int n, int s) {
        int const other = pickOf(reference_.at(n).kind, o.d);
        Value const view = element(other)->getPropertyValue(slotOf(s).property, kPublic);
        both([&] { element(n)->setPropertyValue(slotOf(s).property, view, kPublic); },
             [&] {
                 auto const items = reference_.items(other, s);
                 reference_.together([&] {
                     reference_.clear(n, s);
                     for (Item const& i : items) {
                         i.child >= 0 ? reference_.add(n, s, i.child)
                                      : reference_.insert(n, s, reference_.items(n, s).size(), i);
                     }
                 });
                 return std::string();
             });
    }

    void actOnChild(Operation const& o, int n, int s) {
        Slot const& slot = slotOf(s);
        int const child = o.c % 4 == 0 ? -1 : pickOf(slot.childKind, o.d);
        Value const value = Value::createElementValue(slot.property, child < 0 ? ModelElement() : element(child));
        both([&] { element(n)->setPropertyValue(slot.property, value, kPublic); },
             [&] { return reference_.writeChild(n, s, child); });
    }

    void actOnChildren(Operation const& o, int n, int s) {
        Slot const& slot = slotOf(s);
        Value const view = element(n)->getPropertyValue(slot.property, kPublic);
        auto& generic =
            *dynamic_cast<ReferenceCollection&>(*view.getCollection<AbstractOwnedCollection>()).getGenericInterface();
        auto* const positions = dynamic_cast<GenericSequenceInterface*>(&generic);
        int const child = pickOf(slot.childKind, o.d);
        if (child < 0) return createInto(o);
        Item item;
        item.child = child;
        std::size_t const size = generic.genericSize();
        std::size_t const position = o.d / 4U % (size + 2);
        auto const none = std::string();
        auto const remove = [&] {
            reference_.remove(n, s, item);
            return none;
        };
        switch (o.c % (positions == nullptr ? 6 : 10)) {
            case 0:
            case 1:
                return both([&] { generic.genericAdd(element(child)); }, [&] { return reference_.add(n, s, child); });
            case 2:
                return both([&] { generic.genericRemove(element(child)); }, remove);
            case 3:
                return both([&] { generic.genericClear(); },
                            [&] {
                                reference_.clear(n, s);
                                return none;
                            });
            case 4:
                // A map's content isn't moved into itself while keys may clash, nor doubled members counted
                // twice.
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

    void createInto(Operation const& o) {
        auto const& creation = typedCreations()[o.b % typedCreations().size()];
        Slot const& slot = slotOf(creation.slot);
        int kind = 0;
        while (std::find(kindOf(kind).slots.begin(), kindOf(kind).slots.end(), creation.slot) ==
               kindOf(kind).slots.end())
            ++kind;
        int const n = pickOf(kind, o.a);
        if (n < 0 || full()) return;
        auto const builder = kindOf(slot.childKind).type->instantiateBuilder(model_);
        bool const built = o.c % 2 == 0;
        std::optional<Value> key;
        if (built && slot.keyed()) {
            key = valueOf(slotOf(slot.keySlot), o.d);
            builder->setOrAdd(slotOf(slot.keySlot).property, *key);
        }
        place(slot, n, creation.slot, key, [&] { creation.create(element(n), built ? builder.get() : nullptr); });
    }

    /// `create` makes a child in a slot, or neither if the key is in use or none.
    template <class F>
    void place(Slot const& slot, int n, int s, std::optional<Value> const& key, F&& create) {
        reference_.begin();
        std::string const failure = failureOf(create);
        if (!failure.empty()) {
            reference_.rollback();
            bool const nan = key && show(*key) == "nan";
            RC_ASSERT(slot.keyed());
            RC_ASSERT(failure == (nan ? "InvalidValue" : "UniquenessConstraint"));
            if (!nan) RC_ASSERT(isKeyUsed(n, s, key));
            return compare();
        }
        int const child = enter(slot.childKind);
        if (key) reference_.write(child, slot.keySlot, itemOf(*key));
        std::string const expected =
            slot.shape == Shape::Child ? reference_.writeChild(n, s, child) : reference_.add(n, s, child);
        RC_ASSERT(expected == "");
        reference_.commit();
        settle();
    }
    bool isKeyUsed(int n, int s, std::optional<Value> const& key) const {
        auto const& slot = slotOf(s);
        Model const scratch = Model::create();
        Value const wanted =
            key ? *key
                : make(kindOf(slot.childKind).type, scratch)->getPropertyValue(slotOf(slot.keySlot).property, kPublic);
        auto const& all = reference_.items(n, s);
        return std::any_of(all.begin(), all.end(), [&](Item const& i) { return i.shown == show(wanted); });
    }

    /// A map with two entries by one builder, as an element of its own; equal keys fail, and leave nothing.
    void build(Operation const& o) {
        if (reference_.order().size() >= 12) return;
        VarTsUIDMap::Builder builder(model_);
        int const kind = plan().kind("VarTsUIDEntry");
        int const key = plan().slot("VarTsUIDEntry", "varTsIdx");
        int const text = plan().slot("VarTsUIDEntry", "varTsUID");
        for (int index : {o.a % 4, o.b % 4}) {
            auto child = std::make_unique<VarTsUIDEntry::Builder>();
            child->setVarTsIdx(index).setVarTsUID(u"built");
            builder.addEntries(std::move(child));
        }
        bool const clash = o.a % 4 == o.b % 4;
        both([&] { builder.create(); },
             [&]() -> std::string {
                 if (clash) return "UniquenessConstraint";
                 reference_.together([&] {
                     int const map = enter(plan().kind("VarTsUIDMap"));
                     std::size_t position = 1;
                     for (int index : {o.a % 4, o.b % 4}) {
                         int const entry = enter(kind, position++);
                         reference_.write(entry, key,
                                          itemOf({meta::StandardTypes::integerMeta, index, ValueFlags::One}));
                         reference_.write(
                             entry, text,
                             itemOf({meta::StandardTypes::stringMeta, std::u16string(u"built"), ValueFlags::One}));
                         reference_.add(map, plan().slot("VarTsUIDMap", "entries"), entry);
                     }
                 });
                 return {};
             });
        settle();
    }

    /// What no element takes: a value of another type, an element of another class, of another model, or its
    /// owner.
    void refuse(Operation const& o, int n, int s) {
        Slot const& slot = slotOf(s);
        auto const type = slot.property->getType();
        refused("CannotCastIncompatibleTypes",
                [&] { element(n)->setPropertyValue(slot.property, wrongValue(type), kPublic); });
        if (!slot.owns()) {
            if (slot.shape == Shape::Sequence || slot.shape == Shape::Set) {
                Value const view = element(n)->getPropertyValue(slot.property, kPublic);
                auto& values =
                    dynamic_cast<AbstractPrimitiveCollection&>(*view.getCollection<AbstractOwnedCollection>());
                refused("CannotCastIncompatibleTypes", [&] { values.genericAdd(wrongValue(type)); });
            }
            return;
        }
        Model const elsewhere = Model::create();
        ModelElement const foreign = make(type, elsewhere);
        ModelElement const stranger = makeStranger(type, elsewhere);
        if (slot.shape == Shape::Child) {
            refused("CannotCreateCrossModelAssociation", [&] {
                element(n)->setPropertyValue(slot.property, Value::createElementValue(slot.property, foreign), kPublic);
            });
            refused("CannotCastIncompatibleTypes", [&] {
                element(n)->setPropertyValue(slot.property, Value::createElementValue(slot.property, stranger),
                                             kPublic);
            });
            return;
        }
        Value const view = element(n)->getPropertyValue(slot.property, kPublic);
        auto& generic =
            *dynamic_cast<ReferenceCollection&>(*view.getCollection<AbstractOwnedCollection>()).getGenericInterface();
        refused("CannotCreateCrossModelAssociation", [&] { generic.genericAdd(foreign); });
        refused("CannotAddIncompatibleTypes", [&] { generic.genericAdd(stranger); });
        // All or nothing: the first members fit, the last doesn't.
        ModelElement const other = make(kindOf(reference_.at(n).kind).type, elsewhere);
        Value const theirs = other->getPropertyValue(slot.property, kPublic);
        dynamic_cast<ReferenceCollection&>(*theirs.getCollection<AbstractOwnedCollection>())
            .getGenericInterface()
            ->genericAdd(foreign);
        if (o.c % 2 == 0)
            refused("CannotCreateCrossModelAssociation",
                    [&] { element(n)->setPropertyValue(slot.property, theirs, kPublic); });
    }

    Reference reference_;
    std::map<boost::uuids::uuid, int> numbers_;
    std::map<int, ModelElement> elements_;
    std::vector<std::pair<int, ModelElement>> pending_;
    Reference::Report heard_;
    std::uint64_t listener_ = 0;
    Model model_ = Model::create();
    std::vector<Transaction> open_;
};

}  // namespace

namespace rc {

template <>
struct Arbitrary<Operation> {
    static Gen<Operation> arbitrary() {
        using K = Kind;
        return gen::build<Operation>(gen::set(&Operation::kind, gen::weightedElement<K>({{30, K::Act},
                                                                                         {10, K::Typed},
                                                                                         {8, K::Create},
                                                                                         {12, K::CreateInto},
                                                                                         {3, K::Build},
                                                                                         {3, K::Refused},
                                                                                         {3, K::Destroy},
                                                                                         {6, K::Begin},
                                                                                         {4, K::Commit},
                                                                                         {2, K::Rollback},
                                                                                         {5, K::Undo},
                                                                                         {4, K::Redo}})),
                                     gen::set(&Operation::a), gen::set(&Operation::b), gen::set(&Operation::c),
                                     gen::set(&Operation::d));
    }
};

}  // namespace rc

namespace {

TEST(RandomRecords, DoAsTheReferenceDoes) {
    randomly::check(500 * randomly::kEffort,
                    [](std::vector<Operation> const& operations, std::uint8_t limit, bool listening) {
                        World world(limit % 5, listening);
                        for (std::size_t i = 0; i < operations.size(); ++i) {
                            world.run(operations[i]);
                            if (i % 4 == 0) world.compare();
                        }
                        world.compare();
                    });
}

}  // namespace
