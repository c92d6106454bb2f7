// Builders and createInto: trees of children, refused calls, and that a failure changes nothing.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/listener.h"

#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay0/messages.h>

namespace {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace quay0::messages;
using namespace records;

std::unique_ptr<VarTsUIDMap::Builder> mapOf(std::initializer_list<int> keys) {
    auto map = std::make_unique<VarTsUIDMap::Builder>();
    for (int key : keys) {
        auto entry = std::make_unique<VarTsUIDEntry::Builder>();
        entry->setVarTsIdx(key);
        map->addEntries(std::move(entry));
    }
    return map;
}

TEST(Builders, MakeTreesOfAnyDepthInOneCommit) {
    Model const model = Model::create();
    Hearer hearer(model);
    ModelRefInfoRoot::Builder root(model);
    auto functions = std::make_unique<VarlowFunctions::Builder>();
    auto function = std::make_unique<CompFunction::Builder>();
    auto caller = std::make_unique<VariantCallerNetEMVCE::Builder>();
    auto net = std::make_unique<VariantFunctionNetEMVCE::Builder>();
    net->setSignalName(u"s");
    caller->setRefBlockPath(u"p").addVariantFunctionNetEMVCE(std::move(net));
    function->setFunctionName(u"f").addVariantCallerNetEMVCEMap(std::move(caller));
    functions->addCompFunctions(std::move(function));
    root.setTriggerType(2).setVarlowFunctions(std::move(functions)).setVarTsUIDMap(mapOf({3, 1, 2}));
    for (int i = 0; i < 3; ++i) root.addInports(std::make_unique<InportInformation::Builder>());

    auto const id = ElementImpl::generateNewUuid();
    ModelRefInfoRoot const made = root.create(id);
    EXPECT_EQ(hearer.take(), "+12 ;");
    EXPECT_EQ(made->uuid(), id);
    EXPECT_EQ(made->getTriggerType(), 2);
    CompFunction const f = (*made->getVarlowFunctions()->getCompFunctions())[0];
    EXPECT_EQ(f->getFunctionName(), u"f");
    EXPECT_EQ(f->getVariantCallerNetEMVCEMap()->find(u"p")->getVariantFunctionNetEMVCE()->find(u"s")->basicContainer(),
              f->getVariantCallerNetEMVCEMap()->find(u"p"));
    std::vector<int> keys;
    for (VarTsUIDEntry const& e : *made->getVarTsUIDMap()->getEntries()) keys.push_back(e->getVarTsIdx());
    EXPECT_EQ(keys, (std::vector{1, 2, 3}));
    EXPECT_EQ(made->getInports()->size(), 3U);

    // A builder that is run again creates new elements.
    ModelRefInfoRoot const again = root.create();
    EXPECT_NE(again, made);
    EXPECT_NE(again->getVarTsUIDMap(), made->getVarTsUIDMap());
    EXPECT_EQ(hearer.take(), "+12 ;");
    EXPECT_EQ(model->getRoots(), (std::vector<ModelElement>{made, again}));
}

TEST(Builders, LeaveNothingWhenTheTreeCannotBe) {
    Model const model = Model::create();
    model->enableHistory(10);
    ModelRefInfoRoot const kept = ModelRefInfoRoot::create(model, {});
    kept->createIntoVarTsUIDMap()->createIntoEntries();
    Hearer hearer(model);
    std::string const before = dump(model);

    ModelRefInfoRoot::Builder clash(model);
    clash.addInports(std::make_unique<InportInformation::Builder>()).setVarTsUIDMap(mapOf({1, 2, 1}));
    ModelRefInfoRoot::Builder lost;
    InportInformation::Builder strange(model);
    auto const into = [&](auto&& f) { return [&kept, f] { f(*kept.impl()); }; };
    VarTsUIDMap::Builder twins(Model::create());
    twins.addEntries(std::make_unique<VarTsUIDEntry::Builder>()).addEntries(std::make_unique<VarTsUIDEntry::Builder>());

    auto const refuseAll = [&] {
        EXPECT_TRUE(failsWith<UniquenessConstraint>([&] { clash.create(); }));
        EXPECT_TRUE(failsWith<CannotCreateWithoutModel>([&] { lost.create(); }));
        EXPECT_TRUE(failsWith<UniquenessConstraint>([&] { InportInformation::Builder(model).create(kept->uuid()); }));
        EXPECT_TRUE(failsWith<UniquenessConstraint>([&] { ModelRefInfoRoot::create(model, kept->uuid()); }));
        EXPECT_TRUE(
            failsWith<UniquenessConstraint>(into([&](auto& r) { r.createIntoControllableInputRatesMap(twins); })));
        EXPECT_TRUE(failsWith<UniquenessConstraint>(into([&](auto& r) { r.getVarTsUIDMap()->createIntoEntries(); })));
        EXPECT_TRUE(failsWith<UniquenessConstraint>(into([&](auto& r) {
            InportInformation::Builder b;
            r.createIntoInports(b, kept->uuid());
        })));
        EXPECT_TRUE(failsWith<InvalidValue>(
            [&] { VarTsUIDMap::BuilderWrapper(static_cast<ModelElement::Builder&>(strange)); }));
    };
    refuseAll();
    EXPECT_EQ(dump(model), before);
    {
        auto outer = model->beginTransaction(false);
        refuseAll();
        outer.commit(boost::none);
    }
    EXPECT_EQ(dump(model), before);
    EXPECT_EQ(hearer.take(), "");
    EXPECT_TRUE(failsWith<CannotCreateWithoutModel>([&] { ModelRefInfoRoot::create(Model(), {}); }));
}

TEST(Builders, RefuseChildrenOfAnotherClassAndKeepWhatTheyHave) {
    Model const model = Model::create();
    ModelRefInfoRoot::Builder root(model);
    root.setVarTsUIDMap(mapOf({4}));
    EXPECT_TRUE(
        failsWith<CannotAddIncompatibleTypes>([&] { root.setVarTsUIDMap(std::make_unique<RateSpec::Builder>()); }));
    EXPECT_TRUE(failsWith<CannotAddIncompatibleTypes>(
        [&] { root.addInports(std::make_unique<OutportInformation::Builder>()); }));
    EXPECT_FALSE(root.given().test(InportInformation::metaClass()->findProperty(u"isNotDerivPort")->getIndex()));
    ModelRefInfoRoot const made = root.create();
    EXPECT_TRUE(made->getVarTsUIDMap()->getEntries()->containsKey(4));
    EXPECT_FALSE(made->hasInports());
}

TEST(Builders, KeepTheLastOfWhatIsGivenTwiceAndForgetWhatIsCleared) {
    Model const model = Model::create();
    RateInfo a;
    RateInfo b;
    b.setPeriod(2);
    InportInformation::Builder port(model);
    port.addRateInfos(a).addRateInfos({b, a}).setDesignMin(1).setDesignMin(2);
    port.addHierCondInfos(std::make_unique<HierCondInfo::Builder>()).clearHierCondInfos();
    port.setDataEventsInfo(std::make_unique<InputDataEventsInfo::Builder>());
    port.setDataEventsInfo(std::make_unique<InputDataEventsInfo::Builder>());
    auto const hier = InportInformation::metaClass()->findProperty(u"hierCondInfos")->getIndex();
    EXPECT_TRUE(port.given().test(hier));
    InportInformation made = port.create();
    EXPECT_EQ(made->getRateInfos()->size(), 3U);
    EXPECT_EQ((*made->getRateInfos())[1], b);
    EXPECT_EQ(made->getDesignMin(), 2);
    EXPECT_FALSE(made->hasHierCondInfos());
    EXPECT_EQ(model->elementCount(), 2U);
    port.clearRateInfos().setDataEventsInfo(nullptr);
    made = port.create();
    EXPECT_FALSE(made->hasRateInfos());
    EXPECT_FALSE(made->hasDataEventsInfo());
    EXPECT_TRUE(port.given().test(hier));
}

TEST(Builders, StandForElementsElsewhereWithoutEnteringThem) {
    Model const model = Model::create();
    VarTsUIDMap::Builder builder(model);
    builder.addEntries(std::make_unique<VarTsUIDEntry::Builder>());
    {
        ModelElement const suppressed = builder.createSuppressed(ElementImpl::generateNewUuid());
        EXPECT_FALSE(VarTsUIDMap::cast(suppressed)->hasEntries());
        EXPECT_EQ(model->elementCount(), 0U);
    }
    EXPECT_EQ(builder.create()->getEntries()->size(), 1U);
}

TEST(CreateInto, MakesTheChildInTheOwnersModelUnderTheGivenId) {
    Model const model = Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    Model const elsewhere = Model::create();
    InportInformation::Builder builder(elsewhere);
    builder.setIsNotDerivPort(true).addHierCondInfos(std::make_unique<HierCondInfo::Builder>());
    auto const id = ElementImpl::generateNewUuid();
    Hearer hearer(model);
    InportInformation const port = root->createIntoInports(builder, id);
    EXPECT_EQ(port->uuid(), id);
    EXPECT_EQ(port->getModel(), model);
    EXPECT_EQ(port->basicContainer(), root);
    EXPECT_TRUE(port->getIsNotDerivPort());
    EXPECT_EQ(elsewhere->elementCount(), 0U);
    EXPECT_EQ(hearer.take(),
              "+2 inports: [] -> " +
                  show(root->getPropertyValue(port->containmentFeature(), ReflectionPrivateTag::PUBLIC_ACCESS)) + " ;");

    // A dead owner refuses new children.
    root->destroy();
    std::size_t const count = model->elementCount();
    EXPECT_TRUE(failsWith<CannotAddNonExistentObject>([&] { root->createIntoInports(); }));
    EXPECT_TRUE(failsWith<CannotAddNonExistentObject>([&] { root->createIntoInports(builder); }));
    EXPECT_TRUE(failsWith<CannotAddNonExistentObject>([&] { root->createIntoVarTsUIDMap(); }));
    EXPECT_EQ(model->elementCount(), count);
}

}  // namespace
