// Random sequences of changes around proxies. After rolling back, undo or redo everything must read as it did then, and
// every element must be in the collection of its container.
#include "support/node.h"
#include "support/trace.h"

#include <quay/zero/proxy_id.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>

namespace {

using namespace nodes;
using namespace quay::zero;

constexpr std::size_t kOwners = 3;
constexpr std::size_t kTargets = 5;  // the last two are in another model
constexpr std::size_t kNear = 3;

std::string nameOf(ModelElement::Impl const* e) {
    if (e == nullptr) return "-";
    auto const id = e->isProxy() ? e->getProxyId().id() : e->uuid();
    return (e->isAlive() ? "" : "+") + std::string(e->isProxy() ? "p" : "") + std::to_string(id.data[15]);
}

class World {
public:
    World() {
        model_->setStoreName(u"here");
        model_->setProxyResolver([this](ProxyId const& id) { return far_->findElement(id.id(), kInMemory); });
        for (unsigned i = 0; i < kOwners; ++i) owners_[i] = Special::create(model_, idOf(1 + i));
        for (unsigned i = 0; i < kTargets; ++i) {
            targets_[i] = Node::create(i < kNear ? model_ : far_, idOf(11 + i));
            targets_[i]->setText(std::u16string(1, static_cast<char16_t>(u'a' + i)));
            targets_[i]->setRank(static_cast<int>(i));
        }
        trace_.emplace(model_, 4, [this] { return read(); });
    }

    void step(unsigned what, std::size_t a, std::size_t b, std::size_t c) {
        Node const target = targets_[b % kTargets];
        auto& place = collection(a % kOwners, c % 4);
        switch (what) {
            case 0:
            case 1:
            case 2:
                trace_->change([&] { place.getGenericInterface()->genericAdd(proxyOf(target)); });
                break;
            case 3:
                trace_->change([&] { place.getGenericInterface()->genericAdd(target); });
                break;
            case 4:
                trace_->change([&] { place.getGenericInterface()->genericRemove(target); });
                break;
            case 5:
                trace_->change([&] { place.clear(); });
                break;
            case 6:
                trace_->change([&] { (b % 2 == 0 ? targets_[b % kNear] : Node(owners_[a % kOwners]))->destroy(); });
                break;
            case 7:
                trace_->begin();
                break;
            case 8:
            case 9:
                trace_->end(what == 8);
                break;
            case 10:
            case 11:
                trace_->replay(what == 11);
                break;
            case 12:
                trace_->change([&] {
                    for (auto const& e : place.getAllValuesAndProxies()) {
                        if (e->isProxy()) e->destroy();
                    }
                });
                break;
            default:
                trace_->change([&] {
                    Model::ResolutionHold const hold(model_);
                    place.getGenericInterface()->genericAdd(proxyOf(target));
                    place.getAllValues();
                });
        }
        // Reading is no change.
        int const told = trace_->told();
        auto const depth = model_->undoDepth();
        std::string const text = read();
        RC_ASSERT(read() == text);
        RC_ASSERT(trace_->told() == told);
        RC_ASSERT(model_->undoDepth() == depth);
        checkPlaces();
    }
    void finish() {
        for (int i = 0; i < 8; ++i) trace_->end(false);
        while (trace_->replay(false)) continue;
        while (trace_->replay(true)) continue;
    }

private:
    static constexpr auto kInMemory = FindElementBehavior::InMemoryOnly;
    ReferenceCollection& collection(std::size_t owner, std::size_t which) {
        auto& e = *owners_[owner].operator->();
        std::array<ReferenceCollection*, 4> const all = {&e.children(), &e.parts(), &e.byName(), &e.byRank()};
        return *all[which];
    }
    /// A proxy of this model's store or of another one, for an element that is in no list of the model.
    Node proxyOf(Node const& target) {
        Node made = Node::of(new Node::Impl(model_, {}));
        bool const isFar = &target->model() == far_.impl();
        model_->proxies().setId(*made.impl(), isFar ? ProxyId(u"far", target->uuid()) : ProxyId(target->uuid()));
        return made;
    }

    /// The whole model as text, after all proxies that can be resolved were resolved.
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
                // Proxies without container have no defined order.
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
    std::optional<Trace> trace_;
};

RC_GTEST_PROP(RandomProxies, AreTakenBackExactly, ()) {
    using Step = std::tuple<std::uint8_t, std::uint8_t, std::uint8_t, std::uint8_t>;
    auto const steps = *rc::gen::scale(2, rc::gen::arbitrary<std::vector<Step>>());
    int const living = Node::Impl::living;
    {
        World world;
        for (auto const& [what, a, b, c] : steps) world.step(what % 14U, a, b, c);
        world.finish();
    }
    RC_ASSERT(Node::Impl::living == living);
}

}  // namespace
