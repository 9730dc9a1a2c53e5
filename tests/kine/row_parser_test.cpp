// Rows of text to targets.
#include "rows/row_parser.h"

#include <gtest/gtest.h>

#include "failure_text.h"

namespace kine_cli {
namespace {

constexpr Widths kPlain = {6, 0};
constexpr Widths kWithExternal = {6, 2};
constexpr Widths kFour = {4, 0};

// A row after a header, or without one when it is empty.
Target Parse(Shape shape, Widths widths, const std::string& header, const std::string& row)
{
    RowParser parser(shape, widths, "f.csv");
    EXPECT_EQ(!header.empty() && parser.TakeHeader(header, 1), !header.empty());
    Target target;
    parser.Parse(row, 2, target);
    target.name = {};  // points into what is gone
    return target;
}
std::string Says(Shape shape, Widths widths, const std::string& header, const std::string& row)
{
    return FailureText([&] { Parse(shape, widths, header, row); });
}
std::string NameOf(const std::string& header, const std::string& row)
{
    RowParser parser(Shape::kJoints, kPlain, "f.csv");
    EXPECT_EQ(!header.empty() && parser.TakeHeader(header, 1), !header.empty());
    Target target;
    parser.Parse(row, 2, target);
    return std::string(target.name);
}

const std::string kJointHeader = "q1_deg,q2_deg,q3_deg,q4_deg,q5_deg,q6_deg";
const std::string kPoseHeader = "x_mm,y_mm,z_mm,a_deg,b_deg,c_deg";

void ExpectAxes(const Target& target, std::initializer_list<double> axes)
{
    std::size_t i = 0;
    for (const double axis : axes) EXPECT_EQ(target.joints.Axis[i++], axis);
}

TEST(RowParser, an_empty_configuration_is_an_open_one)
{
    const std::string header = kPoseHeader + ",cfg1,cfg2,cfg3,cfg4";
    EXPECT_TRUE(Parse(Shape::kPoses, kPlain, header, "1,2,3,4,5,6,0,0,0,0").hasConfig);
    const Target open = Parse(Shape::kPoses, kPlain, header, "1,2,3,4,5,6,, ,,");
    EXPECT_FALSE(open.hasConfig);
    EXPECT_EQ(open.pose.Frame.C, 6.0);
    EXPECT_EQ(Says(Shape::kPoses, kPlain, header, "1,2,3,4,5,6,0,0,,0"),
              "f.csv:2: column 9 (cfg3): cfg1 to cfg4 come together or not at all");
}

TEST(RowParser, joints_come_in_the_usual_order)
{
    const Target target = Parse(Shape::kJoints, kWithExternal, "", "1,-2,+3,4e0, 5 ,6.5,70,80");
    ExpectAxes(target, {1, -2, 3, 4, 5, 6.5, 0, 0});
    EXPECT_EQ(target.joints.ExtAxis[0], 70.0);
    EXPECT_EQ(target.joints.ExtAxis[1], 80.0);
    ExpectAxes(Parse(Shape::kJoints, kWithExternal, "", "1,2,3,4,5,6"), {1, 2, 3, 4, 5, 6});
    ExpectAxes(Parse(Shape::kJoints, kFour, "", "1,2,3,4"), {1, 2, 3, 4, 0, 0});
}

TEST(RowParser, poses_come_with_or_without_integers_and_external_axes)
{
    const Target bare = Parse(Shape::kPoses, kWithExternal, "", "1,2,3,4,5,6");
    EXPECT_EQ(bare.pose.Frame.X, 1.0);
    EXPECT_EQ(bare.pose.Frame.Y, 2.0);
    EXPECT_EQ(bare.pose.Frame.Z, 3.0);
    EXPECT_EQ(bare.pose.Frame.A, 4.0);
    EXPECT_EQ(bare.pose.Frame.B, 5.0);
    EXPECT_EQ(bare.pose.Frame.C, 6.0);
    EXPECT_FALSE(bare.hasConfig);
    const Target whole =
        Parse(Shape::kPoses, kWithExternal, "", "1,2,3,4,5,6,-1,2,-2147483648,2147483647,11,12");
    EXPECT_TRUE(whole.hasConfig);
    EXPECT_EQ(whole.pose.Cfg1, -1);
    EXPECT_EQ(whole.pose.Cfg2, 2);
    EXPECT_EQ(whole.pose.Cfg3, -2147483647 - 1);
    EXPECT_EQ(whole.pose.Cfg4, 2147483647);
    EXPECT_EQ(whole.pose.ExtAxis[1], 12.0);
    EXPECT_TRUE(Parse(Shape::kPoses, kWithExternal, "", "1,2,3,4,5,6,0,0,0,0").hasConfig);
}

TEST(RowParser, a_header_gives_the_order_and_may_have_more)
{
    const Target target =
        Parse(Shape::kJoints, kWithExternal,
              "result, e2 ,\"q6_deg\",q5_deg,posture,q4_deg,q3_deg,lines,q2_deg,q1_deg,error",
              "0x0000,8,6,5,front near,4,3,words,2,1,KINE_OK");
    ExpectAxes(target, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(target.joints.ExtAxis[0], 0.0);
    EXPECT_EQ(target.joints.ExtAxis[1], 8.0);
    const Target pose = Parse(Shape::kPoses, kPlain, "cfg4,cfg3,cfg2,cfg1,c_deg,b_deg,a_deg,z_mm,y_mm,x_mm",
                              "4,3,2,1,6,5,4,3,2,1");
    EXPECT_EQ(pose.pose.Cfg1, 1);
    EXPECT_EQ(pose.pose.Cfg4, 4);
    EXPECT_EQ(pose.pose.Frame.X, 1.0);
    EXPECT_EQ(pose.pose.Frame.C, 6.0);
}

TEST(RowParser, the_header_of_either_shape_says_which)
{
    RowParser joints(Shape::kEither, kPlain, "f.csv");
    EXPECT_TRUE(joints.TakeHeader(kJointHeader, 1));
    EXPECT_EQ(joints.RowShape(), Shape::kJoints);
    RowParser poses(Shape::kEither, kPlain, "f.csv");
    EXPECT_TRUE(poses.TakeHeader(kPoseHeader, 1));
    EXPECT_EQ(poses.RowShape(), Shape::kPoses);
    EXPECT_EQ(Says(Shape::kEither, kPlain, "", "1,2,3,4,5,6"),
              "f.csv:2: needs a header, to tell joints from poses");
}

TEST(RowParser, semicolons_and_tabs_part_values_and_Windows_lines_end_well)
{
    for (const char* row : {"1;2;3;4;5;6", "1\t2\t3\t4\t5\t6", "1;2,3\t4;5,6\r", " 1 , 2,3,4,5,6 \r"})
        ExpectAxes(Parse(Shape::kJoints, kPlain, "", row), {1, 2, 3, 4, 5, 6});
}

TEST(RowParser, quotes_hide_separators_and_are_taken_off)
{
    ExpectAxes(Parse(Shape::kJoints, kPlain, "", R"("1","2","3","4","5"," 6 ")"), {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(NameOf("name," + kJointHeader, R"("left, up",1,2,3,4,5,6)"), "left, up");
    EXPECT_EQ(NameOf("name," + kJointHeader, "5\" tube,1,2,3,4,5,6"), "5\" tube");
    EXPECT_EQ(Says(Shape::kJoints, kPlain, "name," + kJointHeader, "\"open,1,2,3,4,5,6"),
              "f.csv:2: has 1 values, the header 7");
}

TEST(RowParser, a_target_has_its_name_or_the_number_of_its_line)
{
    EXPECT_EQ(NameOf("", "1,2,3,4,5,6"), "2");
    EXPECT_EQ(NameOf("target," + kJointHeader, " home ,1,2,3,4,5,6"), "home");
    EXPECT_EQ(NameOf("target," + kJointHeader, ",1,2,3,4,5,6"), "2");
    EXPECT_EQ(NameOf(kJointHeader + ",name", "1,2,3,4,5,6,\"home\""), "home");
}

TEST(RowParser, refused_rows_go_through_without_numbers)
{
    const Target target =
        Parse(Shape::kJoints, kPlain, "target," + kJointHeader + ",result", "7,,,,,,,0x6097");
    EXPECT_EQ(target.refusedBefore, KINE_ERR_IK_7);
    EXPECT_EQ(Parse(Shape::kJoints, kPlain, "target," + kJointHeader + ",result", "7,a,b,c,d,e,f,0xFFFFFFFF")
                  .refusedBefore,
              0xFFFFFFFFU);
}

TEST(RowParser, blank_lines_and_comments_hold_no_row)
{
    for (const char* line : {"", " ", "\t\r", "# a comment", "  # too"})
        EXPECT_TRUE(RowParser::IsEmpty(line)) << line;
    EXPECT_FALSE(RowParser::IsEmpty(","));
    EXPECT_FALSE(RowParser::IsEmpty("0"));
}

TEST(RowParser, only_names_make_a_header)
{
    for (const char* line : {"1,2,3", "-1,2", "+.5", "\"10\",2", ",,", "\"\",1", "1e5,x"}) {
        RowParser parser(Shape::kJoints, kPlain, "f.csv");
        EXPECT_FALSE(parser.TakeHeader(line, 1)) << line;
    }
}

TEST(RowParser, a_wrong_header_is_refused_with_what_is_known)
{
    const auto says = [](Shape shape, Widths widths, const std::string& header) {
        RowParser parser(shape, widths, "f.csv");
        return FailureText([&] { parser.TakeHeader(header, 3); });
    };
    EXPECT_EQ(says(Shape::kJoints, kFour, "q1_deg,q2_deg,q3_deg,q5_deg"),
              "f.csv:3: unknown column \"q5_deg\"; known are target, result, q1_deg to q4_deg");
    EXPECT_EQ(says(Shape::kPoses, kWithExternal, kPoseHeader + ",e3"),
              "f.csv:3: unknown column \"e3\"; known are target, result, x_mm, y_mm, z_mm, a_deg, b_deg, "
              "c_deg, cfg1 to cfg4, e1 to e2");
    EXPECT_EQ(says(Shape::kJoints, kPlain, "q1_deg,q1_deg"), "f.csv:3: column \"q1_deg\" is given twice");
    EXPECT_EQ(says(Shape::kJoints, kPlain, "name,target"), "f.csv:3: column \"target\" is given twice");
    EXPECT_EQ(says(Shape::kJoints, kPlain, "target,q1_deg"), "f.csv:3: column \"q2_deg\" is missing");
    EXPECT_EQ(says(Shape::kPoses, kPlain, "x_mm,y_mm,z_mm,a_deg,b_deg"),
              "f.csv:3: column \"c_deg\" is missing");
    EXPECT_EQ(says(Shape::kPoses, kPlain, kPoseHeader + ",cfg1,cfg2,cfg4"),
              "f.csv:3: cfg1 to cfg4 come together or not at all");
    EXPECT_EQ(says(Shape::kJoints, kPlain, R"({"target":"1","q1_deg":1})"),
              "f.csv:3: is JSON; rows are comma-separated values, as --csv writes them");
    EXPECT_EQ(says(Shape::kJoints, kPlain, "\x1b[2J\x01\xFF"),
              "f.csv:3: unknown column \"\\u001b[2J\\u0001?\"; known are target, result, q1_deg to q6_deg");
    EXPECT_LT(says(Shape::kJoints, kPlain, std::string(900000, 'x')).size(), 200U);
}

TEST(RowParser, a_wrong_row_is_refused_with_line_and_column)
{
    EXPECT_EQ(Says(Shape::kJoints, kPlain, "", "1,2,3"), "f.csv:2: has 3 values; expected 6 axes");
    EXPECT_EQ(Says(Shape::kJoints, kWithExternal, "", "1,2,3,4,5,6,7"),
              "f.csv:2: has 7 values; expected 6 axes, with or without 2 external axes");
    EXPECT_EQ(Says(Shape::kPoses, kPlain, "", "1,2,3,4,5"),
              "f.csv:2: has 5 values; expected 6 values of a frame, or these and 4 configuration integers");
    EXPECT_EQ(Says(Shape::kPoses, kPlain, "", "1,2,3,4,5,6,7,8,9,10,11"),
              "f.csv:2: has 11 values; expected 6 values of a frame");
    EXPECT_EQ(Says(Shape::kJoints, kPlain, "", "1,2,x,4,5,6"),
              "f.csv:2: column 3 (q3_deg): \"x\" is not a number");
    EXPECT_EQ(Says(Shape::kJoints, kPlain, "", "1,2,,4,5,6"),
              "f.csv:2: column 3 (q3_deg): \"\" is not a number");
    EXPECT_EQ(Says(Shape::kJoints, kPlain, "", "1,2,3,4,5,inf"),
              "f.csv:2: column 6 (q6_deg): \"inf\" is not a number");
    EXPECT_EQ(Says(Shape::kPoses, kPlain, "", "1,2,3,4,5,6,0,0.5,0,0"),
              "f.csv:2: column 8 (cfg2): \"0.5\" is not a whole number of 32 bits");
    EXPECT_EQ(Says(Shape::kPoses, kPlain, "", "1,2,3,4,5,6,0,0,2147483648,0"),
              "f.csv:2: column 9 (cfg3): \"2147483648\" is not a whole number of 32 bits");
    EXPECT_EQ(Says(Shape::kPoses, kPlain, "", "1,2,3,4,5,6,0,0,-2147483649,0"),
              "f.csv:2: column 9 (cfg3): \"-2147483649\" is not a whole number of 32 bits");
    EXPECT_EQ(Says(Shape::kPoses, kPlain, "", "1,2,3,4,5,6,0,0,1e300,0"),
              "f.csv:2: column 9 (cfg3): \"1e300\" is not a whole number of 32 bits");
    EXPECT_EQ(Says(Shape::kJoints, kPlain, kJointHeader, "1,2"), "f.csv:2: has 2 values, the header 6");
    EXPECT_EQ(Says(Shape::kJoints, kPlain, kJointHeader + ",result", "1,2,3,4,5,6,ok"),
              "f.csv:2: column 7 (result): \"ok\" is no result code such as 0x0000");
    EXPECT_EQ(Says(Shape::kJoints, kPlain, "", std::string("1,2,\0\x1b,4,5,6", 12)),
              "f.csv:2: column 3 (q3_deg): \"\\u0000\\u001b\" is not a number");
    EXPECT_LT(Says(Shape::kJoints, kPlain, "", "1,2,3,4,5," + std::string(900000, '7') + "x").size(), 200U);
}

TEST(RowParser, an_argument_has_no_line)
{
    Target target;
    EXPECT_EQ(FailureText([&] { RowParser(Shape::kJoints, kPlain, "\"1,2\"").Parse("1,2", 0, target); }),
              "\"1,2\": has 2 values; expected 6 axes");
}

TEST(RowParser, rows_without_header_may_differ_in_what_they_have)
{
    RowParser parser(Shape::kPoses, kWithExternal, "f.csv");
    Target target;
    for (const auto& [row, hasConfig, external] : {std::tuple("1,2,3,4,5,6", false, 0.0),
                                                   {"1,2,3,4,5,6,0,0,0,0,7,8", true, 8.0},
                                                   {"1,2,3,4,5,6,0,0,0,0", true, 0.0},
                                                   {"1,2,3,4,5,6", false, 0.0}}) {
        parser.Parse(row, 1, target);
        EXPECT_EQ(target.hasConfig, hasConfig);
        EXPECT_EQ(target.pose.ExtAxis[1], external);
    }
}

}  // namespace
}  // namespace kine_cli
