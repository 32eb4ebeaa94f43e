#include "config/pdfedit.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

PdfEdit::PdfEdit(ErrorReporter reporter, bool showErrors)
    : reporter_(std::move(reporter)), showErrors_(showErrors) {}

PdfEdit::~PdfEdit() {
    CloseKey();
}

SectionHandle* PdfEdit::open(std::string_view sectionPath, std::uint32_t flags) {
    return OpenSection(parameterFile, sectionPath, flags);
}

bool PdfEdit::OpenKey(std::string_view sectionPath, std::uint32_t flags, bool showError) {
    CloseKey();
    section_ = open(sectionPath, flags);
    return finish(section_ != nullptr, sectionPath, showError);
}

bool PdfEdit::QueryValue(std::string_view key, void* destination, int type, int len, bool showError) {
    return finish(section_ && ReadKey(section_, key, destination, type, len) == 0, key, showError);
}

bool PdfEdit::SetValue(std::string_view key, void* source, int type, int len, bool showError) {
    return finish(section_ && WriteKey(section_, key, source, type, len) == 0, key, showError);
}

void PdfEdit::keepValue() {
    ++section_->wflg;
}

bool PdfEdit::CloseKey() {
    const int error = CloseSection(std::exchange(section_, nullptr)) == 0 ? 0 : errno;
    if (error) addFailure({parameterFile, std::strerror(error)});
    return error == 0;
}

void PdfEdit::DisplayError(std::string_view text) {
    constexpr std::size_t limit = 256;
    std::string message = "Pdf Error On - ";
    message.append(text.substr(0, limit - message.size()));
    if (reporter_) reporter_(message, "Pdf Error");
}

bool PdfEdit::finish(bool success, std::string_view text, bool showError) {
    const int error = errno;
    status_ = success ? 0 : 2;
    if (!success && showErrors_ && showError) DisplayError(text);
    errno = error;
    return success;
}

bool PdfEdit::onlySectionsMissing() const {
    return std::ranges::all_of(failures_, &SaveFailure::sectionMissing);
}

void PdfEdit::clearOutcome() {
    failures_.clear();
}

void PdfEdit::addFailure(SaveFailure failure) {
    if (std::find(failures_.begin(), failures_.end(), failure) == failures_.end())
        failures_.push_back(std::move(failure));
}
