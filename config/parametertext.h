// The text of a parameter file, for whoever asks where something stands in it. Inside the folder only.
#pragma once

#include "config/pdf_io.h"

#include <string>
#include <string_view>
#include <vector>

class ParameterText {
  public:
    explicit ParameterText(std::string text);

    // The section that is asked about from now on. False: there is none.
    bool open(std::string_view path);
    void close();
    int dataError() const { return section_->dataError; }  // of the open section: why it cannot be read

    // In the open section: the word behind a key, null without one.
    struct Word {
        std::string_view text;
        int line = 0;
    };
    const Word* word(const char* key);

    // From 1: where the section begins, or the one around it when it is missing, or the file.
    int sectionLine(std::string_view path);
    // The same of a key, or of its section.
    int keyLine(std::string_view path, const char* key);
    int lineAt(std::size_t offset) const;

    std::vector<SectionOpening> openings() { return SectionOpenings(text_); }
    std::size_t size() const { return text_.size(); }

    ~ParameterText() { close(); }
    ParameterText(const ParameterText&) = delete;
    ParameterText& operator=(const ParameterText&) = delete;

  private:
    std::string text_;
    SectionIndex index_;
    std::vector<std::size_t> lineEnds_;
    SectionHandle* section_ = nullptr;
    Word word_;
};
