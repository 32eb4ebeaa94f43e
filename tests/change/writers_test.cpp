// Two programs and a script change the same files at the same time, round after round: nothing is lost.
//
// TV_ROUNDS sets how many rounds (bench/writers).
#include "administrator.h"
#include "tests/support/configuration.h"
#include "tests/support/simulator.h"

#include <cstdio>
#include <fcntl.h>
#include <random>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr int vcisOfOne = 10000;  // the first program has the VCIs from this on, the second from twice that

// What came of a round. Sent through a pipe as it is.
struct Done {
    bool failed = false;
    bool last = false;  // the other's name was there when it began, or it was asked and took its own
    bool asked = false;
};

// One of the two, in a process of its own for each round.
class Program {
  public:
    explicit Program(int number) : number_(number), random_(static_cast<unsigned>(number)) {}

    // What it changes in this round, 0 for nothing: its own client, the list and, perhaps, the name of both.
    int mtu = 0, added = 0, removed = 0;
    bool named = false;

    void begin(int round) {
        mtu = 1000 + round % 8000;
        added = random_() % 2 ? vcisOfOne * number_ + round : 0;
        removed = 0;
        named = random_() % 2;
        if (own_.size() > 10 || (!own_.empty() && random_() % 4 == 0)) {
            const auto at = own_.begin() + static_cast<std::ptrdiff_t>(random_() % own_.size());
            removed = *at;
            own_.erase(at);
        }
        if (added) own_.push_back(added);
        const auto seed = random_();
        int ends[2];
        ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        process_ = ::fork();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            random_.seed(seed);
            const Done done = work(round);
            ::_exit(::write(ends[1], &done, sizeof done) != ssize_t(sizeof done));
        }
        ::close(ends[1]);
        line_ = ends[0];
    }
    Done end() const {
        Done done;
        if (::read(line_, &done, sizeof done) != ssize_t(sizeof done)) done.failed = true;
        ::close(line_);
        ::waitpid(process_, nullptr, 0);
        return done;
    }
    static std::string nameBy(int number, int round) { return fmt::format("{}by{}", round, number); }

  private:
    Done work(int round) {
        const auto pause = [&] { std::this_thread::sleep_for(std::chrono::microseconds(random_() % 4000)); };
        Done done;
        pause();
        Administrator user;
        user.lec(static_cast<std::size_t>(number_)).l3Mtu = mtu;
        AtmLEC& common = user.lec(4);
        if (added) common.pvcs.emplace_back().vci = static_cast<std::uint16_t>(added);
        std::erase_if(common.pvcs, [&](const AtmBridgedPvc& pvc) { return removed && pvc.vci == removed; });
        if (named) {
            done.last = common.elanName.view() == nameBy(3 - number_, round);
            common.elanName = nameBy(number_, round);
        }
        pause();
        const bool ok = random_() % 2;
        done.failed = !user.end(true, ok).failures.empty() || user.questions.size() > 1;
        if (user.questions.empty()) return done;
        done.failed |= !user.questions[0].starts_with("Somebody else has changed the same:");
        done.asked = true;
        done.last = ok;
        return done;
    }

    int number_, line_ = -1;
    pid_t process_ = -1;
    std::mt19937 random_;
    std::vector<int> own_;  // VCIs
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
    Program one(1), two(2);
    std::multiset<int> list;
    std::string name = "laboratory";
    int asked = 0;
    // On a busy machine they may not meet for a while.
    int round = 1;
    for (; round <= rounds || (asked == 0 && round <= 10 * rounds); ++round) {
        one.begin(round);
        two.begin(round);
        const bool adds = round % 8 == 0;
        int status = 0;
        ::waitpid(startScript(root, round, adds), &status, 0);
        ASSERT_EQ(status, 0);
        if (adds) list.insert(round);
        const Done done[] = {one.end(), two.end()};
        for (const Program* program : {&one, &two}) {
            if (program->added) list.insert(program->added);
            if (program->removed) list.erase(list.find(program->removed));
        }
        ASSERT_FALSE(done[0].failed || done[1].failed) << round;
        asked += done[0].asked + done[1].asked;
        const bool first = one.named && (!two.named || done[0].last || (done[1].asked && !done[1].last));
        if (one.named || two.named) name = Program::nameBy(first ? 1 : 2, round);

        const AtmDevices now = inFiles();
        const std::vector<int> vcis = each(&AtmBridgedPvc::vci, now.lec[0][3].pvcs);
        const std::string text = root.read("/etc/atm/tvconf");
        const bool same[] = {now.lec[0][0].l3Mtu == one.mtu,
                             now.lec[0][1].l3Mtu == two.mtu,
                             std::multiset<int>(vcis.begin(), vcis.end()) == list,
                             now.lec[0][3].elanName.view() == name,
                             text.find(fmt::format("\n# {} First adapter\n", round)) != text.npos,
                             text.find(fmt::format("4{:025}", round)) != text.npos};
        ASSERT_THAT(same, testing::Each(true)) << round;
    }
    fmt::print("{} rounds, nothing lost, {} conflicts asked\n", round - 1, asked);
    EXPECT_GT(asked, 0) << "they did not meet";
}
