#include "protocols/velmar/XPlaneObservedCommandState.h"

void XPlaneObservedCommandState::Set(bool down) {
    currentState = down;
    if (!changed) {
        changed = down != stateAtLastReset;
    }
}

bool XPlaneObservedCommandState::GetCurrentState() const {
    return currentState;
}

bool XPlaneObservedCommandState::GetLastQueriedState() const {
    return lastQueriedState;
}

bool XPlaneObservedCommandState::Changed() const {
    return changed;
}

void XPlaneObservedCommandState::Reset() {
    changed = false;
    stateAtLastReset = currentState;
    lastQueriedState = currentState;
}
