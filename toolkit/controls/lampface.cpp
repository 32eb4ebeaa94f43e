#include "toolkit/controls/lampface.h"

#include "toolkit/display/displaycache.h"
#include "toolkit/library/pixmaps.h"

#include <algorithm>
#include <array>

namespace {

class Drawing {
  public:
    Drawing(Widget lamp, const zLampFace& face)
        : display_(XtDisplay(lamp)), face_(face),
          pixmap_(XCreatePixmap(display_, RootWindowOfScreen(XtScreen(lamp)), unsignedOf(face.width),
                                unsignedOf(face.height), unsignedOf(DefaultDepthOfScreen(XtScreen(lamp))))),
          gc_(XCreateGC(display_, pixmap_, 0, nullptr)) {
        XSetForeground(display_, gc_, face.glass);
        XFillRectangle(display_, pixmap_, gc_, 0, 0, unsignedOf(face.width), unsignedOf(face.height));
        XSetForeground(display_, gc_, face.frame);
        frame(face.shape == zLampShape::greyed);
        XSetForeground(display_, gc_, face.sign);
    }
    ~Drawing() { XFreeGC(display_, gc_); }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    Pixmap made() const { return pixmap_; }

    void check() {
        const int s = symbol(), x = face_.width / 2, y = face_.height / 2;
        const int half = 3 * s / 4;
        std::array<XPoint, 3> points{point(x - s, y), point(x - s / 3, y + half), point(x + s, y - half)};
        pen(stroke(), LineSolid);
        XDrawLines(display_, pixmap_, gc_, points.data(), static_cast<int>(points.size()), CoordModeOrigin);
    }
    void ring() {
        const int r = symbol() - stroke() / 2;
        pen(std::max(2, stroke() - 1), LineSolid);
        XDrawArc(display_, pixmap_, gc_, face_.width / 2 - r, face_.height / 2 - r, unsignedOf(2 * r),
                 unsignedOf(2 * r), 0, 360 * 64);
    }
    void dash() {
        pen(stroke(), LineSolid);
        const int y = face_.height / 2, x = face_.width / 2;
        XDrawLine(display_, pixmap_, gc_, x - symbol(), y, x + symbol(), y);
    }

  private:
    void frame(bool dotted) {
        const int dots = std::max(2, face_.height / 6);
        if (dotted) {
            const std::array dashes{static_cast<char>(dots), static_cast<char>(dots)};
            XSetDashes(display_, gc_, 0, dashes.data(), static_cast<int>(dashes.size()));
        }
        pen(1, dotted ? LineOnOffDash : LineSolid);
        XDrawRectangle(display_, pixmap_, gc_, 0, 0, unsignedOf(face_.width - 1),
                       unsignedOf(face_.height - 1));
    }
    static unsigned unsignedOf(int value) { return static_cast<unsigned>(std::max(1, value)); }
    static XPoint point(int x, int y) { return {static_cast<short>(x), static_cast<short>(y)}; }
    int symbol() const { return std::max(3, face_.height / 2 - 3); }  // half of its height
    int stroke() const { return std::max(2, face_.height / 6); }
    void pen(int width, int style) {
        XSetLineAttributes(display_, gc_, unsignedOf(width), style, CapButt, JoinMiter);
    }

    Display* display_;
    const zLampFace& face_;
    Pixmap pixmap_;
    GC gc_;
};

}  // namespace

Pixmap zDrawnLamp(Widget lamp, const zLampFace& face) {
    // Numbers of pictures are above 0.
    Pixmap& pixmap =
        zDisplayCache::of(XtDisplay(lamp))
            .pixmap({0, static_cast<unsigned long>(face.shape), face.glass, face.sign, face.frame,
                     static_cast<unsigned long>(face.width), static_cast<unsigned long>(face.height)});
    if (pixmap) return pixmap;
    Drawing drawing(lamp, face);
    if (face.shape == zLampShape::lit) drawing.check();
    if (face.shape == zLampShape::unlit) drawing.ring();
    if (face.shape == zLampShape::greyed) drawing.dash();
    pixmap = drawing.made();
    zKnowPixmap(lamp, pixmap, static_cast<unsigned>(face.width), static_cast<unsigned>(face.height));
    return pixmap;
}
