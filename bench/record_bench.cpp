// A whole record (a root, 200 ports with two children each, 2 000 edges and a map of 100 entries), built in one
// transaction, read, and destroyed; and a map with text keys.
#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "floor_record.h"
#include "support.h"

namespace bench {
namespace {

constexpr int kPorts = 200;
constexpr int kEdges = 2000;
constexpr int kEntries = 100;
std::u16string const kLabel = u"twenty units of text";

hand::Root& buildFloor(hand::Store& store, hand::List<hand::Root>& roots) {
    hand::Root& root = hand::make(store, roots);
    for (int i = 0; i < kPorts; ++i) {
        hand::Port& port = hand::make(store, root.ports);
        port.setNumber(i + 1);
        port.setMinimum(-i - 1);
        port.setLabel(kLabel);
        hand::makeEvents(port);
        hand::make(store, port.conditions).setFirst(i + 1);
    }
    for (int i = 0; i < kEdges; ++i) {
        hand::Edge& edge = hand::make(store, root.edges);
        edge.setFirst(static_cast<unsigned>(i) + 1);
        edge.setSecond(static_cast<unsigned>(i) + 2);
    }
    for (int i = 0; i < kEntries; ++i) hand::makeEntry(root, i, kLabel);
    return root;
}

double readFloor(hand::Root const& root) {
    double sum = 0;
    for (auto const& port : root.ports) {
        sum += port->number + port->minimum + static_cast<double>(port->label.size());
        for (auto const& condition : port->conditions) sum += condition->first;
    }
    for (auto const& edge : root.edges) sum += static_cast<double>(edge->first + edge->second);
    for (auto const& [key, entry] : root.maps[0]) sum += key + static_cast<double>(entry->text.size());
    return sum;
}

void floorWholeRecord(benchmark::State& state) {
    hand::Store store;
    hand::List<hand::Root> roots;
    for (auto _ : state) {
        store.begin();
        hand::Root& root = buildFloor(store, roots);
        store.commit();
        benchmark::DoNotOptimize(readFloor(root));
        store.begin();
        hand::destroyRecord(root);
        store.commit();
    }
}
BENCHMARK(floorWholeRecord)->Unit(benchmark::kMicrosecond);

ModelRefInfoRoot build(qz::Model const& model) {
    auto root = ModelRefInfoRoot::create(model, {});
    for (int i = 0; i < kPorts; ++i) {
        auto const port = root->createIntoInports();
        port->setOriginalPortNumber(static_cast<unsigned>(i) + 1);
        port->setDesignMin(-i - 1);
        port->setCompiledSignalLabel(kLabel);
        port->createIntoDataEventsInfo();
        port->createIntoHierCondInfos()->setHierIdx(static_cast<unsigned>(i) + 1);
    }
    for (int i = 0; i < kEdges; ++i) {
        auto const edge = root->createIntoAllEdges();
        edge->setSrcNodeIdx(static_cast<unsigned>(i) + 1);
        edge->setDstNodeIdx(static_cast<unsigned>(i) + 2);
    }
    auto const map = root->createIntoVarTsUIDMap();
    for (int i = 0; i < kEntries; ++i) {
        auto const entry = VarTsUIDEntry::create(model, {});
        entry->setVarTsIdx(i);
        entry->setVarTsUID(kLabel);
        map->getEntriesMutable()->insert(entry);
    }
    return root;
}

double read(ModelRefInfoRoot const& root) {
    double sum = 0;
    for (auto const& port : *root->getInports()) {
        sum += port->getOriginalPortNumber() + port->getDesignMin();
        sum += static_cast<double>(port->getCompiledSignalLabel().size());
        for (auto const& condition : *port->getHierCondInfos()) sum += static_cast<double>(condition->getHierIdx());
    }
    for (auto const& edge : *root->getAllEdges()) {
        sum += static_cast<double>(edge->getSrcNodeIdx() + edge->getDstNodeIdx());
    }
    for (auto const& entry : *root->getVarTsUIDMap()->getEntries()) {
        sum += entry->getVarTsIdx() + static_cast<double>(entry->getVarTsUID().size());
    }
    return sum;
}

void wholeRecord(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    for (auto _ : state) {
        qz::Transaction transaction = model->beginTransaction(false);
        auto const root = build(model);
        transaction.commit(boost::none);
        benchmark::DoNotOptimize(read(root));
        root->destroy();
    }
}
BENCHMARK(wholeRecord)->Unit(benchmark::kMicrosecond);

// --- 10 000 text keys in random order; every write is a transaction of its own; per key -----------------------------

std::vector<std::u16string> makeKeys(char16_t const* stem) {
    std::vector<std::u16string> keys;
    for (int i = 0; i < 10000; ++i) {
        std::u16string key(stem);
        for (char const digit : std::to_string(10000 + i)) key.push_back(static_cast<char16_t>(digit));
        keys.push_back(key);
    }
    std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    return keys;
}

std::vector<std::u16string> const kKeys = makeKeys(u"the key number ");
std::vector<std::u16string> const kOthers = makeKeys(u"another number ");

enum class Part { Insert, Find, Rekey };

template <Part What>
void floorKeyedMap(benchmark::State& state) {
    hand::Store store;
    std::vector<std::unique_ptr<hand::Note>> notes;
    for (auto const& key : kKeys) notes.emplace_back(std::make_unique<hand::Note>(store))->text = key;
    std::map<std::u16string, hand::Note*> map;
    auto const fill = [&] {
        for (auto const& note : notes) map.emplace(note->text, note.get());
    };
    fill();
    for (auto _ : state) {
        if constexpr (What == Part::Insert) {
            state.PauseTiming();
            map.clear();
            state.ResumeTiming();
            fill();
        } else if constexpr (What == Part::Find) {
            for (auto const& key : kKeys) benchmark::DoNotOptimize(map.find(key)->second);
        } else {
            for (auto const* keys : {&kOthers, &kKeys}) {
                for (std::size_t i = 0; i < keys->size(); ++i) {
                    std::u16string const& key = (*keys)[i];
                    if (map.find(key) != map.end()) continue;
                    auto node = map.extract(notes[i]->text);
                    notes[i]->text = key;
                    node.key() = key;
                    map.insert(std::move(node));
                }
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kKeys.size()) *
                            (What == Part::Rekey ? 2 : 1));
}

template <Part What>
void keyedMap(benchmark::State& state) {
    qz::Model const model = qz::Model::create();
    auto const map = FMUBlockInfo::create(model, {});
    std::vector<FMUBlockAssociation> entries;
    for (auto const& key : kKeys) {
        entries.push_back(FMUBlockAssociation::create(model, {}));
        entries.back()->setFullPath(key);
    }
    auto const fill = [&] {
        for (auto const& entry : entries) map->getEntriesMutable()->insert(entry);
    };
    fill();
    for (auto _ : state) {
        if constexpr (What == Part::Insert) {
            state.PauseTiming();
            map->getEntriesMutable()->clear();
            state.ResumeTiming();
            fill();
        } else if constexpr (What == Part::Find) {
            for (auto const& key : kKeys) benchmark::DoNotOptimize(map->getEntries()->find(key).impl());
        } else {
            for (auto const* keys : {&kOthers, &kKeys}) {
                for (std::size_t i = 0; i < keys->size(); ++i) entries[i]->setFullPath((*keys)[i]);
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kKeys.size()) *
                            (What == Part::Rekey ? 2 : 1));
}

BENCHMARK(floorKeyedMap<Part::Insert>)->Name("floorKeyedMap/insert")->Unit(benchmark::kMicrosecond);
BENCHMARK(keyedMap<Part::Insert>)->Name("keyedMap/insert")->Unit(benchmark::kMicrosecond);
BENCHMARK(floorKeyedMap<Part::Find>)->Name("floorKeyedMap/find")->Unit(benchmark::kMicrosecond);
BENCHMARK(keyedMap<Part::Find>)->Name("keyedMap/find")->Unit(benchmark::kMicrosecond);
BENCHMARK(floorKeyedMap<Part::Rekey>)->Name("floorKeyedMap/rekey")->Unit(benchmark::kMicrosecond);
BENCHMARK(keyedMap<Part::Rekey>)->Name("keyedMap/rekey")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bench
