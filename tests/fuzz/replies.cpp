// Replies of a hostile driver through every query, every view and every named value. Each request takes a
// control byte of the input: what the driver does to the header and how many of the next input bytes become
// the reply's data.
#include "driver/dai_io.h"
#include "metrics/reading.h"
#include "platform/device.h"

#include <algorithm>
#include <cerrno>
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
                      fill = 64, cut = 128;
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
        if (control & cut) block.ic_len = std::min<int>(block.ic_len, input_.word());
        return 0;
    }

  private:
    Input& input_;
};

// Reads every view: all its bytes, which are what a field can be, and what is more than bytes at a place.
// What was read is summed up, so that no read can be left out by the compiler.
struct Reader {
    std::uint64_t total = 0;

    void see(const auto& bytes) {
        for (const auto byte : bytes) total = total * 31 + static_cast<std::uint64_t>(byte);
    }
    void seeText(const std::string& text) {
        if (text.size() > 32 || text.find('\0') != std::string::npos) std::abort();
        see(text);
    }

    void read(const ReplyView& v) { see(v.bytes()); }
    void read(const PackageRevView& v) { seeText(v.text()); }
    void read(const LecStatsView& v) {
        see(v.bytes());
        seeText(v.elanName());
        for (int i = 0; i < 4; ++i)
            total += v.vci(LecConnection(i)), see(v.address(LecConnection(i)).digits());
    }
    void read(const LesStatsView& v) {
        see(v.bytes());
        seeText(v.elanName());
    }

    // The first and last rows are enough: all rows are read alike.
    template <typename Row> void read(const TableView<Row>& table) {
        for (std::size_t i = 0; i < std::min<std::size_t>(table.size(), 4); ++i) read(table[i]);
        if (table.size()) read(table[table.size() - 1]);
        if (table[table.size()]) std::abort();
    }
};

// All values of an adapter or a service; of a table those of its first and last rows.
void readValues(DriverChannel& channel, std::uint8_t which, Reader& reader) {
    const std::vector<metrics::Place> places = metrics::placesOf(0);
    const metrics::Reading reading = metrics::Reader(channel).read(places[which % places.size()]);
    for (const metrics::Group& group : metrics::groupsOf(reading.place().service)) {
        const std::size_t rows = group.isTable() ? reading.rows(group) : 1;
        for (std::size_t row = 0; row < rows; row = row == 3 && rows > 5 ? rows - 1 : row + 1)
            for (const metrics::Metric& metric : group.metrics) {
                const metrics::Value value = reading.value(group, metric, row);
                if (reading.missing(group) && !std::holds_alternative<metrics::Unknown>(value)) std::abort();
                if (const std::string* text = std::get_if<std::string>(&value)) reader.see(*text);
            }
    }
}

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
    [](Services& s, Input& in, Reader& r) { readValues(s.channel, in.byte(), r); },
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
