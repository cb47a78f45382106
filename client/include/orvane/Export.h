#pragma once

// Marks what the library exports. ORVANE_CLIENT_STATIC comes with the static library.
#ifdef ORVANE_CLIENT_STATIC
#define ORVANE_API
#else
#define ORVANE_API __attribute__((visibility("default")))
#endif
