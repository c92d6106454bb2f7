// The spellings of the public interface that users rely on: this test must compile, and its checks hold.
#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <unordered_set>

namespace {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;

TEST(PublicSpelling, OfElementsAndCollections) {
    auto model = qz::Model::create();
    auto root = ModelRefInfoRoot::create(model, qz::ElementImpl::generateNewUuid());
    root->setTriggerType(3);
    EXPECT_EQ(root->getTriggerType(), 3);
    auto port = root->createIntoInports();
    InportInformation::Builder another;
    EXPECT_EQ(root->createIntoInports(InportInformation::BuilderWrapper(another))->basicContainer(), root);
    EXPECT_EQ(root->createIntoInports(another, qz::ElementImpl::generateNewUuid())->basicContainer(), root);
    int visited = 0;
    for (InportInformation const& p : *root->getInports()) visited += p ? 1 : 0;
    EXPECT_EQ(visited, 3);
    static_assert(std::is_const_v<std::remove_pointer_t<decltype(root->getInports())>>);
    root->getInportsMutable()->add(port);
    EXPECT_EQ(root->getInports()->size(), 4U);
    EXPECT_TRUE(root->getInports()->contains(port));
    EXPECT_EQ((*root->getInports())[3], port);
    root->getInportsMutable()->remove(port);
    root->getInportsMutable()->erase(root->getInports()->begin());
    root->getInportsMutable()->insert(root->getInports()->begin(), port);
    EXPECT_FALSE(root->getInports()->empty());
    EXPECT_TRUE(root->hasInports());

    RateInfo rate;
    rate.setPeriod(0.1);
    EXPECT_EQ(rate.getPeriod(), 0.1);
    root->getRuntimeNonFcnCallRateInfosMutable()->push_back(rate);
    EXPECT_TRUE(root->getDisableableTaskNumsMutable()->insert(4).second);
    EXPECT_EQ(root->getDisableableTaskNumsMutable()->erase(4), 1U);
    auto const* map = root->createIntoVarTsUIDMap()->getEntries();
    root->getVarTsUIDMap()->createIntoEntries();
    EXPECT_TRUE(map->find(0));
    EXPECT_FALSE(map->find(1));

    auto base = RootIOPortInformation(port);
    EXPECT_EQ(InportInformation::cast(base), port);
    EXPECT_FALSE(OutportInformation::cast(base));
    EXPECT_EQ(model->findElement(port->uuid(), qz::FindElementBehavior(1)), port);
    EXPECT_TRUE(std::unordered_set<InportInformation>{port}.contains(port));
    EXPECT_NE(InportInformation::create(model), port);
    port->destroy();
    EXPECT_FALSE(bool(port));
    root->getInportsMutable()->clear();
    EXPECT_FALSE(root->hasInports());
}

TEST(PublicSpelling, OfReflectionAndErrors) {
    auto model = qz::Model::create();
    auto port = InportInformation::create(model, {});
    auto property = InportInformation::metaClass()->findProperty(u"isNotDerivPort");
    EXPECT_EQ(property, MetaPackageVw_modelref_info::getInstance()->InportInformation_isNotDerivPort);
    EXPECT_EQ(property->getName(), u"isNotDerivPort");
    EXPECT_EQ(property->getType(), qz::meta::StandardTypes::booleanMeta);
    EXPECT_EQ(property->getFlags(), qz::ValueFlags::One);
    EXPECT_GT(property->getIndex(), 24);
    EXPECT_FALSE(property->getDefaultValue() == boost::optional<std::u16string>(u"true"));
    EXPECT_FALSE(property->isComposite());
    EXPECT_FALSE(property->getQualifiedBy());
    EXPECT_FALSE(
        port->getPropertyValue(property, qz::ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS).getValue<bool>());
    try {
        port->setPropertyValue(property, qz::Value(qz::meta::StandardTypes::integerMeta, 1, qz::ValueFlags::One),
                               qz::ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
        FAIL();
    } catch (
        keel::core::except::Exception<quay0::messages::CannotCastIncompatibleTypes, std::exception, void> const& e) {
        EXPECT_EQ(e.message().arguments(), std::vector<std::u16string>{u"Integer"});
        EXPECT_EQ(std::string(e.what()).rfind("quay0:messages:CannotCastIncompatibleTypes: ", 0), 0U);
    }
}

}  // namespace
