#include "engine/tree/Node.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#if defined(__GLIBC__)
#include <malloc.h>
#endif
#include <random>
#include <string>
#include <vector>

namespace sweeply {
namespace {

std::string pathOf(std::int64_t number) { return "/Users/sam/Library/Caches/entry-" + std::to_string(number); }

/// A module's root with one folder node of `count` files.
struct Results {
    explicit Results(std::int64_t count) {
        root->addChild(folder);
        files.reserve(static_cast<std::size_t>(count));
        for (std::int64_t i = 0; i < count; ++i) {
            std::string path = pathOf(i);
            files.push_back(Node::nodeWithName(path.substr(path.rfind('/') + 1), Icon::ItsOwn, 0, 4096, path, true));
            files.back()->setEvidence(evidence);
            folder->addChild(files.back());
        }
    }

    Node::Pointer root = Node::nodeWithName("root", Icon::None, 0, 0);
    Node::Pointer folder = Node::nodeWithName("folder", Icon::None, 0, 0);
    SharedEvidence evidence{EvidenceRule::CacheFolder};
    std::vector<Node::Pointer> files;
};

void addOneByOne(benchmark::State& state) {
    for (auto _ : state) {
        Results results(state.range(0));
        benchmark::DoNotOptimize(results.root->longSize());
        state.PauseTiming();
        results.root.reset();
        results.folder.reset();
        results.files.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// As a removal does: one after the other from the front, the totals looked at after each.
void removeOneByOne(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Results results(state.range(0));
        state.ResumeTiming();
        for (const auto& file : results.files) {
            results.folder->removeChild(*file);
            benchmark::DoNotOptimize(results.root->longSize());
        }
        state.PauseTiming();
        results.files.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void toggleOneByOne(benchmark::State& state) {
    const Results results(state.range(0));
    for (auto _ : state) {
        for (const auto& file : results.files) {
            file->becomeEnabled(!file->ifEnabled());
            benchmark::DoNotOptimize(results.root->longSize());
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// As a click on a column does, of items in no order at all.
void sortBy(benchmark::State& state, const char* column) {
    std::mt19937 random(1);
    const Results results(state.range(0));
    for (const auto& file : results.files)
        file->setSize(random());
    std::vector<Node::Pointer> asFound = results.folder->children();
    std::ranges::shuffle(asFound, random);
    for (auto _ : state) {
        state.PauseTiming();
        results.folder->killChildren();
        for (const auto& file : asFound)
            results.folder->addChild(file);
        state.ResumeTiming();
        results.root->sortArrayUsingDescriptors({{column, false}});
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(sortBy, size, "Size")->Arg(200'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sortBy, name, "Name")->Arg(200'000)->Unit(benchmark::kMillisecond);

#if defined(__GLIBC__)
/// "node" is what the class takes, "item" all that one more item costs, its path included.
void memory(benchmark::State& state) {
    const auto used = [] {
        const auto info = ::mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd);
    };
    for (auto _ : state) {
        const double before = used();
        const Results results(state.range(0));
        state.counters["node"] = static_cast<double>(sizeof(Node));
        state.counters["item"] = (used() - before) / static_cast<double>(state.range(0));
    }
}
BENCHMARK(memory)->Arg(1'000'000)->Iterations(1)->Unit(benchmark::kMillisecond);
#endif

BENCHMARK(addOneByOne)->Arg(100'000)->Arg(200'000)->Unit(benchmark::kMillisecond);
BENCHMARK(removeOneByOne)->Arg(100'000)->Arg(200'000)->Unit(benchmark::kMillisecond);
BENCHMARK(toggleOneByOne)->Arg(100'000)->Arg(200'000)->Unit(benchmark::kMillisecond);

/// Without this the allocator gives the memory of a big tree back between runs and that of a small one not, and the
/// comparison of the two would be one of page faults.
void keepFreedMemory() {
#if defined(__GLIBC__)
    constexpr int kPlenty = 1 << 30;
    ::mallopt(M_TRIM_THRESHOLD, kPlenty);
    ::mallopt(M_MMAP_THRESHOLD, kPlenty);
#endif
}

} // namespace
} // namespace sweeply

int main(int argc, char** argv) {
    sweeply::keepFreedMemory();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
