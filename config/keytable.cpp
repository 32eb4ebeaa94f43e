#include "config/keytable.h"

template <> std::span<const KeyRow<AtmSig>> keyRows() {
    static const KeyRow<AtmSig> rows[] = {
        {"NetPrefix", 6, 27, 6, textLength, AddressField<AtmSig>{&AtmSig::address, addressPrefix}},
        {"UniRev", 4, 4, 4, 4, &AtmSig::uniRevision},
        {"AddressRegistration", 4, 4, 4, 4, &AtmSig::addressRegistration},
        {"PortChangeDetect", 4, 4, 4, 4, &AtmSig::portChangeDetect},
        {"RegDiffNetPrefix", 4, 4, 4, 4, &AtmSig::registerOtherPrefixes},
    };
    return rows;
}

template <> std::span<const KeyRow<AtmLEC>> keyRows() {
    static const KeyRow<AtmLEC> rows[] = {
        {"Enabled", 4, 4, 4, 4, &AtmLEC::enabled},
        {"Config", 4, 4, 4, 4, &AtmLEC::pvcOnly},
        {"Mfs", 4, 4, 4, 4, &AtmLEC::mtuClass},
        {"L3Mtu", 4, 4, 4, 4, &AtmLEC::l3Mtu},
        {"ElanType", 4, 4, 4, 4, &AtmLEC::elanType},
        {"Lecs", 4, 4, 4, 4, &AtmLEC::useLecs},
        {"ElanName", 6, 31, 6, 32, &AtmLEC::elanName},
        {"AtmPrefix", 5, 13, 6, textLength, AddressField<AtmLEC>{&AtmLEC::address, addressPrefix}},
        {"AtmEsiSel", 5, 7, 6, textLength, AddressField<AtmLEC>{&AtmLEC::address, addressEsiSelector}},
        {"PvcConfFile", 6, 255, 6, onlyOverEmpty, FileField<AtmLEC>{&AtmLEC::pvcFile}},
    };
    return rows;
}

template <> std::span<const KeyRow<AtmLES>> keyRows() {
    static const KeyRow<AtmLES> rows[] = {
        {"Enabled", 4, 4, 4, 4, &AtmLES::enabled},
        {"Mfs", 4, 4, 4, 4, &AtmLES::mtuClass},
        {"MfsStrict", 4, 4, 4, 4, &AtmLES::strictMtu},
        {"ElanNameStrict", 4, 4, 4, 4, &AtmLES::strictName},
        {"ElanName", 6, 31, 6, 32, &AtmLES::elanName},
        {"ElanType", 4, 4, 4, 4, &AtmLES::elanType},
        {"ElanTbl", 6, 255, 6, notWritten, FileField<AtmLES>{&AtmLES::clientFile}},
    };
    return rows;
}

template <> std::span<const KeyRow<AtmLECS>> keyRows() {
    static const KeyRow<AtmLECS> rows[] = {
        {"AtmPrefix", 5, 13, 6, textLength, AddressField<AtmLECS>{&AtmLECS::address, addressPrefix}},
        {"AtmEsiSel", 5, 7, 6, textLength, AddressField<AtmLECS>{&AtmLECS::address, addressEsiSelector}},
        {"Enabled", 4, 4, 4, 4, &AtmLECS::enabled},
        {"EtherMfs", 4, 4, 4, 4, &AtmLECS::etherMtuClass},
        {"TRMfs", 4, 4, 4, 4, &AtmLECS::tokenRingMtuClass},
        {"ElanType", 4, 4, 4, 4, &AtmLECS::elanType},
    };
    return rows;
}

template <> std::span<const KeyRow<AtmIP1577>> keyRows() {
    static const KeyRow<AtmIP1577> rows[] = {
        {"AtmPrefix", 5, 13, 6, textLength, AddressField<AtmIP1577>{&AtmIP1577::address, addressPrefix}},
        {"AtmEsiSel", 5, 7, 6, textLength, AddressField<AtmIP1577>{&AtmIP1577::address, addressEsiSelector}},
        {"Enabled", 4, 4, 4, 4, &AtmIP1577::enabled},
        {"Config", 4, 4, 4, 4, &AtmIP1577::pvcOnly},
        {"ServerIPAddress", 6, 17, 6, 18, &AtmIP1577::serverIp},
        {"ServerIPMask", 6, 17, 6, 18, &AtmIP1577::subnetMask},
        {"IPAddress", 6, 17, 6, 18, &AtmIP1577::ip},
        {"PvcConfFile", 6, 255, 6, onlyOverEmpty, FileField<AtmIP1577>{&AtmIP1577::pvcFile}},
    };
    return rows;
}
