#include <gtest/gtest.h>

#include "layout_world.h"

using namespace layoutworld;
using forms::CheckBox;
using forms::ComboBox;
using forms::ListBox;
using forms::OptionButton;
using forms::TextBox;

namespace {

const std::string kPage = "frmPSLayoutABC";

// Region and Product are label columns; Units, Price and Cost number columns.
void Shop(LayoutRun& r, const std::string& type) {
    r.DataTable("Data1", {"Region", "Units", "Product", "Price", "Cost"},
                {{"North", 3.0, "Pen", 1.5, 1.0}, {"South", 4.0, "Ink", 2.5, 2.0}});
    r.NewChart(type, "Data1");
}

}  // namespace

TEST(LayoutABC, NewChartOnOneLabelAndOneNumberColumnPassesUntouched) {
    LayoutRun r;
    r.DataTable("Data1", {"Region", "Sales"}, {{"North", 10.0}, {"South", 20.0}});
    r.NewChart("column", "Data1");
    r.Drive(kPage, {LayoutRun::Check([](forms::Form& f) {
                               EXPECT_EQ(f.Caption(), "Brindle Plotsmith - Chart Layout");
                               EXPECT_EQ(f.Get("Frame2").Caption(), "2. Horizontal (X-axis) Shows");
                               EXPECT_EQ(f.Get("Frame4").Caption(), "4. Column Height");
                               EXPECT_EQ(f.Get("Frame5").Caption(), "5. Column and Axis Labels");
                               EXPECT_EQ(f.Get("chkShowValues").Caption(), "Show Values on Columns");
                               EXPECT_EQ(f.Get("chkStacked").Caption(), "Stacked Columns");
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboCategories").Text(), "Region");
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboValues").Text(), "Sales");
                               EXPECT_TRUE(Ctl<OptionButton>(f, "optSeries", 0).Value());
                               EXPECT_EQ(On(f, {"optSeries:1", "chkStacked", "chk100Pct", "lstCategories"}), "");
                               EXPECT_EQ(f.Get("lstCategories").BackColor(), forms::vbButtonFace);
                               EXPECT_EQ(f.Get("cboValues").BackColor(), forms::vbWhite);
                               EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Region");
                               EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Sales");
                               EXPECT_EQ(VisibleImages(f, "img"), (std::vector<std::string>{"imgLegendDim", "imgColumnBasic"}));
                               EXPECT_EQ(f.Get("lblMaskExample").Caption(), "12345.6789");
                           }),
                           ScriptedDriver::Type("txtTitle", "  Sales by region  "), ScriptedDriver::Click("cmdNext")});
    EXPECT_EQ(r.driver.Shown(), (std::vector<std::string>{"Brindle Plotsmith - Chart Layout", "Brindle Plotsmith - Chart Location"}));
    EXPECT_TRUE(r.dialogs.Texts().empty());
    EXPECT_EQ(r.Attr("title"), "Sales by region");
    EXPECT_EQ(r.Attr("number-format"), "");
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Region\"/></categories>"
              "<series headings-in=\"none\"/>"
              "<values><column name=\"Sales\"/></values>"
              "<axes><axis type=\"label\" label=\"Region\" sticky=\"no\"/><axis type=\"value\" label=\"Sales\" sticky=\"no\"/></axes>"
              "<data-labels/><dynamic-attributes/><comment></comment>");
}

TEST(LayoutABC, NumbersAsCategoriesOrColoursExcludeEachOtherAndGiveTheSize) {
    LayoutRun r;
    Shop(r, "bar");
    r.Drive(kPage, {
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(f.Get("Frame2").Caption(), "2. Vertical (Y-axis) Shows");
            EXPECT_EQ(f.Get("Frame4").Caption(), "4. Bar Length");
            // A bar chart lies on its side: the category axis is the vertical box.
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Region");
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Units");
            EXPECT_TRUE(f.Get("optSeries", 1).Enabled());
            EXPECT_EQ(Items(Ctl<ListBox>(f, "lstCategories")), (std::vector<std::string>{"Units", "Price", "Cost"}));
        }),
        LayoutRun::ClickOpt("optSeries", 1),
        ScriptedDriver::Select("cboSeries", 1),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_TRUE(f.Get("chkStacked").Enabled());
            EXPECT_EQ(VisibleImages(f, "img"), (std::vector<std::string>{"imgLegend", "imgBarCluster"}));
        }),
        // Numbers as categories force "Not Applicable" and take the size from the columns.
        LayoutRun::ClickOpt("optCategories", 2),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "") << "the emptied category combo empties its box";
            EXPECT_TRUE(Ctl<OptionButton>(f, "optSeries", 0).Value());
            EXPECT_EQ(On(f, {"optSeries:2", "cboValues", "cboCategories", "lstCategories", "chkStacked"}), "lstCategories");
            EXPECT_EQ(f.Get("cboValues").BackColor(), forms::vbButtonFace);
            EXPECT_EQ(Ctl<ComboBox>(f, "cboValues").ListIndex(), -1);
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "") << "the value axis box follows the size";
            EXPECT_EQ(Ctl<ComboBox>(f, "cboCategories").ListIndex(), -1);
            EXPECT_EQ(VisibleImages(f, "img"), (std::vector<std::string>{"imgLegendDim", "imgBarBasic"}));
        }),
        // Nothing chosen in the list: the message names the vertical axis on bars.
        ScriptedDriver::Click("cmdNext"),
        LayoutRun::Check([&r](forms::Form& f) {
            EXPECT_EQ(r.dialogs.Texts().back(), "Please select a 'Vertical (Y-axis) Shows' entry");
            EXPECT_EQ(Active(f), "lstCategories");
        }),
        ScriptedDriver::SetSelected("lstCategories", 2, true),
        ScriptedDriver::SetSelected("lstCategories", 0, true),
        ScriptedDriver::Click("cmdNext"),
    });
    EXPECT_EQ(r.dialogs.Texts().size(), 1u);
    EXPECT_EQ(r.dialogs.messages[0].title, "Brindle Plotsmith");
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"columns\"><column name=\"Units\"/><column name=\"Cost\"/></categories>"
              "<series headings-in=\"none\"/><axes/><data-labels/><dynamic-attributes/><comment></comment>");
}

TEST(LayoutABC, NumbersAsColoursForceLabelCategoriesAndStackingFollowsColours) {
    LayoutRun r;
    Shop(r, "area");
    r.Drive(kPage, {
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(f.Get("Frame4").Caption(), "4. Area Size");
            EXPECT_EQ(f.Get("chkStacked").Caption(), "Stacked Areas");
        }),
        LayoutRun::ClickOpt("optSeries", 2),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_TRUE(Ctl<OptionButton>(f, "optCategories", 1).Value());
            EXPECT_EQ(On(f, {"optCategories:2", "cboValues", "cboSeries", "lstSeries", "chkStacked", "chk100Pct"}),
                      "lstSeries chkStacked");
        }),
        ScriptedDriver::SetSelected("lstSeries", 1, true),
        ScriptedDriver::SetSelected("lstSeries", 2, true),
        ScriptedDriver::Click("chkStacked"),
        ScriptedDriver::Click("chk100Pct"),
        ScriptedDriver::Click("chk3D"),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(VisibleImages(f, "imgArea"), (std::vector<std::string>{"imgArea3DStack100"}));
        }),
        // Leaving the stack takes 100 % along.
        ScriptedDriver::Click("chkStacked"),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<CheckBox>(f, "chk100Pct").Value(), 0);
            EXPECT_FALSE(f.Get("chk100Pct").Enabled());
            EXPECT_EQ(VisibleImages(f, "imgArea"), (std::vector<std::string>{"imgArea3DCluster"}));
        }),
        ScriptedDriver::Click("chkStacked"),
        ScriptedDriver::Click("chkShowValues"),
        ScriptedDriver::Click("cmdNext"),
    });
    EXPECT_TRUE(r.dialogs.Texts().empty());
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Region\"/></categories>"
              "<series headings-in=\"columns\"><column name=\"Price\"/><column name=\"Cost\"/></series>"
              "<axes><axis type=\"label\" label=\"Region\" sticky=\"no\"/></axes>"
              "<data-labels><data-label show=\"values\"/></data-labels>"
              "<dynamic-attributes><attribute setting=\"3D\"/><attribute setting=\"stacked\"/></dynamic-attributes>"
              "<comment></comment>");
}

TEST(LayoutABC, RulesSpeakOneAtATimeAndMoveTheFocus) {
    LayoutRun r;
    Shop(r, "column");
    r.Drive(kPage, {
        LayoutRun::ClickOpt("optSeries", 1),
        ScriptedDriver::Select("cboSeries", 0),
        ScriptedDriver::Click("cmdNext"),
        LayoutRun::Check([&r](forms::Form& f) {
            EXPECT_EQ(r.dialogs.Texts().back(),
                      "You cannot use the same entry for the 'Horizontal (X-axis) Shows'\r\nand 'A Color Represents' selections");
            EXPECT_EQ(Active(f), "cboCategories");
        }),
        ScriptedDriver::Select("cboSeries", 1),
        ScriptedDriver::Type("cboDataLabelMask", "0.00\""),
        // The sample is refreshed by the rules even while the focus stays in the box.
        ScriptedDriver::Click("cmdFinish"),
        LayoutRun::Check([&r](forms::Form& f) {
            EXPECT_EQ(r.dialogs.Texts().back(), "The requested number format is not supported by Excel");
            EXPECT_EQ(f.Get("lblMaskExample").Caption(), "(invalid format)");
            EXPECT_EQ(Active(f), "cboDataLabelMask");
        }),
        ScriptedDriver::Type("cboDataLabelMask", " #,###;(#,###); "),
        ScriptedDriver::Click("chkShowValues"),
        LayoutRun::Check([](forms::Form& f) { EXPECT_EQ(f.Get("lblMaskExample").Caption(), " 12,346"); }),
        ScriptedDriver::Click("cmdNext"),
    });
    EXPECT_EQ(r.dialogs.Texts().size(), 2u);
    EXPECT_EQ(r.Attr("number-format"), "#,###;(#,###);");
    EXPECT_NE(r.Body().find("<series headings-in=\"rows\"><column name=\"Product\"/></series>"), std::string::npos);
}

TEST(LayoutABC, SizeAndColourMessagesFollowTheChartType) {
    for (auto [type, message] : {std::pair{"area", "Please select an 'Area Size' entry"},
                                 std::pair{"bar", "Please select a 'Bar Length' entry"},
                                 std::pair{"column", "Please select a 'Column Height' entry"}}) {
        LayoutRun r;
        r.DataTable("Data1", {"Region", "Product"}, {{"North", "Pen"}});
        r.NewChart(type, "Data1");
        r.Drive(kPage, {ScriptedDriver::Click("cmdNext"), LayoutRun::Check([](forms::Form& f) {
                                   EXPECT_EQ(Active(f), "cboValues");
                               }),
                               ScriptedDriver::Click("cmdCancel")}, "");
        EXPECT_EQ(r.dialogs.Texts(), std::vector<std::string>{message}) << type;
        EXPECT_FALSE(r.doc->documentElement().selectSingleNode("categories")) << "nothing written";
        EXPECT_FALSE(r.c.oChartDoc) << "Cancel ended the run";
    }
}

// A colour option left without a column becomes "Not Applicable" without a word.
TEST(LayoutABC, TypedAxisLabelsStayEmptiedOnesAreNotWrittenAndAnUnchosenColourIsDropped) {
    LayoutRun r;
    Shop(r, "column");
    r.Drive(kPage, {
        ScriptedDriver::Type("txtVAxis", "Money"),
        ScriptedDriver::Type("txtHAxis", ""),
        ScriptedDriver::Select("cboValues", 2),
        ScriptedDriver::Select("cboCategories", 1),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Money");
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "");
        }),
        LayoutRun::ClickOpt("optSeries", 1),
        ScriptedDriver::Click("cmdNext"),
    });
    EXPECT_TRUE(r.dialogs.Texts().empty());
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Product\"/></categories>"
              "<series headings-in=\"none\"/>"
              "<values><column name=\"Cost\"/></values>"
              "<axes><axis type=\"value\" label=\"Money\" sticky=\"yes\"/></axes>"
              "<data-labels/><dynamic-attributes/><comment></comment>");
}

TEST(LayoutABC, FocusMarksItsFrameAndTheCommentBoxTakesEnter) {
    LayoutRun r;
    Shop(r, "column");
    r.Drive(kPage, {
        LayoutRun::Focus("optSeries", 0),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_TRUE(f.Get("Frame3").FontBold());
            EXPECT_EQ(f.Get("Frame3").Appearance(), 0);
            EXPECT_EQ(f.Get("Frame3").BackColor(), forms::vbInfoBackground);
            EXPECT_EQ(f.Get("optSeries", 1).BackColor(), forms::vbInfoBackground);
            EXPECT_FALSE(f.Get("Frame2").FontBold());
            EXPECT_EQ(f.Get("optCategories", 1).BackColor(), forms::vbButtonFace);
        }),
        LayoutRun::Focus("txtComment"),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_FALSE(f.Get("Frame3").FontBold());
            EXPECT_TRUE(f.Get("Frame7").FontBold());
            EXPECT_FALSE(Ctl<forms::CommandButton>(f, "cmdNext").Default());
        }),
        ScriptedDriver::Type("txtComment", "First line"),
        ScriptedDriver::PressEnter(),
        ScriptedDriver::Do("type more", [](forms::Form& f) {
            auto& t = Ctl<TextBox>(f, "txtComment");
            EXPECT_TRUE(f.UserType("txtComment", t.Text() + "second line  "));
        }),
        LayoutRun::Focus("cmdHelp"),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_TRUE(Ctl<forms::CommandButton>(f, "cmdNext").Default());
            for (auto& ctl : f.Controls())
                if (ctl->kind() == forms::Kind::Frame) {
                    EXPECT_FALSE(ctl->FontBold()) << ctl->Name();
                }
            EXPECT_EQ(f.Get("Frame7").BackColor(), forms::vbButtonFace);
        }),
        ScriptedDriver::Click("cmdHelp"),
        LayoutRun::Focus("txtTitle"),
        ScriptedDriver::PressEnter(),
    });
    ASSERT_EQ(r.dialogs.helps.size(), 1u);
    EXPECT_EQ(r.dialogs.helps[0].topic, 4);
    EXPECT_EQ(r.doc->documentElement().selectSingleNode("comment").text(), "First line\r\nsecond line");
}

TEST(LayoutABC, ASavedDefinitionComesBackFromTheReopenedFileAsItWasLeft) {
    LayoutRun r;
    Shop(r, "bar");
    r.Drive(kPage, {
        ScriptedDriver::Type("txtTitle", "Stock"),
        ScriptedDriver::Select("cboCategories", 1),
        LayoutRun::ClickOpt("optSeries", 2),
        ScriptedDriver::SetSelected("lstSeries", 0, true),
        ScriptedDriver::SetSelected("lstSeries", 2, true),
        ScriptedDriver::Click("chkStacked"),
        ScriptedDriver::Click("chk100Pct"),
        ScriptedDriver::Type("txtHAxis", "Share"),
        ScriptedDriver::Type("cboDataLabelMask", "$#,###;($#,###);"),
        ScriptedDriver::Type("txtComment", "Two\r\nlines"),
        ScriptedDriver::Click("cmdNext"),
    });
    std::string sWritten = r.Body();
    r.f.SaveChartDefinition(r.doc);
    r.SaveAndReopen("layout_abc_roundtrip");
    ASSERT_EQ(r.Rows().size(), 1u);
    r.Modify(r.f.ParseChartDefinition(r.Rows()[0]), "bar", "Data1");

    r.Drive(kPage, {
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<TextBox>(f, "txtTitle").Text(), "Stock");
            EXPECT_EQ(Ctl<ComboBox>(f, "cboCategories").Text(), "Product");
            EXPECT_TRUE(Ctl<OptionButton>(f, "optSeries", 2).Value());
            auto& lst = Ctl<ListBox>(f, "lstSeries");
            EXPECT_TRUE(lst.Selected(0) && !lst.Selected(1) && lst.Selected(2));
            EXPECT_EQ(On(f, {"cboValues", "chk100Pct"}), "chk100Pct");
            EXPECT_EQ(Ctl<CheckBox>(f, "chkStacked").Value(), 1);
            EXPECT_EQ(Ctl<CheckBox>(f, "chk100Pct").Value(), 1);
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Share");
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Product");
            EXPECT_EQ(Ctl<ComboBox>(f, "cboDataLabelMask").Text(), "$#,###;($#,###);");
            EXPECT_EQ(f.Get("lblMaskExample").Caption(), "$12,346");
            EXPECT_EQ(Ctl<TextBox>(f, "txtComment").Text(), "Two\r\nlines");
            EXPECT_EQ(VisibleImages(f, "imgBar"), (std::vector<std::string>{"imgBarStack100"}));
        }),
        // The typed label stays sticky after the return; the untouched one follows the column.
        ScriptedDriver::Select("cboCategories", 0),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(Ctl<TextBox>(f, "txtVAxis").Text(), "Region");
            EXPECT_EQ(Ctl<TextBox>(f, "txtHAxis").Text(), "Share");
        }),
        ScriptedDriver::Select("cboCategories", 1),
        ScriptedDriver::Click("cmdBack"),
    }, kTable);
    EXPECT_EQ(r.Body(), sWritten) << "Back writes what the page holds, unchanged";
    EXPECT_EQ(sWritten,
              "<categories headings-in=\"rows\"><column name=\"Product\"/></categories>"
              "<series headings-in=\"columns\"><column name=\"Units\"/><column name=\"Cost\"/></series>"
              "<axes><axis type=\"value\" label=\"Share\" sticky=\"yes\"/><axis type=\"label\" label=\"Product\" sticky=\"no\"/></axes>"
              "<data-labels/>"
              "<dynamic-attributes><attribute setting=\"stacked\"/><attribute setting=\"100%\"/></dynamic-attributes>"
              "<comment>Two&#13;\nlines</comment>");
}

TEST(LayoutABC, FinishWalksThroughAHiddenPageThatShowsItsMessageWhenItOpens) {
    LayoutRun r;
    r.DataTable("Data1", {"Units", "Cost"}, {{1.0, 2.0}});
    r.NewChart("column", "Data1");
    r.driver.Visit(kPage, {LayoutRun::Check([&r](forms::Form& f) {
                               EXPECT_EQ(r.dialogs.Texts(),
                                         std::vector<std::string>{"Please select a 'Horizontal (X-axis) Shows' entry"});
                               EXPECT_EQ(Active(f), "cboCategories");
                           }),
                           ScriptedDriver::Close()});
    r.c.controller->JumpFinish(ps::pcSelectTable);
    EXPECT_EQ(r.dialogs.Texts().size(), 1u);
    EXPECT_TRUE(r.c.sPendingMessage.empty());
}
