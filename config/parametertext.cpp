#include "config/parametertext.h"

#include "config/pdf_internal.h"
#include "config/pdfedit.h"

#include <algorithm>

ParameterText::ParameterText(std::string text) : text_(std::move(text)) {
    for (std::size_t at = text_.find('\n'); at != text_.npos; at = text_.find('\n', at + 1))
        lineEnds_.push_back(at);
}

int ParameterText::lineAt(std::size_t offset) const {
    return static_cast<int>(std::ranges::lower_bound(lineEnds_, offset) - lineEnds_.begin()) + 1;
}

bool ParameterText::open(std::string_view path) {
    close();
    section_ = OpenSection(text_, index_, PdfEdit::parameterFile, path, 0);
    return section_ != nullptr;
}

void ParameterText::close() {
    CloseSection(section_);
    section_ = nullptr;
}

const ParameterText::Word* ParameterText::word(const char* key) {
    const char* begin = section_->dataError ? nullptr : FindKey(section_, key);
    if (!begin) return nullptr;
    const char* end = begin;
    while (!pdf::endsValue(*end)) ++end;
    word_.text = {begin, end};
    word_.line = lineAt(section_->dataAt + static_cast<std::size_t>(begin - section_->data.c_str()));
    return &word_;
}

int ParameterText::sectionLine(std::string_view path) {
    for (; !path.empty(); path = path.substr(0, path.rfind('/')))
        if (open(path)) {
            const int line = lineAt(section_->dataAt - 1);  // behind the line of its bracket
            close();
            return line;
        }
    return 1;
}

int ParameterText::keyLine(std::string_view path, const char* key) {
    const Word* found = open(path) ? word(key) : nullptr;
    const int line = found ? found->line : sectionLine(path);
    close();
    return line;
}
