#include "toolkit/window/title.h"

#include <X11/Shell.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <cerrno>
#include <iconv.h>
#include <memory>

namespace {

using XText = std::unique_ptr<unsigned char, int (*)(void*)>;

bool isAscii(const std::string& text) {
    return std::ranges::all_of(text, [](unsigned char byte) { return byte < 0x80; });
}

std::string fromLatin1(const std::string& text) {
    std::string utf8;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80) utf8 += static_cast<char>(0xc0 | byte >> 6);
        utf8 += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3f));
    }
    return utf8;
}

// A text that is no UTF-8 is taken as Latin-1. One that is, but ends within a character, loses that: it must
// have others beyond ASCII, since Latin-1 can end like this, too. Xlib's own conversion reports neither.
std::string asUtf8(std::string text) {
    const iconv_t converter = ::iconv_open("UTF-8", "UTF-8");
    if (converter == reinterpret_cast<iconv_t>(-1)) return fromLatin1(text);
    std::string copy(text.size(), '\0');
    char *from = text.data(), *to = copy.data();
    std::size_t left = text.size(), room = copy.size();
    const bool whole = ::iconv(converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
    const bool cut = !whole && errno == EINVAL;
    ::iconv_close(converter);
    copy.resize(copy.size() - room);
    return whole || (cut && !isAscii(copy)) ? copy : fromLatin1(text);
}

// Compound text cannot hold control characters, and ends before one.
std::string withoutControls(std::string text) {
    std::erase_if(text, [](unsigned char byte) { return byte < ' ' || byte == 0x7f; });
    if (isAscii(text)) return text;
    text = asUtf8(text);
    for (std::size_t at = 0; (at = text.find('\xc2', at)) != text.npos;) {
        if (static_cast<unsigned char>(text[at + 1]) < 0xa0)  // U+0080 to U+009F
            text.erase(at, 2);
        else
            at += 2;
    }
    return text;
}

void setTitle(Widget shell, const char* title, Atom encoding) {
    XtVaSetValues(shell, XmNtitle, title, XmNtitleEncoding, encoding, XmNiconName, title, XmNiconNameEncoding,
                  encoding, nullptr);
}

}  // namespace

void zSetTitle(Widget shell, const std::string& title) {
    std::string text = withoutControls(title);
    if (isAscii(text)) {
        setTitle(shell, text.c_str(), XA_STRING);
    } else {
        char* texts[] = {text.data()};
        XTextProperty property{};
        if (Xutf8TextListToTextProperty(XtDisplay(shell), texts, 1, XCompoundTextStyle, &property) < 0)
            return;
        const XText compound(property.value, XFree);
        setTitle(shell, reinterpret_cast<const char*>(compound.get()), property.encoding);
    }
    if (XtIsRealized(shell)) zTellTitle(shell);
}

void zTellTitle(Widget shell) {
    String title = nullptr;
    Atom encoding = None;
    XtVaGetValues(shell, XmNtitle, &title, XmNtitleEncoding, &encoding, nullptr);
    Display* display = XtDisplay(shell);
    std::string held = title ? title : "";
    const XTextProperty property{reinterpret_cast<unsigned char*>(held.data()), encoding, 8, held.size()};
    char** texts = nullptr;
    int count = 0;
    if (Xutf8TextPropertyToTextList(display, &property, &texts, &count) < 0) return;
    const std::string text = count > 0 ? texts[0] : "";
    if (texts) XFreeStringList(texts);
    for (const char* name : {"_NET_WM_NAME", "_NET_WM_ICON_NAME"})
        XChangeProperty(display, XtWindow(shell), XInternAtom(display, name, False),
                        XInternAtom(display, "UTF8_STRING", False), 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
}
