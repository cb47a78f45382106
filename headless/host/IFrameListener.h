#pragma once

namespace headless {

// Takes part in the frames of a session.
class IFrameListener {
public:
    IFrameListener() = default;
    virtual ~IFrameListener() = default;
    IFrameListener(const IFrameListener&) = delete;
    IFrameListener& operator=(const IFrameListener&) = delete;

    // The flight model has moved the aircraft for so many seconds; the plugins come next.
    virtual void BeforeFrame(double seconds) = 0;
    // All plugins had their turn.
    virtual void AfterFrame() = 0;
};

} // namespace headless
