#include "mngctl/prompt/splitLine.h"
#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Words, AreSeparatedByBlanks) {
    EXPECT_THAT(splitWords(""), IsEmpty());
    EXPECT_THAT(splitWords(" \t\r\n"), IsEmpty());
    EXPECT_THAT(splitWords("  dns\tset  192.0.2.1 "), ElementsAre("dns", "set", "192.0.2.1"));
}

TEST(Words, AreQuotedAsInAShell) {
    EXPECT_THAT(splitWords(R"('a b' "c d" e\ f)"), ElementsAre("a b", "c d", "e f"));
    EXPECT_THAT(splitWords(R"('{"mode":1}')"), ElementsAre(R"({"mode":1})"));
    EXPECT_THAT(splitWords(R"("a \"b\" \\ \n")"), ElementsAre(R"(a "b" \ \n)"));
    EXPECT_THAT(splitWords(R"('a\b' \'x\')"), ElementsAre(R"(a\b)", "'x'"));
    EXPECT_THAT(splitWords(R"(a''b"c"'d')"), ElementsAre("abcd"));
    EXPECT_THAT(splitWords(R"('' "")"), ElementsAre("", ""));
}

TEST(Words, EndAtAComment) {
    EXPECT_THAT(splitWords("dns show # both"), ElementsAre("dns", "show"));
    EXPECT_THAT(splitWords("# nothing"), IsEmpty());
    EXPECT_THAT(splitWords("a#b '#c' \\#d"), ElementsAre("a#b", "#c", "#d"));
}

TEST(Words, NeedTheEndOfAQuote) {
    for (const std::string open : {"a 'b", "a \"b", "a \"b\\\"", "a\\"}) {
        EXPECT_THAT(refusalOf([&] { splitWords(open); }),
                    testing::StartsWith("the line ends after an open "))
            << open;
    }
}

TEST(Words, TellWhatStandsAtTheEnd) {
    const SplitLine inWord = splitLine("dns se");
    EXPECT_THAT(inWord.words, ElementsAre("dns"));
    EXPECT_EQ(inWord.last, "se");
    EXPECT_TRUE(inWord.inWord);
    const SplitLine between = splitLine("dns ");
    EXPECT_THAT(between.words, ElementsAre("dns"));
    EXPECT_EQ(between.last, "");
    EXPECT_FALSE(between.inWord);
    EXPECT_EQ(splitLine("dns 'se").openQuote, '\'');
}

}  // namespace
}  // namespace mngctl::test
