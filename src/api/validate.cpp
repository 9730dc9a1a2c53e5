// Validation of the public records.
#include "api/validate.h"

#include <cmath>

#include "config/print.h"

namespace kine {

bool IsLegalWobj(const Store& store, const KineWobj& wobj)
{
    // Tested even where UFrame is ignored.
    if (!IsLegalFrame(wobj.UFrame)) return false;
    if (wobj.UFFix == 0) {
        // Signed: a negative index passes, and the frame services refuse it.
        const std::int32_t count = store.mechUnits.mechUnitCount;
        if (wobj.MechUnitIndex == 0 || wobj.MechUnitIndex >= count) {
            Print("IsLegalWobj,!pWobj->UFFix:%d;\n", {count});
            return false;
        }
    }
    return IsLegalFrame(wobj.OFrame);
}

}  // namespace kine
