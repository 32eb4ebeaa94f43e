// Files that cannot be written: too large for the process, on a full disk, on one that is read-only.
#include "tests/e2e/configurationtest.h"

#include <fstream>
#include <sys/mount.h>
#include <sys/resource.h>

class DiskTest : public ConfigurationTest {
  protected:
    // Adds a PVC and changes a name under the fault, and says what the box said.
    std::string saveUnder(const std::function<void()>& fault, const std::function<void()>& over, int close) {
        atmDevices = AtmDevices();
        start("1");
        const auto before = files();
        expectBoxes({"Configuration Error"}, [&] {
            enter(elanNameED, "other");
            addPvc();
            fault();
            press(close);
        });
        EXPECT_EQ(files(), before) << "the old files, whole, and no copy";
        over();
        window.reset();  // saves the list
        EXPECT_NE(root.read("/etc/atm/pvcconf0.0").find("=204"), std::string::npos);
        EXPECT_EQ(files().size(), before.size());
        return boxText;
    }
};

namespace {

// A small file system of its own; `error` is 0 when it could be mounted.
struct Mounted {
    std::string folder;
    int error;

    explicit Mounted(std::string place)
        : folder(std::move(place)),
          error(::mount("tarvolin", folder.c_str(), "tmpfs", 0, "size=64k") ? errno : 0) {}
    ~Mounted() { ::umount2(folder.c_str(), MNT_DETACH); }
    Mounted(const Mounted&) = delete;
    Mounted& operator=(const Mounted&) = delete;

    void turn(unsigned long flags) const {
        EXPECT_EQ(::mount("tarvolin", folder.c_str(), "tmpfs", MS_REMOUNT | flags, "size=64k"), 0);
    }
};

}  // namespace

TEST_F(DiskTest, ALimitOfTheProcessIsNoEndOfIt) {
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{400, before.rlim_max};
    EXPECT_EQ(saveUnder([&] { ::setrlimit(RLIMIT_FSIZE, &small); },
                        [&] { ::setrlimit(RLIMIT_FSIZE, &before); }, okBTN),
              saveFailed(parameterFile, "File too large"));
}

TEST_F(DiskTest, AFullOrReadOnlyDiskLeavesTheOldFiles) {
    const Mounted disk(root.at("/etc/atm").string());
    if (disk.error) GTEST_SKIP() << "no file system may be mounted: " << std::strerror(disk.error);
    writeSampleConfiguration(root);
    std::filesystem::create_directory(root.at("/etc/atm/full"));
    const auto fill = [&] {
        for (std::string part(4096, 'x'); !part.empty(); part.resize(part.size() / 2)) {
            std::ofstream file(root.at("/etc/atm/full/file"), std::ios::app | std::ios::binary);
            while (file.write(part.data(), static_cast<std::streamsize>(part.size())).flush()) {
            }
        }
    };
    for (const int close : {okBTN, cancelBTN}) {
        const char* file = close == okBTN ? parameterFile : "/etc/atm/pvcconf0.0";
        root.write("/etc/atm/full/file", "");
        EXPECT_EQ(saveUnder(
                      fill, [&] { std::filesystem::resize_file(root.at("/etc/atm/full/file"), 0); }, close),
                  saveFailed(file, "No space left on device"));
        writeSampleConfiguration(root);
        EXPECT_EQ(saveUnder([&] { disk.turn(MS_RDONLY); }, [&] { disk.turn(0); }, close),
                  saveFailed(file, "Read-only file system"));
        writeSampleConfiguration(root);
    }
}
