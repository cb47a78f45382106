#pragma once

#include "headless/xplm/data/Dataref.h"

namespace headless {

// One number of the simulator's own world, wherever it stands: a scalar dataref of any type or an
// element of an array. Without a dataref it reads as zero and drops what is written, so the flight
// model flies in worlds that lack some of its datarefs. Borrows the dataref.
class DatarefNumber final {
public:
    explicit DatarefNumber(const Dataref* borrowedDataref, int elementIndex = 0)
        : dataref(borrowedDataref), index(elementIndex) {}

    double Get() const;
    void Set(double number) const;

private:
    const Dataref* dataref;
    int index;
};

} // namespace headless
