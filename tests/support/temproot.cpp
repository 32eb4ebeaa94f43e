#include "tests/support/temproot.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

std::string testFile(std::string_view name) {
    return contentOf(fs::path(TV_TEST_DIRECTORY) / name);
}

TempRoot::TempRoot() {
    std::string name = (fs::temp_directory_path() / "tvrootXXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary directory");
    path_ = name;
    fs::create_directories(path_ / "dev");
    fs::create_directories(path_ / "etc/atm");
    ::setenv("TARVOLIN_ROOT", path_.c_str(), 1);
}

TempRoot::~TempRoot() {
    ::unsetenv("TARVOLIN_ROOT");
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

fs::path TempRoot::at(std::string_view systemPath) const {
    return fs::path(path_.string().append(systemPath));
}

void TempRoot::write(std::string_view systemPath, std::string_view content) const {
    fs::create_directories(at(systemPath).parent_path());
    std::ofstream(at(systemPath), std::ios::binary) << content;
}

std::string TempRoot::read(std::string_view systemPath) const {
    return contentOf(at(systemPath));
}

bool TempRoot::exists(std::string_view systemPath) const {
    return fs::exists(at(systemPath));
}

void TempRoot::edit(std::string_view systemPath, std::string_view from, std::string_view to) const {
    std::string text = read(systemPath);
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << systemPath << ": " << from;
    write(systemPath, text.replace(at, from.size(), to));
}

std::map<std::string, std::string> TempRoot::files(std::string_view directory) const {
    std::map<std::string, std::string> texts;
    for (const auto& entry : fs::directory_iterator(at(directory)))
        if (entry.is_regular_file())
            texts[std::string(directory) + '/' + entry.path().filename().string()] = contentOf(entry.path());
    return texts;
}

int TempRoot::temporaryCopies() const {
    int count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(path_)) {
        const std::string name = entry.path().filename();
        count += name.find("TV") != std::string::npos || name.starts_with(".tarvolin-save") ||
                 (name.starts_with('.') && name.find(".tv") != std::string::npos);
    }
    return count;
}
