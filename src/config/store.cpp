// The store and its reset.
#include "config/store.h"

namespace kine {

namespace {

constinit Store library{};

}  // namespace

void ResetCell(Store& store)
{
    store.mechUnits = {};
    store.mounting = {kFixedInWorld, 0, {}};
}

Store& Library() { return library; }

}  // namespace kine
