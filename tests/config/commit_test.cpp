// Whatever happens to a save, the file is the complete old one or the complete new one.
#include "config/pdf_io.h"
#include "tests/support/failingfiles.h"
#include "tests/support/temproot.h"

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr const char* file = "/etc/atm/tvconf";

// With 200 lines around it, longer than a stream's buffer: a copy is written in pieces, partly while
// searching.
std::string content(int number) {
    const std::string filler = "# " + std::string(110, 'f') + "\n";
    std::string text;
    for (int i = 0; i < 200; ++i) text += filler;
    text += "[A\n\t[B\n\t\tk = " + std::to_string(number) + "\n\t]\n";
    for (int i = 0; i < 200; ++i) text += filler;
    return text + "]\n";
}

const std::string created = "\t[C\n\t\tk\t\t\t= 2\n\t]\n]\n";

// 0, or the errno with which the save failed.
int save(const char* path, std::int32_t number) {
    SectionHandle* handle = OpenSection(file, path, sectionForWriting);
    if (!handle) return errno ? errno : -1;
    if (WriteKey(handle, "k", &number, keyLong, 4) != 0) {
        AbandonSections();
        return -1;
    }
    return CloseSection(handle) == 0 ? 0 : errno ? errno : -1;
}

}  // namespace

TEST(Commit, EveryCallFailedInTurn) {
    const TempRoot root;
    const std::string before = content(1);
    const struct {
        const char* path;
        std::string after;
    } saves[] = {{"/A/B", content(2)}, {"/A/C", before.substr(0, before.size() - 2) + created}};
    testing::internal::CaptureStdout();
    for (const auto& [path, after] : saves) {
        for (const int error : {ENOSPC, EIO, EACCES, EROFS}) {
            int k = 1;
            for (bool failed = true; failed; ++k) {
                root.write(file, before);
                int result = 0;
                {
                    FailingFiles files;
                    files.failAt(k, error);
                    result = save(path, 2);
                    failed = files.failed();
                    // A stale copy that is not there, a file that was only read and the choice of the copy's
                    // place do not decide about a save.
                    const auto last =
                        std::min<std::size_t>(static_cast<std::size_t>(k), files.calls().size()) - 1;
                    const FileCall kind = files.calls()[last].kind;
                    const bool harmless =
                        kind == FileCall::remove || kind == FileCall::close || kind == FileCall::statusAt;
                    if (!failed || !harmless) {
                        EXPECT_EQ(result, failed ? error : 0) << path << " call " << k;
                    }
                }
                const std::string now = root.read(file);
                EXPECT_TRUE(now == after || (result != 0 && now == before)) << path << " call " << k;
                EXPECT_EQ(root.temporaryCopies(), 0) << path << " call " << k;
            }
            EXPECT_GT(k, 20);
        }
    }
    const std::string lines = testing::internal::GetCapturedStdout();
    for (const char* expected :
         {"OpenSection: Error Opening File /etc/atm/tvconf\n", "OpenSection: Error Writing File /etc/atmTV",
          "CreateSection: Error Writing File /etc/atmTV", "CloseSection: Error Writing File /etc/atmTV",
          "CloseSection: Rename Error\n\n"})
        EXPECT_NE(lines.find(expected), std::string::npos) << expected;
}

// Also when the process is killed between two calls.
TEST(Commit, ShortWritesAreContinuedAndTheFileIsWholeAllTheTime) {
    const TempRoot root;
    root.write(file, content(1));
    FailingFiles files;
    files.limitWrites(1000);
    files.onCall = [&](FileCall) {
        const std::string now = root.read(file);
        EXPECT_TRUE(now == content(1) || now == content(2));
    };
    ASSERT_EQ(save("/A/B", 2), 0);
    EXPECT_EQ(root.read(file), content(2));
    std::string order;
    for (const FailingFiles::Call& call : files.calls()) {
        if (call.kind == FileCall::sync) order += "sync ";
        if (call.kind == FileCall::takeAttributes) order += "attributes ";
        if (call.kind == FileCall::rename) order += "rename ";
        if (call.kind == FileCall::write && order.ends_with("sync ")) order += "late write ";
    }
    EXPECT_EQ(order, "attributes sync rename sync ");
}

// What else the copy takes is shown where several files are saved.
TEST(Commit, ModeAndLinkAreKept) {
    const TempRoot root;
    root.write("/srv/real", content(1));
    ASSERT_EQ(::chmod(root.at("/srv/real").c_str(), 0640), 0);
    fs::create_symlink("../../srv/real", root.at(file));
    root.write(fmt::format("/etc/atmTV{:x}", ::getpid()), "left by a killed process");

    ASSERT_EQ(save("/A/B", 2), 0);
    EXPECT_TRUE(fs::is_symlink(root.at(file)));
    EXPECT_EQ(root.read("/srv/real"), content(2));
    EXPECT_EQ(fs::status(root.at(file)).permissions(), fs::perms(0640));
    EXPECT_EQ(root.temporaryCopies(), 0);
}

TEST(Commit, TheCopyStandsBesideAFileOnAnotherFileSystem) {
    struct OtherFileSystem : FailingFiles {
        using FailingFiles::status;
        int status(const platform::HostPath& path, struct stat& result) override {
            const int answer = FailingFiles::status(path, result);
            result.st_dev += 1;
            return answer;
        }
    };
    const TempRoot root;
    root.write(file, content(1));
    const OtherFileSystem files;
    ASSERT_EQ(save("/A/B", 2), 0);
    EXPECT_EQ(root.read(file), content(2));
    for (const FailingFiles::Call& call : files.calls())
        if (call.kind == FileCall::rename) {
            EXPECT_TRUE(call.path.starts_with(root.at("/etc/atm/TV").string()));
        }
}
