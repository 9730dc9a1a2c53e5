/*
 * A program that knows the DLL by its file name only: it loads it, finds every export of the list by its plain name,
 * and makes one forward and one inverse call.
 *
 *     load_by_name LIBRARY LIST
 */
#include <math.h>
#include <stdio.h>
#include <string.h>
#include <windows.h>

#include "KineDll.h"

typedef void(KINE_CALL* AnyCall)(void);
typedef KineResult(KINE_CALL* InitCall)(uint32_t, const KineKinematicParam*);
typedef KineResult(KINE_CALL* ForwardCall)(const KineJoint*, const KineTool*, const KineWobj*,
                                           const KineLoad*, KinePose*);
typedef KineResult(KINE_CALL* InverseCall)(const KinePose*, const KineTool*, const KineWobj*, const KineLoad*,
                                           KineJoint*);

static AnyCall Find(HMODULE library, const char* name)
{
    AnyCall call = NULL;
    const FARPROC found = GetProcAddress(library, name);
    if (found == NULL) printf("not found: %s\n", name);
    memcpy(&call, &found, sizeof call);
    return call;
}

/* The number of names in the file that the library has, or -1 when one is missing. */
static int FindAll(HMODULE library, const char* list)
{
    char name[128];
    int count = 0;
    int missing = 0;
    FILE* const names = fopen(list, "r");
    if (names == NULL) return -1;
    while (fgets(name, sizeof name, names) != NULL) {
        name[strcspn(name, "\r\n")] = '\0';
        if (Find(library, name) == NULL) ++missing;
        ++count;
    }
    fclose(names);
    return missing == 0 ? count : -1;
}

/* An arm of 500 and 400 mm on a column of 300 mm, stretched up at joints 0. With axis 5 at a right angle the forearm
 * still points forward: the flange is 400 mm ahead and 800 mm up. */
static int CallsWork(HMODULE library)
{
    const InitCall init = (InitCall)Find(library, "Kine_InitKinematicParam");
    const ForwardCall forward = (ForwardCall)Find(library, "Kine_JointToWobjPos");
    const InverseCall inverse = (InverseCall)Find(library, "Kine_WobjPosToJoint");
    KineKinematicParam arm;
    KineJoint joints;
    KineJoint solved;
    KineTool tool;
    KineWobj wobj;
    KineLoad load;
    KinePose pose;
    int i;
    memset(&arm, 0, sizeof arm);
    memset(&joints, 0, sizeof joints);
    memset(&tool, 0, sizeof tool);
    memset(&wobj, 0, sizeof wobj);
    memset(&load, 0, sizeof load);
    arm.SixAxis.a2 = 500.0;
    arm.SixAxis.d4 = 400.0;
    arm.SixAxis.d1 = 300.0;
    arm.SixAxis.alpha1 = arm.SixAxis.alpha3 = arm.SixAxis.alpha5 = 90.0;
    arm.SixAxis.alpha4 = -90.0;
    tool.HeldByRobot = 1;
    wobj.UFFix = 1;
    joints.Axis[4] = 90.0;
    if (init == NULL || forward == NULL || inverse == NULL) return 0;
    if (init(KINE_ARM_SIX_AXIS, &arm) != KINE_OK) return 0;
    if (forward(&joints, &tool, &wobj, &load, &pose) != KINE_OK) return 0;
    if (fabs(pose.Frame.X - 400.0) > 1e-9 || fabs(pose.Frame.Y) > 1e-9 || fabs(pose.Frame.Z - 800.0) > 1e-9)
        return 0;
    if (inverse(&pose, &tool, &wobj, &load, &solved) != KINE_OK) return 0;
    for (i = 0; i < 6; ++i) {
        if (fabs(solved.Axis[i] - joints.Axis[i]) > 1e-9) return 0;
    }
    return 1;
}

int main(int argc, char** argv)
{
    HMODULE library;
    int count;
    int works;
    if (argc != 3) return 2;
    library = LoadLibraryA(argv[1]);
    if (library == NULL) {
        printf("not loaded: %s\n", argv[1]);
        return 1;
    }
    count = FindAll(library, argv[2]);
    works = CallsWork(library);
    if (!FreeLibrary(library)) return 1;
    printf("%d exports found, calls %s\n", count, works ? "work" : "FAIL");
    return count > 0 && works ? 0 : 1;
}
