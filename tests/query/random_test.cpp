// Random queries of random models, compared with plain loops.
#include "../common/random.h"
#include "support/record.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>

namespace {

using namespace queries;
using qz::query::find;
using Port = RootIOPortInformation;

int below(int end) { return *rc::gen::inRange(0, end); }

template <class X, class Leaf>
Asked<X> composed(int depth, Leaf const& leaf) {
    int const kind = depth == 0 ? 3 : below(4);
    if (kind == 3) return leaf();
    Asked<X> const a = composed<X>(depth - 1, leaf);
    if (kind == 2) return {!a.constraint, [a](X const& x) { return !a.plain(x); }};
    Asked<X> const b = composed<X>(depth - 1, leaf);
    if (kind == 0) return {a.constraint && b.constraint, [a, b](X const& x) { return a.plain(x) && b.plain(x); }};
    return {a.constraint || b.constraint, [a, b](X const& x) { return a.plain(x) || b.plain(x); }};
}

Asked<HierCondInfo> askOfInfo() {
    return compared<HierCondInfo>(
        below(6), HierCondInfo::hierIdx(), [](HierCondInfo const& h) { return h->getHierIdx(); },
        static_cast<unsigned>(below(14)));
}

Asked<Port> askOfPort() {
    if (int const kind = below(3); kind == 0) {
        return compared<Port>(
            below(6), Port::designMin(), [](Port const& p) { return p->getDesignMin(); }, below(8) * 0.5 - 2);
    } else if (kind == 1) {
        std::string const text = *rc::gen::element<std::string>("top.even", "top.odd.5", "");
        return compared<Port>(
            below(6), Port::trueHiers(), [](Port const& p) { return p->getTrueHiers(); }, text);
    }
    Asked<HierCondInfo> const inner = composed<HierCondInfo>(2, askOfInfo);
    auto const count = [inner](Port const& p) {
        return std::count_if(p->getHierCondInfos()->begin(), p->getHierCondInfos()->end(), inner.plain);
    };
    auto const size = [](Port const& p) { return static_cast<std::ptrdiff_t>(p->getHierCondInfos()->size()); };
    switch (below(3)) {
        case 0:
            return {Port::hierCondInfos().any(inner.constraint), [=](Port const& p) { return count(p) > 0; }};
        case 1:
            return {Port::hierCondInfos().none(inner.constraint), [=](Port const& p) { return count(p) == 0; }};
        default:
            return {Port::hierCondInfos().all(inner.constraint), [=](Port const& p) { return count(p) == size(p); }};
    }
}

TEST(RandomQuestions, AreAnsweredAsAPlainLoopDoes) {
    auto const model = qz::Model::create();
    build(model);
    randomly::check(10 * randomly::kEffort, [&] {
        Asked<Port> const asked = composed<Port>(4, askOfPort);
        RC_ASSERT(find<Port>(model, asked.constraint) == filter<Port>(model, asked.plain));
        RC_ASSERT(find<InportInformation>(model, asked.constraint) == filter<InportInformation>(model, asked.plain));
    });
}

/// A model that is written, rolled back, undone and redone at random, with queries in between.
class Life {
public:
    Life() { model_->enableHistory(below(2) == 0 ? 0 : 5); }

    void step() {
        switch (below(9)) {
            case 0:
            case 1:
                write(below(3) + 1);
                return;
            case 2:
                return inTransaction(true);
            case 3:
                return inTransaction(false);
            case 4:
                if (open_ == 0) model_->undo();
                return;
            case 5:
                if (open_ == 0) model_->redo();
                return;
            case 6:
                return many();
            default:
                compare();
        }
    }
    void compare() const {
        for (Mode const mode : {Mode::Exact, Mode::WithSubclasses}) {
            expectSame<Port>(mode);
            expectSame<InportInformation>(mode);
            expectSame<OutportInformation>(mode);
            expectSame<HierCondInfo>(mode);
        }
    }

private:
    template <class X>
    void expectSame(Mode mode) const {
        RC_ASSERT(find<X>(model_, mode) == (filter<X>(model_, mode, [](X const&) { return true; })));
    }

    void write(int times) {
        for (; times > 0; --times) {
            auto const all = model_->getElements();
            if (below(3) == 0 && !all.empty()) {
                all[static_cast<std::size_t>(below(static_cast<int>(all.size())))]->destroy();
                continue;
            }
            switch (below(3)) {
                case 0:
                    InportInformation::create(model_, {})->createIntoHierCondInfos();
                    break;
                case 1:
                    OutportInformation::create(model_, {});
                    break;
                default:
                    Port::create(model_, {});
                    break;
            }
        }
    }

    void inTransaction(bool commit) {
        if (open_ == 3) return;
        qz::Transaction transaction = model_->beginTransaction(false);
        ++open_;
        for (int steps = below(4); steps > 0; --steps) step();
        if (commit) transaction.commit(boost::none);
        --open_;
    }

    /// Destroys so many elements that the index closes gaps.
    void many() {
        qz::Transaction transaction = model_->beginTransaction(false);
        constexpr std::size_t kMany = 1500;
        std::vector<Port> made(kMany);
        for (std::size_t i = 0; i < kMany; ++i) {
            made[i] = i % 2 == 0 ? Port(InportInformation::create(model_, {})) : Port::create(model_, {});
        }
        if (below(2) == 0) compare();
        for (std::size_t i = 0; i < made.size(); ++i) {
            if (i % 100 != 0) made[i]->destroy();
        }
        transaction.commit(boost::none);
    }

    qz::Model model_ = qz::Model::create();
    int open_ = 0;
};

TEST(RandomLives, KeepElementsByClassAsTheModelHasThem) {
    randomly::check(10 * randomly::kEffort, [] {
        Life life;
        for (int steps = below(40); steps > 0; --steps) life.step();
        life.compare();
    });
}

}  // namespace
