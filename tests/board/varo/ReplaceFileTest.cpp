#include "board/support/wholeFile.h"
#include "support/files.h"
#include "support/matchers.h"
#include "support/privateNamespaces.h"
#include "tests/board/varo/storage.h"

#include <sched.h>
#include <sys/stat.h>

#include <system_error>

namespace {

using namespace varotest;

/// As files of the machine are replaced, which a container engine may have mounted.
void replaceFile(const std::filesystem::path& file, std::string_view content) {
    support::replaceFile(file, content, support::Irreplaceable::writeInPlace);
}

class ReplaceFile : public testing::Test {
protected:
    TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "resolv.conf";

    static struct stat statusOf(const std::filesystem::path& path) {
        struct stat status{};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status;
    }
};

TEST_F(ReplaceFile, MakesAFileThatEverybodyMayRead) {
    const mode_t mask = ::umask(077);
    replaceFile(file, "content\n");
    ::umask(mask);
    EXPECT_EQ(readFile(file), "content\n");
    EXPECT_EQ(statusOf(file).st_mode & 07777, 0644U);
    EXPECT_THAT(filesIn(directory.path()), ElementsAre("resolv.conf"));
}

TEST_F(ReplaceFile, PutsANewFileInThePlaceOfTheOldOne) {
    writeFile(file, "a much longer old content\n");
    std::filesystem::create_hard_link(file, directory.path() / "old");
    replaceFile(file, "new\n");
    EXPECT_EQ(readFile(file), "new\n");
    // Who had the old one open still reads all of it.
    EXPECT_EQ(readFile(directory.path() / "old"), "a much longer old content\n");
}

TEST_F(ReplaceFile, WritesNothingWhenNothingChanges) {
    writeFile(file, "content\n");
    const struct stat before = statusOf(file);
    replaceFile(file, "content\n");
    const struct stat after = statusOf(file);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
}

TEST_F(ReplaceFile, UsesWhatAnInterruptedCallHasLeft) {
    writeFile(file.string() + ".new", "half of a content that was longer than this one");
    replaceFile(file, "content\n");
    EXPECT_EQ(readFile(file), "content\n");
    EXPECT_THAT(filesIn(directory.path()), ElementsAre("resolv.conf"));
}

TEST_F(ReplaceFile, FollowsASymbolicLink) {
    const auto target = directory.path() / "target";
    writeFile(target, "old\n");
    std::filesystem::create_symlink("target", file);
    replaceFile(file, "new\n");
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_EQ(readFile(target), "new\n");
}

TEST_F(ReplaceFile, DoesNotFollowALinkInThePlaceOfItsNewFile) {
    const auto victim = directory.path() / "victim";
    writeFile(victim, "precious\n");
    std::filesystem::create_symlink(victim, file.string() + ".new");
    EXPECT_THROW(replaceFile(file, "content\n"), std::system_error);
    EXPECT_EQ(readFile(victim), "precious\n");
}

TEST_F(ReplaceFile, SaysWhatItCouldNotDo) {
    const auto missing = directory.path() / "missing" / "resolv.conf";
    try {
        replaceFile(missing, "content\n");
        ADD_FAILURE() << "it was written";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.what(),
                  "cannot create " + missing.string() + ".new: No such file or directory");
    }
}

TEST_F(ReplaceFile, WritesInPlaceWhereSomethingIsMountedOnTheFile) {
    const auto source = directory.path() / "source";
    writeFile(source, "a much longer old content\n");
    writeFile(file, "covered\n");
    EXPECT_EQ(inOwnNamespaces(CLONE_NEWNS,
                              [&] {
                                  bindMount(source, file);
                                  replaceFile(file, "new\n");
                                  return readFile(file);
                              }),
              "new\n");
    EXPECT_EQ(readFile(source), "new\n");
    EXPECT_EQ(readFile(file), "covered\n");
    EXPECT_THAT(filesIn(directory.path()), ElementsAre("resolv.conf", "source"));
}

TEST_F(ReplaceFile, WritesInPlaceInAReadOnlyDirectory) {
    const auto source = directory.path() / "source";
    const auto etc = directory.path() / "etc";
    writeFile(source, "old\n");
    std::filesystem::create_directory(etc);
    EXPECT_EQ(inOwnNamespaces(CLONE_NEWNS,
                              [&] {
                                  mountTmpfs(etc, 65536);
                                  writeFile(etc / "resolv.conf", "covered\n");
                                  remountReadOnly(etc);
                                  bindMount(source, etc / "resolv.conf");
                                  replaceFile(etc / "resolv.conf", "new\n");
                                  return readFile(etc / "resolv.conf");
                              }),
              "new\n");
}

TEST_F(ReplaceFile, DoesNotWriteInPlaceUnlessThatIsAskedFor) {
    const auto source = directory.path() / "source";
    writeFile(source, "old\n");
    writeFile(file, "covered\n");
    const std::string result = inOwnNamespaces(CLONE_NEWNS, [&]() -> std::string {
        bindMount(source, file);
        try {
            support::replaceFile(file, "new\n");
            return "it was written";
        } catch (const std::system_error& error) {
            return error.what();
        }
    });
    EXPECT_EQ(result, "cannot replace " + file.string() + ": Device or resource busy");
    EXPECT_EQ(readFile(source), "old\n");
    EXPECT_THAT(filesIn(directory.path()), ElementsAre("resolv.conf", "source"));
}

TEST_F(ReplaceFile, LeavesTheOldFileWhenTheDiskIsFull) {
    const auto disk = directory.path() / "disk";
    std::filesystem::create_directory(disk);
    const std::string result = inOwnNamespaces(CLONE_NEWNS, [&]() -> std::string {
        mountTmpfs(disk, 65536);
        writeFile(disk / "resolv.conf", "old\n");
        try {
            replaceFile(disk / "resolv.conf", std::string(100000, 'x'));
            return "it was written";
        } catch (const std::system_error& error) {
            return error.code().message() + "; " + readFile(disk / "resolv.conf") +
                   std::to_string(filesIn(disk).size());
        }
    });
    EXPECT_EQ(result, "No space left on device; old\n1");
}

}  // namespace
