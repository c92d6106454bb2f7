// Every class is there, and makes elements.
#include "support/trial.h"

#include <quay/zero/builder.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>

namespace {

using namespace records;

TEST(EveryClass, IsMadeByItsRegisteredBuilder) {
    for (meta::Class const& c : schemaClasses()) {
        SCOPED_TRACE(keel::toUtf8(c->getName()));
        Model const model = Model::create();
        auto const builder = meta::MetaRegistry::getInstance()->builderFactory(c);
        EXPECT_EQ(builder == nullptr, c->isAbstract());
        EXPECT_EQ(c->instantiateBuilder(model) == nullptr, c->isAbstract());
        if (builder == nullptr) continue;
        auto const id = ElementImpl::generateNewUuid();
        ModelElement const e = builder->create(id);
        EXPECT_EQ(e->getMetaClass(), c);
        EXPECT_EQ(e->uuid(), id);
        EXPECT_EQ(model->findElement(id, FindElementBehavior::InMemoryOnly), e);
        EXPECT_EQ(model->getRoots(), std::vector{e});
        EXPECT_TRUE(failsWith<UniquenessConstraint>([&] { builder->create(id); }));
        EXPECT_EQ(model->elementCount(), 1U);
        EXPECT_TRUE(failsWith<CannotCreateWithoutModel>([&] { c->instantiateBuilder(Model())->create({}); }));
    }
}

}  // namespace
