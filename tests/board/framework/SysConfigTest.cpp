#include "board/framework/boardIdentity.h"
#include "doubles.h"
#include "platform/sysConfig.h"
#include "support/files.h"
#include "support/matchers.h"

namespace {

using namespace test;

class SysConfigTest : public testing::Test {
protected:
    SysConfigTest() { framework::setSoftwareVersionFile(file); }
    ~SysConfigTest() override { framework::setSoftwareVersionFile({}); }

    /// The version, or "failed" when the buffer was left alone.
    static std::string version() {
        const zuOMTable table;
        char buffer[300] = "before";
        const int result = sysConfigOMApi::sysConfigGetSwVersion(buffer);
        if (result == 0) {
            return buffer;
        }
        EXPECT_STREQ(buffer, "before");
        return "failed";
    }

    std::string versionOf(const std::string& content) {
        writeFile(file, content);
        return version();
    }

    TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "version";
    CapturedLog log;
};

}  // namespace

TEST_F(SysConfigTest, TellsTheFirstLineOfTheFileAsItIsNow) {
    EXPECT_EQ(versionOf("R7.4.1-b12\n"), "R7.4.1-b12");
    EXPECT_EQ(versionOf("  R7.4.2 beta \r\nanother line\n"), "R7.4.2 beta");
    EXPECT_EQ(versionOf("without a line end"), "without a line end");
    EXPECT_EQ(versionOf(std::string(299, 'v')), std::string(299, 'v'));
    EXPECT_THAT(log.entries(), IsEmpty());
}

TEST_F(SysConfigTest, FailsWithAWarningWhenTheFileHasNoUsableLine) {
    EXPECT_EQ(version(), "failed");
    EXPECT_THAT(
        log.entries(),
        ElementsAre(Pair(LogImpl::levelWarning,
                         "the version of the system software is not known: " + file.string() +
                             " does not begin with a line of 1 to 299 characters")));
    for (const std::string& content : {std::string(), std::string("\nR7"), std::string(" \t\n"),
                                       std::string(300, 'v'), std::string("R\x1b[7")}) {
        EXPECT_EQ(versionOf(content), "failed") << content;
    }
    EXPECT_EQ(log.entries().size(), 6u);
}

TEST_F(SysConfigTest, FailsQuietlyWhenNoFileIsNamed) {
    framework::setSoftwareVersionFile({});
    EXPECT_EQ(version(), "failed");
    EXPECT_THAT(log.entries(),
                ElementsAre(Pair(LogImpl::levelDebug,
                                 "no file with the version of the system software is named")));
    EXPECT_NE(sysConfigOMApi::sysConfigGetSwVersion(nullptr), 0);
}
