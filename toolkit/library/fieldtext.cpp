#include "toolkit/library/fieldtext.h"

#include "toolkit/library/truecolour.h"
#include "toolkit/library/xftdraws.h"

#include <X11/Xft/Xft.h>
#include <Xm/TextF.h>
// after it:
#include <Xm/TextFP.h>
#include <algorithm>
#include <memory>

namespace {

const XmTextFieldRec& recordOf(Widget field) {
    return *reinterpret_cast<XmTextFieldWidget>(field);
}

// The record of a field whose locale has characters of one byte, as that of this program.
bool hasBytes(const XmTextFieldPart& part) {
    return part.max_char_size == 1 && part.value;
}

std::size_t lengthOf(const XmTextFieldPart& part) {
    return static_cast<std::size_t>(part.string_length);
}

// Between the edge of a field and its text.
struct Frame {
    int left, top, bottom;

    explicit Frame(const XmTextFieldRec& record) {
        const int edge = record.primitive.highlight_thickness + record.primitive.shadow_thickness;
        left = edge + record.text.margin_width;
        top = edge + record.text.margin_top;
        bottom = edge + record.text.margin_bottom;
    }
};

// The whole text, not a part of it. The list has each place where marked text begins or ends.
bool isMarked(const XmTextFieldPart& part) {
    const _XmHighlightData& places = part.highlight;
    return places.list[0].mode == XmHIGHLIGHT_SELECTED &&
           (places.number == 1 || (places.number == 2 && places.list[1].position >= part.string_length));
}

// Nothing is to be seen in the field but the beginning of its text in its usual colour, or marked as a whole.
bool isPlain(const XmTextFieldRec& record, const Frame& frame) {
    const XmTextFieldPart& part = record.text;
    return record.core.window && record.core.sensitive && record.core.ancestor_sensitive && part.use_xft &&
           part.cursor_position == 0 && !part.cursor_position_visible && part.h_offset == frame.left &&
           part.prim_pos_left == part.prim_pos_right && !part.has_secondary &&
           (part.highlight.number == 1 || isMarked(part));
}

// Draws a text that has as much room as the library gives it.
class Drawing {
  public:
    Drawing(Widget field, const Frame& frame)
        : field_(field), record_(recordOf(field)), frame_(frame), right_(record_.core.width - frame.left),
          height_(record_.core.height - frame.top - frame.bottom) {}

    void draw(std::string_view text) const {
        if (right_ <= frame_.left || height_ <= 0) return;
        XRectangle inner{static_cast<short>(frame_.left), static_cast<short>(frame_.top),
                         static_cast<unsigned short>(right_ - frame_.left),
                         static_cast<unsigned short>(height_)};
        XftDraw* const draw = zXftDrawOf(field_);
        XftDrawSetClipRectangles(draw, 0, 0, &inner, 1);
        clearFrom(frame_.left);
        const Pixel foreground = record_.primitive.foreground, background = record_.core.background_pixel;
        const bool marked = isMarked(record_.text);
        if (marked) {
            const XftColor ground = colour(foreground);
            XftDrawRect(draw, &ground, frame_.left, frame_.top, static_cast<unsigned>(extents(text).xOff),
                        static_cast<unsigned>(lineHeight()));
        }
        const XftColor ink = colour(marked ? background : foreground);
        XftDrawString8(draw, &ink, font(), frame_.left, frame_.top + record_.text.font_ascent, bytes(text),
                       static_cast<int>(text.size()));
        // What leans over the end of the last character is not seen: the library clears beside the text.
        const XGlyphInfo last = extents(text.substr(text.size() - 1));
        if (last.width - last.x > last.xOff) clearFrom(frame_.left + extents(text).xOff);
    }

  private:
    static const FcChar8* bytes(std::string_view text) {
        return reinterpret_cast<const FcChar8*>(text.data());
    }
    Display* display() const { return DisplayOfScreen(record_.core.screen); }
    XftFont* font() const { return static_cast<XftFont*>(record_.text.font); }
    int lineHeight() const { return record_.text.font_ascent + record_.text.font_descent; }
    XftColor colour(Pixel pixel) const {
        const XColor value = zColourOf(field_, pixel);
        return {pixel, {value.red, value.green, value.blue, 0xffff}};
    }
    XGlyphInfo extents(std::string_view text) const {
        XGlyphInfo found{};
        XftTextExtents8(display(), font(), bytes(text), static_cast<int>(text.size()), &found);
        return found;
    }
    void clearFrom(int x) const {
        if (x >= right_) return;
        XClearArea(display(), record_.core.window, x, frame_.top, static_cast<unsigned>(right_ - x),
                   static_cast<unsigned>(height_), False);
    }

    Widget field_;
    const XmTextFieldRec& record_;
    const Frame& frame_;
    int right_, height_;
};

}  // namespace

bool zFieldHolds(Widget field, std::string_view text) {
    const XmTextFieldPart& part = recordOf(field).text;
    if (hasBytes(part)) return std::string_view(part.value, lengthOf(part)) == text;
    const std::unique_ptr<char, void (*)(char*)> held(XmTextFieldGetString(field), XtFree);
    return held.get() == text;
}

bool zReplaceReadText(Widget field, std::string_view text) {
    const XmTextFieldRec& record = recordOf(field);
    const Frame frame(record);
    if (!hasBytes(record.text) || text.empty() || text.size() != lengthOf(record.text) ||
        !isPlain(record, frame))
        return false;
    std::ranges::copy(text, record.text.value);
    Drawing(field, frame).draw(text);
    return true;
}
