#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

// Tells a terminal which benchmark runs; silent elsewhere. Outside of the time measured.
void showProgress(const std::string& name);

// Ends the program with a line on stderr: a benchmark whose two sides differ measures nothing.
[[noreturn]] void failCheck(const std::string& what);

// Every program of benchmarks has one: it adds its figures.
void addFigures();

// One figure for each of `counts`: what the plugin takes, and beside it its floor, as the
// benchmarks "FIGURE/ours/COUNT" and "FIGURE/floor/COUNT".
//
// `makeCase(count)` makes a new case for each of the two, and for each repetition. A case has
//     void Check();   // ends the program unless both sides do the same
//     void Ours();
//     void Floor();   // the same work done barely
template <typename MakeCase>
void addFigure(const std::string& figure, const std::vector<std::int64_t>& counts,
               MakeCase makeCase) {
    const auto addSide = [&](const std::string& name, auto run) {
        auto* const added =
            benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
                showProgress(name + "/" + std::to_string(state.range(0)));
                auto subject = makeCase(state.range(0));
                subject.Check();
                for ([[maybe_unused]] auto unused : state) {
                    run(subject);
                    benchmark::ClobberMemory();
                }
            });
        for (const std::int64_t count : counts) {
            added->Arg(count);
        }
    };
    addSide(figure + "/ours", [](auto& subject) { subject.Ours(); });
    addSide(figure + "/floor", [](auto& subject) { subject.Floor(); });
}
