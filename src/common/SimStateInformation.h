#pragma once

#include <cstdint>

// What the protocols need to know about the simulator: whether an aircraft is loaded, and its id,
// from which clients see that the user has switched aircraft.
class SimStateInformation final {
public:
    void SetPlaneLoaded(bool loaded);
    bool IsPlaneLoaded() const;

    // The id that ReadPlaneId computed last; 0 before the first time. Survives an unload.
    std::uint32_t GetPlaneId() const;

    // Recomputes the id from the first 100 bytes of the aircraft's description dataref.
    void ReadPlaneId();

    // MurmurHash3_x86_32, except that the final step mixes in `length` modulo 4 instead of
    // `length`. Clients compare ids computed this way.
    std::uint32_t getMurmur32Hash(const char* data, unsigned int length, unsigned int seed);

private:
    bool planeLoaded = false;
    std::uint32_t planeId = 0;
};
