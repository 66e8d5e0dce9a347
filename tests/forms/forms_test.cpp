#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "forms/form.h"
#include "forms/headless.h"
#include "host/error.h"

using namespace forms;

namespace {

// A form whose design is given by the test and whose events are logged.
class LoggedForm : public Form {
public:
    LoggedForm(FrontEnd& fe, std::string name, std::function<void(LoggedForm&)> design, std::vector<std::string>& log)
        : Form(fe, std::move(name)), design_(std::move(design)), log_(log) {}
    using Form::Add;
    std::vector<std::string>& log() { return log_; }

protected:
    void Design() override {
        SetCaption(Name());
        if (design_) design_(*this);
    }
    void Form_Load() override { log_.push_back(Name() + " load"); }
    void Form_Activate() override { log_.push_back(Name() + " activate"); }
    void Form_Deactivate() override { log_.push_back(Name() + " deactivate"); }
    void Form_Unload() override { log_.push_back(Name() + " unload"); }

private:
    std::function<void(LoggedForm&)> design_;
    std::vector<std::string>& log_;
};

struct Fixture {
    ScriptedDriver driver;
    HeadlessFrontEnd fe{driver};
    std::vector<std::string> log;
};

}  // namespace

TEST(Controls, SelectionAndCheckChangesInCodeRaiseClickOnlyWhenTheStateChanges) {
    Fixture f;
    int combo = 0, check = 0, list = 0;
    std::vector<int> options;
    LoggedForm form(f.fe, "frmA", [&](LoggedForm& fm) {
        auto& cbo = fm.Add<ComboBox>("cboType");
        for (auto s : {"bar", "column", "pie"}) cbo.AddItem(s);
        cbo.Click = [&] { ++combo; };
        auto& fra = fm.Add<Frame>("fraType");
        for (int i = 0; i < 3; ++i) {
            auto& o = fm.Add<OptionButton>("optType", &fra, i);
            o.Click = [&options, i] { options.push_back(i); };
        }
        fm.Add<OptionButton>("optElsewhere").SetValue(true);
        fm.Add<CheckBox>("chkStack").Click = [&] { ++check; };
        auto& lst = fm.Add<ListBox>("lstSeries");
        for (auto s : {"a", "b", "c"}) lst.AddItem(s);
        lst.Click = [&] { ++list; };
    }, f.log);
    form.Load();

    auto& cbo = form.Get<ComboBox>("cboType");
    cbo.SetListIndex(1);
    cbo.SetListIndex(1);
    EXPECT_EQ(combo, 1);
    EXPECT_EQ(cbo.Text(), "column");
    cbo.SetListIndex(-1);
    EXPECT_EQ(combo, 2);
    EXPECT_THROW(cbo.SetListIndex(3), host::Error);

    form.Get<OptionButton>("optType", 1).SetValue(true);
    form.Get<OptionButton>("optType", 2).SetValue(true);
    form.Get<OptionButton>("optType", 2).SetValue(true);
    EXPECT_EQ(options, (std::vector<int>{1, 2}));
    EXPECT_FALSE(form.Get<OptionButton>("optType", 1).Value());
    EXPECT_TRUE(form.Get<OptionButton>("optElsewhere").Value()) << "another container is another group";

    auto& chk = form.Get<CheckBox>("chkStack");
    chk.SetValue(CheckBox::vbChecked);
    chk.SetValue(CheckBox::vbChecked);
    chk.SetValue(CheckBox::vbUnchecked);
    EXPECT_EQ(check, 2);

    auto& lst = form.Get<ListBox>("lstSeries");
    lst.SetSelected(2, true);
    EXPECT_EQ(lst.ListIndex(), 2);
    EXPECT_EQ(lst.SelCount(), 1);
    EXPECT_EQ(list, 1);
}

TEST(Controls, ComboTextFollowsItsStyle) {
    Fixture f;
    int clicks = 0;
    LoggedForm form(f.fe, "frmA", [&](LoggedForm& fm) {
        auto& list = fm.Add<ComboBox>("cboList");
        auto& edit = fm.Add<ComboBox>("cboFormat");
        edit.Style = ComboBox::vbComboDropdown;
        for (auto* c : {&list, &edit}) {
            c->AddItem("#,###;(#,###);");
            c->AddItem("General");
            c->Click = [&] { ++clicks; };
        }
    }, f.log);
    form.Load();
    auto& list = form.Get<ComboBox>("cboList");
    list.SetText("General");
    EXPECT_EQ(list.ListIndex(), 1);
    EXPECT_EQ(clicks, 1);
    try {
        list.SetText("0.00");
        FAIL();
    } catch (const host::Error& e) {
        EXPECT_EQ(e.Number(), 383);
    }
    auto& edit = form.Get<ComboBox>("cboFormat");
    edit.SetText("0.00");
    EXPECT_EQ(edit.Text(), "0.00");
    EXPECT_EQ(edit.ListIndex(), -1);
    edit.SetText("General");
    EXPECT_EQ(edit.ListIndex(), 1);
    EXPECT_EQ(clicks, 1) << "typing into an editable box is no click";
}

TEST(Forms, ShowIsModalAndUnloadRaisesItsEventSynchronously) {
    std::vector<std::string> log;
    std::function<void(Form&)> act;
    CallbackDriver driver([&](Form& f) { act(f); });
    HeadlessFrontEnd fe(driver);
    LoggedForm form(fe, "frmA", [&](LoggedForm& fm) {
        fm.Add<TextBox>("txtTitle");
        fm.Add<CommandButton>("cmdCancel").Click = [&fm] {
            fm.log().push_back("cancel start");
            fm.Unload();
            fm.log().push_back("cancel end");
        };
    }, log);

    form.Load();
    EXPECT_FALSE(form.Visible());
    EXPECT_EQ(log, (std::vector<std::string>{"frmA load"}));

    act = [&](Form& f) {
        log.push_back("driver");
        EXPECT_TRUE(f.Visible());
        EXPECT_TRUE(f.UserType("txtTitle", "Sales"));
        EXPECT_TRUE(f.UserClick("cmdCancel"));
        EXPECT_FALSE(f.Loaded());
    };
    form.Show();
    log.push_back("show returned");
    EXPECT_EQ(log, (std::vector<std::string>{"frmA load", "frmA activate", "driver", "cancel start", "frmA unload",
                                             "cancel end", "show returned"}));
    EXPECT_TRUE(form.Controls().empty());

    act = [](Form& f) { EXPECT_EQ(static_cast<TextBox&>(f.Get("txtTitle")).Text(), "") << "back as designed"; };
    log.clear();
    form.Show();
    EXPECT_EQ(log, (std::vector<std::string>{"frmA load", "frmA activate", "frmA unload"}))
        << "a form the driver leaves open is closed";
}

TEST(Forms, ShowsNestInsideHandlersAndTheDriverIsCalledReentrantly) {
    std::vector<std::string> log;
    ScriptedDriver driver;
    HeadlessFrontEnd fe(driver);
    LoggedForm b(fe, "frmB", nullptr, log);
    LoggedForm a(fe, "frmA", [&](LoggedForm& fm) {
        fm.Add<CommandButton>("cmdNext").Click = [&] {
            b.Show();
            log.push_back("b returned");
            fm.Unload();
        };
    }, log);
    driver.Visit("frmA", {ScriptedDriver::Click("cmdNext")});
    driver.Visit("frmB", {ScriptedDriver::Do("check stack", [&](Form&) {
                              EXPECT_EQ(fe.ShownForms().size(), 2u);
                          }),
                          ScriptedDriver::Close()});
    a.Show();
    EXPECT_EQ(log, (std::vector<std::string>{"frmA load", "frmA activate", "frmB load", "frmA deactivate",
                                             "frmB activate", "frmB unload", "frmA activate", "b returned",
                                             "frmA unload"}));
    EXPECT_EQ(driver.Shown(), (std::vector<std::string>{"frmA", "frmB"}));
    EXPECT_TRUE(driver.Problems().empty());
    EXPECT_TRUE(fe.ShownForms().empty());
}

TEST(Forms, HidingEndsTheModalShowWithoutUnloading) {
    std::vector<std::string> log;
    ScriptedDriver driver;
    HeadlessFrontEnd fe(driver);
    class SelfHiding : public LoggedForm {
    public:
        using LoggedForm::LoggedForm;
        void Form_Activate() override {
            LoggedForm::Form_Activate();
            Hide();
        }
    } form(fe, "frmBusy", nullptr, log);
    form.Show();
    EXPECT_TRUE(form.Loaded());
    EXPECT_FALSE(form.Visible());
    EXPECT_TRUE(driver.Shown().empty()) << "nothing was left for a driver";
    EXPECT_EQ(log, (std::vector<std::string>{"frmBusy load", "frmBusy activate"}));
}

TEST(Forms, ScriptedDriverRecordsWhatCouldNotBeDone) {
    std::vector<std::string> log;
    ScriptedDriver driver;
    HeadlessFrontEnd fe(driver);
    int clicks = 0;
    LoggedForm form(fe, "frmA", [&](LoggedForm& fm) {
        fm.Add<CommandButton>("cmdNext").SetEnabled(false);
        auto& fra = fm.Add<Frame>("fraOff");
        fra.SetEnabled(false);
        fm.Add<CheckBox>("chkInside", &fra).Click = [&] { ++clicks; };
        fm.Add<CommandButton>("cmdCancel").Click = [&fm] { fm.Unload(); };
    }, log);
    driver.Visit("frmA", {ScriptedDriver::Click("chkInside")});
    driver.Visit("frmA", {ScriptedDriver::Click("cmdCancel"), ScriptedDriver::Click("cmdNext")});
    form.Show();
    form.Show();
    form.Show();
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(driver.Problems(), (std::vector<std::string>{"frmA: could not click chkInside",
                                                           "frmA: gone before \"click cmdNext\"",
                                                           "frmA: shown with no visit queued"}));
}

TEST(Forms, FocusValidatesTheControlItLeaves) {
    Fixture f;
    int pressed = 0, focused = 0;
    LoggedForm form(f.fe, "frmA", [&](LoggedForm& fm) {
        auto& txt = fm.Add<TextBox>("txtHAxis");
        txt.Validate = [&txt](bool& cancel) { cancel = txt.Text() == "bad"; };
        txt.GotFocus = [&] { ++focused; };
        auto& note = fm.Add<TextBox>("txtComment");
        note.MultiLine = true;
        auto& next = fm.Add<CommandButton>("cmdNext");
        next.SetDefault(true);
        next.Click = [&] { ++pressed; };
        note.GotFocus = [&next] { next.SetDefault(false); };
        note.Validate = [&next](bool&) { next.SetDefault(true); };
    }, f.log);
    EXPECT_THROW(form.Get("txtHAxis").SetFocus(), host::Error) << "a hidden form takes no focus";

    f.driver.Visit("frmA", {
        ScriptedDriver::Type("txtHAxis", "bad"),
        ScriptedDriver::Do("blocked", [&](Form& fm) { EXPECT_FALSE(fm.UserClick("cmdNext")); }),
        ScriptedDriver::Type("txtHAxis", "Region"),
        ScriptedDriver::Type("txtComment", "line"),
        ScriptedDriver::PressEnter(),
        ScriptedDriver::Do("newline", [&](Form& fm) {
            EXPECT_EQ(static_cast<TextBox&>(fm.Get("txtComment")).Text(), "line\r\n");
        }),
        ScriptedDriver::Click("cmdNext"),  // leaving the comment makes Next the default again
        ScriptedDriver::Type("txtHAxis", "Region 2"),
        ScriptedDriver::PressEnter(),
    });
    form.Show();
    EXPECT_EQ(pressed, 2);
    EXPECT_EQ(focused, 2);
    EXPECT_TRUE(f.driver.Problems().empty()) << f.driver.Problems().front();
}

TEST(Forms, TimersTickOnlyWhenEventsArePumped) {
    Fixture f;
    int ticks = 0;
    LoggedForm form(f.fe, "frmBusy", [&](LoggedForm& fm) {
        auto& t = fm.Add<Timer>("Timer1");
        t.Interval = 100;
        t.Tick = [&] {
            ++ticks;
            f.fe.DoEvents();  // a yield inside the tick doesn't tick again
        };
    }, f.log);
    f.driver.Visit("frmBusy", {ScriptedDriver::Do("pump", [&](Form& fm) {
                                   f.fe.DoEvents();
                                   fm.Get("Timer1").SetEnabled(false);
                                   f.fe.DoEvents();
                               })});
    f.fe.DoEvents();
    form.Show();
    EXPECT_EQ(ticks, 1);
}

TEST(Controls, GridSortCarriesRowDataAndSelection) {
    Fixture f;
    LoggedForm form(f.fe, "frmA", [](LoggedForm& fm) { fm.Add<Grid>("grdCharts"); }, f.log);
    form.Load();
    auto& g = form.Get<Grid>("grdCharts");
    g.SetCols(4);
    g.SetRows(4);
    const char* names[] = {"sales", "Costs", "margin"};
    for (long r = 1; r <= 3; ++r) {
        g.SetTextMatrix(r, 0, names[r - 1]);
        g.SetRowData(r, "VEX_Chart" + std::to_string(r));
    }
    g.Select(1, 0);
    g.SetSort(Grid::flexSortStringNoCaseAscending);
    EXPECT_EQ(g.TextMatrix(1, 0), "Costs");
    EXPECT_EQ(g.TextMatrix(3, 0), "sales");
    EXPECT_EQ(g.SelectedRows(), 1);
    EXPECT_EQ(g.SelectedRow(0), 3);
    EXPECT_EQ(host::CStr(g.RowData(3)), "VEX_Chart1");
}
