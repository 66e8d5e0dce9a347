#include "builder_world.h"

using buildertest::BuilderWorld;
using buildertest::Def;
using buildertest::Group;

namespace {

const std::string kByRegion = Group("categories", "rows", {"Region"}) + Group("series", "none", {}) +
                              Group("values", "", {"Amount"});

}  // namespace

TEST(ChartRefresh, AChartThatCantBeBuiltIsCrosshatchedUntilItRecovers) {
    BuilderWorld w;
    std::vector<std::string> calls;
    w.app->SetMacro("VEXEvents.VEXChartRefreshStarted", [&](const std::vector<host::Variant>& args) {
        calls.push_back(args.empty() ? "" : host::CStr(args[0]));
        return host::Variant();
    });
    w.Table("Data1", {{"Region", "Amount"}, {"East", 1.0}});
    auto chart = w.Chart(Def("VEX_Chart1", "unknown", kByRegion));
    auto oChart = w.ChartObject("VEX_Chart1");
    oChart->SeriesCollection()->NewSeries()->SetValues(w.Sheet("Data1")->Range("B2"));

    const std::string unsupported =
        "Chart 'VEX_Chart1 name' has become unavailable because it was changed to an unsupported chart type.";
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.dialogs.Texts(), std::vector<std::string>{unsupported});
    EXPECT_EQ(calls, std::vector<std::string>{"VEX_Chart1"}) << "the host hears of each chart by its id";
    EXPECT_EQ(oChart->SeriesCollection()->Count(), 0);
    auto fill = oChart->ChartArea()->Fill();
    EXPECT_EQ(fill->Type(), host::msoFillPatterned);
    EXPECT_EQ(fill->Pattern(), host::msoPatternLightUpwardDiagonal);
    EXPECT_EQ(fill->ForeColor()->SchemeColor(), 15);
    EXPECT_EQ(fill->BackColor()->SchemeColor(), 2);
    EXPECT_EQ(w.Attr(chart, "chart-area-crosshatched"), "yes");
    EXPECT_FALSE(w.c.common->SheetExists(ps::sDataSheet)) << "nothing is written for a chart that can't be built";

    // Still unavailable: the message again, the crosshatch as it was.
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{unsupported, unsupported}));
    EXPECT_EQ(w.Attr(chart, "chart-area-crosshatched"), "yes");
    EXPECT_EQ(oChart->ChartArea()->Fill()->Pattern(), host::msoPatternLightUpwardDiagonal);

    // Valid again: built, and the crosshatch goes.
    chart.setAttribute("type", "column");
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.dialogs.messages.size(), 2u);
    EXPECT_EQ(w.Attr(chart, "chart-area-crosshatched"), "no");
    EXPECT_EQ(host::CLng(oChart->ChartArea()->Interior()->ColorIndex()), host::xlNone);
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||Amount", "VEX_Chart1|East|1"}));

    // An area the user coloured isn't crosshatched, and the attribute stays; the block stays too.
    oChart->ChartArea()->Interior()->SetColorIndex(6L);
    chart.setAttribute("table-id", "Data9");
    w.Sheet("Data1")->Cells(2, 2)->SetValue(8.0);
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.dialogs.Texts().back(), "Chart 'VEX_Chart1 name' has become unavailable because its source table no "
                                        "longer exists in this workbook.");
    EXPECT_EQ(w.Attr(chart, "chart-area-crosshatched"), "no");
    EXPECT_EQ(host::CLng(oChart->ChartArea()->Interior()->ColorIndex()), 6);
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||Amount", "VEX_Chart1|East|1"}));
}

TEST(ChartRefresh, ANewChartLosesItsPlotAreaFillARefreshedOneKeepsIt) {
    for (long method : {ps::mtNew, ps::mtCopy, ps::mtRefresh}) {
        BuilderWorld w;
        w.Table("Data1", {{"Region", "Amount"}, {"East", 1.0}});
        w.Chart(Def("VEX_Chart1", "area", kByRegion));
        w.ChartObject("VEX_Chart1")->PlotArea()->Interior()->SetColorIndex(6L);
        w.c.lMethodType = method;
        w.b.PopulateChart("VEX_Chart1");
        EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
        EXPECT_EQ(w.b.mNewOrCopiedChart, method != ps::mtRefresh);
        EXPECT_EQ(host::CLng(w.ChartObject("VEX_Chart1")->PlotArea()->Interior()->ColorIndex()),
                  method == ps::mtRefresh ? 6 : host::xlNone);
    }
    // A type the builder doesn't know is built as far as the drawing, and said so.
    BuilderWorld w;
    w.Table("Data1", {{"Region", "Amount"}, {"East", 1.0}});
    w.Chart(Def("VEX_Chart1", "radar", kByRegion));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.dialogs.Texts(), std::vector<std::string>{"PSChartBuilder.PopulateChart\r\nUnknown chart type"});
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||Amount", "VEX_Chart1|East|1"}));
}
