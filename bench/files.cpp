// bench_files PAIRS: loading the configuration, and OK of the configuration dialog without its windows, pair
// by pair with the bare file work on the same files. Runs on the sample configuration in TARVOLIN_ROOT, which
// it changes. Prints name, figure, floor (medians, milliseconds) and the median of the ratios.
#include "bench/onechange.h"
#include "config/driverpdf.h"
#include "platform/root.h"

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string wholeFile(const fs::path& path) {
    std::string content(fs::file_size(path), '\0');
    const int descriptor = ::open(path.c_str(), O_RDONLY);
    const ssize_t length = ::read(descriptor, content.data(), content.size());
    ::close(descriptor);
    content.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return content;
}

double load() {
    const double begin = milliseconds();
    AtmDevices devices;
    DriverPdfEdit editor({}, false, devices);
    if (!editor.ReadPdf() || devices.lec[3][3].pvcs.size() != OneChange::entries) std::exit(EXIT_FAILURE);
    return milliseconds() - begin;
}

double plainRead() {
    const double begin = milliseconds();
    std::size_t bytes = 0;
    for (const auto& entry : fs::directory_iterator(platform::hostPath("/etc/atm").text))
        bytes += wholeFile(entry.path()).size();
    if (bytes == 0) std::exit(EXIT_FAILURE);
    return milliseconds() - begin;
}

// One copy of the bytes, fsync, rename, and the directory synced.
void replacePlainly(const fs::path& file, const std::string& content) {
    const fs::path copy = file.string() + ".plain";
    const int descriptor = ::open(copy.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    bool good = ::write(descriptor, content.data(), content.size()) >= 0 && ::fsync(descriptor) == 0;
    good = ::close(descriptor) == 0 && ::rename(copy.c_str(), file.c_str()) == 0 && good;
    const int directory = ::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY);
    good = ::fsync(directory) == 0 && ::close(directory) == 0 && good;
    if (!good) std::exit(EXIT_FAILURE);
}

double replaceAllPlainly(const std::vector<std::string>& names) {
    std::vector<std::pair<fs::path, std::string>> files;
    for (const std::string& name : names) {
        const std::string path = platform::hostPath(name).text;
        files.emplace_back(path, wholeFile(path));
    }
    const double begin = milliseconds();
    for (const auto& [path, content] : files) replacePlainly(path, content);
    return milliseconds() - begin;
}

// The change beside as many plain replaces as it replaces files.
void measure(const char* name, OneChange& change, Edit edit, int count) {
    std::vector<std::string> files;
    if (edit == Edit::lists) files = change.listFiles();
    files.push_back(PdfEdit::parameterFile);
    Pairs pairs;
    for (int pair = -1; pair < count; ++pair) {
        const double floor = replaceAllPlainly(files);
        const double figure = change.make(edit);
        if (pair >= 0) pairs.add(figure, floor);  // the first pair warms the caches
    }
    pairs.print(name);
}

}  // namespace

int main(int argc, char** argv) {
    const int count = argc == 2 ? std::atoi(argv[1]) : 0;
    if (count < 1 || platform::rootDirectory().empty()) {
        fmt::print(stderr, "usage: bench_files PAIRS, with the sample configuration in TARVOLIN_ROOT\n");
        return 2;
    }
    OneChange change;
    measure("unchanged", change, Edit::nothing, count);
    measure("value", change, Edit::value, count);
    change.fill();
    measure("unchangedFull", change, Edit::nothing, count);
    measure("valueFull", change, Edit::value, count);
    measure("lists", change, Edit::lists, count);
    Pairs loading;
    for (int pair = -1; pair < count; ++pair) {
        const double figure = load(), floor = plainRead();
        if (pair >= 0) loading.add(figure, floor);
    }
    loading.print("load");
}
