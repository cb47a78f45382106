#pragma once

#include "headless/xplm/data/Dataref.h"

namespace headless {

// One number in the simulator's own world: a scalar dataref of any type or an element of an array.
// Without a dataref it reads as zero and drops writes, so the flight model works in worlds that
// lack some of its datarefs. Borrows the dataref.
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
