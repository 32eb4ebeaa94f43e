#include "metrics/prometheus.h"

#include "metrics/condition.h"
#include "metrics/subject.h"
#include "metrics/tablekeys.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <optional>

namespace metrics {

namespace {

constexpr auto gauge = FamilyType::gauge, counter = FamilyType::counter;

constexpr Family allFamilies[] = {
    {"tarvolin_up", gauge, "Whether the driver answers."},
    {"tarvolin_driver_info", gauge, "What the driver says of itself; always 1."},
    {"tarvolin_adapter_info", gauge, "An adapter that the driver reports; always 1."},
    {"tarvolin_elan_info", gauge, "The emulated LAN of a client or server; always 1."},
    {"tarvolin_link_alarm", gauge, "Whether the alarm is raised on the adapter's link."},
    {"tarvolin_aal5_receive_packets_total", counter, "AAL5 packets received."},
    {"tarvolin_aal5_receive_cells_total", counter, "Cells received."},
    {"tarvolin_aal5_transmit_packets_total", counter, "AAL5 packets transmitted."},
    {"tarvolin_aal5_transmit_cells_total", counter, "Cells transmitted."},
    {"tarvolin_aal5_receive_dropped_packets_total", counter, "Received AAL5 packets that were dropped."},
    {"tarvolin_aal5_transmit_dropped_packets_total", counter,
     "AAL5 packets that were dropped and not transmitted."},
    {"tarvolin_aal5_receive_errors_total", counter,
     "What was received with an error, by kind: frames, or cells with an invalid VPI, an invalid VCI or "
     "another error."},
    {"tarvolin_circuits", gauge, "Virtual circuits that the adapter has open."},
    {"tarvolin_signalling_state", gauge,
     "State of a protocol between the adapter and its switch: 1 for one."},
    {"tarvolin_signalling_receive_frames_total", counter, "Frames received on the circuit of the protocol."},
    {"tarvolin_signalling_transmit_frames_total", counter,
     "Frames transmitted on the circuit of the protocol."},
    {"tarvolin_service_enabled", gauge, "Whether the files enable the service."},
    {"tarvolin_service_up", gauge, "Whether the service is up."},
    {"tarvolin_service_state", gauge, "State of the service: 1 for one."},
    {"tarvolin_connections", gauge, "Connections that the service has open."},
    {"tarvolin_clients", gauge, "Clients that the server knows."},
    {"tarvolin_lecs_requests_total", counter,
     "Requests to the LAN Emulation Configuration Server, by result."},
    {"tarvolin_lecs_connections_total", counter, "Connections made by clients of the configuration server."},
    {"tarvolin_ip_receive_packets_total", counter, "IP packets received."},
    {"tarvolin_ip_transmit_packets_total", counter, "IP packets transmitted."},
    {"tarvolin_ip_receive_dropped_packets_total", counter, "Received IP packets that were dropped."},
    {"tarvolin_ip_transmit_dropped_packets_total", counter,
     "IP packets that were dropped and not transmitted."},
    {"tarvolin_circuit_receive_frames_total", counter, "Frames received on the virtual circuit."},
    {"tarvolin_circuit_transmit_frames_total", counter, "Frames transmitted on the virtual circuit."},
    {"tarvolin_connection_receive_packets_total", counter, "Packets received on the service's connection."},
    {"tarvolin_connection_transmit_packets_total", counter,
     "Packets transmitted on the service's connection."},
    {"tarvolin_client_receive_packets_total", counter, "Packets received on a connection of the client."},
    {"tarvolin_client_transmit_packets_total", counter, "Packets transmitted on a connection of the client."},
    {"tarvolin_differences", gauge,
     "Settings and list entries that the driver has not as the files have them."},
    {"tarvolin_config_saved_timestamp_seconds", gauge, "When a file of the configuration was last written."},
    {"tarvolin_last_change_timestamp_seconds", gauge, "When the newest change of the history was made."},
    {"tarvolin_change_refused", gauge,
     "Whether the driver refused what it was told in the last change of the service since it was loaded."},
    {"tarvolin_change_pending", gauge,
     "Whether a change waits for its confirmation and is taken back without it."},
    {"tarvolin_collect_success", gauge, "Whether all was read that the collector wants."},
    {"tarvolin_collect_duration_seconds", gauge, "How long the collector took."},
};

// A row's kind of metric says what it makes: a number or flag one sample, a state one for each of its words,
// a text or address a label `label` of the one sample of an info family, which may have several. Without a
// name it is the number of the table's rows.
struct Told {
    const char* family;
    Service service;
    const char* table;
    const char* name;
    const char* label = "";
    const char* value = "";  // of the label; of a text its own
};

constexpr auto adapter = Service::adapter, signalling = Service::signalling, lec = Service::lec,
               les = Service::les, lecs = Service::lecs, ip = Service::ip;

constexpr Told rows[] = {
    {"tarvolin_adapter_info", adapter, "", "mac", "mac"},
    {"tarvolin_adapter_info", adapter, "", "linkKind", "link"},
    {"tarvolin_link_alarm", adapter, "", "linkDown", "alarm", "linkDown"},
    {"tarvolin_link_alarm", adapter, "", "lossOfSignal", "alarm", "lossOfSignal"},
    {"tarvolin_link_alarm", adapter, "", "lossOfFrame", "alarm", "lossOfFrame"},
    {"tarvolin_link_alarm", adapter, "", "outOfFrame", "alarm", "outOfFrame"},
    {"tarvolin_link_alarm", adapter, "", "farEndFailure", "alarm", "farEndFailure"},
    {"tarvolin_link_alarm", adapter, "", "alarmIndication", "alarm", "alarmIndication"},
    {"tarvolin_link_alarm", adapter, "", "lossOfPointer", "alarm", "lossOfPointer"},
    {"tarvolin_aal5_receive_packets_total", adapter, "", "rxPackets"},
    {"tarvolin_aal5_receive_cells_total", adapter, "", "rxCells"},
    {"tarvolin_aal5_transmit_packets_total", adapter, "", "txPackets"},
    {"tarvolin_aal5_transmit_cells_total", adapter, "", "txCells"},
    {"tarvolin_aal5_receive_dropped_packets_total", adapter, "", "rxDropped"},
    {"tarvolin_aal5_transmit_dropped_packets_total", adapter, "", "txDropped"},
    {"tarvolin_aal5_receive_errors_total", adapter, "", "rxFrameErrors", "kind", "frame"},
    {"tarvolin_aal5_receive_errors_total", adapter, "", "invalidVpis", "kind", "vpi"},
    {"tarvolin_aal5_receive_errors_total", adapter, "", "invalidVcis", "kind", "vci"},
    {"tarvolin_aal5_receive_errors_total", adapter, "", "rxCellErrors", "kind", "cell"},
    {"tarvolin_circuits", adapter, "circuits", ""},
    {"tarvolin_circuit_receive_frames_total", adapter, "circuits", "rxFrames"},
    {"tarvolin_circuit_transmit_frames_total", adapter, "circuits", "txFrames"},

    {"tarvolin_signalling_state", signalling, "", "ilmiState", "protocol", "ilmi"},
    {"tarvolin_signalling_state", signalling, "", "saalState", "protocol", "saal"},
    {"tarvolin_signalling_state", signalling, "", "signallingState", "protocol", "signalling"},
    {"tarvolin_signalling_receive_frames_total", signalling, "", "ilmiRxFrames", "protocol", "ilmi"},
    {"tarvolin_signalling_transmit_frames_total", signalling, "", "ilmiTxFrames", "protocol", "ilmi"},
    {"tarvolin_signalling_receive_frames_total", signalling, "", "signallingRxFrames", "protocol",
     "signalling"},
    {"tarvolin_signalling_transmit_frames_total", signalling, "", "signallingTxFrames", "protocol",
     "signalling"},

    {"tarvolin_service_state", lec, "", "state"},
    {"tarvolin_service_up", lec, "", "running"},
    {"tarvolin_elan_info", lec, "", "elanName", "elan"},
    {"tarvolin_connections", lec, "connections", ""},
    {"tarvolin_connection_receive_packets_total", lec, "connections", "rxPackets"},
    {"tarvolin_connection_transmit_packets_total", lec, "connections", "txPackets"},

    {"tarvolin_service_state", les, "", "state"},
    {"tarvolin_service_up", les, "", "running"},
    {"tarvolin_elan_info", les, "", "elanName", "elan"},
    {"tarvolin_clients", les, "clients", ""},
    {"tarvolin_client_receive_packets_total", les, "clients", "controlDirectRxPackets", "connection",
     "controlDirect"},
    {"tarvolin_client_transmit_packets_total", les, "clients", "controlDirectTxPackets", "connection",
     "controlDirect"},
    {"tarvolin_client_receive_packets_total", les, "clients", "multicastSendRxPackets", "connection",
     "multicastSend"},
    {"tarvolin_client_transmit_packets_total", les, "clients", "multicastSendTxPackets", "connection",
     "multicastSend"},

    {"tarvolin_service_state", lecs, "", "state"},
    {"tarvolin_service_up", lecs, "", "running"},
    {"tarvolin_connections", lecs, "", "connectionsOpen"},
    {"tarvolin_clients", lecs, "clients", ""},
    {"tarvolin_lecs_requests_total", lecs, "", "validRequests", "result", "valid"},
    {"tarvolin_lecs_requests_total", lecs, "", "invalidRequests", "result", "invalid"},
    {"tarvolin_lecs_requests_total", lecs, "", "rejectedRequests", "result", "rejected"},
    {"tarvolin_lecs_connections_total", lecs, "", "connectionsMade"},

    {"tarvolin_service_state", ip, "", "state"},
    {"tarvolin_service_up", ip, "", "running"},
    {"tarvolin_connections", ip, "connections", ""},
    {"tarvolin_connection_receive_packets_total", ip, "connections", "rxPackets"},
    {"tarvolin_connection_transmit_packets_total", ip, "connections", "txPackets"},
    {"tarvolin_ip_receive_packets_total", ip, "", "rxPackets"},
    {"tarvolin_ip_transmit_packets_total", ip, "", "txPackets"},
    {"tarvolin_ip_receive_dropped_packets_total", ip, "", "rxDropped"},
    {"tarvolin_ip_transmit_dropped_packets_total", ip, "", "txDropped"},
};

struct Sample {
    const Told* told;
    const Group* group;
    const Metric* metric;  // null: the rows of the group's table are counted

    Labels labels(const Reading& reading) const {
        Labels labels = labelsOf(reading.place());
        if (*told->value) labels.push_back({told->label, told->value});
        return labels;
    }
    // Its value is a label.
    bool isLabel() const { return *told->label && !*told->value; }
    bool isRow() const { return metric && group->isTable(); }
    bool wanted(Detail detail) const { return detail == Detail::rows || !isRow(); }
};

const std::vector<Sample>& samples() {
    static const std::vector<Sample> all = [] {
        std::vector<Sample> resolved;
        for (const Told& row : rows)
            if (*row.name) {
                const Subject subject = subjectOf({row.service}, row.table, row.name);
                resolved.push_back({&row, subject.group, subject.metric});
            } else {
                resolved.push_back({&row, &tableOf(row.service, row.table), nullptr});
            }
        return resolved;
    }();
    return all;
}

std::optional<double> numberOf(const Value& value) {
    if (const auto* number = std::get_if<std::uint32_t>(&value)) return *number;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
    return {};
}

// As the metric has them, whatever a flag beside the code says: they are those of statesOf().
std::string wordsOf(const Metric& metric, const State& state) {
    const char* words = metric.words(state.code);
    return words ? words : fmt::format("state {}", state.code);
}

std::optional<std::string> textOf(const Metric& metric, const Value& value) {
    if (const auto* state = std::get_if<State>(&value)) return wordsOf(metric, *state);
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    return {};
}

void tellValue(const Sample& sample, const Reading& reading, Exposition& exposition) {
    const Value value = reading.value(*sample.group, *sample.metric);
    if (const auto number = numberOf(value))
        exposition.add(sample.told->family, sample.labels(reading), *number);
    if (const auto* state = std::get_if<State>(&value)) {
        std::vector<std::string> words;
        for (const State& each : statesOf(*sample.metric)) words.emplace_back(each.words);
        tellState(sample.told->family, sample.labels(reading), words, wordsOf(*sample.metric, *state),
                  exposition);
    }
}

void tellRows(const Sample& sample, const Reading& reading, Exposition& exposition) {
    const Group& group = *sample.group;
    const KeyOrder order(TableKeys(reading.bytes(group.query), queryOf(group.query).size, group.keyBytes));
    Labels labels = sample.labels(reading);
    labels.push_back({group.key, ""});
    const std::size_t count = reading.rows(group);
    for (std::size_t row = 0; row < count; ++row) {
        const auto number = numberOf(reading.value(group, *sample.metric, row));
        if (!number || order.isShared(row)) continue;
        labels.back().value = reading.key(group, row);
        exposition.add(sample.told->family, labels, *number);
    }
}

}  // namespace

std::span<const Family> families() {
    return allFamilies;
}

Labels labelsOf(const Place& place) {
    Labels labels{{"adapter", nameOf(Place{Service::adapter, place.adapter, 0})}};
    if (place.service != Service::adapter && place.service != Service::signalling)
        labels.push_back({"service", nameOf(place)});
    return labels;
}

bool isTold(const Group& group, Detail detail) {
    return std::ranges::any_of(
        samples(), [&](const Sample& sample) { return sample.group == &group && sample.wanted(detail); });
}

void tellState(std::string_view family, const Labels& labels, const std::vector<std::string>& words,
               const std::string& present, Exposition& exposition) {
    Labels all = labels;
    all.push_back({"state", ""});
    const auto add = [&](const std::string& word, double value) {
        all.back().value = word;
        exposition.add(family, all, value);
    };
    for (const std::string& word : words) add(word, word == present ? 1 : 0);
    if (std::ranges::count(words, present) == 0) add(present, 1);
}

void tell(const Reading& reading, Detail detail, Exposition& exposition) {
    std::map<std::string_view, Labels> infos;
    for (const Sample& sample : samples()) {
        if (sample.told->service != reading.place().service || !sample.wanted(detail)) continue;
        if (reading.missing(*sample.group)) continue;
        if (!sample.metric)
            exposition.add(sample.told->family, sample.labels(reading),
                           static_cast<double>(reading.rows(*sample.group)));
        else if (sample.isRow())
            tellRows(sample, reading, exposition);
        else if (!sample.isLabel())
            tellValue(sample, reading, exposition);
        else if (auto text = textOf(*sample.metric, reading.value(*sample.group, *sample.metric)))
            infos.try_emplace(sample.told->family, labelsOf(reading.place()))
                .first->second.push_back({sample.told->label, std::move(*text)});
    }
    for (const auto& [family, labels] : infos) exposition.add(family, labels, 1);
}

}  // namespace metrics
