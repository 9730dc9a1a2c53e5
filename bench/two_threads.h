// Throughput of two threads on two cores against one.
#pragma once

#include <cstddef>
#include <functional>

#include "KineDll.h"

namespace kine::bench {

struct TwoThreads
{
    bool hasTwoCores;
    bool sameBits;   // every result of both threads is that of one thread, bit for bit
    double speedUp;  // calls per second of both against one, best runs of each
};

TwoThreads RaceTwoThreads(std::size_t targets, int runs,
                          const std::function<KineResult(std::size_t, KineJoint&)>& solve);

}  // namespace kine::bench
