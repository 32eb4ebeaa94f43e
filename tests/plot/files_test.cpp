// Plots as files, read by other programs.
#include "tests/plot/plotdesk.h"
#include "toolkit/plot/plotfile.h"
#include "ui/plot/saveplot.h"

#include <fstream>

using namespace std::chrono;

namespace {

class PlotFiles : public PlotDeskTest {
  protected:
    std::filesystem::path directory =
        std::filesystem::temp_directory_path() / fmt::format("plotfiles{}", ::getpid());

    void SetUp() override {
        PlotDeskTest::SetUp();
        std::filesystem::create_directories(directory);
        add("received", "cells/s");
        add("sent", "packets/s");
        for (int i = 0; i < 400; ++i)
            step(250ms, [i](std::size_t s) -> std::optional<float> {
                if (i > 300 && i < 330) return {};
                return static_cast<float>(s == 0 ? 100 + i % 50 : 7);
            });
    }
    void TearDown() override { std::filesystem::remove_all(directory); }

    std::string write(const std::string& name) {
        const std::string path = directory / name;
        const zPlotPicture& picture = window->plot().picture();
        std::ofstream(path) << zPlotFile(picture, zPlotFormOf(name), plotHeading(picture, "adapter 1"));
        return path;
    }
    // Of a command's output.
    static std::string said(const std::string& command) {
        std::string all;
        FILE* pipe = ::popen(command.c_str(), "r");  // NOLINT(cert-env33-c)
        for (int c = 0; (c = std::fgetc(pipe)) != EOF;) all += static_cast<char>(c);
        EXPECT_EQ(::pclose(pipe), 0) << command << all;
        return all;
    }
    // Pixels of about this colour in a picture.
    static int pixels(const std::string& picture, const std::string& colour) {
        return std::stoi(
            said(fmt::format("convert {} -fuzz 6% -fill black +opaque '{}' -fill white -opaque '{}' "
                             "-format '%[fx:round(mean*w*h)]' info:",
                             picture, colour, colour)));
    }
};

}  // namespace

TEST_F(PlotFiles, AreReadByOtherPrograms) {
    const std::string png = write("a.png"), svg = write("a.SVG"), pdf = write("a.pdf");
    const std::string fromSvg = directory / "svg.png", fromPdf = directory / "pdf";
    said(fmt::format("rsvg-convert {} -o {} 2>&1", svg, fromSvg));
    said(fmt::format("pdftoppm -png -r 72 -singlefile {} {} 2>&1", pdf, fromPdf));
    const zPlotLook look = zPlotLookOnPaper();
    const auto& p = window->plot().picture().places();
    const int plotted = p.right - p.left;
    for (const auto& [picture, scale] : {std::pair(png, 2), {fromSvg, 1}, {fromPdf + ".png", 1}}) {
        SCOPED_TRACE(picture);
        EXPECT_THAT(said("identify " + picture), testing::HasSubstr("PNG"));
        // Both lines go over most of the plot, two pixels high; there is a gap.
        for (const int line : {0, 1}) {
            const int found = pixels(picture, fmt::format("#{:06x}", look.line[asIndex(line)]));
            EXPECT_GT(found, plotted * scale * scale) << line;
            EXPECT_LT(found, plotted * scale * scale * 30) << line;
        }
    }
    const std::string text = said(fmt::format("pdftotext -layout {} - 2>&1", pdf));
    std::string host(256, '\0');
    ::gethostname(host.data(), host.size());
    const std::time_t today = std::time(nullptr);
    std::tm local{};
    localtime_r(&today, &local);
    char zone[16];
    std::strftime(zone, sizeof zone, "%z", &local);
    for (const std::string& part : {std::string(host.c_str()), std::string("adapter 1"), std::string(zone),
                                    std::string("received"), std::string("sent"), std::string("packets/s")})
        EXPECT_THAT(text, testing::HasSubstr(part));
}

TEST_F(PlotFiles, AreSavedByTheWindow) {
    const std::string path = directory / "saved.svg";
    const auto dialog = [this] { return user.shellLike("Save Plot"); };
    user.when([&] { return dialog() != nullptr; },
              [&] {
                  const Widget text = XtNameToWidget(dialog(), "*Text");
                  XtVaSetValues(text, "value", path.c_str(), nullptr);
                  user.focus(dialog());
                  user.key("Return");
              });
    window->plot().onKey({"s", false, true});
    std::ifstream file(path);
    std::string first;
    std::getline(file, first);
    EXPECT_THAT(first, testing::StartsWith("<?xml"));
}
