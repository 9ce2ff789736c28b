// Software inventory: version texts and package data. Tool programs are played by what they leave
// in their output file. Some of the operations are reached past their access (-fno-access-control,
// for this file).

#include "fake/quoted.h"
#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"
#include "network/fixedFiles.h"

#include <limits>
#include <string>

namespace {

using testing::ElementsAre;

// Command lines, to the letter.
const std::string productVersion = "/opt/kalvor/neroot/active/bin/show-product-version";
const std::string buildDirectory = "/opt/kalvor/neroot/active/bin/show-build-dir";
const std::string buildTime = "/opt/kalvor/neroot/active/bin/show-build-time";
const std::string upgradeVersion =
    "/upgrade_root/opt/kalvor/neroot/current/bin/show-product-version";
const std::string packageVersion = "/opt/vantorix/bin/show_package_act";
const std::string packageRelease =
    "rpm -qf $(readlink -f /opt/kalvor/neroot/active/) --queryformat '%{release}\n'";
const std::string packageReleaseByName =
    "rpm -qa |grep  $(readlink /opt/kalvor/neroot/active) |xargs rpm -q --queryformat "
    "'%{release}\n'";
const std::string osRelease = "cat /etc/*release | grep -v '=' | head -n 1";
const std::string osDescription =
    "cat /etc/*release | grep 'DISTRIB_DESCRIPTION' | sed 's/DISTRIB_DESCRIPTION=//' | sed "
    "'s/\"//g'";
const std::string bootLoader =
    "strings /dev/`grep 'U-boot Bin' /proc/mtd|awk -F ':' '{print $1}'`|head -n 5|grep -i boot";
const std::string recovery = "rpm -qa | grep recovery-FS- ";

const std::string toOutput = " > /tmp/version.data.tmp";
const std::string removeOutput = "rm /tmp/version.data.tmp";
const std::string versionOfBuildStamp =
    "sed -n 's/echo Filesystem based on .*_FS-//p' /etc/zu_fs_version > /tmp/get_FS_version";
const std::string versionOfFile = "sed -n 's/FS_VERSION=//p' /etc/fs-version > /tmp/get_FS_version";

std::string ran(const std::string& command) { return "system(" + fake::quoted(command) + ") -> 0"; }

/// A pipeline is run.
Entries pipeline(const std::string& command) {
    return {ran(command + toOutput), ran(removeOutput)};
}
/// A tool program is looked for, and run.
Entries tool(const std::string& path) {
    return sequence("stat(\"" + path + "\") -> 0", pipeline(path));
}
std::string missing(const std::string& path) { return "stat(\"" + path + "\") -> not there"; }

class Inventory : public EntityTest {
protected:
    Inventory() {
        for (const std::string& command : {packageRelease, packageReleaseByName, osRelease,
                                           osDescription, bootLoader, recovery}) {
            says(command, "");
        }
        platform.programs.actions[removeOutput] = [this] { files.removeOutput(); };
        fileSystemSays(versionOfBuildStamp, "");
        fileSystemSays(versionOfFile, "");
    }

    /// The shell makes the output file even if the command prints nothing.
    void says(const std::string& command, const std::string& text) {
        platform.programs.actions[command + toOutput] = [this, text] { files.writeOutput(text); };
    }
    void install(const std::string& path, const std::string& text) {
        platform.programs.files.insert(path);
        says(path, text);
    }
    void fileSystemSays(const std::string& command, const std::string& text) {
        platform.programs.actions[command] = [this, text] { files.writeFileSystemVersion(text); };
    }

    int getSWData() {
        return networkGetSWData(texts[0].text, texts[1].text, texts[2].text, texts[3].text,
                                texts[4].text, texts[5].text, texts[6].text, texts[7].text,
                                texts[8].text);
    }
    std::vector<std::string> contents() const {
        std::vector<std::string> all;
        for (const Buffer<100>& text : texts) {
            EXPECT_TRUE(text.isIntactBehind());
            all.push_back(text.content());
        }
        return all;
    }
    std::string parse(const std::string& command, int mode) {
        Buffer<100> out;
        entity().parseSoftwareInfo(command, mode, out.text);
        EXPECT_TRUE(out.isIntactBehind());
        return out.content();
    }

    FixedFiles files;
    Buffer<100> texts[9];
};

// The nine texts.

TEST_F(Inventory, TextsAreReadInTheirOrder) {
    install(productVersion, "R7.3\n");
    install(buildDirectory, "/build/R7.3\n");
    install(buildTime, "Mon 3 Feb 2025\n");
    install(upgradeVersion, "R7.4\n");
    says(packageRelease, "12\n");
    says(osRelease, "Board Linux 3\n");
    fileSystemSays(versionOfFile, "1.2.3 extra\n");
    says(bootLoader, "U-Boot 2019.07\n");
    says(recovery, "recovery-FS-2.1-5\n");
    EXPECT_EQ(getSWData(), 0);
    EXPECT_THAT(contents(),
                ElementsAre("R7.3", "/build/R7.3", "Mon 3 Feb 2025", "R7.4", "12", "Board Linux 3",
                            "1.2.3", "U-Boot 2019.07", "recovery-FS-2.1-5"));
    EXPECT_JOURNAL(sharing(tool(productVersion), tool(buildDirectory), tool(buildTime),
                           tool(upgradeVersion), pipeline(packageRelease), pipeline(osRelease),
                           missing("/etc/zu_fs_version"), ran(versionOfFile), pipeline(bootLoader),
                           pipeline(recovery)));
    EXPECT_FALSE(files.areThere());
}

TEST_F(Inventory, WhatIsNotKnownIsNotAvailable) {
    EXPECT_EQ(getSWData(), 0);
    EXPECT_THAT(contents(), testing::Each("n/a"));
    EXPECT_JOURNAL(sharing(missing(productVersion), missing(buildDirectory), missing(buildTime),
                           missing(upgradeVersion), pipeline(packageRelease),
                           pipeline(packageReleaseByName), pipeline(osRelease),
                           pipeline(osDescription), missing("/etc/zu_fs_version"),
                           ran(versionOfFile), pipeline(bootLoader), pipeline(recovery)));
    EXPECT_FALSE(files.areThere());
}

TEST_F(Inventory, ToolsThatPrintNothingAreNotAvailable) {
    for (const std::string& path : {productVersion, buildDirectory, buildTime, upgradeVersion}) {
        install(path, "");
    }
    says(packageRelease, "\n");
    says(packageReleaseByName, "\nsecond line\n");
    EXPECT_EQ(getSWData(), 0);
    EXPECT_THAT(contents(), testing::Each("n/a"));
    journal();
}

TEST_F(Inventory, SecondCommandsAreAskedWhereTheFirstSayNothing) {
    says(packageReleaseByName, "13\n");
    says(osDescription, "Board Linux 4\n");
    EXPECT_EQ(getSWData(), 0);
    EXPECT_EQ(texts[4].content(), "13");
    EXPECT_EQ(texts[5].content(), "Board Linux 4");
    journal();
}

TEST_F(Inventory, StatusOfCommandsDoesNotMatter) {
    install(productVersion, "R7.3\n");
    platform.commandStatus[productVersion + toOutput] = 256;
    platform.commandStatus[removeOutput] = -1;
    EXPECT_EQ(getSWData(), 0);
    EXPECT_EQ(texts[0].content(), "R7.3");
    journal();
}

// Version of the file system.

TEST_F(Inventory, FileSystemVersionIsTheBuildStampsWhereThereIsOne) {
    platform.programs.files.insert("/etc/zu_fs_version");
    fileSystemSays(versionOfBuildStamp, "4.5.6\n");
    fileSystemSays(versionOfFile, "1.2.3\n");
    EXPECT_EQ(getSWData(), 0);
    EXPECT_EQ(texts[6].content(), "4.5.6");
    const auto entries = journal();
    EXPECT_THAT(entries, testing::IsSupersetOf({std::string(R"(stat("/etc/zu_fs_version") -> 0)"),
                                                ran(versionOfBuildStamp)}));
    EXPECT_THAT(entries, testing::Not(testing::Contains(ran(versionOfFile))));
}

TEST_F(Inventory, FileSystemVersionIsTheFirstWord) {
    const struct {
        std::string text;
        std::string version;
    } rows[] = {{"1.2.3 extra\n", "1.2.3"},
                {" \t\n\n 1.2.3\n4.5.6\n", "1.2.3"},
                {"1.2.3", "1.2.3"},
                {"   \n", "n/a"},
                {"", "n/a"},
                {std::string(99, 'v') + "\n", std::string(99, 'v')},
                {std::string(5000, 'v') + "\n", std::string(99, 'v')}};
    for (const auto& row : rows) {
        fileSystemSays(versionOfFile, row.text);
        EXPECT_EQ(getSWData(), 0);
        EXPECT_EQ(texts[6].content(), row.version);
        EXPECT_TRUE(texts[6].isIntactBehind());
        EXPECT_FALSE(files.areThere());
    }
    journal();
}

TEST_F(Inventory, FileSystemVersionWithoutItsFileIsNotAvailable) {
    platform.programs.actions.erase(versionOfFile);
    EXPECT_EQ(getSWData(), 0);
    EXPECT_EQ(texts[6].content(), "n/a");
    journal();
}

// One text.

TEST_F(Inventory, MissingProgramIsNotRun) {
    EXPECT_EQ(parse("show-build-dir", 1), "");
    EXPECT_JOURNAL(missing(buildDirectory));
}

TEST_F(Inventory, ModeNamesTheDirectory) {
    for (const auto& [mode, directory] : {std::pair{1, "/opt/kalvor/neroot/active/bin/"},
                                          {2, "/opt/vantorix/bin/"},
                                          {3, "/upgrade_root/opt/kalvor/neroot/current/bin/"}}) {
        const std::string path = std::string(directory) + "program";
        EXPECT_EQ(parse("program", mode), "");
        install(path, "text\n");
        EXPECT_EQ(parse("program", mode), "text");
        EXPECT_JOURNAL(missing(path), tool(path));
    }
}

TEST_F(Inventory, AnyOtherModeIsAPipeline) {
    says("echo", "text\n");
    for (const int mode : {0, 4, -1, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(parse("echo", mode), "text");
        EXPECT_JOURNAL(pipeline("echo"));
    }
}

TEST_F(Inventory, TextIsTheFirstLineOfAtMost99Characters) {
    const struct {
        std::string printed;
        std::string text;
    } rows[] = {{"line\n", "line"},
                {"line", "line"},
                {"first\nsecond\n", "first"},
                {"\nsecond\n", ""},
                {"carriage return\r\n", "carriage return\r"},
                {" blanks \n", " blanks "},
                {std::string("a\0b\n", 4), "a"},
                {std::string(98, 'x') + "\n", std::string(98, 'x')},
                {std::string(99, 'x') + "\n", std::string(99, 'x')},
                {std::string(100, 'x') + "\n", std::string(99, 'x')},
                {std::string(5000, 'x'), std::string(99, 'x')},
                {"", ""}};
    for (const auto& row : rows) {
        says("echo", row.printed);
        EXPECT_EQ(parse("echo", 0), row.text);
        EXPECT_JOURNAL(pipeline("echo"));
    }
}

TEST_F(Inventory, OutputThatCannotBeOpenedIsReportedAndRemovedAnyway) {
    platform.programs.actions.erase("echo" + toOutput);
    EXPECT_EQ(parse("echo", 0), "");
    EXPECT_JOURNAL(ran("echo" + toOutput),
                   error("parseSoftwareInfo failed! File (/tmp/version.data.tmp) can't be open"),
                   ran(removeOutput));
}

TEST_F(Inventory, PlaceThatIsNullIsReported) {
    entity().parseSoftwareInfo("echo", 0, nullptr);
    EXPECT_JOURNAL(error("parseSoftwareInfo failed! data arg is NULL."));
}

const std::string outputUnopened =
    error("parseSoftwareInfo failed! File (/tmp/version.data.tmp) can't be open");

/// A pipeline leaves no output.
Entries withoutOutput(const std::string& command) {
    return {ran(command + toOutput), outputUnopened, ran(removeOutput)};
}
/// A tool program leaves none.
Entries toolWithoutOutput(const std::string& path) {
    return sequence("stat(\"" + path + "\") -> 0", withoutOutput(path));
}

TEST_F(Inventory, TextsWhoseOutputCannotBeOpenedAreReportedAndNotAvailable) {
    platform.programs.actions.clear();
    for (const std::string& path : {productVersion, buildDirectory, buildTime, upgradeVersion}) {
        platform.programs.files.insert(path);
    }
    EXPECT_EQ(getSWData(), 0);
    EXPECT_THAT(contents(), testing::Each("n/a"));
    EXPECT_JOURNAL(sharing(toolWithoutOutput(productVersion), toolWithoutOutput(buildDirectory),
                           toolWithoutOutput(buildTime), toolWithoutOutput(upgradeVersion),
                           withoutOutput(packageRelease), withoutOutput(packageReleaseByName),
                           withoutOutput(osRelease), withoutOutput(osDescription),
                           missing("/etc/zu_fs_version"), ran(versionOfFile),
                           withoutOutput(bootLoader), withoutOutput(recovery)));
    EXPECT_FALSE(files.areThere());
}

// Places that are null. Nothing is run for them.

const std::string noPlace = error("parseSoftwareInfo failed! data arg is NULL.");
const std::string noPlaceForFileSystem =
    error("getSWData failed! One of input args is NULL. fileSystem: (nil)");

TEST_F(Inventory, PlacesThatAreNullAreReportedEach) {
    EXPECT_EQ(networkGetSWData(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr),
              0);
    EXPECT_JOURNAL(sharing(noPlace, noPlace, noPlace, noPlace, noPlace, noPlace,
                           noPlaceForFileSystem, noPlace, noPlace));
}

TEST_F(Inventory, PlacesBesideThoseThatAreNullAreFilled) {
    install(buildDirectory, "/build/R7.3\n");
    says(osRelease, "Board Linux 3\n");
    EXPECT_EQ(networkGetSWData(nullptr, texts[1].text, nullptr, texts[3].text, nullptr,
                               texts[5].text, nullptr, texts[7].text, nullptr),
              0);
    EXPECT_EQ(texts[1].content(), "/build/R7.3");
    EXPECT_EQ(texts[3].content(), "n/a");
    EXPECT_EQ(texts[5].content(), "Board Linux 3");
    EXPECT_EQ(texts[7].content(), "n/a");
    EXPECT_JOURNAL(sharing(noPlace, tool(buildDirectory), noPlace, missing(upgradeVersion), noPlace,
                           pipeline(osRelease), noPlaceForFileSystem, pipeline(bootLoader),
                           noPlace));
}

TEST_F(Inventory, PlacesOfThePackageThatAreNullAreReportedEach) {
    const std::string noName =
        error("getPackageData failed! One of input args is NULL. name: (nil)");
    EXPECT_EQ(networkGetPackageData(nullptr, nullptr), 0);
    EXPECT_JOURNAL(sharing(noPlace, noName));

    EXPECT_EQ(networkGetPackageData(texts[0].text, nullptr), 0);
    EXPECT_EQ(texts[0].content(), "VANTORIX MSAN");
    EXPECT_JOURNAL(sharing(noPlace));

    install(packageVersion, "7.3\n");
    EXPECT_EQ(networkGetPackageData(nullptr, texts[1].text), 0);
    EXPECT_EQ(texts[1].content(), "7.3");
    EXPECT_JOURNAL(sharing(tool(packageVersion), noName));
}

// Package.

TEST_F(Inventory, PackageHasItsBannerWhateverItsVersion) {
    Buffer<100> name;
    Buffer<100> version;
    EXPECT_EQ(networkGetPackageData(name.text, version.text), 0);
    EXPECT_EQ(name.content(), "VANTORIX MSAN");
    EXPECT_EQ(version.content(), "n/a");
    EXPECT_JOURNAL(sharing(missing(packageVersion)));

    install(packageVersion, "ANOTHER NAME 7.3\n");
    EXPECT_EQ(networkGetPackageData(name.text, version.text), 0);
    EXPECT_EQ(name.content(), "VANTORIX MSAN");
    EXPECT_EQ(version.content(), "ANOTHER NAME 7.3");
    EXPECT_TRUE(name.isIntactBehind());
    EXPECT_TRUE(version.isIntactBehind());
    EXPECT_JOURNAL(sharing(tool(packageVersion)));
}

}  // namespace
