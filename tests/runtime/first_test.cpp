#include "support/expect.h"
#include "support/node.h"

#include <quay/zero/meta/registry.h>
#include <quay0/messages.h>

namespace {
using namespace nodes;
using namespace quay::zero;

TEST(First, Runs) {
    auto model = Model::create();
    auto a = Node::create(model, idOf(1));
    EXPECT_TRUE(a);
    a->setText(u"a");
    auto tx = model->beginTransaction(false);
    a->setText(u"b");
    auto b = Node::create(model);
    a->children().add(b);
    {
        auto inner = model->beginTransaction(false);
        b->destroy();
        EXPECT_FALSE(b);
        EXPECT_EQ(a->children().size(), 0u);
    }
    EXPECT_TRUE(b);
    tx.commit(boost::none);
    EXPECT_EQ(a->children().size(), 1u);
    EXPECT_EQ(a->text(), u"b");
    EXPECT_TRUE(failsWith<quay0::messages::NoSuchType>([] { (void)meta::MetaRegistry::getInstance()->getType(u"x"); }));
}
}  // namespace
