/* Loads the library at run time: no part of it is needed to link. The arguments are the library and a file
   with the names of its functions. Ends with 0 when all names are there and the flange is where it is by
   hand. */
#include <dlfcn.h>
#include <math.h>
#include <stdio.h>

#include "KineDll.h"

/* ISO C converts no pointer to an object into one to a function; through a union it may be read as one. */
typedef union Symbol
{
    void* object;
    KineResult (*init)(uint32_t, const KineKinematicParam*);
    KineResult (*toWorld)(const KineJoint*, const KineTool*, const KineWobj*, const KineLoad*, KinePose*);
} Symbol;

static int CountMissing(void* library, const char* listName)
{
    FILE* list = fopen(listName, "r");
    if (list == NULL) return -1;
    char name[64];
    int count = 0;
    int missing = 0;
    while (fscanf(list, "%63s", name) == 1) {
        ++count;
        if (dlsym(library, name) == NULL) {
            printf("not there: %s\n", name);
            ++missing;
        }
    }
    fclose(list);
    printf("%d functions, %d missing\n", count, missing);
    return count == 44 ? missing : -1;
}

int main(int count, char** arguments)
{
    if (count != 3) return 2;
    void* library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        printf("%s\n", dlerror());
        return 1;
    }
    if (CountMissing(library, arguments[2]) != 0) return 1;

    Symbol init;
    Symbol toWorld;
    init.object = dlsym(library, "Kine_InitKinematicParam");
    toWorld.object = dlsym(library, "Kine_JointToWorldPos");

    KineKinematicParam arm = {0};
    arm.FourAxis.Link1Length = 400.0;
    arm.FourAxis.Link2Length = 300.0;
    arm.FourAxis.ScrewLead = 20.0;
    if (init.init(KINE_ARM_FOUR_AXIS, &arm) != KINE_OK) return 1;

    const KineTool tool = {.HeldByRobot = 1};
    const KineWobj wobj = {.UFFix = 1};
    const KineLoad load = {0};
    const KineJoint joints = {.Axis = {90.0, -90.0, 360.0, 0.0}};
    KinePose pose = {0};
    if (toWorld.toWorld(&joints, &tool, &wobj, &load, &pose) != KINE_OK) return 1;
    printf("X %.3f  Y %.3f  Z %.3f\n", pose.Frame.X, pose.Frame.Y, pose.Frame.Z);
    const int right = fabs(pose.Frame.X - 300.0) < 1e-9 && fabs(pose.Frame.Y - 400.0) < 1e-9 &&
                      fabs(pose.Frame.Z - 20.0) < 1e-9;
    return dlclose(library) == 0 && right ? 0 : 1;
}
