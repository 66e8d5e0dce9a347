// The chart part model: charts of application-made files read back as they were drawn, edits
// written in place and valid against the schemas, series references following row changes.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>

#include "host/chart.h"
#include "host/error.h"
#include "test_support.h"
#include "xlsx/book.h"
#include "xlsx/chart_part.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

using namespace host;
namespace ts = testsupport;

namespace {

using testsupport::ErrorNumberOf;
using testsupport::ErrorTextOf;

constexpr const char* kChartCt = "application/vnd.openxmlformats-officedocument.drawingml.chart+xml";

struct Opened { Ref<xlsx::EngineApplication> app; Ref<Workbook> wb; std::shared_ptr<xlsx::Book> book; };

Opened OpenCorpus(const std::string& name) {
    Opened o;
    o.app = xlsx::NewApplication();
    o.wb = o.app->Open((ts::SharedDir() / "corpus" / "excel" / name).string());
    o.book = std::dynamic_pointer_cast<xlsx::Book>(o.wb);
    return o;
}

std::vector<std::string> ChartParts(xlsx::Book& book) {
    std::vector<std::string> out;
    for (auto& p : book.pkg().Parts())
        if (book.pkg().ContentType(p) == kChartCt) out.push_back(p);
    std::sort(out.begin(), out.end(), [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    return out;
}

Ref<Chart> ChartOf(Opened& o, const std::string& part) { return xlsx::MakeChart(*o.book, part, {}); }

void ExpectValid(const std::vector<ts::fs::path>& files) {
    if (!ts::HaveValidator()) return;
    auto r = ts::ValidateXlsx(files);
    EXPECT_EQ(r.status, 0) << r.output;
}

// The first chart of the book that holds shapes of its own.
Ref<ChartObject> FrameWithShapes(const Ref<Workbook>& wb) {
    for (long i = 1; i <= wb->Worksheets()->Count(); ++i) {
        auto objects = wb->Worksheets()->Item(i)->ChartObjects();
        for (long k = 1; k <= objects->Count(); ++k)
            if (objects->Item(k)->Chart()->Shapes()->Count() > 0) return objects->Item(k);
    }
    return nullptr;
}

// ---------------------------------------------------------------- drawn by LibreOffice

struct Page {
    long w = 0, h = 0;
    std::string rgb;
    bool Coloured(long x, long y) const {
        size_t i = size_t(y * w + x) * 3;
        int r = (unsigned char)rgb[i], g = (unsigned char)rgb[i + 1], b = (unsigned char)rgb[i + 2];
        return std::max({r, g, b}) - std::min({r, g, b}) > 60;
    }
    bool Ink(long x, long y) const {
        size_t i = size_t(y * w + x) * 3;
        return (unsigned char)rgb[i] < 240 || (unsigned char)rgb[i + 1] < 240 || (unsigned char)rgb[i + 2] < 240;
    }
    long ColouredIn(long x1, long y1, long x2, long y2) const {
        long n = 0;
        for (long y = y1; y < y2; ++y)
            for (long x = x1; x < x2; ++x) n += Coloured(x, y);
        return n;
    }
};

// The first page as LibreOffice prints it (PNG kept beside the file for a look); empty without the tools.
std::optional<Page> RenderFirstPage(const ts::fs::path& path) {
    if (!ts::HaveLibreOffice() || ts::Run("command -v pdftoppm").status != 0) return std::nullopt;
    auto dir = path.parent_path();
    auto pdf = ts::LibreOfficeConvert(path, "pdf", dir);
    EXPECT_FALSE(pdf.empty());
    if (pdf.empty()) return std::nullopt;
    auto stem = (dir / (path.stem().string() + "-page")).string();
    EXPECT_EQ(ts::Run("pdftoppm -r 40 -f 1 -l 1 -png " + ts::Quote(pdf.string()) + " " + ts::Quote(stem)).status, 0);
    EXPECT_EQ(ts::Run("pdftoppm -r 40 -f 1 -l 1 " + ts::Quote(pdf.string()) + " " + ts::Quote(stem)).status, 0);
    std::ifstream in(stem + "-1.ppm", std::ios::binary);
    EXPECT_TRUE(in.good());
    if (!in.good()) return std::nullopt;
    Page page;
    std::string magic;
    long max = 0;
    in >> magic >> page.w >> page.h >> max;
    in.get();
    EXPECT_EQ(magic, "P6");
    page.rgb.assign(size_t(page.w * page.h * 3), '\0');
    in.read(page.rgb.data(), std::streamsize(page.rgb.size()));
    return page;
}

// The charts stand in a grid of `cols` by `rows` at the top left of the first page: each cell of
// the grid over what is drawn holds coloured marks, not only texts and lines.
void ExpectDrawn(const ts::fs::path& path, long cols, long rows = 0) {
    auto page = RenderFirstPage(path);
    if (!page) return;
    long x1 = page->w, y1 = page->h, x2 = 0, y2 = 0;
    for (long y = 0; y < page->h; ++y)
        for (long x = 0; x < page->w; ++x)
            if (page->Ink(x, y)) x1 = std::min(x1, x), y1 = std::min(y1, y), x2 = std::max(x2, x + 1), y2 = std::max(y2, y + 1);
    ASSERT_LT(x1, x2) << "blank page";
    if (rows == 0) {
        EXPECT_GT(page->ColouredIn(0, 0, page->w, page->h), page->w * page->h / 100) << "page of " << page->w << "x" << page->h;
        return;
    }
    for (long r = 0; r < rows; ++r)
        for (long c = 0; c < cols; ++c) {
            long cx1 = x1 + (x2 - x1) * c / cols, cx2 = x1 + (x2 - x1) * (c + 1) / cols;
            long cy1 = y1 + (y2 - y1) * r / rows, cy2 = y1 + (y2 - y1) * (r + 1) / rows;
            EXPECT_GT(page->ColouredIn(cx1, cy1, cx2, cy2), (cx2 - cx1) * (cy2 - cy1) / 200)
                << "chart at row " << r + 1 << ", column " << c + 1;
        }
}

// ---------------------------------------------------------------- charts of application files

struct Expected {
    const char* file;
    const char* part;
    long type;
    const char* title;  // nullptr: no title; "*": not asserted
    long legend;        // 0: no legend
    long series;
    const char* formula;  // of the first series
};

TEST(ChartCorpus, ReadsTypeTitleLegendAndSeriesAsDrawn) {
    if (ts::SharedDir().empty()) GTEST_SKIP();
    const Expected cases[] = {
        {"addin_SalesTemplate.xlsx", "xl/charts/chart1.xml", xlLine, "Sales", xlLegendPositionBottom, 6,
         "=SERIES(Template!$B$5,Template!$C$4:$F$4,Template!$C$5:$F$5,1)"},
        {"aspose_chart_3dstacked_gradient_pattern.xlsx", "xl/charts/chart4.xml", xl3DColumnStacked, "fwww",
         xlLegendPositionRight, 1, "=SERIES(,,Sheet1!$A$1:$A$11,1)"},
        {"aspose_sampleChartLegendEntry.xlsx", "xl/charts/chart1.xml", xlCombination, "Chart Title",
         xlLegendPositionRight, 3, "=SERIES(Sheet1!$A$1,,Sheet1!$A$2:$A$3,1)"},
        {"aspose_sampleInlineCharts.xlsx", "xl/charts/chart2.xml", xlLineMarkersStacked, "Line Chart w Random Data",
         xlLegendPositionBottom, 3, "=SERIES(InlineCharts!$B$22,InlineCharts!$A$23:$A$32,InlineCharts!$B$23:$B$32,1)"},
        {"aspose_sampleInlineCharts.xlsx", "xl/charts/chart3.xml", xl3DPie, "Pie Chart", xlLegendPositionRight, 1,
         "=SERIES(InlineCharts!$B$39,InlineCharts!$A$40:$A$45,InlineCharts!$B$40:$B$45,1)"},
        {"asposecloudj_Book1.xlsx", "xl/charts/chart4.xml", xlLine, "Chart Title", xlLegendPositionTop, 4,
         "=SERIES(,Sheet4!$C$7:$D$7,Sheet4!$C$8:$D$8,1)"},
        {"exceljs_test-update-ref.xlsx", "xl/charts/chart1.xml", xlColumnClustered, "Most liked distro", 0, 1,
         "=SERIES(\"Most liked distro\",Sheet3!$C$24:$C$30,Sheet3!$E$24:$E$30,1)"},
        {"oxsdk_legend_top_00D4EE78.xlsx", "xl/charts/chart1.xml", xlColumnClustered, "All Consuming",
         xlLegendPositionTop, 2, "=SERIES(Sheet1!$B$2,Sheet1!$A$3:$A$8,Sheet1!$B$3:$B$8,1)"},
        {"php_32readwriteAreaStackedChart3D1.xlsx", "xl/charts/chart1.xml", xl3DAreaStacked, "Sales",
         xlLegendPositionRight, 3, "=SERIES(Data!$A$6,Data!$B$2:$M$3,Data!$B$6:$M$6,1)"},
        {"php_32readwriteBarPercentageChart3D1.xlsx", "xl/charts/chart1.xml", xl3DBarStacked100, "Sales",
         xlLegendPositionRight, 3, "=SERIES(Data!$A$6,Data!$B$2:$M$3,Data!$B$6:$M$6,1)"},
        {"php_32readwriteColumnPercentageChart3D1.xlsx", "xl/charts/chart1.xml", xl3DColumnStacked100, "Sales",
         xlLegendPositionRight, 3, "=SERIES(Data!$A$6,Data!$B$2:$M$3,Data!$B$6:$M$6,1)"},
        {"php_32readwriteDonutChart4.xlsx", "xl/charts/chart1.xml", xlDoughnut, "Qtr 1 - 2008",
         xlLegendPositionRight, 1, "=SERIES(,Data!$A$4:$A$7,Data!$B$4:$B$7,1)"},
        {"php_32readwriteDonutChartExploded1.xlsx", "xl/charts/chart2.xml", xlDoughnutExploded, "Exploded Doughnut",
         xlLegendPositionRight, 3, "=SERIES(Data!$A$4,Data!$B$2:$M$3,Data!$B$4:$M$4,1)"},
        {"php_32readwritePieChartExploded3D1.xlsx", "xl/charts/chart2.xml", xl3DPieExploded, "Exploded Pie 3D",
         xlLegendPositionRight, 3, "=SERIES(Data!$A$4,Data!$B$2:$M$3,Data!$B$4:$M$4,1)"},
        {"php_32readwriteScatterChart9.xlsx", "xl/charts/chart1.xml", xlXYScatterSmooth, "Test Scatter Trend Chart",
         xlLegendPositionCorner, 3, "=SERIES(Worksheet!$B$1,Worksheet!$A$2:$A$5,Worksheet!$B$2:$B$5,1)"},
        {"php_chart-with-and-without-overlays.xlsx", "xl/charts/chart1.xml", xl3DColumn, "Chart Title",
         xlLegendPositionBottom, 3, "=SERIES(\"UNSATISFACTORY\",'With Overlay'!$U$1:$U$25,'With Overlay'!$V$1:$V$25,1)"},
        {"poi_WithThreeCharts.xlsx", "xl/charts/chart2.xml", xlPieExploded, "Pie Chart Title Thingy",
         xlLegendPositionRight, 1, "=SERIES(,,Sheet1!$B$1:$B$6,1)"},
        {"umya_aaa_eleven_charts.xlsx", "xl/charts/chart10.xml", xlRadar, nullptr, xlLegendPositionRight, 3,
         "=SERIES(,,Sheet4!$B$4:$B$10,1)"},
        {"umya_aaa_eleven_charts.xlsx", "xl/charts/chart11.xml", xlBubble, "*", xlLegendPositionRight, 1,
         "=SERIES(,Sheet4!$B$4:$B$10,Sheet4!$C$4:$C$10,1,Sheet4!$D$4:$D$10)"},
        {"xw_chart_area03.xlsx", "xl/charts/chart1.xml", xlAreaStacked100, nullptr, xlLegendPositionRight, 2,
         "=SERIES(,Sheet1!$A$1:$A$5,Sheet1!$B$1:$B$5,1)"},
        {"xw_chart_bar10.xlsx", "xl/charts/chart1.xml", xlBarStacked100, nullptr, xlLegendPositionRight, 3,
         "=SERIES(,,Sheet1!$A$1:$A$5,1)"},
        {"xw_chart_bar16.xlsx", "xl/charts/chart1.xml", xlBarClustered, "Title", xlLegendPositionBottom, 3,
         "=SERIES(,,Sheet1!$A$1:$A$5,1)"},
        {"xw_chart_legend01.xlsx", "xl/charts/chart1.xml", xlColumnClustered, nullptr, 0, 3,
         "=SERIES(,,Sheet1!$A$1:$A$5,1)"},
        {"xw_chart_title01.xlsx", "xl/charts/chart1.xml", xlColumnClustered, nullptr, xlLegendPositionRight, 1,
         "=SERIES(\"Foo\",,Sheet1!$A$1:$A$5,1)"},
        {"php_ChartSheet.xlsx", "xl/charts/chart1.xml", xlColumnClustered, "Wildlife Population",
         xlLegendPositionRight, 6, "=SERIES(Sheet1!$A$2,Sheet1!$B$1:$D$1,Sheet1!$B$2:$D$2,1)"},
    };
    for (const auto& e : cases) {
        SCOPED_TRACE(std::string(e.file) + " " + e.part);
        auto o = OpenCorpus(e.file);
        auto c = ChartOf(o, e.part);
        EXPECT_EQ(c->ChartType(), e.type);
        if (!e.title || std::string(e.title) != "*") {
            EXPECT_EQ(c->HasTitle() ? c->ChartTitle()->Text() : "(none)", e.title ? e.title : "(none)");
        }
        EXPECT_EQ(c->HasLegend() ? c->Legend()->Position() : 0L, e.legend);
        ASSERT_EQ(c->SeriesCollection()->Count(), e.series);
        EXPECT_EQ(c->SeriesCollection()->Item(1L)->Formula(), e.formula);
    }
}

// Values, names, fonts and axes of a few charts, as their caches and text properties say.
TEST(ChartCorpus, ReadsSeriesDataFontsAndAxes) {
    if (ts::SharedDir().empty()) GTEST_SKIP();
    {
        auto o = OpenCorpus("php_ChartSheet.xlsx");
        auto c = ChartOf(o, "xl/charts/chart1.xml");
        auto s = c->SeriesCollection()->Item(1L);
        EXPECT_EQ(s->Name(), o.book->SheetNamed("Sheet1")->CellText(2, 1));
        EXPECT_EQ(s->PlotOrder(), 1);
        EXPECT_EQ(c->SeriesCollection()->Item(2L)->PlotOrder(), 2);
        auto x = s->XValues();
        ASSERT_EQ(x.size(), 3u);
        EXPECT_EQ(CStr(x[0]), o.book->SheetNamed("Sheet1")->CellText(1, 2));
        auto v = s->Values();
        ASSERT_EQ(v.size(), 3u);
        EXPECT_DOUBLE_EQ(CDbl(v[0]), CDbl(o.book->SheetNamed("Sheet1")->CellValue(2, 2)));
        EXPECT_EQ(c->Axes(xlCategory)->Type(), xlCategory);
        EXPECT_TRUE(CBool(c->HasAxis(xlValue)));
        EXPECT_EQ(ErrorNumberOf([&] { c->Axes(xlValue, xlSecondary); }), 1004);
    }
    {
        // a pie has no axes; its legend shows one entry per slice
        auto o = OpenCorpus("php_32readwriteDonutChart4.xlsx");
        auto c = ChartOf(o, "xl/charts/chart1.xml");
        EXPECT_FALSE(CBool(c->HasAxis(xlCategory)));
        EXPECT_EQ(ErrorNumberOf([&] { c->Axes(xlValue); }), 1004);
        EXPECT_EQ(c->Legend()->LegendEntries()->Count(), 4);
        EXPECT_EQ(c->ChartGroups(1)->DoughnutHoleSize(), 50);
    }
    {
        auto o = OpenCorpus("xw_chart_font03.xlsx");
        auto c = ChartOf(o, "xl/charts/chart1.xml");
        auto f = c->ChartTitle()->Font();
        EXPECT_FALSE(CBool(f->Bold()));
        EXPECT_TRUE(CBool(f->Italic()));
    }
    {
        // runs of one title that differ read Null where they differ
        auto o = OpenCorpus("php_32chartreadwrite.xlsx");
        auto f = ChartOf(o, "xl/charts/chart1.xml")->ChartTitle()->Font();
        EXPECT_DOUBLE_EQ(CDbl(f->Size()), 36);
        EXPECT_EQ(CStr(f->Name()), "Eurostile");
        EXPECT_TRUE(f->Bold().IsNull());
        EXPECT_TRUE(f->Underline().IsNull());
        EXPECT_TRUE(f->Color().IsNull());
        EXPECT_TRUE(f->FontStyle().IsNull());
        auto o2 = OpenCorpus("php_32readwriteColumnChart4.xlsx");
        auto f2 = ChartOf(o2, "xl/charts/chart2.xml")->ChartTitle()->Font();
        EXPECT_DOUBLE_EQ(CDbl(f2->Size()), 32);
        EXPECT_TRUE(f2->Italic().IsNull());
        EXPECT_TRUE(f2->FontStyle().IsNull());
    }
    {
        // one series without a title element: the series' name is the automatic title
        auto o = OpenCorpus("umya_aaa_eleven_charts.xlsx");
        auto c = ChartOf(o, "xl/charts/chart4.xml");
        ASSERT_TRUE(c->HasTitle());
        EXPECT_EQ(c->ChartTitle()->Text(), c->SeriesCollection()->Item(1L)->Name());
    }
}

// Application charts with their extensions, styles and formats stay valid through type changes.
// Shapes the application drew inside a chart (declaring their namespaces element by element) read
// back with their places as fractions of the chart, and take more shapes beside them.
TEST(ChartCorpus, ShapesInsideApplicationChartsReadBackAndTakeMore) {
    const char* file = "oxdata_unemployment-nrw202208_usershapes_combos.xlsx";
    if (!ts::fs::exists(ts::SharedDir() / "corpus" / "excel" / file)) GTEST_SKIP();
    auto o = OpenCorpus(file);
    auto frame = FrameWithShapes(o.wb);
    ASSERT_TRUE(frame);
    auto shapes = frame->Chart()->Shapes();
    ASSERT_EQ(shapes->Count(), 1);
    auto note = shapes->Item(1L);
    EXPECT_EQ(note->Name(), "Textfeld 5");
    EXPECT_EQ(note->Type(), msoTextBox);
    EXPECT_NE(note->TextFrame()->Characters()->Text().find("Teilbereiche"), std::string::npos);
    EXPECT_NEAR(note->Top(), 0.94673 * frame->Height(), 0.01);
    EXPECT_NEAR(note->Width(), frame->Width(), 0.01);
    auto box = shapes->AddTextbox(msoTextOrientationHorizontal, 20, 10, 120, 24);
    box->TextFrame()->Characters()->SetText("Added");
    box->SetName("Added note");

    auto path = ts::ScratchDir("chart-user-shapes") / "more.xlsx";
    o.wb->SaveAs(path.string());
    auto o2 = xlsx::NewApplication();
    auto frame2 = FrameWithShapes(o2->Open(path.string()));
    ASSERT_TRUE(frame2);
    auto again = frame2->Chart();
    ASSERT_EQ(again->Shapes()->Count(), 2);
    EXPECT_EQ(again->Shapes()->Item("Added note")->TextFrame()->Characters()->Text(), "Added");
    EXPECT_NEAR(again->Shapes()->Item("Added note")->Left(), 20, 0.01);
    EXPECT_NEAR(again->Shapes()->Item(1L)->Top(), note->Top(), 0.01);
    ExpectValid({path});
}

TEST(ChartCorpus, TypeChangesOfApplicationChartsStayValid) {
    if (ts::SharedDir().empty()) GTEST_SKIP();
    auto dir = ts::ScratchDir("chart-retype");
    const long types[] = {xlBarStacked, xlPie, xl3DColumnClustered, xlAreaStacked100, xlDoughnut, xlLineMarkers,
                          xl3DPieExploded, xlColumnClustered};
    std::vector<ts::fs::path> saved;
    size_t k = 0;
    for (const char* file : {"umya_aaa_eleven_charts.xlsx", "aspose_sampleInlineCharts.xlsx",
                             "php_32readwriteBarChart3D1.xlsx", "xw_chart_data_labels21.xlsx",
                             "aspose_sampleChartLegendEntry.xlsx", "poi_WithThreeCharts.xlsx",
                             "asposecloudj_Book1.xlsx", "xw_chart_pattern05.xlsx"}) {
        SCOPED_TRACE(file);
        auto o = OpenCorpus(file);
        for (auto& part : ChartParts(*o.book)) {
            auto c = ChartOf(o, part);
            long before = c->SeriesCollection()->Count();
            // bubble sizes go with the bubbles
            std::string formula = before && c->ChartType() != xlBubble ? c->SeriesCollection()->Item(1L)->Formula() : "";
            long t = types[k++ % std::size(types)];
            c->SetChartType(t);
            EXPECT_EQ(c->ChartType(), t) << part;
            EXPECT_EQ(c->SeriesCollection()->Count(), before) << part;
            if (!formula.empty()) {
                EXPECT_EQ(c->SeriesCollection()->Item(1L)->Formula(), formula) << part;
            }
        }
        saved.push_back(dir / file);
        o.wb->SaveAs(saved.back().string());
    }
    ExpectValid(saved);
}

// ---------------------------------------------------------------- charts built through the model

// A data block as the component fills one: categories in column 2 from row S+1, series headings
// in row S, values in columns 3 ...
Ref<Worksheet> FillBlock(Ref<Workbook> wb) {
    auto ws = wb->Worksheets()->Item(1L);
    ws->Cells(5, 3)->SetValue("North");
    ws->Cells(5, 4)->SetValue("South");
    const char* cats[] = {"Jan", "Feb", "Mar", "Apr"};
    for (long r = 0; r < 4; ++r) {
        ws->Cells(6 + r, 2)->SetValue(cats[r]);
        ws->Cells(6 + r, 3)->SetValue(10.0 * (r + 1));
        ws->Cells(6 + r, 4)->SetValue(5.5 * (r + 2));
    }
    return ws;
}

// The chart as the component draws an area, bar or column chart, then gives it its final type.
Ref<Chart> BuildAbc(Ref<Worksheet> ws, long finalType, long legendPosition, double top) {
    auto chart = ws->ChartObjects()->Add(10, top, 360, 220)->Chart();
    chart->SetChartType(xlBarClustered);
    for (long c = 3; c <= 4; ++c) {
        auto s = chart->SeriesCollection()->NewSeries();
        s->SetName("=Sheet1!$" + std::string(1, char('A' + c - 1)) + "$5");
        s->SetXValues(Variant("=Sheet1!R6C2:R9C2"));
        s->SetValues(Variant("=Sheet1!R6C" + std::to_string(c) + ":R9C" + std::to_string(c)));
    }
    chart->SetHasTitle(true);
    chart->ChartTitle()->SetText("Sales by month");
    chart->SetHasLegend(true);
    for (long k : {xlCategory, xlValue}) {
        chart->SetHasAxis(k, true);
        auto ax = chart->Axes(k, xlPrimary);
        ax->SetHasTitle(true);
        ax->AxisTitle()->SetText(k == xlCategory ? "Month" : "Units");
        ax->AxisTitle()->Font()->SetColor(0x0000FFL);
    }
    chart->Axes(xlValue)->AxisTitle()->SetOrientation(xlUpward);
    auto sc = chart->SeriesCollection();
    for (long i = 1; i <= sc->Count(); ++i) {
        sc->Item(i)->ApplyDataLabels(xlDataLabelsShowValue);
        sc->Item(i)->DataLabels()->SetPosition(xlLabelPositionCenter);
    }
    chart->SetChartType(finalType);
    chart->Legend()->SetPosition(legendPosition);
    return chart;
}

Ref<Chart> BuildPie(Ref<Worksheet> ws, long finalType, double top) {
    auto chart = ws->ChartObjects()->Add(10, top, 300, 220)->Chart();
    auto s = chart->SeriesCollection()->NewSeries();
    s->SetXValues(Variant("=Sheet1!R6C2:R9C2"));
    s->SetValues(Variant("=Sheet1!R6C3:R9C3"));
    chart->SetHasTitle(true);
    chart->ChartTitle()->SetText("Share");
    chart->SetChartType(xlPie);
    s = chart->SeriesCollection()->Item(1L);
    s->ApplyDataLabels(xlDataLabelsShowPercent);
    s->DataLabels()->SetPosition(xlLabelPositionBestFit);
    chart->SetChartType(finalType);
    chart->SetHasLegend(true);
    return chart;
}

TEST(ChartBuild, AreaBarColumnPieAndDoughnutChartsValidateAndReadBack) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = FillBlock(wb);
    struct Case { long type; long legend; };
    const Case abc[] = {
        {xlColumnClustered, xlLegendPositionRight}, {xlColumnStacked, xlLegendPositionBottom},
        {xlColumnStacked100, xlLegendPositionTop}, {xlBarClustered, xlLegendPositionLeft},
        {xlBarStacked100, xlLegendPositionCorner}, {xlArea, xlLegendPositionBottom},
        {xlAreaStacked, xlLegendPositionRight}, {xl3DColumnClustered, xlLegendPositionRight},
        {xl3DBarStacked, xlLegendPositionBottom}, {xl3DAreaStacked100, xlLegendPositionTop},
    };
    double top = 150;
    for (auto& k : abc) {
        SCOPED_TRACE(k.type);
        BuildAbc(ws, k.type, k.legend, top);
        top += 230;
    }
    const long pies[] = {xlPie, xlPieExploded, xl3DPie, xl3DPieExploded, xlDoughnut};
    for (long t : pies) {
        EXPECT_FALSE(CBool(BuildPie(ws, t, top)->HasAxis(xlValue)));
        top += 230;
    }
    auto path = ts::ScratchDir("chart-build") / "built.xlsx";
    wb->SaveAs(path.string());

    auto app2 = xlsx::NewApplication();
    auto wb2 = app2->Open(path.string());
    auto objects = wb2->Worksheets()->Item(1L)->ChartObjects();
    ASSERT_EQ(objects->Count(), 15);
    for (long i = 1; i <= 10; ++i) {
        SCOPED_TRACE(i);
        auto c = objects->Item(i)->Chart();
        EXPECT_EQ(c->ChartType(), abc[i - 1].type);
        EXPECT_EQ(c->Legend()->Position(), abc[i - 1].legend);
        EXPECT_EQ(c->ChartTitle()->Text(), "Sales by month");
        auto s = c->SeriesCollection()->Item(2L);
        EXPECT_EQ(s->Formula(), "=SERIES(Sheet1!$D$5,Sheet1!$B$6:$B$9,Sheet1!$D$6:$D$9,2)");
        EXPECT_DOUBLE_EQ(CDbl(s->Values()[3]), 27.5);
        EXPECT_EQ(CLng(s->DataLabels()->Type()), xlDataLabelsShowValue);
        auto vt = c->Axes(xlValue)->AxisTitle();
        EXPECT_EQ(vt->Text(), "Units");
        EXPECT_EQ(CLng(vt->Orientation()), xlUpward);
        EXPECT_EQ(CLng(vt->Font()->Color()), 0x0000FF);
    }
    // the centre survives on columns and bars, not on an area, which has no label positions
    EXPECT_EQ(objects->Item(1L)->Chart()->SeriesCollection()->Item(1L)->DataLabels()->Position(), xlLabelPositionCenter);
    for (long i = 11; i <= 15; ++i) {
        auto c = objects->Item(i)->Chart();
        EXPECT_EQ(c->ChartType(), pies[i - 11]);
        EXPECT_EQ(c->ChartTitle()->Text(), "Share");
        EXPECT_EQ(c->SeriesCollection()->Item(1L)->Formula(), "=SERIES(,Sheet1!$B$6:$B$9,Sheet1!$C$6:$C$9,1)");
        EXPECT_EQ(CLng(c->SeriesCollection()->Item(1L)->DataLabels()->Type()), xlDataLabelsShowPercent);
        EXPECT_EQ(c->Legend()->LegendEntries()->Count(), 4);
    }
    EXPECT_EQ(objects->Item(12L)->Chart()->SeriesCollection()->Item(1L)->Explosion(), 25);
    ExpectValid({path});
    // drawn by another reader, the first page shows coloured columns, not only texts
    ExpectDrawn(path, 1);
}

TEST(ChartBuild, ANewChartIsAnEmptyClusteredColumnChartAndMembersNotYetThereSaySo) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto book = std::dynamic_pointer_cast<xlsx::Book>(wb);
    std::string part = xlsx::NewChartPart(*book);
    EXPECT_EQ(part, "xl/charts/chart1.xml");
    EXPECT_EQ(book->pkg().ContentType(part), kChartCt);
    EXPECT_EQ(xlsx::NewChartPart(*book), "xl/charts/chart2.xml");
    auto c = xlsx::MakeChart(*book, part, {});
    EXPECT_EQ(c->ChartType(), xlColumnClustered);
    EXPECT_EQ(c->SeriesCollection()->Count(), 0);
    EXPECT_FALSE(c->HasTitle());
    EXPECT_TRUE(c->HasLegend());
    EXPECT_EQ(c->Legend()->Position(), xlLegendPositionRight);
    EXPECT_TRUE(c->Axes(xlValue)->HasMajorGridlines());
    EXPECT_FALSE(c->Axes(xlCategory)->HasMajorGridlines());
    EXPECT_EQ(c->ChartArea()->Interior()->ColorIndex(), Variant(xlColorIndexAutomatic));
    EXPECT_EQ(ErrorTextOf([&] { c->SetChartType(xlSurface); }), "Chart.ChartType is not available in this engine yet.");
    EXPECT_EQ(ErrorNumberOf([&] { c->SetSourceData(nullptr); }), 1004);
    EXPECT_EQ(ErrorTextOf([&] { c->ChartArea()->SetShadow(true); }), "ChartArea.SetShadow is not available in this engine yet.");
}

// Series edits, formats and the members the chart gets its looks from, on one chart.
TEST(ChartBuild, SeriesFormatsAndLayoutWrittenInPlace) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = FillBlock(wb);
    auto c = ws->ChartObjects()->Add(10, 150, 400, 250)->Chart();
    auto sc = c->SeriesCollection();
    auto a = sc->NewSeries();
    a->SetName("=Sheet1!R5C3");  // as hosts before version 12 name it
    EXPECT_EQ(a->Name(), "North");
    a->SetName("Plain name");
    a->SetValues(Variant("Sheet1!$C$6:$C$9"));
    a->SetXValues(Variant("=Sheet1!$B$6:$B$9"));
    EXPECT_EQ(a->Formula(), "=SERIES(\"Plain name\",Sheet1!$B$6:$B$9,Sheet1!$C$6:$C$9,1)");
    auto b = sc->NewSeries();
    b->SetFormula("=SERIES(Sheet1!$D$5,Sheet1!$B$6:$B$9,Sheet1!$D$6:$D$9,1)");
    EXPECT_EQ(b->PlotOrder(), 1);
    EXPECT_EQ(sc->Item(1L)->Name(), "South");
    EXPECT_EQ(sc->Item("Plain name")->PlotOrder(), 2);
    EXPECT_EQ(ErrorNumberOf([&] { b->SetValues(Variant("=NoSuchSheet!A1:A3")); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { b->SetValues(Variant("=Sheet1!1:Z")); }), 1004);

    // a series of its own type makes the chart a combination
    a->SetChartType(xlLineMarkers);
    EXPECT_EQ(a->ChartType(), xlLineMarkers);
    EXPECT_EQ(c->ChartType(), xlCombination);
    EXPECT_EQ(c->ChartGroups()->Count(), 2);
    EXPECT_EQ(b->ChartType(), xlColumnClustered);

    a->Interior();  // a line series has no fill to speak of, its border is the line
    a->Border()->SetLineStyle(xlDash);
    EXPECT_EQ(CLng(a->Border()->LineStyle()), xlDash);
    EXPECT_EQ(CLng(b->Interior()->Color()), 0x317DED);  // the second accent of the default theme
    b->Interior()->SetColorIndex(3L);
    EXPECT_EQ(CLng(b->Interior()->ColorIndex()), 3);
    EXPECT_EQ(CLng(b->Interior()->Color()), wb->Colors(3));
    b->Fill()->Patterned(msoPatternLightUpwardDiagonal);
    EXPECT_EQ(b->Fill()->Type(), msoFillPatterned);
    EXPECT_EQ(b->Fill()->Pattern(), msoPatternLightUpwardDiagonal);

    auto area = c->ChartArea();
    area->Interior()->SetColorIndex(xlColorIndexNone);
    EXPECT_EQ(CLng(area->Interior()->ColorIndex()), xlColorIndexNone);
    area->Fill()->Patterned(22);
    area->Fill()->ForeColor()->SetSchemeColor(5);
    area->Fill()->BackColor()->SetSchemeColor(2);
    EXPECT_EQ(area->Fill()->ForeColor()->SchemeColor(), 5);
    EXPECT_EQ(area->Fill()->BackColor()->RGB(), wb->Colors(2));
    area->Border()->SetLineStyle(xlLineStyleNone);
    EXPECT_EQ(CLng(area->Border()->LineStyle()), xlLineStyleNone);
    area->Font()->SetSize(11.0);
    c->PlotArea()->Interior()->SetColorIndex(xlColorIndexNone);
    c->PlotArea()->Border()->SetLineStyle(0L);  // as the component writes it: no line
    EXPECT_EQ(CLng(c->PlotArea()->Border()->LineStyle()), xlLineStyleNone);
    c->PlotArea()->SetWidth(c->ChartArea()->Width());
    c->PlotArea()->SetWidth(c->PlotArea()->Width() - c->PlotArea()->Left() - 80 + 10);
    EXPECT_NEAR(c->PlotArea()->Width(), (400 - 7) - 7 - 80 + 10, 0.01);  // the first width was cut to the chart
    EXPECT_EQ(c->PlotArea()->Position(), xlChartElementPositionCustom);
    EXPECT_EQ(CLng(c->PlotArea()->Interior()->ColorIndex()), xlColorIndexNone);

    // a manual legend place, a deleted entry
    auto legend = c->Legend();
    legend->SetTop(40);
    legend->SetLeft(300);
    EXPECT_NEAR(legend->Left(), 300, 0.01);
    EXPECT_NEAR(legend->Top(), 40, 0.01);
    // a place wholly outside the chart, or a negative size, is refused and the old value stays
    EXPECT_EQ(ErrorNumberOf([&] { legend->SetTop(-1E+50); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { legend->SetLeft(c->ChartArea()->Width() + 1); }), 1004);
    EXPECT_NEAR(legend->Top(), 40, 0.01);
    EXPECT_EQ(ErrorNumberOf([&] { c->PlotArea()->SetWidth(-1); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { c->PlotArea()->SetTop(-1E+50); }), 1004);
    EXPECT_EQ(legend->LegendEntries()->Count(), 2);
    legend->LegendEntries(1)->Delete();
    EXPECT_EQ(legend->LegendEntries()->Count(), 1);

    auto v = c->Axes(xlValue);
    v->SetMinimumScale(0);
    v->SetMaximumScale(50);
    EXPECT_FALSE(v->MaximumScaleIsAuto());
    EXPECT_DOUBLE_EQ(v->MaximumScale(), 50);
    v->SetMaximumScaleIsAuto(true);
    EXPECT_TRUE(v->MaximumScaleIsAuto());
    v->SetMajorUnitIsAuto(false);  // keeps the unit the data give: a maximum of 40 counts in tens
    EXPECT_DOUBLE_EQ(v->MajorUnit(), 10);
    EXPECT_FALSE(v->MajorUnitIsAuto());
    v->SetHasMajorGridlines(false);
    v->TickLabels()->SetNumberFormat("0.0");
    EXPECT_FALSE(v->TickLabels()->NumberFormatLinked());
    EXPECT_EQ(ErrorNumberOf([&] { c->Axes(xlCategory)->MinimumScale(); }), 1004);

    b->SetHasDataLabels(true);
    b->DataLabels()->SetNumberFormat("0%");
    b->DataLabels()->SetOrientation(xlUpward);
    EXPECT_EQ(CLng(b->DataLabels()->Orientation()), xlUpward);
    b->DataLabels()->SetShowValue(true);
    EXPECT_EQ(ErrorNumberOf([&] { b->DataLabels()->SetPosition(xlLabelPositionBestFit); }), 1004);

    EXPECT_EQ(ErrorNumberOf([&] { c->ChartTitle(); }), 1004);  // no title yet
    c->SetHasTitle(true);
    c->ChartTitle()->SetText("Two\nlines");
    auto path = ts::ScratchDir("chart-edit") / "edited.xlsx";
    wb->SaveAs(path.string());

    auto app2 = xlsx::NewApplication();
    auto wb2 = app2->Open(path.string());
    auto c2 = wb2->Worksheets()->Item(1L)->ChartObjects()->Item(1L)->Chart();
    EXPECT_EQ(c2->ChartType(), xlCombination);
    EXPECT_EQ(c2->ChartTitle()->Text(), "Two\nlines");
    EXPECT_EQ(c2->SeriesCollection()->Item(1L)->Name(), "South");
    EXPECT_EQ(c2->SeriesCollection()->Item(1L)->DataLabels()->NumberFormat(), "0%");
    EXPECT_EQ(c2->Legend()->LegendEntries()->Count(), 1);
    EXPECT_EQ(c2->Legend()->Position(), xlLegendPositionCustom);
    {
        // a version before the custom position refuses to name it
        xlsx::EngineOptions old;
        old.version = "11.0";
        auto app3 = xlsx::NewApplication(old);
        auto wb3 = app3->Open(path.string());
        auto c3 = wb3->Worksheets()->Item(1L)->ChartObjects()->Item(1L)->Chart();
        EXPECT_EQ(ErrorNumberOf([&] { c3->Legend()->Position(); }), 1004);
        EXPECT_NEAR(c3->Legend()->Top(), 40, 0.01);
    }
    EXPECT_EQ(c2->ChartArea()->Fill()->Pattern(), 22);
    EXPECT_FALSE(c2->Axes(xlValue)->HasMajorGridlines());
    EXPECT_EQ(c2->Axes(xlValue)->TickLabels()->NumberFormat(), "0.0");

    // deleting a series leaves the other
    c2->SeriesCollection()->Item(2L)->Delete();
    EXPECT_EQ(c2->SeriesCollection()->Count(), 1);
    EXPECT_EQ(c2->ChartType(), xlColumnClustered);
    ExpectValid({path});
}

TEST(ChartBuild, BubbleSizesAreReferencesOfBubbleChartsOnly) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = FillBlock(wb);
    auto c = ws->ChartObjects()->Add(0, 0, 300, 200)->Chart();
    auto s = c->SeriesCollection()->NewSeries();
    s->SetXValues(Variant("=Sheet1!R6C3:R9C3"));
    s->SetValues(Variant("=Sheet1!R6C4:R9C4"));
    EXPECT_EQ(ErrorNumberOf([&] { s->SetBubbleSizes(Variant("=Sheet1!R6C4:R9C4")); }), 1004);
    c->SetChartType(xlBubble);
    s = c->SeriesCollection()->Item(1L);
    s->SetBubbleSizes(Variant("=Sheet1!R6C4:R9C4"));
    EXPECT_EQ(CStr(s->BubbleSizes()), "=Sheet1!$D$6:$D$9");
    EXPECT_EQ(s->Formula(), "=SERIES(,Sheet1!$C$6:$C$9,Sheet1!$D$6:$D$9,1,Sheet1!$D$6:$D$9)");
    EXPECT_DOUBLE_EQ(CDbl(s->XValues()[1]), 20);
    EXPECT_EQ(c->ChartType(), xlBubble);
    // one point's label gets a text of its own, the others keep showing their values
    s->ApplyDataLabels(xlDataLabelsShowValue);
    EXPECT_EQ(s->DataLabels(2)->Text(), "16.5");
    s->DataLabels(2)->SetText("Big one");
    s->DataLabels(2)->Font()->SetBold(true);
    EXPECT_EQ(s->DataLabels(2)->Text(), "Big one");
    EXPECT_EQ(s->DataLabels()->Item(3)->Text(), "22");
    EXPECT_FALSE(s->DataLabels(2)->AutoText());
    s->DataLabels(3)->SetAutoText(false);
    EXPECT_EQ(s->DataLabels(3)->Text(), "22");
    EXPECT_FALSE(s->DataLabels(3)->AutoText());
    auto path = ts::ScratchDir("chart-bubble") / "bubble.xlsx";
    wb->SaveAs(path.string());
    ExpectValid({path});
}

// ---------------------------------------------------------------- texts scaling with the chart

std::string PartText(const ts::fs::path& xlsxPath, const std::string& part) {
    auto app = xlsx::NewApplication();
    auto book = std::dynamic_pointer_cast<xlsx::Book>(app->Open(xlsxPath.string()));
    std::ostringstream out;
    book->pkg().Read(part).save(out);
    return out.str();
}

// A linked value axis carries the format it displays: the cells' on a stacked chart, "0%" once
// stacking to 100 % makes it show shares (LibreOffice shows the code and read 0 to 1 before). A
// series leaving the line family leaves its line's width behind.
TEST(ChartBuild, TypeChangesLeaveTheAxisFormatAndOutlinesTheNewTypeShows) {
    auto dir = ts::ScratchDir("percent-axis");
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = FillBlock(wb);
    ws->Range("C6:D9")->SetNumberFormat("#,##0");
    auto c = ws->ChartObjects()->Add(10, 150, 360, 220)->Chart();
    for (const char* col : {"C", "D"})
        c->SeriesCollection()->NewSeries()->SetValues(Variant(std::string("=Sheet1!$") + col + "$6:$" + col + "$9"));
    c->Axes(xlValue)->TickLabels()->SetNumberFormatLinked(true);
    auto valueAxisFormat = [&](const std::string& name) {
        wb->SaveAs((dir / name).string());
        std::string part = PartText(dir / name, "xl/charts/chart1.xml");
        auto at = part.find("<c:numFmt", part.find("<c:valAx>"));
        std::string element = part.substr(at, part.find("/>", at) - at);
        while (!element.empty() && element.back() == ' ') element.pop_back();
        return element;
    };
    c->SetChartType(xlColumnStacked);
    EXPECT_EQ(valueAxisFormat("stacked.xlsx"), "<c:numFmt formatCode=\"#,##0\" sourceLinked=\"1\"");
    c->SetChartType(xlColumnStacked100);
    EXPECT_EQ(valueAxisFormat("stacked100.xlsx"), "<c:numFmt formatCode=\"0%\" sourceLinked=\"1\"");
    EXPECT_TRUE(c->Axes(xlValue)->TickLabels()->NumberFormatLinked());
    c->SetChartType(xlColumnStacked);
    EXPECT_EQ(valueAxisFormat("stacked-again.xlsx"), "<c:numFmt formatCode=\"#,##0\" sourceLinked=\"1\"");

    // A series that was a line keeps no 2.25 pt line as the outline of its blocks.
    c->SetChartType(xlLineMarkers);
    c->SeriesCollection()->Item(1L)->SetChartType(xlColumnStacked);
    c->SeriesCollection()->Item(2L)->SetChartType(xlColumnStacked);
    wb->SaveAs((dir / "from-line.xlsx").string());
    EXPECT_EQ(PartText(dir / "from-line.xlsx", "xl/charts/chart1.xml").find("w=\"28575\""), std::string::npos);
}

// AutoScaleFont has no element in the file: a False lives in an extension of the element that
// owns the text, True (the default) leaves no trace.
TEST(ChartBuild, AutoScaleFontReadsTrueAndKeepsAFalseThroughSaving) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = FillBlock(wb);
    auto c = ws->ChartObjects()->Add(10, 150, 360, 220)->Chart();
    auto s = c->SeriesCollection()->NewSeries();
    s->SetName("=Sheet1!$C$5");
    s->SetValues(Variant("=Sheet1!R6C3:R9C3"));
    c->SetHasTitle(true);
    c->ChartTitle()->SetText("Scaled");
    c->Axes(xlValue)->SetHasTitle(true);
    s->ApplyDataLabels(xlDataLabelsShowValue);
    auto owners = [](Ref<Chart> c) {
        auto s = c->SeriesCollection()->Item(1L);
        return std::vector<std::pair<std::string, std::function<Variant(const Variant*)>>>{
            {"ChartTitle", [c](const Variant* v) { auto t = c->ChartTitle(); if (v) t->SetAutoScaleFont(*v); return t->AutoScaleFont(); }},
            {"AxisTitle", [c](const Variant* v) { auto t = c->Axes(xlValue)->AxisTitle(); if (v) t->SetAutoScaleFont(*v); return t->AutoScaleFont(); }},
            {"Legend", [c](const Variant* v) { auto t = c->Legend(); if (v) t->SetAutoScaleFont(*v); return t->AutoScaleFont(); }},
            {"LegendEntry", [c](const Variant* v) { auto t = c->Legend()->LegendEntries(1); if (v) t->SetAutoScaleFont(*v); return t->AutoScaleFont(); }},
            {"TickLabels", [c](const Variant* v) { auto t = c->Axes(xlCategory)->TickLabels(); if (v) t->SetAutoScaleFont(*v); return t->AutoScaleFont(); }},
            {"ChartArea", [c](const Variant* v) { auto t = c->ChartArea(); if (v) t->SetAutoScaleFont(*v); return t->AutoScaleFont(); }},
            {"DataLabels", [s](const Variant* v) { auto t = s->DataLabels(); if (v) t->SetAutoScaleFont(*v); return t->AutoScaleFont(); }},
            {"DataLabel", [s](const Variant* v) { auto t = s->DataLabels(2); if (v) t->SetAutoScaleFont(*v); return t->AutoScaleFont(); }},
        };
    };
    for (auto& [name, member] : owners(c)) EXPECT_EQ(member(nullptr), Variant(true)) << name;
    // every other owner is switched off; a text "False" converts as the application converts it
    auto list = owners(c);
    for (size_t i = 0; i < list.size(); i += 2) {
        Variant off = i == 0 ? Variant("False") : Variant(false);
        EXPECT_EQ(list[i].second(&off), Variant(false)) << list[i].first;
    }
    // a label of one point shows what its series' labels say until it is told otherwise
    EXPECT_EQ(s->DataLabels(3)->AutoScaleFont(), Variant(false));
    EXPECT_EQ(ErrorNumberOf([&] { c->Legend()->SetAutoScaleFont(Variant("maybe")); }), 13);

    auto dir = ts::ScratchDir("chart-autoscale");
    wb->SaveAs((dir / "off.xlsx").string());
    auto app2 = xlsx::NewApplication();
    auto wb2 = app2->Open((dir / "off.xlsx").string());
    auto c2 = wb2->Worksheets()->Item(1L)->ChartObjects()->Item(1L)->Chart();
    auto list2 = owners(c2);
    for (size_t i = 0; i + 1 < list2.size(); ++i) EXPECT_EQ(list2[i].second(nullptr), Variant(i % 2 == 1)) << list2[i].first;
    EXPECT_EQ(list2.back().second(nullptr), Variant(false));  // the point's label follows its series
    // back to True, the extensions go and the chart part is as if never switched off
    Variant on = true;
    for (size_t i = 0; i < list2.size(); i += 2) list2[i].second(&on);
    wb2->SaveAs((dir / "on.xlsx").string());
    EXPECT_EQ(PartText(dir / "on.xlsx", "xl/charts/chart1.xml").find("extLst"), std::string::npos);
    EXPECT_NE(PartText(dir / "off.xlsx", "xl/charts/chart1.xml").find("autoScaleFont"), std::string::npos);
    auto app3 = xlsx::NewApplication();
    auto wb3 = app3->Open((dir / "on.xlsx").string());
    for (auto& [name, member] : owners(wb3->Worksheets()->Item(1L)->ChartObjects()->Item(1L)->Chart()))
        EXPECT_EQ(member(nullptr), Variant(true)) << name;

    ExpectValid({dir / "off.xlsx", dir / "on.xlsx"});
    if (ts::HaveLibreOffice()) {
        EXPECT_FALSE(ts::LibreOfficeConvert(dir / "off.xlsx", "pdf", dir).empty());
    }
}

// ---------------------------------------------------------------- bubble, quadrant and bucket charts

long Rgb(int r, int g, int b) { return r | (g << 8) | (b << 16); }

// The block the component pivots into its data sheet: bubbles (label, colour key, x, y, size) in
// rows 2 to 7, buckets (names in row 10, values in row 11, items below) from row 10.
Ref<Worksheet> FillFamilies(Ref<Workbook> wb) {
    auto ws = wb->Worksheets()->Item(1L);
    ws->SetName("VEX_ChartData");
    struct Bubble { const char* label; const char* key; double x, y, size; };
    const Bubble bubbles[] = {{"North", "Alpha", 4, 12, 30}, {"South", "Beta", 20, -6, 12}, {"East", "Alpha", 9, 3, 22},
                              {"West", "Gamma", -5, 8, 8},   {"Mid", "Beta", 14, 15, 16},  {"Far", "Gamma", 2, -9, 26}};
    for (long i = 0; i < 6; ++i) {
        auto& b = bubbles[i];
        ws->Cells(2 + i, 2)->SetValue(b.label);
        ws->Cells(2 + i, 3)->SetValue(b.key);
        ws->Cells(2 + i, 4)->SetValue(b.x);
        ws->Cells(2 + i, 5)->SetValue(b.y);
        ws->Cells(2 + i, 6)->SetValue(b.size);
    }
    const char* buckets[] = {"Low", "Mid", "High"};
    for (long k = 0; k < 3; ++k) {
        ws->Cells(10, 5 + k)->SetValue(buckets[k]);
        ws->Cells(11, 5 + k)->SetValue(40.0 * (k + 1));
    }
    struct Item { const char* text; const char* label; long bucket; double value; };
    const Item items[] = {{"Roof", "Build", 0, 20}, {"Shop", "Sell", 0, 15}, {"Wall", "Build", 1, 50},
                          {"Web", "Sell", 2, 70},   {"Door", "Build", 2, 30}};
    for (long i = 0; i < 5; ++i) {
        auto& it = items[i];
        ws->Cells(12 + i, 2)->SetValue(it.text);
        ws->Cells(12 + i, 3)->SetValue(it.label);
        for (long k = 0; k < 3; ++k) ws->Cells(12 + i, 5 + k)->SetValue(k == it.bucket ? it.value : 0.0);
    }
    return ws;
}

const char* kData = "=VEX_ChartData!R";

// Takes a series' automatic colour as the component harvests it, and deletes the newest legend
// entry when a colour key repeats, so that the legend keeps one entry per key.
void KeepOneEntryPerKey(Ref<Chart> c, Ref<Series> s, std::map<std::string, long>& colours) {
    EXPECT_EQ(CLng(s->Interior()->Pattern()), xlPatternSolid);
    EXPECT_EQ(CLng(s->Interior()->PatternColorIndex()), xlColorIndexAutomatic);
    if (colours.count(s->Name())) {
        auto entries = c->Legend()->LegendEntries();
        entries->Item(entries->Count())->Delete();
        return;
    }
    long n = long(colours.size());
    colours[s->Name()] = n;
}

// A drawn legend: a text box and a key per name, grouped into VEX_Legend beside a narrowed plot.
void DrawLegend(Ref<Chart> c, const std::vector<std::pair<std::string, long>>& entries, bool round) {
    c->SetHasLegend(false);
    auto shapes = c->Shapes();
    std::vector<std::string> names;
    double top = 0, widest = 0;
    for (auto& [name, rgb] : entries) {
        auto box = shapes->AddTextbox(msoTextOrientationHorizontal, 0, 0, 0, 0);
        box->SetName(name + " Text");
        box->SetAlternativeText("VEX_LS_" + box->Name());
        auto chars = box->TextFrame()->Characters();
        chars->Font()->SetName("Arial");
        chars->SetText(name);
        box->SetWidth(double(name.size()) * 9 / 2 + 20);
        box->SetHeight(18);
        box->SetLeft(8);
        box->SetTop(18 + top - 5);
        top = box->Top();
        auto key = shapes->AddShape(msoShapeRectangle, 0, 0, 0, 0);
        key->SetName(name + " Key");
        key->SetAlternativeText("VEX_LS_" + key->Name());
        key->SetHeight(8);
        key->SetWidth(8);
        key->Fill()->ForeColor()->SetRGB(rgb);
        key->SetTop(shapes->Item(name + " Text")->Top() + 4);
        if (round) key->SetAutoShapeType(msoShapeOval);
        key->Line()->SetVisible(msoFalse);
        widest = std::max(widest, box->Left() + box->Width());
        names.push_back(box->Name());
        names.push_back(key->Name());
    }
    auto group = shapes->Range(names)->Group();
    group->SetName("VEX_Legend");
    group->SetWidth(widest);
    auto plot = c->PlotArea();
    plot->SetWidth(c->ChartArea()->Width());
    plot->SetWidth(plot->Width() - plot->Left() - group->Width() + 10);
    group->SetLeft(plot->Left() + plot->Width() + 10);
    group->SetTop(plot->Top() + plot->Height() / 2 - group->Height() / 2);
    double placed = group->Top();
    EXPECT_EQ(ErrorNumberOf([&] { group->SetTop(-1E+50); }), 1004) << "no place outside the chart";
    EXPECT_EQ(group->Top(), placed);
}

Ref<Chart> BuildBubbles(Ref<Worksheet> ws, Ref<Worksheet> data, double left, double top, bool threeD) {
    auto c = ws->ChartObjects()->Add(left, top, 190, 210)->Chart();
    c->SetChartType(xlBubble);
    std::map<std::string, long> colours;
    std::vector<std::pair<std::string, long>> legend;
    for (long r = 2; r <= 7; ++r) {
        auto s = c->SeriesCollection()->NewSeries();
        std::string row = std::to_string(r);
        s->SetName(CStr(data->Cells(r, 3)->Text()));
        s->SetXValues(Variant(kData + row + "C4:R" + row + "C4"));
        s->SetValues(Variant(kData + row + "C5:R" + row + "C5"));
        s->SetBubbleSizes(Variant(kData + row + "C6:R" + row + "C6"));
        bool fresh = !colours.count(s->Name());
        KeepOneEntryPerKey(c, s, colours);
        if (fresh) legend.push_back({s->Name(), CLng(s->Interior()->Color())});
        s->SetHasDataLabels(true);
        auto labels = s->DataLabels();
        labels->SetAutoScaleFont(false);
        labels->Font()->SetName("Arial");
        labels->Font()->SetFontStyle("Bold");
        labels->SetHorizontalAlignment(xlHAlignCenter);
        labels->SetVerticalAlignment(xlVAlignCenter);
    }
    // every series of one key painted alike, labelled with its own text, centred on its bubble
    for (long i = 1; i <= c->SeriesCollection()->Count(); ++i) {
        auto s = c->SeriesCollection()->Item(i);
        s->Interior()->SetColor(legend[colours[s->Name()]].second);
        s->Border()->SetWeight(xlHairline);
        s->DataLabels(1)->SetText(CStr(data->Cells(i + 1, 2)->Text()));
        s->DataLabels()->SetPosition(xlLabelPositionCenter);
    }
    if (threeD) {
        c->SetChartType(xlBubble3DEffect);
        c->ChartGroups(1)->SetBubbleScale(60);
    }
    // quadrants: both axes cross in the middle, two major units each, labels at the low edge
    const double scale[2][2] = {{-7, 22}, {-10, 16}};
    for (long type : {xlCategory, xlValue}) {
        bool had = CBool(c->HasAxis(type));
        c->SetHasAxis(type, true);
        auto ax = c->Axes(type, xlPrimary);
        ax->SetHasMajorGridlines(true);
        ax->SetMinimumScale(scale[type - 1][0]);
        ax->SetMaximumScale(scale[type - 1][1]);
        ax->SetMajorUnit((scale[type - 1][1] - scale[type - 1][0]) / 2);
        ax->SetDisplayUnit(xlNone);
        ax->SetTickLabelPosition(xlTickLabelPositionLow);
        c->SetHasAxis(type, had);
    }
    c->PlotArea()->Border()->SetWeight(xlThin);
    DrawLegend(c, legend, true);
    return c;
}

// Stacked columns of items per bucket, and a line-with-markers series of red dashes at each
// bucket's value: a combination chart.
Ref<Chart> BuildBuckets(Ref<Worksheet> ws, Ref<Worksheet> data, double left, double top) {
    auto c = ws->ChartObjects()->Add(left, top, 190, 210)->Chart();
    std::string names = "=VEX_ChartData!$E$10:$G$10";
    std::map<std::string, long> colours;
    std::vector<std::pair<std::string, long>> legend;
    for (long r = 12; r <= 16; ++r) {
        auto s = c->SeriesCollection()->NewSeries();
        s->SetChartType(xlColumnStacked);
        s->SetName(CStr(data->Cells(r, 3)->Text()));
        s->SetXValues(Variant(names));
        s->SetValues(Variant(kData + std::to_string(r) + "C5:R" + std::to_string(r) + "C7"));
        bool fresh = !colours.count(s->Name());
        KeepOneEntryPerKey(c, s, colours);
        if (fresh) legend.push_back({s->Name(), CLng(s->Interior()->Color())});
        s->SetHasDataLabels(true);
        auto labels = s->DataLabels();
        labels->SetPosition(xlLabelPositionCenter);
        for (long i = 1; i <= labels->Count(); ++i) s->DataLabels(i)->SetText(CStr(data->Cells(r, 2)->Text()));
    }
    c->ChartGroups(1)->SetGapWidth(0);
    for (long i = 1; i <= c->SeriesCollection()->Count(); ++i) {
        auto s = c->SeriesCollection()->Item(i);
        // the second key gets a pattern of light rising lines over white
        if (colours[s->Name()] == 1) {
            s->Interior()->SetPattern(xlPatternLightUp);
            s->Interior()->SetPatternColor(Rgb(255, 255, 255));
        }
        s->Interior()->SetColor(legend[colours[s->Name()]].second);
        s->Border()->SetColor(0L);
    }
    auto mark = c->SeriesCollection()->NewSeries();
    mark->SetChartType(xlLineMarkers);
    mark->SetName("Strategic Buckets");
    mark->SetXValues(Variant(names));
    mark->SetValues(Variant(std::string(kData) + "11C5:R11C7"));
    mark->SetMarkerForegroundColor(255);
    mark->SetMarkerBackgroundColor(255);
    mark->SetMarkerStyle(xlMarkerStyleDash);
    mark->SetMarkerSize(55);
    mark->Border()->SetLineStyle(xlLineStyleNone);
    mark->ApplyDataLabels(xlDataLabelsShowValue);
    auto labels = mark->DataLabels();
    labels->SetPosition(xlLabelPositionAbove);
    labels->Font()->SetBackground(xlBackgroundTransparent);
    auto entries = c->Legend()->LegendEntries();
    entries->Item(entries->Count())->Delete();
    DrawLegend(c, legend, false);
    return c;
}

TEST(ChartBuild, BubbleQuadrantAndBucketChartsWithDrawnLegendsValidateDrawAndReadBack) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto data = FillFamilies(wb);
    auto ws = wb->Worksheets()->Add();  // in front, so that the charts are on the first page
    ws->SetName("Charts");
    auto bubble = BuildBubbles(ws, data, 5, 10, false);
    auto bubble3d = BuildBubbles(ws, data, 200, 10, true);
    auto buckets = BuildBuckets(ws, data, 5, 230);
    // a chart whose points carry their own fills and labels, with markers of its own per point
    auto line = ws->ChartObjects()->Add(200, 230, 190, 210)->Chart();
    auto s = line->SeriesCollection()->NewSeries();
    s->SetValues(Variant(std::string(kData) + "2C6:R7C6"));
    line->SetChartType(xlLineMarkers);
    s = line->SeriesCollection()->Item(1L);
    EXPECT_EQ(s->Points()->Count(), 6);
    s->Points(2)->SetMarkerStyle(xlMarkerStyleDiamond);
    s->Points(2)->SetMarkerSize(12);
    s->Points(2)->SetMarkerBackgroundColorIndex(3);
    s->Points(3)->SetHasDataLabel(true);
    s->Points(3)->DataLabel()->SetText("peak");
    s->Points(5)->ApplyDataLabels(xlDataLabelsShowValue);
    s->SetMarkerSize(9);
    line->SetChartType(xlColumnClustered);
    s = line->SeriesCollection()->Item(1L);
    s->Points(4)->Interior()->SetPattern(xlPatternChecker);
    s->Points(4)->Interior()->SetColor(Rgb(0, 0x80, 0));
    s->Points(1)->Fill()->ForeColor()->SetRGB(Rgb(0xC0, 0, 0));
    line->Axes(xlValue)->SetDisplayUnit(xlHundreds);
    line->Axes(xlValue)->SetHasDisplayUnitLabel(true);

    // what the engine refuses as the application does
    EXPECT_EQ(ErrorNumberOf([&] { s->SetMarkerStyle(xlMarkerStyleCircle); }), 1004);  // columns have no markers
    EXPECT_EQ(ErrorNumberOf([&] { bubble->SeriesCollection()->Item(1L)->SetMarkerSize(80); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { buckets->ChartGroups(1)->SetBubbleScale(50); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { bubble->ChartGroups(1)->SetBubbleScale(301); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { s->Points(7); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { line->Axes(xlCategory)->SetDisplayUnit(xlThousands); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { bubble->Shapes()->Item(1L)->TopLeftCell(); }), 1004);

    auto path = ts::ScratchDir("chart-families") / "families.xlsx";
    wb->SaveAs(path.string());
    auto app2 = xlsx::NewApplication();
    auto wb2 = app2->Open(path.string());
    auto objects = wb2->Worksheets()->Item("Charts")->ChartObjects();
    ASSERT_EQ(objects->Count(), 4);

    for (long k = 1; k <= 2; ++k) {
        SCOPED_TRACE(k);
        auto c = objects->Item(k)->Chart();
        EXPECT_EQ(c->ChartType(), k == 1 ? xlBubble : xlBubble3DEffect);
        EXPECT_FALSE(c->HasLegend());
        auto sc = c->SeriesCollection();
        ASSERT_EQ(sc->Count(), 6);
        const char* labels[] = {"North", "South", "East", "West", "Mid", "Far"};
        for (long i = 1; i <= 6; ++i) {
            auto s = sc->Item(i);
            EXPECT_EQ(s->DataLabels(1)->Text(), labels[i - 1]);
            EXPECT_EQ(s->DataLabels()->Position(), xlLabelPositionCenter);
            EXPECT_EQ(CLng(s->DataLabels()->HorizontalAlignment()), xlHAlignCenter);
            EXPECT_EQ(CLng(s->DataLabels()->VerticalAlignment()), xlVAlignCenter);
            EXPECT_EQ(s->DataLabels()->AutoScaleFont(), Variant(false));
            EXPECT_EQ(CStr(s->DataLabels()->Font()->FontStyle()), "Bold");
            EXPECT_EQ(CLng(s->Border()->Weight()), xlHairline);
            EXPECT_EQ(CStr(s->BubbleSizes()), "=VEX_ChartData!$F$" + std::to_string(i + 1));
        }
        // one colour per key: the n-th key has the n-th automatic colour
        EXPECT_EQ(CLng(sc->Item(1L)->Interior()->Color()), CLng(sc->Item(3L)->Interior()->Color()));
        EXPECT_EQ(CLng(sc->Item(2L)->Interior()->Color()), CLng(sc->Item(5L)->Interior()->Color()));
        EXPECT_NE(CLng(sc->Item(1L)->Interior()->Color()), CLng(sc->Item(2L)->Interior()->Color()));
        auto x = c->Axes(xlCategory);
        EXPECT_DOUBLE_EQ(x->MinimumScale(), -7);
        EXPECT_DOUBLE_EQ(x->MaximumScale(), 22);
        EXPECT_DOUBLE_EQ(x->MajorUnit(), 14.5);
        EXPECT_EQ(x->DisplayUnit(), xlNone);
        EXPECT_EQ(x->TickLabelPosition(), xlTickLabelPositionLow);
        EXPECT_TRUE(x->HasMajorGridlines());
        EXPECT_EQ(CLng(c->PlotArea()->Border()->Weight()), xlThin);
        // the drawn legend: one group of a text and a round key per key, in the order of first use
        auto shapes = c->Shapes();
        ASSERT_EQ(shapes->Count(), 1);
        auto group = shapes->Item(1L);
        EXPECT_EQ(group->Name(), "VEX_Legend");
        EXPECT_EQ(group->Type(), msoGroup);
        auto items = group->GroupItems();
        ASSERT_EQ(items->Count(), 6);
        EXPECT_EQ(items->Item(1L)->AlternativeText(), "VEX_LS_Alpha Text");
        EXPECT_EQ(items->Item(1L)->TextFrame()->Characters()->Text(), "Alpha");
        EXPECT_EQ(CStr(items->Item(1L)->TextFrame()->Characters()->Font()->Name()), "Arial");
        EXPECT_EQ(items->Item(4L)->Name(), "Beta Key");
        EXPECT_EQ(items->Item(4L)->AutoShapeType(), msoShapeOval);
        EXPECT_EQ(items->Item(4L)->Fill()->ForeColor()->RGB(), CLng(sc->Item(2L)->Interior()->Color()));
        EXPECT_EQ(items->Item(4L)->Line()->Visible(), msoFalse);
        EXPECT_EQ(shapes->Range("VEX_Legend")->Name(), "VEX_Legend");
        // placed past the chart's edge, the legend is kept inside it, at the right edge, beside
        // the plot, which was narrowed within the chart
        EXPECT_NEAR(group->Left() + group->Width(), c->ChartArea()->Width(), 0.5);
        EXPECT_GE(group->Left(), c->PlotArea()->Left() + c->PlotArea()->Width() - 10);
        EXPECT_GT(group->Top(), c->PlotArea()->Top());
    }
    EXPECT_EQ(objects->Item(2L)->Chart()->ChartGroups(1)->BubbleScale(), 60);
    EXPECT_EQ(objects->Item(1L)->Chart()->ChartGroups(1)->BubbleScale(), 100);

    auto b = objects->Item(3L)->Chart();
    EXPECT_EQ(b->ChartType(), xlCombination);
    auto sc = b->SeriesCollection();
    ASSERT_EQ(sc->Count(), 6);
    for (long i = 1; i <= 5; ++i) EXPECT_EQ(sc->Item(i)->ChartType(), xlColumnStacked);
    EXPECT_EQ(b->ChartGroups(1)->GapWidth(), 0);
    EXPECT_EQ(sc->Item(3L)->DataLabels(2)->Text(), "Wall");
    EXPECT_EQ(sc->Item(3L)->DataLabels(1)->Text(), "Wall");  // a zero's label has the text too
    EXPECT_EQ(CLng(sc->Item(2L)->Interior()->Pattern()), xlPatternLightUp);
    EXPECT_EQ(CLng(sc->Item(2L)->Interior()->PatternColor()), Rgb(255, 255, 255));
    EXPECT_EQ(CLng(sc->Item(4L)->Interior()->Pattern()), xlPatternLightUp);
    EXPECT_EQ(CLng(sc->Item(1L)->Interior()->Pattern()), xlPatternSolid);
    EXPECT_EQ(CLng(sc->Item(2L)->Interior()->Color()), CLng(sc->Item(4L)->Interior()->Color()));
    EXPECT_EQ(CLng(sc->Item(1L)->Border()->Color()), 0);
    auto mark = sc->Item(6L);
    EXPECT_EQ(mark->Name(), "Strategic Buckets");
    EXPECT_EQ(mark->ChartType(), xlLineMarkers);
    EXPECT_EQ(mark->MarkerStyle(), xlMarkerStyleDash);
    EXPECT_EQ(mark->MarkerSize(), 55);
    EXPECT_EQ(mark->MarkerForegroundColor(), 255);
    EXPECT_EQ(mark->MarkerBackgroundColor(), 255);
    EXPECT_EQ(mark->MarkerBackgroundColorIndex(), 3);
    EXPECT_EQ(CLng(mark->Border()->LineStyle()), xlLineStyleNone);
    EXPECT_EQ(CLng(mark->DataLabels()->Font()->Background()), xlBackgroundTransparent);
    EXPECT_EQ(mark->DataLabels(3)->Text(), "120");
    EXPECT_EQ(b->Shapes()->Item(1L)->GroupItems()->Item(2L)->AutoShapeType(), msoShapeRectangle);
    EXPECT_EQ(b->Shapes()->Item(1L)->GroupItems()->Count(), 4);

    auto l = objects->Item(4L)->Chart()->SeriesCollection()->Item(1L);
    EXPECT_EQ(CLng(l->Points(4)->Interior()->Pattern()), xlPatternChecker);
    EXPECT_EQ(CLng(l->Points(4)->Interior()->Color()), Rgb(0, 0x80, 0));
    EXPECT_EQ(l->Points(1)->Fill()->ForeColor()->RGB(), Rgb(0xC0, 0, 0));
    EXPECT_EQ(CLng(l->Points(2)->Interior()->Pattern()), xlPatternSolid);
    EXPECT_TRUE(l->Points(3)->HasDataLabel());
    EXPECT_EQ(l->Points(3)->DataLabel()->Text(), "peak");
    EXPECT_EQ(l->Points(5)->DataLabel()->Text(), "16");
    EXPECT_FALSE(l->Points(1)->HasDataLabel());
    EXPECT_EQ(l->Points(2)->MarkerStyle(), xlMarkerStyleNone);  // markers went with the line
    EXPECT_EQ(objects->Item(4L)->Chart()->Axes(xlValue)->DisplayUnit(), xlHundreds);
    EXPECT_TRUE(objects->Item(4L)->Chart()->Axes(xlValue)->HasDisplayUnitLabel());

    // a drawn legend removed: its part and relationship go with its last shape
    auto gone = objects->Item(1L)->Chart();
    gone->Shapes()->Item("VEX_Legend")->Delete();
    EXPECT_EQ(gone->Shapes()->Count(), 0);
    auto path2 = path.parent_path() / "legend-removed.xlsx";
    wb2->SaveAs(path2.string());
    EXPECT_EQ(PartText(path2, "xl/charts/chart1.xml").find("userShapes"), std::string::npos);

    ExpectValid({path, path2});
    ExpectDrawn(path, 2, 2);
}

// ---------------------------------------------------------------- rows moving under a chart

TEST(ChartRows, InsertedAndDeletedRowsMoveSeriesReferences) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = FillBlock(wb);
    auto c = BuildAbc(ws, xlColumnClustered, xlLegendPositionRight, 150);
    ws->Rows(2)->Insert();
    ws->Rows(2)->Insert();
    EXPECT_EQ(c->SeriesCollection()->Item(1L)->Formula(), "=SERIES(Sheet1!$C$7,Sheet1!$B$8:$B$11,Sheet1!$C$8:$C$11,1)");
    // a refresh reads the cells again
    ws->Cells(8, 3)->SetValue(99.0);
    c->Refresh();
    EXPECT_DOUBLE_EQ(CDbl(c->SeriesCollection()->Item(1L)->Values()[0]), 99);
    ws->Rows(9)->Delete();  // inside the block
    EXPECT_EQ(c->SeriesCollection()->Item(2L)->Formula(), "=SERIES(Sheet1!$D$7,Sheet1!$B$8:$B$10,Sheet1!$D$8:$D$10,2)");

    // a chart sheet's chart follows its data sheet too; other charts stay byte for byte
    if (ts::SharedDir().empty()) return;
    auto o = OpenCorpus("php_ChartSheet.xlsx");
    auto chart = ChartOf(o, "xl/charts/chart1.xml");
    o.wb->Worksheets()->Item("Sheet1")->Rows(1)->Insert();
    EXPECT_EQ(chart->SeriesCollection()->Item(1L)->Formula(), "=SERIES(Sheet1!$A$3,Sheet1!$B$2:$D$2,Sheet1!$B$3:$D$3,1)");
    auto o2 = OpenCorpus("umya_aaa_eleven_charts.xlsx");
    o2.wb->Worksheets()->Item("Sheet1")->Rows(1)->Insert();
    EXPECT_FALSE(o2.book->pkg().Changed("xl/charts/chart2.xml"));  // its data are on Sheet2
    EXPECT_TRUE(o2.book->pkg().Changed("xl/charts/chart1.xml"));
}

}  // namespace
