#include <quay/zero/meta/types.h>
#include <quay/zero/query/class_index.h>
#include <quay/zero/query/query.h>

#include <span>

namespace quay::zero::query {

namespace {

using Element = ModelElement::Impl;
constexpr unsigned kBlock = ClassIndex::Walk::kBlock;

/// Passes the elements of a block that meet the condition to the sink.
void ask(Question const& question, bool mayStray, std::span<Element* const> block, Sink const& sink) {
    Mask wanted = firstBits(block.size());
    for (std::size_t i = 0; mayStray && i < block.size(); ++i) {
        if (!block[i]->getMetaClass()->conformsTo(question.result)) wanted &= ~(Mask{1} << i);
    }
    if (wanted != 0 && question.condition != nullptr) wanted = question.condition->match(block.data(), wanted);
    if (wanted != 0) sink.take(sink.target, block.data(), wanted);
}

}  // namespace

AbstractQuery::~AbstractQuery() = default;

void answer(Question const& question, Sink const& sink) {
    if (!question.cls) reportException(quay0::messages::InvalidValue().about(u"the class of a query"));
    // A class that isn't derived from that of the hits may have subclasses in common with it.
    bool const mayStray = !question.cls->conformsTo(question.result);
    if (question.condition != nullptr) {
        question.condition->check({mayStray ? question.result : question.cls, question.query});
    }
    if (!question.model) return;
    ModelImpl const& model = *question.model.impl();
    ClassIndex::Walk walk(model.elements().byClass(), question.cls, question.mode);
    if (!model.proxies().any()) {
        for (auto block = walk.next(); !block.empty(); block = walk.next()) ask(question, mayStray, block, sink);
        return;
    }
    // Resolving a proxy may add elements to the model, so the elements to check are collected first.
    std::vector<ModelElement> all;
    for (auto block = walk.next(); !block.empty(); block = walk.next()) {
        for (Element* const e : block) all.emplace_back(e);
    }
    Element* block[kBlock];
    for (std::size_t at = 0; at < all.size();) {
        unsigned count = 0;
        for (; at < all.size() && count < kBlock; ++at) {
            if (all[at] && !all[at]->isProxy()) block[count++] = all[at].impl();
        }
        ask(question, mayStray, {block, count}, sink);
    }
}

}  // namespace quay::zero::query
