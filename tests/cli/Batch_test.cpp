// Batch mode against single runs: every line's result is what the same options give alone, in
// the order of the lines, and a bad line gives a result of its own that leaves the rest alone.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Batch.h"
#include "cli/Cli.h"

namespace nerivane::cli {
namespace {

nlohmann::json SingleRun(std::vector<std::string> args) {
    args.insert(args.begin(), "nerivane-cli");
    args.insert(args.end(), {"--json", "-"});
    std::ostringstream out, err;
    EXPECT_EQ(RunCli(args, out, err), 0) << err.str();
    return nlohmann::json::parse(out.str());
}

std::vector<nlohmann::json> BatchResults(const std::string& input, int expectedStatus = 0) {
    std::istringstream in(input);
    std::ostringstream out, err;
    EXPECT_EQ(RunCli({"nerivane-cli", "--batch"}, in, out, err), expectedStatus) << err.str();
    std::vector<nlohmann::json> results;
    std::istringstream lines(out.str());
    for (std::string line; std::getline(lines, line);)
        results.push_back(nlohmann::json::parse(line));
    return results;
}

TEST(Batch, EachLineGivesWhatItGivesAloneInOrderAndBadLinesGiveTheirError) {
    const std::string plot = ::testing::TempDir() + "nerivane batch plot.png";
    std::filesystem::remove(plot);
    struct Line {
        std::string text;
        std::vector<std::string> alone;  // the same design as options; empty for a bad line
        std::string error = {};          // what a bad line's message says
    };
    const std::vector<Line> lines = {
        {R"({"poles": 6, "f0": "2k", "topology": "mfb-lpf", "c1": ["10n", 2.2e-8]})",
         {"--poles", "6", "--f0", "2k", "--topology", "mfb-lpf", "--c1", "10n,2.2e-08"}},
        {"--poles 3 --topology bogus", {}, "--topology"},
        {"", {}},
        {"# a comment", {}},
        {"--response chebyshev --poles 5 --ripple 0.5 --mode worst --runs 5",
         {"--response", "chebyshev", "--poles", "5", "--ripple", "0.5", "--mode", "worst", "--runs",
          "5"}},
        {R"({"poles": 4, "strict": true, "c1": "1"})", {}, "--strict"},
        {"{not json", {}, "not JSON"},
        {R"(["poles", 4])", {}, "object"},
        {"--poles 2 --csv -", {}, "--csv"},
        {"--report", {}, "--report"},
        {"--batch", {}, "--batch"},
        {"--f0 '5 k", {}, "quote"},
        {"--poles 25 --plot '" + plot + "'", {"--poles", "25"}},
        {R"({"poles": 6, "f0": "2k", "topology": "mfb-lpf", "c1": ["10n", 2.2e-8]})",
         {"--poles", "6", "--f0", "2k", "--topology", "mfb-lpf", "--c1", "10n,2.2e-08"}},
    };
    std::string input;
    for (const Line& line : lines) input += line.text + "\n";
    // Enough lines that the workers finish out of order.
    for (int i = 0; i < 3; ++i) input += input;
    const std::vector<nlohmann::json> results = BatchResults(input);

    std::size_t next = 0;
    for (int copy = 0; copy < 8; ++copy) {
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const Line& line = lines[i];
            if (line.alone.empty() && line.error.empty()) continue;  // blank or comment
            ASSERT_LT(next, results.size());
            const nlohmann::json& result = results[next++];
            const int number = copy * static_cast<int>(lines.size()) + static_cast<int>(i) + 1;
            SCOPED_TRACE(line.text);
            EXPECT_EQ(result["line"], number);
            if (line.alone.empty()) {
                EXPECT_EQ(result["exit_status"], 2);
                EXPECT_NE(result["error"].get<std::string>().find(line.error), std::string::npos)
                    << result["error"];
                continue;
            }
            nlohmann::json expected = SingleRun(line.alone);
            expected["line"] = number;
            EXPECT_EQ(result, expected);
        }
    }
    EXPECT_EQ(next, results.size());
    EXPECT_TRUE(std::filesystem::exists(plot));
    std::filesystem::remove(plot);
}

TEST(Batch, LinesSplitAsAShellSplitsWords) {
    EXPECT_EQ(BatchLineArguments(R"(  --f0 5k "a \"b\" c" 'd\e' f\ g  )"),
              (std::vector<std::string>{"--f0", "5k", R"(a "b" c)", R"(d\e)", "f g"}));
    EXPECT_EQ(BatchLineArguments(R"({"--poles": 3, "gain-db": -6.5, "report": false, "x": null})"),
              (std::vector<std::string>{"--poles", "3", "--gain-db", "-6.5"}));
    EXPECT_FALSE(BatchLineArguments("   \r"));
    EXPECT_THROW(BatchLineArguments(R"({"c1": [[1]]})"), std::invalid_argument);
    // Options beside --batch would be lost on every line: refused.
    std::istringstream in("--poles 2\n");
    std::ostringstream out, err;
    EXPECT_EQ(RunCli({"nerivane-cli", "--batch", "--poles", "4"}, in, out, err), 2);
    EXPECT_TRUE(out.str().empty());
}

}  // namespace
}  // namespace nerivane::cli
