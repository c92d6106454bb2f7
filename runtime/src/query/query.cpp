#include <quay/zero/meta/types.h>
#include <quay/zero/query/query.h>

namespace quay::zero::query {

namespace {

using Element = ModelElement::Impl;
constexpr unsigned kBlock = ClassIndex::Walk::kBlock;

/// Asks about one block and hands on what meets the condition.
void ask(Question const& question, bool mayStray, Element* const* block, unsigned count, Sink const& sink) {
    Mask wanted = firstBits(count);
    for (unsigned i = 0; mayStray && i < count; ++i) {
        if (!block[i]->getMetaClass()->conformsTo(question.result)) wanted &= ~(Mask{1} << i);
    }
    if (wanted != 0 && question.condition != nullptr) wanted = question.condition->match(block, wanted);
    if (wanted != 0) sink.take(sink.target, block, wanted);
}

}  // namespace

AbstractQuery::~AbstractQuery() = default;

void answer(Question const& question, Sink const& sink) {
    // A class that isn't derived from that of the hits may have subclasses in common with it.
    bool const mayStray = !question.cls->conformsTo(question.result);
    if (question.condition != nullptr) {
        question.condition->check({mayStray ? question.result : question.cls, question.query});
    }
    if (!question.model) return;
    ModelImpl const& model = *question.model.impl();
    ClassIndex::Walk walk(model.elementsByClass(), question.cls, question.mode);
    Element* block[kBlock];
    if (!model.hasProxies()) {
        while (unsigned const count = walk.next(block)) ask(question, mayStray, block, count, sink);
        return;
    }
    // To resolve a proxy may bring elements into the model, so those to ask about are gathered first.
    std::vector<ModelElement> all;
    while (unsigned const count = walk.next(block)) {
        for (unsigned i = 0; i < count; ++i) all.emplace_back(block[i]);
    }
    for (std::size_t at = 0; at < all.size();) {
        unsigned count = 0;
        for (; at < all.size() && count < kBlock; ++at) {
            if (all[at] && !all[at]->isProxy()) block[count++] = all[at].impl();
        }
        ask(question, mayStray, block, count, sink);
    }
}

}  // namespace quay::zero::query
