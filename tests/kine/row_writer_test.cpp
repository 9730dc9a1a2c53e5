// Rows of answers in their three forms.
#include "rows/row_writer.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <random>

#include "rows/row_filter.h"
#include "rows/row_parser.h"

namespace kine_cli {
namespace {

constexpr Widths kWithExternal = {6, 2};

const std::vector<Column> kColumns = {{"n", 8, 2}, {"i", 5, 0}, {"word", -6, 0}};

std::string Row(Format format, std::string_view name, double number, std::int64_t integer,
                std::string_view word)
{
    RowWriter writer(format, {}, kColumns);
    writer.Begin(name);
    writer.Number(number);
    writer.Integer(integer);
    writer.Text(word);
    writer.End();
    return writer.Written();
}

TEST(RowWriter, a_row_in_each_form)
{
    EXPECT_EQ(RowWriter(Format::kTable, {}, kColumns).Header(), "target            n     i word   result\n");
    EXPECT_EQ(Row(Format::kTable, "home", -1.005, -7, "near"), "home          -1.00    -7 near   0x0000\n");
    EXPECT_EQ(RowWriter(Format::kCsv, {}, kColumns).Header(), "target,n,i,word,result\n");
    EXPECT_EQ(Row(Format::kCsv, "home", -1.005, -7, "near"), "home,-1.005,-7,near,0x0000\n");
    EXPECT_EQ(RowWriter(Format::kJson, {}, kColumns).Header(), "");
    EXPECT_EQ(Row(Format::kJson, "home", -1.005, -7, "near"),
              "{\"target\":\"home\",\"n\":-1.005,\"i\":-7,\"word\":\"near\",\"result\":\"0x0000\"}\n");
}

TEST(RowWriter, a_refused_row_in_each_form_keeps_its_columns)
{
    const auto refused = [](Format format, const std::string& lines) {
        RowWriter writer(format, {}, kColumns);
        writer.Begin("7");
        writer.Number(1.0);
        writer.EndRefused(KINE_ERR_WOBJ, lines);
        return writer.Written();
    };
    EXPECT_EQ(refused(Format::kTable, "x\n"), "7              1.00     - -      0x6012 KINE_ERR_WOBJ\n");
    EXPECT_EQ(refused(Format::kCsv, "x\n"), "7,1,,,0x6012\n");
    EXPECT_EQ(refused(Format::kJson, "one\ntwo\xA3\xBA\x1b\n"),
              "{\"target\":\"7\",\"n\":1,\"i\":null,\"word\":null,\"result\":\"0x6012\",\"error\":\"KINE_ERR_"
              "WOBJ\","
              "\"lines\":[\"one\",\"two\xEF\xBC\x9A\\u001b\"]}\n");
    EXPECT_TRUE(refused(Format::kJson, "").ends_with(",\"lines\":[]}\n"));
    EXPECT_TRUE(refused(Format::kJson, "no end").ends_with(",\"lines\":[\"no end\"]}\n"));
}

TEST(RowWriter, hostile_names_stay_in_their_place)
{
    const std::string name = "a,b;\"c\"\t\n\x1b[2J\xFF";
    EXPECT_EQ(Row(Format::kTable, name, 0, 0, name),
              "a,b;\"c\"???[2J?     0.00     0 a,b;\"c\"???[2J? 0x0000\n");
    EXPECT_EQ(Row(Format::kCsv, name, 0, 0, name), "abc[2J\xFF,0,0,abc[2J\xFF,0x0000\n");
    const std::string json = Row(Format::kJson, name, 0, 0, name);
    EXPECT_EQ(nlohmann::json::parse(json)["target"], "a,b;\"c\"\t\n\x1b[2J?");
    EXPECT_EQ(std::count(json.begin(), json.end(), '\n'), 1);
}

TEST(RowWriter, a_name_never_makes_a_row_a_comment)
{
    EXPECT_EQ(Row(Format::kCsv, "#1", 0, 0, "#"), "1,0,0,#,0x0000\n");
    EXPECT_EQ(Row(Format::kCsv, "\x01 ,;#\"#x#", 0, 0, ""), "x#,0,0,,0x0000\n");
    EXPECT_EQ(Row(Format::kCsv, "##", 0, 0, ""), ",0,0,,0x0000\n");
}

TEST(RowWriter, what_JSON_has_no_number_for_is_null)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double value : {kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_TRUE(nlohmann::json::parse(Row(Format::kJson, "", value, 0, ""))["n"].is_null());
    EXPECT_EQ(Row(Format::kCsv, "", kInfinity, 0, ""), ",inf,0,,0x0000\n");
}

TEST(RowWriter, integers_reach_their_ends)
{
    constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(Row(Format::kCsv, "", 0, kLowest, ""), ",0,-9223372036854775808,,0x0000\n");
    EXPECT_EQ(Row(Format::kTable, "", 0, kLowest, ""),
              "               0.00 -9223372036854775808        0x0000\n");
}

TEST(RowWriter, wide_characters_count_once_in_a_table)
{
    EXPECT_EQ(Row(Format::kTable, "\xC3\xA9t\xC3\xA9", 0, 0, ""),
              "\xC3\xA9t\xC3\xA9            0.00     0        0x0000\n");
}

TEST(RowWriter, what_is_written_as_CSV_reads_back_to_10_decimals)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> values(-1e4, 1e4);
    std::uniform_int_distribution<std::int32_t> integers(std::numeric_limits<std::int32_t>::min());
    RowWriter writer(Format::kCsv, kWithExternal, PoseColumns(kWithExternal));
    RowParser parser(Shape::kPoses, kWithExternal, "f.csv");
    std::string header = writer.Header();
    header.pop_back();
    ASSERT_TRUE(parser.TakeHeader(header, 1));
    for (int i = 0; i < 1000; ++i) {
        KinePose pose{};
        for (double* value : {&pose.Frame.X, &pose.Frame.Y, &pose.Frame.Z, &pose.Frame.A, &pose.Frame.B,
                              &pose.Frame.C, &pose.ExtAxis[0], &pose.ExtAxis[1]})
            *value = values(random);
        for (std::int32_t* value : {&pose.Cfg1, &pose.Cfg2, &pose.Cfg3, &pose.Cfg4})
            *value = integers(random);
        writer.Written().clear();
        writer.Begin("p");
        writer.Pose(pose);
        writer.End();
        Target target;
        parser.Parse(std::string_view(writer.Written()).substr(0, writer.Written().size() - 1), 2, target);
        EXPECT_EQ(target.name, "p");
        EXPECT_NEAR(target.pose.Frame.X, pose.Frame.X, 0.52e-10);
        EXPECT_NEAR(target.pose.Frame.C, pose.Frame.C, 0.52e-10);
        EXPECT_EQ(target.pose.Cfg1, pose.Cfg1);
        EXPECT_EQ(target.pose.Cfg4, pose.Cfg4);
        EXPECT_NEAR(target.pose.ExtAxis[1], pose.ExtAxis[1], 0.52e-10);
    }
}

TEST(RowWriter, an_open_configuration_has_no_integers)
{
    for (const auto& [format, row] :
         {std::pair(Format::kCsv, "p,1,2,3,4,5,6,,,,,0x0000\n"),
          {Format::kJson,
           "{\"target\":\"p\",\"x_mm\":1,\"y_mm\":2,\"z_mm\":3,\"a_deg\":4,\"b_deg\":5,\"c_deg\":6,"
           "\"cfg1\":null,\"cfg2\":null,\"cfg3\":null,\"cfg4\":null,\"result\":\"0x0000\"}\n"}}) {
        RowWriter writer(format, {6, 0}, PoseColumns({6, 0}));
        writer.Begin("p");
        writer.Pose({{1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, 0, 0, 0, 0, {}}, false);
        writer.End();
        EXPECT_EQ(writer.Written(), row);
    }
}

TEST(RowWriter, columns_are_those_that_the_parser_knows)
{
    for (const auto& [shape, columns] : {std::pair(Shape::kJoints, JointColumns(kWithExternal)),
                                         {Shape::kPoses, PoseColumns(kWithExternal)}}) {
        std::string header = RowWriter(Format::kCsv, kWithExternal, columns).Header();
        header.pop_back();
        EXPECT_TRUE(RowParser(shape, kWithExternal, "f.csv").TakeHeader(header, 1));
    }
    EXPECT_EQ(RowWriter(Format::kCsv, {4, 0}, JointColumns({4, 0})).Header(),
              "target,q1_deg,q2_deg,q3_deg,q4_deg,result\n");
}

}  // namespace
}  // namespace kine_cli
