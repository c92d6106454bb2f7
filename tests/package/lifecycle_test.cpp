// Loading, unloading and reloading the product.
#include <quay/zero/builder.h>
#include <quay/zero/meta/serializers.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "support/product.h"

namespace {

using namespace product;
namespace qz = quay::zero;

constexpr int kReloads = 20;

/// Creates an element by reflection, writes to it, and releases it together with its model.
void useInAModel() {
    qz::Model const model = qz::Model::create();
    Class const type = Class::cast(registry().getType(u"ModelRefInfoRepo.ModelRefInfoRoot"));
    qz::ModelElement const made = type->instantiateBuilder(model)->create({});
    ASSERT_TRUE(made);
    EXPECT_EQ(made->getMetaClass(), type);
    Property const trigger = type->findProperty(u"triggerType");
    constexpr auto& access = qz::ReflectionPrivateTag::PUBLIC_ACCESS;
    made->setPropertyValue(trigger, qz::Value::createPrimitiveValue(trigger, 3), access);
    EXPECT_EQ(made->getPropertyValue(trigger, access).getValue<int>(), 3);
}

std::u16string parsedAs(char const* from, std::u16string const& text, char const* to) {
    Type const type = registry().getType(u"ModelRefInfoRepo.QueueType");
    auto* const serializers = PropertySerializerRegistry::getInstance();
    return serializers->getPropertySerializer(type, to)->serializeValue(
        serializers->getPropertySerializer(type, from)->parseValue(text, type));
}

TEST(Lifecycle, ComesAndGoesManyTimesInOneProcess) {
    qz::Model const lasting = qz::Model::create();
    Package const lastingElement = Package::create(lasting, {});
    std::vector<std::string> ids;
    Package former;
    Type formerType;
    std::size_t elements = 0;
    for (int load = 0; load < kReloads; ++load) {
        SCOPED_TRACE(load);
        {
            Product const product;
            Package const root = rootPackage();
            ASSERT_TRUE(root);
            EXPECT_EQ(countRootPackages(), 1u);
            Type const type = registry().getType(u"ModelRefInfoRepo.RateSpec");
            EXPECT_EQ(registry().findTypeByScriptName("Varlow.ModelReference.internal.compileInfo.RateSpec"), type);
            EXPECT_EQ(objectsOf(root).size(), kObjects);
            EXPECT_TRUE(isAtRest());
            EXPECT_EQ(parsedAs("", u"Q_TYPE_LIFO", "ID"), u"1");
            useInAModel();
            if (load == 0) {
                ids = idsOf(root);
                elements = registry().model()->elementCount();
            } else {
                EXPECT_FALSE(former);
                EXPECT_FALSE(formerType);
                EXPECT_NE(type, formerType);
                EXPECT_EQ(registry().getTypeNames(formerType).native, "");
                EXPECT_EQ(idsOf(root), ids);
                EXPECT_EQ(registry().model()->elementCount(), elements);
            }
            former = root;
            formerType = type;
        }
        ASSERT_FALSE(Product::isMapped());
        // The declared meta objects outlive the library.
        EXPECT_EQ(rootPackage(), former);
        EXPECT_EQ(formerType->getQualifiedName(), u"ModelRefInfoRepo.RateSpec");
        EXPECT_TRUE(lastingElement);
        lastingElement->setName(u"still written");
    }
    EXPECT_EQ(lasting->getElements().size(), 1u);
}

TEST(Lifecycle, ThreadsThatLoadAtTheSameTimeShareOnePackage) {
    constexpr int kThreads = 6;
    ASSERT_FALSE(Product::isMapped());
    std::vector<std::unique_ptr<Product>> products(kThreads);
    std::vector<void*> instances(kThreads);
    std::vector<std::size_t> seen(kThreads);
    std::atomic<int> waiting = kThreads;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            --waiting;
            while (waiting > 0) std::this_thread::yield();
            products[i] = std::make_unique<Product>();
            instances[i] = products[i]->getInstance();
            std::lock_guard const lock(registry().mutex());
            seen[i] = objectsOf(rootPackage()).size();
        });
    }
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(instances, std::vector<void*>(kThreads, instances[0]));
    EXPECT_EQ(seen, std::vector<std::size_t>(kThreads, kObjects));
    EXPECT_EQ(countRootPackages(), 1u);
    EXPECT_TRUE(isAtRest());
}

TEST(EntryPoints, HavePlainNamesAndMayBeCalledInAnyOrderAndNumber) {
    Product const product;
    auto* const initialize = product.function<void()>("ZLInitialize_vw_modelref_info");
    auto* const terminate = product.function<void()>("ZLTerminate_vw_modelref_info");
    ASSERT_NE(initialize, nullptr);
    ASSERT_NE(terminate, nullptr);
    Package const root = rootPackage();
    for (auto* const call : {terminate, terminate, initialize, initialize, terminate, initialize, terminate}) call();
    EXPECT_EQ(rootPackage(), root);
    EXPECT_EQ(objectsOf(root).size(), kObjects);
}

}  // namespace
