/**
 * @file KineDll.h
 * KineDll: kinematics of industrial robot arms behind a plain C interface.
 */

/**
 * @mainpage KineDll.h
 *
 * One configuration per process, no locking, one calling thread: the setup calls write the configuration,
 * all other calls only read it. Any number of threads may read at once as long as no setup call runs
 * beside them.
 *
 * Units at this boundary are millimetres and degrees. External-axis values are degrees for a rotary and
 * millimetres for a linear axis. Orientations are three angles A, B, C with R = Rz(A) * Ry(B) * Rx(C).
 *
 * Rules that hold for every function unless its own text says otherwise:
 *
 *  - It returns KINE_OK (0) or the code of the first failing check; checks run in the documented order.
 *  - Input records are copied before anything else and never modified. The result record is written last
 *    and only on success, so it may share memory with an input; on failure it keeps every bit.
 *  - An angle check accepts |angle| <= 180 degrees and lets NaN pass.
 *  - A null input pointer is one more way for that record to be refused: it gives the record's own code
 *    at the record's place in the order. A null result pointer gives the code named for it after all
 *    other checks of the call and before any computation.
 *  - Records may hold any bit pattern and need not be aligned. The forward calls pass NaN and infinity on
 *    to their results (a computed NaN is always the same quiet one); the inverse calls end in an error
 *    code instead of returning an axis value that is not finite.
 *  - Nothing is allocated, locked or kept. The only output besides the records is the diagnostic lines
 *    named here, on standard output.
 */
#ifndef KINEDLL_H
#define KINEDLL_H

#include <stddef.h>
#include <stdint.h>

/** @cond */
#if defined(_WIN32)
#define KINE_CALL __cdecl
#if defined(KINE_BUILDING_LIBRARY)
#define KINE_API __declspec(dllexport)
#elif defined(KINE_STATIC)
#define KINE_API
#else
#define KINE_API __declspec(dllimport)
#endif
#else
#define KINE_CALL
#if defined(__GNUC__)
#define KINE_API __attribute__((visibility("default")))
#else
#define KINE_API
#endif
#endif
/** @endcond */

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------------------------------------- */
/* Result codes                                                                                   */
/* ---------------------------------------------------------------------------------------------- */

/** @defgroup codes Result codes */
/** @{ */

/** 0 for success, otherwise one of the codes below. */
typedef uint32_t KineResult;

#define KINE_OK 0x0000u                  /**< success */
#define KINE_ERR_MODEL_PARAM 0x6000u     /**< kinematic parameters refused: null, or a length too small */
#define KINE_ERR_NOT_INITIALISED 0x6001u /**< no successful Kine_InitKinematicParam yet */
#define KINE_ERR_MECH_UNIT 0x6002u       /**< mechanical-unit record or index refused */
#define KINE_ERR_EXT_AXIS_PARAM 0x6003u  /**< external-axis record or index refused */
#define KINE_ERR_MECH_UNIT_COUNT 0x6004u /**< more than 3 mechanical units or 6 external-axis items */
#define KINE_ERR_POSE 0x6010u            /**< pose refused; calibration: not the kind of axis it needs */
#define KINE_ERR_TOOL 0x6011u            /**< tool refused; calibration: axis of a unit not known */
#define KINE_ERR_WOBJ 0x6012u            /**< work object refused */
#define KINE_ERR_LOAD 0x6013u            /**< load refused */
#define KINE_ERR_JOINT 0x6014u           /**< joints refused: null */
#define KINE_ERR_HOLD 0x6016u            /**< tool and work object carry the same HeldByRobot byte */
#define KINE_ERR_OFFSET_FRAME 0x6017u    /**< offset frame refused */
#define KINE_ERR_DIRECTION 0x6018u       /**< direction other than -1 or +1 */
#define KINE_ERR_W2F_MODE 0x6030u        /**< world to frame: frame neither fixed nor on a mechanical unit */
#define KINE_ERR_W2F_UNIT_KIND 0x6031u   /**< world to frame: mechanical unit not usable */
#define KINE_ERR_F2W_MODE 0x6032u        /**< frame to world: frame neither fixed nor on a mechanical unit */
#define KINE_ERR_F2W_UNIT_KIND 0x6033u   /**< frame to world: mechanical unit not usable */
#define KINE_ERR_AXIS_ORIGIN 0x6034u     /**< world to frame: axis frame of a rotary axis at the origin */
#define KINE_ERR_HOLD_CONFLICT 0x6050u   /**< chain: tool and work object both held, or neither */
#define KINE_ERR_CHAIN_1 0x6051u         /**< forward chain: nothing on the flange */
#define KINE_ERR_CHAIN_2 0x6052u         /**< frame descriptor: nothing off the flange */
#define KINE_ERR_CHAIN_3 0x6053u         /**< relative pose: hold flags contradict */
#define KINE_ERR_CHAIN_4 0x6054u         /**< inverse chain: hold flags contradict */
#define KINE_ERR_CALIB_SINGULAR 0x6060u  /**< calibration: orientations too much alike */
#define KINE_ERR_CALIB_INPUT 0x6061u     /**< calibration: no such axis, or too little travel */
#define KINE_ERR_CALIB_3 0x6063u         /**< calibration: circle too small */
#define KINE_ERR_CALIB_4 0x6064u         /**< calibration: orientations too much alike, arm type 6 */
#define KINE_ERR_CALIB_POINTS_CLOSE 0x6065u /**< calibration: points too close together */
#define KINE_ERR_CALIB_COLLINEAR 0x6066u    /**< calibration: directions parallel */
#define KINE_ERR_ZERO_VECTOR 0x6070u        /**< calibration: direction too short */
#define KINE_ERR_CRD_WOBJ 0x6071u           /**< position to work object: work object does not fit */
#define KINE_ERR_ALIGN_NO_SOLUTION 0x6080u  /**< alignment: aligned pose has no solution */
#define KINE_ERR_ALIGN_TURN 0x6081u         /**< alignment: turn of axis 4 differs */
#define KINE_ERR_CONFIG 0x6090u             /**< configuration integers out of range or not allowed */
#define KINE_ERR_IK_1 0x6091u               /**< gravity deflection too large; never returned by a call */
#define KINE_ERR_INCH_SINGULAR 0x6092u      /**< jog: target joints singular */
#define KINE_ERR_IK_SINGULAR 0x6093u        /**< four-axis inverse: elbow stretched or folded */
#define KINE_ERR_IK_REACH 0x6094u           /**< four-axis inverse: out of reach, or no finite solution */
#define KINE_ERR_SINGULAR 0x6095u           /**< inverse: singular Jacobian */
#define KINE_ERR_IK_6 0x6096u        /**< six-axis inverse: wrist centre too close to the joint-1 axis */
#define KINE_ERR_IK_7 0x6097u        /**< six-axis inverse: out of reach or elbow stretched */
#define KINE_ERR_IK_8 0x6098u        /**< six-axis inverse: wrist straight or out of range */
#define KINE_ERR_IK_9 0x6099u        /**< six-axis inverse: first correction beyond 170 degrees */
#define KINE_ERR_IK_ACCURACY 0x609Au /**< six-axis inverse: not converged, or no finite solution */

/** Arm type none of KINE_ARM_...; the one code outside the 0x6000 family. */
#define KINE_ERR_UNKNOWN_ARM_TYPE 0xFFFFFFFFu
/** Kine_IsSingularity: the joints are singular. */
#define KINE_SINGULAR 0xFFFFFFFFu

/** @} */

/* ---------------------------------------------------------------------------------------------- */
/* Records. Little-endian, natural alignment, 8-byte doubles; reserved bytes are never interpreted. */
/* ---------------------------------------------------------------------------------------------- */

/** @defgroup records Records */
/** @{ */

#define KINE_ARM_FOUR_AXIS 4u         /**< four-axis arm, vertical screw axis 3 */
#define KINE_ARM_SIX_AXIS 6u          /**< six-axis serial arm */
#define KINE_ARM_FOUR_AXIS_4110 4110u /**< four-axis arm with its axis 2 counted from the folded elbow */

/** A frame: position in mm, orientation R = Rz(A) * Ry(B) * Rx(C) in degrees. */
typedef struct KineFrame
{
    double X; /**< mm */
    double Y; /**< mm */
    double Z; /**< mm */
    double A; /**< deg, rotation about Z */
    double B; /**< deg, rotation about Y */
    double C; /**< deg, rotation about X */
} KineFrame;

/**
 * Posture and turns of an arm.
 *
 * |      | arm type 6                    | arm type 4               | arm type 4110               |
 * |------|-------------------------------|--------------------------|-----------------------------|
 * | Cfg1 | quarter-turn number of axis 1 | +1 axis 2 > 0, -1 otherwise | +1 axis 2 < 0, -1 otherwise |
 * | Cfg2 | quarter-turn number of axis 4 | 0                        | quarter-turn number of axis 1 |
 * | Cfg3 | quarter-turn number of axis 6 | 0                        | quarter-turn number of axis 2 |
 * | Cfg4 | posture 0..7                  | quarter-turn number of axis 4 | quarter-turn number of axis 4 |
 *
 * A quarter-turn number is 0 for [0, 90), 1 for [90, 180), -1 for [-90, 0) degrees and so on; every
 * boundary lies 0.0005 degrees lower. Arm type 4110 looks at axis 2 wrapped into +-180 for Cfg1.
 *
 * Posture of arm type 6: bit 0 (1) axis 5 negative, bit 1 (2) elbow on the far side (axis 3 at or beyond
 * 90 degrees - atan(a3 / d4)), bit 2 (4) wrist centre behind the axis of joint 1.
 */
typedef struct KineArmConfig
{
    int32_t Cfg1; /**< see the table */
    int32_t Cfg2; /**< see the table */
    int32_t Cfg3; /**< see the table */
    int32_t Cfg4; /**< see the table */
} KineArmConfig;

/** A Cartesian target: frame, configuration integers (see KineArmConfig) and external axes. */
typedef struct KinePose
{
    KineFrame Frame;   /**< mm, deg */
    int32_t Cfg1;      /**< see KineArmConfig */
    int32_t Cfg2;      /**< see KineArmConfig */
    int32_t Cfg3;      /**< see KineArmConfig */
    int32_t Cfg4;      /**< see KineArmConfig */
    double ExtAxis[6]; /**< deg (rotary) or mm (linear) */
} KinePose;

/** An axis position. Arms use the first 4 or 6 axes; the others are carried but not read. */
typedef struct KineJoint
{
    double Axis[8];    /**< deg; axis 3 of the four-axis arms is the angle of the screw */
    double ExtAxis[6]; /**< deg (rotary) or mm (linear) */
} KineJoint;

/** A load. Accepted when |Aom| <= 180 and Mass and Inertia are not negative (NaN passes). */
typedef struct KineLoad
{
    double Mass;       /**< kg */
    double Cog[3];     /**< mm, centre of gravity X, Y, Z */
    double Aom[3];     /**< deg, orientation of the inertia axes; checked but not used */
    double Inertia[3]; /**< Ix, Iy, Iz; checked but without effect on any result */
} KineLoad;

/** A tool. Accepted when its frame angles are within +-180 and its load is acceptable. */
typedef struct KineTool
{
    uint8_t HeldByRobot; /**< 1: on the flange; 0: stationary, the robot holds the work object */
    uint8_t Reserved[7]; /**< not read */
    KineFrame TFrame;    /**< tool centre point in the flange, or in the world for a stationary tool */
    KineLoad TLoad;      /**< load of the tool, centre of gravity in the flange */
} KineTool;

/**
 * A work object: user frame and, in it, object frame.
 *
 * Accepted when the angles of UFrame are within +-180 (also where UFrame is ignored), then, with UFFix 0,
 * when MechUnitIndex is non-zero and below the number of configured mechanical units (a negative index
 * passes here and fails in the call's frame conversion), then when the angles of OFrame are within +-180.
 *
 * A refused index prints "IsLegalWobj,!pWobj->UFFix:%d;\n" with the number of mechanical units.
 */
typedef struct KineWobj
{
    uint8_t HeldByRobot;  /**< 1: held by the robot (stationary tool) */
    uint8_t UFFix;        /**< 1: user frame fixed, given in UFrame; 0: carried by a mechanical unit */
    int8_t MechUnitIndex; /**< the carrying mechanical unit when UFFix is 0 */
    uint8_t Reserved[5];  /**< not read */
    KineFrame UFrame;     /**< in the world, or in the flange when held; taken as zero unless UFFix is 1 */
    KineFrame OFrame;     /**< in the user frame */
} KineWobj;

/** A mechanical unit: a positioner or a track. */
typedef struct KineMechUnit
{
    int32_t Active;            /**< 0: accepted without looking at AxisCount; used all the same */
    uint16_t UnitKind;         /**< 1: one linear axis, 2: one rotary axis, 3: two rotary axes */
    uint8_t Option1;           /**< 1: this unit (stored at index 0) says what carries the robot */
    uint8_t Option2;           /**< index of the unit under the robot when Option1 is 1 */
    uint8_t AxisCount;         /**< number of axes */
    uint8_t Reserved[7];       /**< not read */
    KineFrame AxisFrame[6];    /**< rotary: the frame the axis turns about Z; linear: it moves along X */
    uint8_t AxisParamIndex[6]; /**< for each axis, which of the six external axes drives it (0..5) */
    uint8_t Reserved2[2];      /**< not read */
} KineMechUnit;

/** One external axis; stored for the caller. Only Word[3] is read by the library. */
typedef struct KineExtAxisParam
{
    int16_t Word[4];     /**< [3]: 1 for a linear axis, else a rotary one; the others not read */
    uint32_t Raw0;       /**< not read */
    uint32_t Raw1;       /**< not read */
    float AngleA;        /**< deg, not read */
    float AngleB;        /**< deg, not read */
    uint32_t Value[7];   /**< not read */
    int16_t Tail[3];     /**< not read */
    uint8_t Reserved[2]; /**< not read */
} KineExtAxisParam;

/**
 * Directions of a jog step, one per slot: normally -1, 0 or +1; any value is taken as a factor of the
 * step.
 *
 * | slot              | joint mode        | other modes                                                   |
 * |-------------------|-------------------|---------------------------------------------------------------|
 * | 0 to n - 1        | axes 1 to n       | 0, 1, 2: along X, Y, Z                                        |
 * | n to n + 5        | external axes 1..6| six-axis arm: 3, 4, 5: about X, Y, Z                          |
 * |                   |                   | four-axis arms: 3, 4, 5: about Z, Y, X                        |
 *
 * n is the number of axes of the arm, 4 or 6. More than one rotation at a time is applied as it is and is
 * then not a rotation in the strict sense.
 */
typedef struct KineInchDir
{
    int32_t Slot[14]; /**< factors of the step, see the table */
} KineInchDir;

/**
 * How well the poses of a calibration agree: distances in mm between the positions that one point should
 * keep. With exact poses all three are 0 up to rounding. No calibration compares them with a limit.
 */
typedef struct KineCalibError
{
    double Largest;  /**< mm */
    double Mean;     /**< mm, over all pairs of positions */
    double Smallest; /**< mm, at most 10000 */
} KineCalibError;

/**
 * Parameters of arm type 6, a chain of standard Denavit-Hartenberg links
 * A(i) = Rz(theta) * Tz(d) * Tx(a) * Rx(alpha) with theta = q1, q2 + 90, q3, q4, q5, d = d1, 0, d3, d4, d5,
 * a = a1..a5, alpha = alpha1..alpha5, an extra Ry(beta2) after link 2, and the flange Rz(q6) * Tz(d6).
 *
 * The inverse starts from a closed form of the nominal arm, whose twists are (90, 0, 90, -90, 90), whose
 * d3 equals lateralOffset and whose beta2, d5, a4, a5 are 0, and refines on the full chain. The record of
 * a calibrated arm differs from its nominal arm by small errors only; for other chains the forward calls
 * hold, while the inverse ends in KINE_ERR_IK_9 or KINE_ERR_IK_ACCURACY.
 */
typedef struct KineSixAxisParam
{
    double a1;            /**< mm, axis 1 to axis 2; not below -1e-5 */
    double a2;            /**< mm, upper arm; not below 1e-5 */
    double a3;            /**< mm, elbow offset; not below -1e-5 */
    double d4;            /**< mm, forearm; not below 1e-5 */
    double d6;            /**< mm, wrist centre to flange; not below -1e-5 */
    double d1;            /**< mm, height of axis 2 over the base plane */
    double lateralOffset; /**< mm, wrist centre off the plane of the arm; read by the inverse only */
    double reserved0;     /**< not read */
    double alpha1;        /**< deg */
    double alpha2;        /**< deg */
    double alpha3;        /**< deg */
    double alpha4;        /**< deg */
    double alpha5;        /**< deg */
    double beta2;         /**< deg, rotation about Y at the end of link 2 */
    double d3;            /**< mm */
    double d5;            /**< mm */
    double a4;            /**< mm */
    double a5;            /**< mm */
    double mountX;        /**< deg, tilt of the base about X against gravity */
    double mountY;        /**< deg, tilt of the base about Y against gravity */
    double reserved1[4];  /**< not read */
    double G[7];          /**< N mm, weight coefficients of the links; G[6] has no effect */
    double k2;            /**< N m / rad, stiffness of joint 2; 0 switches the deflection off */
    double k3;            /**< N m / rad, stiffness of joint 3; 0 switches the deflection off */
    double k5;            /**< N m / rad, stiffness of joint 5; 0 switches the deflection off */
} KineSixAxisParam;

/** Parameters of arm types 4 and 4110. */
typedef struct KineFourAxisParam
{
    double Link1Length;  /**< mm, not below 1e-5 */
    double Link2Length;  /**< mm, not below 1e-5 */
    double ZOffset;      /**< mm, height of the flange at axis 3 = 0 */
    double ScrewLead;    /**< mm per revolution of axis 3, not below 1e-5 */
    double reserved0[4]; /**< not read */
    double Link1TiltX;   /**< deg */
    double Link2TiltX;   /**< deg */
    double Link1TiltY;   /**< deg */
    double Link2TiltY;   /**< deg */
} KineFourAxisParam;

/** Kinematic parameters: the view of the arm type in use. A call reads no byte beyond that view. */
typedef union KineKinematicParam
{
    KineSixAxisParam SixAxis;   /**< arm type 6: 272 bytes */
    KineFourAxisParam FourAxis; /**< arm types 4 and 4110: the first 96 bytes */
} KineKinematicParam;

/** @} */

/* ---------------------------------------------------------------------------------------------- */
/* Setup: describes the arm and its cell                                                          */
/* ---------------------------------------------------------------------------------------------- */

/** @defgroup setup Setup: describes the arm and its cell */
/** @{ */

/**
 * Selects and initialises the arm. Clears the mechanical units and external axes, puts the robot base at
 * the world origin and opens all axis limits; only the enable flag of Kine_SetMechUnitGlobalCfg survives.
 *
 * @param armType one of KINE_ARM_...
 * @param param   parameters; the view of armType is read, mm and degrees
 *
 * @return codes in this order:
 *  - KINE_ERR_UNKNOWN_ARM_TYPE: armType is none of KINE_ARM_...
 *  - KINE_ERR_MODEL_PARAM: param is null; or a length is below its bound. A NaN length passes.
 *
 * After any failure the library is not initialised, whatever it was before, and units and axes are clear.
 */
KINE_API KineResult KINE_CALL Kine_InitKinematicParam(uint32_t armType, const KineKinematicParam* param);

/**
 * Sets the axis limits. They bound the turn numbers a target may ask for (Kine_IsArmTypeValid); joint
 * values are not checked against them. A pair with lower >= upper is replaced by an open one.
 *
 * @param upper upper limits, deg
 * @param lower lower limits, deg; axes 7 and 8 and the external axes of both are not read
 *
 * @return codes in this order: KINE_ERR_JOINT (upper or lower null), KINE_ERR_NOT_INITIALISED.
 */
KINE_API KineResult KINE_CALL Kine_SetAxisLimit(const KineJoint* upper, const KineJoint* lower);

/**
 * Says how many mechanical units and external axes the cell has.
 *
 * @param mechUnitCount    0..3
 * @param extAxisItemCount 0..6
 * @param enable           0: the counts are ignored and kept, and the two calls below do nothing; units
 *                         that are set stay in use. Any other value: they take effect
 *
 * The enable flag is stored first, even when the counts are refused.
 *
 * @return codes and lines in this order, both KINE_ERR_MECH_UNIT_COUNT:
 *  - mechUnitCount > 3: "IsLegalMechUnitAndExtAxisNum:mechUnitCount:%d,%d\n" with mechUnitCount and 3
 *  - extAxisItemCount > 6: "IsLegalMechUnitAndExtAxisNum:extAxisParamItemCount:%d,%d\n" with
 *    extAxisItemCount and 6
 */
KINE_API KineResult KINE_CALL Kine_SetMechUnitGlobalCfg(uint32_t mechUnitCount, uint32_t extAxisItemCount,
                                                        uint32_t enable);

/**
 * Stores a mechanical unit. The unit stored at index 0 also says what the robot stands on: with Option1
 * equal to 1 it stands on the last axis of unit Option2, otherwise fixed at the world origin.
 *
 * Returns KINE_OK and changes nothing while mechanical units are not enabled.
 *
 * @param index 0..2
 * @param unit  the unit; mm and degrees
 *
 * @return codes and lines in this order, all KINE_ERR_MECH_UNIT; nothing is stored:
 *  - index < 0 or index > 2: "IsLegalMechUnit:index:%d,%d\n" with index and the unit count
 *  - unit is null: no line
 *  - Active is not 0 and AxisCount exceeds the number of external-axis items:
 *    "IsLegalMechUnit\xA3\xBApArmMechUnit->AxisCount,pMechUnitAndExtAxisPara->ExtAxisNum:%d,%d\n" with
 *    both (the two bytes A3 BA are a full-width colon in code page GBK)
 */
KINE_API KineResult KINE_CALL Kine_SetMechUnitParam(int32_t index, const KineMechUnit* unit);

/**
 * Stores an external axis. Returns KINE_OK and changes nothing while mechanical units are not enabled.
 *
 * @param index 0..5
 * @param param the axis
 *
 * @return codes and lines in this order, both KINE_ERR_EXT_AXIS_PARAM; nothing is stored:
 *  - index < 0 or index > 5: "IsLegalExtAxisParam:index:%d,%d\n" with index and the item count
 *  - param is null: no line
 */
KINE_API KineResult KINE_CALL Kine_SetExtAxisParam(int32_t index, const KineExtAxisParam* param);

/** @} */

/* ---------------------------------------------------------------------------------------------- */
/* Queries about the arm                                                                          */
/* ---------------------------------------------------------------------------------------------- */

/** @defgroup queries Queries about the arm */
/** @{ */

/**
 * Gives the posture and turns of a joint set (not the arm type, in spite of the name).
 *
 * @param joints axes, deg; any size, NaN and infinity give the ends of the int32 range
 * @param config result, see KineArmConfig
 *
 * @return codes in this order: KINE_ERR_JOINT (joints null), KINE_ERR_CONFIG (config null),
 * KINE_ERR_NOT_INITIALISED.
 */
KINE_API KineResult KINE_CALL Kine_GetArmType(const KineJoint* joints, KineArmConfig* config);

/**
 * Says whether the turn numbers of a pose fit the axis limits, with two quarter turns to spare on either
 * side. Arm type 6 looks at Cfg1 to Cfg3, arm type 4 at Cfg4, arm type 4110 at Cfg2 to Cfg4.
 *
 * @param pose pose; only its angles and its configuration integers are looked at
 *
 * @return codes in this order: KINE_ERR_POSE (null, or an angle beyond +-180), KINE_ERR_NOT_INITIALISED,
 * KINE_ERR_CONFIG.
 */
KINE_API KineResult KINE_CALL Kine_IsArmTypeValid(const KinePose* pose);

/**
 * Says whether a joint set is close to a singularity: KINE_SINGULAR or KINE_OK.
 *
 * Arm type 6: wrist centre close to the axis of joint 1 (mm), elbow stretched or folded (cosine), or
 * wrist straight (sine). Arm types 4 and 4110: axis 2 within the threshold above a multiple of 180
 * degrees, counted toward zero (just below such a multiple is not singular, seen from zero).
 *
 * @param joints axes, deg; NaN is never singular
 * @param kind   0 or 1: 20 mm, 0.05, 0.05 (arm type 6), 0.0192 rad; 2: 30 mm, 0.087266, 0.087266, 0.0524
 *               rad; any other value: nothing is ever singular
 *
 * @return codes in this order: KINE_ERR_JOINT (null), KINE_ERR_NOT_INITIALISED.
 */
KINE_API KineResult KINE_CALL Kine_IsSingularity(const KineJoint* joints, uint32_t kind);

/** @} */

/* ---------------------------------------------------------------------------------------------- */
/* Forward: joints to positions                                                                   */
/* ---------------------------------------------------------------------------------------------- */

/** @defgroup forward Forward: joints to positions */
/** @{ */

/**
 * Position of the tool centre point in the robot base, from the joints.
 *
 * The four calls Kine_JointTo...Pos share arguments, checks and lines. With a tool on the flange (tool
 * HeldByRobot 1, work object 0) the point is carried by the arm. With a stationary tool (0, 1) the arm
 * carries the work object; the tool stands in the world at TFrame.
 *
 * @param joints axes and external axes, deg and mm
 * @param tool   tool
 * @param wobj   work object
 * @param load   payload; with the tool load, also that of a stationary tool, it bends arm type 6 (see
 *               KineSixAxisParam.k2). Its centre of gravity is counted from the origin of the frame that
 *               the flange carries (tool frame or held work object), along the axes of the flange
 * @param pose   result: mm and deg, the configuration of the joints and the external axes of the joints
 *
 * @return codes in this order:
 *  - KINE_ERR_JOINT (null), KINE_ERR_TOOL, KINE_ERR_WOBJ (with its line, see KineWobj), KINE_ERR_LOAD
 *  - KINE_ERR_HOLD: the two HeldByRobot bytes are equal
 *  - KINE_ERR_POSE: pose is null
 *  - each failing step prints one line with its code as a signed decimal and returns the code:
 *    - "FK Error 1:%d\n": KINE_ERR_NOT_INITIALISED
 *    - "FK Error 2:%d\n": KINE_ERR_HOLD_CONFLICT, the bytes differ but both are non-zero
 *    - "FK Error 4:%d\n": from the base to the world: KINE_ERR_F2W_UNIT_KIND, the unit under the robot is
 *      not usable
 *    - "FK Error 6:%d\n": from the world to the work object: KINE_ERR_W2F_UNIT_KIND, the unit under the
 *      work object is not usable; KINE_ERR_AXIS_ORIGIN, the frame of one of its rotary axes lies at the
 *      origin
 *
 * A mechanical unit is usable when its index is 0..2 and not above the unit count, its kind is 1..3, it
 * has the axes of its kind, and these are driven by external axes 0..5. So the unit with the index of the
 * count can carry the robot, but no work object, whose index must be below the count.
 *
 * A tool byte other than 0 and 1 counts as held when the flange frame is chosen and takes the path of the
 * stationary tool afterwards; only Kine_JointToWobjPos gives the same answer as for 1.
 *
 * With a stationary tool this call gives the tool centre point in the base through the held work object.
 */
KINE_API KineResult KINE_CALL Kine_JointToBasePos(const KineJoint* joints, const KineTool* tool,
                                                  const KineWobj* wobj, const KineLoad* load, KinePose* pose);

/**
 * Position of the tool centre point in the flange; see Kine_JointToBasePos. With a tool on the flange it
 * is TFrame itself with external axes 0, and no step after "FK Error 2" runs.
 *
 * @param joints see Kine_JointToBasePos
 * @param tool   see Kine_JointToBasePos
 * @param wobj   see Kine_JointToBasePos
 * @param load   see Kine_JointToBasePos
 * @param pose   result: in the flange
 *
 * @return codes as in Kine_JointToBasePos
 */
KINE_API KineResult KINE_CALL Kine_JointToFlangePos(const KineJoint* joints, const KineTool* tool,
                                                    const KineWobj* wobj, const KineLoad* load,
                                                    KinePose* pose);

/**
 * Position of the tool centre point in the world; see Kine_JointToBasePos.
 *
 * @param joints see Kine_JointToBasePos
 * @param tool   see Kine_JointToBasePos
 * @param wobj   see Kine_JointToBasePos
 * @param load   see Kine_JointToBasePos
 * @param pose   result: in the world
 *
 * @return codes as in Kine_JointToBasePos
 */
KINE_API KineResult KINE_CALL Kine_JointToWorldPos(const KineJoint* joints, const KineTool* tool,
                                                   const KineWobj* wobj, const KineLoad* load,
                                                   KinePose* pose);

/**
 * Position of the tool centre point in the work object (object frame); see Kine_JointToBasePos. All steps
 * run for both set-ups of the cell.
 *
 * @param joints see Kine_JointToBasePos
 * @param tool   see Kine_JointToBasePos
 * @param wobj   see Kine_JointToBasePos
 * @param load   see Kine_JointToBasePos
 * @param pose   result: in the work object
 *
 * @return codes as in Kine_JointToBasePos
 */
KINE_API KineResult KINE_CALL Kine_JointToWobjPos(const KineJoint* joints, const KineTool* tool,
                                                  const KineWobj* wobj, const KineLoad* load, KinePose* pose);

/**
 * Pose of the arm in the robot base for vision calibration: without tool, work object and payload.
 *
 * Arm type 6: origin and orientation of frame 5 (the wrist; joint 6 and d6 are left out). Arm types 4 and
 * 4110: flange in the plane, z = 0, with the heading of the forearm (axis 4 left out; arm type 4110 takes
 * axis 2 as the elbow angle itself).
 *
 * @param joints axes, deg
 * @param pose   result: mm and deg, the configuration of the joints, external axes 0
 *
 * Nothing is printed.
 *
 * @return codes in this order: KINE_ERR_JOINT (joints null), KINE_ERR_POSE (pose null),
 * KINE_ERR_NOT_INITIALISED.
 */
KINE_API KineResult KINE_CALL Kine_FKineVision(const KineJoint* joints, KinePose* pose);

/** @} */

/* ---------------------------------------------------------------------------------------------- */
/* Inverse: positions to joints                                                                   */
/* ---------------------------------------------------------------------------------------------- */

/** @defgroup inverse Inverse: positions to joints */
/** @{ */

/**
 * Joints that bring the tool centre point to a target in the work object; the inverse of
 * Kine_JointToWobjPos.
 *
 * The configuration integers of the target choose posture and turns; its external axes place the
 * mechanical units. No joint value is needed to start from.
 *
 * @param target pose in the work object (object frame), mm and deg, with configuration and external axes
 * @param tool   tool
 * @param wobj   work object
 * @param load   payload
 * @param joints result: axes in deg (unused ones 0) and the external axes of the target
 *
 * @return codes in this order:
 *  - KINE_ERR_TOOL, KINE_ERR_WOBJ (with its line, see KineWobj), KINE_ERR_LOAD
 *  - KINE_ERR_POSE: target null or an angle beyond +-180
 *  - KINE_ERR_HOLD: the two HeldByRobot bytes are equal
 *  - KINE_ERR_JOINT: joints is null
 *  - without a line: KINE_ERR_NOT_INITIALISED; KINE_ERR_CONFIG, as in Kine_IsArmTypeValid
 *  - each failing step prints one line with its code as a signed decimal and returns the code:
 *    - "IK error 0:%d\n": KINE_ERR_HOLD_CONFLICT, the bytes differ but both are non-zero
 *    - "IK error 2:%d\n": from the work object to the world: KINE_ERR_F2W_UNIT_KIND
 *    - "IK error 3:%d\n": from the world to the base: KINE_ERR_W2F_UNIT_KIND, KINE_ERR_AXIS_ORIGIN
 *    - "IK error 5:%d\n": the arm:
 *      - arm type 6: KINE_ERR_CONFIG (a turn number beyond +-1000000), KINE_ERR_IK_6, KINE_ERR_CONFIG
 *        (posture not 0..7), KINE_ERR_IK_7, KINE_ERR_IK_8, then of the refinement KINE_ERR_SINGULAR,
 *        KINE_ERR_IK_9, KINE_ERR_IK_ACCURACY
 *      - arm types 4 and 4110: KINE_ERR_CONFIG (a turn number it uses beyond +-1000000, or Cfg1 neither 1
 *        nor -1), KINE_ERR_IK_REACH, KINE_ERR_IK_SINGULAR, then of the refinement KINE_ERR_SINGULAR, and
 *        KINE_ERR_IK_REACH for a result that is not finite
 *
 * Solving the pose of known joints returns these joints. Arm type 6: for axes 2 and 5 within +-180 and
 * axis 3 in [-90 - e, 270 - e) degrees, e = atan(a3 / d4), and any turn of axes 1, 4 and 6; outside, an
 * equivalent joint set. Arm type 4: for axis 1 in (-180, 180], axis 2 strictly between 0 and 180 in size
 * and any turn of axis 4. Arm type 4110 without tilts: for any turn of axes 1, 2 and 4.
 *
 * The four-axis arms refine the raw difference of headings, so a target heading within rounding of +-180
 * degrees may converge to another answer when the tool point lies off the flange axis.
 */
KINE_API KineResult KINE_CALL Kine_WobjPosToJoint(const KinePose* target, const KineTool* tool,
                                                  const KineWobj* wobj, const KineLoad* load,
                                                  KineJoint* joints);

/** @} */

/* ---------------------------------------------------------------------------------------------- */
/* Conversions of positions between frames                                                        */
/* ---------------------------------------------------------------------------------------------- */

/** @defgroup conversions Conversions of positions between frames */
/** @{ */

/**
 * A world position in the frame of a fixed work object (object frame). Neither mechanical units nor the
 * mounting of the robot are consulted, and the library need not be initialised; so for all conversions
 * but Kine_CrdPosToWobjPos. The result has the configuration and the external axes of the pose.
 *
 * @param pose position in the world, mm and deg
 * @param wobj work object, fixed and not held
 * @param out  result: position in the work object
 *
 * @return codes in this order:
 *  - KINE_ERR_WOBJ: refused (with its line, see KineWobj); UFFix 0; HeldByRobot 1
 *  - KINE_ERR_POSE: pose null or an angle beyond +-180; out null
 */
KINE_API KineResult KINE_CALL Kine_WorldPosToFixWobjPos(const KinePose* pose, const KineWobj* wobj,
                                                        KinePose* out);

/**
 * A world position in the frame of a work object that the robot holds.
 *
 * @param pose   position in the world, mm and deg
 * @param wobj   work object, HeldByRobot not 0
 * @param flange pose of the flange in the world
 * @param out    result: position in the work object, with configuration and external axes of pose
 *
 * @return codes in this order:
 *  - KINE_ERR_WOBJ: refused (with its line, see KineWobj); HeldByRobot 0
 *  - KINE_ERR_POSE: pose null or an angle beyond +-180; the same for flange; out null
 */
KINE_API KineResult KINE_CALL Kine_WorldPosToGripWobjPos(const KinePose* pose, const KineWobj* wobj,
                                                         const KinePose* flange, KinePose* out);

/**
 * The way back from Kine_WorldPosToGripWobjPos. Takes a work object that is not held too.
 *
 * @param pose   position in the work object, mm and deg
 * @param wobj   work object
 * @param flange pose of the flange in the world
 * @param out    result: position in the world, with configuration and external axes of pose
 *
 * @return codes in this order: KINE_ERR_WOBJ (with its line, see KineWobj); KINE_ERR_POSE for pose, flange, a
 * null out.
 */
KINE_API KineResult KINE_CALL Kine_GripWobjPosToWorldPos(const KinePose* pose, const KineWobj* wobj,
                                                         const KinePose* flange, KinePose* out);

/**
 * A position to the work object.
 *
 * @param pose position, mm and deg; its external axes place the mechanical units in mode -2
 * @param mode -1: from the world to a fixed work object, with a stationary tool; mechanical units are not
 *             consulted; -2: from the robot base, through the mounting of the robot and the object in the
 *             cell, as Kine_JointToWobjPos does from there on; any other value: the pose stays as it is
 * @param tool tool
 * @param wobj work object
 * @param load not read, but refused when null
 * @param out  result, with configuration and external axes of pose
 *
 * @return codes in this order, checks in every mode; nothing is printed but the line of the work object:
 *  - KINE_ERR_POSE, KINE_ERR_TOOL, KINE_ERR_WOBJ (with its line, see KineWobj); KINE_ERR_LOAD: load null;
 *    KINE_ERR_POSE: out null
 *  - mode -1: KINE_ERR_CRD_WOBJ: the tool is held
 *  - mode -2: KINE_ERR_F2W_MODE before the first initialisation; KINE_ERR_F2W_UNIT_KIND;
 *    KINE_ERR_HOLD_CONFLICT: both or neither held; KINE_ERR_W2F_UNIT_KIND; KINE_ERR_AXIS_ORIGIN
 */
KINE_API KineResult KINE_CALL Kine_CrdPosToWobjPos(const KinePose* pose, int32_t mode, const KineTool* tool,
                                                   const KineWobj* wobj, const KineLoad* load, KinePose* out);

/**
 * A pose moved and turned by an offset along and about its own axes.
 *
 * @param pose   mm and deg
 * @param offset mm and deg
 * @param out    result, with configuration and external axes of pose
 *
 * @return codes in this order: KINE_ERR_POSE; KINE_ERR_OFFSET_FRAME (null, or an angle beyond +-180);
 * KINE_ERR_POSE: out null.
 */
KINE_API KineResult KINE_CALL Kine_ToolCoordOffset(const KinePose* pose, const KineFrame* offset,
                                                   KinePose* out);

/**
 * A pose moved by an offset along the axes of its reference frame and turned about them in place: the
 * rotation of the offset does not move the position, so this is not a product of frames.
 *
 * @param pose   mm and deg
 * @param offset mm and deg
 * @param out    result, with configuration and external axes of pose
 *
 * @return codes as in Kine_ToolCoordOffset
 */
KINE_API KineResult KINE_CALL Kine_WobjCoordOffset(const KinePose* pose, const KineFrame* offset,
                                                   KinePose* out);

/** @} */

/* ---------------------------------------------------------------------------------------------- */
/* Calibration: frames from taught poses                                                          */
/* ---------------------------------------------------------------------------------------------- */

/**
 * @defgroup calibration Calibration: frames from taught poses
 *
 * Eighteen calls that turn taught poses into frames. Rules that hold for all eighteen calibrations:
 *
 *  - The angles of every taught pose are checked first, also of a pose that is not used further. They and
 *    null poses give KINE_ERR_POSE, so does a null given frame (its angles are not checked) and, after
 *    these, a null result frame. Then come the codes listed at the call.
 *  - The result frame is six doubles in mm and degrees, written on success only. The error report and the
 *    tilt may be null and are then left out.
 *  - The library need not be initialised; the tool calibrations ask for the configured arm type. Nothing
 *    is printed.
 *  - Comparisons with a limit are false for NaN: a pose with NaN, infinite or huge values may give
 *    KINE_OK with a result that is not finite. In an error report a NaN distance enters the mean only.
 *  - Configuration integers are not read. External axes are read where the call says so.
 *
 * Which pose to teach. Every call finds a frame in the frame in which its poses are given:
 *
 * | calibration                     | teach                                                            |
 * |---------------------------------|------------------------------------------------------------------|
 * | CalcGripToolPrm, ExtToolPrm_3P  | the flange in the base: Kine_JointToBasePos with the tool on the |
 * | and _3PZX                       | robot, but its TFrame zero                                       |
 * | CalcExtToolPrm_1P, ExtWobj,     | the tip of a calibrated tool in the world: Kine_JointToWorldPos  |
 * | UnFixWobj, Positioner           |                                                                  |
 * | CalcGripWobj                    | the tip of the stationary tool in the flange:                    |
 * |                                 | Kine_JointToFlangePos with that tool and a held work object with |
 * |                                 | frames of zeros                                                  |
 * | CalcRobotBasePrm                | the tip of a calibrated tool in the base: Kine_JointToBasePos    |
 *
 *  - The flange: only TFrame is zero. The load of the tool stays, for it bends the arm. With a tool on
 *    the robot Kine_JointToFlangePos returns TFrame itself and is no flange pose.
 *  - Where the robot is carried and moves between the touches, or its base does not stand at the world
 *    origin and a stationary tool is wanted in the world, teach the flange in the world
 *    (Kine_JointToWorldPos). A four-axis arm must stand upright there: its solution is planar.
 *  - The poses of a four-axis arm with tilts carry a heading only, so that its tools are found as well as
 *    the tilts are small.
 */
/** @{ */

/**
 * Tool centre point of a stationary tool that the tip of a calibrated tool touches: the taught position
 * with angles 0.
 *
 * @param p0    touching pose
 * @param frame result: (X, Y, Z of p0, 0, 0, 0)
 *
 * @return no codes besides those of all calibrations
 */
KINE_API KineResult KINE_CALL Kine_CalcExtToolPrm_1P(const KinePose* p0, KineFrame* frame);

/**
 * Frame of a stationary tool from three touched points.
 *
 * @param origin touches the tool centre point, the origin of the frame
 * @param zPoint touches a point on the positive Z axis. Arm types 4 and 4110 cannot tilt: whatever it
 *               holds, the origin raised by 10 mm takes its place
 * @param xPoint touches a point towards the positive X axis
 * @param frame  result
 *
 * @return codes in this order: KINE_ERR_ZERO_VECTOR: zPoint or xPoint less than 0.01 mm from the origin;
 * KINE_ERR_CALIB_COLLINEAR: sine of the angle between the two directions below 0.01.
 */
KINE_API KineResult KINE_CALL Kine_CalcExtToolPrm_1PZX(const KinePose* origin, const KinePose* zPoint,
                                                       const KinePose* xPoint, KineFrame* frame);

/**
 * Tool centre point of a stationary tool, touched in three orientations by a point fixed on the flange
 * that need not be known.
 *
 * @param p0    touching pose of the flange
 * @param p1    touching pose of the flange
 * @param p2    touching pose of the flange
 * @param frame result: the touched point with angles 0; arm types 4 and 4110: Z is the height of the
 *              flange in p0
 * @param error report, see KineCalibError
 *
 * The four calls with three touching poses share this solution: the point t fixed on the flange for which
 * the three touched positions agree best (least squares of those of p1 and p2 against that of p0). Arm
 * type 6 finds all of t. Arm types 4 and 4110 find its X and Y; its Z is 0.
 *
 * @return codes in this order:
 *  - KINE_ERR_NOT_INITIALISED: the configured arm type is none of KINE_ARM_...
 *  - KINE_ERR_CALIB_POINTS_CLOSE: two of the three positions less than 1e-5 mm apart (arm types 4 and
 *    4110: in X and Y)
 *  - KINE_ERR_CALIB_COLLINEAR: the positions lie on one line (cosine beyond 0.99999, seen from p0)
 *  - arm type 6: KINE_ERR_CALIB_4: the orientations differ too little, or about one axis only
 *    (determinant of the normal equations at most 0.01)
 *  - arm types 4 and 4110: KINE_ERR_CALIB_SINGULAR: the same (determinant at most 1e-10)
 */
KINE_API KineResult KINE_CALL Kine_CalcExtToolPrm_3P(const KinePose* p0, const KinePose* p1,
                                                     const KinePose* p2, KineFrame* frame,
                                                     KineCalibError* error);

/**
 * Frame of a stationary tool: the point on the flange from three touching poses as in
 * Kine_CalcExtToolPrm_3P, then with this point the three of Kine_CalcExtToolPrm_1PZX.
 *
 * @param p0     touching pose of the flange
 * @param p1     touching pose of the flange
 * @param p2     touching pose of the flange
 * @param origin flange pose with the point at the origin of the frame
 * @param zPoint flange pose with the point on the positive Z axis; not used by arm types 4 and 4110, as
 *               above
 * @param xPoint flange pose with the point towards the positive X axis
 * @param frame  result
 * @param error  report of p0, p1, p2; written as soon as these are solved, also when a later code is
 *               returned
 *
 * @return codes in this order: those of Kine_CalcExtToolPrm_3P, then those of Kine_CalcExtToolPrm_1PZX.
 */
KINE_API KineResult KINE_CALL Kine_CalcExtToolPrm_3PZX(const KinePose* p0, const KinePose* p1,
                                                       const KinePose* p2, const KinePose* origin,
                                                       const KinePose* zPoint, const KinePose* xPoint,
                                                       KineFrame* frame, KineCalibError* error);

/**
 * Tool centre point of a tool on the flange that touches one fixed point in three orientations.
 *
 * @param p0    touching pose of the flange
 * @param p1    touching pose of the flange
 * @param p2    touching pose of the flange
 * @param frame result: the point in the flange with angles 0; arm types 4 and 4110: Z is 0
 * @param error report, see KineCalibError
 *
 * The solution is that of Kine_CalcExtToolPrm_3P.
 *
 * @return codes as in Kine_CalcExtToolPrm_3P
 */
KINE_API KineResult KINE_CALL Kine_CalcGripToolPrm_3P(const KinePose* p0, const KinePose* p1,
                                                      const KinePose* p2, KineFrame* frame,
                                                      KineCalibError* error);

/**
 * Tool frame of a tool on the flange: its point from three touching poses as in Kine_CalcGripToolPrm_3P,
 * its orientation from three more.
 *
 * @param p0     touching pose of the flange
 * @param p1     touching pose of the flange
 * @param p2     touching pose of the flange
 * @param origin flange pose with the tool in the orientation that counts
 * @param zPoint flange pose with the tool moved along its positive Z axis. Arm types 4 and 4110: whatever
 *               it holds, the origin raised by 10 mm takes its place
 * @param xPoint flange pose with the tool moved towards its positive X axis
 * @param frame  result: the tool frame in the flange
 * @param error  report of p0, p1, p2; written as soon as these are solved, also when a later code is
 *               returned
 *
 * @return codes in this order:
 *  - those of Kine_CalcExtToolPrm_3P
 *  - KINE_ERR_CALIB_POINTS_CLOSE: the tool point travels less than 1e-5 mm from origin to zPoint, or from
 *    zPoint to xPoint
 *  - KINE_ERR_CALIB_COLLINEAR: the sine of the angle between these two travels is below 1e-5
 */
KINE_API KineResult KINE_CALL Kine_CalcGripToolPrm_3PZX(const KinePose* p0, const KinePose* p1,
                                                        const KinePose* p2, const KinePose* origin,
                                                        const KinePose* zPoint, const KinePose* xPoint,
                                                        KineFrame* frame, KineCalibError* error);

/**
 * Tool centre point of a tool on the flange of arm type 6 that touches one fixed point in five
 * orientations. The positions are not tested: equal ones are welcome as long as the orientations differ.
 *
 * @param p0    touching pose of the flange; the touched positions of the others are compared with its own
 * @param p1    touching pose of the flange
 * @param p2    touching pose of the flange
 * @param p3    touching pose of the flange
 * @param p4    touching pose of the flange
 * @param frame result: the point in the flange with angles 0
 * @param error report, see KineCalibError
 *
 * @return codes in this order: KINE_ERR_NOT_INITIALISED: the configured arm type is not 6;
 * KINE_ERR_CALIB_SINGULAR: the orientations differ too little, or about one axis only (determinant at
 * most 1e-10).
 */
KINE_API KineResult KINE_CALL Kine_CalcGripToolPrm_5P(const KinePose* p0, const KinePose* p1,
                                                      const KinePose* p2, const KinePose* p3,
                                                      const KinePose* p4, KineFrame* frame,
                                                      KineCalibError* error);

/**
 * Tool centre point of a tool on the flange of arm type 4 or 4110 that touches one fixed point in two
 * headings.
 *
 * @param p0    touching pose of the flange
 * @param p1    touching pose of the flange
 * @param frame result: X and Y of the point in the flange; the others 0
 *
 * @return codes in this order: KINE_ERR_NOT_INITIALISED: the configured arm type is neither;
 * KINE_ERR_CALIB_POINTS_CLOSE: positions less than 1e-5 mm apart in X and Y; KINE_ERR_CALIB_SINGULAR: the
 * headings differ too little (determinant at most 1e-10).
 */
KINE_API KineResult KINE_CALL Kine_CalcGripToolPrm_Scara2P(const KinePose* p0, const KinePose* p1,
                                                           KineFrame* frame);

/**
 * User frame of a fixed work object from two points, with a horizontal Y axis.
 *
 * @param origin position of the origin
 * @param xPoint position on the positive X axis
 * @param frame  result
 * @param tilt   result: angle between the Z axis of the frame and that of the frame of the poses, IN
 *               RADIANS
 *
 * @return KINE_ERR_CALIB_POINTS_CLOSE: the points are less than 0.001 mm apart, or the direction between
 * them is vertical (horizontal part of the unit vector below 1e-5).
 */
KINE_API KineResult KINE_CALL Kine_CalcExtWobj_UserPrm_2P(const KinePose* origin, const KinePose* xPoint,
                                                          KineFrame* frame, double* tilt);

/**
 * User frame of a fixed work object from three points.
 *
 * @param origin  position of the origin
 * @param xPoint  position on the positive X axis
 * @param xyPoint position in the XY plane on the side of positive Y
 * @param frame   result
 * @param tilt    result: angle between the Z axis of the frame and that of the frame of the poses, IN
 *                RADIANS
 *
 * @return codes in this order: KINE_ERR_CALIB_POINTS_CLOSE: two points less than 0.01 mm apart;
 * KINE_ERR_CALIB_COLLINEAR: the sine of the angle between the two directions from the origin is below
 * 1e-5.
 */
KINE_API KineResult KINE_CALL Kine_CalcExtWobj_UserPrm_3P(const KinePose* origin, const KinePose* xPoint,
                                                          const KinePose* xyPoint, KineFrame* frame,
                                                          double* tilt);

/**
 * User frame of a fixed work object from three points of a circle: the origin in its centre, X towards
 * the first point, Z normal to its plane so that the points turn about it anticlockwise. (The name is
 * spelled so.)
 *
 * @param p1    position on the circle
 * @param p2    position on the circle
 * @param p3    position on the circle
 * @param frame result
 * @param tilt  result: angle between the Z axis of the frame and that of the frame of the poses, IN
 *              RADIANS
 *
 * @return codes in this order: KINE_ERR_CALIB_POINTS_CLOSE: two points less than 1e-5 mm apart;
 * KINE_ERR_CALIB_COLLINEAR: the points lie on one line (cosine beyond 0.99999, seen from p1);
 * KINE_ERR_CALIB_3: four times the squared area of their triangle is below 1e-5 mm^4.
 */
KINE_API KineResult KINE_CALL Kine_CalcExtWobj_UserPrm_Cirle3P(const KinePose* p1, const KinePose* p2,
                                                               const KinePose* p3, KineFrame* frame,
                                                               double* tilt);

/**
 * Object frame of a fixed work object from three points: the frame of Kine_CalcExtWobj_UserPrm_3P seen
 * from the user frame.
 *
 * @param origin  position of the origin
 * @param xPoint  position on the positive X axis
 * @param xyPoint position in the XY plane on the side of positive Y
 * @param user    user frame in the frame of the poses; its angles are not checked
 * @param frame   result: in the user frame
 * @param tilt    result: as in Kine_CalcExtWobj_UserPrm_3P, against the frame of the poses, IN RADIANS
 *
 * @return codes as in Kine_CalcExtWobj_UserPrm_3P.
 */
KINE_API KineResult KINE_CALL Kine_CalcExtWobj_ObjPrm_3P(const KinePose* origin, const KinePose* xPoint,
                                                         const KinePose* xyPoint, const KineFrame* user,
                                                         KineFrame* frame, double* tilt);

/**
 * User frame of a work object held by the robot; the same computation as Kine_CalcExtWobj_UserPrm_3P.
 *
 * @param origin  position of the origin
 * @param xPoint  position on the positive X axis
 * @param xyPoint position in the XY plane on the side of positive Y
 * @param frame   result
 * @param tilt    result: angle between the Z axis of the frame and that of the frame of the poses, IN
 *                RADIANS
 *
 * @return codes as in Kine_CalcExtWobj_UserPrm_3P
 */
KINE_API KineResult KINE_CALL Kine_CalcGripWobj_UserPrm_3P(const KinePose* origin, const KinePose* xPoint,
                                                           const KinePose* xyPoint, KineFrame* frame,
                                                           double* tilt);

/**
 * Object frame of a work object held by the robot. The same result as Kine_CalcExtWobj_ObjPrm_3P up to
 * rounding, but the tilt: it is measured against the Z axis of the user frame, IN RADIANS. And an X axis
 * within 1e-5 of the vertical of the poses keeps its direction here, while there it is first taken as
 * vertical (up to 1e-5 rad).
 *
 * @param origin  position of the origin
 * @param xPoint  position on the positive X axis
 * @param xyPoint position in the XY plane on the side of positive Y
 * @param user    user frame in the frame of the poses; its angles are not checked
 * @param frame   result: in the user frame
 * @param tilt    result: angle between the Z axes of the frame and of the user frame, IN RADIANS
 *
 * @return codes as in Kine_CalcExtWobj_UserPrm_3P
 */
KINE_API KineResult KINE_CALL Kine_CalcGripWobj_ObjPrm_3P(const KinePose* origin, const KinePose* xPoint,
                                                          const KinePose* xyPoint, const KineFrame* user,
                                                          KineFrame* frame, double* tilt);

/**
 * Object frame of a work object on a mechanical unit from three points, in the last axis of the unit.
 *
 * @param unit    index of the mechanical unit
 * @param origin  world position of the origin, with the external axes at which it was taught
 * @param xPoint  world position on the positive X axis, likewise
 * @param xyPoint world position in the XY plane on the side of positive Y, likewise
 * @param frame   result
 * @param tilt    result: angle between the Z axis of the frame and that of the last axis, IN RADIANS
 *
 * @return codes as in Kine_CalcExtWobj_UserPrm_3P. A unit that is not usable (see Kine_JointToBasePos), or
 * has a rotary axis whose frame lies at the origin, leaves all points at zero:
 * KINE_ERR_CALIB_POINTS_CLOSE.
 */
KINE_API KineResult KINE_CALL Kine_CalcUnFixWobj_ObjPrm_3P(int32_t unit, const KinePose* origin,
                                                           const KinePose* xPoint, const KinePose* xyPoint,
                                                           KineFrame* frame, double* tilt);

/**
 * Frame of the first rotary axis of a mechanical unit from three positions of a mark that it turns: the
 * origin in the centre of the mark's circle, Z along the axis so that the positions turn about it
 * anticlockwise, X where the mark is when the axis reads 0.
 *
 * @param unit  index of the mechanical unit
 * @param p0    position of the mark; ExtAxis holds the value of the axis (deg)
 * @param p1    position of the mark
 * @param p2    position of the mark
 * @param frame result: in the frame of the poses
 *
 * @return codes in this order:
 *  - KINE_ERR_CALIB_POINTS_CLOSE: two positions less than 1e-5 mm apart
 *  - KINE_ERR_CALIB_COLLINEAR: the positions lie on one line (cosine beyond 0.99999, seen from p0)
 *  - KINE_ERR_TOOL: the unit or its axis is not known, or no external axis 0..5 drives it
 *
 * The centre is computed from the X and Y of the poses, without a guard. Where the axis lies in their XY
 * plane, or the perpendicular bisector of p0 and p1 in the plane of the circle has no Y component, the
 * result is not finite, or by rounding not right, with KINE_OK. Other positions of the mark help in the
 * second case, poses seen from a turned frame (Kine_WorldPosToFixWobjPos) in the first.
 */
KINE_API KineResult KINE_CALL Kine_CalcPositionerJ1Prm_3P(int32_t unit, const KinePose* p0,
                                                          const KinePose* p1, const KinePose* p2,
                                                          KineFrame* frame);

/**
 * Frame of a further rotary axis of a mechanical unit, relative to a reference frame, from three
 * positions of a mark as in Kine_CalcPositionerJ1Prm_3P.
 *
 * @param unit      index of the mechanical unit
 * @param axis      number n of the axis, counted from 1
 * @param p0        position of the mark, with the external axes
 * @param p1        position of the mark
 * @param p2        position of the mark
 * @param reference frame F in the frame of the poses; its angles are not checked
 * @param frame     result: (Rz(v) * F)^-1 * T * Rz(-w), T the axis frame with X towards p0, v the
 *                  external axis of axis n, w (deg) that of the unit's second axis, whatever n is, both
 *                  taken from p0
 *
 * THE NUMBER v IS TAKEN AS RADIANS, though it is in degrees: teach p0 with the axis at 0, or turn F
 * beforehand.
 *
 * @return codes in this order:
 *  - KINE_ERR_POSE: Word[3] of the external axis of axis n is 1, a linear axis
 *  - KINE_ERR_CALIB_INPUT: axis below 1
 *  - KINE_ERR_CALIB_POINTS_CLOSE, KINE_ERR_CALIB_COLLINEAR as in Kine_CalcPositionerJ1Prm_3P
 *  - KINE_ERR_TOOL: the unit, its axis n or its second axis is not known, or no external axis 0..5 drives
 *    it
 *
 * Results that are not finite: see Kine_CalcPositionerJ1Prm_3P.
 */
KINE_API KineResult KINE_CALL Kine_CalcPositionerJnPrm_3P(int32_t unit, int32_t axis, const KinePose* p0,
                                                          const KinePose* p1, const KinePose* p2,
                                                          const KineFrame* reference, KineFrame* frame);

/**
 * Orientation of the robot base on a linear track: the rotation about Z that carries positions in the
 * base into a frame whose X axis is the track, from one fixed mark touched at three track positions.
 *
 * @param unit  index of the mechanical unit; its first axis is the track
 * @param p0    position of the mark in the base; ExtAxis holds the track position (mm)
 * @param p1    position of the mark in the base, likewise
 * @param p2    position of the mark in the base, likewise
 * @param frame result: only A is found, the others are 0
 * @param error report: distances of the mark's three positions in the frame of the track, mm
 *
 * @return codes in this order:
 *  - KINE_ERR_POSE: Word[3] of the track's external axis is not 1, no linear axis
 *  - KINE_ERR_TOOL: the unit or its first axis is not known, or no external axis 0..5 drives it
 *  - KINE_ERR_CALIB_POINTS_CLOSE: two positions less than 1e-5 mm apart
 *  - KINE_ERR_CALIB_INPUT: the track moved less than 0.1 mm from p0 both times; or the positions differ
 *    in height only (sum of the squared horizontal distances from p0 at most 1e-5 mm^2)
 *
 * Rotation and scale are fitted together and the scale is dropped. Where the robot position changed more
 * than 100,000 times as much as the track, the fit counts as having its X axis along -Z: A is 0, B 90,
 * and C the rotation the other way round.
 */
KINE_API KineResult KINE_CALL Kine_CalcRobotBasePrm_3P(int32_t unit, const KinePose* p0, const KinePose* p1,
                                                       const KinePose* p2, KineFrame* frame,
                                                       KineCalibError* error);

/** @} */

/* ---------------------------------------------------------------------------------------------- */
/* Motion utilities                                                                               */
/* ---------------------------------------------------------------------------------------------- */

/** @defgroup motion Motion utilities */
/** @{ */

/**
 * Joints after one jog step.
 *
 * @param dir     directions, see KineInchDir
 * @param mode    1: joints; 2: along and about the axes of the base; 3: of the tool; 4: of the work
 *                object; 5: of the world; any other value: the joints stay where they are
 * @param tool    tool
 * @param wobj    work object
 * @param load    payload
 * @param steps   three step sizes: joint in deg (mode 1; external axes move by the same number in their
 *                own unit), linear in mm, rotation in deg. CHANGED IN PLACE by every call, refused ones
 *                included: [0] and [2] hold radians afterwards, so fill the array again before the next
 *                call
 * @param current joints, deg
 * @param target  result: joints in deg with the external axes of current (mode 1: moved)
 *
 * Modes 2 and 5 move the tool frame, or the held work object, or with neither the flange; mode 3 the tool
 * frame (with a stationary tool the held work object makes the opposite step; with neither the joints
 * stay where they are); mode 4 the tool frame in the work object. In mode 4 a held work object
 * (HeldByRobot 1) turns with the opposite sense for every rotation slot in use among slots 3 to n - 1,
 * and keeps the tool point in place while it turns.
 *
 * Mode 5 turns the directions by the rotation of the base and then takes them along the axes of the base:
 * where a rotary unit has turned the base by 90 degrees about Z, +X moves along -X of the world.
 *
 * Where the step ends with the X axis of the moved frame along +-Z of the frame it is computed in (B =
 * +-90 degrees), A and C come from rounding and may contradict each other: the joints then lead to
 * another orientation, with KINE_OK. Only an exact zero is caught. Compare with a forward call where a
 * tool gets there.
 *
 * @return codes in this order:
 *  - KINE_ERR_DIRECTION: dir or steps null (nothing is converted)
 *  - KINE_ERR_TOOL, KINE_ERR_WOBJ (with its line, see KineWobj), KINE_ERR_LOAD; KINE_ERR_JOINT: current
 *    or target null
 *  - KINE_ERR_NOT_INITIALISED
 *  - modes 3 and 4: the codes and lines of Kine_JointToWobjPos from "FK Error 1" on, then those of
 *    Kine_WobjPosToJoint after its checks of records
 *  - modes 2 and 5: mode 5 KINE_ERR_F2W_UNIT_KIND (the unit under the robot is not usable); the codes of
 *    the arm as under "IK error 5" of Kine_WobjPosToJoint; nothing is printed
 *  - KINE_ERR_INCH_SINGULAR: the target is singular (Kine_IsSingularity, kind 2); not in mode 1
 */
KINE_API KineResult KINE_CALL Kine_InchMovePosCalc(const KineInchDir* dir, int32_t mode, const KineTool* tool,
                                                   const KineWobj* wobj, const KineLoad* load, double* steps,
                                                   const KineJoint* current, KineJoint* target);

/**
 * Joints that align the tool with a reference frame: the tool point stays, and the tool turns by the
 * smallest rotation that brings its Z axis onto the nearest of +-X, +-Y, +-Z of the reference. Of axes
 * that are equally near within 1e-5 rad the first of X, Y, Z is taken.
 *
 * @param mode    reference: 2 base, 5 world, 4 work object, -1 work object with the flange of a held work
 *                object turned
 * @param current joints, deg
 * @param tool    tool
 * @param wobj    work object
 * @param load    payload
 * @param target  result: joints in deg with the external axes of current
 *
 * With a held work object modes 2, 5 and -1 turn the flange about its own origin, mode 4 the work object.
 *
 * Three facts of this call. With a held work object modes 4 and -1 do not align exactly. The search for
 * the nearest turn tries Cfg4 = 0 to 7, the postures of arm type 6. On a four-axis arm these are turn
 * numbers: a negative axis 4 always gets KINE_ERR_ALIGN_TURN, one from 90 degrees on nearly always, and
 * where several numbers lead to the same axis 4, rounding decides. And an aligned frame with its X axis
 * along +-Z of the base meets the rounding described at Kine_InchMovePosCalc.
 *
 * @return codes in this order:
 *  - KINE_ERR_JOINT: current null; KINE_ERR_WOBJ (with its line, see KineWobj), KINE_ERR_TOOL,
 *    KINE_ERR_LOAD; KINE_ERR_JOINT: target null
 *  - KINE_ERR_NOT_INITIALISED
 *  - KINE_ERR_DIRECTION: mode none of these; mode 4 or -1 with neither tool nor work object held
 *  - mode 5: KINE_ERR_F2W_UNIT_KIND; modes 4 and -1: the codes and lines of Kine_JointToWobjPos from "FK
 *    Error 2" on
 *  - KINE_ERR_ALIGN_NO_SOLUTION: the aligned pose has no solution in the configuration of the current
 *    joints
 *  - KINE_ERR_ALIGN_TURN: among the Cfg4 tried another one than the current leads nearer to the current
 *    joints
 */
KINE_API KineResult KINE_CALL Kine_CalcAlignPos(int32_t mode, const KineJoint* current, const KineTool* tool,
                                                const KineWobj* wobj, const KineLoad* load,
                                                KineJoint* target);

/**
 * Swaps the roles of a stationary tool and a held work object IN THE CALLER'S RECORDS: the frame of the
 * work object (user * object, a user frame counting only with UFFix 1) becomes the frame of a held tool,
 * and the frame of the stationary tool the user frame of a work object that is not held, with a zero
 * object frame. TLoad, UFFix and MechUnitIndex stay: with UFFix 0 the new user frame is ignored until the
 * caller sets it to 1.
 *
 * @param tool stationary tool; becomes a held one
 * @param wobj held work object; becomes one that is not held
 *
 * @return codes in this order:
 *  - KINE_ERR_WOBJ: wobj refused (with its line, see KineWobj)
 *  - KINE_ERR_TOOL: tool refused, or HeldByRobot not 0
 *  - KINE_ERR_WOBJ: HeldByRobot of wobj is 0; tool.HeldByRobot has become 1 all the same, nothing else
 *    has changed
 */
KINE_API KineResult KINE_CALL Kine_CalcAlignCoordProc(KineTool* tool, KineWobj* wobj);

/**
 * Normal of the plane through three points, (p2 - p1) x (p3 - p1), scaled to a length.
 *
 * @param p1     point, mm; the angles of all three are neither read nor checked
 * @param p2     point, mm
 * @param p3     point, mm
 * @param length mm; a negative one reverses the normal
 * @param out    result: three doubles; untouched when the points lie on one line, one of them is NaN, or
 *               any pointer is null
 *
 * @return always KINE_OK
 */
KINE_API KineResult KINE_CALL Kine_CalcZVec(const KineFrame* p1, const KineFrame* p2, const KineFrame* p3,
                                            double length, double* out);

/**
 * Whether the flange lies in an axis-aligned cube in the world.
 *
 * The position is asked of Kine_JointToWorldPos with a tool, a work object and a load of zeros. Such a
 * work object names mechanical unit 0 and is refused, so that THIS CALL RETURNS KINE_ERR_WOBJ FOR EVERY
 * INPUT, with the line of KineWobj. To watch an area, ask Kine_JointToWorldPos with records of your own.
 *
 * @param joints axes, deg; null counts as zeros
 * @param centre centre of the cube, three doubles, mm; nothing is inside for null or NaN
 * @param size   edge length, mm; the faces count as inside
 *
 * @return 1 inside, 0 outside, or a result code
 */
KINE_API int32_t KINE_CALL SafeArea_Check(const KineJoint* joints, const double* centre, double size);

/**
 * Difference of the second pose relative to the first.
 *
 * @param first  pose, mm and deg
 * @param second pose, mm and deg, in the same frame
 * @param frame  1: along and about the axes of that frame; -1: those of the first pose
 * @param out    result: mm and deg
 *
 * @return codes in this order: KINE_ERR_POSE (first, then second); KINE_ERR_DIRECTION: frame neither 1 nor
 * -1; KINE_ERR_POSE: out null.
 */
KINE_API KineResult KINE_CALL Kine_CalcPosDif(const KinePose* first, const KinePose* second, int32_t frame,
                                              KineFrame* out);

/** @} */

#ifdef __cplusplus
}
#endif

/** @cond */
/* ---------------------------------------------------------------------------------------------- */
/* Layout: a compiler that lays the records out differently cannot compile this header. No record */
/* has hidden padding: the layout holds on 32-bit targets too, where a double may be aligned to 4 */
/* bytes only, and under any packing.                                                             */
/* ---------------------------------------------------------------------------------------------- */

#if defined(__cplusplus)
#define KINE_STATIC_ASSERT(name, condition) static_assert(condition, #name)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define KINE_STATIC_ASSERT(name, condition) _Static_assert(condition, #name)
#else
#define KINE_STATIC_ASSERT(name, condition) typedef char KineAssert_##name[(condition) ? 1 : -1]
#endif
#define KINE_ASSERT_SIZE(type, size) KINE_STATIC_ASSERT(type##_size, sizeof(type) == (size))
#define KINE_ASSERT_OFFSET(type, field, offset) \
    KINE_STATIC_ASSERT(type##_##field, offsetof(type, field) == (offset))

KINE_ASSERT_SIZE(KineFrame, 48);
KINE_ASSERT_OFFSET(KineFrame, X, 0);
KINE_ASSERT_OFFSET(KineFrame, Y, 8);
KINE_ASSERT_OFFSET(KineFrame, Z, 16);
KINE_ASSERT_OFFSET(KineFrame, A, 24);
KINE_ASSERT_OFFSET(KineFrame, B, 32);
KINE_ASSERT_OFFSET(KineFrame, C, 40);

KINE_ASSERT_SIZE(KineArmConfig, 16);
KINE_ASSERT_OFFSET(KineArmConfig, Cfg1, 0);
KINE_ASSERT_OFFSET(KineArmConfig, Cfg2, 4);
KINE_ASSERT_OFFSET(KineArmConfig, Cfg3, 8);
KINE_ASSERT_OFFSET(KineArmConfig, Cfg4, 12);

KINE_ASSERT_SIZE(KinePose, 112);
KINE_ASSERT_OFFSET(KinePose, Frame, 0);
KINE_ASSERT_OFFSET(KinePose, Cfg1, 48);
KINE_ASSERT_OFFSET(KinePose, Cfg2, 52);
KINE_ASSERT_OFFSET(KinePose, Cfg3, 56);
KINE_ASSERT_OFFSET(KinePose, Cfg4, 60);
KINE_ASSERT_OFFSET(KinePose, ExtAxis, 64);

KINE_ASSERT_SIZE(KineJoint, 112);
KINE_ASSERT_OFFSET(KineJoint, Axis, 0);
KINE_ASSERT_OFFSET(KineJoint, ExtAxis, 64);

KINE_ASSERT_SIZE(KineLoad, 80);
KINE_ASSERT_OFFSET(KineLoad, Mass, 0);
KINE_ASSERT_OFFSET(KineLoad, Cog, 8);
KINE_ASSERT_OFFSET(KineLoad, Aom, 32);
KINE_ASSERT_OFFSET(KineLoad, Inertia, 56);

KINE_ASSERT_SIZE(KineTool, 136);
KINE_ASSERT_OFFSET(KineTool, HeldByRobot, 0);
KINE_ASSERT_OFFSET(KineTool, Reserved, 1);
KINE_ASSERT_OFFSET(KineTool, TFrame, 8);
KINE_ASSERT_OFFSET(KineTool, TLoad, 56);

KINE_ASSERT_SIZE(KineWobj, 104);
KINE_ASSERT_OFFSET(KineWobj, HeldByRobot, 0);
KINE_ASSERT_OFFSET(KineWobj, UFFix, 1);
KINE_ASSERT_OFFSET(KineWobj, MechUnitIndex, 2);
KINE_ASSERT_OFFSET(KineWobj, Reserved, 3);
KINE_ASSERT_OFFSET(KineWobj, UFrame, 8);
KINE_ASSERT_OFFSET(KineWobj, OFrame, 56);

KINE_ASSERT_SIZE(KineMechUnit, 312);
KINE_ASSERT_OFFSET(KineMechUnit, Active, 0);
KINE_ASSERT_OFFSET(KineMechUnit, UnitKind, 4);
KINE_ASSERT_OFFSET(KineMechUnit, Option1, 6);
KINE_ASSERT_OFFSET(KineMechUnit, Option2, 7);
KINE_ASSERT_OFFSET(KineMechUnit, AxisCount, 8);
KINE_ASSERT_OFFSET(KineMechUnit, Reserved, 9);
KINE_ASSERT_OFFSET(KineMechUnit, AxisFrame, 16);
KINE_ASSERT_OFFSET(KineMechUnit, AxisParamIndex, 304);
KINE_ASSERT_OFFSET(KineMechUnit, Reserved2, 310);

KINE_ASSERT_SIZE(KineExtAxisParam, 60);
KINE_ASSERT_OFFSET(KineExtAxisParam, Word, 0);
KINE_ASSERT_OFFSET(KineExtAxisParam, Raw0, 8);
KINE_ASSERT_OFFSET(KineExtAxisParam, Raw1, 12);
KINE_ASSERT_OFFSET(KineExtAxisParam, AngleA, 16);
KINE_ASSERT_OFFSET(KineExtAxisParam, AngleB, 20);
KINE_ASSERT_OFFSET(KineExtAxisParam, Value, 24);
KINE_ASSERT_OFFSET(KineExtAxisParam, Tail, 52);
KINE_ASSERT_OFFSET(KineExtAxisParam, Reserved, 58);

KINE_ASSERT_SIZE(KineInchDir, 56);
KINE_ASSERT_OFFSET(KineInchDir, Slot, 0);

KINE_ASSERT_SIZE(KineCalibError, 24);
KINE_ASSERT_OFFSET(KineCalibError, Largest, 0);
KINE_ASSERT_OFFSET(KineCalibError, Mean, 8);
KINE_ASSERT_OFFSET(KineCalibError, Smallest, 16);

KINE_ASSERT_SIZE(KineSixAxisParam, 272);
KINE_ASSERT_OFFSET(KineSixAxisParam, a1, 0);
KINE_ASSERT_OFFSET(KineSixAxisParam, a2, 8);
KINE_ASSERT_OFFSET(KineSixAxisParam, a3, 16);
KINE_ASSERT_OFFSET(KineSixAxisParam, d4, 24);
KINE_ASSERT_OFFSET(KineSixAxisParam, d6, 32);
KINE_ASSERT_OFFSET(KineSixAxisParam, d1, 40);
KINE_ASSERT_OFFSET(KineSixAxisParam, lateralOffset, 48);
KINE_ASSERT_OFFSET(KineSixAxisParam, reserved0, 56);
KINE_ASSERT_OFFSET(KineSixAxisParam, alpha1, 64);
KINE_ASSERT_OFFSET(KineSixAxisParam, alpha2, 72);
KINE_ASSERT_OFFSET(KineSixAxisParam, alpha3, 80);
KINE_ASSERT_OFFSET(KineSixAxisParam, alpha4, 88);
KINE_ASSERT_OFFSET(KineSixAxisParam, alpha5, 96);
KINE_ASSERT_OFFSET(KineSixAxisParam, beta2, 104);
KINE_ASSERT_OFFSET(KineSixAxisParam, d3, 112);
KINE_ASSERT_OFFSET(KineSixAxisParam, d5, 120);
KINE_ASSERT_OFFSET(KineSixAxisParam, a4, 128);
KINE_ASSERT_OFFSET(KineSixAxisParam, a5, 136);
KINE_ASSERT_OFFSET(KineSixAxisParam, mountX, 144);
KINE_ASSERT_OFFSET(KineSixAxisParam, mountY, 152);
KINE_ASSERT_OFFSET(KineSixAxisParam, reserved1, 160);
KINE_ASSERT_OFFSET(KineSixAxisParam, G, 192);
KINE_ASSERT_OFFSET(KineSixAxisParam, k2, 248);
KINE_ASSERT_OFFSET(KineSixAxisParam, k3, 256);
KINE_ASSERT_OFFSET(KineSixAxisParam, k5, 264);

KINE_ASSERT_SIZE(KineFourAxisParam, 96);
KINE_ASSERT_OFFSET(KineFourAxisParam, Link1Length, 0);
KINE_ASSERT_OFFSET(KineFourAxisParam, Link2Length, 8);
KINE_ASSERT_OFFSET(KineFourAxisParam, ZOffset, 16);
KINE_ASSERT_OFFSET(KineFourAxisParam, ScrewLead, 24);
KINE_ASSERT_OFFSET(KineFourAxisParam, reserved0, 32);
KINE_ASSERT_OFFSET(KineFourAxisParam, Link1TiltX, 64);
KINE_ASSERT_OFFSET(KineFourAxisParam, Link2TiltX, 72);
KINE_ASSERT_OFFSET(KineFourAxisParam, Link1TiltY, 80);
KINE_ASSERT_OFFSET(KineFourAxisParam, Link2TiltY, 88);

KINE_ASSERT_SIZE(KineKinematicParam, 272);
KINE_ASSERT_OFFSET(KineKinematicParam, SixAxis, 0);
KINE_ASSERT_OFFSET(KineKinematicParam, FourAxis, 0);

#undef KINE_ASSERT_OFFSET
#undef KINE_ASSERT_SIZE
#undef KINE_STATIC_ASSERT
/** @endcond */

#endif /* KINEDLL_H */
