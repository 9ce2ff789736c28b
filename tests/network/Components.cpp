// The component lists, which are read once in the life of a process: each case has one of its own.
// They are reached past their access (-fno-access-control, for this file).

#include "fake/quoted.h"
#include "network/EntityTest.h"
#include "network/freshProcess.h"

#include <functional>
#include <string>

namespace {

using testing::ElementsAreArray;

// Command lines, to the letter.
const std::string listActive = "ls /opt/kalvor/neroot -l |grep active";
const std::string provides = "rpm -q --whatprovides ";
const std::string requirements = "rpm -q --requires ";
const std::string withVersion = " | grep \"=\"";
const std::string providesPlatform = "rpm -q --whatprovides dorn-medium";

/// The longest command line that is run.
constexpr std::size_t commandLimit = 100;

std::string opened(const std::string& command) {
    return "popen(" + fake::quoted(command) + R"(, "r"))";
}
std::string ended(const std::string& command, int status = 0) {
    return "pclose(" + fake::quoted(command) + ") -> " + std::to_string(status);
}
Entries ran(const std::string& command, int status = 0) {
    return {opened(command), ended(command, status)};
}

const std::string notManaged = "isActive(5) -> 0";
const std::string managed = "isActive(5) -> 1";

const std::string providesActive = provides + "/opt/kalvor/neroot/R7.3";
const std::string requirementsOfActive = requirements + "neroot-R7.3-12" + withVersion;
const std::string requirementsOfPlatform = requirements + "platform-5-1";

const Entries applicationRead =
    sequence(ran(listActive), ran(providesActive), ran(requirementsOfActive));
const Entries platformRead = sequence(ran(providesPlatform), ran(requirementsOfPlatform));
const Entries platformLines = {"dorn-medium", "kernel = 5.10"};

class Components : public EntityTest {
protected:
    Components() {
        auto& outputs = platform.programs.outputs;
        outputs[listActive].text =
            "lrwxrwxrwx 1 root root 23 Feb  3 10:00 active -> /opt/kalvor/neroot/R7.3\n";
        outputs[providesActive].text = "neroot-R7.3-12\n";
        outputs[requirementsOfActive].text = "a = 1\nolt_manager = 2\nb = 3\n";
        outputs[providesPlatform].text = "platform-5-1\n";
        outputs[requirementsOfPlatform].text = "dorn-medium\nkernel = 5.10\n";
    }

    fake::CommandOutput& output(const std::string& command) {
        return platform.programs.outputs[command];
    }

    /// Reads the lists; what differs from the expected journal and lists.
    std::string complaint(const Entries& expectedJournal, const Entries& application,
                          const Entries& platformList = platformLines) {
        entity().initVersComp();
        return mismatch(journal(), ElementsAreArray(expectedJournal)) +
               mismatch(entity().applicationLines, ElementsAreArray(application)) +
               mismatch(entity().platformLines, ElementsAreArray(platformList));
    }

    /// What a provider's name of that length makes of the command that asks for its requirements.
    static std::string packageForCommandOf(std::size_t length) {
        return std::string(length - requirements.size() - withVersion.size(), 'p');
    }
    /// The application step ends early; the platform step is made nevertheless.
    void expectNoApplication(const std::function<void()>& prepare, const Entries& steps) {
        inFreshProcess([&] {
            prepare();
            return complaint(sequence(notManaged, steps, platformRead), {});
        });
    }
    /// The platform step ends early.
    void expectPlatform(const std::function<void()>& prepare, const Entries& steps,
                        const Entries& lines) {
        inFreshProcess([&] {
            prepare();
            return complaint(sequence(notManaged, applicationRead, steps),
                             {"a = 1", "olt_manager = 2", "b = 3"}, lines);
        });
    }
};

using ComponentsDeathTest = Components;

TEST_F(ComponentsDeathTest, AreWhatTheTwoPackagesRequire) {
    inFreshProcess([&] {
        return complaint(sequence(notManaged, applicationRead, platformRead),
                         {"a = 1", "olt_manager = 2", "b = 3"});
    });
}

TEST_F(ComponentsDeathTest, AreReadOnceInTheLifeOfAProcess) {
    inFreshProcess([&] {
        entity().initVersComp();
        journal();
        output(requirementsOfActive).text = "later = 1\n";
        entity().initVersComp();
        const Entries lines = {"a = 1", "olt_manager = 2", "b = 3"};
        std::string wrong = mismatch(journal(), testing::IsEmpty()) +
                            mismatch(entity().applicationLines, ElementsAreArray(lines));
        remakeEntity();
        journal();
        entity().initVersComp();
        wrong += mismatch(journal(), testing::IsEmpty()) +
                 mismatch(entity().applicationLines, testing::IsEmpty());
        return wrong;
    });
}

// The system software's version.

const Entries versionRead = {managed, "zuOMTable()", R"(sysConfigGetSwVersion() -> 0 " 7.3.1")",
                             "~zuOMTable()"};

TEST_F(ComponentsDeathTest, ManagersLineCarriesTheSystemsVersion) {
    inFreshProcess([&] {
        platform.shelf.activeFeatures.insert(5);
        output(requirementsOfActive).text =
            "a = 1\nolt_manager = 2\nolt_manager2\n olt_manager = 4\nolt_manage = 5\n";
        return complaint(sequence(versionRead, ran(listActive), ran(providesActive),
                                  opened(requirementsOfActive), managed, managed, managed, managed,
                                  managed, ended(requirementsOfActive), platformRead),
                         {"a = 1", "olt_manager = 2 7.3.1", "olt_manager2 7.3.1",
                          " olt_manager = 4", "olt_manage = 5"});
    });
}

TEST_F(ComponentsDeathTest, SystemsVersionThatCannotBeReadIsLeftOut) {
    inFreshProcess([&] {
        platform.shelf.activeFeatures.insert(5);
        platform.fail("sysConfigGetSwVersion", 1);
        return complaint(sequence(managed, "zuOMTable()", "sysConfigGetSwVersion() -> 1",
                                  "~zuOMTable()", applicationRead, platformRead),
                         {"a = 1", "olt_manager = 2", "b = 3"});
    });
}

TEST_F(ComponentsDeathTest, SystemsVersionIsAppendedOnlyIfTheLineStaysWithin300) {
    const std::string line = "olt_manager" + std::string(200, 'x');
    for (const auto& [length, isAppended] : {std::pair{89, true}, {90, false}}) {
        inFreshProcess([&, size = static_cast<std::size_t>(length), appended = isAppended] {
            platform.shelf.activeFeatures.insert(5);
            platform.product.systemVersion = std::string(size, 'v');
            output(requirementsOfActive).text = line + "\n";
            entity().initVersComp();
            journal();
            return mismatch(
                entity().applicationLines,
                testing::ElementsAre(appended ? line + platform.product.systemVersion : line));
        });
    }
}

// What the first two questions find out, the third does not: the beginning, and two lines.
TEST_F(ComponentsDeathTest, ManagersLinesCarryTheSystemsVersionOnlyWhileItIsManaged) {
    inFreshProcess([&] {
        platform.shelf.activeFeatures.insert(5);
        platform.fail("isActive 5", 1, fake::Script::forever, 2);
        output(requirementsOfActive).text = "olt_manager = 1\nolt_manager = 2\nolt_manager = 3\n";
        return complaint(sequence(versionRead, ran(listActive), ran(providesActive),
                                  opened(requirementsOfActive), managed, notManaged, notManaged,
                                  ended(requirementsOfActive), platformRead),
                         {"olt_manager = 1 7.3.1", "olt_manager = 2", "olt_manager = 3"});
    });
}

TEST_F(ComponentsDeathTest, EmptySystemsVersionIsOneToo) {
    inFreshProcess([&] {
        platform.shelf.activeFeatures.insert(5);
        platform.product.systemVersion = "";
        entity().initVersComp();
        journal();
        return mismatch(entity().applicationLines,
                        testing::ElementsAre("a = 1", "olt_manager = 2", "b = 3"));
    });
}

// The link to the active tree.

TEST_F(ComponentsDeathTest, WithoutAListingThereIsNoApplication) {
    expectNoApplication([&] { platform.fail("popen " + listActive, 12, 1); },
                        {opened(listActive) + " -> errno 12"});
    expectNoApplication([&] { output(listActive).text = ""; }, ran(listActive));
    expectNoApplication([&] { output(listActive).status = 256; }, ran(listActive, 256));
    expectNoApplication([&] { output(listActive).status = -1; }, ran(listActive, -1));
}

TEST_F(ComponentsDeathTest, WithoutALinkThereIsNoApplication) {
    expectNoApplication([&] { output(listActive).text = "drwxr-xr-x 2 root root 0 active\n"; },
                        ran(listActive));
    expectNoApplication([&] { output(listActive).text = "lrwxrwxrwx active -> \n"; },
                        ran(listActive));
    expectNoApplication([&] { output(listActive).text = "\nlrwxrwxrwx active -> /opt\n"; },
                        ran(listActive));
}

TEST_F(ComponentsDeathTest, LinkLeadsToWhateverStandsBehindTheFirstArrow) {
    expectNoApplication(
        [&] {
            output(listActive).text = "a -> b -> c\nd -> e\n";
            output(provides + "b -> c").status = 256;
        },
        sequence(ran(listActive), ran(provides + "b -> c", 256)));
}

TEST_F(ComponentsDeathTest, CommandOf100CharactersIsRunAndALongerOneNot) {
    const std::string target(commandLimit - provides.size(), 't');
    expectNoApplication([&] { output(listActive).text = "active -> " + target + "\n"; },
                        sequence(ran(listActive), ran(provides + target)));
    expectNoApplication([&] { output(listActive).text = "active -> " + target + "t\n"; },
                        ran(listActive));
}

// The package of the active tree.

TEST_F(ComponentsDeathTest, WithoutAPackageThereIsNoApplication) {
    expectNoApplication([&] { platform.fail("popen " + providesActive, 12, 1); },
                        sequence(ran(listActive), opened(providesActive) + " -> errno 12"));
    expectNoApplication([&] { output(providesActive).text = ""; },
                        sequence(ran(listActive), ran(providesActive)));
    expectNoApplication([&] { output(providesActive).text = "\n"; },
                        sequence(ran(listActive), ran(providesActive)));
    expectNoApplication([&] { output(providesActive).status = 256; },
                        sequence(ran(listActive), ran(providesActive, 256)));
}

TEST_F(ComponentsDeathTest, RequirementsAreAskedForBy100CharactersAtMost) {
    const std::string package = packageForCommandOf(commandLimit);
    expectNoApplication(
        [&] { output(providesActive).text = package + "\n"; },
        sequence(ran(listActive), ran(providesActive), ran(requirements + package + withVersion)));
    expectNoApplication([&] { output(providesActive).text = package + "p\n"; },
                        sequence(ran(listActive), ran(providesActive)));
}

TEST_F(ComponentsDeathTest, WithoutRequirementsThereIsNoApplication) {
    expectNoApplication([&] { platform.fail("popen " + requirementsOfActive, 12, 1); },
                        sequence(ran(listActive), ran(providesActive),
                                 opened(requirementsOfActive) + " -> errno 12"));
    expectNoApplication(
        [&] { output(requirementsOfActive) = {"", 256}; },
        sequence(ran(listActive), ran(providesActive), ran(requirementsOfActive, 256)));
}

TEST_F(ComponentsDeathTest, LinesThatWereReadAreKeptWhateverBecomesOfTheCommand) {
    inFreshProcess([&] {
        output(requirementsOfActive) = {"a = 1\n\nlast", 256};
        return complaint(sequence(notManaged, ran(listActive), ran(providesActive),
                                  ran(requirementsOfActive, 256), platformRead),
                         {"a = 1", "", "last"});
    });
}

TEST_F(ComponentsDeathTest, LinesAreReadInPiecesOfAtMost299Characters) {
    inFreshProcess([&] {
        output(requirementsOfActive).text =
            std::string(299, 'x') + "\n" + std::string(298, 'y') + "\n" + std::string(700, 'z');
        return complaint(sequence(notManaged, applicationRead, platformRead),
                         {std::string(299, 'x'), "", std::string(298, 'y'), std::string(299, 'z'),
                          std::string(299, 'z'), std::string(102, 'z')});
    });
}

// The platform's package.

TEST_F(ComponentsDeathTest, WithoutAPackageThereIsNoPlatform) {
    expectPlatform([&] { platform.fail("popen " + providesPlatform, 12, 1); },
                   {opened(providesPlatform) + " -> errno 12"}, {});
    expectPlatform([&] { output(providesPlatform).text = ""; }, ran(providesPlatform), {});
    expectPlatform([&] { output(providesPlatform).text = "\nplatform-5-1\n"; },
                   ran(providesPlatform), {});
    expectPlatform([&] { output(providesPlatform).status = 256; }, ran(providesPlatform, 256), {});
}

TEST_F(ComponentsDeathTest, WithoutRequirementsThereIsNoPlatform) {
    expectPlatform([&] { platform.fail("popen " + requirementsOfPlatform, 12, 1); },
                   sequence(ran(providesPlatform), opened(requirementsOfPlatform) + " -> errno 12"),
                   {});
    expectPlatform([&] { output(requirementsOfPlatform) = {"kept = 1\n", 256}; },
                   sequence(ran(providesPlatform), ran(requirementsOfPlatform, 256)), {"kept = 1"});
}

TEST_F(ComponentsDeathTest, PlatformsCommandHasNoBound) {
    const std::string package(200, 'p');
    expectPlatform(
        [&] {
            output(providesPlatform).text = package + "\n";
            output(requirements + package).text = "olt_manager\n";
        },
        sequence(ran(providesPlatform), ran(requirements + package)), {"olt_manager"});
}

}  // namespace
