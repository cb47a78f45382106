#pragma once

namespace headless {

// Makes the process count allocations, as with LD_PRELOAD: restarts the program with
// libheadless-allocations.so, from the folder of the simulator's library, and does not return.
// Returns if allocations are counted already or cannot be; allocationsAreCounted() says which.
//
// Call this first. Programs that a plugin starts do not count.
void countAllocations(char** arguments);

} // namespace headless
