// One thread at a time works in a model, but every thread may have its own. The thread sanitizer finds violations.
#include "../common/random.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/change_set.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <set>
#include <thread>
#include <vector>

namespace {

using namespace nodes;
using namespace quay::zero;

template <class F>
void inThreads(int count, F const& f) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) threads.emplace_back([&f, i] { f(i); });
    for (std::thread& t : threads) t.join();
}

/// Creates, changes and destroys a model with elements of every kind; the result must not depend on the thread.
std::string live() {
    Model const model = Model::create();
    std::string told;
    model->enableHistory(3);
    model->addListener([&](ChangeSet const& changes) {
        for (auto const& change : changes.changed()) {
            for (auto const& p : change.properties()) told += show(change.oldValue(p)) + show(change.newValue(p));
        }
    });
    Special const root = Special::create(model, idOf(1));
    for (unsigned i = 2; i < 12; ++i) {
        Transaction transaction = model->beginTransaction(false);
        Node const e = Node::create(model, idOf(i));
        e->setText(std::u16string(std::size_t{3} * i, u'x'));
        e->setRank(static_cast<int>(i % 3));
        e->setBox({{1.0 * i}});
        root->byName().insert(e);
        root->tags().insert(e->text());
        root->setCount(static_cast<int>(i));
        {
            Transaction inner = model->beginTransaction(false);
            root->byRank().insert(e);
            if (i % 2 == 0) inner.commit(boost::none);
        }
        transaction.commit(boost::none);
        if (i % 4 == 0) e->destroy();
        if (i % 5 == 0) model->undo();
    }
    return dump(model) + told;
}

TEST(Threads, EachHaveTheirModels) {
    std::string const expected = live();
    int const living = Node::Impl::living;
    std::atomic<int> wrong{0};
    inThreads(3, [&](int) {
        for (int i = 0; i < 5 * randomly::kEffort; ++i) wrong += live() != expected ? 1 : 0;
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(Node::Impl::living, living);
}

TEST(Threads, MayDropHandlesOfOthers) {
    int const living = Node::Impl::living;
    for (int round = 0; round < 20; ++round) {
        Model model = Model::create();
        Node const e = Node::create(model);
        std::vector<Node> const handles(8, e);
        model = Model();
        inThreads(4, [&](int i) {
            Node copy = handles[static_cast<std::size_t>(i)];
            for (int n = 0; n < 100; ++n) copy = handles[static_cast<std::size_t>(n % 8)];
            EXPECT_FALSE(copy);
        });
    }
    EXPECT_EQ(Node::Impl::living, living);
}

TEST(Threads, DrawDifferentIds) {
    std::vector<std::vector<boost::uuids::uuid>> drawn(4);
    inThreads(4, [&](int i) {
        Model const model = Model::create();
        for (int n = 0; n < 1000; ++n) {
            drawn[static_cast<std::size_t>(i)].push_back(ElementImpl::generateNewUuid());
            drawn[static_cast<std::size_t>(i)].push_back(model->elements().drawId());
        }
    });
    std::set<boost::uuids::uuid> all;
    for (auto const& ids : drawn) all.insert(ids.begin(), ids.end());
    EXPECT_EQ(all.size(), 8000U);
}

TEST(Threads, LookTypesUpWhileOthersRegisterThem) {
    auto* const registry = meta::MetaRegistry::getInstance();
    std::atomic<int> wrong{0};
    inThreads(3, [&](int i) {
        std::u16string const name = u"Thread" + std::u16string(1, static_cast<char16_t>(u'0' + i));
        for (int n = 0; n < 20; ++n) {
            if (registry->getType(u"Real") != meta::StandardTypes::realMeta) ++wrong;
            auto const* s = meta::PropertySerializerRegistry::getInstance()->getPropertySerializer(
                meta::StandardTypes::integerMeta);
            if (s->serializeValue(Value(meta::StandardTypes::integerMeta, n, ValueFlags::One)).empty()) ++wrong;
            std::lock_guard const lock(registry->mutex());
            Model::Thawer const thawer = registry->freezer().thaw();
            auto const type = meta::Enum::create(registry->model(), {});
            type->setName(name);
            registry->registerType(type, nullptr, nullptr);
            if (registry->getType(name) != type) ++wrong;
            type->destroy();
            registry->unregisterType(type);
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(ForkedProcesses, DrawIdsOfTheirOwn) {
    constexpr std::size_t kCount = 100;
    Model const model = Model::create();
    Node::create(model);
    auto const draw = [&] {
        std::vector<boost::uuids::uuid> ids;
        for (std::size_t i = 0; i < kCount; ++i) {
            ids.push_back(Node::create(model)->uuid());
            ids.push_back(ElementImpl::generateNewUuid());
            ids.push_back(Node::create(Model::create())->uuid());
        }
        return ids;
    };
    draw();
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    pid_t const child = fork();
    ASSERT_GE(child, 0);
    std::vector<boost::uuids::uuid> const mine = draw();
    std::size_t const bytes = mine.size() * sizeof mine[0];
    if (child == 0) _exit(write(ends[1], mine.data(), bytes) == static_cast<ssize_t>(bytes) ? 0 : 1);
    std::vector<boost::uuids::uuid> theirs(mine.size());
    EXPECT_EQ(read(ends[0], theirs.data(), bytes), static_cast<ssize_t>(bytes));
    int status = 1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    for (int const end : ends) close(end);
    std::set<boost::uuids::uuid> all(mine.begin(), mine.end());
    all.insert(theirs.begin(), theirs.end());
    EXPECT_EQ(all.size(), 2 * mine.size());
}

}  // namespace
