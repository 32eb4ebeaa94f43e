// Configurations as people and older tools leave them: any layout, keys and sections missing, unknown ones in
// between; and changes of them as dialogs make them. The same seed gives the same.
#pragma once

#include "model/tvdatbuf.h"

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

class RandomConfig {
  public:
    explicit RandomConfig(unsigned seed) : random_(seed) {}

    // The contents of the files by name, the parameter file among them.
    std::map<std::string, std::string> files() {
        std::map<std::string, std::string> files;
        lineEnd_ = chance(8) ? "\r\n" : "\n";
        std::string& text = files["/etc/atm/tvconf"];
        text = comment();
        for (int adapter : shuffled(std::vector{0, 1, 2, 3}))
            if (!chance(4)) text += adapterText(adapter, files);
        if (chance(3)) text += section("Other", {"Key = 1"}, 0);
        if (chance(10)) text.pop_back();
        return files;
    }

    // Changes settings and lists of one adapter, or only its lists.
    void change(AtmDevices& devices, int adapter, bool settings) {
        const auto a = static_cast<std::size_t>(adapter);
        for (AtmLEC& lec : devices.lec[a]) {
            changeList(lec.pvcs, [&] { return pvc<AtmBridgedPvc>(); });
            if (!settings || chance(2)) continue;
            changeNumbers(
                {&lec.enabled, &lec.pvcOnly, &lec.mtuClass, &lec.l3Mtu, &lec.useLecs, &lec.elanType});
            changeText(lec.elanName);
            changeAddress(lec.address);
        }
        for (AtmLES& les : devices.les[a]) {
            changeList(les.clients, [&] { return client(); });
            if (!settings || chance(2)) continue;
            changeNumbers({&les.enabled, &les.mtuClass, &les.strictMtu, &les.strictName, &les.elanType});
            changeText(les.elanName);
        }
        AtmIP1577& ip = devices.ip1577[a];
        changeList(ip.pvcs, [&] { return pvc<AtmRoutedPvc>(); });
        if (!settings) return;
        changeNumbers({&ip.enabled, &ip.pvcOnly});
        for (AddressText* text : {&ip.ip, &ip.serverIp, &ip.subnetMask}) changeText(*text);
        changeAddress(ip.address);
        AtmLECS& lecs = devices.lecs[a];
        changeNumbers({&lecs.enabled, &lecs.etherMtuClass, &lecs.tokenRingMtuClass, &lecs.elanType});
        changeAddress(lecs.address);
        AtmSig& sig = devices.sig[a];
        changeNumbers({&sig.uniRevision, &sig.addressRegistration, &sig.portChangeDetect});
        changeAddress(sig.address);
    }

    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }

  private:
    using Keys = std::vector<std::string>;

    std::string adapterText(int adapter, std::map<std::string, std::string>& files) {
        const std::string a = std::to_string(adapter);
        std::vector<std::string> sections;
        const auto add = [&](const std::string& name, const Keys& keys) {
            if (!chance(7)) sections.push_back(section(name, keys, 1));
        };
        add("Signalling0", {hex("NetPrefix", 26), number("UniRev"), number("AddressRegistration"),
                            number("PortChangeDetect"), number("RegDiffNetPrefix")});
        for (int m = 0; m < lecCount; ++m) {
            const std::string i = std::to_string(m);
            const std::string file = listFile("/etc/atm/pvcconf" + a + "." + i, "/etc/atm/bridged" + a + i);
            addList(files, file, pvcText<AtmBridgedPvc>());
            add("LEC" + i, {number("Enabled"), number("Config"), number("Mfs"), number("L3Mtu"),
                            number("ElanType"), number("Lecs"), name("ElanName"), hex("AtmPrefix", 26),
                            hex("AtmEsiSel", 14), "PvcConfFile = " + file});
        }
        for (int m = 0; m < lesCount; ++m) {
            const std::string i = std::to_string(m), file = listFile("/etc/atm/elan" + a + "." + i, "");
            addList(files, file, clientsText());
            add("LES" + i, {number("Enabled"), number("Mfs"), number("MfsStrict"), number("ElanNameStrict"),
                            name("ElanName"), number("ElanType"), "ElanTbl = " + file});
        }
        add("LECS0", {hex("AtmPrefix", 26), hex("AtmEsiSel", 14), number("Enabled"), number("EtherMfs"),
                      number("TRMfs"), number("ElanType")});
        const std::string file = listFile("/etc/atm/pvcconf" + a + ".32", "/etc/atm/routed" + a);
        addList(files, file, pvcText<AtmRoutedPvc>());
        add("IP15770", {hex("AtmPrefix", 26), hex("AtmEsiSel", 14), number("Enabled"), number("Config"),
                        "ServerIPAddress = 10.1.2." + std::to_string(below(256)), "ServerIPMask = 255.0.0.0",
                        "IPAddress = " + std::string(chance(3) ? "" : "10.1.2.3"), "PvcConfFile = " + file});
        std::string inner;
        for (const std::string& part : chance(2) ? shuffled(sections) : sections) inner += part;
        return section("Adapter" + a, {number("InterruptNumber")}, 0, inner);
    }

    // A file's name, or nothing.
    std::string listFile(const std::string& usual, const std::string& other) {
        return chance(4) ? "" : chance(3) ? other : usual;
    }

    static void addList(std::map<std::string, std::string>& files, const std::string& name,
                        const std::string& text) {
        if (!name.empty() && !text.empty()) files[name] = text;
    }

    std::string section(const std::string& name, Keys keys, int depth, const std::string& inner = "") {
        const std::string margin = chance(3) ? std::string(static_cast<std::size_t>(below(9)), ' ')
                                             : std::string(static_cast<std::size_t>(depth), '\t');
        std::string title = name;
        if (chance(5)) title.insert(title.size() - 1, chance(2) ? " = " : "=");
        std::string text = margin + "[" + title + remark() + lineEnd_;
        if (chance(3)) keys = shuffled(keys);
        for (const std::string& key : keys) {
            if (chance(9)) continue;
            static constexpr const char* forms[] = {"=", " = ", "\t\t= ", " =", "=   "};
            std::string line = key;
            line.replace(key.find(" = "), 3, forms[below(5)]);
            const bool joined = chance(14) && !key.ends_with(' ');  // a key would become the empty value
            text += (chance(9) ? "  " : margin + "\t") + line + remark() + (joined ? " " : lineEnd_);
            if (chance(12)) text += lineEnd_;
            if (chance(20)) text += comment();
            if (chance(20)) text += margin + "Unknown = " + std::to_string(below(99)) + lineEnd_;
        }
        if (!text.ends_with('\n')) text += lineEnd_;
        return text + inner + margin + "]" + remark() + lineEnd_;
    }

    std::string remark() { return chance(8) ? " # [remark] = " + std::string(20, 'r') : ""; }
    std::string comment() {
        return "# " + std::string(static_cast<std::size_t>(below(9) ? below(40) : 200), 'c') + lineEnd_;
    }
    std::string number(const char* key) {
        static constexpr const char* odd[] = {"", "01", "70000", "-1", "0x1", "7a"};
        return std::string(key) + " = " + (chance(6) ? odd[below(6)] : std::to_string(below(3)));
    }
    std::string name(const char* key) {
        return std::string(key) + " = " +
               (chance(5) ? std::string(static_cast<std::size_t>(below(50)), 'n')
                          : "e" + std::to_string(below(9)));
    }
    std::string hex(const char* key, int digits) {
        const char* set = chance(3) ? "0123456789ABCDEF" : "0123456789abcdef";
        std::string text = std::string(key) + " = ";
        for (int i = chance(8) ? below(digits) : 0; i < digits; ++i) text += set[below(16)];
        return text;
    }

    template <class Pvc> std::string pvcText() {
        std::string text = chance(9) ? "# a list\n" : "";
        for (int count = chance(3) ? 0 : below(51); count > 0; --count) text += pvcRecord(pvc<Pvc>());
        return text;
    }
    std::string pvcRecord(const auto& entry) {
        std::vector<std::string> lines{
            "VC =" + std::to_string(static_cast<std::int16_t>(entry.vci)), "Addr =" + addressText(entry),
            "Encap = " + std::to_string(entry.encapsulation), "Bcast=" + std::to_string(entry.broadcast),
            "Rate  =" + std::to_string(entry.rate)};
        std::string text = "[PVC\n";
        for (const std::string& line : chance(4) ? shuffled(lines) : lines) text += "\t" + line + "\n";
        return text + "]\n" + (chance(2) ? "\n" : "");
    }
    static std::string addressText(const AtmBridgedPvc& pvc) {
        std::string text = pvc.mac.GetFMacAddress();
        std::erase(text, ':');
        return text;
    }
    static std::string addressText(const AtmRoutedPvc& pvc) { return pvc.ip.GetFIPAddress(); }
    std::string clientsText() {
        std::string text;
        for (int count = chance(3) ? 0 : below(51); count > 0; --count)
            text += std::string(client().GetFEsiSelector()) + (chance(9) ? "  \n" : "\n");
        return text;
    }

    template <class Pvc> Pvc pvc() {
        Pvc made{};
        made.vci = static_cast<std::uint16_t>(32 + below(60));
        made.encapsulation = below(2);
        made.broadcast = below(2);
        made.rate = below(26);
        if constexpr (requires { made.mac; }) made.mac.bytes()[5] = static_cast<std::uint8_t>(below(9));
        return made;
    }
    esiSelector client() {
        return esiSelector({0, 0xa0, 0x3e, 0, 0, static_cast<std::uint8_t>(below(200)), 0});
    }

    void changeList(auto& list, auto make) {
        if (!chance(3)) return;
        if (chance(4)) list.clear();
        for (int edits = below(4); edits > 0; --edits) {
            const bool end = list.empty() || chance(3);
            if (end)
                list.push_back(make());
            else if (chance(2))
                list.erase(list.begin() + below(static_cast<int>(list.size())));
            else
                list[static_cast<std::size_t>(below(static_cast<int>(list.size())))] = make();
        }
    }
    void changeNumbers(const std::vector<std::int32_t*>& numbers) {
        for (std::int32_t* number : numbers)
            if (chance(4)) *number = chance(9) ? below(100000) : below(4);
    }
    template <std::size_t size> void changeText(FixedText<size>& text) {
        static constexpr const char* texts[] = {"", "two words", "hash#", "[", "plain", "x=y"};
        if (!chance(4)) return;
        if (chance(4))
            text = std::string_view(texts[below(6)]);
        else
            text = std::string(static_cast<std::size_t>(below(static_cast<int>(size))), 'y');
    }
    void changeAddress(atmAddress& address) {
        if (!chance(3)) return;
        for (int half = 0; half < 2; ++half) {
            std::string digits;
            for (int i = half ? 14 : 26; i > 0; --i) digits += "0123456789abcdef"[below(16)];
            if (chance(2)) continue;
            if (half)
                address.setESISelector(digits);
            else
                address.setNetworkPrefix(digits);
        }
    }

    template <class T> std::vector<T> shuffled(std::vector<T> items) {
        for (std::size_t i = items.size(); i > 1; --i)
            std::swap(items[i - 1], items[static_cast<std::size_t>(below(static_cast<int>(i)))]);
        return items;
    }

    std::mt19937 random_;
    std::string lineEnd_ = "\n";
};
