#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Version, IsShown) {
    CannedBoard board;
    EXPECT_EQ(board.run("version show"), done("product: MSAN 4.2.17\n"
                                              "built in: n/a\n"
                                              "built at: 2024-02-29\n"
                                              "product after an upgrade: " +
                                              std::string(100, 'x') +
                                              "\n"
                                              "package release: 17\\xe9\\x1b[31m\n"
                                              "operating system: DORN medium 2.6\n"
                                              "file system: 2.6.3\n"
                                              "boot loader: n/a\n"
                                              "recovery file system: recovery-FS-1.8-2.noarch\n"
                                              "platform: VANTORIX MSAN\n"
                                              "platform release: 2.6-3\n"));
    EXPECT_THAT(board.requests(), ElementsAre("get_sw_data", "get_package_data"));
}

TEST(Version, IsNullInJsonWhereTheBoardDoesNotKnowIt) {
    const std::string output = CannedBoard().run("version show --json", Protocol::Udp).out;
    EXPECT_THAT(output, HasSubstr("\"product\": \"MSAN 4.2.17\",\n  \"buildDirectory\": null,"));
    EXPECT_THAT(output, HasSubstr("\"bootLoader\": null,"));
    EXPECT_THAT(output, HasSubstr("\"platform\": \"VANTORIX MSAN\","));
}

TEST(Version, ListsComponents) {
    CannedBoard board;
    EXPECT_EQ(board.run("version components"), done("application:\n"
                                                    "  olt_manager = 4.2-17\n"
                                                    "  web_em = 4.2-5\n"
                                                    "platform:\n"
                                                    "  kernel = 5.10\n"));
    EXPECT_THAT(board.requests(), ElementsAre("get_sw_comp_apl_data 0", "get_sw_comp_apl_data 1",
                                              "get_sw_comp_apl_data 2", "get_sw_comp_plat_data 0",
                                              "get_sw_comp_plat_data 1"));
    EXPECT_EQ(CannedBoard().run("version components --json"), done(laidOut(R"({
              "application": ["olt_manager = 4.2-17", "web_em = 4.2-5"],
              "platform": ["kernel = 5.10"]})")));
}

TEST(Version, SaysWhenNoComponentIsKnown) {
    EXPECT_EQ(CannedBoard({"--components", "none"}).run("version components"),
              done("application: none known\nplatform: none known\n"));
}

TEST(Version, GivesUpAListThatDoesNotEnd) {
    EXPECT_EQ(CannedBoard({"--components", "endless"}).run("version components"),
              noAnswer("the board's list of components does not end"));
}

}  // namespace
}  // namespace mngctl::test
