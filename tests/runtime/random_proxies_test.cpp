// Random sequences of changes around proxies. Whatever is taken back, by rolling back, undo or redo, must read as it
// did; and every member has the place that it stands in, unless it is a guest there.
#include "support/node.h"

#include <quay/zero/proxy_id.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>

namespace {

using namespace nodes;
using namespace quay::zero;

constexpr std::size_t kOwners = 3;
constexpr std::size_t kTargets = 5;  // the last two are of another model
constexpr std::size_t kNear = 3;
constexpr std::size_t kLimit = 4;

std::string nameOf(ModelElement::Impl const* e) {
    if (e == nullptr) return "-";
    auto const id = e->isProxy() ? e->getProxyId().id() : e->uuid();
    return (e->isAlive() ? "" : "+") + std::string(e->isProxy() ? "p" : "") + std::to_string(id.data[15]);
}

class Plant {
public:
    Plant() {
        model_->setStoreName(u"here");
        model_->setProxyResolver([this](ProxyId const& id) { return far_->findElement(id.id(), kInMemory); });
        for (unsigned i = 0; i < kOwners; ++i) owners_[i] = Special::create(model_, idOf(1 + i));
        for (unsigned i = 0; i < kTargets; ++i) {
            targets_[i] = Node::create(i < kNear ? model_ : far_, idOf(11 + i));
            targets_[i]->setText(std::u16string(1, static_cast<char16_t>(u'a' + i)));
            targets_[i]->setRank(static_cast<int>(i));
        }
        model_->enableHistory(kLimit);
        model_->addListener([this](ChangeSet const&) { ++told_; });
        before_ = read();
    }

    void step(unsigned what, std::size_t a, std::size_t b, std::size_t c) {
        Node const target = targets_[b % kTargets];
        auto& place = collection(a % kOwners, c % 4);
        switch (what) {
            case 0:
            case 1:
            case 2:
                change([&] { place.getGenericInterface()->genericAdd(proxyOf(target)); });
                break;
            case 3:
                change([&] { place.getGenericInterface()->genericAdd(target); });
                break;
            case 4:
                change([&] { place.getGenericInterface()->genericRemove(target); });
                break;
            case 5:
                change([&] { place.clear(); });
                break;
            case 6:
                change([&] { (b % 2 == 0 ? targets_[b % kNear] : Node(owners_[a % kOwners]))->destroy(); });
                break;
            case 7:
                open_.emplace_back(model_->beginTransaction(false), before_);
                break;
            case 8:
                end(true);
                break;
            case 9:
                end(false);
                break;
            case 10:
                replay(false);
                break;
            case 11:
                replay(true);
                break;
            case 12:
                change([&] {
                    for (auto const& e : place.getAllValuesAndProxies()) {
                        if (e->isProxy()) e->destroy();
                    }
                });
                break;
            default:
                change([&] {
                    Model::ResolutionHold const hold(model_);
                    place.getGenericInterface()->genericAdd(proxyOf(target));
                    place.getAllValues();
                });
        }
        auto const toldBefore = told_;
        auto const depth = model_->undoDepth();
        before_ = read();
        RC_ASSERT(read() == before_);
        RC_ASSERT(told_ == toldBefore);
        RC_ASSERT(model_->undoDepth() == depth);
        checkPlaces();
    }
    void finish() {
        while (!open_.empty()) end(false);
        while (replay(false)) continue;
        RC_ASSERT(done_.empty());
        while (replay(true)) continue;
        RC_ASSERT(undone_.empty());
    }

private:
    static constexpr auto kInMemory = FindElementBehavior::InMemoryOnly;
    struct Open {
        Open(Transaction&& t, std::string text) : transaction(std::move(t)), before(std::move(text)) {}
        Transaction transaction;
        std::string before;
    };

    ReferenceCollection& collection(std::size_t owner, std::size_t which) {
        auto& e = *owners_[owner].operator->();
        std::array<ReferenceCollection*, 4> const all = {&e.children(), &e.parts(), &e.byName(), &e.byRank()};
        return *all[which];
    }
    /// Of this model's store or of the other, and in no list of the model.
    Node proxyOf(Node const& target) {
        Node made = Node::of(new Node::Impl(model_, {}));
        bool const isFar = &target->model() == far_.impl();
        model_->proxies().setId(*made.impl(), isFar ? ProxyId(u"far", target->uuid()) : ProxyId(target->uuid()));
        return made;
    }

    template <class F>
    void change(F&& f) {
        std::string const before = before_;
        int const told = told_;
        try {
            auto transaction = model_->beginTransaction(false);
            f();
            transaction.commit(boost::none);
        } catch (std::exception const&) {  // refused: dead, of another model, in use, or containing the owner
            RC_ASSERT(read() == before);
            return;
        }
        if (open_.empty()) committed(before, told);
    }
    void end(bool commit) {
        if (open_.empty()) return;
        int const told = told_;
        if (commit) open_.back().transaction.commit(boost::none);
        std::string const before = open_.back().before;
        open_.pop_back();
        if (!commit) RC_ASSERT(read() == before);
        if (commit && open_.empty()) committed(before, told);
    }
    void committed(std::string const& before, int toldBefore) {
        if (told_ == toldBefore) {  // nothing is left of it
            RC_ASSERT(read() == before);
            return;
        }
        undone_.clear();
        done_.emplace_back(before, read());
        if (done_.size() > kLimit) done_.erase(done_.begin());
    }
    bool replay(bool redo) {
        if (!open_.empty() || !(redo ? model_->redo() : model_->undo())) return false;
        auto& from = redo ? undone_ : done_;
        auto& to = redo ? done_ : undone_;
        RC_ASSERT(!from.empty());
        RC_ASSERT(read() == (redo ? from.back().second : from.back().first));
        to.push_back(from.back());
        from.pop_back();
        return true;
    }

    /// Everything, once every proxy that can be resolved is.
    std::string read() {
        for (int i = 0; i < 2; ++i) {
            for (std::size_t owner = 0; owner < kOwners; ++owner) {
                for (std::size_t which = 0; which < 4; ++which) collection(owner, which).getAllValues();
            }
        }
        Model::ResolutionHold const hold(model_);
        std::string out;
        for (std::size_t owner = 0; owner < kOwners; ++owner) {
            out += nameOf(owners_[owner].impl()) + ':';
            for (std::size_t which = 0; which < 4; ++which) {
                std::vector<std::string> names;
                for (auto const& e : collection(owner, which).getAllValuesAndProxies()) {
                    names.push_back(nameOf(e.impl()));
                }
                // Proxies that stand apart have no order.
                if (which >= 2) std::sort(names.begin(), names.end());
                for (auto const& name : names) out += ' ' + name;
                out += ';';
            }
        }
        for (Node const& e : targets_) {
            out += ' ' + nameOf(e.impl()) + " in " + nameOf(e->containerImpl()) + '.' +
                   std::to_string(e->containerImpl() == nullptr ? 0 : e->containmentIndex());
        }
        return out;
    }

    void checkPlaces() {
        for (std::size_t i = 0; i < kTargets; ++i) {
            auto const* const in = targets_[i]->containerImpl();
            RC_ASSERT(i < kNear || in == nullptr);
            if (in == nullptr) continue;
            RC_ASSERT(in->isAlive());
            auto& descriptor = *in->classTable().descriptorAt(targets_[i]->containmentIndex());
            auto const all = static_cast<ReferenceCollection*>(descriptor.collection(*in))->getAllValuesAndProxies();
            RC_ASSERT(std::find(all.begin(), all.end(), targets_[i]) != all.end());
        }
    }

    Model model_ = Model::create();
    Model far_ = Model::create();
    std::array<Special, kOwners> owners_;
    std::array<Node, kTargets> targets_;
    std::vector<Open> open_;
    std::vector<std::pair<std::string, std::string>> done_;  // the text before and after
    std::vector<std::pair<std::string, std::string>> undone_;
    std::string before_;
    int told_ = 0;
};

RC_GTEST_PROP(RandomProxies, AreTakenBackExactly, ()) {
    using Step = std::tuple<std::uint8_t, std::uint8_t, std::uint8_t, std::uint8_t>;
    auto const steps = *rc::gen::scale(2, rc::gen::arbitrary<std::vector<Step>>());
    int const living = Node::Impl::living;
    {
        Plant plant;
        for (auto const& [what, a, b, c] : steps) plant.step(what % 14U, a, b, c);
        plant.finish();
    }
    RC_ASSERT(Node::Impl::living == living);
}

}  // namespace
