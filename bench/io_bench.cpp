// Saving and loading, compared with Boost.JSON parsing the same bytes. The argument is the number of elements.
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay/zero/io/io.h>

#include <benchmark/benchmark.h>
#include <boost/json.hpp>
#include <filesystem>
#include <map>
#include <string>

namespace {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;

/// A root, and ports with three children each.
qz::Model makeRecord(std::int64_t elements) {
    qz::Model model = qz::Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    qz::Transaction transaction = model->beginTransaction(false);
    for (std::int64_t made = 1; made + 4 <= elements; made += 4) {
        InportInformation const port = root->createIntoInports();
        port->setKGNSignalIdentifier(u"in" + qz::textOf(static_cast<int>(made)));
        port->setDesignMin(0.1 * static_cast<double>(made));
        for (int child = 0; child < 3; ++child) {
            HierCondInfo const condition = port->createIntoHierCondInfos();
            condition->setHierIdx(static_cast<unsigned long>(made + child));
        }
    }
    transaction.commit(boost::none);
    return model;
}

struct Record {
    qz::Model model;
    std::string text;
};

Record const& record(benchmark::State const& state) {
    static std::map<std::int64_t, Record> records;
    Record& result = records[state.range(0)];
    if (!result.model) {
        result.model = makeRecord(state.range(0));
        result.text = qz::io::toText(result.model);
    }
    return result;
}

void count(benchmark::State& state, std::size_t bytes) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void floorBoostJsonParse(benchmark::State& state) {
    std::string const& text = record(state).text;
    for (auto _ : state) benchmark::DoNotOptimize(boost::json::parse(text));
    count(state, text.size());
}

void fromText(benchmark::State& state) {
    std::string const& text = record(state).text;
    for (auto _ : state) benchmark::DoNotOptimize(qz::io::fromText(text));
    count(state, text.size());
}

void toText(benchmark::State& state) {
    Record const& from = record(state);
    for (auto _ : state) benchmark::DoNotOptimize(qz::io::toText(from.model));
    count(state, from.text.size());
}

/// A temporary file, removed by the destructor.
struct ScratchFile {
    std::filesystem::path path = std::filesystem::temp_directory_path() / "quay_io_bench.json";
    ScratchFile() = default;
    ScratchFile(ScratchFile const&) = delete;
    ScratchFile& operator=(ScratchFile const&) = delete;
    ~ScratchFile() { std::filesystem::remove(path); }
};

void saveFile(benchmark::State& state) {
    Record const& from = record(state);
    ScratchFile const file;
    for (auto _ : state) qz::io::save(from.model, file.path);
    count(state, from.text.size());
}

void loadFile(benchmark::State& state) {
    Record const& from = record(state);
    ScratchFile const file;
    qz::io::save(from.model, file.path);
    for (auto _ : state) benchmark::DoNotOptimize(qz::io::load(file.path));
    count(state, from.text.size());
}

BENCHMARK(floorBoostJsonParse)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(fromText)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(toText)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(loadFile)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(saveFile)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
