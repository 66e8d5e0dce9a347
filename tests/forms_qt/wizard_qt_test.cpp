// The real wizard in Qt windows, as plotsmith wizard runs it: a user picks a table and a type,
// takes the layout as it comes, names the chart and finishes; the chart is in the saved workbook.
#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include "common/clock.h"
#include "controller/plotsmith_controller.h"
#include "forms/form.h"
#include "forms/headless.h"
#include "forms_qt/qt_frontend.h"
#include "host/chart.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "qt_app.h"
#include "test_support.h"
#include "xlsx/engine.h"

namespace ts = testsupport;

namespace {

using qttest::ClickBox;

struct QtWizard {
    QtWizard() {
        dir = ts::ScratchDir("wizard-qt");
        ts::fs::copy_file(ts::fs::path(PLOTSMITH_SOURCE_DIR) / "examples/sales.xlsx", dir / "book.xlsx");
        book = app->Open((dir / "book.xlsx").string());
    }
    void Run() { entry.RunPlotsmith(app, "Test", {}); }
    QPushButton* Button(forms::Form& f, const std::string& name) {
        return qobject_cast<QPushButton*>(fe.Widget(f, name));
    }

    QApplication& qapp = qttest::App();
    qttest::Watchdog watchdog;
    ts::fs::path dir;
    host::Ref<xlsx::EngineApplication> app = xlsx::NewApplication();
    host::Ref<host::Workbook> book;
    forms_qt::QtFrontEnd fe;
    forms::CollectingDialogs dialogs;
    ps::SystemClock clock;
    ps::CPlotsmithController entry{fe, dialogs, clock};
    std::vector<std::string> shown;
};

TEST(QtWizard, ANewChartMadeInTheWindowsIsInTheSavedWorkbook) {
    QtWizard w;
    w.fe.onShown = [&](forms::Form& f) {
        w.shown.push_back(f.Caption());
        if (f.Name() == "frmPSSelectTable") {
            auto* grid = qobject_cast<QTableWidget*>(w.fe.Widget(f, "grdTables"));
            ASSERT_NE(grid, nullptr);
            // Nothing chosen yet: the types can't be pressed.
            auto* column = qobject_cast<QRadioButton*>(w.fe.Widget(f, "optType", 1));
            EXPECT_EQ(column->text(), "Column");
            EXPECT_FALSE(column->isEnabled());
            EXPECT_FALSE(w.Button(f, "cmdBack")->isEnabled());  // no charts: nothing to go back to
            for (int r = 0; r < grid->rowCount(); ++r)
                if (grid->item(r, 0)->text() == "Quarterly sales") grid->selectRow(r);
            EXPECT_TRUE(column->isEnabled());
            ClickBox(column);
            EXPECT_TRUE(column->isChecked());
            QTest::mouseClick(w.Button(f, "cmdNext"), Qt::LeftButton);
        } else if (f.Name() == "frmPSLayoutABC") {
            EXPECT_EQ(w.fe.Dialog(f)->windowTitle(), "Brindle Plotsmith - Chart Layout");
            auto* title = qobject_cast<QLineEdit*>(w.fe.Widget(f, "txtTitle"));
            QTest::keyClicks(title, "Revenue");
            // Enter in the comment makes a new line; anywhere else it presses Next.
            auto* comment = qobject_cast<QPlainTextEdit*>(w.fe.Widget(f, "txtComment"));
            ASSERT_NE(comment, nullptr);
            // Focus moves by mouse only in the active window.
            EXPECT_TRUE(QTest::qWaitForWindowActive(w.fe.Dialog(f)));
            QTest::mouseClick(comment->viewport(), Qt::LeftButton);
            QTest::keyClicks(comment, "first");
            QTest::keyClick(comment, Qt::Key_Return);
            QTest::keyClicks(comment, "second");
            EXPECT_EQ(f.Get<forms::TextBox>("txtComment").Text(), "first\r\nsecond");
            EXPECT_EQ(comment->toPlainText(), "first\nsecond");
            EXPECT_TRUE(f.Visible());
            QTest::mouseClick(title, Qt::LeftButton);
            QTest::keyClick(title, Qt::Key_Return);
        } else if (f.Name() == "frmPSChartLocation") {
            EXPECT_FALSE(w.Button(f, "cmdNext")->isEnabled());
            auto* name = qobject_cast<QLineEdit*>(w.fe.Widget(f, "txtName"));
            EXPECT_EQ(name->text(), "Revenue");  // the title is the proposal
            name->selectAll();
            QTest::keyClicks(name, "Revenue chart");
            QTest::mouseClick(w.Button(f, "cmdFinish"), Qt::LeftButton);
        } else {
            ADD_FAILURE() << "unexpected page " << f.Name();
            w.fe.Dialog(f)->close();
        }
    };
    w.Run();
    std::vector<std::string> pages{"Brindle Plotsmith - Source Table and Chart Type", "Brindle Plotsmith - Chart Layout",
                                   "Brindle Plotsmith - Chart Location"};
    EXPECT_EQ(w.shown, pages);
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts().front();
    w.book->Save();
    auto again = xlsx::NewApplication()->Open((w.dir / "book.xlsx").string());
    auto charts = again->Worksheets()->Item("Sales")->ChartObjects();
    ASSERT_EQ(charts->Count(), 1);
    EXPECT_EQ(charts->Item(1)->Chart()->ChartTitle()->Text(), "Revenue");
}

}  // namespace
