// Loading and saving the configuration beside the bare file work on the same bytes. Runs on the root
// directory in TARVOLIN_ROOT, which it fills.
#include "config/driverpdf.h"
#include "model/tvdatbuf.h"
#include "platform/root.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr int pvcsPerClient = 1000, clientsPerServer = 500;

std::string wholeFile(const fs::path& path) {
    std::string content(fs::file_size(path), '\0');
    const int descriptor = ::open(path.c_str(), O_RDONLY);
    const ssize_t length = ::read(descriptor, content.data(), content.size());
    ::close(descriptor);
    content.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return content;
}

// The sample's parameter file, and full lists on every client and server. Written by the editor itself.
void fillRoot() {
    DriverPdfEdit editor({}, false);
    editor.ReadPdf();
    for (int a = 0; a < adapterCount; ++a) {
        const auto adapter = static_cast<std::size_t>(a);
        for (AtmLEC& lec : atmDevices.lec[adapter]) {
            lec.pvcs.resize(pvcsPerClient);
            for (std::size_t i = 0; i < lec.pvcs.size(); ++i)
                lec.pvcs[i].vci = static_cast<std::uint16_t>(32 + i);
        }
        atmDevices.ip1577[adapter].pvcs.resize(pvcsPerClient);
        for (AtmLES& les : atmDevices.les[adapter])
            if (!les.clientFile.empty()) les.clients.resize(clientsPerServer);
        editor.WriteLink(a);
    }
}

std::vector<fs::path> configurationFiles() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(platform::hostPath("/etc/atm").text))
        files.push_back(entry.path());
    return files;
}

void load(benchmark::State& state) {
    for (auto _ : state) {
        AtmDevices devices;
        DriverPdfEdit editor({}, false, devices);
        if (!editor.ReadPdf() || devices.lec[3][3].pvcs.size() != pvcsPerClient)
            state.SkipWithError("not loaded");
    }
}

void plainRead(benchmark::State& state) {
    const auto files = configurationFiles();
    std::size_t bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        for (const fs::path& path : files) bytes += wholeFile(path).size();
        benchmark::DoNotOptimize(bytes);
    }
}

// One value of each save differs from the file. The number of commits: one for each section of an adapter.
constexpr int commits = 1 + lecCount + lesCount + 1 + 1;

// Saves adapter 1; with `lists`, one record of each of its lists differs, too.
void saveAdapter(benchmark::State& state, bool lists) {
    AtmDevices devices;
    DriverPdfEdit editor({}, false, devices);
    editor.ReadPdf();
    for (auto _ : state) {
        devices.lec[0][0].l3Mtu = devices.lec[0][0].l3Mtu == 1516 ? 4544 : 1516;
        if (lists) {
            for (AtmLEC& lec : devices.lec[0]) lec.pvcs.back().rate ^= 1;
            devices.ip1577[0].pvcs.back().rate ^= 1;
        }
        if (!editor.WriteLink(0)) state.SkipWithError("not saved");
    }
}

bool plainWrite(const std::string& path, const std::string& content) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const bool good = ::write(descriptor, content.data(), content.size()) >= 0 && ::fsync(descriptor) == 0;
    return ::close(descriptor) == 0 && good;
}

// The same bytes: the parameter file once for each commit, and the lists' files in place.
void plainSaveAdapter(benchmark::State& state, bool lists) {
    const std::string file = platform::hostPath("/etc/atm/tvconf").text;
    const std::string copy = platform::hostPath("/etc/plaincopy").text;
    const std::string content = wholeFile(file);
    std::vector<std::pair<std::string, std::string>> listFiles;
    if (lists) {
        AtmDevices devices;
        DriverPdfEdit({}, false, devices).ReadPdf();
        std::vector<std::string> names{devices.ip1577[0].pvcFile.str()};
        for (const AtmLEC& lec : devices.lec[0]) names.push_back(lec.pvcFile.str());
        for (const std::string& name : names) {
            const std::string path = platform::hostPath(name).text;
            listFiles.emplace_back(path, wholeFile(path));
        }
    }
    for (auto _ : state) {
        for (int i = 0; i < commits; ++i)
            if (!plainWrite(copy, content) || std::rename(copy.c_str(), file.c_str()) != 0)
                state.SkipWithError("not written");
        for (const auto& [path, text] : listFiles)
            if (!plainWrite(path, text)) state.SkipWithError("not written");
    }
}

void save(benchmark::State& state) {
    saveAdapter(state, false);
}
void plainSave(benchmark::State& state) {
    plainSaveAdapter(state, false);
}
void saveLists(benchmark::State& state) {
    saveAdapter(state, true);
}
void plainSaveLists(benchmark::State& state) {
    plainSaveAdapter(state, true);
}

// "full": lists of full length. "short": the sample's own lists.
void registerAll(const std::string& lists) {
    const auto add = [](const char* name, void (*body)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, body)->Unit(benchmark::kMillisecond)->UseRealTime();
    };
    if (lists == "short") {
        add("save", save);
        add("plainSave", plainSave);
        return;
    }
    add("load", load);
    add("plainRead", plainRead);
    add("saveLists", saveLists);
    add("plainSaveLists", plainSaveLists);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc != 2 || platform::rootDirectory().empty()) {
        fmt::print(stderr,
                   "usage: bench_files short|full, with a root of the sample files in TARVOLIN_ROOT\n");
        return 2;
    }
    if (std::string(argv[1]) == "full") fillRoot();
    registerAll(argv[1]);
    benchmark::RunSpecifiedBenchmarks();
}
