// Setup and tvctl change the same files at the same time: each says whom it waits for, and nothing is lost.
#include "tests/e2e/configurationtest.h"

#include <cstdio>

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

constexpr const char* lockFile = "/run/tarvolin.lock";
constexpr const char* lateDriver = "fault lec.start nth 1 late 6500";  // longer than a lock is waited for

// A shell that runs beside the windows, with tvctl as its word for the tool of shells.
class Shell {
  public:
    explicit Shell(const std::string& line)
        : output_(::popen(
              ("tvctl() { " TVCTL_PROGRAM " \"$@\"; }; " + line + " 2>&1; echo status $?").c_str(), "r")) {}
    ~Shell() { said(); }
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    // What it has printed when it ends, and its status.
    std::string said() {
        std::string all;
        if (!output_) return all;
        for (int c; (c = std::fgetc(output_)) != EOF;) all += static_cast<char>(c);
        ::pclose(std::exchange(output_, nullptr));
        return all;
    }

  private:
    std::FILE* output_;
};

}  // namespace

class WithShell : public ConfigurationTest {
  protected:
    void expectNames(const Names& names) {
        for (int client = 1; client <= static_cast<int>(names.size()); ++client)
            EXPECT_EQ(nameOfClient(root, client), names[static_cast<std::size_t>(client - 1)]);
    }
    // The shell does this while the box waits, which is then answered with OK.
    void whileItWaits(const std::string& title, const std::string& line, std::string& said) {
        inDialog(title, [=, this, &said] {
            boxText = user->messageOf(user->shellLike(title));
            said = Shell(line).said();
            user->key("Return");
        });
    }
};

TEST_F(WithShell, SetupThatTellsTheDriverIsNamedByTvctl) {
    start("1", {lateDriver});
    std::optional<Shell> shell;
    expectBoxes({}, [&] {
        enter(elanNameED, "window");
        shell.emplace(fmt::format("until grep -q tarvolin {}; do sleep 0.02; done; "
                                  "tvctl set --file-only adapter1/lec2.elanName=shell",
                                  root.at(lockFile).string()));
        press(okBTN);
    });
    EXPECT_EQ(shell->said(),
              fmt::format("tvctl: the configuration is being changed by tarvolin (process {})\n"
                          "status 6\n",
                          ::getpid()));
    expectNames({"window", "accounting"});
    EXPECT_THAT(Shell("tvctl set adapter1/lec2.elanName=shell").said(), EndsWith("change 0002\nstatus 0\n"));
    expectNames({"window", "shell"});
}

TEST_F(WithShell, TvctlThatTellsTheDriverIsNamedBySetup) {
    start("1", {lateDriver});
    std::optional<Shell> shell;
    expectBoxes({"Configuration Busy"}, [&] {
        enter(elanNameED, "window");
        shell.emplace("tvctl set adapter1/lec2.elanName=shell");
        EXPECT_TRUE(soon([&] { return has(root.read(lockFile), "tvctl "); }));
        press(okBTN);
    });
    EXPECT_THAT(boxText, MatchesRegex("The configuration is being changed by tvctl \\(process [0-9]+\\)\\."
                                      "OK waits for it again\\. Cancel gives your changes up\\."));
    EXPECT_THAT(shell->said(), EndsWith("change 0001\nstatus 0\n"));
    expectNames({"window", "shell"});
}

TEST_F(WithShell, AQuestionOfSetupKeepsNobodyOut) {
    start("1");
    std::string said;
    configure([&] {
        enter(elanNameED, "window");
        edit(parameterFile, "= engineering", "= theirs");
        whileItWaits("Configuration Conflict", "tvctl set --file-only adapter1/lec2.elanName=shell", said);
        press(okBTN);
    });
    EXPECT_THAT(boxText, HasSubstr("LEC 1 ELAN Name: yours window, in the file theirs"));
    EXPECT_THAT(said, EndsWith("change 0001\nstatus 0\n"));
    expectNames({"window", "shell"});
}

TEST_F(WithShell, AChangeThatWaitsForItsConfirmationIsNamedBySetup) {
    start("1");
    std::string said;
    EXPECT_THAT(Shell("tvctl set adapter1/lec2.elanName=shell --confirm 100").said(), EndsWith("status 0\n"));
    configure([&] {
        enter(elanNameED, "window");
        whileItWaits("Configuration Busy", "tvctl confirm", said);
        press(okBTN);
    });
    EXPECT_THAT(boxText, MatchesRegex("The configuration is being changed by change 0001 of .* from .*, "
                                      "which waits [0-9]+ seconds for its confirmation\\..*"));
    EXPECT_EQ(said, "change 0001 confirmed\nstatus 0\n");
    expectNames({"window", "shell"});
}
