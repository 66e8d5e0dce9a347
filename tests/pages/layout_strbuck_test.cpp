#include <gtest/gtest.h>

#include "layout_world.h"

using namespace layoutworld;
using forms::CheckBox;
using forms::ComboBox;
using forms::Grid;
using forms::OptionButton;
using forms::TextBox;

namespace {
const std::string kPage = "frmPSLayoutStrBuck";

// A source table, two bucket tables that fit it (headings compared without case), and one that
// doesn't: its first column is a number column of the source.
void Book(LayoutRun& r) {
    r.RangeTable("VEX_TableRangeProjects", "Projects", 1, {"Project", "Bucket", "Budget", "Cost"},
                 {{"Alpha", "Grow", 10.0, 1.0}, {"Beta", "Keep", 20.0, 2.0}});
    r.RangeTable("VEX_SBGrowth", "Buckets", 1, {"Bucket", "Budget"},
                 {{"Grow", 10.0}, {"grow", 5.0}, {"Keep", 1234.4}});
    r.RangeTable("VEX_SBOther", "Other", 1, {"BUCKET", "budget"}, {{"Run", 2000.0}});
    r.RangeTable("VEX_SBWrong", "Wrong", 1, {"Budget", "Cost"}, {{1.0, 2.0}});
}

std::vector<std::vector<std::string>> Cells(Grid& g) {
    std::vector<std::vector<std::string>> out;
    for (long i = 0; i < g.Rows(); ++i) out.push_back({g.TextMatrix(i, 0), g.TextMatrix(i, 1)});
    return out;
}
}  // namespace

TEST(LayoutStrBuck, TheBucketTableFillsTheGridAndNamesTheAxesUntilTheUserTypes) {
    LayoutRun r;
    Book(r);
    r.NewChart("strategic bucket", "VEX_TableRangeProjects");
    r.Drive(kPage, {
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Items(Ctl<ComboBox>(f, "cboBucketTables")), (std::vector<std::string>{"VEX_SBGrowth", "VEX_SBOther"}));
            EXPECT_EQ(Cells(Ctl<Grid>(f, "grdBuckets")),
                      (std::vector<std::vector<std::string>>{{"Bucket", "Budget"}, {"GROW", "15"}, {"KEEP", "1,234"}}));
            EXPECT_DOUBLE_EQ(Ctl<Grid>(f, "grdBuckets").ColWidth(0), 0.6 * Ctl<Grid>(f, "grdBuckets").ClientWidth());
            EXPECT_EQ(Ctl<Grid>(f, "grdBuckets").ColAlignment(1), Grid::flexAlignRightCenter) << "values stand right";
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Bucket");
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Budget");
            EXPECT_EQ(Ctl<ComboBox>(f, "cboCategories").Text(), "Project");
            EXPECT_EQ(Items(Ctl<ComboBox>(f, "cboSeries")), (std::vector<std::string>{"[all the same color]", "Project", "Bucket"}));
            EXPECT_EQ(Items(Ctl<ComboBox>(f, "cboBlockSequence")), (std::vector<std::string>{"[none]", "Budget", "Cost"}));
            EXPECT_EQ(Ctl<ComboBox>(f, "cboBlockSequence").ListIndex(), 0);
            EXPECT_TRUE(Ctl<OptionButton>(f, "optBlockSequence", 0).Value());
            EXPECT_TRUE(f.Get("imgStrBuckBasic").Visible());
            EXPECT_TRUE(f.Get("imgLegendDim").Visible());
        }),
        ScriptedDriver::Select("cboBucketTables", 1),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Cells(Ctl<Grid>(f, "grdBuckets")),
                      (std::vector<std::vector<std::string>>{{"BUCKET", "budget"}, {"RUN", "2,000"}}));
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "BUCKET");
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "budget");
        }),
        ScriptedDriver::Type("txtHAxis", "Areas"),
        ScriptedDriver::Select("cboBucketTables", 0),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Areas");
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Budget");
        }),
        ScriptedDriver::Select("cboSeries", 2),
        ScriptedDriver::Select("cboBlockSequence", 2),
        LayoutRun::ClickOpt("optBlockSequence", 1),
        ScriptedDriver::Click("chkShowNames"),
        ScriptedDriver::Click("cmdNext"),
    });
    EXPECT_TRUE(r.dialogs.Texts().empty());
    EXPECT_EQ(r.Attr("strategic-bucket-table-id"), "VEX_SBGrowth");
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Project\"/></categories>"
              "<series headings-in=\"rows\"><column name=\"Bucket\"/></series>"
              "<values><column name=\"Budget\"/></values>"
              "<sort-order sort=\"descending\"><column name=\"Cost\"/></sort-order>"
              "<axes><axis type=\"label\" label=\"Areas\" sticky=\"yes\"/><axis type=\"value\" label=\"Budget\" sticky=\"no\"/></axes>"
              "<data-labels manual-labels=\"yes\"/><dynamic-attributes/><comment></comment>");

    // From the reopened file the page comes back as it was left.
    r.f.SaveChartDefinition(r.doc);
    r.SaveAndReopen("layout_strbuck_roundtrip");
    auto saved = r.f.ParseChartDefinition(r.Rows().at(0));
    saved->documentElement().setAttribute("strategic-bucket-table-id", "VEX_SBOther");
    r.c.colTables = nullptr;
    r.c.colCharts = nullptr;
    r.Modify(saved, "strategic bucket", "VEX_TableRangeProjects");
    r.Drive(kPage, {LayoutRun::Check([](forms::Form& f) {
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboBucketTables").Text(), "VEX_SBOther");
                               EXPECT_EQ(Ctl<Grid>(f, "grdBuckets").TextMatrix(1, 0), "RUN");
                               EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Areas");
                               EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Budget");
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboSeries").Text(), "Bucket");
                               EXPECT_TRUE(f.Get("imgLegend").Visible());
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboBlockSequence").Text(), "Cost");
                               EXPECT_TRUE(Ctl<OptionButton>(f, "optBlockSequence", 1).Value());
                               EXPECT_EQ(Ctl<CheckBox>(f, "chkShowNames").Value(), 1);
                           }),
                           // "[none]" writes no order, whatever the options say.
                           ScriptedDriver::Select("cboBlockSequence", 0), ScriptedDriver::Click("cmdBack")}, kTable);
    EXPECT_EQ(r.Attr("strategic-bucket-table-id"), "VEX_SBOther");
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Project\"/></categories>"
              "<series headings-in=\"rows\"><column name=\"Bucket\"/></series>"
              "<values><column name=\"budget\"/></values>"
              "<axes><axis type=\"label\" label=\"Areas\" sticky=\"yes\"/><axis type=\"value\" label=\"Budget\" sticky=\"no\"/></axes>"
              "<data-labels manual-labels=\"yes\"/><dynamic-attributes/><comment></comment>");
}

TEST(LayoutStrBuck, ARefusedFormatStopsTheRunAndAGoneBucketTableFallsToTheFirst) {
    LayoutRun r;
    Book(r);
    r.NewChart("strategic bucket", "VEX_TableRangeProjects");
    r.c.oChartDoc->documentElement().setAttribute("strategic-bucket-table-id", "VEX_SBGone");
    r.c.oChartDoc->documentElement().setAttribute("number-format", "0.00\"");
    r.Drive(kPage, {LayoutRun::Check([](forms::Form& f) {
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboBucketTables").ListIndex(), 0);
                               EXPECT_EQ(f.Get("lblMaskExample").Caption(), "(invalid format)");
                           }),
                           ScriptedDriver::Click("cmdNext"),
                           LayoutRun::Check([](forms::Form& f) { EXPECT_EQ(Active(f), "cboDataLabelMask"); }),
                           ScriptedDriver::Click("cmdHelp"), ScriptedDriver::Close()}, "");
    EXPECT_EQ(r.dialogs.Texts(), std::vector<std::string>{"The requested number format is not supported by Excel"});
    ASSERT_EQ(r.dialogs.helps.size(), 1u);
    EXPECT_EQ(r.dialogs.helps[0].topic, 18);
    EXPECT_FALSE(r.doc->documentElement().selectSingleNode("values"));
}

TEST(LayoutStrBuck, WithoutACandidateTheLoadReportsInThePlainForm) {
    LayoutRun r;
    r.RangeTable("VEX_TableRangeProjects", "Projects", 1, {"Project", "Bucket", "Budget"}, {{"Alpha", "Grow", 10.0}});
    r.NewChart("strategic bucket", "VEX_TableRangeProjects");
    r.c.sCustomAppName = "Host";
    r.Drive(kPage, {ScriptedDriver::Close()}, "");
    ASSERT_EQ(r.dialogs.messages.size(), 1u);
    EXPECT_EQ(r.dialogs.messages[0].text, "Invalid property value");
    EXPECT_EQ(r.dialogs.messages[0].title, "Host Brindle Plotsmith");
}
