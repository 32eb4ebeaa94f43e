#include "tests/support/xstreams.h"

#include <fmt/format.h>
#include <iterator>

namespace {

constexpr std::uint8_t replyPacket = 1, genericEvent = 35, queryExtension = 98;

// The core requests that have a reply.
const std::map<std::uint8_t, const char*> coreNames{
    {3, "GetWindowAttributes"}, {14, "GetGeometry"},         {15, "QueryTree"},
    {16, "InternAtom"},         {17, "GetAtomName"},         {20, "GetProperty"},
    {21, "ListProperties"},     {23, "GetSelectionOwner"},   {26, "GrabPointer"},
    {31, "GrabKeyboard"},       {38, "QueryPointer"},        {39, "GetMotionEvents"},
    {40, "TranslateCoords"},    {43, "GetInputFocus"},       {44, "QueryKeymap"},
    {47, "QueryFont"},          {48, "QueryTextExtents"},    {49, "ListFonts"},
    {50, "ListFontsWithInfo"},  {52, "GetFontPath"},         {73, "GetImage"},
    {83, "ListColormaps"},      {84, "AllocColor"},          {85, "AllocNamedColor"},
    {86, "AllocColorCells"},    {87, "AllocColorPlanes"},    {91, "QueryColors"},
    {92, "LookupColor"},        {97, "QueryBestSize"},       {98, "QueryExtension"},
    {99, "ListExtensions"},     {101, "GetKeyboardMapping"}, {103, "GetKeyboardControl"},
    {106, "GetPointerControl"}, {108, "GetScreenSaver"},     {117, "GetPointerMapping"},
    {119, "GetModifierMapping"}};

std::uint32_t number(std::string_view packet, std::size_t at, std::size_t bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes; i > 0; --i)
        value = value << 8 | static_cast<std::uint8_t>(packet[at + i - 1]);
    return value;
}

std::size_t padded(std::size_t length) {
    return (length + 3) / 4 * 4;
}

// Bytes of the first request, 0 if more are needed to tell.
std::size_t requestLength(std::string_view bytes) {
    if (bytes.size() < 4) return 0;
    const std::size_t words = number(bytes, 2, 2);
    if (words) return 4 * words;
    return bytes.size() < 8 ? 0 : std::size_t{4} * number(bytes, 4, 4);  // a big one
}

std::size_t replyLength(std::string_view bytes) {
    if (bytes.size() < 32) return 0;
    const auto kind = static_cast<std::uint8_t>(bytes[0]);
    return 32 + (kind == replyPacket || kind == genericEvent ? std::size_t{4} * number(bytes, 4, 4) : 0);
}

}  // namespace

void XStreams::fromClient(std::string_view bytes) {
    client_ += bytes;
    if (!clientGreeted_) {
        if (client_.size() < 12) return;
        const std::size_t length = 12 + padded(number(client_, 6, 2)) + padded(number(client_, 8, 2));
        if (client_.size() < length) return;
        client_.erase(0, length);
        clientGreeted_ = true;
    }
    std::size_t at = 0;
    for (;;) {
        const std::string_view rest = std::string_view(client_).substr(at);
        const std::size_t length = requestLength(rest);
        if (!length || rest.size() < length) break;
        request(rest.substr(0, length));
        at += length;
    }
    client_.erase(0, at);
}

std::vector<std::string> XStreams::toClient(std::string_view bytes) {
    std::vector<std::string> ended;
    server_ += bytes;
    if (!serverGreeted_) {
        if (server_.size() < 8) return ended;
        const std::size_t length = 8 + std::size_t{4} * number(server_, 6, 2);
        if (server_.size() < length) return ended;
        server_.erase(0, length);
        serverGreeted_ = true;
        ended.emplace_back("connect");
    }
    std::size_t at = 0;
    for (;;) {
        const std::string_view rest = std::string_view(server_).substr(at);
        const std::size_t length = replyLength(rest);
        if (!length || rest.size() < length) break;
        if (rest[0] == replyPacket) reply(rest.substr(0, length), ended);
        at += length;
    }
    server_.erase(0, at);
    return ended;
}

void XStreams::request(std::string_view packet) {
    Asked& asked = asked_[++sent_ % asked_.size()];
    asked = {static_cast<std::uint8_t>(packet[0]), static_cast<std::uint8_t>(packet[1]), {}};
    if (asked.opcode == queryExtension) asked.extension = packet.substr(8, number(packet, 4, 2));
}

void XStreams::reply(std::string_view packet, std::vector<std::string>& ended) {
    const std::uint64_t back = (sent_ - number(packet, 2, 2)) % asked_.size();
    const std::uint64_t number = sent_ - back;
    const Asked& asked = asked_[number % asked_.size()];
    if (!asked.extension.empty() && packet[8])
        extensions_[static_cast<std::uint8_t>(packet[9])] = asked.extension;
    if (number <= answered_) return;
    answered_ = sent_;
    ended.push_back(nameOf(number));
}

std::string XStreams::nameOf(std::uint64_t number) const {
    const Asked& asked = asked_[number % asked_.size()];
    if (const auto core = coreNames.find(asked.opcode); core != coreNames.end()) return core->second;
    const auto extension = extensions_.find(asked.opcode);
    return fmt::format("{}.{}", extension == extensions_.end() ? "?" : extension->second, asked.minor);
}
