// The digest is that of the published algorithm and changes with every bit of what it is taken of.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string_view>

#include "digest/tally.h"
#include "support/seeded_random.h"

using namespace kine::test;

namespace {

std::uint64_t DigestOf(std::string_view text)
{
    Digest digest;
    digest.Add(text.data(), text.size());
    return digest.Value();
}

// The results of every export, at random.
using AllResults = std::array<CallResults, kExportCount>;

AllResults SomeResults()
{
    SeededRandom random(7002);
    AllResults all{};
    for (CallResults& results : all) results = random.AnyBits<CallResults>();
    return all;
}

Tally TallyOf(const AllResults& all)
{
    Tally tally;
    for (std::size_t i = 0; i < all.size(); ++i) tally.Add(i, all[i]);
    return tally;
}

}  // namespace

// The offset basis, and two of the test vectors that the authors of FNV publish.
TEST(Digest, is_fnv_1a)
{
    EXPECT_EQ(DigestOf(""), 0xCBF29CE484222325U);
    EXPECT_EQ(DigestOf("a"), 0xAF63DC4C8601EC8CU);
    EXPECT_EQ(DigestOf("foobar"), 0x85944171F73967E8U);
}

TEST(Digest, of_parts_is_that_of_the_whole)
{
    Digest digest;
    digest.Add("foo", 3);
    digest.Add("bar", 3);
    EXPECT_EQ(digest.Value(), DigestOf("foobar"));
}

// One bit of every byte, another one in every byte.
TEST(Tally, one_bit_of_the_results_of_a_call_changes_the_digests_of_its_export_and_of_all_only)
{
    const AllResults all = SomeResults();
    const Tally tally = TallyOf(all);
    const std::size_t middle = ExportCalled("Kine_WobjPosToJoint");
    for (const std::size_t changed : {std::size_t{0}, middle, kExportCount - 1}) {
        for (std::size_t bit = 0; bit < 8 * sizeof(CallResults); bit += 9) {
            AllResults others = all;
            auto* bytes = reinterpret_cast<unsigned char*>(&others[changed]);
            bytes[bit / 8] = static_cast<unsigned char>(bytes[bit / 8] ^ (1U << bit % 8));
            const Tally other = TallyOf({others});
            ASSERT_NE(other.Total(), tally.Total()) << kExportCalls[changed].name << " bit " << bit;
            for (std::size_t i = 0; i < kExportCount; ++i) {
                ASSERT_EQ(other.Of(i).digest.Value() == tally.Of(i).digest.Value(), i != changed);
            }
        }
    }
}

TEST(Tally, results_that_change_places_change_the_digest)
{
    AllResults all = SomeResults();
    const std::uint64_t before = TallyOf(all).Total();
    std::swap(all[3], all[4]);
    EXPECT_NE(TallyOf(all).Total(), before);
}

TEST(Tally, calls_and_successes_are_counted)
{
    CallResults good{};
    CallResults bad{};
    bad.code = KINE_ERR_POSE;
    Tally tally;
    tally.Add(2, good);
    tally.Add(2, bad);
    tally.Add(5, bad);
    EXPECT_EQ(tally.Calls(), 3U);
    EXPECT_EQ(tally.Of(2).calls, 2U);
    EXPECT_EQ(tally.Of(2).successes, 1U);
    EXPECT_EQ(tally.Of(5).successes, 0U);
    EXPECT_EQ(tally.Codes(), 2U);
}

TEST(Tally, lines_count_in_any_order_but_not_in_any_wording)
{
    const auto totalWith = [](const std::vector<std::string>& lines) {
        Tally tally;
        tally.AddLines(lines);
        return tally.Total();
    };
    EXPECT_EQ(totalWith({"one\n", "two\n"}), totalWith({"two\n", "one\n"}));
    EXPECT_NE(totalWith({"one\n", "two\n"}), totalWith({"one\n", "twp\n"}));
    EXPECT_NE(totalWith({"one\n", "one\n"}), totalWith({"one\n"}));
    EXPECT_NE(totalWith({}), totalWith({""}));
}
