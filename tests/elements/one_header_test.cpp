// A program that includes only the header of one class of the product. This test must compile, and so it includes
// nothing else.
#include <ModelRefInfoRepo/InportInformation.h>

#include <gtest/gtest.h>

namespace {

using ModelRefInfoRepo::InportInformation;
namespace qz = quay::zero;

TEST(OneHeader, IsEnoughToCreateBuildAndQuery) {
    auto model = qz::Model::create();
    auto tx = model->beginTransaction(false);
    InportInformation const created = InportInformation::create(model, qz::ElementImpl::generateNewUuid());
    created->setIsNotDerivPort(true);
    InportInformation::Builder builder(model);
    InportInformation const built = builder.setIsNotDerivPort(false).setTrueHiers("a").create();
    InportInformation::BuilderWrapper const wrapper(builder);
    EXPECT_EQ(&wrapper.builder(), &builder);
    tx.commit(boost::none);

    auto const hits = qz::query::find<InportInformation>(
        model, InportInformation::isNotDerivPort() == true || InportInformation::trueHiers().startsWith("b"));
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_EQ(hits.front(), created);
    qz::query::Query<InportInformation> query(model);
    auto const& words = query.constrainables();
    EXPECT_TRUE(query.where(words.trueHiers == "a" && !words.hierCondInfos.any()).find() == std::vector{built});
    EXPECT_TRUE(created->getHierCondInfos()->empty());
}

}  // namespace
