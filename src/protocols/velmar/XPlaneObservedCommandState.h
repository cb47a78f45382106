#pragma once

// What the simulator did with a command since the last reset.
class XPlaneObservedCommandState final {
public:
    // The command was begun or is held (`down`), or was ended.
    void Set(bool down);

    bool GetCurrentState() const;
    bool GetLastQueriedState() const;
    // Stays true once the command has left the state that it had at the last reset.
    bool Changed() const;
    void Reset();

private:
    bool lastQueriedState = false;
    bool changed = false;
    bool stateAtLastReset = false;
    bool currentState = false;
};
