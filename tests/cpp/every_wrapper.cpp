// The address of every wrapper, so that each is compiled and kept: what the compile tests compile, and what
// the object file is asked which functions it needs. Constants show that records and texts are made by the
// compiler. Holds nothing that needs exceptions or type information.
#include "KineDll.hpp"
// Both orders of the two headers, and twice each, are the same.
#include "KineDll.h"
#include "KineDll.hpp"

using AnyFunction = void (*)();

namespace {

using namespace kinedll;

constexpr KineTool kTool = HeldTool(MakeFrame(0, 0, 200), MakeLoad(2, 0, 0, 50));
constexpr KineJoint kJoints = WithExtAxes(MakeJoints({0, 0, 0, 0, -90, 0}), {1200});
constexpr KineSixAxisParam kArm = NominalSixAxis({150, 600, 100, 650, 100, 450, 0});
constexpr KineFourAxisParam kScara = NominalFourAxis(325, 275, 250, 20);
constexpr KineMechUnit kTrack = CarryingRobot(LinearUnit(MakeFrame(0, 0, 0), 0));
static_assert(kTool.HeldByRobot == 1 && kJoints.ExtAxis[0] > 1199.0 && kArm.alpha4 < -89.0);
static_assert(kScara.ScrewLead > 19.0 && kTrack.Option1 == 1);
static_assert(Code{KINE_ERR_WOBJ}.Name()[9] == 'W' && TextOf(KINE_OK).name[5] == 'O');

template <class Function>
AnyFunction AddressOf(Function* wrapper)
{
    return reinterpret_cast<AnyFunction>(wrapper);
}

using InitUnion = Code(ArmType, const KineKinematicParam&);
using InitSixAxis = Code(const KineSixAxisParam&);
using InitFourAxis = Code(const KineFourAxisParam&, ArmType);

}  // namespace

void ForEveryWrapper(void (*use)(AnyFunction));
void ForEveryWrapper(void (*use)(AnyFunction))
{
    use(AddressOf<InitUnion>(InitKinematicParam));
    use(AddressOf<InitSixAxis>(InitKinematicParam));
    use(AddressOf<InitFourAxis>(InitKinematicParam));
    use(AddressOf(SetAxisLimit));
    use(AddressOf(SetMechUnitGlobalCfg));
    use(AddressOf(SetMechUnitParam));
    use(AddressOf(SetExtAxisParam));
    use(AddressOf(GetArmType));
    use(AddressOf(IsArmTypeValid));
    use(AddressOf(IsSingularity));
    use(AddressOf(JointToBasePos));
    use(AddressOf(JointToFlangePos));
    use(AddressOf(JointToWorldPos));
    use(AddressOf(JointToWobjPos));
    use(AddressOf(FKineVision));
    use(AddressOf(WobjPosToJoint));
    use(AddressOf(WorldPosToFixWobjPos));
    use(AddressOf(WorldPosToGripWobjPos));
    use(AddressOf(GripWobjPosToWorldPos));
    use(AddressOf(CrdPosToWobjPos));
    use(AddressOf(ToolCoordOffset));
    use(AddressOf(WobjCoordOffset));
    use(AddressOf(CalcExtToolPrm_1P));
    use(AddressOf(CalcExtToolPrm_1PZX));
    use(AddressOf(CalcExtToolPrm_3P));
    use(AddressOf(CalcExtToolPrm_3PZX));
    use(AddressOf(CalcGripToolPrm_3P));
    use(AddressOf(CalcGripToolPrm_3PZX));
    use(AddressOf(CalcGripToolPrm_5P));
    use(AddressOf(CalcGripToolPrm_Scara2P));
    use(AddressOf(CalcExtWobj_UserPrm_2P));
    use(AddressOf(CalcExtWobj_UserPrm_3P));
    use(AddressOf(CalcExtWobj_UserPrm_Cirle3P));
    use(AddressOf(CalcExtWobj_ObjPrm_3P));
    use(AddressOf(CalcGripWobj_UserPrm_3P));
    use(AddressOf(CalcGripWobj_ObjPrm_3P));
    use(AddressOf(CalcUnFixWobj_ObjPrm_3P));
    use(AddressOf(CalcPositionerJ1Prm_3P));
    use(AddressOf(CalcPositionerJnPrm_3P));
    use(AddressOf(CalcRobotBasePrm_3P));
    use(AddressOf(InchMovePosCalc));
    use(AddressOf(CalcAlignPos));
    use(AddressOf(CalcAlignCoordProc));
    use(AddressOf(CalcZVec));
    use(AddressOf(kinedll::SafeArea_Check));
    use(AddressOf(CalcPosDif));
}
