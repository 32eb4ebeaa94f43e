#include "change/firstfile.h"

#include "config/newparameters.h"
#include "tests/support/failingfiles.h"
#include "tests/support/holder.h"
#include "tests/support/temproot.h"

namespace {

constexpr const char* file = PdfEdit::parameterFile;
const std::vector<int> adapters{0, 1};

struct FirstFile : testing::Test {
    TempRoot root;
    AtmDevices devices;
    Configuration configuration{"tarvolin", devices};
    const std::string text = newParameters(adapters, [](const std::string&) { return true; });
};

}  // namespace

TEST_F(FirstFile, IsWrittenOnce) {
    EXPECT_TRUE(parameterFileIsMissing());
    EXPECT_EQ(writeFirstFile(configuration, adapters), std::nullopt);
    EXPECT_EQ(root.read(file), text);
    EXPECT_FALSE(parameterFileIsMissing());
    root.write(file, "# of somebody else\n");
    EXPECT_EQ(writeFirstFile(configuration, adapters), std::nullopt);
    EXPECT_EQ(root.read(file), "# of somebody else\n");
    EXPECT_EQ(root.temporaryCopies(), 0);
}

TEST_F(FirstFile, ItsDirectoryIsMadeAndALinkIsFollowed) {
    std::filesystem::remove(root.at("/etc/atm"));
    EXPECT_TRUE(parameterFileIsMissing());
    EXPECT_EQ(writeFirstFile(configuration, adapters), std::nullopt);
    EXPECT_EQ(root.read(file), text);
    std::filesystem::remove(root.at(file));
    std::filesystem::create_symlink("../real", root.at(file));
    EXPECT_EQ(writeFirstFile(configuration, adapters), std::nullopt);
    EXPECT_EQ(root.read("/etc/real"), text);
    EXPECT_TRUE(std::filesystem::is_symlink(root.at(file)));
}

// Whatever call fails there is no file, or the whole one, and a word about it.
TEST_F(FirstFile, EveryFailureLeavesNoneOrAWholeOne) {
    int failures = 0;
    for (int k = 1;; ++k) {
        SCOPED_TRACE(k);
        std::filesystem::remove(root.at(file));
        std::optional<SaveFailure> failure;
        {
            FailingFiles files;
            files.failAt(k, EIO);
            failure = writeFirstFile(configuration, adapters);
            if (!files.failed()) break;
        }
        if (failure) {
            ++failures;
            EXPECT_THAT(failure->reason, testing::HasSubstr("Input/output error"));
        }
        if (root.exists(file)) {
            EXPECT_THAT(root.read(file), testing::StartsWith(text.substr(0, text.find("PvcConfFile"))));
            EXPECT_THAT(root.read(file), testing::EndsWith("\t]\n]\n"));
        } else {
            EXPECT_TRUE(failure) << "and nothing is said of it";
        }
        EXPECT_EQ(configuration.lock(std::chrono::milliseconds(0), *std::make_unique<std::string>()), 0);
        configuration.unlock();
        EXPECT_EQ(root.temporaryCopies(), 0);
    }
    EXPECT_GT(failures, 4);
}

TEST_F(FirstFile, OneThatAppearsMeanwhileStays) {
    FailingFiles files;
    files.onCall = [&](FileCall kind) {
        if (kind == FileCall::sync && !root.exists(file)) root.write(file, "# theirs\n");
    };
    EXPECT_EQ(writeFirstFile(configuration, adapters), std::nullopt);
    EXPECT_EQ(root.read(file), "# theirs\n");
    EXPECT_EQ(root.temporaryCopies(), 0);
}

TEST_F(FirstFile, WaitsForTheLockAndSaysWhoHoldsIt) {
    const Holder other;
    const auto failure = writeFirstFile(configuration, adapters);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->reason, "the configuration is being changed by " + other.name());
    EXPECT_FALSE(root.exists(file));
}
