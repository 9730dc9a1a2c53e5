// The zero frame of a robot that stands at the world origin: its product is left out where that changes
// nothing. The reference is the full product, with the same frame given as a pose of six zeros.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "chain/forward_chain.h"
#include "chain/frame_services.h"
#include "chain/inverse_chain.h"
#include "support/cell_plans.h"
#include "support/numbers.h"
#include "support/records.h"
#include "support/stdout_capture.h"

using namespace kine;
using namespace kine::test;

namespace {

constexpr double kTolerance = 1e-11;

constexpr Pose kZeros{};

using Service = KineResult (*)(const MechUnitBlock&, const FrameDescriptor&, PoseRecord&);
constexpr Service kServices[] = {FrameToWorld, WorldToFrame};

std::array<double, 6> NumbersOf(const Pose& p) { return {p.x, p.y, p.z, p.a, p.b, p.c}; }

std::array<double, 12> ElementsOf(const HomMatrix& m)
{
    return {m.r.r00, m.r.r01, m.r.r02, m.r.r10, m.r.r11, m.r.r12,
            m.r.r20, m.r.r21, m.r.r22, m.t.x,   m.t.y,   m.t.z};
}

// Both NaN, the same infinity, or numbers that are equal.
bool IsSameKind(double a, double b)
{
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return a == b;
}

template <std::size_t N>
void ExpectSameKind(const std::array<double, N>& actual, const std::array<double, N>& expected)
{
    for (std::size_t i = 0; i < N; ++i) {
        EXPECT_TRUE(IsSameKind(actual[i], expected[i]))
            << i << ": " << actual[i] << " instead of " << expected[i];
    }
}

PoseRecord RecordOf(const LazyPose& frame)
{
    PoseRecord record{};
    record.frame = frame;
    record.config = {1, -2, 3, -4};
    record.extAxis = kExtAxis;
    return record;
}

// A service with the frame left out and with the full product.
void ExpectFullProduct(Service service, const LazyPose& frame)
{
    const PoseRecord record = RecordOf(frame);
    PoseRecord actual = record;
    PoseRecord expected = record;
    ASSERT_EQ(service({}, {kFixedInWorld, 0, {}}, actual), 0u);
    ASSERT_EQ(service({}, {kFixedInWorld, 0, kZeros}, expected), 0u);
    ExpectSameKind(ElementsOf(actual.frame.AsMatrix()), ElementsOf(expected.frame.AsMatrix()));
    ExpectSameKind(NumbersOf(actual.frame), NumbersOf(expected.frame));
    EXPECT_TRUE(SameBits(actual.config, record.config));
    EXPECT_TRUE(SameBits(actual.extAxis, record.extAxis));
}

HomMatrix WithElement(const HomMatrix& m, std::size_t place, double value)
{
    std::array<double, 12> e = ElementsOf(m);
    e[place] = value;
    return {{e[0], e[1], e[2], e[3], e[4], e[5], e[6], e[7], e[8]}, {e[9], e[10], e[11]}};
}

constexpr double Pose::*kFields[] = {&Pose::x, &Pose::y, &Pose::z, &Pose::a, &Pose::b, &Pose::c};

}  // namespace

// The full product multiplies by ones and adds zeros: every element is the same number.
TEST(FrameServices, zero_frame_leaves_every_finite_frame_as_the_full_product_does)
{
    SeededRandom random(8101);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        const Pose pose = RandomPose(random, 2000.0);
        for (const Service service : kServices) {
            ExpectFullProduct(service, pose);
            ExpectFullProduct(service, LazyPose(HomOf(pose)));
        }
    }
    for (const Service service : kServices) {
        ExpectFullProduct(service, LazyPose());
        ExpectFullProduct(service, kZeros);
        ExpectFullProduct(service, LazyPose(kIdentityTransform));
        ExpectFullProduct(service, Pose{1e300, -1e300, 5e-324, 0.1, 0.2, 0.3});
        ExpectFullProduct(service, Pose{1e308, 1e308, 1e308, 0.1, 0.2, 0.3});
    }
}

// At the gimbal the frame that goes through is the one its pose stands for, with a first angle of 0.
TEST(FrameServices, zero_frame_leaves_a_frame_at_the_gimbal_as_the_full_product_does)
{
    SeededRandom random(8102);
    for (const double off : {0.0, 1e-12, 1e-8, 5e-6, 9.9e-6, 1.1e-5, 1e-4}) {
        for (int i = 0; i < 50; ++i) {
            Pose pose = RandomPose(random, 2000.0);
            pose.b = (i % 2 == 0 ? 1.0 : -1.0) * (kQuarterTurn - off);
            for (const Service service : kServices) {
                SCOPED_TRACE(off);
                const PoseRecord record = RecordOf(LazyPose(HomOf(pose)));
                PoseRecord actual = record;
                PoseRecord expected = record;
                ASSERT_EQ(service({}, {kFixedInWorld, 0, {}}, actual), 0u);
                ASSERT_EQ(service({}, {kFixedInWorld, 0, kZeros}, expected), 0u);
                EXPECT_TRUE(IsMatrix(MatrixOf(actual.frame), MatrixOf(expected.frame), 0.0, kTolerance));
                EXPECT_EQ(actual.frame.AsPose().a == 0.0, IsGimbal(HomOf(pose).r));
                EXPECT_EQ(expected.frame.AsPose().a == 0.0, IsGimbal(HomOf(pose).r));
            }
        }
    }
}

TEST(FrameServices, zero_frame_spreads_what_is_not_finite_as_the_full_product_does)
{
    SeededRandom random(8103);
    const Pose regular = RandomPose(random, 2000.0);
    for (const double bad : {kNan, kInf, -kInf}) {
        for (const Service service : kServices) {
            for (std::size_t first = 0; first < 12; ++first) {
                for (std::size_t second = first; second < 12; ++second) {
                    SCOPED_TRACE(testing::Message() << bad << " in " << first << " and " << second);
                    const HomMatrix m = WithElement(WithElement(HomOf(regular), second, -bad), first, bad);
                    ExpectFullProduct(service, LazyPose(m));
                }
            }
            for (std::size_t field = 0; field < 6; ++field) {
                SCOPED_TRACE(testing::Message() << bad << " in number " << field);
                Pose pose = regular;
                pose.*kFields[field] = bad;
                ExpectFullProduct(service, pose);
                ExpectFullProduct(service, LazyPose(PoseToMatrix(pose)));
            }
        }
    }
}

// A zero frame on a mechanical unit is multiplied like any other.
TEST(FrameServices, zero_frame_on_a_unit_is_the_full_product)
{
    SeededRandom random(8104);
    for (const std::int32_t kind : {kOneLinearAxis, kOneRotaryAxis, kTwoRotaryAxes}) {
        MechUnitBlock units{};
        units.mechUnitCount = 1;
        units.units[0] = MakeUnit(kind, RandomPose(random, 900.0), RandomPose(random, 900.0));
        for (int i = 0; i < 100; ++i) {
            const PoseRecord record = RecordOf(RandomPose(random, 900.0));
            for (const Service service : kServices) {
                PoseRecord actual = record;
                PoseRecord expected = record;
                ASSERT_EQ(service(units, {kOnMechUnit, 0, {}}, actual), 0u);
                ASSERT_EQ(service(units, {kOnMechUnit, 0, kZeros}, expected), 0u);
                ExpectSameKind(ElementsOf(actual.frame.AsMatrix()), ElementsOf(expected.frame.AsMatrix()));
            }
        }
    }
}

namespace {

using Chain = KineResult (*)(const Store&, const ForwardRequest&, PoseRecord&);
constexpr Chain kChains[] = {JointToBase, JointToFlange, JointToWorld, JointToWobj};

// The cell of a plan, with the robot at the world origin: the frame left out, or as six zeros.
Store AtOrigin(const CellPlan& plan, const LazyPose& frame)
{
    Store store = MakeCell(plan);
    store.mounting = {kFixedInWorld, 0, frame};
    return store;
}

// Numbers that are not finite are of the same kind; the others agree to rounding.
void ExpectSameAnswer(Chain chain, const Store& left, const Store& full, const ForwardRequest& request)
{
    PoseRecord actual = Untouched<PoseRecord>();
    PoseRecord expected = Untouched<PoseRecord>();
    ASSERT_EQ(chain(left, request, actual), 0u);
    ASSERT_EQ(chain(full, request, expected), 0u);
    EXPECT_TRUE(SameBits(actual.config, expected.config));
    EXPECT_TRUE(SameBits(actual.extAxis, expected.extAxis));
    const auto a = NumbersOf(actual.frame);
    const auto e = NumbersOf(expected.frame);
    for (std::size_t i = 0; i < 6; ++i) {
        const bool isAngle = i > 2;
        if (std::isfinite(a[i]) && std::isfinite(e[i])) {
            EXPECT_NEAR(isAngle ? std::remainder(a[i] - e[i], 2.0 * kHalfTurn) : a[i] - e[i], 0.0, kTolerance)
                << i;
        } else {
            EXPECT_TRUE(IsSameKind(a[i], e[i])) << i << ": " << a[i] << " instead of " << e[i];
        }
    }
}

}  // namespace

TEST(ForwardChains, at_the_world_origin_are_the_full_products)
{
    SeededRandom random(8105);
    for (const CellPlan& plan : AllCellPlans()) {
        SCOPED_TRACE(NameOf(plan));
        const Store left = AtOrigin(plan, {});
        const Store full = AtOrigin(plan, kZeros);
        for (int i = 0; i < 5; ++i) {
            const Pose object = RandomPose(random, 500.0);
            ForwardRequest held{CellJoints(), MakeTool(1, CarriedFrame(plan)), CellWobj(plan, object), {}};
            ForwardRequest stationary{
                CellJoints(), MakeTool(0, RandomPose(random, 900.0)), MakeWobj(1, CarriedFrame(plan)), {}};
            for (double& axis : held.joints.axis) axis = random.Uniform(-3.0, 3.0);
            stationary.joints = held.joints;
            for (const Chain chain : kChains) {
                ExpectSameAnswer(chain, left, full, held);
                ExpectSameAnswer(chain, left, full, stationary);
            }
        }
    }
}

TEST(ForwardChains, at_the_world_origin_with_numbers_that_are_not_finite_are_the_full_products)
{
    SeededRandom random(8106);
    for (const std::int32_t type : {kFour, kSix, k4110}) {
        const CellPlan plan{type, kNoUnit, kNoUnit};
        const Store left = AtOrigin(plan, {});
        const Store full = AtOrigin(plan, kZeros);
        const ForwardRequest regular{
            CellJoints(), MakeTool(1, CarriedFrame(plan)), MakeWobj(0, RandomPose(random, 500.0)), {}};
        const auto expectAll = [&](const ForwardRequest& request) {
            ForwardRequest swapped = request;
            swapped.tool.heldByRobot = 0;
            swapped.wobj.heldByRobot = 1;
            for (const Chain chain : kChains) {
                ExpectSameAnswer(chain, left, full, request);
                ExpectSameAnswer(chain, left, full, swapped);
            }
        };
        for (const double bad : {kNan, kInf, -kInf}) {
            SCOPED_TRACE(testing::Message() << "arm type " << type << ", " << bad);
            for (std::size_t axis = 0; axis < 6; ++axis) {
                ForwardRequest request = regular;
                request.joints.axis[axis] = bad;
                expectAll(request);
            }
            for (const auto field : kFields) {
                ForwardRequest inTool = regular;
                inTool.tool.frame.*field = bad;
                expectAll(inTool);
                ForwardRequest inUser = regular;
                inUser.wobj.user.*field = bad;
                expectAll(inUser);
                ForwardRequest inObject = regular;
                inObject.wobj.object.*field = bad;
                expectAll(inObject);
            }
        }
    }
}

TEST(WobjToJoint, at_the_world_origin_is_the_full_product)
{
    SeededRandom random(8107);
    for (const CellPlan& plan : AllCellPlans()) {
        SCOPED_TRACE(NameOf(plan));
        const Store left = AtOrigin(plan, {});
        const Store full = AtOrigin(plan, kZeros);
        const Pose object = RandomPose(random, 500.0);
        const Pose toolFrame = CarriedFrame(plan);
        const Mat4 target =
            RigidInverse(WorldFromWobj(plan, object)) * BaseFromFlange(plan) * MatrixOf(toolFrame);
        InverseRequest request{
            MakeTool(1, toolFrame), CellWobj(plan, object), {}, {PoseOf(target), CellConfig(plan), kExtAxis}};
        const auto run = [&](const Store& store, Joints& joints, KineResult& code) {
            joints = Untouched<Joints>();
            return PrintedBy([&] { code = WobjToJoint(store, request, joints); });
        };
        Joints actual{};
        Joints expected{};
        KineResult actualCode = 1;
        KineResult expectedCode = 1;
        EXPECT_EQ(run(left, actual, actualCode), run(full, expected, expectedCode));
        ASSERT_EQ(actualCode, 0u);
        ASSERT_EQ(expectedCode, 0u);
        for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(actual.axis[i], expected.axis[i], kTolerance) << i;
        EXPECT_TRUE(SameBits(actual.extAxis, expected.extAxis));

        for (const double bad : {kNan, kInf, -kInf}) {
            for (const auto field : kFields) {
                Pose broken = PoseOf(target);
                broken.*field = bad;
                request.target.frame = broken;
                EXPECT_EQ(run(left, actual, actualCode), run(full, expected, expectedCode));
                EXPECT_EQ(actualCode, expectedCode);
                EXPECT_EQ(IsUntouched(actual), IsUntouched(expected));
            }
        }
    }
}
