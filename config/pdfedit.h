// One open section of the parameter file at a time, with the reporting of what failed.
#pragma once

#include "config/pdf_io.h"

#include <functional>
#include <string>
#include <vector>

// Shows a text under a caption to the user; the main window gives a message box.
using ErrorReporter = std::function<void(const std::string& text, const std::string& caption)>;

// Something that was to be saved and cannot be.
struct SaveFailure {
    std::string file;    // as the configuration names it
    std::string reason;  // for the user, without a full stop
    bool sectionMissing = false;
    bool unknown = false;  // the file could not be read: whoever saves must not save anything else either

    bool operator==(const SaveFailure&) const = default;
};

class PdfEdit {
  public:
    static constexpr const char* parameterFile = "/etc/atm/tvconf";

    // Errors are shown only with `showErrors`, and then only by operations called with `showError`.
    PdfEdit(ErrorReporter reporter, bool showErrors);
    virtual ~PdfEdit();  // commits an open section
    PdfEdit(const PdfEdit&) = delete;
    PdfEdit& operator=(const PdfEdit&) = delete;

    // Commits the section that was open and opens another: flags 0 reads, 1 writes and makes it when it is
    // missing. errno on failure as OpenSection.
    bool OpenKey(std::string_view sectionPath, std::uint32_t flags, bool showError);

    // ReadKey and WriteKey in the open section. A key without a value is a failure, too.
    bool QueryValue(std::string_view key, void* destination, int type, int len, bool showError);
    bool SetValue(std::string_view key, void* source, int type, int len, bool showError);

    // Commits the open section, if any. False when that failed; the failure is on the list.
    bool CloseKey();

    // "Pdf Error On - " and the text, at most 256 characters, captioned "Pdf Error".
    void DisplayError(std::string_view text);

    // Of the last OpenKey, QueryValue or SetValue: 0 success, 2 failure.
    int status() const { return status_; }

    // What could not be saved since clearOutcome(), each reason once.
    const std::vector<SaveFailure>& failures() const { return failures_; }
    // Whether there is no failure but missing sections.
    bool onlySectionsMissing() const;
    void clearOutcome();

  protected:
    // OpenSection on the parameter file.
    virtual SectionHandle* open(std::string_view sectionPath, std::uint32_t flags);

    void addFailure(SaveFailure failure);
    // The value of a key stays as it is spelled in the open section, which is committed all the same.
    void keepValue();
    bool finish(bool success, std::string_view text, bool showError);

    SectionHandle* section_ = nullptr;

  private:
    ErrorReporter reporter_;
    bool showErrors_;
    int status_ = 0;
    std::vector<SaveFailure> failures_;
};
