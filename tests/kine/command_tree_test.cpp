// The command line as data, and bash at work on a program with commands inside commands, which it may grow
// any day.
#include "help/command_tree.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>

#include "help/completion.h"
#include "help/man_page.h"

namespace kine_cli {
namespace {

struct Sample
{
    CLI::App app{"About it all.", "kine"};
    std::string text;
    std::vector<std::string> texts;
    bool flag = false;

    Sample()
    {
        CLI::App& calib = *app.add_subcommand("calib", "Frames from points");
        calib.require_subcommand(1);
        CLI::App& tool = *calib.add_subcommand("tool", "A tool");
        tool.add_option("CELL", text, "Cell")->required();
        tool.add_option("METHOD", text, "Method")->required()->check(CLI::IsMember({"3p", "5p"}));
        tool.add_option("POINTS", texts, "Points");
        tool.add_option("-p,--plot", text, "Picture: [of residuals] it's")->type_name("FILE");
        tool.add_option("--secret", text, "Not shown")->group("");
        CLI::Option_group& group = *tool.add_option_group("kind");
        group.add_option("--kind", text, "Kind")->check(CLI::IsMember({"held", "fixed"}));
        CLI::App& wobj = *calib.add_subcommand("wobj", "A work object");
        wobj.add_flag("-v,--vision", flag, "With a camera");
        wobj.footer("A paragraph that begins.\n.dot\n\nExamples:\n  kine calib wobj 'a' \\b");
    }
};

const CommandInfo& Tool(const CommandInfo& program) { return program.commands.at(0).commands.at(0); }

TEST(CommandTree, names_its_commands_with_their_path)
{
    const CommandInfo program = DescribeProgram(Sample().app);
    EXPECT_EQ(program.path, "kine");
    EXPECT_EQ(program.about, "About it all.");
    ASSERT_EQ(program.commands.size(), 1U);
    ASSERT_EQ(program.commands[0].commands.size(), 2U);
    EXPECT_EQ(Tool(program).path, "kine calib tool");
    EXPECT_EQ(Tool(program).name, "tool");
    std::string paths;
    ForEachCommand(program, [&](const CommandInfo& command) { paths += command.path + ";"; });
    EXPECT_EQ(paths, "kine;kine calib;kine calib tool;kine calib wobj;");
}

TEST(CommandTree, keeps_the_order_of_positionals_and_what_they_take)
{
    const CommandInfo program = DescribeProgram(Sample().app);
    const CommandInfo& tool = Tool(program);
    ASSERT_EQ(tool.positionals.size(), 3U);
    EXPECT_EQ(tool.positionals[0].completes, Completes::kCells);
    EXPECT_EQ(tool.positionals[1].completes, Completes::kWords);
    EXPECT_EQ(tool.positionals[1].words, (std::vector<std::string>{"3p", "5p"}));
    EXPECT_EQ(tool.positionals[2].completes, Completes::kNothing);
    EXPECT_TRUE(tool.positionals[2].isRepeated);
    EXPECT_FALSE(tool.positionals[2].isRequired);
    EXPECT_EQ(UsageOf(tool), "[OPTIONS] CELL METHOD [POINTS...]");
    EXPECT_EQ(UsageOf(program), "COMMAND");
}

TEST(CommandTree, takes_options_of_groups_and_leaves_hidden_ones_out)
{
    const CommandInfo program = DescribeProgram(Sample().app);
    std::string names;
    for (const ArgumentInfo& option : Tool(program).options) {
        for (const std::string& name : option.names) names += name + " ";
    }
    EXPECT_EQ(names, "-h --help -p --plot --kind ");
    const ArgumentInfo& plot = Tool(program).options.at(1);
    EXPECT_EQ(plot.value, "FILE");
    EXPECT_EQ(plot.completes, Completes::kFiles);
    EXPECT_TRUE(Tool(program).options.at(0).IsFlag());
}

// What bash offers for the last of the words, parted by blanks.
bool BashOffers(const std::string& words, const std::string& expected)
{
    const std::string script = BashCompletion(DescribeProgram(Sample().app)) + "COMP_WORDS=(kine " + words +
                               "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _kine\n"
                               "[[ \"${COMPREPLY[*]}\" == '" +
                               expected + "' ]] || { echo \"${COMPREPLY[*]}\" >&2; exit 1; }\n";
    // NOLINTNEXTLINE(cert-env33-c): the shell is what is tested
    std::FILE* bash = popen("bash -s", "w");
    if (!bash) return false;
    std::fputs(script.c_str(), bash);
    const int status = pclose(bash);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(BashCompletion, walks_into_commands_inside_commands)
{
    EXPECT_TRUE(BashOffers("''", "calib"));
    EXPECT_TRUE(BashOffers("calib ''", "tool wobj"));
    EXPECT_TRUE(BashOffers("calib w", "wobj"));
    EXPECT_TRUE(BashOffers("calib tool -", "-h --help -p --plot --kind"));
    EXPECT_TRUE(BashOffers("calib tool --kind ''", "held fixed"));
    EXPECT_TRUE(BashOffers("calib tool -p wobj cell.json ''", "3p 5p"));
    EXPECT_TRUE(BashOffers("calib tool cell.json 3p wobj ''", ""));
    EXPECT_TRUE(BashOffers("calib wobj -", "-h --help -v --vision"));
}

TEST(ZshCompletion, escapes_what_parts_its_fields)
{
    const std::string script = ZshCompletion(DescribeProgram(Sample().app));
    EXPECT_NE(script.find("'(-p --plot)-p+[Picture\\: \\[of residuals\\] it'\\''s]:FILE:_files'"),
              std::string::npos);
    EXPECT_NE(script.find("\n_kine_calib_tool() {"), std::string::npos);
    EXPECT_NE(script.find("        tool) _kine_calib_tool ;;"), std::string::npos);
}

TEST(FishCompletion, asks_for_every_command_on_the_way)
{
    const std::string script = FishCompletion(DescribeProgram(Sample().app));
    EXPECT_NE(script.find("complete -c kine -n '__fish_seen_subcommand_from calib; and "
                          "__fish_seen_subcommand_from tool' -s p -l plot -r -F -d 'Picture: [of residuals] "
                          "it\\'s'\n"),
              std::string::npos);
    EXPECT_NE(script.find("complete -c kine -n '__fish_seen_subcommand_from calib; and not "
                          "__fish_seen_subcommand_from tool wobj' -a wobj -d 'A work object'\n"),
              std::string::npos);
}

TEST(ManPage, keeps_text_from_being_taken_for_macros)
{
    const std::string page = ManPage(DescribeProgram(Sample().app), "kine 1.2.3", "2026-01-02");
    EXPECT_TRUE(page.starts_with(".TH KINE 1 2026-01-02 \"kine 1.2.3\" \"User Commands\"\n"));
    EXPECT_NE(page.find("\n.SS kine calib wobj\n"), std::string::npos);
    EXPECT_NE(page.find(".PP\nA paragraph that begins.\n\\&.dot\n.PP\nExamples:\n.PP\n.RS 4\n.nf\n"
                        "kine calib wobj \\(aqa\\(aq \\eb\n.fi\n.RE\n"),
              std::string::npos);
}

}  // namespace
}  // namespace kine_cli
