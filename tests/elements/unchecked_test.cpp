// Operations that open no savepoint of their own and check nothing, on owners that are older than the transaction and
// on owners that were created in it: they are rolled back, undone and redone like any other change.
#include "support/dump.h"
#include "support/listener.h"
#include "support/samples.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay/zero/builder.h>
#include <quay/zero/collection.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/storage.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace records;

struct Place {
    meta::Class type;
    char16_t const* property;
};

/// Two owners of one class, the first with two children in a property.
struct Family {
    Family(Model const& model, Place const& place)
        : property(place.type->findProperty(place.property)),
          owner(make(place.type, model)),
          other(make(place.type, model)) {
        bool const isSingle = property->getFlags() == ValueFlags::One;
        for (unsigned n = 0; n < (isSingle ? 1 : 2); ++n) children.push_back(addChild(n));
    }
    ModelElement makeChild(unsigned n) const {
        ModelElement const child = make(property->getType(), owner->getModel());
        if (auto const key = property->getQualifiedBy()) {
            child->setPropertyValue(key, sample(key->getType(), n), ReflectionPrivateTag::PUBLIC_ACCESS);
        }
        return child;
    }
    ModelElement addChild(unsigned n) const {
        ModelElement const child = makeChild(n);
        property->descriptor()->place(*owner.impl(), child);
        return child;
    }
    ReferenceCollection* collection() const {
        return static_cast<ReferenceCollection*>(property->descriptor()->collection(*owner.impl()));
    }

    meta::Property property;
    ModelElement owner;
    ModelElement other;
    std::vector<ModelElement> children;
};

struct Operation {
    char const* name;
    std::function<void(Family const&)> run;
};

std::vector<Operation> const& operations() {
    static std::vector<Operation> const all = {
        {"destroy", [](Family const& f) { f.children[0]->destroyRecursively(false, true, false); }},
        {"move", [](Family const& f) { f.other->_setContainedByThis(f.children[0].impl(), f.property); }},
        {"remove", [](Family const& f) { f.owner->inverseRemove(f.children[0], f.property); }},
        {"add", [](Family const& f) { f.owner->inverseAdd(f.makeChild(7), f.property); }},
        {"empty", [](Family const& f) { f.owner->basicDisassociateAll(); }},
        {"clear",
         [](Family const& f) {
             if (f.collection() != nullptr) f.collection()->getGenericInterface()->genericBasicClear();
         }},
        {"restore",
         [](Family const& f) {
             std::unique_ptr<Storage> const storage(f.owner->createStorage());
             f.owner->copyValue(storage.get(), f.property->getIndex());
             f.children[0]->destroyRecursively(false, true, false);
             f.owner->copyStateFromStorage(storage.get());
         }},
    };
    return all;
}

std::vector<Place> places() {
    return {{ModelRefInfoRoot::metaClass(), u"inports"},
            {ModelRefInfoRoot::metaClass(), u"unionTsContainedTs"},
            {InportInformation::metaClass(), u"hierCondInfos"},
            {InportInformation::metaClass(), u"dataEventsInfo"},
            {VarTsUIDMap::metaClass(), u"entries"}};
}

/// Runs the operation in a transaction that is committed or rolled back, on a family of the given age.
void tryOut(Operation const& operation, Place const& place, bool isNewborn, bool commits) {
    Model const model = Model::create();
    std::optional<Family> family;
    if (!isNewborn) family.emplace(model, place);
    model->enableHistory(10);
    std::string const before = dump(model);
    std::string const start = dumpElements(model);
    {
        auto transaction = model->beginTransaction(false);
        if (isNewborn) family.emplace(model, place);
        operation.run(*family);
        if (commits) transaction.commit(boost::none);
    }
    if (!commits) {
        EXPECT_EQ(dump(model), before);
        return;
    }
    std::string const after = dumpElements(model);
    while (model->undoDepth() > 0) ASSERT_TRUE(model->undo());
    EXPECT_EQ(dumpElements(model), start);
    while (model->redoDepth() > 0) ASSERT_TRUE(model->redo());
    EXPECT_EQ(dumpElements(model), after);
}

TEST(Unchecked, IsTakenBackAndDoneAgain) {
    for (Operation const& operation : operations()) {
        for (Place const& place : places()) {
            for (int how = 0; how < 4; ++how) {
                SCOPED_TRACE(testing::Message()
                             << operation.name << ' ' << testing::PrintToString(std::u16string(place.property))
                             << (how % 2 != 0 ? ", newborn" : "") << (how / 2 != 0 ? ", committed" : ""));
                tryOut(operation, place, how % 2 != 0, how / 2 != 0);
            }
        }
    }
}

TEST(Unchecked, OutsideATransactionEndsTheHistory) {
    for (char const* name : {"remove", "add", "empty", "clear", "restore"}) {
        for (Place const& place : places()) {
            SCOPED_TRACE(testing::Message() << name << ' ' << testing::PrintToString(std::u16string(place.property)));
            Model const model = Model::create();
            model->enableHistory(10);
            Family const family(model, place);
            auto const& all = operations();
            auto const operation = std::find_if(all.begin(), all.end(),
                                                [&](Operation const& o) { return std::string_view(o.name) == name; });
            Hearer hearer(model);
            operation->run(family);
            bool const heard = !hearer.take().empty();
            EXPECT_FALSE(heard && std::string_view("empty") == name) << "it is done without a record";
            std::string const after = dumpElements(model);
            while (model->undo()) {
            }
            while (model->redo()) {
            }
            EXPECT_EQ(dumpElements(model), after);
        }
    }
}

TEST(Unchecked, KeepsOneElementAKey) {
    Model const model = Model::create();
    Family const family(model, {VarTsUIDMap::metaClass(), u"entries"});
    ModelElement const twin = family.makeChild(0);
    family.collection()->basicAdd(twin);
    EXPECT_EQ(family.collection()->getAllValues().size(), 2U);
    EXPECT_FALSE(family.collection()->getGenericInterface()->genericContains(twin));
}

}  // namespace
