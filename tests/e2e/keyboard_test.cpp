// An everyday task without a pointer.
#include "config/driverpdf.h"
#include "tests/e2e/outsideuser.h"

namespace {

// The keys, in the order in which a user presses them; a name or a number is as many keys as it has
// characters.
class Typist {
  public:
    explicit Typist(OutsideUser& user) : user_(user) {}
    void keys(const char* key, int times = 1) {
        for (int i = 0; i < times; ++i) press(key);
    }
    void text(std::string_view text) {
        for (const char c : text) press(std::string(1, c).c_str());
    }
    int pressed() const { return pressed_; }

  private:
    void press(const char* key) {
        user_.pressKey(key);
        ++pressed_;
    }

    OutsideUser& user_;
    int pressed_ = 0;
};

}  // namespace

TEST(Keyboard, AClientGetsItsNameItsMtuAndFivePvcs) {
    Place place;
    std::string file = place.root.read("/etc/atm/tvconf");
    const std::size_t client = file.find("[LEC1");
    file.replace(file.find("= 2", client), 3, "= 1");  // 1516 bytes
    file.replace(file.find("= 4470", client), 6, "= 1500");
    place.root.write("/etc/atm/tvconf", file);

    Administrator administrator(place.root);
    OutsideUser& user = administrator.user;
    Typist typist(user);
    typist.keys("Return");  // on the adapter: Setup
    ASSERT_TRUE(user.sees("Setup ATM")) << administrator.tool.output();
    for (int strip = 0; strip < 2; ++strip) {  // LEC..., and LEC 2 of its strip
        typist.keys("Right");
        typist.keys("space");
        typist.keys("Tab");
    }
    typist.keys("Tab", 3);  // past Enable, PVC Only and the MAC address
    typist.text("research");
    typist.keys("Tab", 2);
    typist.keys("Down");
    typist.keys("Tab", 7);  // to Add
    for (int vci = 201; vci <= 205; ++vci) {
        typist.keys("Return");
        ASSERT_TRUE(user.sees("PVC Settings")) << vci;
        typist.text(fmt::format("002040000{}", vci));
        typist.keys("Tab");
        typist.text(std::to_string(vci));
        typist.keys("Return");
        ASSERT_TRUE(soon([&] { return !user.isUp("PVC Settings"); })) << vci;
        ASSERT_TRUE(user.sees("Setup ATM"));
    }
    typist.keys("Tab", 3);
    typist.keys("Return");  // on OK
    ASSERT_TRUE(soon([&] { return !user.isUp("Setup ATM"); }));

    AtmDevices saved;
    ASSERT_TRUE(DriverPdfEdit(nullptr, false, saved).ReadPdf());
    const AtmLEC& lec = saved.lec[0][1];
    EXPECT_EQ(lec.elanName.view(), "research");
    EXPECT_EQ(lec.mtuClass, 2);
    EXPECT_EQ(lec.l3Mtu, 4544);  // raised with it
    ASSERT_EQ(lec.pvcs.size(), 5U);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(lec.pvcs[static_cast<std::size_t>(i)].vci, 201 + i);
    EXPECT_EQ(typist.pressed(), 122);
}
