#pragma once

namespace headless {

// Called before and after each frame of a session.
class IFrameListener {
public:
    IFrameListener() = default;
    virtual ~IFrameListener() = default;
    IFrameListener(const IFrameListener&) = delete;
    IFrameListener& operator=(const IFrameListener&) = delete;

    // The flight model has advanced the aircraft by this many seconds; the plugins run next.
    virtual void BeforeFrame(double seconds) = 0;
    // All plugins have run.
    virtual void AfterFrame() = 0;
};

} // namespace headless
