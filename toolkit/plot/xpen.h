// Draws into a pixmap of a widget's size, which is then copied to its window, and counts what that costs.
// Inside the toolkit only.
#pragma once

#include "toolkit/plot/plotpen.h"

#include <X11/Intrinsic.h>
#include <X11/Xft/Xft.h>
#include <array>
#include <optional>
#include <vector>

class zXPen : public zPlotPen {
  public:
    // Colours and font come from the resources of the canvas (see plot.h), which must outlive this object.
    explicit zXPen(Widget canvas);
    ~zXPen() override;
    zXPen(const zXPen&) = delete;
    zXPen& operator=(const zXPen&) = delete;

    // Makes a pixmap of this size. The canvas must be realized.
    void resize(int width, int height);

    // Moves what is in the area to the left by so many pixels, as far as there is room in it.
    void scroll(const XRectangle& area, int pixels);
    void show(const XRectangle& area);        // copies it to the window
    void markWindow(const XRectangle& area);  // in the window alone, until it is shown again

    // Bytes of the requests since the last call.
    std::size_t takeSent();
    std::size_t sent() const { return sent_; }

    int textWidth(std::string_view text) const override;
    int textHeight() const override;
    int ascent() const override;
    void setGround(std::span<const short> rows, int height) override;
    void ground(std::span<const XRectangle> areas) override;
    void fill(zInk ink, int line, std::span<const XRectangle> areas) override;
    void write(std::span<const Text> texts) override;
    using zPlotPen::write;
    void clip(const XRectangle* area) override;

    Pixmap pixmap() const { return pixmap_; }

  private:
    void forget();
    GC makeGc(unsigned colour) const;
    void fill(GC gc, std::span<const XRectangle> areas);
    struct Glyph {
        FT_UInt number;
        short advance;
    };
    const Glyph& glyphOf(char c) const;

    Widget canvas_;
    Display* display_;
    zPlotLook look_;
    XftFont* font_;
    XftColor ink_{};
    Pixmap pixmap_ = None, tile_ = None;
    XftDraw* draw_ = nullptr;
    GC ground_ = nullptr, tiled_ = nullptr, text_ = nullptr, grid_ = nullptr, select_ = nullptr,
       anyBand_ = nullptr;
    std::array<GC, zPlotLook::lines> lines_{}, bands_{};
    mutable std::array<std::optional<Glyph>, 128> known_;  // by character
    std::vector<XftGlyphFontSpec> glyphs_;
    std::size_t sent_ = 0;
};
