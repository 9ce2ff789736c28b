// The component lists, as they are read. They are filled past their access (-fno-access-control,
// for this file).

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"
#include "network/freshProcess.h"

#include <algorithm>
#include <limits>
#include <string>
#include <thread>

namespace {

using testing::ElementsAre;

class ComponentLines : public EntityTest {
protected:
    ComponentLines() {
        entity().applicationLines = {"a = 1", "b = 2", "c = 3", "", "e = 5"};
        entity().platformLines = {"p = 1"};
    }

    using Read = int (*)(char*, int*);
    /// What a client gets that walks from the start.
    static std::vector<std::string> walk(Read read) {
        std::vector<std::string> lines;
        for (int index = 0; index != -1;) {
            const int asked = index;
            Buffer<100> line;
            EXPECT_EQ(read(line.text, &index), 0);
            if (index != -1) {
                EXPECT_EQ(index, asked + 1);
                lines.push_back(line.content());
            } else {
                EXPECT_TRUE(line.isUntouched());
            }
            EXPECT_TRUE(line.isIntactBehind());
        }
        return lines;
    }
};

using ComponentLinesDeathTest = ComponentLines;

TEST_F(ComponentLines, AreWalkedByTheIndex) {
    EXPECT_THAT(walk(networkGetVersionLineApl),
                ElementsAre("a = 1", "b = 2", "c = 3", "", "e = 5"));
    EXPECT_THAT(walk(networkGetVersionLinePlat), ElementsAre("p = 1"));
    entity().platformLines.clear();
    EXPECT_THAT(walk(networkGetVersionLinePlat), ElementsAre());
    journal();
}

TEST_F(ComponentLines, IndexOutsideTheListIsItsEnd) {
    for (const int asked :
         {5, 6, -1, -3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        for (const auto read : {networkGetVersionLineApl, networkGetVersionLinePlat}) {
            int index = asked;
            Buffer<100> line;
            EXPECT_EQ(read(line.text, &index), 0);
            EXPECT_EQ(index, -1);
            EXPECT_TRUE(line.isUntouched());
            EXPECT_JOURNAL(sharing());
        }
    }
}

TEST_F(ComponentLines, IndexBehindTheLastLineIsTheListsEnd) {
    for (const int asked : {1, 2, 5}) {
        int index = asked;
        Buffer<100> line;
        EXPECT_EQ(networkGetVersionLinePlat(line.text, &index), 0);
        EXPECT_EQ(index, -1) << "there is one line";
        EXPECT_TRUE(line.isUntouched());
        EXPECT_JOURNAL(sharing());
    }
}

TEST_F(ComponentLines, LineThatIsNullEndsTheWalkAsAFailure) {
    for (const auto read : {networkGetVersionLineApl, networkGetVersionLinePlat}) {
        int index = 0;
        EXPECT_EQ(read(nullptr, &index), -1);
        EXPECT_EQ(index, -1);
        EXPECT_JOURNAL(sharing());
    }
}

TEST_F(ComponentLines, RefusedLockLeavesLineAndIndexAlone) {
    platform.fail("sharedLock", 1);
    for (const auto read : {networkGetVersionLineApl, networkGetVersionLinePlat}) {
        int index = 0;
        Buffer<100> line;
        EXPECT_EQ(read(line.text, &index), -1);
        EXPECT_EQ(index, 0);
        EXPECT_TRUE(line.isUntouched());
        EXPECT_JOURNAL(refused("sharedLock"));
    }
}

// For the race detector: the lists are filled under no lock of the framework's.
TEST_F(ComponentLinesDeathTest, MayBeReadWhileTheyAreFilled) {
    inFreshProcess([&] {
        auto& outputs = platform.programs.outputs;
        outputs["rpm -q --whatprovides dorn-medium"].text = "platform\n";
        outputs["rpm -q --requires platform"].text = "kernel = 5\n";
        entity().platformLines.clear();
        char line[100];
        std::thread reader([&] {
            for (int index = -1; index == -1;) {
                index = 0;
                networkGetVersionLinePlat(line, &index);
            }
        });
        entity().initVersComp();
        reader.join();
        return mismatch(std::string(line), testing::Eq("kernel = 5"));
    });
}

TEST_F(ComponentLines, LongLinesAreCutTo99) {
    for (const std::size_t length : {98U, 99U, 100U, 300U}) {
        entity().applicationLines = {std::string(length, 'x')};
        entity().platformLines = {std::string(length, 'y')};
        EXPECT_THAT(walk(networkGetVersionLineApl),
                    ElementsAre(std::string(std::min<std::size_t>(length, 99), 'x')));
        EXPECT_THAT(walk(networkGetVersionLinePlat),
                    ElementsAre(std::string(std::min<std::size_t>(length, 99), 'y')));
    }
    journal();
}

}  // namespace
