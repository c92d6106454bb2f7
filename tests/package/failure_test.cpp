// The state after a failed declaration of the schema.
#include <keel/exception.h>
#include <keel/text.h>

#include <gtest/gtest.h>

#include <boost/uuid/string_generator.hpp>

#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "support/product.h"

namespace {

using namespace product;
namespace qz = quay::zero;

/// While it exists, the meta model is thawed and a transaction is open, which is rolled back at the end.
class Interference {
public:
    Interference()
        : lock_(registry().mutex()),
          thawer_(registry().freezer().thaw()),
          transaction_(registry().model()->beginTransaction(true)) {}

private:
    std::lock_guard<std::recursive_mutex> lock_;
    qz::Model::Thawer thawer_;
    qz::Transaction transaction_;
};

struct Fault {
    char const* name;
    std::function<void()> cause;
    char const* identifier;
    char16_t const* argument;  // null: not compared
};

std::ostream& operator<<(std::ostream& out, Fault const& fault) { return out << fault.name; }

Fault const kFaults[] = {
    {"PrimitiveTypeIsMissing", [] { registry().getPrimitiveType(u"StdString")->destroy(); },
     "quay0:messages:NoSuchType", u"StdString"},
    {"ArgumentTypeIsMissing", [] { registry().getType(u"nativeTypes.VwBlockPtr")->destroy(); },
     "quay0:messages:NoSuchType", u"nativeTypes.VwBlockPtr"},
    {"NameOfTheLastTypeIsInUse",
     [] {
         Package const package = Package::create(registry().model(), {});
         package->setName(u"ModelRefInfoRepo");
         Class const type = Class::create(registry().model(), {});
         type->setName(u"vwSolverType");
         type->setOwningPackage(package);
         registry().registerType(type, nullptr, nullptr);
     },
     "quay0:messages:UniquenessConstraint", nullptr},
};

void expectFailure(Product const& product, Fault const& fault) {
    try {
        product.getInstance();
        ADD_FAILURE() << "the schema was declared";
    } catch (keel::core::except::Error const& e) {
        EXPECT_EQ(e.GetID(), fault.identifier) << e.what();
        if (fault.argument != nullptr) {
            EXPECT_NE(std::string(e.what()).find(keel::toUtf8(fault.argument)), std::string::npos) << e.what();
        }
    }
}

void expectNothingOfThePackage() {
    EXPECT_FALSE(rootPackage());
    EXPECT_EQ(countRootPackages(), 0u);
    EXPECT_THROW(registry().getType(u"ModelRefInfoRepo.AUTOSARInportInfo"), std::exception);
    EXPECT_FALSE(registry().findTypeByScriptName("Varlow.ModelReference.internal.compileInfo.RateInfo"));
}

/// Several threads call getInstance at once after the declaration has failed.
void expectRecovery(Product const& product) {
    std::vector<void*> instances(4);
    std::vector<std::thread> threads;
    threads.reserve(instances.size());
    for (void*& instance : instances) threads.emplace_back([&] { instance = product.getInstance(); });
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(instances, std::vector<void*>(instances.size(), instances[0]));
    EXPECT_EQ(countRootPackages(), 1u);
    EXPECT_EQ(objectsOf(rootPackage()).size(), kObjects);
    EXPECT_TRUE(isAtRest());
    EXPECT_EQ(registry().getType(u"ModelRefInfoRepo.RateInfo")->getOwningPackage()->getParentPackage(), rootPackage());
}

/// Removes an earlier declaration of the package, if there is one.
void forgetPackage() {
    Package const root = rootPackage();
    if (!root) return;
    std::lock_guard const lock(registry().mutex());
    qz::Model::Thawer const thawer = registry().freezer().thaw();
    registry().unregisterRootPackage(kUri);
    root->destroy();
}

class Failure : public testing::TestWithParam<Fault> {};

TEST_P(Failure, LeavesNothingBehindAndTheNextAttemptSucceeds) {
    { Product const bringsForeignPackagesUp; }
    forgetPackage();
    ASSERT_FALSE(Product::isMapped());
    std::size_t const before = registry().model()->elementCount();

    std::optional<Interference> interference(std::in_place);
    GetParam().cause();
    std::size_t const spoilt = registry().model()->elementCount();
    Product const product;  // loading goes on without the schema
    expectNothingOfThePackage();
    expectFailure(product, GetParam());
    expectFailure(product, GetParam());
    expectNothingOfThePackage();
    EXPECT_EQ(registry().model()->elementCount(), spoilt);

    interference.reset();
    EXPECT_TRUE(isAtRest());
    EXPECT_EQ(registry().model()->elementCount(), before);
    expectRecovery(product);
    EXPECT_EQ(registry().model()->elementCount(), before + kObjects);
}

INSTANTIATE_TEST_SUITE_P(Causes, Failure, testing::ValuesIn(kFaults),
                         [](auto const& info) { return std::string(info.param.name); });

/// In a new process the foreign packages are declared for the first time by the product's load. If the transaction
/// around it is rolled back, they must be declared again as well.
TEST(FailureDeathTest, OfTheFirstLoadOfAllIsMadeGoodToo) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::optional<Interference> interference(std::in_place);
            kFaults[0].cause();
            Product const product;
            expectFailure(product, kFaults[0]);
            interference.reset();
            expectRecovery(product);
            std::exit(testing::Test::HasFailure() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
