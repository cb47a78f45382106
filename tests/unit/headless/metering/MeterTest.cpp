#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "headless/host/PluginHost.h"
#include "headless/metering/Meter.h"
#include "headless/metering/StatsReport.h"

using headless::Meter;
using headless::PluginFigures;
using headless::PluginHost;
using headless::Simulator;
using testing::HasSubstr;

class MeterTest : public testing::Test {
protected:
    // Twenty frames with two plugins, of which the busy one burns 2 ms in two of them.
    MeterTest() {
        for (PluginHost* host : {&busy, &fake}) {
            host->Start();
            host->Enable();
        }
        for (int i = 0; i < 20; ++i) {
            sim.RunFrame(0.1);
        }
    }

    const PluginFigures& figuresOf(const std::string& file) const {
        for (const auto& plugin : meter.Plugins()) {
            if (plugin->file == file) {
                return *plugin;
            }
        }
        throw std::out_of_range(file);
    }

    Simulator sim;
    Meter meter{sim};
    PluginHost busy{sim, BUSY_PLUGIN};
    PluginHost fake{sim, FAKE_PLUGIN};
};

TEST_F(MeterTest, MeasuresEachPluginByItself) {
    ASSERT_EQ(meter.Plugins().size(), 2U);
    const PluginFigures& first = figuresOf(BUSY_PLUGIN);
    const PluginFigures& second = figuresOf(FAKE_PLUGIN);
    EXPECT_EQ(first.callsInFrames.Of("XPLMGetElapsedTime"), 40U);
    EXPECT_EQ(first.callsInFrames.Total(), 60U);
    EXPECT_EQ(first.logLinesInFrames, 20U);
    EXPECT_GE(first.frames.Worst(), std::chrono::milliseconds(2));
    EXPECT_LT(first.frames.Quantile(0.5), std::chrono::milliseconds(2));
    EXPECT_EQ(second.callsInFrames.Total(), 0U);
    EXPECT_EQ(second.frames.Count(), 20U);
    EXPECT_GT(second.frames.Mean().count(), 0);
    EXPECT_NEAR(meter.Seconds(), 2.0, 1e-9);
}

TEST_F(MeterTest, WhatHappensBetweenFramesIsApart) {
    const PluginFigures& figures = figuresOf(FAKE_PLUGIN);
    const auto started = figures.callsOutside;
    EXPECT_EQ(started, 6U) << "what it registered, and its two lines";
    fake.SendMessage(7, nullptr);
    sim.RunFrame(0.1);
    EXPECT_EQ(figures.callsOutside, started + 1);
    EXPECT_EQ(figures.callsInFrames.Total(), 0U);
    EXPECT_GT(figures.outside.count(), 0);
}

TEST_F(MeterTest, APluginThatIsLoadedAgainGoesOnWithItsFigures) {
    fake.Stop();
    fake.Start();
    fake.Enable();
    sim.RunFrame(0.1);
    EXPECT_EQ(meter.Plugins().size(), 2U);
    EXPECT_EQ(figuresOf(FAKE_PLUGIN).frames.Count(), 21U);
}

TEST_F(MeterTest, TheFramesObserverSeesWhatWasCalledInEach) {
    std::string last;
    meter.SetFrameObserver([&](const PluginFigures& frame) {
        last += overBudget(frame, frame.file == BUSY_PLUGIN ? 0 : 1e9);
    });
    sim.RunFrame(0.1);
    EXPECT_THAT(last, testing::MatchesRegex(BUSY_PLUGIN
                                            " took [0-9.]+ us of CPU time in frame 21, 0 us are "
                                            "allowed: XPLMGetElapsedTime 2, XPLMDebugString 1"));
}

TEST_F(MeterTest, TheReportHasAllFigures) {
    const std::string text = statsAsText(meter);
    EXPECT_THAT(text, HasSubstr(BUSY_PLUGIN ": 20 frames\n  CPU time per frame    mean "));
    EXPECT_THAT(text,
                HasSubstr("  log                   10.00 lines per second\n"
                          "  SDK calls             3.00 per frame, 60\n"
                          "    XPLMGetElapsedTime                      2.00 per frame, 40\n"
                          "    XPLMDebugString                         1.00 per frame, 20\n"));
    EXPECT_THAT(text, HasSubstr("the process: "));
}

TEST_F(MeterTest, TheReportForProgramsHasTheSame) {
    const std::string text = statsAsJson(meter);
    EXPECT_EQ(text.find('\n'), std::string::npos);
    const auto report = nlohmann::json::parse(text);
    EXPECT_NEAR(report["seconds"].get<double>(), 2.0, 1e-9);
    EXPECT_GT(report["resident_kb"]["now"], 0);
    const auto& first = report["plugins"][0];
    EXPECT_EQ(first["file"], BUSY_PLUGIN);
    EXPECT_EQ(first["frames"], 20);
    EXPECT_GE(first["cpu_us"]["worst"], 2000.0);
    EXPECT_EQ(first["allocations"], nullptr) << "this process does not count them";
    EXPECT_NEAR(first["log_lines_per_second"].get<double>(), 10.0, 1e-9);
    EXPECT_EQ(first["calls"],
              (nlohmann::json{{"XPLMGetElapsedTime", 40}, {"XPLMDebugString", 20}}));
}
