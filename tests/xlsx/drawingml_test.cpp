// Theme colours and theme fonts as the application wrote them in its own workbooks: read back where
// it wrote them, and from a new chart and a new shape given the same element, they show what the
// application shows.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include <pugixml.hpp>

#include "host/chart.h"
#include "host/constants.h"
#include "test_support.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

namespace ts = testsupport;
using namespace host;

namespace {

constexpr long kMarker = 0x0C0B0A;  // written as "0A0B0C"
constexpr const char* kMarkerFace = "Marker Face";

ts::fs::path CorpusFile(const char* name) { return ts::SharedDir() / "corpus" / "excel" / name; }

Ref<Shape> ShapeNamed(Ref<Workbook> wb, long sheet, const std::string& name) {
    return wb->Worksheets()->Item(sheet)->Shapes()->Item(name);
}

Ref<Chart> ChartNamed(Ref<Workbook> wb, long sheet, const std::string& name) { return ShapeNamed(wb, sheet, name)->Chart(); }

// True when a chart or drawing part of the workbook holds the text as written.
bool Written(const ts::fs::path& book, const std::string& text) {
    auto pkg = xlsx::Package::Open(book.string());
    for (auto& part : pkg->Parts())
        if ((part.find("charts/") != std::string::npos || part.find("drawings/") != std::string::npos) &&
            pkg->Bytes(part).find(text) != std::string::npos)
            return true;
    return false;
}

// A copy of a workbook with a sheet holding a new column chart with a title and a new text box;
// the marker colour and face stand where the test puts what it reads back.
ts::fs::path WithNewChartAndShape(const ts::fs::path& book, const std::string& dir) {
    auto out = ts::ScratchDir(dir) / book.filename();
    auto app = xlsx::NewApplication();
    auto wb = app->Open(book.string());
    auto sheets = wb->Sheets();
    auto ws = wb->Worksheets()->Item(sheets->Add(nullptr, sheets->Item(sheets->Count()))->Name());
    for (long r = 1; r <= 3; ++r) ws->Cells(r, 1)->SetValue(double(r));
    auto chart = ws->ChartObjects()->Add(10, 10, 300, 200)->Chart();
    auto series = chart->SeriesCollection()->NewSeries();
    series->SetValues(ws->Range("A1:A3"));
    series->Interior()->SetColor(kMarker);
    chart->SetHasTitle(true);
    chart->ChartTitle()->SetText("Title");
    chart->ChartTitle()->Font()->SetName(kMarkerFace);
    auto box = ws->Shapes()->AddTextbox(msoTextOrientationHorizontal, 10, 250, 100, 40);
    box->SetName("Probe");
    box->Fill()->ForeColor()->SetRGB(kMarker);
    box->TextFrame2()->TextRange()->SetText("Text");
    box->TextFrame2()->TextRange()->Font()->SetName(kMarkerFace);
    wb->SaveAs(out.string());
    return out;
}

// Puts `xml` in place of every marker colour element, and `face` for the marker face.
void Replace(const ts::fs::path& book, const std::string& xml, const std::string& face) {
    auto pkg = xlsx::Package::Open(book.string());
    for (auto& part : pkg->Parts()) {
        std::string bytes = pkg->Bytes(part);
        if (bytes.find("0A0B0C") == std::string::npos && bytes.find(kMarkerFace) == std::string::npos) continue;
        pugi::xml_document doc;
        ASSERT_TRUE(doc.load_string(bytes.c_str()));
        for (auto hit : doc.select_nodes("//*[local-name()='srgbClr'][@val='0A0B0C']")) {
            auto el = hit.node();
            if (!xml.empty()) {
                el.parent().append_buffer(xml.c_str(), xml.size());
                el.parent().remove_child(el);
            }
        }
        for (auto hit : doc.select_nodes("//*[local-name()='latin']/@typeface"))
            if (std::string(hit.attribute().value()) == kMarkerFace && !face.empty()) hit.attribute().set_value(face.c_str());
        std::ostringstream s;
        doc.save(s, "", pugi::format_raw);
        pkg->Put(part, s.str(), pkg->ContentType(part));
    }
    pkg->Save(book.string());
}

// A colour element as the application wrote it in one of its workbooks, what it shows, and a
// place where the workbook has it.
struct ColorRow {
    const char* workbook;
    const char* element;
    long rgb;
    std::function<long(Ref<Workbook>)> inPlace;
};

long Rgb(int r, int g, int b) { return r | (g << 8) | (b << 16); }

// The expected values follow the rule the application applies, from the colour the workbook's
// theme gives: lumMod and lumOff scale and offset the HSL luminance (the values its colour picker
// offers, "Lighter 40 %" ...); shade mixes with black in linear light (its own example: a 50 %
// shade of 00FF00 is 00BC00).
const ColorRow kColors[] = {
    // accent1 CB4333: luminance 0.498 * 0.8 + 0.2
    {"asposej_47349wb.xlsx", R"(<a:schemeClr val="accent1"><a:lumMod val="80000"/><a:lumOff val="20000"/></a:schemeClr>)",
     Rgb(0xD6, 0x68, 0x5B),
     [](Ref<Workbook> wb) { return CLng(ChartNamed(wb, 6, "Chart 3")->SeriesCollection(Variant(13L))->Interior()->Color()); }},
    // accent4 FAC76C: luminance 0.702 * 0.2 + 0.8
    {"asposej_47349wb.xlsx", R"(<a:schemeClr val="accent4"><a:lumMod val="20000"/><a:lumOff val="80000"/></a:schemeClr>)",
     Rgb(0xFE, 0xF4, 0xE2), [](Ref<Workbook> wb) { return ShapeNamed(wb, 2, "Cloud 9")->Fill()->ForeColor()->RGB(); }},
    // tx2 (dk2) B13F9A: luminance 0.471 * 0.4 + 0.6
    {"umya_aaa_eleven_charts.xlsx", R"(<a:schemeClr val="tx2"><a:lumMod val="40000"/><a:lumOff val="60000"/></a:schemeClr>)",
     Rgb(0xE3, 0xAF, 0xD8),
     [](Ref<Workbook> wb) { return CLng(ChartNamed(wb, 2, "グラフ 5")->PlotArea()->Interior()->PatternColor()); }},
    // accent4 F9B639: luminance 0.6 * 0.2 + 0.8
    {"umya_aaa_eleven_charts.xlsx", R"(<a:schemeClr val="accent4"><a:lumMod val="20000"/><a:lumOff val="80000"/></a:schemeClr>)",
     Rgb(0xFE, 0xF0, 0xD7), [](Ref<Workbook> wb) { return ShapeNamed(wb, 1, "円/楕円 4")->Fill()->ForeColor()->RGB(); }},
    // accent2 C0504D: luminance 0.527 * 0.4 + 0.6
    {"oxsdk_Complex01.xlsx", R"(<a:schemeClr val="accent2"><a:lumMod val="40000"/><a:lumOff val="60000"/></a:schemeClr>)",
     Rgb(0xE6, 0xB9, 0xB8),
     [](Ref<Workbook> wb) { return CLng(ShapeNamed(wb, 1, "Rectangle 2")->TextFrame()->Characters()->Font()->Color()); }},
    // tx1 (dk1) 000000: luminance 0 * 0.75 + 0.25; the chart's texts and a text box carry it both
    {"oxdata_unemployment-nrw202208_usershapes_combos.xlsx",
     R"(<a:schemeClr val="tx1"><a:lumMod val="75000"/><a:lumOff val="25000"/></a:schemeClr>)", Rgb(0x40, 0x40, 0x40),
     [](Ref<Workbook> wb) {
         long chart = CLng(ChartNamed(wb, 8, "Chart 1")->ChartArea()->Font()->Color());
         long shape = CLng(ShapeNamed(wb, 8, "Textfeld 3")->TextFrame()->Characters()->Font()->Color());
         EXPECT_EQ(chart, shape);
         return chart;
     }},
    // lt1 FFFFFF: 1.0 in linear light * 0.5 is BC in sRGB
    {"poi_WithTextBox2.xlsx", R"(<a:schemeClr val="lt1"><a:shade val="50000"/></a:schemeClr>)", Rgb(0xBC, 0xBC, 0xBC),
     [](Ref<Workbook> wb) { return ShapeNamed(wb, 1, "TextBox 1")->Line()->ForeColor()->RGB(); }},
};

// A theme font as the application wrote it, the face the workbook's theme names for it, and a
// place where the workbook has it.
struct FontRow {
    const char* workbook;
    const char* typeface;
    const char* face;
    std::function<std::string(Ref<Workbook>)> inPlace;
};

// The faces are the theme's own (theme1.xml: majorFont, minorFont); the second workbook's cells
// default to another face (宋体), which its chart texts don't take.
const FontRow kFonts[] = {
    {"npoi_simple-monthly-budget.xlsx", "+mj-lt", "Georgia",
     [](Ref<Workbook> wb) { return CStr(wb->Worksheets()->Item(1L)->Shapes()->Item(1L)->Chart()->ChartArea()->Font()->Name()); }},
    {"npoi_simple-monthly-budget.xlsx", "+mn-lt", "Century Gothic",
     [](Ref<Workbook> wb) {
         return CStr(wb->Worksheets()->Item(1L)->Shapes()->Item(1L)->Chart()->Axes(xlCategory)->TickLabels()->Font()->Name());
     }},
    {"aspose_chart_3dstacked_gradient_pattern.xlsx", "+mn-lt", "Calibri",
     [](Ref<Workbook> wb) { return CStr(ChartNamed(wb, 1, "Chart 4")->ChartTitle()->Font()->Name()); }},
};

}  // namespace

TEST(DrawingMl, ThemeColoursReadAsTheApplicationShowsThemOnChartsAndShapes) {
    if (ts::SharedDir().empty()) GTEST_SKIP() << "../shared is not beside the source tree";
    int n = 0;
    for (auto& row : kColors) {
        auto book = CorpusFile(row.workbook);
        SCOPED_TRACE(std::string(row.workbook) + " " + row.element);
        ASSERT_TRUE(ts::fs::exists(book));
        EXPECT_TRUE(Written(book, row.element));
        auto app = xlsx::NewApplication();
        EXPECT_EQ(row.inPlace(app->Open(book.string())), row.rgb);

        auto copy = WithNewChartAndShape(book, "drawingml-colour-" + std::to_string(n++));
        Replace(copy, row.element, "");
        auto again = xlsx::NewApplication()->Open(copy.string());
        auto ws = again->Worksheets()->Item(again->Worksheets()->Count());
        EXPECT_EQ(CLng(ws->ChartObjects(Variant(1L))->Chart()->SeriesCollection(Variant(1L))->Interior()->Color()), row.rgb);
        EXPECT_EQ(ws->Shapes()->Item("Probe")->Fill()->ForeColor()->RGB(), row.rgb);
    }
}

TEST(DrawingMl, ThemeFontsReadAsTheThemeNamesThemOnChartsAndShapes) {
    if (ts::SharedDir().empty()) GTEST_SKIP() << "../shared is not beside the source tree";
    int n = 0;
    for (auto& row : kFonts) {
        auto book = CorpusFile(row.workbook);
        SCOPED_TRACE(std::string(row.workbook) + " " + row.typeface);
        ASSERT_TRUE(ts::fs::exists(book));
        EXPECT_TRUE(Written(book, std::string("typeface=\"") + row.typeface + "\""));
        auto app = xlsx::NewApplication();
        EXPECT_EQ(row.inPlace(app->Open(book.string())), row.face);

        auto copy = WithNewChartAndShape(book, "drawingml-font-" + std::to_string(n++));
        Replace(copy, "", row.typeface);
        auto again = xlsx::NewApplication()->Open(copy.string());
        auto ws = again->Worksheets()->Item(again->Worksheets()->Count());
        EXPECT_EQ(CStr(ws->ChartObjects(Variant(1L))->Chart()->ChartTitle()->Font()->Name()), row.face);
        EXPECT_EQ(ws->Shapes()->Item("Probe")->TextFrame2()->TextRange()->Font()->Name(), row.face);
    }
}
