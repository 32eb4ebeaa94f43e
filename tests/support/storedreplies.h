// A driver that answers every query with the bytes that a test puts there; zeros where there are none. It is
// in the device's place while it lives.
#pragma once

#include "driver/dai_api.h"
#include "driver/queries.h"
#include "platform/device.h"
#include "tests/support/bytes.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <set>

class StoredReplies : public platform::Device {
  public:
    std::map<QueryId, ByteVector> replies = {};  // of a table all rows
    std::set<QueryId> refused = {};

    StoredReplies() : before_(platform::setDevice(this)) {}
    ~StoredReplies() override { platform::setDevice(before_); }
    StoredReplies(const StoredReplies&) = delete;
    StoredReplies& operator=(const StoredReplies&) = delete;

    int open(std::string_view, int) override { return 7; }
    int close(int) override { return 0; }

    int streamsIoctl(int, int, platform::strioctl& block) override {
        const std::span message(reinterpret_cast<std::uint8_t*>(block.ic_dp),
                                static_cast<std::size_t>(block.ic_len));
        const auto wire = message.first<req_param_t::wireSize>();
        req_param_t header = req_param_t::unpack(wire);
        header.Resp = 0;
        for (int i = 0; i < static_cast<int>(QueryId::count); ++i) {
            const Query& query = queryOf(static_cast<QueryId>(i));
            if (query.prim != header.Prim) continue;
            if (refused.contains(query.id) && query.type == header.Type) return errno = EIO, -1;
            const ByteVector& bytes = replies[query.id];
            const std::size_t rows = bytes.size() / query.size;
            if (query.countType == header.Type && query.chunkRows)
                header.NRow = static_cast<std::uint16_t>(rows);
            if (query.type != header.Type) continue;
            std::span<const std::uint8_t> data(bytes);
            if (query.chunkRows) {
                const std::size_t first = header.RowM - std::size_t{1};
                const std::size_t count = std::min<std::size_t>(header.NRow, rows - first);
                data = data.subspan(first * query.size, count * query.size);
                header.NRow = static_cast<std::uint16_t>(count);
                header.RowM = static_cast<std::uint16_t>(header.RowM + count);
            }
            std::ranges::copy(data, message.subspan(req_param_t::wireSize).begin());
        }
        header.pack(wire);
        return 0;
    }

  private:
    platform::Device* before_;
};
