#include "driver/queries.h"

#include "driver/layout.h"
#include "platform/index.h"

#include <array>

namespace {

// Messages for these three tables have at most 1023 bytes with their header: 1007 bytes of whole rows.
constexpr std::uint16_t lecChunk = 1007 / layout::lecRow::size;
constexpr std::uint16_t lesChunk = 1007 / layout::lesRow::size;
constexpr std::uint16_t vcChunk = 1007 / layout::vcRow::size;

// The other tables are requested whole, as far as the 16-bit Size of the header allows.
template <std::size_t rowSize> constexpr std::uint16_t wholeTable = (65535 - 16) / rowSize;

constexpr std::array queries{
    // id, prim, type, size, chunkRows, countType, trace
    Query{QueryId::vcTable, 1, 4, layout::vcRow::size, vcChunk, 3, "GET_VC_TBL"},
    Query{QueryId::lecState, 20, 1, layout::lecState::size, 0, 0, "GET_LEC_STATE"},
    Query{QueryId::lecStats, 20, 2, layout::lecStats::size, 0, 0, "GET_LEC_STATS"},
    Query{QueryId::lecTable, 20, 4, layout::lecRow::size, lecChunk, 3, "GET_LEC_TBL"},
    Query{QueryId::lesState, 21, 1, layout::lesState::size, 0, 0, "GET_LES_STATE"},
    Query{QueryId::lesStats, 21, 2, layout::lesStats::size, 0, 0, "GET_LES_STATS"},
    Query{QueryId::lesTable, 21, 4, layout::lesRow::size, lesChunk, 3, "GET_LES_TBL"},
    Query{QueryId::lecsState, 22, 1, layout::lecsState::size, 0, 0, "GET_LECS_STATE"},
    Query{QueryId::lecsStats, 22, 2, layout::lecsStats::size, 0, 0, "GET_LECS_STATS"},
    Query{QueryId::lecsTable, 22, 4, layout::lecsRow::size, wholeTable<layout::lecsRow::size>, 3,
          "GET_LECS_TBL"},
    Query{QueryId::linkState, 33, 1, layout::linkState::size, 0, 0, "DaiSigLnkStatus"},
    Query{QueryId::ipState, 66, 1, layout::ipState::size, 0, 0, "GET_IP_STATE"},
    Query{QueryId::ipStats, 66, 2, layout::ipStats::size, 0, 0, "GET_IP_STATS"},
    Query{QueryId::ipTable, 66, 4, layout::ipRow::size, wholeTable<layout::ipRow::size>, 3, "GET_IP_TBL"},
    Query{QueryId::ipPvcTable, 66, 6, layout::pvcRow::size, wholeTable<layout::pvcRow::size>, 5,
          "GET_IP_PVC_TBL"},
    Query{QueryId::boardState, 129, 1, layout::boardState::size, 0, 0, "GET_BRDS_STATE"},
    Query{QueryId::boardMacAddress, 129, 2, layout::boardMac::size, 0, 0, "GET_BRDS_MACADDR"},
    Query{QueryId::aalStats, 129, 3, layout::aalStats::size, 0, 0, "GET_AAL_DRV_STATS"},
    Query{QueryId::suniStats, 129, 4, layout::suniStats::size, 0, 0, "GET_SUNI_STATS"},
    Query{QueryId::packageRev, 129, 5, layout::packageRev::size, 0, 0, "GET_PACKAGE_REV"},
};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < queries.size(); ++i)
        if (queries[i].id != static_cast<QueryId>(i)) return false;
    return queries.size() == asIndex(QueryId::count);
}
static_assert(inOrder());

}  // namespace

const Query& queryOf(QueryId id) {
    return queries[asIndex(id)];
}
