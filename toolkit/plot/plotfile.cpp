#include "toolkit/plot/plotfile.h"

#include "toolkit/plot/cairopen.h"
#include "toolkit/plot/plotpainter.h"

#include <algorithm>
#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cctype>
#include <memory>

namespace {

constexpr int leastWidth = 640, leastHeight = 400;
constexpr int margin = 12;
constexpr int pngScale = 2;
constexpr char family[] = "Liberation Sans";

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Cairo = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

cairo_status_t append(void* file, const unsigned char* bytes, unsigned count) {
    static_cast<std::string*>(file)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
}

void draw(cairo_surface_t* surface, const zPlotPicture& shown, const std::vector<std::string>& heading,
          int width, int height) {
    const Cairo cairo(cairo_create(surface), cairo_destroy);
    const zPlotLook look = zPlotLookOnPaper();
    zCairoPen pen(cairo.get(), family, look);
    const int row = pen.textHeight() + 2, top = margin + row * static_cast<int>(heading.size());
    const XRectangle page{0, 0, static_cast<unsigned short>(width), static_cast<unsigned short>(height)};
    pen.fill(zInk::ground, 0, {&page, 1});
    int baseline = margin + pen.ascent();
    for (const std::string& line : heading) {
        pen.write({margin, baseline, line});
        baseline += row;
    }
    const int begin = top + margin / 2;
    cairo_translate(cairo.get(), margin, begin);
    zPlotPicture picture = shown;
    picture.lay(width - 2 * margin, height - begin - margin, pen);
    zPlotPainter painter;
    painter.all(picture, pen);
    if (!picture.cursor()) return;
    const XRectangle line = zPlotPainter::cursorLine(picture);
    pen.fill(zInk::text, 0, {&line, 1});
}

}  // namespace

zPlotForm zPlotFormOf(std::string_view fileName) {
    constexpr std::string_view::size_type endLength = 4;
    std::string end(fileName.substr(fileName.size() - std::min(fileName.size(), endLength)));
    std::ranges::transform(end, end.begin(), [](unsigned char c) { return std::tolower(c); });
    return end == ".svg" ? zPlotForm::svg : end == ".pdf" ? zPlotForm::pdf : zPlotForm::png;
}

std::string zPlotFile(const zPlotPicture& picture, zPlotForm form, const std::vector<std::string>& heading) {
    const int width = std::max(picture.places().width, leastWidth) + 2 * margin;
    const int height = std::max(picture.places().height, leastHeight) + 3 * margin;
    std::string file;
    Surface surface(form == zPlotForm::svg ? cairo_svg_surface_create_for_stream(append, &file, width, height)
                    : form == zPlotForm::pdf
                        ? cairo_pdf_surface_create_for_stream(append, &file, width, height)
                        : cairo_image_surface_create(CAIRO_FORMAT_RGB24, width * pngScale, height * pngScale),
                    cairo_surface_destroy);
    if (form == zPlotForm::png) cairo_surface_set_device_scale(surface.get(), pngScale, pngScale);
    if (form == zPlotForm::pdf && !heading.empty())
        cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, heading.front().c_str());
    draw(surface.get(), picture, heading, width, height);
    if (form == zPlotForm::png) cairo_surface_write_to_png_stream(surface.get(), append, &file);
    cairo_surface_finish(surface.get());
    return file;
}
