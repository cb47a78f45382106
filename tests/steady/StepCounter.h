#pragma once

#include <cstddef>

// How many basic blocks of the code under test this thread has run: the same on every machine,
// busy or not. Counts what was compiled with -fsanitize-coverage=trace-pc.
std::size_t stepsSoFar();
