#pragma once

#include <string>

// The text of the exception that `action` throws, or an empty text. Any other exception than
// `Wanted` fails the test.
template <class Wanted, class Action>
std::string textOf(Action action) {
    try {
        action();
    } catch (const Wanted& thrown) {
        return thrown.what();
    }
    return {};
}
