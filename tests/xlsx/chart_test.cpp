// The chart part model: charts of application-made files read back as they were drawn, edits
// written in place and valid against the schemas, series references following row changes.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>

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

struct Opened {
    Ref<xlsx::EngineApplication> app;
    Ref<Workbook> wb;
    std::shared_ptr<xlsx::Book> book;
};

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
            EXPECT_EQ(c->HasTitle(), e.title != nullptr);
        }
        if (e.title && std::string(e.title) != "*") {
            EXPECT_EQ(c->ChartTitle()->Text(), e.title);
        }
        EXPECT_EQ(c->HasLegend(), e.legend != 0);
        if (e.legend) {
            EXPECT_EQ(c->Legend()->Position(), e.legend);
        }
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

TEST(ChartCorpus, SavingWithoutChangesKeepsChartPartsByteIdentical) {
    if (ts::SharedDir().empty()) GTEST_SKIP();
    auto dir = ts::ScratchDir("chart-identical");
    for (const char* file : {"umya_aaa_eleven_charts.xlsx", "php_ChartSheet.xlsx", "aspose_sampleInlineCharts.xlsx",
                             "php_32readwriteDonutChartExploded1.xlsx", "xw_chart_font03.xlsx",
                             "addin_SalesTemplate.xlsx", "oxsdk_legend_top_00D4EE78.xlsx"}) {
        SCOPED_TRACE(file);
        auto o = OpenCorpus(file);
        auto parts = ChartParts(*o.book);
        for (auto& part : parts) {
            // read everything a refresh reads back
            auto c = ChartOf(o, part);
            c->ChartType();
            if (c->HasTitle()) {
                c->ChartTitle()->Text();
                c->ChartTitle()->Font()->Name();
                c->ChartTitle()->Font()->Size();
            }
            if (c->HasLegend()) {
                c->Legend()->Position();
                c->Legend()->Font()->Color();
                c->Legend()->LegendEntries()->Count();
            }
            auto sc = c->SeriesCollection();
            for (long i = 1; i <= sc->Count(); ++i) {
                sc->Item(i)->Formula();
                sc->Item(i)->Interior()->ColorIndex();
                if (sc->Item(i)->HasDataLabels()) {
                    auto dl = sc->Item(i)->DataLabels();
                    dl->Type();
                    dl->Font()->Name();
                    dl->Font()->Color();
                    dl->AutoScaleFont();
                }
            }
            if (c->ChartType() != xlPie && CBool(c->HasAxis(xlValue)) && c->Axes(xlValue)->HasTitle())
                c->Axes(xlValue)->AxisTitle()->Font()->FontStyle();
            c->ChartArea()->Interior()->ColorIndex();
            c->PlotArea()->Interior()->ColorIndex();
        }
        auto out = dir / file;
        o.wb->SaveAs(out.string());
        auto before = xlsx::Package::Open((ts::SharedDir() / "corpus" / "excel" / file).string());
        auto after = xlsx::Package::Open(out.string());
        for (auto& part : parts) EXPECT_EQ(before->Bytes(part), after->Bytes(part)) << part;
    }
}

// Application charts with their extensions, styles and formats stay valid through type changes.
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
    if (ts::HaveValidator()) {
        auto r = ts::ValidateXlsx(saved);
        EXPECT_EQ(r.status, 0) << r.output;
    }
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
    chart->Axes(xlValue, xlPrimary)->SetHasTitle(false);
    chart->Axes(xlCategory, xlPrimary)->SetHasTitle(false);
    for (long k : {xlCategory, xlValue}) {
        chart->SetHasAxis(k, true);
        auto ax = chart->Axes(k, xlPrimary);
        ax->SetHasTitle(true);
        auto t = ax->AxisTitle();
        t->SetText(k == xlCategory ? "Month" : "Units");
        t->Font()->SetSize(9.0);
        t->Font()->SetName("Arial");
        t->Font()->SetColor(0x0000FFL);
        t->Font()->SetFontStyle("Bold");
        t->SetAutoScaleFont(false);
    }
    chart->Axes(xlValue)->TickLabels()->SetNumberFormatLinked(true);
    chart->Axes(xlValue)->AxisTitle()->SetOrientation(xlUpward);
    chart->Axes(xlCategory)->AxisTitle()->SetOrientation(xlHorizontal);
    auto sc = chart->SeriesCollection();
    for (long i = 1; i <= sc->Count(); ++i) {
        sc->Item(i)->ApplyDataLabels(xlDataLabelsShowValue);
        auto dl = sc->Item(i)->DataLabels();
        dl->SetPosition(xlLabelPositionCenter);
        dl->SetAutoScaleFont(false);
        dl->Font()->SetName("Arial");
        dl->Font()->SetFontStyle("Italic");
        dl->Font()->SetSize(8.0);
        dl->Font()->SetColor(0L);
    }
    chart->SetChartType(finalType);
    auto legend = chart->Legend();
    legend->Font()->SetName("Arial");
    legend->Font()->SetSize(8.0);
    legend->SetAutoScaleFont(Variant("True"));
    legend->SetPosition(legendPosition);
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
    s->DataLabels()->Font()->SetSize(9.0);
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
        auto c = BuildAbc(ws, k.type, k.legend, top);
        top += 230;
        EXPECT_EQ(c->ChartType(), k.type);
        EXPECT_EQ(c->SeriesCollection()->Count(), 2);
    }
    for (long t : {xlPie, xlPieExploded, xl3DPie, xl3DPieExploded, xlDoughnut}) {
        SCOPED_TRACE(t);
        auto c = BuildPie(ws, t, top);
        top += 230;
        EXPECT_EQ(c->ChartType(), t);
        EXPECT_FALSE(CBool(c->HasAxis(xlValue)));
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
        EXPECT_EQ(s->Name(), "South");
        EXPECT_EQ(CStr(s->XValues()[3]), "Apr");
        EXPECT_DOUBLE_EQ(CDbl(s->Values()[3]), 27.5);
        EXPECT_TRUE(s->HasDataLabels());
        EXPECT_TRUE(s->DataLabels()->ShowValue());
        EXPECT_EQ(CLng(s->DataLabels()->Type()), xlDataLabelsShowValue);
        EXPECT_EQ(CStr(s->DataLabels()->Font()->Name()), "Arial");
        EXPECT_EQ(CStr(s->DataLabels()->Font()->FontStyle()), "Italic");
        auto vt = c->Axes(xlValue)->AxisTitle();
        EXPECT_EQ(vt->Text(), "Units");
        EXPECT_EQ(CLng(vt->Orientation()), xlUpward);
        EXPECT_EQ(CStr(vt->Font()->FontStyle()), "Bold");
        EXPECT_EQ(CLng(vt->Font()->Color()), 0x0000FF);
        EXPECT_DOUBLE_EQ(CDbl(vt->Font()->Size()), 9);
        EXPECT_EQ(c->Axes(xlCategory)->AxisTitle()->Text(), "Month");
        EXPECT_TRUE(c->Axes(xlValue)->TickLabels()->NumberFormatLinked());
        EXPECT_DOUBLE_EQ(CDbl(c->Legend()->Font()->Size()), 8);
    }
    // the centre survives on columns and bars, not on an area, which has no label positions
    EXPECT_EQ(objects->Item(1L)->Chart()->SeriesCollection()->Item(1L)->DataLabels()->Position(), xlLabelPositionCenter);
    for (long i = 11; i <= 15; ++i) {
        auto c = objects->Item(i)->Chart();
        EXPECT_EQ(c->ChartTitle()->Text(), "Share");
        EXPECT_EQ(c->SeriesCollection()->Item(1L)->Formula(), "=SERIES(,Sheet1!$B$6:$B$9,Sheet1!$C$6:$C$9,1)");
        EXPECT_TRUE(c->SeriesCollection()->Item(1L)->DataLabels()->ShowPercentage());
        EXPECT_EQ(CLng(c->SeriesCollection()->Item(1L)->DataLabels()->Type()), xlDataLabelsShowPercent);
        EXPECT_EQ(c->Legend()->LegendEntries()->Count(), 4);
    }
    EXPECT_EQ(objects->Item(12L)->Chart()->SeriesCollection()->Item(1L)->Explosion(), 25);
    EXPECT_EQ(objects->Item(15L)->Chart()->ChartType(), xlDoughnut);

    if (ts::HaveValidator()) {
        auto r = ts::ValidateXlsx({path});
        EXPECT_EQ(r.status, 0) << r.output;
    }

    // drawn by another reader, the first page shows coloured columns, not only texts
    if (!ts::HaveLibreOffice() || ts::Run("command -v pdftoppm").status != 0) return;
    auto dir = path.parent_path();
    auto pdf = ts::LibreOfficeConvert(path, "pdf", dir);
    ASSERT_FALSE(pdf.empty());
    ASSERT_EQ(ts::Run("pdftoppm -r 30 -f 1 -l 1 -png " + ts::Quote(pdf.string()) + " " + ts::Quote((dir / "page").string())).status, 0);
    ASSERT_EQ(ts::Run("pdftoppm -r 30 -f 1 -l 1 " + ts::Quote(pdf.string()) + " " + ts::Quote((dir / "page").string())).status, 0);
    std::ifstream in(dir / "page-1.ppm", std::ios::binary);
    ASSERT_TRUE(in.good());
    std::string magic;
    long w = 0, h = 0, max = 0;
    in >> magic >> w >> h >> max;
    in.get();
    ASSERT_EQ(magic, "P6");
    std::string pixels(size_t(w * h * 3), '\0');
    in.read(pixels.data(), std::streamsize(pixels.size()));
    long coloured = 0;
    for (size_t i = 0; i + 2 < pixels.size(); i += 3) {
        int r = (unsigned char)pixels[i], g = (unsigned char)pixels[i + 1], b = (unsigned char)pixels[i + 2];
        if (std::max({r, g, b}) - std::min({r, g, b}) > 60) ++coloured;
    }
    EXPECT_GT(coloured, w * h / 100) << "page of " << w << "x" << h;
}

TEST(ChartBuild, ANewChartIsAnEmptyClusteredColumnChartThatValidates) {
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
    EXPECT_NEAR(c->PlotArea()->Width(), 400 - 7 - 80 + 10, 0.01);
    EXPECT_EQ(c->PlotArea()->Position(), xlChartElementPositionCustom);
    EXPECT_EQ(CLng(c->PlotArea()->Interior()->ColorIndex()), xlColorIndexNone);

    // a manual legend place, a deleted entry
    auto legend = c->Legend();
    legend->SetTop(40);
    legend->SetLeft(300);
    EXPECT_NEAR(legend->Left(), 300, 0.01);
    EXPECT_NEAR(legend->Top(), 40, 0.01);
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

    if (ts::HaveValidator()) {
        auto r = ts::ValidateXlsx({path});
        EXPECT_EQ(r.status, 0) << r.output;
    }
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
    if (ts::HaveValidator()) {
        auto r = ts::ValidateXlsx({path});
        EXPECT_EQ(r.status, 0) << r.output;
    }
}

TEST(ChartBuild, MembersNotYetThereSayso) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto c = wb->Worksheets()->Item(1L)->ChartObjects()->Add(0, 0, 200, 100)->Chart();
    EXPECT_EQ(ErrorTextOf([&] { c->SetChartType(xlSurface); }), "Chart.ChartType is not available in this engine yet.");
    EXPECT_EQ(ErrorNumberOf([&] { c->SetSourceData(nullptr); }), 1004);
    EXPECT_EQ(ErrorTextOf([&] { c->SeriesCollection()->NewSeries()->Points(); }),
              "Series.Points is not available in this engine yet.");
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
