// One element of a class, about to be tried in one property: what all shapes are tried by.
#pragma once

#include "../../common/expect.h"
#include "dump.h"
#include "listener.h"
#include "samples.h"

#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <keel/text.h>
#include <quay/zero/changes.h>
#include <quay/zero/model.h>
#include <quay/zero/storage.h>
#include <quay0/messages.h>

#include <functional>
#include <memory>
#include <string>

namespace records {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace quay0::messages;

inline constexpr auto const& kPublic = ReflectionPrivateTag::PUBLIC_ACCESS;

class Trial {
public:
    Trial(meta::Class const& c, meta::Property const& p) : class_(c), property_(p) {
        element_ = make(c, model_);
        model_->enableHistory(100);
    }
    virtual ~Trial() = default;
    Trial(Trial const&) = delete;
    Trial& operator=(Trial const&) = delete;

    void run() {
        hearer_.take();
        checkIdentity();
        check();
        checkDestroy();
    }

protected:
    /// What the property's shape promises.
    virtual void check() = 0;
    /// Something to write, made beforehand, and the writing.
    virtual std::function<void()> anyWrite() = 0;

    bool isSingle() const {
        return property_->getFlags() == ValueFlags::One || property_->getFlags() == ValueFlags::Optional;
    }
    std::string name() const { return keel::toUtf8(property_->getName()); }
    /// The property in which a write is recorded.
    std::string recordedName() const {
        if (!property_->isDerived()) return name();
        return name() == "rateInfo" ? "rateInfos" : "solverStatusFlags";
    }

    Value get() const { return element_->getPropertyValue(property_, kPublic); }
    std::string shown() const { return show(get()); }
    bool has() const { return element_->hasPropertyValue(property_, kPublic); }
    void set(Value const& value) { element_->setPropertyValue(property_, value, kPublic); }

    /// Expects M, and that nothing changed, also inside a transaction that goes on and commits.
    template <class M, class F>
    void refuses(F&& f) {
        std::string const before = dump(model_);
        hearer_.take();
        EXPECT_TRUE(failsWith<M>(f));
        EXPECT_EQ(dump(model_), before);
        {
            auto outer = model_->beginTransaction(false);
            EXPECT_TRUE(failsWith<M>(f));
            outer.commit(boost::none);
        }
        EXPECT_EQ(dump(model_), before);
        EXPECT_EQ(hearer_.take(), "");
    }

    /// `f` does something that changes the model: it is undone by rolling back and by undo, and comes back by
    /// redo.
    template <class F>
    void changes(F&& f) {
        std::string const before = dumpElements(model_);
        hearer_.take();
        {
            auto transaction = model_->beginTransaction(false);
            f();
            EXPECT_NE(dumpElements(model_), before);
        }
        EXPECT_EQ(dumpElements(model_), before) << "rolled back";
        {
            auto outer = model_->beginTransaction(false);
            {
                auto inner = model_->beginTransaction(false);
                f();
            }
            EXPECT_EQ(dumpElements(model_), before) << "rolled back inside";
            outer.commit(boost::none);
        }
        EXPECT_EQ(hearer_.take(), "");
        // In one transaction, so that one undo takes back however many steps f has.
        auto transaction = model_->beginTransaction(false);
        f();
        transaction.commit(boost::none);
        std::string const after = dumpElements(model_);
        ASSERT_TRUE(model_->undo());
        EXPECT_EQ(dumpElements(model_), before) << "undone";
        ASSERT_TRUE(model_->redo());
        EXPECT_EQ(dumpElements(model_), after) << "done again";
        hearer_.take();
    }

    void checkIdentity() {
        EXPECT_EQ(element_->getPropertyByIndex(property_->getIndex()).impl(),
                  property_->isDerived() ? nullptr : property_.impl());
        EXPECT_EQ(class_->findProperty(property_->getName()), property_);
        // A property of another class is unknown, whatever its name.
        meta::Property const foreign =
            *(*MetaPackageVw_modelref_info::getInstance()->RateInfo->getOwnedProperties()).begin();
        EXPECT_FALSE(element_->hasPropertyValue(foreign, kPublic));
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { element_->getPropertyValue(foreign, kPublic); }));
    }

    /// A storage kept by hand takes the present value and gives it back.
    template <class F>
    void checkStorage(F&& change) {
        unsigned long const index = property_->getIndex();
        std::unique_ptr<Storage> const storage(element_->createStorage());
        EXPECT_FALSE(storage->has(index));
        EXPECT_EQ(show(storage->getOldValue(property_, kPublic)), "nothing");
        std::string const before = shown();
        element_->copyValue(storage.get(), index);
        element_->copyValue(storage.get(), 9999);
        EXPECT_EQ(storage->indices(), std::vector{index});
        // Giving back doesn't mend containers, so all of it is rolled back in the end.
        auto const transaction = model_->beginTransaction(false);
        change();
        std::string const after = shown();
        EXPECT_NE(after, before);
        EXPECT_EQ(show(storage->getOldValue(property_, kPublic)), before);
        storage->revertUnchanged(element_.impl());
        EXPECT_TRUE(storage->has(index));
        element_->copyStateFromStorage(storage.get());
        EXPECT_EQ(shown(), before);
        std::unique_ptr<ModelElement::Impl::Changes> const changes(element_->createChanges());
        EXPECT_EQ(changes->changed().size(), class_->getHighestIndex() + 1);
        hearer_.take();
    }

    void checkDestroy() {
        std::vector<ModelElement> below;
        model_->forEachElement([&](ModelElement::Impl& e) {
            if (e.containerImpl() == element_.impl()) below.emplace_back(&e);
        });
        changes([&] { element_->destroy(); });
        EXPECT_FALSE(element_);
        for (auto const& e : below) EXPECT_FALSE(e);
        EXPECT_EQ(model_->findElement(element_->uuid(), FindElementBehavior::InMemoryOnly).impl(), nullptr);
        element_->destroy();
        refuseWritesToTheDead();
        while (!element_) ASSERT_TRUE(model_->undo());
        EXPECT_TRUE(element_);
        for (auto const& e : below) EXPECT_EQ(e->basicContainer(), element_);
        // Without a history nobody keeps what the dead one was.
        model_->enableHistory(0);
        element_->destroy();
        refuseWritesToTheDead();
    }

    void refuseWritesToTheDead() { refuses<CannotAddNonExistentObject>(anyWrite()); }

    meta::Class class_;
    meta::Property property_;
    Model model_ = Model::create();
    ModelElement element_;
    Hearer hearer_{model_};
};

/// Tries every property of every class that has elements, each by a T, if `fits`.
template <class T, class Fits>
void tryEvery(Fits&& fits) {
    for (meta::Class const& c : schemaClasses()) {
        if (c->isAbstract()) continue;
        for (meta::Property const& p : c->getProperties()) {
            if (!fits(p)) continue;
            SCOPED_TRACE(keel::toUtf8(c->getName() + u"." + p->getName()));
            T(c, p).run();
        }
    }
}

inline bool isElement(meta::Property const& property) {
    return meta::Class::cast(property->getType()).impl() != nullptr;
}

}  // namespace records
