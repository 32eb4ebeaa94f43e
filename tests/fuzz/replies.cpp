// Replies of a hostile driver through every query and every view. Each request takes a control byte of the
// input: what the driver does to the header and how many of the next input bytes become the reply's data.
#include "driver/dai_io.h"
#include "platform/device.h"

#include <algorithm>
#include <cerrno>
#include <concepts>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <optional>

namespace {

class Input {
  public:
    explicit Input(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::span<const std::uint8_t> take(std::size_t count) {
        const auto taken = bytes_.first(std::min(count, bytes_.size()));
        bytes_ = bytes_.subspan(taken.size());
        return taken;
    }
    std::uint8_t byte() {
        const auto one = take(1);
        return one.empty() ? std::uint8_t{0} : one[0];
    }
    std::uint16_t word() {
        const unsigned low = byte();
        return static_cast<std::uint16_t>(low | unsigned{byte()} << 8);
    }
    // A number of rows: mostly small, or most of the time would go into tables of megabytes.
    std::uint16_t rows() {
        const std::uint8_t few = byte();
        return few < 250 ? few : word();
    }
    bool empty() const { return bytes_.empty(); }

  private:
    std::span<const std::uint8_t> bytes_;
};

class HostileDriver : public platform::Device {
  public:
    explicit HostileDriver(Input& input) : input_(input) {}

    int open(std::string_view, int) override { return 7; }
    int close(int) override { return 0; }

    int streamsIoctl(int, int, platform::strioctl& block) override {
        const auto length = static_cast<std::size_t>(block.ic_len);
        // The message is the driver's to write: all of it must be there.
        char* const message = block.ic_dp;
        if (length < req_param_t::wireSize) std::abort();
        volatile char last = message[length - 1];
        message[length - 1] = last;

        constexpr int fail = 1, unanswered = 2, tellRows = 4, tellMarker = 8, spoilHeader = 16, longData = 32,
                      fill = 64;
        const std::uint8_t control = input_.byte();
        if (control & fail) {
            errno = input_.byte();
            return -1;
        }
        const auto put = [message](std::size_t at, std::uint16_t value) {
            std::memcpy(message + at, &value, 2);
        };
        if (!(control & unanswered)) put(14, 0);
        if (control & tellRows) put(12, input_.rows());
        if (control & tellMarker) put(10, input_.word());
        if (control & spoilHeader)
            for (const std::size_t field : {0U, 2U, 4U, 6U, 8U}) put(field, input_.word());
        if (control & fill) std::memset(message + 16, 0xff, length - 16);
        const auto data = input_.take(
            std::min<std::size_t>(control & longData ? input_.word() : input_.byte(), length - 16));
        if (!data.empty()) std::memcpy(message + 16, data.data(), data.size());
        return 0;
    }

  private:
    Input& input_;
};

// Reads every field of every view. What was read is summed up, so that no read can be left out by the
// compiler.
struct Reader {
    std::uint64_t total = 0;

    template <std::integral Number> void see(Number v) { total = total * 31 + static_cast<std::uint64_t>(v); }
    template <typename Bytes> void seeEach(const Bytes& bytes) {
        for (const auto byte : bytes) see(byte);
    }
    void see(const macAddress& v) { seeEach(v.bytes()); }
    void see(const esiSelector& v) { seeEach(v.bytes()); }
    void see(const ipAddress& v) { seeEach(v.bytes()); }
    void see(const atmAddress& v) { seeEach(v.digits()); }
    void see(const std::string& v) {
        if (v.size() > 32 || v.find('\0') != std::string::npos) std::abort();
        seeEach(v);
    }
    template <typename... Fields> void all(const Fields&... fields) { (see(fields), ...); }

    void read(const BoardStateView& v) { all(v.count(), v.mask()); }
    void read(const BoardMacView& v) { see(v.address()); }
    void read(const PackageRevView& v) { see(v.text()); }
    void read(const AalStatsView& v) {
        all(v.txCells(), v.rxCells(), v.txPackets(), v.rxPackets(), v.rxCellErrors(), v.rxFrameErrors());
        all(v.rxDropped(), v.txDropped(), v.invalidVcis(), v.invalidVpis());
    }
    void read(const SuniStatsView& v) {
        all(v.linkKind(), v.valid(), v.linkAlarm(), v.outOfFrame(), v.lossOfFrame(), v.lossOfSignal());
        all(v.farEndFailure(), v.alarmIndication(), v.lossOfPointer());
    }
    void read(const LinkStateView& v) { all(v.ilmi(), v.saal(), v.signalling(), v.address()); }
    void read(const VcRowView& v) { all(v.vci(), v.tx(), v.rx()); }
    void read(const LecStateView& v) { all(v.state(), v.flag()); }
    void read(const LecStatsView& v) {
        all(v.address(), v.elanType(), v.mtuClass(), v.elanName(), v.mac());
        for (int i = 0; i < 4; ++i) all(v.vci(LecConnection(i)), v.address(LecConnection(i)));
    }
    void read(const LecRowView& v) { all(v.mac(), v.switched(), v.address(), v.vci(), v.tx(), v.rx()); }
    void read(const LesStateView& v) { all(v.state(), v.flag()); }
    void read(const LesStatsView& v) {
        all(v.address(), v.busAddress(), v.elanType(), v.mtuClass(), v.elanName());
    }
    void read(const LesRowView& v) {
        all(v.mac(), v.address(), v.state(), v.controlVci(), v.controlTx(), v.controlRx());
        all(v.multicastVci(), v.multicastTx(), v.multicastRx());
    }
    void read(const LecsStateView& v) { see(v.state()); }
    void read(const LecsStatsView& v) {
        all(v.address(), v.elanType(), v.etherMtuClass(), v.tokenRingMtuClass(), v.registered());
        all(v.validRequests(), v.invalidRequests(), v.rejected(), v.connectionsMade(), v.connectionsOpen());
    }
    void read(const LecsRowView& v) { all(v.client(), v.les(), v.kind()); }
    void read(const IpStateView& v) { see(v.state()); }
    void read(const IpStatsView& v) { all(v.txPackets(), v.txDropped(), v.rxPackets(), v.rxDropped()); }
    void read(const IpRowView& v) {
        all(v.state(), v.switched(), v.vci(), v.tx(), v.rx(), v.ip(), v.address());
    }
    void read(const PvcRowView& v) { seeEach(v.bytes()); }

    // The first and last rows are enough: all rows are read alike.
    template <typename Row> void read(const TableView<Row>& table) {
        for (std::size_t i = 0; i < std::min<std::size_t>(table.size(), 4); ++i) read(table[i]);
        if (table.size()) read(table[table.size() - 1]);
        if (table[table.size()]) std::abort();
    }
};

struct Services {
    Services() { channel.open(O_RDONLY); }

    DriverChannel channel;
    vccInfo vcc{channel, 0};
    lecInfo lec{channel, 0};
    lesInfo les{channel, 0};
    lecsInfo lecs{channel, 0};
    sigInfo sig{channel, 0};
    ip1577Info ip{channel, 0};
    aalInfo aal{channel, 0};
};

constexpr void (*queries[])(Services&, Input&, Reader&) = {
    [](Services& s, Input&, Reader& r) { r.read(s.vcc.GetEntireTable()); },
    [](Services& s, Input& in, Reader& r) { r.read(s.vcc.GetTable(1, in.rows())); },
    [](Services& s, Input& in, Reader& r) { r.read(s.vcc.GetVciEntry(in.word())); },
    [](Services& s, Input&, Reader& r) { r.read(s.lec.GetState()); },
    [](Services& s, Input&, Reader& r) { r.read(s.lec.GetStats()); },
    [](Services& s, Input&, Reader& r) { r.read(s.lec.GetEntireTable()); },
    [](Services& s, Input& in, Reader& r) { r.read(s.lec.GetTable(1, in.rows())); },
    [](Services& s, Input&, Reader& r) { r.read(s.les.GetState()); },
    [](Services& s, Input&, Reader& r) { r.read(s.les.GetStats()); },
    [](Services& s, Input&, Reader& r) { r.read(s.les.GetEntireTable()); },
    [](Services& s, Input& in, Reader& r) { r.read(s.les.GetTable(1, in.rows())); },
    [](Services& s, Input&, Reader& r) { r.read(s.lecs.GetState()); },
    [](Services& s, Input&, Reader& r) { r.read(s.lecs.GetStats()); },
    [](Services& s, Input&, Reader& r) { r.read(s.lecs.GetEntireTable()); },
    [](Services& s, Input& in, Reader& r) { r.read(s.lecs.GetTable(1, in.rows())); },
    [](Services& s, Input&, Reader& r) { r.read(s.sig.GetLinkState()); },
    [](Services& s, Input&, Reader& r) { r.read(s.ip.GetState()); },
    [](Services& s, Input&, Reader& r) { r.read(s.ip.GetStats()); },
    [](Services& s, Input&, Reader& r) { r.read(s.ip.GetEntireTable()); },
    [](Services& s, Input&, Reader& r) { r.read(s.ip.GetTable()); },  // NRow as the last reply left it
    [](Services& s, Input&, Reader& r) { r.read(s.ip.GetEntirePvcTable()); },
    [](Services& s, Input&, Reader& r) { r.read(s.ip.GetPvcTable()); },
    [](Services& s, Input&, Reader& r) { r.read(s.aal.GetBoardState()); },
    [](Services& s, Input& in, Reader& r) { r.read(s.aal.GetBoardMacAddress(in.word())); },
    [](Services& s, Input&, Reader& r) { r.read(s.aal.GetAalStats()); },
    [](Services& s, Input&, Reader& r) { r.read(s.aal.GetSuniStats()); },
    [](Services& s, Input&, Reader& r) { r.read(s.aal.GetPackageRev()); },
};

volatile std::uint64_t seen;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    Input input({bytes, count});
    HostileDriver driver(input);
    platform::Device* const before = platform::setDevice(&driver);
    std::optional<Services> services(std::in_place);
    Reader reader;
    // At most 16 queries: a whole table can take thousands of requests.
    for (int i = 0; i < 16 && !input.empty(); ++i)
        queries[input.byte() % std::size(queries)](*services, input, reader);
    seen = reader.total;
    services.reset();  // closes the channel
    platform::setDevice(before);
    return 0;
}
