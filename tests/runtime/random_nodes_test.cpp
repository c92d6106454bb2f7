// Random sequences of operations on nodes, step by step against the reference.
#include "../common/expect.h"
#include "../common/random.h"
#include "support/dump.h"
#include "support/memory.h"
#include "support/node.h"
#include "support/operation.h"
#include "support/reference.h"

#include <quay/zero/change_set.h>

#include <cmath>
#include <limits>
#include <set>

namespace {

using namespace nodes;
using namespace quay::zero;

/// What a model does, beside what it ought to do.
class World {
public:
    World(std::size_t limit, bool listening) : model_(Model::create()) {
        if (listening) {
            model_->addListener([this](ChangeSet const& changes) { hear(changes); });
            listening_ = true;
        }
        setLimit(limit);
    }
    ~World() {
        while (!open_.empty()) open_.pop_back();
    }
    World(World const&) = delete;
    World& operator=(World const&) = delete;

    void run(Operation const& o) {
        step(o);
        auto const expected = reference_.takeReport();
        if (listening_) RC_ASSERT(heard_.value_or("nothing") == expected.value_or("nothing"));
        heard_ = std::nullopt;
    }
    void compare() {
        RC_ASSERT(dump(model_, {.names = &names_}) == reference_.dump());
        if (listening_ && open_.empty()) compareShadow();
        model_->forEachElement([&](ModelElement::Impl& e) { RC_ASSERT(&e == identity_.at(numberOf(e.uuid()))); });
        for (auto const& [n, handle] : held_) RC_ASSERT(bool(handle) == reference_.isAlive(n));
    }

private:
    using Texts = std::map<int, std::string>;
    using Shadow = std::map<boost::uuids::uuid, Texts>;

    // --- Finding.

    int numberOf(boost::uuids::uuid const& id) const {
        int found = -1;
        for (auto const& [n, known] : ids_) {
            if (known == id && (found < 0 || reference_.isAlive(n))) found = n;
        }
        return found;
    }
    /// The latest of those that had this place in memory.
    int numberOfDead(ModelElement const& e) const {
        int found = -1;
        for (auto const& [n, known] : identity_) {
            if (known == e.impl() && ids_.at(n) == e->uuid()) found = n;
        }
        return found;
    }
    /// Walks, so that the id index is only there if somebody asked it.
    Node node(int n) const {
        Node found;
        model_->forEachElement([&](ModelElement::Impl& e) {
            if (e.uuid() == ids_.at(n)) found = Node::of(&e);
        });
        return found;
    }
    bool any() const { return !reference_.order().empty(); }
    int pick(std::uint8_t by) const { return reference_.order()[by % reference_.order().size()]; }

    // --- Listening: what is heard must give a copy of the model.

    void hear(ChangeSet const& changes) {
        std::map<int, std::string> created, destroyed;
        std::map<std::pair<int, int>, std::string> changed;
        // An id may have gone to a new element within the transaction.
        for (auto const& e : changes.destroyed()) {
            int const n = numberOfDead(e);
            destroyed[n] = " " + names_.of(e->uuid());
            good_ = good_ && !e && shadow_.erase(e->uuid()) == 1;
        }
        for (auto const& e : changes.created()) {
            nameDrawn(e);
            int const n = numberOf(e->uuid());
            created[n] = " " + names_.of(e->uuid());
            good_ = good_ && bool(e) && !shadow_.contains(e->uuid());
            shadow_[e->uuid()] = textsOf(*e.impl());
        }
        for (auto const& change : changes.changed()) {
            auto const& e = change.element();
            int const n = numberOf(e->uuid());
            for (auto const& property : change.properties()) {
                int const index = property->getIndex();
                std::string const before = show(change.oldValue(property), names_);
                std::string const after = show(change.newValue(property), names_);
                changed[{n, index}] =
                    " " + names_.of(e->uuid()) + "." + std::to_string(index) + " " + before + " -> " + after;
                // Members that died meanwhile are marked in the old value as it is told.
                std::string unmarked = before;
                std::erase(unmarked, '+');
                if (unmarked == "-0") unmarked = "0";
                good_ = good_ && shadow_[e->uuid()][index] == unmarked;
                shadow_[e->uuid()][index] = after == "-0" ? "0" : after;
            }
        }
        std::string text = "created";
        for (auto const& [n, line] : created) text += line;
        text += "; destroyed";
        for (auto const& [n, line] : destroyed) text += line;
        text += "; changed";
        for (auto const& [at, line] : changed) text += line;
        if (heard_) good_ = false;  // told twice
        heard_ = text;
    }
    Texts textsOf(ModelElement::Impl const& e) const {
        bool const special = e.classTable().conformsTo(Special::classTable());
        Texts texts;
        for (int i = 1; i <= (special ? kParts : kByNumber); ++i)
            texts[i] = show(e, static_cast<std::size_t>(i), names_);
        if (texts[kNumber] == "-0") texts[kNumber] = "0";  // equal, so going from one to the other isn't told
        return texts;
    }
    Shadow allTexts() const {
        Shadow all;
        model_->forEachElement([&](ModelElement::Impl& e) { all[e.uuid()] = textsOf(e); });
        return all;
    }
    /// After a system transaction, of which listeners don't hear.
    void lookAnew() { shadow_ = allTexts(); }
    void compareShadow() const {
        RC_ASSERT(good_);
        RC_ASSERT(shadow_ == allTexts());
    }

    // --- Doing.

    template <class F>
    void check(std::string const& expected, F&& f) {
        std::string const failure = failureOf(f);
        RC_ASSERT(failure == expected);
        if (!failure.empty()) compare();
    }

    void create(bool special, std::uint8_t how) {
        if (reference_.order().size() >= 10) return;
        bool const drawn = how % 2 == 0;
        int const n = reference_.create(special, "#" + std::to_string(ids_.size() + 1));
        boost::uuids::uuid const id = drawn ? boost::uuids::uuid{} : idOf(static_cast<unsigned>(n) + 1);
        enter(n, id, special);
    }
    void enter(int n, boost::uuids::uuid const& id, bool special) {
        // The listener, or else the caller, puts a drawn id in.
        ids_[n] = id;
        Node const made = special ? Node(Special::create(model_, id)) : Node::create(model_, id);
        nameDrawn(made);
        identity_[n] = made.impl();
    }
    void nameDrawn(ModelElement const& e) {
        for (auto& [n, id] : ids_) {
            if (!id.is_nil()) continue;
            id = e->uuid();
            names_.give(id, reference_.name(n));
        }
    }
    void createUnderUsedId(std::uint8_t which) {
        if (ids_.empty()) return;
        auto const used = std::next(ids_.begin(), which % ids_.size());
        boost::uuids::uuid const id = used->second;
        bool const taken = reference_.isAlive(numberOf(id));
        if (!taken && reference_.order().size() >= 10) return;
        if (taken) {
            check("UniquenessConstraint", [&] { Node::create(model_, id); });
        } else {
            int const n = reference_.create(false, reference_.name(used->first));
            enter(n, id, false);
        }
    }
    void destroy(int n, std::optional<int> failAt) {
        static int countdown;
        int const size = reference_.subtreeSize(n);
        bool const fails = failAt && *failAt < size;
        if (!fails) reference_.destroy(n);
        countdown = failAt.value_or(1000);
        Hook const hook(Node::Impl::whenDestroying, [](Node::Impl&) {
            if (countdown-- == 0) throw 1;
        });
        // Without a level of its own, where there is one and nothing fails.
        bool const plain = model_->inTransaction() && !failAt && n % 2 == 0;
        check(fails ? "int" : "",
              [&] { plain ? node(n)->destroyRecursively(false, true, false) : node(n)->destroy(); });
    }
    void setLimit(std::size_t limit) {
        reference_.setLimit(limit);
        model_->enableHistory(limit);
    }
    /// A key is only written outside its map.
    bool mayWriteKey(int n, Index map) const {
        return !(reference_.at(n).container >= 0 && reference_.at(n).property == map);
    }
    /// Ends an open transaction, and with it those inside; their objects go after it.
    void endLevel(std::size_t level, bool commit) {
        if (open_.empty()) return;
        bool const unheard = commit && level == 0 && reference_.inSystem();
        while (reference_.depth() > level + 1) reference_.rollback();
        commit ? reference_.commit() : reference_.rollback();
        if (commit) {
            open_[level]->commit(boost::none);
            open_[level]->commit(boost::none);  // a second one does nothing
        }
        AllocationCount const allocations;
        open_[level].reset();
        long const allocated = allocations.soFar();
        RC_ASSERT(allocated == 0);
        open_.resize(level);
        if (unheard) lookAnew();
    }

    void step(Operation const& o) {
        switch (o.kind) {
            case Kind::Create:
                return create(false, o.a);
            case Kind::CreateSpecial:
                return create(true, o.a);
            case Kind::CreateUnderUsedId:
                return createUnderUsedId(o.a);
            case Kind::CreateFailing: {
                Hook const hook(Node::Impl::whenCreated, [](Node::Impl&) { throw 1; });
                return check("int", [&] { Node::create(model_); });
            }
            case Kind::Begin:
            case Kind::BeginSystem:
                if (open_.size() >= 5) return;
                reference_.begin(o.kind == Kind::BeginSystem);
                open_.emplace_back(model_->beginTransaction(o.kind == Kind::BeginSystem));
                return;
            case Kind::Commit:
                return endLevel(open_.size() - 1, true);
            case Kind::Rollback:
                return endLevel(open_.size() - 1, false);
            case Kind::CommitOuter:
                return endLevel(open_.empty() ? 0 : o.a % open_.size(), true);
            case Kind::RollbackOuter:
                return endLevel(open_.empty() ? 0 : o.a % open_.size(), false);
            case Kind::Undo:
            case Kind::Redo: {
                bool expected = false;
                bool did = false;
                bool const undo = o.kind == Kind::Undo;
                check(undo ? reference_.undo(expected) : reference_.redo(expected), [&] {
                    AllocationCount const allocations;
                    did = undo ? model_->undo() : model_->redo();
                    good_ = good_ && (listening_ || allocations.soFar() == 0);
                });
                RC_ASSERT(did == expected);
                RC_ASSERT(good_);
                return;
            }
            case Kind::Limit:
                return setLimit(o.a % 4);
            case Kind::Find: {
                if (ids_.empty()) return;
                auto const known = std::next(ids_.begin(), o.a % ids_.size());
                int const n = numberOf(known->second);
                auto const found = model_->findElement(known->second, FindElementBehavior::InMemoryOnly);
                RC_ASSERT(found.impl() == (reference_.isAlive(n) ? identity_.at(n) : nullptr));
                return;
            }
            case Kind::LetGo:
                held_.clear();
                return;
            default:
                break;
        }
        if (any()) stepOnNode(o, pick(o.a));
    }

    void stepOnNode(Operation const& o, int n) {
        int const small = o.b % 4;
        switch (o.kind) {
            case Kind::Destroy:
                return destroy(n, std::nullopt);
            case Kind::DestroyFailing:
                return destroy(n, small);
            case Kind::Hold:
                held_.insert_or_assign(n, node(n));
                return;
            case Kind::SetText: {
                if (!mayWriteKey(n, kByName)) return;
                std::u16string const text = std::u16string(o.c % 3 == 0 ? 30 : 1, static_cast<char16_t>(u'a' + small));
                reference_.set(n, kText, &Reference::Node::text, text);
                return node(n)->setText(text);
            }
            case Kind::SetNumber: {
                if (!mayWriteKey(n, kByNumber)) return;
                double const numbers[] = {0, -0.0, 1.5, std::numeric_limits<double>::quiet_NaN()};
                reference_.set(n, kNumber, &Reference::Node::number, numbers[small]);
                return node(n)->setNumber(numbers[small]);
            }
            case Kind::SetRank:
                if (!mayWriteKey(n, kByRank)) return;
                reference_.set(n, kRank, &Reference::Node::rank, small % 2);
                return node(n)->setRank(small % 2);
            case Kind::SetCount: {
                auto const count = small == 0 ? boost::optional<int>() : boost::optional<int>(small);
                reference_.set(n, kCount, &Reference::Node::count, count);
                return node(n)->setCount(count);
            }
            case Kind::SetBox:
                reference_.set(n, kBox, &Reference::Node::box, double(small));
                return node(n)->setBox({{double(small)}});
            case Kind::SetNote:
                if (!reference_.at(n).special) return;
                reference_.set(n, kNote, &Reference::Node::note, std::to_string(small));
                return Special::cast(node(n))->setNote(std::to_string(small));
            case Kind::PutBack:
                return putBack(o, n);
            case Kind::AddChild:
            case Kind::InsertChild:
            case Kind::ReplaceChild:
            case Kind::EraseChild:
            case Kind::RemoveChild:
            case Kind::ClearChildren:
                return stepOnSequence(o, n);
            case Kind::InsertKeyed:
            case Kind::RemoveKeyed:
            case Kind::ClearKeyed: {
                Node const owner = node(n);
                if (o.c % 3 == 0) return stepOnMap(o, n, kByName, owner->byName());
                if (o.c % 3 == 1) return stepOnMap(o, n, kByRank, owner->byRank());
                return stepOnMap(o, n, kByNumber, owner->byNumber());
            }
            default:
                return stepOnValues(o, n);
        }
    }

    void stepOnSequence(Operation const& o, int n) {
        bool const parts = reference_.at(n).special && o.c % 2 == 1;
        Index const index = parts ? kParts : kChildren;
        Node const owner = node(n);
        ElementSequence<Node>& s = parts ? Special::cast(owner)->parts() : owner->children();
        std::size_t const position = o.c / 2 % (s.size() + 2);
        int const other = pick(o.b);
        switch (o.kind) {
            case Kind::AddChild:
                return check(reference_.insertChild(n, index, s.size(), other), [&] { s.add(node(other)); });
            case Kind::InsertChild:
                return check(reference_.insertChild(n, index, position, other),
                             [&] { s.insert(position, node(other)); });
            case Kind::ReplaceChild:
                return check(reference_.replaceChild(n, index, position, other), [&] { s.set(position, node(other)); });
            case Kind::EraseChild:
                return check(reference_.eraseChild(n, index, position), [&] { s.erase(position); });
            case Kind::RemoveChild:
                reference_.removeChild(n, index, other);
                return s.remove(node(other));
            default:
                reference_.clearMembers(n, index);
                return s.clear();
        }
    }

    /// What a node is in, it leaves and enters again in one transaction; or a tag does.
    void putBack(Operation const& o, int n) {
        int const owner = reference_.at(n).container;
        reference_.begin(false);
        Transaction transaction = model_->beginTransaction(false);
        if (owner < 0) {
            stepOnValues({Kind::EraseTag, o.a, o.b, o.c}, n);
            stepOnValues({Kind::InsertTag, o.a, o.b, o.c}, n);
        } else {
            auto const index = static_cast<Index>(reference_.at(n).property);
            auto const there = std::find(reference_.order().begin(), reference_.order().end(), n);
            auto const other = static_cast<std::uint8_t>(there - reference_.order().begin());
            bool const sequence = index == kChildren || index == kParts;
            auto const c = static_cast<std::uint8_t>(sequence ? index == kParts : index - kByName);
            stepOnNode({sequence ? Kind::RemoveChild : Kind::RemoveKeyed, o.a, other, c}, owner);
            stepOnNode({sequence ? Kind::AddChild : Kind::InsertKeyed, o.a, other, c}, owner);
        }
        reference_.commit();
        transaction.commit(boost::none);
    }

    template <class M>
    void stepOnMap(Operation const& o, int n, Index index, M& map) {
        int const other = pick(o.b);
        if (o.kind == Kind::RemoveKeyed) {
            reference_.removeKeyed(n, index, other);
            map.remove(node(other));
        } else if (o.kind == Kind::ClearKeyed) {
            reference_.clearMembers(n, index);
            map.clear();
        } else {
            int const policy = o.c / 3 % 3;
            check(reference_.insertKeyed(n, index, other, policy), [&] {
                if constexpr (requires { map.insert(node(other), policy); }) {
                    map.insert(node(other), policy);
                } else {
                    map.insert(node(other));
                }
            });
        }
    }

    void stepOnValues(Operation const& o, int n) {
        Node const e = node(n);
        auto& numbers = e->numbers();
        auto& tags = e->tags();
        std::size_t const size = numbers.size();
        auto const at = [&](auto& container) {
            return container.begin() + static_cast<std::ptrdiff_t>(o.c % (size + (o.kind == Kind::InsertNumber)));
        };
        int const value = o.b;
        std::u16string const tag(1 + o.c % 2 * 20, static_cast<char16_t>(u'a' + o.b % 4));
        using N = Reference::Node;
        switch (o.kind) {
            case Kind::PushNumber:
                reference_.change(n, kNumbers, [&](N& r) { r.numbers.push_back(value); });
                return numbers.push_back(value);
            case Kind::InsertNumber:
                reference_.change(n, kNumbers, [&](N& r) { r.numbers.insert(at(r.numbers), value); });
                numbers.insert(at(numbers), value);
                return;
            case Kind::EraseNumber:
                if (size == 0) return;
                reference_.change(n, kNumbers, [&](N& r) { r.numbers.erase(at(r.numbers)); });
                numbers.erase(at(numbers));
                return;
            case Kind::ReplaceNumber:
                if (size == 0) return;
                reference_.change(n, kNumbers, [&](N& r) { *at(r.numbers) = value; });
                return numbers.replaceAt(o.c % size, value);
            case Kind::AssignNumbers:
                reference_.change(n, kNumbers, [&](N& r) { r.numbers.assign(o.c % 3, value); });
                return numbers.assign(boost::container::vector<int>(o.c % 3, value));
            case Kind::ClearNumbers:
                reference_.change(n, kNumbers, [&](N& r) { r.numbers.clear(); });
                return numbers.clear();
            case Kind::InsertTag:
                reference_.change(n, kTags, [&](N& r) { r.tags.insert(tag); });
                tags.insert(tag);
                return;
            case Kind::EraseTag:
                reference_.change(n, kTags, [&](N& r) { r.tags.erase(tag); });
                tags.erase(tag);
                return;
            default:
                reference_.change(n, kTags, [&](N& r) { r.tags.clear(); });
                return tags.clear();
        }
    }

    Reference reference_;
    Names names_;
    std::map<int, boost::uuids::uuid> ids_;
    std::map<int, ModelElement::Impl*> identity_;
    std::map<int, ModelElement> held_;
    Shadow shadow_;
    std::optional<std::string> heard_;
    bool good_ = true;
    bool listening_ = false;
    Model model_;
    std::vector<std::optional<Transaction>> open_;
};

TEST(RandomNodes, DoAsTheReferenceDoes) {
    int const before = Node::Impl::living;
    randomly::check(200 * randomly::kEffort,
                    [&](std::vector<Operation> const& operations, std::uint8_t limit, bool listening) {
                        {
                            World world(limit % 5, listening);
                            for (std::size_t i = 0; i < operations.size(); ++i) {
                                world.run(operations[i]);
                                if (i % 4 == 0) world.compare();
                            }
                            world.compare();
                        }
                        RC_ASSERT(Node::Impl::living == before);
                    });
}

}  // namespace
