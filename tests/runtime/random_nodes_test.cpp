// Random sequences of operations on nodes, compared step by step with the reference model.
#include "../elements/support/world.h"
#include "support/node.h"

namespace {

using namespace nodes;
using namespace quay::zero;
using records::Operation;

ModelElement makeNode(meta::Type const& type, Model const& model, boost::uuids::uuid const& id) {
    return type == Special::metaClass() ? ModelElement(Special::create(model, id)) : Node::create(model, id);
}

records::Plan const& plan() {
    static records::Plan const made = [] {
        auto const& all = nodeMeta().properties;
        return records::Plan({{Node::metaClass(), {all.begin() + kText, all.begin() + kNote}},
                              {Special::metaClass(), {all.begin() + kText, all.end()}}},
                             &makeNode, false);
    }();
    return made;
}

/// Besides the operations of all elements: hooks of a host's own class that fail when an element is created or
/// destroyed.
class World final : public records::World {
public:
    using records::World::World;

private:
    void actParticularly(Operation const& o) override {
        static int countdown;
        if (o.c % 4 == 0) {
            Hook const hook(Node::Impl::whenCreated, [](Node::Impl&) { throw 1; });
            return refused("int", [&] { Node::create(model_); });
        }
        if (o.c % 4 != 1 || !any()) return;
        int const n = pick(o.a);
        countdown = o.b % reference_.subtreeSize(n);
        Hook const hook(Node::Impl::whenDestroying, [](Node::Impl&) {
            if (countdown-- == 0) throw 1;
        });
        refused("int", [&] { element(n)->destroy(); });
    }
};

TEST(RandomNodes, DoAsTheReferenceDoes) {
    int const before = Node::Impl::living;
    randomly::check(200 * randomly::kEffort,
                    [&](std::vector<Operation> const& operations, std::uint8_t limit, bool listening) {
                        World(plan(), limit % 5, listening).run(operations);
                        RC_ASSERT(Node::Impl::living == before);
                    });
}

}  // namespace
