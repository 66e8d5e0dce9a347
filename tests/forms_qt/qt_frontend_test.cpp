// The Qt front end over the control model: widgets made from controls, user gestures on them
// raising the model's events, the model's changes shown, message boxes, the busy window's timer.
#include <gtest/gtest.h>

#include <fstream>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include "forms/form.h"
#include "forms_qt/qt_frontend.h"
#include "test_support.h"
#include "qt_app.h"

namespace {

using qttest::ClickBox;

template <class W>
W* WidgetOf(forms_qt::QtFrontEnd& fe, const forms::Form& f, const std::string& name, int index = -1) {
    return qobject_cast<W*>(fe.Widget(f, name, index));
}

// A page of every kind of control, with counters on its events.
class SampleForm : public forms::Form {
public:
    using forms::Form::Form;
    int clicks = 0, changes = 0, comboClicks = 0, listClicks = 0, gridChanges = 0, gotFocus = 0;
    int loads = 0, activates = 0, unloads = 0;

protected:
    void Design() override {
        SetCaption("Sample - Page");
        Add<forms::Label>("lblTitle").SetCaption("Chart title:");
        auto& title = Add<forms::TextBox>("txtTitle");
        title.SetText("Sales");
        title.MaxLength = 10;
        title.Change = [this] { ++changes; };
        title.GotFocus = [this] { ++gotFocus; };
        auto& frame = Add<forms::Frame>("fraType");
        frame.SetCaption("Chart type");
        frame.SetFontBold(true);
        Add<forms::OptionButton>("optType", &frame, 0).SetCaption("Bar");
        Add<forms::OptionButton>("optType", &frame, 1).SetCaption("Column");
        auto& combo = Add<forms::ComboBox>("cboFormat");
        for (auto s : {"#;(#);", "#,###;(#,###);", "$#,###;($#,###);"}) combo.AddItem(s);
        combo.Click = [this] { ++comboClicks; };
        auto& list = Add<forms::ListBox>("lstColumns");
        list.MultiSelect = forms::ListBox::vbMultiSelectExtended;
        for (auto s : {"Region", "Year", "Amount"}) list.AddItem(s);
        list.Click = [this] { ++listClicks; };
        Add<forms::CheckBox>("chkLegend").SetCaption("Show legend");
        auto& grid = Add<forms::Grid>("grdTables");
        grid.SetCols(2);
        grid.SetRows(3);
        const char* cells[3][2] = {{"Name", "Sheet"}, {"Sales", "Data1"}, {"Costs", "Data2"}};
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 2; ++c) grid.SetTextMatrix(r, c, cells[r][c]);
        grid.AfterSelChange = [this] { ++gridChanges; };
        auto& hidden = Add<forms::Label>("lblHidden");
        hidden.SetCaption("not for the user");
        hidden.SetVisible(false);
        auto& next = Add<forms::CommandButton>("cmdNext");
        next.SetCaption("Next >");
        next.SetDefault(true);
        next.Click = [this] {
            ++clicks;
            // Changes made by a handler show at once.
            Get<forms::Label>("lblTitle").SetCaption("Clicked " + std::to_string(clicks));
            Get<forms::CommandButton>("cmdBack").SetEnabled(true);
        };
        auto& back = Add<forms::CommandButton>("cmdBack");
        back.SetCaption("< Back");
        back.SetEnabled(false);
        auto& cancel = Add<forms::CommandButton>("cmdCancel");
        cancel.SetCaption("Cancel");
        cancel.SetCancel(true);
        cancel.Click = [this] { Unload(); };
    }
    void Form_Load() override { ++loads; }
    void Form_Activate() override { ++activates; }
    void Form_Unload() override { ++unloads; }
};

class QtFrontEndTest : public ::testing::Test {
protected:
    void SetUp() override {
        qttest::App();
        watchdog = std::make_unique<qttest::Watchdog>();
    }
    void TearDown() override { watchdog.reset(); }
    std::unique_ptr<qttest::Watchdog> watchdog;
    forms_qt::QtFrontEnd fe;
};

TEST_F(QtFrontEndTest, ShowsControlsAsWidgetsWhoseGesturesRaiseTheModelsEventsAndChangesShowAtOnce) {
    SampleForm form(fe, "frmSample");
    bool seen = false;
    fe.onShown = [&](forms::Form& f) {
        seen = true;
        QDialog* d = fe.Dialog(f);
        ASSERT_NE(d, nullptr);
        EXPECT_TRUE(d->isVisible());
        EXPECT_TRUE(d->isModal());
        EXPECT_EQ(d->windowTitle(), "Sample - Page");
        EXPECT_EQ(WidgetOf<QLabel>(fe, f, "lblTitle")->text(), "Chart title:");
        auto* title = WidgetOf<QLineEdit>(fe, f, "txtTitle");
        EXPECT_EQ(title->text(), "Sales");
        EXPECT_EQ(title->maxLength(), 10);
        auto* frame = WidgetOf<QGroupBox>(fe, f, "fraType");
        EXPECT_EQ(frame->title(), "Chart type");
        EXPECT_TRUE(frame->font().bold());
        auto* opt1 = WidgetOf<QRadioButton>(fe, f, "optType", 1);
        EXPECT_EQ(opt1->text(), "Column");
        EXPECT_EQ(opt1->parentWidget(), frame);  // a control stands in its container
        auto* combo = WidgetOf<QComboBox>(fe, f, "cboFormat");
        ASSERT_EQ(combo->count(), 3);
        EXPECT_EQ(combo->itemText(2), "$#,###;($#,###);");
        EXPECT_FALSE(combo->isEditable());
        EXPECT_EQ(combo->currentIndex(), -1);
        auto* list = WidgetOf<QListWidget>(fe, f, "lstColumns");
        ASSERT_EQ(list->count(), 3);
        EXPECT_EQ(list->selectionMode(), QAbstractItemView::ExtendedSelection);
        EXPECT_EQ(WidgetOf<QCheckBox>(fe, f, "chkLegend")->text(), "Show legend");
        auto* grid = WidgetOf<QTableWidget>(fe, f, "grdTables");
        ASSERT_EQ(grid->rowCount(), 2);  // the fixed row is the header
        EXPECT_EQ(grid->horizontalHeaderItem(1)->text(), "Sheet");
        EXPECT_EQ(grid->item(1, 0)->text(), "Costs");
        EXPECT_FALSE(WidgetOf<QLabel>(fe, f, "lblHidden")->isVisible());
        EXPECT_FALSE(WidgetOf<QPushButton>(fe, f, "cmdBack")->isEnabled());
        EXPECT_TRUE(WidgetOf<QPushButton>(fe, f, "cmdNext")->isEnabled());
        EXPECT_EQ(fe.WindowHandle(f), static_cast<long>(d->winId()));

        // Typing: the model's text and its change event; the maximum length holds.
        title->clear();
        QTest::keyClicks(title, "Revenue by year");
        EXPECT_EQ(f.Get<forms::TextBox>("txtTitle").Text(), "Revenue by");
        EXPECT_GT(form.changes, 0);

        // A click on a button runs its handler, whose changes reach the widgets.
        QTest::mouseClick(WidgetOf<QPushButton>(fe, f, "cmdNext"), Qt::LeftButton);
        EXPECT_EQ(form.clicks, 1);
        EXPECT_EQ(WidgetOf<QLabel>(fe, f, "lblTitle")->text(), "Clicked 1");
        EXPECT_TRUE(WidgetOf<QPushButton>(fe, f, "cmdBack")->isEnabled());

        // Option buttons exclude each other through the model.
        ClickBox(WidgetOf<QRadioButton>(fe, f, "optType", 0));
        ClickBox(WidgetOf<QRadioButton>(fe, f, "optType", 1));
        EXPECT_FALSE(f.Get<forms::OptionButton>("optType", 0).Value());
        EXPECT_TRUE(f.Get<forms::OptionButton>("optType", 1).Value());
        EXPECT_FALSE(WidgetOf<QRadioButton>(fe, f, "optType", 0)->isChecked());

        ClickBox(WidgetOf<QCheckBox>(fe, f, "chkLegend"));
        EXPECT_EQ(f.Get<forms::CheckBox>("chkLegend").Value(), forms::CheckBox::vbChecked);

        // Choosing a combo entry as a user does.
        combo->activated(1);
        EXPECT_EQ(f.Get<forms::ComboBox>("cboFormat").ListIndex(), 1);
        EXPECT_EQ(form.comboClicks, 1);

        // Selecting list entries and grid rows.
        list->item(0)->setSelected(true);
        list->item(2)->setSelected(true);
        auto& lst = f.Get<forms::ListBox>("lstColumns");
        EXPECT_TRUE(lst.Selected(0));
        EXPECT_FALSE(lst.Selected(1));
        EXPECT_TRUE(lst.Selected(2));
        EXPECT_EQ(form.listClicks, 2);
        grid->selectRow(1);
        auto& grd = f.Get<forms::Grid>("grdTables");
        EXPECT_TRUE(grd.IsSelected(2));
        EXPECT_FALSE(grd.IsSelected(1));
        EXPECT_EQ(grd.Row(), 2);
        EXPECT_GT(form.gridChanges, 0);

        // A change of the model in code shows without a gesture once the front end redraws.
        f.Get<forms::ComboBox>("cboFormat").SetListIndex(2);
        f.Get<forms::TextBox>("txtTitle").SetEnabled(false);
        fe.Refresh();
        EXPECT_EQ(combo->currentIndex(), 2);
        EXPECT_FALSE(title->isEnabled());

        // Enter presses the default button; Escape the cancel button, which unloads and closes.
        QTest::keyClick(d, Qt::Key_Return);
        EXPECT_EQ(form.clicks, 2);
        QTest::keyClick(d, Qt::Key_Escape);
        EXPECT_EQ(fe.Dialog(f), nullptr);
        EXPECT_FALSE(d->isVisible());
    };
    form.Show();
    EXPECT_TRUE(seen);
    EXPECT_EQ(form.loads, 1);
    EXPECT_EQ(form.activates, 1);
    EXPECT_EQ(form.unloads, 1);
    EXPECT_FALSE(form.Loaded());
    EXPECT_FALSE(form.Visible());
}

// The close box ends the show as an unload; a form shown from a handler nests, with the
// deactivate and activate events of the form below.
class OuterForm : public forms::Form {
public:
    OuterForm(forms::FrontEnd& fe, forms::Form& inner) : forms::Form(fe, "frmOuter"), inner_(inner) {}
    std::vector<std::string> events;

protected:
    void Design() override {
        SetCaption("Outer");
        Add<forms::CommandButton>("cmdOpen").Click = [this] {
            inner_.Show();
            events.push_back("inner closed");
        };
    }
    void Form_Activate() override { events.push_back("activate"); }
    void Form_Deactivate() override { events.push_back("deactivate"); }
    void Form_Unload() override { events.push_back("unload"); }

private:
    forms::Form& inner_;
};

TEST_F(QtFrontEndTest, NestedShowsAndTheCloseBox) {
    SampleForm inner(fe, "frmSample");
    OuterForm outer(fe, inner);
    fe.onShown = [&](forms::Form& f) {
        if (&f == &outer) {
            QTest::mouseClick(WidgetOf<QPushButton>(fe, f, "cmdOpen"), Qt::LeftButton);
            EXPECT_TRUE(outer.Visible());
            fe.Dialog(f)->close();
        } else {
            EXPECT_EQ(QApplication::activeModalWidget(), fe.Dialog(f));
            fe.Dialog(f)->close();
        }
    };
    outer.Show();
    EXPECT_EQ(inner.unloads, 1);
    std::vector<std::string> want{"activate", "deactivate", "activate", "inner closed", "unload"};
    EXPECT_EQ(outer.events, want);
    EXPECT_FALSE(outer.Loaded());
}

// The busy window's shape: the work runs in the activation and yields; the timer ticks at the
// yields and moves the progress bar; hiding ends the show.
class BusyForm : public forms::Form {
public:
    using forms::Form::Form;
    forms_qt::QtFrontEnd* fe = nullptr;
    int ticks = 0;
    std::vector<int> barSeen;

protected:
    void Design() override {
        SetCaption("Please Wait");
        Add<forms::ProgressBar>("ProgressBar1");
        auto& t = Add<forms::Timer>("Timer1");
        t.Interval = 5;
        t.SetEnabled(false);
        t.Tick = [this] {
            ++ticks;
            auto& bar = Get<forms::ProgressBar>("ProgressBar1");
            bar.SetValue(bar.Value() < 100 ? bar.Value() + 5 : 0);
        };
    }
    void Form_Activate() override {
        Get<forms::Timer>("Timer1").SetEnabled(true);
        while (ticks < 3) {
            QTest::qWait(10);  // the work, then a yield
            frontEnd().DoEvents();
            barSeen.push_back(WidgetOf<QProgressBar>(*fe, *this, "ProgressBar1")->value());
        }
        Hide();
    }
};

TEST_F(QtFrontEndTest, TheBusyWindowsTimerTicksAtYieldsAndMovesTheProgressBar) {
    BusyForm busy(fe, "frmBusy");
    busy.fe = &fe;
    busy.Show();
    EXPECT_GE(busy.ticks, 3);
    ASSERT_FALSE(busy.barSeen.empty());
    // 5 of 100 is 50 of the widget's 1000 steps.
    EXPECT_EQ(busy.barSeen.back(), static_cast<int>(busy.Get<forms::ProgressBar>("ProgressBar1").Value() * 10));
    EXPECT_GT(busy.barSeen.back(), 0);
    EXPECT_TRUE(busy.Loaded());  // hidden, not unloaded
    EXPECT_FALSE(busy.Visible());
    EXPECT_EQ(fe.Dialog(busy), nullptr);
}

TEST_F(QtFrontEndTest, MessageBoxesShowTheTextAndAnswerTheButtonPressed) {
    forms_qt::QtDialogs dialogs("Brindle Plotsmith");
    QString text, title;
    auto press = [&](QMessageBox::StandardButton which) {
        QTimer::singleShot(0, [&, which] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            text = box->text();
            title = box->windowTitle();
            box->button(which)->click();
        });
    };
    press(QMessageBox::Cancel);
    EXPECT_EQ(dialogs.MsgBox("Delete the chart?\r\nIt can't be undone.", forms::vbOKCancel | forms::vbQuestion, ""),
              forms::vbCancel);
    EXPECT_EQ(text, "Delete the chart?\nIt can't be undone.");
    EXPECT_EQ(title, "Brindle Plotsmith");
    press(QMessageBox::Yes);
    EXPECT_EQ(dialogs.MsgBox("Go on?", forms::vbYesNo, "Host Brindle Plotsmith"), forms::vbYes);
    EXPECT_EQ(title, "Host Brindle Plotsmith");
    press(QMessageBox::Ok);
    EXPECT_EQ(dialogs.MsgBox("Done", forms::vbOKOnly, ""), forms::vbOK);

    // Help shows the topic's page beside the page, and a help file that isn't there is a message.
    auto dir = testsupport::ScratchDir("qt-help");
    std::ofstream(dir / "index.html") << "<html><head><title>Contents</title></head></html>";
    std::ofstream(dir / "topic8.html") << "<html><head><title>Chart Location</title></head></html>";
    dialogs.Help(0, (dir / "index.html").string(), forms::HH_HELP_CONTEXT, 8);
    ASSERT_NE(dialogs.HelpWindow(), nullptr);
    EXPECT_EQ(dialogs.HelpWindow()->windowTitle(), "Chart Location");
    dialogs.Help(0, (dir / "index.html").string(), forms::HH_HELP_CONTEXT, 99);
    EXPECT_EQ(dialogs.HelpWindow()->windowTitle(), "Contents") << "a topic without its page opens the contents";
    press(QMessageBox::Ok);
    dialogs.Help(0, (dir / "missing.html").string(), forms::HH_HELP_CONTEXT, 8);
    EXPECT_EQ(text.toStdString(), "The help file \"" + (dir / "missing.html").string() + "\" could not be found.");
}

}  // namespace
