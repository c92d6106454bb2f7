// Proxies in every property that owns elements, driven by reflection.
#include "../common/expect.h"
#include "support/samples.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <keel/text.h>
#include <quay/zero/change_set.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/proxy_id.h>
#include <quay0/messages.h>

namespace {

using namespace quay::zero;
using namespace quay0::messages;
using namespace records;

/// One owned property of one class.
class Trial {
public:
    Trial(meta::Class const& c, meta::Property const& p) : property_(p), class_(c) {
        model_->setStoreName(u"here");
        owner_ = make(c, model_);
        target_ = make(p->getType(), model_);
        model_->setProxyResolver([this](ProxyId const& id) {
            ++asked_;
            EXPECT_EQ(id, ProxyId(u"plant", target_->uuid()));
            return answer_;
        });
        model_->enableHistory(10);
        model_->addListener([this](ChangeSet const&) { ++told_; });
    }

    void run() {
        stayWhileTheyFail();
        resolveOnceAndQuietly();
        areTakenBack();
        areResolvedLocally();
        mayBeOfAnotherModel();
        goWithTheirOwner();
    }

private:
    bool isChild() const {
        return property_->getFlags() == ValueFlags::One || property_->getFlags() == ValueFlags::Optional;
    }
    ReferenceCollection& collection() const {
        auto const value = owner_->getPropertyValue(property_, ReflectionPrivateTag::NO_PROXY_RESOLVE);
        return dynamic_cast<ReferenceCollection&>(*value.getCollection<AbstractOwnedCollection>());
    }
    /// The elements as readers get them.
    std::vector<ModelElement> seen() const {
        auto const value = owner_->getPropertyValue(property_, ReflectionPrivateTag::PUBLIC_ACCESS);
        if (!isChild()) return collection().getAllValues();
        auto const child = value.getValue<ModelElement>();
        return child && !child->isProxy() ? std::vector<ModelElement>{child} : std::vector<ModelElement>();
    }
    /// The elements as they are stored, proxies included.
    std::vector<ModelElement> stored() const {
        if (!isChild()) return collection().getAllValuesAndProxies();
        auto const child =
            owner_->getPropertyValue(property_, ReflectionPrivateTag::NO_PROXY_RESOLVE).getValue<ModelElement>();
        return child.impl() != nullptr ? std::vector<ModelElement>{child} : std::vector<ModelElement>();
    }
    void put(ModelElement const& e) const {
        if (isChild()) {
            owner_->setPropertyValue(property_, Value::createElementValue(property_, e),
                                     ReflectionPrivateTag::PUBLIC_ACCESS);
        } else {
            collection().getGenericInterface()->genericAdd(e);
        }
    }
    ModelElement proxy(std::u16string const& store) const {
        return model_->createProxy(target_->getMetaClass(), ProxyId(store, target_->uuid()));
    }
    using Elements = std::vector<ModelElement>;

    void stayWhileTheyFail() {
        auto const count = model_->elementCount();
        proxy_ = proxy(u"plant");
        ASSERT_TRUE(proxy_);
        EXPECT_TRUE(proxy_->isProxy());
        EXPECT_EQ(proxy_->getMetaClass(), target_->getMetaClass());
        EXPECT_EQ(proxy_->getProxyId(), ProxyId(u"plant", target_->uuid()));
        EXPECT_EQ(model_->findElement(target_->uuid(), FindElementBehavior::ResolveProxies), target_);
        EXPECT_EQ(model_->elementCount(), count);
        put(proxy_);
        EXPECT_EQ(proxy_->container(), owner_);
        EXPECT_EQ(model_->undoDepth(), 1U);
        EXPECT_EQ(told_, 1);

        for (ModelElement const& wrong : {ModelElement(), makeStranger(target_->getMetaClass(), model_), proxy_}) {
            int const before = asked_;
            answer_ = wrong;
            EXPECT_EQ(seen(), Elements());
            EXPECT_GT(asked_, before) << "every read tries again";
            EXPECT_EQ(stored(), Elements{proxy_});
        }
        answer_ = target_;
        int const before = asked_;
        Model::ResolutionHold const hold(model_);
        EXPECT_EQ(seen(), Elements());
        EXPECT_EQ(asked_, before);
    }

    void resolveOnceAndQuietly() {
        told_ = 0;
        asked_ = 0;
        auto const depth = model_->undoDepth();
        EXPECT_EQ(seen(), Elements{target_});
        EXPECT_EQ(seen(), Elements{target_});
        EXPECT_EQ(asked_, 1);
        EXPECT_EQ(told_, 0);
        EXPECT_EQ(model_->undoDepth(), depth);
        expectPlaces(true);
    }
    void expectPlaces(bool resolved) {
        EXPECT_EQ(stored(), Elements{resolved ? target_ : proxy_});
        EXPECT_EQ(target_->container(), resolved ? owner_ : ModelElement());
        EXPECT_EQ(proxy_->container(), resolved ? ModelElement() : owner_);
    }

    void areTakenBack() {
        while (model_->undo()) continue;
        EXPECT_EQ(stored(), Elements());
        EXPECT_FALSE(target_->container());
        EXPECT_FALSE(proxy_->container());
        while (model_->redo()) continue;
        EXPECT_EQ(seen(), Elements{target_});
        expectPlaces(true);
        while (model_->undo()) continue;
        {
            auto const rolledBack = model_->beginTransaction(false);
            put(proxy_);
            EXPECT_EQ(seen(), Elements{target_});
        }
        EXPECT_EQ(stored(), Elements());
        EXPECT_FALSE(target_->container());
        EXPECT_FALSE(proxy_->container());
        put(proxy_);
        told_ = 0;
        {
            auto const rolledBack = model_->beginTransaction(false);
            EXPECT_EQ(seen(), Elements{target_});
            target_->destroy();
            EXPECT_EQ(seen(), Elements());
        }
        EXPECT_TRUE(target_);
        expectPlaces(false);
        auto const depth = model_->undoDepth();
        {
            auto read = model_->beginTransaction(false);
            EXPECT_EQ(seen(), Elements{target_});
            read.commit(boost::none);
        }
        expectPlaces(true);
        EXPECT_EQ(model_->undoDepth(), depth);
        EXPECT_EQ(told_, 0);
    }

    void areResolvedLocally() {
        while (model_->undo()) continue;
        for (char16_t const* const store : {u"", u"here"}) {
            asked_ = 0;
            put(proxy(store));
            EXPECT_EQ(seen(), Elements{target_});
            EXPECT_EQ(asked_, 0);
            model_->undo();
        }
    }

    /// A proxy may resolve to an element of another model, which doesn't become a child.
    void mayBeOfAnotherModel() {
        auto there = Model::create();
        auto const foreign = make(property_->getType(), there);
        put(proxy_);
        answer_ = foreign;
        EXPECT_EQ(seen(), Elements{foreign});
        EXPECT_FALSE(foreign->container());
        model_->undo();
        EXPECT_EQ(stored(), Elements());
        model_->redo();
        EXPECT_EQ(seen(), Elements{foreign});
        owner_->destroy();
        EXPECT_TRUE(foreign);
        model_->undo();
        EXPECT_EQ(seen(), Elements{foreign});
        there = Model();  // the model and its elements are destroyed
        for (auto const& dead : seen()) EXPECT_FALSE(dead);
        model_->undo();
        answer_ = target_;
    }

    void goWithTheirOwner() {
        put(proxy_);
        {
            Model::ResolutionHold const hold(model_);
            owner_->destroy();
            EXPECT_EQ(bool(proxy_), !isChild()) << "a single one is destroyed, others only leave";
            EXPECT_FALSE(proxy_->basicContainer());
            EXPECT_TRUE(target_);
            model_->undo();
            expectPlaces(false);
        }
        EXPECT_EQ(seen(), Elements{target_});
        owner_->destroy();
        EXPECT_FALSE(target_) << "it stood in the owner";
        model_->undo();
        EXPECT_EQ(seen(), Elements{target_});
        // Only the handles may outlive the model.
        model_ = Model();
        EXPECT_FALSE(proxy_);
        EXPECT_FALSE(target_);
    }

    meta::Property property_;
    meta::Class class_;
    Model model_ = Model::create();
    ModelElement owner_;
    ModelElement target_;
    ModelElement proxy_;
    ModelElement answer_;
    int asked_ = 0;
    int told_ = 0;
};

TEST(Proxies, StandInEveryPropertyThatOwnsElements) {
    int tried = 0;
    for (meta::Class const& c : schemaClasses()) {
        for (meta::Property const& p : *c->getOwnedProperties()) {
            if (meta::Class::cast(p->getType()).impl() == nullptr) continue;
            SCOPED_TRACE(keel::toUtf8(c->getName() + u"." + p->getName()));
            Trial(c, p).run();
            ++tried;
        }
    }
    EXPECT_GT(tried, 100);
}

TEST(Proxies, AreMadeOfAClassThatCanBeMade) {
    auto const model = Model::create();
    ProxyId const id(u"plant", ElementImpl::generateNewUuid());
    EXPECT_TRUE(failsWith<InvalidValue>([&] { model->createProxy(meta::Class(), id); }));
    EXPECT_TRUE(
        failsWith<InvalidValue>([&] { model->createProxy(ModelRefInfoRepo::InterfaceParameter::metaClass(), id); }));
    auto const made = model->createProxy(ModelRefInfoRepo::RateSpec::metaClass(), id);
    EXPECT_TRUE(model->getElements().empty());
    EXPECT_FALSE(model->findElement(id.id(), FindElementBehavior::ResolveProxies));
    EXPECT_EQ(made->getPersistentProxyId(true), id);
    auto const proxy = ModelRefInfoRepo::RateSpec::cast(made);
    EXPECT_TRUE(failsWith<CannotModifyProxy>([&] { proxy->setPeriod(1); }));
    auto const group = ModelRefInfoRepo::FcnCallPortGroup::create(model, {});
    group->setPreCompRateSpec(proxy);
    EXPECT_TRUE(group->hasPreCompRateSpec());
    EXPECT_EQ(group->getPreCompRateSpec(), proxy);

    // A write that may not resolve replaces the proxy; rolling back restores the proxy.
    auto spec = ModelRefInfoRepo::RateSpec::create(model, {});
    model->setProxyResolver([&](ProxyId const&) {
        ADD_FAILURE() << "asked";
        return spec;
    });
    auto const property = group->getMetaClass()->findProperty(u"preCompRateSpec");
    {
        auto const rolledBack = model->beginTransaction(false);
        group->setPropertyValue(property, Value::createElementValue(property, spec),
                                ReflectionPrivateTag::NO_PROXY_RESOLVE);
        EXPECT_EQ(group->getPreCompRateSpec(), spec);
    }
    Model::ResolutionHold const hold(model);
    EXPECT_EQ(group->getPreCompRateSpec(), proxy);
    EXPECT_EQ(proxy->container(), group);
}

TEST(Maps, GiveTheKeyOfAMemberWhoseModelHasGoneToAnother) {
    using ModelRefInfoRepo::VarTsUIDEntry;
    using ModelRefInfoRepo::VarTsUIDMap;
    for (bool const isRekeyed : {true, false}) {
        SCOPED_TRACE(isRekeyed);
        Model const model = Model::create();
        VarTsUIDMap const map = VarTsUIDMap::create(model);
        Model other = Model::create();
        VarTsUIDEntry const foreign = VarTsUIDEntry::create(other);
        foreign->setVarTsIdx(5);
        model->setProxyResolver([&](ProxyId const&) { return foreign; });
        map->getEntriesMutable()->add(
            VarTsUIDEntry::cast(model->createProxy(VarTsUIDEntry::metaClass(), ProxyId(u"plant", foreign->uuid()))));
        EXPECT_EQ(map->getEntries()->find(5), foreign);
        other = Model();
        EXPECT_FALSE(map->getEntries()->find(5));

        model->enableHistory(10);
        VarTsUIDEntry entry;
        if (isRekeyed) {
            entry = map->createIntoEntries();
            entry->setVarTsIdx(5);
        } else {
            VarTsUIDEntry::Builder builder;
            builder.setVarTsIdx(5);
            entry = map->createIntoEntries(builder);
        }
        EXPECT_EQ(map->getEntries()->find(5), entry);
        EXPECT_EQ(map->getEntries()->size(), 1U);
        EXPECT_EQ(entry->basicContainer(), map);
        while (model->undo()) continue;
        EXPECT_EQ(map->getEntries()->size(), 1U);
        EXPECT_FALSE(map->getEntries()->find(5));
        while (model->redo()) continue;
        EXPECT_EQ(map->getEntries()->find(5), entry);
    }
}

}  // namespace
