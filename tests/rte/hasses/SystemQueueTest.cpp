// The sender on the system's own message queues, in an IPC namespace where nothing else is.

#include "rte/required/include/hasses/HassesComm.h"
#include "support/CapturedOutput.h"
#include "support/files.h"
#include "support/matchers.h"
#include "support/privateNamespaces.h"

#include <linux/capability.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>

namespace {

constexpr int key = 1708033;
constexpr int type = 1001;

/// The system's bounds on a queue's bytes: below and above what the sender asks for.
const std::string lowLimit = "16384";
const std::string highLimit = "20000000";
const std::string queuesAllowed = "32000";

/// While alive, the thread may not go beyond the system's resource limits.
class WithoutResourcePrivilege {
public:
    WithoutResourcePrivilege() {
        EXPECT_EQ(syscall(SYS_capget, &header, before), 0);
        __user_cap_data_struct data[2] = {before[0], before[1]};
        data[0].effective &= ~(1U << CAP_SYS_RESOURCE);
        EXPECT_EQ(syscall(SYS_capset, &header, data), 0);
    }
    ~WithoutResourcePrivilege() { EXPECT_EQ(syscall(SYS_capset, &header, before), 0); }
    WithoutResourcePrivilege(const WithoutResourcePrivilege&) = delete;
    WithoutResourcePrivilege& operator=(const WithoutResourcePrivilege&) = delete;

private:
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct before[2];
};

struct Message {
    long type;
    char area[2000];
};

class SystemQueue : public testing::Test {
protected:
    SystemQueue() { sender.msgq_setParams(key, type); }

    void SetUp() override {
        ASSERT_EQ(identifier(), -1) << "the queue is there already";
        setLimit(highLimit);
    }

    void TearDown() override { msgctl(identifier(), IPC_RMID, nullptr); }

    static void setLimit(const std::string& bytes) { writeFile("/proc/sys/kernel/msgmnb", bytes); }

    /// The queue, or -1 when there is none.
    static int identifier() { return msgget(key, 0); }

    static msqid_ds status() {
        msqid_ds result{};
        EXPECT_EQ(msgctl(identifier(), IPC_STAT, &result), 0);
        return result;
    }

    int send(std::string text) { return sender.msgq_send(text.data()); }

    /// The next message of the sender's type, as the feeder reads it.
    static std::optional<std::string> receive() {
        Message message{};
        const ssize_t size = msgrcv(identifier(), &message, sizeof message.area, type, IPC_NOWAIT);
        if (size < 0) {
            EXPECT_EQ(errno, ENOMSG);
            return std::nullopt;
        }
        EXPECT_EQ(size, 2000);
        EXPECT_EQ(message.type, type);
        const std::string area(message.area, sizeof message.area);
        EXPECT_NE(area.find('\0'), std::string::npos);
        return area.substr(0, area.find('\0'));
    }

    HassesComm_Msgq_cl sender;
};

TEST_F(SystemQueue, IsOpenToEverybodyAndHoldsTenMillionBytes) {
    EXPECT_EQ(sender.msgq_create(), 0);
    const msqid_ds made = status();
    EXPECT_EQ(made.msg_qbytes, 10000000U);
    EXPECT_EQ(made.msg_perm.mode & 0777U, 0666U);
    EXPECT_EQ(made.msg_perm.uid, geteuid());
    EXPECT_EQ(made.msg_perm.gid, getegid());
}

TEST_F(SystemQueue, CarriesTextsUpTo1999Characters) {
    const std::string text = std::string(1998, 'a') + "bcd";
    for (const std::size_t length : {0U, 5U, 1999U, 2000U, 2001U}) {
        EXPECT_EQ(send(text.substr(0, length)), 0);
    }
    EXPECT_EQ(receive(), "");
    EXPECT_EQ(receive(), "aaaaa");
    EXPECT_EQ(receive(), text.substr(0, 1999));
    EXPECT_EQ(receive(), text.substr(0, 1999));
    EXPECT_EQ(receive(), text.substr(0, 1999));
    EXPECT_EQ(receive(), std::nullopt);
}

TEST_F(SystemQueue, CountsWhatWaits) {
    int count = 77;
    EXPECT_EQ(sender.msgq_getNumberOfMsg(&count), -1);
    EXPECT_EQ(count, 77);
    send("one");
    send("two");
    EXPECT_EQ(sender.msgq_getNumberOfMsg(&count), 0);
    EXPECT_EQ(count, 2);
    receive();
    EXPECT_EQ(sender.msgq_getNumberOfMsg(&count), 0);
    EXPECT_EQ(count, 1);
}

TEST_F(SystemQueue, LosesWhatDoesNotFit) {
    for (int message = 0; message < 5000; ++message) {
        ASSERT_EQ(send(std::to_string(message)), 0);
    }
    CapturedOutput output;
    EXPECT_EQ(send("lost"), -1);
    EXPECT_EQ(output.take(), "");
    sender.printout(8);
    EXPECT_EQ(send("lost"), -1);
    EXPECT_EQ(output.take(),
              "  msgsnd(), res = -1, errno = 11 = 'Resource temporarily unavailable'\n");
    EXPECT_EQ(status().msg_qnum, 5000U);
    EXPECT_EQ(receive(), "0");
    EXPECT_EQ(send("fits"), 0);
    EXPECT_EQ(output.take(), "");
}

TEST_F(SystemQueue, WorksAtTheSystemsLimitWhenItMayNotBeRaised) {
    setLimit(lowLimit);
    const WithoutResourcePrivilege without;
    CapturedOutput output;
    EXPECT_EQ(sender.msgq_create(), 1);
    EXPECT_EQ(output.take(), "");
    sender.printout(8);
    EXPECT_EQ(sender.msgq_create(), 1);
    EXPECT_EQ(output.take(), "  msgctl( IPC_SET ) - res = -1, errno = 1\n");
    sender.printout(0);
    for (int message = 0; message < 8; ++message) {
        EXPECT_EQ(send(std::to_string(message)), 0);
    }
    EXPECT_EQ(send("lost"), -1);
    EXPECT_EQ(status().msg_qnum, 8U);
    EXPECT_EQ(status().msg_qbytes, 16384U);
    EXPECT_EQ(receive(), "0");
    // Once the system's limit allows it, the next message raises the queue's.
    setLimit(highLimit);
    EXPECT_EQ(send("more"), 0);
    EXPECT_EQ(status().msg_qbytes, 10000000U);
}

TEST_F(SystemQueue, IsMadeByALaterMessageIfTheFirstCouldNot) {
    writeFile("/proc/sys/kernel/msgmni", "0");
    EXPECT_EQ(sender.msgq_create(), -1);
    EXPECT_EQ(sender.msgq_init(), 0);
    CapturedOutput output;
    EXPECT_EQ(send("lost"), -1);
    EXPECT_EQ(output.take(), "");
    writeFile("/proc/sys/kernel/msgmni", queuesAllowed);
    EXPECT_EQ(send("arrives"), 0);
    EXPECT_EQ(receive(), "arrives");
    EXPECT_EQ(receive(), std::nullopt);
}

TEST_F(SystemQueue, ThatWasRemovedIsNotMadeAgain) {
    ASSERT_EQ(send("gone"), 0);
    ASSERT_EQ(msgctl(identifier(), IPC_RMID, nullptr), 0);
    CapturedOutput output;
    sender.printout(8);
    EXPECT_EQ(send("lost"), -1);
    EXPECT_EQ(output.take(), "  msgsnd(), res = -1, errno = 22 = 'Invalid argument'\n");
    EXPECT_EQ(sender.msgq_init(), 0);
    EXPECT_EQ(identifier(), -1);
    HassesComm_Msgq_cl other;
    other.msgq_setParams(key, type);
    EXPECT_EQ(other.msgq_init(), 0);
    EXPECT_NE(identifier(), -1);
}

TEST_F(SystemQueue, OutlivesTheProcess) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(send("from the child") == 0 ? 0 : 1);
    }
    int outcome = -1;
    ASSERT_EQ(waitpid(child, &outcome, 0), child);
    EXPECT_EQ(outcome, 0);
    EXPECT_EQ(receive(), "from the child");
}

TEST_F(SystemQueue, OfPeriodicProducersIsAnother) {
    HassesComm_Period_base_cl producer;
    EXPECT_EQ(producer.msgq_send("tick"), 0);
    EXPECT_EQ(identifier(), -1);
    const int own = msgget(1708034, 0);
    ASSERT_NE(own, -1);
    Message message{};
    EXPECT_EQ(msgrcv(own, &message, sizeof message.area, 1002, IPC_NOWAIT), 2000);
    EXPECT_STREQ(message.area, "tick");
    msgctl(own, IPC_RMID, nullptr);
}

}  // namespace
