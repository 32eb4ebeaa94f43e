#include "driver/requeststructs.h"

#include <algorithm>
#include <span>

namespace {

using Place = std::span<std::uint8_t>;

// A field of a structure: its bytes, and what writes them from a record.
template <class Record> struct WireField {
    std::size_t offset, width;
    void (*put)(Place, const Record&);
};

template <class Structure, class Record, std::size_t count>
void fill(Structure& structure, const Record& record, const WireField<Record> (&fields)[count]) {
    structure.bytes.fill(0);
    for (const WireField<Record>& field : fields)
        field.put(Place(structure.bytes).subspan(field.offset, field.width), record);
}

// Writers. A number gets as many of its low bytes as the field has.
template <auto member, class Record> void number(Place place, const Record& record) {
    auto value = static_cast<std::uint32_t>(record.*member);
    for (std::uint8_t& byte : place) {
        byte = static_cast<std::uint8_t>(value);
        value >>= 8;
    }
}
template <auto member, class Record> void text(Place place, const Record& record) {
    const std::string_view value = (record.*member).view().substr(0, place.size());
    std::copy(value.begin(), value.end(), place.begin());
}
template <auto member, class Record> void bytes(Place place, const Record& record) {
    const auto& value = (record.*member).bytes();
    std::copy(value.begin(), value.end(), place.begin());
}
template <auto member, class Record> void atm(Place place, const Record& record) {
    (record.*member).toHex(place.template first<atmAddress::byteCount>());
}
template <auto member, class Record> void esi(Place place, const Record& record) {
    std::array<std::uint8_t, atmAddress::byteCount> address{};
    (record.*member).toHex(address);
    std::copy(address.end() - static_cast<std::ptrdiff_t>(place.size()), address.end(), place.begin());
}
template <auto member, class Record> void dotted(Place place, const Record& record) {
    ipAddress address;
    address = (record.*member).view();
    std::reverse_copy(address.bytes().begin(), address.bytes().end(), place.begin());
}

constexpr WireField<AtmLEC> lecFields[] = {
    {0, 4, number<&AtmLEC::useLecs>},  {4, 20, atm<&AtmLEC::address>},     {24, 4, number<&AtmLEC::mtuClass>},
    {28, 32, text<&AtmLEC::elanName>}, {60, 4, number<&AtmLEC::elanType>}, {64, 4, number<&AtmLEC::pvcOnly>},
    {68, 4, number<&AtmLEC::l3Mtu>},
};
constexpr WireField<AtmLES> lesFields[] = {
    {0, 32, text<&AtmLES::elanName>},   {32, 4, number<&AtmLES::strictName>},
    {36, 4, number<&AtmLES::mtuClass>}, {40, 4, number<&AtmLES::strictMtu>},
    {44, 4, number<&AtmLES::elanType>},
};
constexpr WireField<AtmLECS> lecsFields[] = {
    {0, 20, atm<&AtmLECS::address>},          {20, 4, number<&AtmLECS::elanType>},
    {24, 4, number<&AtmLECS::etherMtuClass>}, {28, 4, number<&AtmLECS::tokenRingMtuClass>},
    {32, 7, esi<&AtmLECS::address>},
};
constexpr std::size_t mappedEsi = 32, mappedLes = 40;  // of a client mapping
constexpr WireField<AtmIP1577> ipFields[] = {
    {4, 4, dotted<&AtmIP1577::serverIp>}, {8, 4, dotted<&AtmIP1577::subnetMask>},
    {12, 4, dotted<&AtmIP1577::ip>},      {16, 20, atm<&AtmIP1577::address>},
    {36, 4, number<&AtmIP1577::pvcOnly>},
};
constexpr WireField<AtmRoutedPvc> routedFields[] = {
    {0, 4, bytes<&AtmRoutedPvc::ip>},
    {4, 2, number<&AtmRoutedPvc::vci>},
    {6, 1, number<&AtmRoutedPvc::encapsulation>},
};
constexpr WireField<AtmBridgedPvc> bridgedFields[] = {
    {0, 6, bytes<&AtmBridgedPvc::mac>},
    {6, 2, number<&AtmBridgedPvc::vci>},
    {8, 1, number<&AtmBridgedPvc::encapsulation>},
    {10, 1, number<&AtmBridgedPvc::broadcast>},
};

}  // namespace

lecReqStruct& lecReqStruct::operator=(const AtmLEC& record) {
    fill(*this, record, lecFields);
    return *this;
}

lesReqStruct& lesReqStruct::operator=(const AtmLES& record) {
    fill(*this, record, lesFields);
    return *this;
}

lecs_req& lecs_req::operator=(const AtmLECS& record) {
    fill(*this, record, lecsFields);
    return *this;
}

lecs_req lecs_req::mapping(const esiSelector& client, std::uint8_t les) {
    lecs_req request;
    std::copy(client.bytes().begin(), client.bytes().end(), request.bytes.begin() + mappedEsi);
    request.bytes[mappedLes] = les;
    return request;
}

ip1577ReqStruct& ip1577ReqStruct::operator=(const AtmIP1577& record) {
    fill(*this, record, ipFields);
    return *this;
}

rtdPvcReqStruct& rtdPvcReqStruct::operator=(const AtmRoutedPvc& record) {
    fill(*this, record, routedFields);
    return *this;
}

bdgPvcReqStruct& bdgPvcReqStruct::operator=(const AtmBridgedPvc& record) {
    fill(*this, record, bridgedFields);
    return *this;
}
