#include <gtest/gtest.h>

#include "layout_world.h"

using namespace layoutworld;
using forms::CheckBox;
using forms::ComboBox;
using forms::ListBox;
using forms::TextBox;

namespace {
const std::string kPage = "frmPSLayoutBubble";

void Portfolio(LayoutRun& r) {
    r.DataTable("Data1", {"Project", "Risk", "Return", "Owner", "Budget"},
                {{"Alpha", 1.0, 2.0, "Ann", 10.0}, {"Beta", 2.0, 3.0, "Bob", 20.0}});
}
}  // namespace

TEST(LayoutBubble, ANewChartHasOneColourOneSizeAndTheFirstNumberOnBothAxes) {
    LayoutRun r;
    Portfolio(r);
    r.NewChart("bubble", "Data1");
    r.Drive(kPage, {LayoutRun::Check([](forms::Form& f) {
                               EXPECT_EQ(Ctl<ListBox>(f, "lstYValues").Text(), "Risk");
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboXValues").Text(), "Risk");
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboCategories").Text(), "Project");
                               EXPECT_EQ(Items(Ctl<ComboBox>(f, "cboSeries")),
                                         (std::vector<std::string>{"[all the same color]", "Project", "Owner"}));
                               EXPECT_EQ(Items(Ctl<ComboBox>(f, "cboSizes")),
                                         (std::vector<std::string>{"[all the same size]", "Risk", "Return", "Budget"}));
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboSizes").ListIndex(), 0);
                               EXPECT_EQ(On(f, {"chkShowZeroBubbles", "chkScaleXAxis"}), "");
                               EXPECT_EQ(f.Get("chkScaleXAxis").Caption(), "Recalculate X-axis ");
                               EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Risk");
                               EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Risk");
                               EXPECT_EQ(VisibleImages(f, "img"), (std::vector<std::string>{"imgLegendDim", "imgBubbleBasic"}));
                           }),
                           ScriptedDriver::Click("cmdNext")});
    EXPECT_TRUE(r.dialogs.Texts().empty());
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Project\"/></categories>"
              "<series headings-in=\"none\"/>"
              "<values><column name=\"Risk\"/></values>"
              "<x-values><column name=\"Risk\"/></x-values>"
              "<axes><axis type=\"label\" label=\"Risk\" sticky=\"no\"/><axis type=\"value\" label=\"Risk\" sticky=\"no\"/></axes>"
              "<dynamic-attributes/><static-attributes/><comment></comment>");
}

TEST(LayoutBubble, SizesQuadrantsAndColoursSwitchTheirDependantsAndTypedLabelsStick) {
    LayoutRun r;
    Portfolio(r);
    r.NewChart("bubble", "Data1");
    r.Drive(kPage, {
        // Typed labels stick, an emptied one too; both are written as typed.
        ScriptedDriver::Type("txtVAxis", ""),
        ScriptedDriver::Type("txtHAxis", "Danger"),
        ScriptedDriver::Select("lstYValues", 1),
        ScriptedDriver::Select("cboXValues", 1),
        ScriptedDriver::Select("cboXValues", 0),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "");
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Danger");
        }),
        ScriptedDriver::Select("cboSizes", 3),
        ScriptedDriver::Click("chkShowZeroBubbles"),
        // Back to equal sizes: nothing zero or negative to show.
        ScriptedDriver::Select("cboSizes", 0),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<CheckBox>(f, "chkShowZeroBubbles").Value(), 0);
            EXPECT_FALSE(f.Get("chkShowZeroBubbles").Enabled());
        }),
        ScriptedDriver::Select("cboSizes", 3),
        ScriptedDriver::Click("chkShowZeroBubbles"),
        ScriptedDriver::Click("chkQuadrants"),
        ScriptedDriver::Click("chkScaleXAxis"),
        ScriptedDriver::Click("chkScaleYAxis"),
        ScriptedDriver::Click("chkQuadrants"),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<CheckBox>(f, "chkScaleXAxis").Value(), 0);
            EXPECT_EQ(Ctl<CheckBox>(f, "chkScaleYAxis").Value(), 0);
            EXPECT_FALSE(f.Get("chkScaleYAxis").Enabled());
        }),
        ScriptedDriver::Click("chkQuadrants"),
        ScriptedDriver::Click("chkScaleYAxis"),
        ScriptedDriver::Click("chk3D"),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(VisibleImages(f, "imgBubble"), std::vector<std::string>{"imgBubble3DQuad"});
        }),
        ScriptedDriver::Select("cboSeries", 2),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_TRUE(f.Get("imgLegend").Visible());
            EXPECT_FALSE(f.Get("imgLegendDim").Visible());
        }),
        ScriptedDriver::Type("txtComment", "  note  "),
        ScriptedDriver::Click("cmdNext"),
    });
    // The emptied vertical box made sticky writes no axis, as on the other layout pages.
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Project\"/></categories>"
              "<series headings-in=\"rows\"><column name=\"Owner\"/></series>"
              "<values><column name=\"Return\"/></values>"
              "<x-values><column name=\"Risk\"/></x-values>"
              "<bubble-sizes><column name=\"Budget\"/></bubble-sizes>"
              "<axes><axis type=\"label\" label=\"Danger\" sticky=\"yes\"/></axes>"
              "<dynamic-attributes><attribute setting=\"3D\"/></dynamic-attributes>"
              "<static-attributes><attribute setting=\"show-zero-bubbles\"/><attribute setting=\"quadrants\"/>"
              "<attribute setting=\"autoscale-y\"/></static-attributes>"
              "<comment>note</comment>");

    // The saved order of the settings restores into boxes that the restore itself switches on.
    ASSERT_EQ(r.Rows().size(), 0u);
    r.f.SaveChartDefinition(r.doc);
    r.SaveAndReopen("layout_bubble_roundtrip");
    auto saved = r.f.ParseChartDefinition(r.Rows().at(0));
    r.c.colTables = nullptr;
    r.c.colCharts = nullptr;
    r.Modify(saved, "bubble", "Data1");
    r.Drive(kPage, {LayoutRun::Check([](forms::Form& f) {
                               EXPECT_EQ(Ctl<ListBox>(f, "lstYValues").Text(), "Return");
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboSizes").Text(), "Budget");
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboSeries").Text(), "Owner");
                               EXPECT_EQ(Ctl<CheckBox>(f, "chkShowZeroBubbles").Value(), 1);
                               EXPECT_TRUE(f.Get("chkShowZeroBubbles").Enabled());
                               EXPECT_EQ(Ctl<CheckBox>(f, "chkQuadrants").Value(), 1);
                               EXPECT_EQ(Ctl<CheckBox>(f, "chkScaleXAxis").Value(), 0);
                               EXPECT_EQ(Ctl<CheckBox>(f, "chkScaleYAxis").Value(), 1);
                               EXPECT_TRUE(f.Get("chkScaleXAxis").Enabled());
                               EXPECT_EQ(VisibleImages(f, "imgBubble"), std::vector<std::string>{"imgBubble3DQuad"});
                           }),
                           ScriptedDriver::Click("cmdCancel")}, "");
}

TEST(LayoutBubble, RulesSpeakInOrderAndBackWritesWithoutAsking) {
    LayoutRun r;
    r.DataTable("Data1", {"Project", "Owner"}, {{"Alpha", "Ann"}});
    r.DataTable("Data2", {"Risk"}, {{1.0}});
    r.NewChart("bubble", "Data1");
    r.Drive(kPage, {ScriptedDriver::Click("cmdNext"),
                           LayoutRun::Check([](forms::Form& f) { EXPECT_EQ(Active(f), "lstYValues"); }),
                           ScriptedDriver::Click("cmdBack")}, kTable);
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Project\"/></categories>"
              "<series headings-in=\"none\"/><axes/><dynamic-attributes/><static-attributes/><comment></comment>");
    r.NewChart("bubble", "Data2");
    r.Drive(kPage, {ScriptedDriver::Click("cmdNext"),
                           LayoutRun::Check([](forms::Form& f) { EXPECT_EQ(Active(f), "cboCategories"); }),
                           ScriptedDriver::Close()}, "");
    EXPECT_EQ(r.dialogs.Texts(), (std::vector<std::string>{"Please select a 'Vertical (Y-axis)' entry",
                                                           "Please select a 'Bubble Represents' entry"}));
}
