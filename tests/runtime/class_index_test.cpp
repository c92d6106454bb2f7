// The index by class when memory runs out while it is built, updated or sorted.
#include "support/memory.h"
#include "support/node.h"

#include <quay/zero/query/query.h>

#include <gtest/gtest.h>

#include <new>

namespace {

using namespace nodes;
using namespace quay::zero;
using query::find;

void make(Model const& model, int count) {
    for (int i = 0; i < count; ++i) i % 3 == 0 ? Node(Special::create(model)) : Node::create(model);
}

template <class X>
std::vector<X> filter(Model const& model) {
    std::vector<X> found;
    for (ModelElement const& e : model->getElements()) {
        if (X const x = X::cast(e)) found.push_back(x);
    }
    return found;
}

struct Stage {
    char const* name;
    void (*prepare)(Model const&);
};

Stage const kStages[] = {
    {"first", [](Model const& model) { make(model, 20); }},
    {"caught up",
     [](Model const& model) {
         make(model, 20);
         find<Node>(model);
         make(model, 20);
     }},
    {"after the first one has gone",
     [](Model const& model) {
         make(model, 20);
         find<Node>(model).front()->destroy();
         make(model, 20);
     }},
    {"with gaps",
     [](Model const& model) {
         for (int i = 0; i < 2; ++i) {
             make(model, 3000);
             auto const all = find<Node>(model);
             for (std::size_t n = 10; n < all.size(); ++n) all[n]->destroy();
         }
         make(model, 20);
     }},
};

TEST(ClassIndex, IsWholeAgainAfterMemoryRanOut) {
    for (auto const& [name, prepare] : kStages) {
        SCOPED_TRACE(name);
        bool happened = true;
        for (long granted = 0; happened; ++granted) {
            Model const model = Model::create();
            prepare(model);
            happened = starve(granted, [&] { find<Node>(model); }).ranOut;
            EXPECT_EQ(find<Node>(model), filter<Node>(model));
            EXPECT_EQ(find<Special>(model), filter<Special>(model));
            filter<Node>(model)[3]->destroy();
            EXPECT_EQ(find<Node>(model), filter<Node>(model));
        }
    }
}

}  // namespace
