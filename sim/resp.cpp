#include "sim/resp.h"

#include <algorithm>
#include <iterator>

namespace sim {

namespace {

constexpr struct {
    std::uint16_t code;
    std::string_view text;
} texts[] = {
    {0, "ok"},
    {1, "unknown primitive"},
    {2, "unknown type"},
    {3, "no such adapter"},
    {4, "no such unit"},
    {5, "wrong size"},
    {6, "wrong row marker"},
    {8, "not running"},
    {9, "running"},
    {10, "no configuration loaded"},
    {11, "VCI out of range"},
    {12, "VCI in use"},
    {13, "duplicate PVC"},
    {14, "no such PVC"},
    {15, "duplicate mapping"},
    {16, "no such mapping"},
    {17, "bad value"},
    {unansweredResp, "left unanswered"},
};

}  // namespace

std::string_view respText(std::uint16_t resp) {
    const auto* found =
        std::find_if(std::begin(texts), std::end(texts), [&](const auto& t) { return t.code == resp; });
    return found == std::end(texts) ? "forced" : found->text;
}

}  // namespace sim
