#pragma once

// Marks what programs may use of the library.
#define ORVANE_HEADLESS_API __attribute__((visibility("default")))
