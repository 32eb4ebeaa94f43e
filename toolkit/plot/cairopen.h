// Draws into a surface of cairo, in its units. Inside the toolkit only.
#pragma once

#include "toolkit/plot/plotpen.h"

#include <cairo.h>
#include <string>
#include <vector>

class zCairoPen : public zPlotPen {
  public:
    // Neither is owned. `family`: of the font.
    zCairoPen(cairo_t* surface, const std::string& family, const zPlotLook& look);

    int textWidth(std::string_view text) const override;
    int textHeight() const override;
    int ascent() const override;
    void setGround(std::span<const short> rows, int height) override;
    void ground(std::span<const XRectangle> areas) override;
    void fill(zInk ink, int line, std::span<const XRectangle> areas) override;
    void write(std::span<const Text> texts) override;
    using zPlotPen::write;
    void clip(const XRectangle* area) override;

  private:
    void fill(unsigned colour, std::span<const XRectangle> areas);

    cairo_t* cairo_;
    zPlotLook look_;
    std::vector<short> rows_;  // with lines on the ground
};
