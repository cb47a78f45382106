#pragma once

namespace headless {

// Makes the process one in which allocations are counted, as LD_PRELOAD does it: starts the program
// anew with libheadless-allocations.so, which lies beside the simulator's library. Does not return
// then. Returns when they are counted already, or cannot be; allocationsAreCounted() tells which.
//
// To be called first thing. Programs that a plugin starts do not count.
void countAllocations(char** arguments);

} // namespace headless
