// The wizard as a person sees it, on a real X server (run under xvfb-run with a 1024 x 768 screen):
// every page of every chart type is reached by clicking and typing, and each is checked from its
// widgets: whole on the screen, every control inside its window and its frame, none over another,
// every caption readable in full. A screenshot of each page is saved beside the test's workbook.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStyleOptionGroupBox>
#include <QTableWidget>
#include <QTextBrowser>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "common/clock.h"
#include "controller/plotsmith_controller.h"
#include "forms/form.h"
#include "forms/headless.h"
#include "forms_qt/qt_frontend.h"
#include "host/chart.h"
#include "host/workbook.h"
#include "qt_app.h"
#include "test_support.h"
#include "xlsx/engine.h"

namespace ts = testsupport;

namespace {

QString Plain(QString s) { return s.remove(QLatin1Char('&')); }

std::string Bytes(const ts::fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// Message boxes are collected (a test can't press them); help goes to the real help window.
class Dialogs : public forms::CollectingDialogs {
public:
    void Help(long hWnd, const std::string& file, long command, long topic) override {
        forms::CollectingDialogs::Help(hWnd, file, command, topic);
        qt.Help(hWnd, file, command, topic);
    }
    forms_qt::QtDialogs qt;
};

struct Windows {
    explicit Windows(const std::string& scratch = "wizard-windows") {
        EXPECT_EQ(QGuiApplication::platformName(), "xcb") << "these tests need a real X server (xvfb-run)";
        dir = ts::ScratchDir(scratch);
        ts::fs::copy_file(ts::fs::path(PLOTSMITH_SOURCE_DIR) / "examples/sales.xlsx", dir / "book.xlsx");
        book = app->Open((dir / "book.xlsx").string());
        // A source for the strategic bucket type: the bucket table "Sales targets" names its
        // buckets by Region and values them by Target, so a table needs those two columns.
        auto sheet = book->Worksheets()->Add(nullptr, book->Worksheets()->Item(book->Worksheets()->Count()));
        sheet->SetName("Data2");
        const char* rows[][3] = {{"Region", "Product", "Target"}, {"North", "Widgets", "120"}, {"South", "Gadgets", "80"},
                                 {"East", "Widgets", "95"}};
        for (long r = 0; r < 4; ++r)
            for (long c = 0; c < 3; ++c)
                sheet->Cells(r + 1, c + 1)->SetValue(r > 0 && c == 2 ? host::Variant(std::stod(rows[r][c])) : host::Variant(std::string(rows[r][c])));
    }

    QWidget* W(forms::Form& f, const std::string& name, int index = -1) { return fe.Widget(f, name, index); }
    void Click(forms::Form& f, const std::string& name, int index = -1) {
        QWidget* w = W(f, name, index);
        ASSERT_NE(w, nullptr) << name;
        if (qobject_cast<QRadioButton*>(w) || qobject_cast<QCheckBox*>(w)) qttest::ClickBox(w);
        else QTest::mouseClick(w, Qt::LeftButton);
    }
    void ClickRow(forms::Form& f, const std::string& grid, const QString& text, Qt::KeyboardModifiers keys = {}) {
        auto* t = qobject_cast<QTableWidget*>(W(f, grid));
        for (int r = 0; r < t->rowCount(); ++r)
            if (t->item(r, 0)->text() == text) {
                QTest::mouseClick(t->viewport(), Qt::LeftButton, keys, t->visualItemRect(t->item(r, 0)).center());
                return;
            }
        ADD_FAILURE() << "no row " << text.toStdString();
    }
    void Type(forms::Form& f, const std::string& name, const QString& text) {
        auto* line = qobject_cast<QLineEdit*>(W(f, name));
        // Focus moves by mouse only in the active window.
        EXPECT_TRUE(QTest::qWaitForWindowActive(fe.Dialog(f)));
        QTest::mouseClick(line, Qt::LeftButton);
        line->selectAll();
        QTest::keyClicks(line, text);
    }

    // The checks every page passes, then its screenshot.
    void ExpectWhole(forms::Form& f, const std::string& shot) {
        QDialog* d = fe.Dialog(f);
        ASSERT_NE(d, nullptr);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(d));
        QApplication::processEvents();
        const std::string page = shot + ": ";
        EXPECT_TRUE(d->screen()->geometry().contains(d->frameGeometry()))
            << page << "the window doesn't fit the screen: " << d->width() << " x " << d->height();
        struct Item {
            std::string name;
            QWidget* w;
            QRect r;  // in the window's coordinates
        };
        std::vector<Item> items;
        for (auto& c : f.Controls()) {
            QWidget* w = W(f, c->Name(), c->Index());
            if (!w || !w->isVisible()) continue;
            std::string name = page + c->Name() + (c->Index() >= 0 ? "(" + std::to_string(c->Index()) + ")" : "");
            QRect r(w->mapTo(d, QPoint(0, 0)), w->size());
            EXPECT_TRUE(d->rect().contains(r)) << name << " is outside its window";
            EXPECT_GE(r.width(), 8) << name;
            EXPECT_GE(r.height(), 8) << name;
            if (auto* box = c->Container()) {
                auto* frame = qobject_cast<QGroupBox*>(W(f, box->Name(), box->Index()));
                QStyleOptionGroupBox opt;
                opt.initFrom(frame);
                opt.text = frame->title();
                opt.subControls = QStyle::SC_GroupBoxLabel | QStyle::SC_GroupBoxFrame;
                QRect title = frame->style()->subControlRect(QStyle::CC_GroupBox, &opt, QStyle::SC_GroupBoxLabel, frame);
                QRect inFrame(w->mapTo(frame, QPoint(0, 0)), w->size());
                EXPECT_TRUE(frame->rect().contains(inFrame)) << name << " is outside its frame " << box->Name();
                EXPECT_FALSE(inFrame.intersects(title)) << name << " covers the caption of " << box->Name();
            }
            // Every caption whole, in the widget's own font.
            QFontMetrics fm(w->font());
            int room = w->width();
            QString text;
            if (auto* b = qobject_cast<QAbstractButton*>(w)) {
                text = Plain(b->text());
                if (!qobject_cast<QPushButton*>(w))
                    room -= w->style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                            w->style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
                else
                    room -= 4;
            } else if (auto* l = qobject_cast<QLabel*>(w)) {
                text = l->text();
                room = l->contentsRect().width();
            } else if (auto* g = qobject_cast<QGroupBox*>(w)) {
                text = g->title();
                room -= 16;
            }
            if (!text.isEmpty()) EXPECT_LE(fm.horizontalAdvance(text), room) << name << " cuts its caption \"" << text.toStdString() << "\"";
            items.push_back({name, w, r});
        }
        for (size_t i = 0; i < items.size(); ++i)
            for (size_t j = i + 1; j < items.size(); ++j) {
                if (items[i].w->isAncestorOf(items[j].w) || items[j].w->isAncestorOf(items[i].w)) continue;
                EXPECT_FALSE(items[i].r.intersects(items[j].r)) << items[i].name << " and " << items[j].name << " overlap";
            }
        EXPECT_TRUE(d->grab().save(QString::fromStdString((dir / (shot + ".png")).string())));
        shots.push_back(shot);
    }

    // The frame of the control that has the focus is marked: bold caption, the tool tip colour.
    void ExpectHighlight(forms::Form& f, const std::string& control, const std::string& frame) {
        auto* g = qobject_cast<QGroupBox*>(W(f, frame));
        QColor tip = QApplication::palette().color(QPalette::ToolTipBase);
        EXPECT_TRUE(W(f, control)->hasFocus()) << control;
        EXPECT_TRUE(g->font().bold()) << frame;
        // The style shades a frame's inside a little: near the colour is the colour.
        QColor inside = g->grab().toImage().pixelColor(g->width() - 5, g->height() - 5);
        EXPECT_LE(std::abs(inside.red() - tip.red()) + std::abs(inside.green() - tip.green()) + std::abs(inside.blue() - tip.blue()), 16)
            << frame << " is not highlighted: " << inside.name().toStdString();
        for (auto& other : f.Controls())
            if (other->kind() == forms::Kind::Frame && other->Name() != frame)
                EXPECT_FALSE(qobject_cast<QGroupBox*>(W(f, other->Name()))->font().bold()) << other->Name();
    }

    void Run() {
        entry.RunPlotsmith(app, "Test", (ts::fs::path(PLOTSMITH_SOURCE_DIR) / "help/index.html").string());
        for (auto& m : dialogs.messages) ADD_FAILURE() << "a message came up: " << m.text;
        dialogs.messages.clear();
    }

    QApplication& qapp = qttest::App();
    qttest::Watchdog watchdog;
    ts::fs::path dir;
    host::Ref<xlsx::EngineApplication> app = xlsx::NewApplication();
    host::Ref<host::Workbook> book;
    forms_qt::QtFrontEnd fe;
    Dialogs dialogs;
    ps::SystemClock clock;
    ps::CPlotsmithController entry{fe, dialogs, clock};
    std::vector<std::string> shots;
};

struct ChartType {
    int option;
    const char* name;
    const char* table;
};

TEST(WizardWindows, EveryPageOfEveryChartTypeIsWholeAndUsable) {
    Windows w;
    // Each new chart is drawn behind the busy window: look at it while it is up.
    w.app->SetMacro("VEXEvents.VEXChartRefreshStarted", [&](const std::vector<host::Variant>&) {
        forms::Form* top = w.fe.TopForm();
        EXPECT_TRUE(top && top->Name() == "frmBusyPS");
        if (top && top->Name() == "frmBusyPS") {
            EXPECT_EQ(w.fe.Dialog(*top)->windowTitle(), "Please Wait");
            if (std::find(w.shots.begin(), w.shots.end(), "busy") == w.shots.end()) w.ExpectWhole(*top, "busy");
        }
        return host::Variant();
    });
    const ChartType types[] = {{1, "column", "Quarterly sales"}, {0, "bar", "Quarterly sales"}, {2, "area", "Quarterly sales"},
                               {3, "pie", "Data1"}, {4, "bubble", "Quarterly sales"}, {5, "strategic bucket", "Data2"}};
    for (const ChartType& type : types) {
        SCOPED_TRACE(type.name);
        w.fe.onShown = [&](forms::Form& f) {
            if (f.Name() == "frmPSSelectAction") {
                w.ExpectWhole(f, "select-action");
                EXPECT_EQ(Plain(qobject_cast<QGroupBox*>(w.W(f, "Frame2"))->title()).toStdString(), "Charts in this Workbook");
                // The accelerator of New.
                QTest::keyClick(w.fe.Dialog(f), Qt::Key_N, Qt::AltModifier);
            } else if (f.Name() == "frmPSSelectTable") {
                // One table at a time: a second row with Ctrl takes the place of the first.
                w.ClickRow(f, "grdTables", "Sales targets");
                w.ClickRow(f, "grdTables", type.table, Qt::ControlModifier);
                EXPECT_EQ(qobject_cast<QTableWidget*>(w.W(f, "grdTables"))->selectionModel()->selectedRows().size(), 1);
                w.Click(f, "optType", type.option);
                EXPECT_TRUE(qobject_cast<QRadioButton*>(w.W(f, "optType", type.option))->isChecked());
                w.ExpectWhole(f, std::string("source-table-") + type.name);
                w.Click(f, "cmdNext");
            } else if (f.Name().rfind("frmPSLayout", 0) == 0) {
                EXPECT_TRUE(QTest::qWaitForWindowActive(w.fe.Dialog(f)));
                w.Type(f, "txtTitle", QString("My ") + type.name);
                w.ExpectHighlight(f, "txtTitle", "Frame1");
                w.ExpectWhole(f, std::string("layout-") + type.name);
                if (type.option == 5) {
                    auto* buckets = qobject_cast<QTableWidget*>(w.W(f, "grdBuckets"));
                    ASSERT_GT(buckets->rowCount(), 0);
                    EXPECT_TRUE(buckets->item(0, 1)->textAlignment() & Qt::AlignRight) << "bucket values stand right";
                }
                // Enter presses Next.
                QTest::keyClick(w.W(f, "txtTitle"), Qt::Key_Return);
            } else if (f.Name() == "frmPSChartLocation") {
                w.Type(f, "txtName", QString("Chart ") + type.name);
                // Tab goes on from the page's last input to the buttons, Help first.
                QTest::keyClick(w.W(f, "txtName"), Qt::Key_Tab);
                EXPECT_TRUE(w.W(f, "cmdHelp")->hasFocus()) << (QApplication::focusWidget() ? QApplication::focusWidget()->objectName().toStdString() : "none");
                w.ExpectWhole(f, std::string("chart-location-") + type.name);
                if (type.option == 1) {
                    w.Click(f, "cmdHelp");
                    ASSERT_NE(w.dialogs.qt.HelpWindow(), nullptr);
                    EXPECT_EQ(w.dialogs.qt.HelpWindow()->windowTitle(), "Plotsmith help - Chart Location");
                    w.dialogs.qt.HelpWindow()->close();
                }
                w.Click(f, "cmdFinish");
            } else {
                ADD_FAILURE() << "unexpected page " << f.Name();
                w.fe.Dialog(f)->close();
            }
        };
        w.Run();
    }
    EXPECT_EQ(w.dialogs.helps.size(), 1u);
    EXPECT_EQ(w.dialogs.helps.at(0).topic, 8);

    // The charts are in the saved workbook, each on the table clicked last.
    w.book->Save();
    auto exported = ts::Run(ts::Quote(PLOTSMITH_BINARY_DIR "/plotsmith") + " export " + ts::Quote((w.dir / "book.xlsx").string()));
    ASSERT_EQ(exported.status, 0) << exported.output;
    std::map<std::string, std::string> tables;
    std::regex chart("<chart [^>]*name=\"([^\"]*)\"[^>]* table-id=\"([^\"]*)\"");
    for (std::sregex_iterator m(exported.output.begin(), exported.output.end(), chart), end; m != end; ++m)
        tables[(*m)[1]] = (*m)[2];
    EXPECT_EQ(tables, (std::map<std::string, std::string>{{"Chart area", "VEX_TableRangeSales"}, {"Chart bar", "VEX_TableRangeSales"},
                                                          {"Chart bubble", "VEX_TableRangeSales"}, {"Chart column", "VEX_TableRangeSales"},
                                                          {"Chart pie", "Data1"}, {"Chart strategic bucket", "Data2"}}));
}

TEST(WizardWindows, ACancelledRunLeavesTheFileByteForByte) {
    Windows w("wizard-windows-cancel");
    w.fe.onShown = [&](forms::Form& f) {
        if (f.Name() == "frmPSSelectTable") {
            w.ClickRow(f, "grdTables", "Quarterly sales");
            w.Click(f, "optType", 1);
            w.Click(f, "cmdFinish");
        } else if (f.Name() != "frmBusyPS") {
            ADD_FAILURE() << "unexpected page " << f.Name();
        }
    };
    w.Run();
    w.book->Save();
    std::string before = Bytes(w.dir / "book.xlsx");

    // Modify, on to the last page, back, and Esc: as the command line does, saved only if changed.
    std::vector<std::string> pages;
    w.fe.onShown = [&](forms::Form& f) {
        pages.push_back(f.Name());
        EXPECT_TRUE(QTest::qWaitForWindowActive(w.fe.Dialog(f)));
        if (f.Name() == "frmPSSelectAction") {
            auto* grid = qobject_cast<QTableWidget*>(w.W(f, "grdCharts"));
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualItemRect(grid->item(0, 0)).center());
            QTest::keyClick(w.fe.Dialog(f), Qt::Key_M, Qt::AltModifier);
        } else if (f.Name() == "frmPSLayoutABC" && pages.size() == 2) {
            w.Type(f, "txtTitle", "Other");
            w.Click(f, "cmdNext");
        } else if (f.Name() == "frmPSChartLocation") {
            w.Click(f, "cmdBack");
        } else {
            QTest::keyClick(w.fe.Dialog(f), Qt::Key_Escape);
        }
    };
    w.Run();
    EXPECT_EQ(pages, (std::vector<std::string>{"frmPSSelectAction", "frmPSLayoutABC", "frmPSChartLocation", "frmPSLayoutABC"}));
    EXPECT_FALSE(w.app->Changed(w.book));
    if (w.app->Changed(w.book)) w.book->Save();
    EXPECT_EQ(Bytes(w.dir / "book.xlsx"), before);
}

}  // namespace
