#pragma once

#include <string>

// What the exception says with which `action` ends, or nothing when it does not throw. An exception
// that is not `Wanted` fails the test.
template <class Wanted, class Action>
std::string textOf(Action action) {
    try {
        action();
    } catch (const Wanted& thrown) {
        return thrown.what();
    }
    return {};
}
