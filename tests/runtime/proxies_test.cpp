// Proxies: elements that aren't loaded, alone and in collections.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/proxy_id.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <unordered_set>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

struct Sample {
    Model model = Model::create();
    Special owner = Special::create(model, idOf(1));
    Node target = Node::create(model, idOf(2));

    Sample() { model->setStoreName(u"here"); }
    Node proxyOf(ProxyId const& id) {
        Node const made = Node::create(model);
        model->proxies().setId(*made.impl(), id);
        return made;
    }
    Node local() { return proxyOf(ProxyId(target->uuid())); }
    Node outside() { return proxyOf(ProxyId(u"there", target->uuid())); }
};

TEST(Proxies, CanBeReadForTheirIdentityAlone) {
    Sample s;
    Node const proxy = s.outside();
    EXPECT_TRUE(proxy->isProxy());
    EXPECT_EQ(proxy->getProxyId(), ProxyId(u"there", s.target->uuid()));
    EXPECT_EQ(s.target->getProxyId(), ProxyId(s.target->uuid()));
    EXPECT_EQ(s.target->getPersistentProxyId(true), ProxyId(u"here", s.target->uuid()));
    EXPECT_EQ(s.target->getPersistentProxyId(false), ProxyId(s.target->uuid()));
}

TEST(Proxies, KeepTheirPositionInASequence) {
    Sample s;
    Node const other = Node::create(s.model, idOf(3));
    Node const local = s.local();
    Node const outside = s.outside();
    auto& children = s.owner->children();
    for (Node const& e : {other, local, outside}) children.add(e);
    EXPECT_EQ(local->container(), s.owner);
    EXPECT_FALSE(children.contains(local));
    EXPECT_EQ(children.indexOf(s.target), SequenceCore::NONE) << "not before it is resolved";
    {
        Model::ResolutionHold const hold(s.model);
        EXPECT_EQ(children[1], local);
        EXPECT_EQ(children.getAllValues().size(), 1U);
    }
    EXPECT_EQ(children.getAllValuesAndProxies().size(), 3U);
    children.resolveLocal();
    EXPECT_EQ(children.indexOf(s.target), 1U);
    EXPECT_EQ(s.target->container(), s.owner);
    EXPECT_EQ(children[2], outside) << "it stays where it can't be resolved, and is asked again";
    s.model->setProxyResolver([&](ProxyId const&) { return other; });
    EXPECT_EQ(children[2], other);
    EXPECT_EQ(children.getAllValues().size(), 3U);

    Node const again = s.local();
    children.set(2, again);
    children.set(2, s.target);  // the slot is resolved to it first, so nothing changes
    EXPECT_EQ(children[2], s.target);
    EXPECT_FALSE(s.owner->parts().basicContainsProxyTo(s.target));
    s.owner->parts().add(s.local());
    EXPECT_TRUE(s.owner->parts().basicContainsProxyTo(s.target));
    s.owner->parts().replaceProxy(other, 0);
    EXPECT_EQ(s.owner->parts()[0], other);
    EXPECT_EQ(other->container(), s.owner);
}

TEST(Proxies, AreFoundByIdAndResolvedIfAsked) {
    Sample s;
    Node const proxy = s.outside();
    Node const far = Node::create(s.model);
    boost::uuids::uuid const id = idOf(77);
    s.model->proxies().setId(*proxy.impl(), ProxyId(u"there", id));
    EXPECT_FALSE(s.model->findElement(id, FindElementBehavior(0)));
    s.model->setProxyResolver(
        [&](ProxyId const& asked) { return asked.id() == id ? ModelElement(far) : ModelElement(); });
    EXPECT_FALSE(s.model->findElement(id, FindElementBehavior::InMemoryOnly));
    EXPECT_EQ(s.model->findElement(id, FindElementBehavior(0)), far);
}

/// A target that is contained elsewhere, with proxies of it in two other properties.
struct Elsewhere : Sample {
    Node elsewhere;

    Elsewhere() {
        model->enableHistory(100);
        elsewhere = Node::create(model);
        elsewhere->children().add(target);
        owner->children().add(local());
        owner->byRank().insert(local());
    }
};

TEST(Proxies, LeaveNoReferenceToWhatIsDestroyed) {
    Elsewhere s;
    Node const& elsewhere = s.elsewhere;
    s.owner->byRank().resolveAll();
    EXPECT_EQ(s.owner->children()[0], s.target);
    for (auto const& destroy :
         {std::function<void()>([&] { s.target->destroy(); }), std::function<void()>([&] { elsewhere->destroy(); })}) {
        destroy();
        EXPECT_TRUE(s.owner->children().empty());
        EXPECT_TRUE(s.owner->byRank().empty());
        s.model->undo();
        EXPECT_EQ(s.owner->children()[0], s.target);
        s.owner->byRank().resolveAll();
        EXPECT_EQ(s.owner->byRank().find(0).size(), 1U);
    }
}

TEST(Proxies, DontMoveWhatTheyStandFor) {
    // Reading is no change, so an element that is contained elsewhere stays there, and a reference without containment
    // replaces the proxy.
    Elsewhere s;
    Node const& elsewhere = s.elsewhere;
    EXPECT_EQ(s.owner->children()[0], s.target);
    s.owner->byRank().resolveAll();
    EXPECT_TRUE(s.owner->byRank().contains(s.target));
    EXPECT_EQ(s.target->container(), elsewhere);
    EXPECT_EQ(elsewhere->children().size(), 1U);

    s.target->setRank(7);
    EXPECT_EQ(s.owner->byRank().find(0).size(), 1U) << "under the key that it had";
    s.owner->byRank().remove(s.target);
    EXPECT_TRUE(s.owner->byRank().empty());
    s.owner->children().erase(0);
    EXPECT_EQ(s.target->container(), elsewhere);
    s.model->undo();
    EXPECT_EQ(s.owner->children()[0], s.target);
    s.owner->destroy();
    EXPECT_TRUE(s.target) << "it isn't the owner's to destroy";
    EXPECT_EQ(s.target->container(), elsewhere);

    Special const owner = Special::create(s.model);
    elsewhere->children().add(owner);
    Node const toAncestor = s.proxyOf(ProxyId(elsewhere->uuid()));
    owner->parts().add(toAncestor);
    EXPECT_EQ(owner->parts()[0], toAncestor) << "what contains a collection can't stand in it";
    while (s.model->undo()) continue;
    EXPECT_EQ(s.model->elementCount(), 2U);
    EXPECT_FALSE(s.target->container());
}

TEST(Proxies, LeaveTheHostsResolverFree) {
    Sample s;
    auto& children = s.owner->children();
    auto& map = s.owner->byName();
    Node const inSequence = s.outside();
    Node const inMap = s.outside();
    children.add(inSequence);
    map.insert(inMap);
    int asked = 0;
    auto const resolve = [&](std::function<ModelElement()> const& f) {
        s.model->setProxyResolver([&asked, f](ProxyId const&) {
            ++asked;
            return f();
        });
    };
    // The resolver reads the property that it resolves, installs another resolver, and creates the element.
    resolve([&]() -> ModelElement {
        EXPECT_EQ(children[0], inSequence) << "it is being asked for already";
        s.model->setProxyResolver(nullptr);
        return Node::create(s.model, idOf(60));
    });
    EXPECT_EQ(children[0]->uuid(), idOf(60));
    EXPECT_EQ(asked, 1);
    // The resolver removes the proxy.
    resolve([&]() -> ModelElement {
        map.remove(inMap);
        return s.target;
    });
    EXPECT_TRUE(map.getAllValues().empty());
    EXPECT_TRUE(map.holdsNothing());
    children.add(s.outside());
    resolve([&]() -> ModelElement {
        children.clear();
        return s.target;
    });
    EXPECT_TRUE(throws<std::out_of_range>([&] { children.at(1); }));
    EXPECT_FALSE(s.target->container());
    // The resolver throws.
    map.insert(inMap);
    resolve([]() -> ModelElement { throw 1; });
    EXPECT_THROW(map.resolveAll(), int);
    EXPECT_EQ(map.getAllValuesAndProxies(), std::vector<ModelElement>{inMap});
    EXPECT_THROW(map.resolveAll(), int) << "and is asked again";
}

TEST(Proxies, OutliveTheModelThatTheirResolverReleases) {
    for (int place = 0; place < 4; ++place) {
        SCOPED_TRACE(place);
        auto s = std::make_unique<Sample>();
        Special const owner = s->owner;
        Model other = Model::create();
        Node const found = Node::create(other);
        Node const proxy = s->outside();
        boost::uuids::uuid const id = s->target->uuid();
        if (place == 0) owner->children().add(proxy);
        if (place == 1) owner->byName().insert(proxy);
        Model const* const model = &s->model;
        s->model->setProxyResolver([&](ProxyId const&) {
            s.reset();  // with the last handle of the model
            return found;
        });
        if (place == 0) owner->children().getAllValues();
        if (place == 1) owner->byName().getAllValues();
        if (place == 2) (*model)->resolveProxy(nullptr, proxy);
        if (place == 3) {
            s->target->destroy();
            (*model)->findElement(id, FindElementBehavior::ResolveProxies);
        }
        EXPECT_EQ(s, nullptr);
        EXPECT_FALSE(owner);
        EXPECT_TRUE(found);
    }
}

TEST(Proxies, StandApartInAMap) {
    Sample s;
    s.target->setText(u"t");
    auto& map = s.owner->byName();
    Node const local = s.local();
    map.insert(local);
    map.insert(local);
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.size(), 0U);
    EXPECT_TRUE(map.genericKeys().empty());
    EXPECT_FALSE(map.contains(local));
    EXPECT_EQ(map.getAllValuesAndProxies(), std::vector<ModelElement>{local});
    EXPECT_EQ(local->container(), s.owner);
    {
        Model::ResolutionHold const hold(s.model);
        EXPECT_TRUE(map.getAllValues().empty());
    }
    EXPECT_EQ(map.getAllValues(), std::vector<ModelElement>{s.target});
    EXPECT_EQ(map.find(u"t"), s.target);
    EXPECT_EQ(s.target->container(), s.owner);
    EXPECT_EQ(map.getAllValuesAndProxies().size(), 1U);

    Node const sameKey = Node::create(s.model);
    sameKey->setText(u"t");
    map.insert(s.proxyOf(ProxyId(sameKey->uuid())));
    map.resolveAll();
    EXPECT_EQ(map.size(), 1U) << "its key is taken, so it stays a proxy";
    EXPECT_EQ(map.getAllValuesAndProxies().size(), 2U);

    Node const outside = s.outside();
    map.insert(outside);
    map.resolveLocal();
    EXPECT_EQ(map.getAllValuesAndProxies().size(), 3U);
    map.remove(outside);
    EXPECT_FALSE(outside->container());
    EXPECT_EQ(map.getAllValuesAndProxies().size(), 2U);
    map.remove(s.target);
    map.resolveLocal();
    EXPECT_EQ(map.find(u"t"), sameKey);
}

TEST(Proxies, AreNamedByStoreAndId) {
    ProxyId const plain(idOf(1));
    ProxyId const here(u"here", idOf(1));
    ProxyId const there(u"there", idOf(1));
    EXPECT_FALSE(plain.hasOutsidePart(u"here"));
    EXPECT_FALSE(here.hasOutsidePart(u"here"));
    EXPECT_TRUE(there.hasOutsidePart(u"here"));
    EXPECT_TRUE(here.hasOutsidePart(u""));
    std::unordered_set<ProxyId> const all{plain, here, there, ProxyId(idOf(2)), ProxyId(u"here", idOf(1))};
    EXPECT_EQ(all.size(), 4U);
}

}  // namespace
