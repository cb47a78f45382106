#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "XPLMSound.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

class SoundTest : public ::testing::Test {
protected:
    // A second of sound at 100 samples per second.
    FMOD_CHANNEL* play(int repeat) {
        return XPLMPlayPCMOnBus(
            samples.data(), static_cast<unsigned>(samples.size()), FMOD_SOUND_FORMAT_PCM16, 100, 1,
            repeat, xplm_AudioUI,
            [](void* list, FMOD_RESULT result) {
                static_cast<std::vector<FMOD_RESULT>*>(list)->push_back(result);
            },
            &ends);
    }

    Simulator sim;
    std::array<char, 200> samples{};
    std::vector<FMOD_RESULT> ends;
};

TEST_F(SoundTest, LastsAsLongAsItWould) {
    ASSERT_NE(play(0), nullptr);
    sim.RunFrame(0.5);
    sim.RunFrame(0.5);
    EXPECT_TRUE(ends.empty());
    sim.RunFrame(0.5);
    EXPECT_EQ(ends, (std::vector<FMOD_RESULT>{FMOD_OK}));
}

TEST_F(SoundTest, RepeatsUntilItIsStopped) {
    FMOD_CHANNEL* const channel = play(1);
    for (int i = 0; i < 10; ++i) {
        sim.RunFrame(1.0);
    }
    EXPECT_TRUE(ends.empty());
    EXPECT_EQ(XPLMSetAudioVolume(channel, 0.5F), FMOD_OK);
    EXPECT_EQ(XPLMStopAudio(channel), FMOD_OK);
    EXPECT_EQ(ends.size(), 1U);
    EXPECT_EQ(XPLMStopAudio(channel), FMOD_ERR_INVALID_HANDLE);
    EXPECT_EQ(XPLMSetAudioPitch(channel, 440.0F), FMOD_ERR_INVALID_HANDLE);
}

TEST_F(SoundTest, AnUnknownFormatIsNotPlayed) {
    EXPECT_EQ(XPLMPlayPCMOnBus(samples.data(), 10, 99, 100, 1, 0, 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(
        XPLMPlayPCMOnBus(samples.data(), 10, FMOD_SOUND_FORMAT_PCM8, 0, 1, 0, 0, nullptr, nullptr),
        nullptr);
}

TEST_F(SoundTest, ThereIsNoSoundLibrary) {
    EXPECT_EQ(XPLMGetFMODStudio(), nullptr);
    EXPECT_EQ(XPLMGetFMODChannelGroup(xplm_Master), nullptr);
}
