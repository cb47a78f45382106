#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

// Shows on a terminal which benchmark runs; silent elsewhere. Not part of the measured time.
void showProgress(const std::string& name);

// Ends the program with a line on stderr: a benchmark whose two sides differ measures nothing.
[[noreturn]] void failCheck(const std::string& what);

// CPU time of this thread. Reading it takes a few hundred nanoseconds.
double threadSeconds();

// Each benchmark program defines this one: it adds its figures.
void addFigures();

// `measure(state)` becomes the benchmark "NAME/COUNT".
template <typename Measure>
auto* addBenchmark(const std::string& name, std::int64_t count, Measure measure) {
    auto* const added = benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        showProgress(name + "/" + std::to_string(count));
        measure(state);
    });
    return added->Arg(count);
}

// One figure for each of `counts`: what the plugin takes, and beside it its floor, as the
// benchmarks "FIGURE/ours/COUNT" and "FIGURE/floor/COUNT".
//
// `makeCase(count)` makes a new case for each of the two, and for each repetition. A case has
//     void Check();   // ends the program unless both sides do the same
//     void Ours();
//     void Floor();   // the same work with as little as possible
template <typename MakeCase>
void addFigure(const std::string& figure, const std::vector<std::int64_t>& counts,
               MakeCase makeCase) {
    const auto addSide = [&](const char* side, auto run) {
        for (const std::int64_t count : counts) {
            addBenchmark(figure + side, count, [=](benchmark::State& state) {
                auto subject = makeCase(count);
                subject.Check();
                for ([[maybe_unused]] auto unused : state) {
                    run(subject);
                    benchmark::ClobberMemory();
                }
            });
        }
    };
    addSide("/ours", [](auto& subject) { subject.Ours(); });
    addSide("/floor", [](auto& subject) { subject.Floor(); });
}

// The same for what can be done only once: every iteration has its own case; making and deleting it
// are not measured. The number of iterations is fixed, since that takes longer than what is
// measured.
template <typename MakeCase>
void addOnceFigure(const std::string& figure, const std::vector<std::int64_t>& counts,
                   MakeCase makeCase) {
    const auto addSide = [&](const char* side, auto run) {
        for (const std::int64_t count : counts) {
            auto* const added = addBenchmark(figure + side, count, [=](benchmark::State& state) {
                makeCase(count).Check();
                for ([[maybe_unused]] auto unused : state) {
                    auto subject = makeCase(count);
                    const double begin = threadSeconds();
                    run(subject);
                    benchmark::ClobberMemory();
                    state.SetIterationTime(threadSeconds() - begin);
                }
            });
            added->UseManualTime()->Iterations(std::max<std::int64_t>(3, 300 / count));
        }
    };
    addSide("/ours", [](auto& subject) { subject.Ours(); });
    addSide("/floor", [](auto& subject) { subject.Floor(); });
}
