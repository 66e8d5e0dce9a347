#pragma once
// The one QApplication of the test program, made on first use.
#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace qttest {

inline QApplication& App() {
    static int argc = 1;
    static char arg0[] = "test_forms_qt";
    static char* argv[] = {arg0, nullptr};
    // Never destroyed: at exit Qt's own statics would go first and take it down with them.
    static auto* app = new QApplication(argc, argv);
    return *app;
}

// A check box or option button takes a click on its box or caption only, at its left end.
inline void ClickBox(QWidget* w) { QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(6, w->height() / 2)); }

// A dialog left open by a failed expectation would block the test program: after a generous
// while, whatever is modal is closed and the test fails. Lives as long as the test.
class Watchdog {
public:
    Watchdog() {
        timer_.setSingleShot(true);
        QObject::connect(&timer_, &QTimer::timeout, [] {
            ADD_FAILURE() << "a dialog stayed open";
            while (auto* w = QApplication::activeModalWidget()) {
                if (auto* d = qobject_cast<QDialog*>(w)) d->done(0);
                else w->close();
                QCoreApplication::processEvents();
            }
        });
        timer_.start(60000);
    }

private:
    QTimer timer_;
};

}  // namespace qttest
