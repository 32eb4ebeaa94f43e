// One adapter's files, cut at every byte and with every byte changed: whatever is left is read, and what can
// be saved is the same when it is saved again.
#include "config/driverpdf.h"

#include "fixture.h"
#include "tests/support/memoryfiles.h"

TEST(Damaged, FilesAreReadAndSaved) {
    const struct {
        std::string name, content;
    } all[] = {{"/etc/atm/tvconf", adapterText(0)},
               {"/etc/atm/routed0", routedText},
               {"/etc/atm/bridged0", bridgedText},
               {"/etc/atm/clients0", clientText}};
    std::string unstable;
    testing::internal::CaptureStdout();
    for (const auto& damagedFile : all) {
        const std::string &name = damagedFile.name, &content = damagedFile.content;
        for (std::size_t at = 0; at < content.size(); ++at) {
            for (const int flip : {-1, 0x01, 0x20, 0x80}) {
                MemoryFiles files;
                for (const auto& file : all) files.put(file.name, file.content);
                std::string damaged = content.substr(0, flip < 0 ? at : content.npos);
                if (flip >= 0) damaged[at] = static_cast<char>(damaged[at] ^ flip);
                files.put(name, damaged);
                AtmDevices devices;
                DriverPdfEdit editor(nullptr, false, devices);
                editor.ReadSig(0);
                editor.ReadLECs(0);
                editor.ReadLESs(0);
                editor.ReadIP1577(0);
                if (name != all[0].name) continue;
                const auto save = [&] {
                    editor.WriteSig(0);
                    editor.WriteLECs(0);
                    editor.WriteIP1577(0);
                    editor.CloseKey();
                    return editor.files().text(name);
                };
                const std::string once = save();
                if (save() != once && unstable.empty()) unstable = damaged;
            }
        }
    }
    EXPECT_FALSE(testing::internal::GetCapturedStdout().empty());
    EXPECT_EQ(unstable, "");
}
