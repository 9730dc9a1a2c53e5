/* The header may come twice, after the headers it includes itself, and leaves no helper macro behind. */
#include <stddef.h>
#include <stdint.h>

#include "KineDll.h"

#if defined(KINE_STATIC_ASSERT) || defined(KINE_ASSERT_SIZE) || defined(KINE_ASSERT_OFFSET)
#error "a helper macro of the header is left"
#endif

static int UsesNames(KineResult code) { return code == KINE_OK || code == KINE_ERR_UNKNOWN_ARM_TYPE; }

int UsesRecords(void);
int UsesRecords(void)
{
    KineKinematicParam param;
    struct KineFrame frame;
    param.FourAxis.ScrewLead = 20.0;
    frame.X = param.FourAxis.ScrewLead;
    return UsesNames(KINE_ERR_MODEL_PARAM) + (frame.X > 0.0);
}
