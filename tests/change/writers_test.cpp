// Two programs and a script change the same files at the same time, round after round: nothing is lost.
//
// TV_ROUNDS sets how many rounds (bench/writers).
#include "change/adapterchange.h"
#include "config/pvcfile.h"
#include "tests/support/configuration.h"
#include "tests/support/simulator.h"

#include <cstdio>
#include <cstdlib>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <random>
#include <set>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr int vcisOfOne = 10000;  // the first program has the VCIs from this on, the second from twice that

// What a program has done in a round. Sent through a pipe as it is.
struct Done {
    bool failed = false;
    int mtu = 0;  // of its own client
    int added = 0, removed = 0;
    bool named = false;  // it set the name that both set
    bool last = false;   // and the other's was there when it began, or it was asked and took its own
    bool asked = false;
};

// One of the two, in a process of its own.
class Program {
  public:
    explicit Program(int number) : number_(number) {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return;
        process_ = ::fork();
        line_ = ends[process_ == 0];
        ::close(ends[process_ != 0]);
        if (process_ != 0) return;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        work();
        ::_exit(0);
    }
    ~Program() {
        ::close(line_);
        ::waitpid(process_, nullptr, 0);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void begin(int round) const { EXPECT_TRUE(send(round)); }
    Done end() const {
        Done done;
        if (!receive(done)) done.failed = true;
        return done;
    }
    static std::string nameBy(int number, int round) { return fmt::format("{}by{}", round, number); }

  private:
    template <class Message> bool send(const Message& message) const {
        return ::write(line_, &message, sizeof message) == ssize_t(sizeof message);
    }
    template <class Message> bool receive(Message& message) const {
        return ::read(line_, &message, sizeof message) == ssize_t(sizeof message);
    }

    void work() const {
        std::mt19937 random(static_cast<unsigned>(number_));
        AtmDevices mine;
        Configuration configuration("tarvolin", mine);
        configuration.read();
        std::vector<int> own;
        for (int round = 0; receive(round) && send(change(round, random, configuration, own));) {
        }
    }

    Done change(int round, std::mt19937& random, Configuration& configuration, std::vector<int>& own) const {
        const auto pause = [&] { std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000)); };
        Done done;
        AtmDevices& mine = configuration.mine();
        pause();
        configuration.readAgain(0);
        const AtmDevices before = mine;
        const auto me = static_cast<std::size_t>(number_ - 1);
        mine.lec[0][me].l3Mtu = done.mtu = 1000 + round % 8000;
        auto& list = mine.lec[0][3].pvcs;
        if (random() % 2) {
            AtmBridgedPvc pvc;
            pvc.vci = static_cast<std::uint16_t>(done.added = vcisOfOne * number_ + round);
            list.push_back(pvc);
            own.push_back(done.added);
        }
        if (own.size() > 10 || (!own.empty() && random() % 4 == 0)) {
            const std::size_t index = random() % own.size();
            if (own[index] != done.added) {
                done.removed = own[index];
                std::erase_if(list, [&](const AtmBridgedPvc& pvc) { return pvc.vci == done.removed; });
                own.erase(own.begin() + static_cast<std::ptrdiff_t>(index));
            }
        }
        if (random() % 2) {
            done.named = true;
            done.last = mine.lec[0][3].elanName.view() == nameBy(3 - number_, round);
            mine.lec[0][3].elanName = nameBy(number_, round);
        }
        pause();
        AdapterChange change(configuration, {.adapter = 0, .before = before});
        while (const std::optional<Question> question = change.run()) {
            const bool ok = random() % 2;
            done.failed |= question->title != "Configuration Conflict" || done.asked;
            done.asked = true;
            done.last = ok;
            change.answer(ok);
        }
        done.failed |= !change.result().failures.empty();
        return done;
    }

    int number_, line_ = -1;
    pid_t process_ = -1;
};

// Edits the third client and a comment under the lock, with the means of a shell.
pid_t startScript(const TempRoot& root, int round, bool adds) {
    std::string script = fmt::format("cd '{}' && exec flock run/tarvolin.lock sh -c '"
                                     "sed -i -e \"s/^# .*First adapter.*/# {} First adapter/\" -e "
                                     "\"s/^\\(.*NetPrefix *=\\) 4.*/\\1 4{:025}/\""
                                     " etc/atm/tvconf{}'",
                                     root.path().string(), round, round,
                                     adds ? fmt::format("; printf \"[PVC\\n\\tVC =%d\\n\\tAddr =0\\n\\tEncap "
                                                        "=0\\n\\tBcast =0\\n\\tRate =0\\n]\\n\" {} "
                                                        ">>etc/atm/pvcconf0.3",
                                                        round)
                                          : "");
    std::string shell = "/bin/sh", option = "-c";
    char* words[] = {shell.data(), option.data(), script.data(), nullptr};
    pid_t process = -1;
    EXPECT_EQ(::posix_spawn(&process, words[0], nullptr, nullptr, words, environ), 0);
    return process;
}

}  // namespace

TEST(Writers, TheSumOfAllChangesIsInTheFiles) {
    const char* wanted = std::getenv("TV_ROUNDS");
    const int rounds = wanted ? std::atoi(wanted) : 40;
    SampleRoot root;
    {
        platform::ConfigurationLock lock;
        ASSERT_EQ(lock.take("test", 0ms), 0);
    }  // the file is there
    const Program one(1), two(2);
    std::multiset<int> list;
    std::string name = "laboratory";
    int asked = 0;
    for (int round = 1; round <= rounds; ++round) {
        one.begin(round);
        two.begin(round);
        const bool adds = round % 8 == 0;
        int status = 0;
        ::waitpid(startScript(root, round, adds), &status, 0);
        ASSERT_EQ(status, 0);
        if (adds) list.insert(round);
        const Done done[] = {one.end(), two.end()};
        for (const Done& each : done) {
            ASSERT_FALSE(each.failed) << round;
            asked += each.asked;
            if (each.added) list.insert(each.added);
            if (each.removed) list.erase(list.find(each.removed));
        }
        const bool first =
            done[0].named && (!done[1].named || done[0].last || (done[1].asked && !done[1].last));
        if (done[0].named || done[1].named) name = Program::nameBy(first ? 1 : 2, round);

        const AtmDevices now = inFiles();
        const std::vector<int> vcis = each(&AtmBridgedPvc::vci, now.lec[0][3].pvcs);
        const std::string text = root.read("/etc/atm/tvconf");
        const bool same[] = {now.lec[0][0].l3Mtu == done[0].mtu,
                             now.lec[0][1].l3Mtu == done[1].mtu,
                             std::multiset<int>(vcis.begin(), vcis.end()) == list,
                             now.lec[0][3].elanName.view() == name,
                             text.find(fmt::format("\n# {} First adapter\n", round)) != text.npos,
                             text.find(fmt::format("4{:025}", round)) != text.npos};
        ASSERT_THAT(same, testing::Each(true)) << round;
    }
    fmt::print("{} rounds, nothing lost, {} conflicts asked\n", rounds, asked);
    EXPECT_GT(asked, rounds / 50) << "they did not meet";
}
