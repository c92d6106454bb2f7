// Single values: NaN, arrays, optionals, changes through derived properties, and old values beyond a mask's first word.
#include "support/dump.h"
#include "support/listener.h"
#include "support/samples.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay/zero/storage.h>
#include <zx/zx.h>

#include <gtest/gtest.h>

namespace {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace records;

constexpr auto const& kPublic = ReflectionPrivateTag::PUBLIC_ACCESS;

TEST(Arrays, AreToldApartByIdentityAndNeverByContent) {
    Model const model = Model::create();
    model->enableHistory(10);
    ArgumentValue const value = ArgumentValue::create(model, {});
    auto const property = ArgumentValue::metaClass()->findProperty(u"value");
    Hearer hearer(model);
    zx::Array one = zx::scalar(1.0);
    zx::Array const same = zx::scalar(1.0);
    value->setValue(nullptr);
    EXPECT_EQ(hearer.take(), "");
    value->setValue(one.get());
    EXPECT_NE(value->getValue(), one.get()) << "a copy of its own";
    EXPECT_NE(hearer.take(), "");
    value->setValue(one.get());
    value->setValue(value->getValue());
    EXPECT_EQ(hearer.take(), "") << "the array that it came from, and its own";
    value->setValue(same.get());
    EXPECT_NE(hearer.take(), "") << "another one of equal content";
    value->setValue(one.get());
    hearer.take();
    *static_cast<double*>(zxGetDataForWriting(one.get())) = 2;
    value->setValue(one.get());
    EXPECT_NE(hearer.take(), "") << "it was written since";
    EXPECT_EQ(zxGetNumber(value->getValue()), 2);
    EXPECT_TRUE(value->hasPropertyValue(property, kPublic));
    value->setValue(nullptr);
    EXPECT_FALSE(value->hasPropertyValue(property, kPublic));
    model->undo();
    EXPECT_EQ(zxGetNumber(value->getValue()), 2);
    hearer.take();
    {
        auto transaction = model->beginTransaction(false);
        value->setValue(nullptr);
    }
    value->setValue(one.get());
    EXPECT_EQ(hearer.take(), "") << "a rolled back array is still the one that it came from";

    // A new array at the address of a former one counts as a different array.
    for (int i = 0; i < 20; ++i) {
        zx::Array const fresh = zx::scalar(double(i));
        value->setValue(fresh.get());
        ASSERT_EQ(zxGetNumber(value->getValue()), i);
    }
}

TEST(Derived, RecordsWhatItDerivesFrom) {
    Model const model = Model::create();
    model->enableHistory(10);
    Hearer hearer(model);
    OutportInformation const port = OutportInformation::create(model, {});
    hearer.take();
    EXPECT_EQ(port->getRateInfo().getPeriod(), -1.0);
    EXPECT_FALSE(port->hasRateInfos());
    auto const property = RootIOPortInformation::metaClass()->findProperty(u"rateInfo");
    EXPECT_TRUE(property->isDerived());
    EXPECT_TRUE(port->hasPropertyValue(property, kPublic));
    RateInfo x;
    for (double period : {5.0, 6.0, 7.0}) {
        x.setPeriod(period);
        port->getRateInfosMutable()->push_back(x);
    }
    EXPECT_EQ(port->getRateInfo().getPeriod(), 5.0);
    hearer.take();
    for (int i = 0; i < 2; ++i) {
        port->setRateInfo((*port->getRateInfos())[port->getRateInfos()->size() - 1]);
        ASSERT_EQ(port->getRateInfos()->size(), 1U);
        EXPECT_EQ((*port->getRateInfos())[0], x);
        std::string const heard = hearer.take();
        EXPECT_EQ(std::count(heard.begin(), heard.end(), ';'), 2) << "two changes, also when the rate is there already";
    }
}

TEST(Storage, KeepsAllOfTheWidestClassAndGivesItBack) {
    Model const model = Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    auto const properties = ModelRefInfoRoot::metaClass()->getProperties();
    auto const write = [&](unsigned n) {
        for (auto const& p : properties) {
            bool const single = p->getFlags() == ValueFlags::One || p->getFlags() == ValueFlags::Optional;
            if (single && !p->isComposite() && !p->isDerived())
                root->setPropertyValue(p, sample(p->getType(), n), kPublic);
        }
    };
    write(0);
    std::string const before = dumpElements(model);
    std::unique_ptr<Storage> const storage(root->createStorage());
    for (unsigned long index : {171UL, 1UL, 128UL, 64UL, 127UL, 63UL}) {
        root->copyValue(storage.get(), index);
        EXPECT_TRUE(storage->has(index));
    }
    EXPECT_EQ(storage->indices(), (std::vector{171UL, 1UL, 128UL, 64UL, 127UL, 63UL}));
    for (unsigned long index : {0UL, 2UL, 62UL, 65UL, 126UL, 129UL, 170UL, 172UL, 192UL, 1000UL})
        EXPECT_FALSE(storage->has(index));
    storage->revertUnchanged(root.impl());
    EXPECT_TRUE(storage->empty()) << "nothing was written";

    std::map<int, std::string> shown;
    for (auto const& p : properties) shown[p->getIndex()] = show(root->getPropertyValue(p, kPublic));
    for (unsigned long index = 0; index <= 200; ++index) root->copyValue(storage.get(), index);
    EXPECT_EQ(storage->indices().size(), 171U);
    write(1);
    for (auto const& p : properties) {
        EXPECT_EQ(show(storage->getOldValue(p, kPublic)), p->isDerived() ? "nothing" : shown.at(p->getIndex()));
    }
    storage->revertUnchanged(root.impl());
    for (auto const& p : properties) {
        bool const written = (p->getFlags() == ValueFlags::One || p->getFlags() == ValueFlags::Optional) &&
                             !p->isComposite() && !p->isDerived();
        EXPECT_EQ(!p->isDerived() && storage->has(p->getIndex()), written) << keel::toUtf8(p->getName());
    }
    root->copyStateFromStorage(storage.get());
    EXPECT_EQ(dumpElements(model), before);
}

}  // namespace
