#include "forms_qt/qt_frontend.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTextBrowser>
#include <QDir>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdio>
#include <set>

#include "forms/form.h"
#include "forms_qt/pictures.h"

namespace forms_qt {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// Line breaks are CR LF in the model and LF in the widgets.
QString ToWidgetText(const std::string& s) { return Q(s).replace(QLatin1String("\r\n"), QLatin1String("\n")); }
std::string FromWidgetText(const QString& s) {
    QString t = s;
    return t.replace(QLatin1String("\n"), QLatin1String("\r\n")).toStdString();
}

// A colour of the model: a system colour index (high bit set) or 0x00BBGGRR.
QColor ToColor(long v) {
    if (v & 0x80000000L) {
        QPalette pal = QApplication::palette();
        switch (v & 0xFF) {
            case 0x05: return pal.color(QPalette::Base);
            case 0x18: return pal.color(QPalette::ToolTipBase);
            default: return pal.color(QPalette::Button);
        }
    }
    return QColor(static_cast<int>(v & 0xFF), static_cast<int>((v >> 8) & 0xFF), static_cast<int>((v >> 16) & 0xFF));
}

constexpr double kPixelsPerPoint = 96.0 / 72.0;
int Px(double points) { return static_cast<int>(points * kPixelsPerPoint + 0.5); }

bool IsInput(forms::Kind k) {
    return k == forms::Kind::TextBox || k == forms::Kind::ComboBox || k == forms::Kind::ListBox || k == forms::Kind::Grid;
}

}  // namespace

// An image control: the sample drawing its picture names.
class Picture : public QWidget {
public:
    Picture(QString name, QWidget* parent) : QWidget(parent), name_(std::move(name)) {}
    void SetName(const QString& name) {
        if (name == name_) return;
        name_ = name;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        PaintPicture(p, rect(), name_);
    }

private:
    QString name_;
};

// ---------------------------------------------------------------- the window of one shown form

class FormWindow : public QDialog {
public:
    FormWindow(QtFrontEnd& fe, forms::Form& form, QWidget* parent) : QDialog(parent), fe_(fe), form_(form) {
        setWindowTitle(Q(form.Caption()));
        Build();
    }

    forms::Form& form() const { return form_; }
    bool open() const { return open_; }
    void End() {
        open_ = false;
        done(0);
    }

    QWidget* WidgetOf(const std::string& name, int index) const {
        for (auto& e : entries_)
            if (auto c = e.control.lock(); c && c->Index() == index && c->Name() == name) return e.widget;
        for (auto& e : entries_)  // names are case-insensitive in the model
            if (auto c = e.control.lock(); c && c->Index() == index && form_.Find(name, index) == c.get()) return e.widget;
        return nullptr;
    }

    // The model onto the widgets.
    void Sync();

protected:
    void keyPressEvent(QKeyEvent* e) override {
        if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
            Gesture([this] { form_.UserPressEnter(); });
        } else if (e->key() == Qt::Key_Escape) {
            Gesture([this] { form_.UserPressEscape(); });
        } else {
            QDialog::keyPressEvent(e);
        }
    }
    // The close box unloads the form, which ends the dialog through Closed.
    void closeEvent(QCloseEvent* e) override {
        e->ignore();
        if (open_ && form_.Visible()) Gesture([this] { form_.UserClose(); });
    }
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    struct Entry {
        std::weak_ptr<forms::Control> control;
        QWidget* widget = nullptr;
        QTimer* timer = nullptr;
        QColor applied;  // the back colour last put on the widget
    };

    void Build();
    QWidget* Make(forms::Control& c, QWidget* parent);
    void Connect(Entry& e);
    void SyncOne(Entry& e);
    // A user's gesture: the model acts (and its handlers run), then every shown form is redrawn.
    void Gesture(const std::function<void()>& act);
    void ReportError(const char* what);

    QtFrontEnd& fe_;
    forms::Form& form_;
    std::vector<Entry> entries_;
    bool open_ = true;
    bool syncing_ = false;
};

void FormWindow::ReportError(const char* what) {
    QMessageBox::critical(this, windowTitle(), QString::fromUtf8(what));
}

void FormWindow::Gesture(const std::function<void()>& act) {
    if (syncing_) return;
    try {
        act();
    } catch (const std::exception& ex) {
        ReportError(ex.what());
    }
    fe_.Refresh();
}

// Laid out by container: the form's frames stand in columns (Control::Column), its pictures share
// one place beside them, and its buttons stand in a row at the bottom right, or in a column at the
// right when the form says so. Inside a frame each control takes a row in the order made; a
// caption (a label or an option button) followed by an input shares the input's row, as does a
// label followed by the label that shows its value; the frame's pictures share one place at the
// right. The designed sizes of grids, lists, pictures and multi-line boxes are their least sizes.
void FormWindow::Build() {
    struct Box {
        QGridLayout* grid = nullptr;
        int row = 0;
        QWidget* pictures = nullptr;  // the first picture; the others share its place
    };
    auto* body = new QVBoxLayout(this);
    auto* content = new QHBoxLayout;
    body->addLayout(content, 1);
    std::map<int, QVBoxLayout*> columns;
    QGridLayout* pictures = nullptr;
    std::vector<std::pair<long, QWidget*>> buttons;
    std::map<const forms::Control*, Box> boxes;
    std::map<const forms::Control*, QWidget*> frames;

    auto column = [&](int n) {
        auto& col = columns[n];
        if (!col) col = new QVBoxLayout;
        return col;
    };
    auto isCaption = [](const forms::Control& c) {
        return c.kind() == forms::Kind::Label || c.kind() == forms::Kind::OptionButton;
    };
    const auto& controls = form_.Controls();
    // A caption shares a row with the control that follows it in its container, if that shows a
    // value: an input, or for a label another label.
    std::map<const forms::Control*, const forms::Control*> partner;
    std::set<const forms::Control*> partnered;
    for (size_t i = 0; i < controls.size(); ++i) {
        const forms::Control& c = *controls[i];
        if (!c.Container() || !isCaption(c) || partnered.count(&c)) continue;
        for (size_t j = i + 1; j < controls.size(); ++j) {
            const forms::Control& n = *controls[j];
            if (n.Container() != c.Container()) continue;
            bool value = IsInput(n.kind()) || (c.kind() == forms::Kind::Label && n.kind() == forms::Kind::Label);
            if (value && n.kind() != forms::Kind::Grid) {
                partner[&c] = &n;
                partnered.insert(&n);
            }
            break;
        }
    }

    for (auto& sp : controls) {
        forms::Control& c = *sp;
        Entry e;
        e.control = sp;
        if (c.kind() == forms::Kind::Timer) {
            e.timer = new QTimer(this);
            entries_.push_back(e);
            Connect(entries_.back());
            continue;
        }
        const forms::Control* box = c.Container();
        QWidget* parent = box && frames.count(box) ? frames[box] : this;
        e.widget = Make(c, parent);
        if (!box) {
            if (c.kind() == forms::Kind::CommandButton) {
                buttons.emplace_back(c.TabIndex, e.widget);
            } else if (c.kind() == forms::Kind::Image) {
                if (!pictures) pictures = new QGridLayout;
                pictures->addWidget(e.widget, 0, 0, Qt::AlignTop);
            } else {
                column(c.kind() == forms::Kind::Frame ? c.Column : 0)->addWidget(e.widget);
            }
        } else if (boxes.count(box)) {
            Box& b = boxes[box];
            if (c.kind() == forms::Kind::Image) {
                // Spans every row, made or to come.
                b.grid->addWidget(e.widget, 0, 2, -1, 1, Qt::AlignTop | Qt::AlignHCenter);
            } else if (partnered.count(&c)) {
                b.grid->addWidget(e.widget, b.row++, 1);
            } else if (partner.count(&c)) {
                b.grid->addWidget(e.widget, b.row, 0);
            } else {
                b.grid->addWidget(e.widget, b.row++, 0, 1, 2);
            }
        }
        if (c.kind() == forms::Kind::Frame) {
            frames[&c] = e.widget;
            boxes[&c].grid = new QGridLayout(e.widget);
            boxes[&c].grid->setColumnStretch(1, 1);
        }
        entries_.push_back(e);
        Connect(entries_.back());
    }

    for (auto& [n, col] : columns) {
        col->addStretch(1);
        content->addLayout(col, 1);
    }
    if (pictures) {
        auto* col = new QVBoxLayout;
        col->addLayout(pictures);
        col->addStretch(1);
        content->addLayout(col);
    }
    std::stable_sort(buttons.begin(), buttons.end(), [](auto& a, auto& b) { return a.first < b.first; });
    QBoxLayout* row = form_.ButtonsBeside ? static_cast<QBoxLayout*>(new QVBoxLayout) : new QHBoxLayout;
    if (!form_.ButtonsBeside) row->addStretch(1);
    for (auto& [tab, w] : buttons) row->addWidget(w);
    if (form_.ButtonsBeside) {
        row->addStretch(1);
        content->addLayout(row);
    } else if (!buttons.empty()) {
        body->addLayout(row);
    } else {
        delete row;
    }

    // Tab order as designed.
    std::vector<std::pair<long, QWidget*>> order;
    for (auto& e : entries_)
        if (auto c = e.control.lock(); c && e.widget && e.widget->focusPolicy() != Qt::NoFocus)
            order.emplace_back(c->TabIndex, e.widget);
    std::stable_sort(order.begin(), order.end(), [](auto& a, auto& b) { return a.first < b.first; });
    for (size_t i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1].second, order[i].second);
}

QWidget* FormWindow::Make(forms::Control& c, QWidget* parent) {
    QWidget* w = nullptr;
    switch (c.kind()) {
        case forms::Kind::TextBox:
            if (static_cast<forms::TextBox&>(c).MultiLine) {
                auto* t = new QPlainTextEdit(parent);
                t->setTabChangesFocus(true);
                if (c.Height > 0) t->setFixedHeight(Px(c.Height));
                w = t;
            } else {
                w = new QLineEdit(parent);
            }
            break;
        case forms::Kind::ComboBox: {
            auto* cb = new QComboBox(parent);
            cb->setEditable(static_cast<forms::ComboBox&>(c).Style == forms::ComboBox::vbComboDropdown);
            cb->setInsertPolicy(QComboBox::NoInsert);
            w = cb;
            break;
        }
        case forms::Kind::ListBox: {
            auto* l = new QListWidget(parent);
            switch (static_cast<forms::ListBox&>(c).MultiSelect) {
                case forms::ListBox::vbMultiSelectSimple: l->setSelectionMode(QAbstractItemView::MultiSelection); break;
                case forms::ListBox::vbMultiSelectExtended: l->setSelectionMode(QAbstractItemView::ExtendedSelection); break;
                default: l->setSelectionMode(QAbstractItemView::SingleSelection); break;
            }
            if (c.Height > 0) l->setFixedHeight(Px(c.Height));
            w = l;
            break;
        }
        case forms::Kind::CheckBox: {
            auto* cb = new QCheckBox(parent);
            cb->setTristate(true);
            w = cb;
            break;
        }
        case forms::Kind::OptionButton: {
            auto* r = new QRadioButton(parent);
            r->setAutoExclusive(false);  // the model clears the siblings
            w = r;
            break;
        }
        case forms::Kind::CommandButton: {
            auto* b = new QPushButton(parent);
            b->setAutoDefault(false);  // Enter is the model's: the default button, or a new line
            w = b;
            break;
        }
        case forms::Kind::Label: {
            w = new QLabel(parent);
            break;
        }
        case forms::Kind::Frame: w = new QGroupBox(parent); break;
        case forms::Kind::Image: {
            auto* pic = new Picture(QString::fromStdString(static_cast<forms::Image&>(c).Picture), parent);
            pic->setFixedSize(c.Width > 0 ? Px(c.Width) : 72, c.Height > 0 ? Px(c.Height) : 54);
            w = pic;
            break;
        }
        case forms::Kind::Grid: {
            auto* t = new QTableWidget(parent);
            t->setEditTriggers(QAbstractItemView::NoEditTriggers);
            t->setSelectionBehavior(QAbstractItemView::SelectRows);
            t->verticalHeader()->hide();
            t->horizontalHeader()->setStretchLastSection(true);
            t->setMinimumSize(Px(c.Width), Px(c.Height));
            w = t;
            break;
        }
        case forms::Kind::ProgressBar: {
            auto* p = new QProgressBar(parent);
            p->setRange(0, 1000);
            p->setMinimumWidth(Px(c.Width));
            p->setTextVisible(false);
            w = p;
            break;
        }
        case forms::Kind::Timer: break;
    }
    w->setObjectName(Q(c.Index() >= 0 ? c.Name() + "_" + std::to_string(c.Index()) : c.Name()));
    return w;
}

void FormWindow::Connect(Entry& e) {
    auto c = e.control.lock();
    const std::string name = c->Name();
    const int index = c->Index();
    if (e.timer) {
        std::weak_ptr<forms::Control> weak = e.control;
        QObject::connect(e.timer, &QTimer::timeout, this, [this, weak] {
            if (auto t = weak.lock()) Gesture([&] { static_cast<forms::Timer&>(*t).RaiseTick(); });
        });
        return;
    }
    QWidget* w = e.widget;
    switch (c->kind()) {
        case forms::Kind::TextBox:
            if (auto* t = qobject_cast<QPlainTextEdit*>(w)) {
                t->installEventFilter(this);  // Enter goes to the model
                QObject::connect(t, &QPlainTextEdit::textChanged, this, [this, t, name] {
                    Gesture([&] { form_.UserType(name, FromWidgetText(t->toPlainText())); });
                });
            } else {
                auto* l = static_cast<QLineEdit*>(w);
                QObject::connect(l, &QLineEdit::textEdited, this,
                                 [this, name](const QString& s) { Gesture([&] { form_.UserType(name, s.toStdString()); }); });
            }
            break;
        case forms::Kind::ComboBox: {
            auto* cb = static_cast<QComboBox*>(w);
            QObject::connect(cb, &QComboBox::activated, this,
                             [this, name](int i) { Gesture([&] { form_.UserSelect(name, i); }); });
            if (cb->lineEdit())
                QObject::connect(cb->lineEdit(), &QLineEdit::textEdited, this,
                                 [this, name](const QString& s) { Gesture([&] { form_.UserType(name, s.toStdString()); }); });
            break;
        }
        case forms::Kind::ListBox: {
            auto* l = static_cast<QListWidget*>(w);
            std::weak_ptr<forms::Control> weak = e.control;
            QObject::connect(l, &QListWidget::itemSelectionChanged, this, [this, l, weak, name] {
                auto sp = weak.lock();
                if (!sp || syncing_) return;
                auto& lb = static_cast<forms::ListBox&>(*sp);
                Gesture([&] {
                    if (lb.MultiSelect == forms::ListBox::vbMultiSelectNone) {
                        int row = l->currentRow();
                        if (row >= 0 && l->item(row)->isSelected() && row != lb.ListIndex()) form_.UserSelect(name, row);
                        return;
                    }
                    for (int i = 0; i < l->count() && i < lb.ListCount(); ++i)
                        if (l->item(i)->isSelected() != lb.Selected(i) && !form_.UserSetSelected(name, i, l->item(i)->isSelected()))
                            break;
                });
            });
            QObject::connect(l, &QListWidget::itemDoubleClicked, this,
                             [this, name, index](QListWidgetItem*) { Gesture([&] { form_.UserDblClick(name, index); }); });
            break;
        }
        case forms::Kind::CheckBox:
        case forms::Kind::OptionButton:
        case forms::Kind::CommandButton:
            QObject::connect(static_cast<QAbstractButton*>(w), &QAbstractButton::clicked, this,
                             [this, name, index] { Gesture([&] { form_.UserClick(name, index); }); });
            break;
        case forms::Kind::Grid: {
            auto* t = static_cast<QTableWidget*>(w);
            std::weak_ptr<forms::Control> weak = e.control;
            QObject::connect(t, &QTableWidget::itemSelectionChanged, this, [this, t, weak, name] {
                auto sp = weak.lock();
                if (!sp || syncing_) return;
                auto& g = static_cast<forms::Grid&>(*sp);
                std::set<long> shown, model;
                for (auto& r : t->selectionModel()->selectedRows()) shown.insert(r.row() + g.FixedRows);
                for (long r = g.FixedRows; r < g.Rows(); ++r)
                    if (g.IsSelected(r)) model.insert(r);
                if (shown == model) return;
                Gesture([&] {
                    if (shown.size() == 1) {
                        form_.UserSelect(name, *shown.begin());
                        return;
                    }
                    for (long r = g.FixedRows; r < g.Rows(); ++r)
                        if ((shown.count(r) > 0) != g.IsSelected(r) && !form_.UserSetSelected(name, r, shown.count(r) > 0)) break;
                });
            });
            QObject::connect(t, &QTableWidget::cellDoubleClicked, this,
                             [this, name, index](int, int) { Gesture([&] { form_.UserDblClick(name, index); }); });
            break;
        }
        default: break;
    }
    if (c->CanFocus() || IsInput(c->kind()) || c->kind() == forms::Kind::CheckBox ||
        c->kind() == forms::Kind::OptionButton || c->kind() == forms::Kind::CommandButton)
        w->installEventFilter(this);
}

bool FormWindow::eventFilter(QObject* o, QEvent* e) {
    auto* w = qobject_cast<QWidget*>(o);
    if (!w || syncing_) return QDialog::eventFilter(o, e);
    if (e->type() == QEvent::KeyPress && qobject_cast<QPlainTextEdit*>(w)) {
        auto* k = static_cast<QKeyEvent*>(e);
        if (k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter) {
            Gesture([this] { form_.UserPressEnter(); });
            return true;
        }
    }
    if (e->type() == QEvent::FocusIn) {
        auto reason = static_cast<QFocusEvent*>(e)->reason();
        bool clickable = qobject_cast<QAbstractButton*>(w) != nullptr;
        // A click on a button moves the focus itself, before its click event.
        if (!(clickable && reason == Qt::MouseFocusReason) && reason != Qt::ActiveWindowFocusReason &&
            reason != Qt::PopupFocusReason && reason != Qt::OtherFocusReason) {
            for (auto& en : entries_)
                if (en.widget == w)
                    if (auto c = en.control.lock()) {
                        std::string name = c->Name();
                        int index = c->Index();
                        Gesture([&] { form_.UserFocus(name, index); });
                    }
        }
    }
    return QDialog::eventFilter(o, e);
}

void FormWindow::Sync() {
    if (!open_ || !form_.Loaded()) return;
    forms::ScopedFlag busy(syncing_);
    if (windowTitle() != Q(form_.Caption())) setWindowTitle(Q(form_.Caption()));
    for (auto& e : entries_) SyncOne(e);
    // The focus follows the model's active control.
    if (auto* active = form_.ActiveControl())
        for (auto& e : entries_)
            if (e.widget && e.control.lock().get() == active && !e.widget->hasFocus() && e.widget->isVisible())
                e.widget->setFocus(Qt::OtherFocusReason);
}

void FormWindow::SyncOne(Entry& e) {
    auto sp = e.control.lock();
    if (!sp) return;
    forms::Control& c = *sp;
    if (e.timer) {
        auto& t = static_cast<forms::Timer&>(c);
        bool run = t.Enabled() && t.Interval > 0;
        if (t.Interval > 0 && e.timer->interval() != t.Interval) e.timer->setInterval(static_cast<int>(t.Interval));
        if (run && !e.timer->isActive()) e.timer->start();
        if (!run && e.timer->isActive()) e.timer->stop();
        return;
    }
    QWidget* w = e.widget;
    if (w->testAttribute(Qt::WA_Disabled) == c.Enabled()) w->setEnabled(c.Enabled());
    if (w->isHidden() == c.Visible()) w->setHidden(!c.Visible());

    QPalette::ColorRole role = IsInput(c.kind()) ? QPalette::Base : QPalette::Window;
    QColor color = ToColor(c.BackColor());
    if (c.kind() != forms::Kind::CommandButton && c.kind() != forms::Kind::ProgressBar && color != e.applied) {
        QPalette pal = w->palette();
        pal.setColor(role, color);
        w->setPalette(pal);
        if (role == QPalette::Window) w->setAutoFillBackground(true);
        e.applied = color;
    }
    if (c.HasFont() && w->font().bold() != c.FontBold()) {
        QFont f = w->font();
        f.setBold(c.FontBold());
        w->setFont(f);
    }

    switch (c.kind()) {
        case forms::Kind::TextBox: {
            auto& tb = static_cast<forms::TextBox&>(c);
            QString text = ToWidgetText(tb.Text());
            if (auto* t = qobject_cast<QPlainTextEdit*>(w)) {
                if (t->toPlainText() != text) {
                    t->setPlainText(text);
                    t->moveCursor(QTextCursor::End);
                }
            } else {
                auto* l = static_cast<QLineEdit*>(w);
                l->setMaxLength(tb.MaxLength > 0 ? static_cast<int>(tb.MaxLength) : 32767);
                if (l->text() != text) l->setText(text);
            }
            break;
        }
        case forms::Kind::ComboBox: {
            auto& m = static_cast<forms::ComboBox&>(c);
            auto* cb = static_cast<QComboBox*>(w);
            bool same = cb->count() == m.ListCount();
            for (long i = 0; same && i < m.ListCount(); ++i) same = cb->itemText(static_cast<int>(i)) == Q(m.List(i));
            if (!same) {
                cb->clear();
                for (long i = 0; i < m.ListCount(); ++i) cb->addItem(Q(m.List(i)));
            }
            if (cb->currentIndex() != m.ListIndex()) cb->setCurrentIndex(static_cast<int>(m.ListIndex()));
            if (cb->isEditable() && cb->currentText() != Q(m.Text())) cb->setEditText(Q(m.Text()));
            break;
        }
        case forms::Kind::ListBox: {
            auto& m = static_cast<forms::ListBox&>(c);
            auto* l = static_cast<QListWidget*>(w);
            bool same = l->count() == m.ListCount();
            for (long i = 0; same && i < m.ListCount(); ++i) same = l->item(static_cast<int>(i))->text() == Q(m.List(i));
            if (!same) {
                l->clear();
                for (long i = 0; i < m.ListCount(); ++i) l->addItem(Q(m.List(i)));
            }
            for (long i = 0; i < m.ListCount(); ++i)
                if (l->item(static_cast<int>(i))->isSelected() != m.Selected(i)) l->item(static_cast<int>(i))->setSelected(m.Selected(i));
            if (m.ListIndex() >= 0 && l->currentRow() != m.ListIndex())
                l->setCurrentRow(static_cast<int>(m.ListIndex()), QItemSelectionModel::NoUpdate);
            break;
        }
        case forms::Kind::CheckBox: {
            auto* cb = static_cast<QCheckBox*>(w);
            cb->setText(Q(c.Caption()));
            long v = static_cast<forms::CheckBox&>(c).Value();
            cb->setCheckState(v == forms::CheckBox::vbChecked ? Qt::Checked
                              : v == forms::CheckBox::vbGrayed ? Qt::PartiallyChecked
                                                               : Qt::Unchecked);
            break;
        }
        case forms::Kind::OptionButton: {
            auto* r = static_cast<QRadioButton*>(w);
            r->setText(Q(c.Caption()));
            r->setChecked(static_cast<forms::OptionButton&>(c).Value());
            break;
        }
        case forms::Kind::CommandButton: {
            auto* b = static_cast<QPushButton*>(w);
            if (b->text() != Q(c.Caption())) b->setText(Q(c.Caption()));
            if (b->isDefault() != static_cast<forms::CommandButton&>(c).Default())
                b->setDefault(static_cast<forms::CommandButton&>(c).Default());
            break;
        }
        case forms::Kind::Label: {
            auto* l = static_cast<QLabel*>(w);
            if (l->text() != ToWidgetText(c.Caption())) l->setText(ToWidgetText(c.Caption()));
            break;
        }
        case forms::Kind::Frame: {
            auto* g = static_cast<QGroupBox*>(w);
            if (g->title() != Q(c.Caption())) g->setTitle(Q(c.Caption()));
            g->setFlat(c.Appearance() == 0);
            break;
        }
        case forms::Kind::Image: static_cast<Picture*>(w)->SetName(Q(static_cast<forms::Image&>(c).Picture)); break;
        case forms::Kind::Grid: {
            auto& g = static_cast<forms::Grid&>(c);
            auto* t = static_cast<QTableWidget*>(w);
            int rows = static_cast<int>(std::max(0L, g.Rows() - g.FixedRows));
            int cols = static_cast<int>(g.Cols());
            if (t->rowCount() != rows) t->setRowCount(rows);
            if (t->columnCount() != cols) t->setColumnCount(cols);
            auto mode = g.SelectionMode == forms::Grid::flexSelectionListBox ? QAbstractItemView::ExtendedSelection
                                                                             : QAbstractItemView::SingleSelection;
            if (t->selectionMode() != mode) t->setSelectionMode(mode);
            for (int col = 0; col < cols; ++col) {
                QString head = g.FixedRows > 0 ? Q(g.TextMatrix(0, col)) : QString();
                auto* h = t->horizontalHeaderItem(col);
                if (!h || h->text() != head) t->setHorizontalHeaderItem(col, new QTableWidgetItem(head));
                if (g.ColWidth(col) == 0) t->setColumnHidden(col, true);
                else if (t->isColumnHidden(col)) t->setColumnHidden(col, false);
                // The designed widths are shares of the grid's designed width.
                if (g.ColWidth(col) > 0 && g.ClientWidth() > 0 && col + 1 < cols) {
                    int width = static_cast<int>(g.ColWidth(col) / g.ClientWidth() * t->viewport()->width());
                    if (t->columnWidth(col) != width) t->setColumnWidth(col, width);
                }
            }
            t->horizontalHeader()->setVisible(g.FixedRows > 0);
            for (int r = 0; r < rows; ++r)
                for (int col = 0; col < cols; ++col) {
                    QString text = Q(g.TextMatrix(r + g.FixedRows, col));
                    auto* item = t->item(r, col);
                    if (!item) t->setItem(r, col, item = new QTableWidgetItem(text));
                    else if (item->text() != text) item->setText(text);
                    Qt::Alignment align = Qt::AlignVCenter;
                    switch (g.ColAlignment(col)) {
                        case forms::Grid::flexAlignRightCenter: align |= Qt::AlignRight; break;
                        case forms::Grid::flexAlignCenterCenter: align |= Qt::AlignHCenter; break;
                        default: align |= Qt::AlignLeft; break;
                    }
                    if (item->textAlignment() != static_cast<int>(align)) item->setTextAlignment(align);
                }
            for (int r = 0; r < rows; ++r) {
                bool sel = g.IsSelected(r + g.FixedRows);
                for (int col = 0; col < cols; ++col)
                    if (auto* item = t->item(r, col); item && item->isSelected() != sel) item->setSelected(sel);
            }
            break;
        }
        case forms::Kind::ProgressBar: {
            auto& p = static_cast<forms::ProgressBar&>(c);
            double span = p.Max - p.Min;
            int v = span > 0 ? static_cast<int>((p.Value() - p.Min) / span * 1000 + 0.5) : 0;
            auto* bar = static_cast<QProgressBar*>(w);
            if (bar->value() != v) bar->setValue(v);
            break;
        }
        case forms::Kind::Timer: break;
    }
}

// ---------------------------------------------------------------- front end

QtFrontEnd::QtFrontEnd() = default;
QtFrontEnd::~QtFrontEnd() {
    if (pointer_ == forms::vbHourglass) QApplication::restoreOverrideCursor();
}

void QtFrontEnd::ShowModal(forms::Form& form) {
    FormWindow* below = nullptr;
    for (auto it = stack_.rbegin(); it != stack_.rend() && !below; ++it)
        if ((*it)->open()) below = *it;
    if (below && below->form().Visible()) below->form().RaiseDeactivate();

    auto window = std::make_unique<FormWindow>(*this, form, below);
    FormWindow* win = window.get();
    stack_.push_back(win);
    struct Pop {
        std::vector<FormWindow*>& stack;
        FormWindow* win;
        ~Pop() { stack.erase(std::find(stack.begin(), stack.end(), win)); }
    } pop{stack_, win};

    form.SetShown(true);
    win->Sync();
    win->adjustSize();
    win->setWindowModality(Qt::ApplicationModal);
    win->show();
    win->raise();
    win->activateWindow();
    // The activate event may do all the form is for and hide it (the busy window does).
    form.RaiseActivate();
    Refresh();
    if (win->open() && form.Visible()) {
        if (onShown) {
            QTimer::singleShot(0, win, [this, win] {
                if (!win->open() || !win->form().Visible()) return;
                onShown(win->form());
                Refresh();
            });
        }
        win->exec();
    }
    if (form.Visible() && win->open()) form.UserClose();
    if (form.Visible() && win->open()) form.Hide();
    if (win->open()) win->End();
    if (below && below->open() && below->form().Visible()) below->form().RaiseActivate();
    Refresh();
}

void QtFrontEnd::Closed(forms::Form& form) {
    for (auto it = stack_.rbegin(); it != stack_.rend(); ++it)
        if (&(*it)->form() == &form && (*it)->open()) {
            (*it)->End();
            return;
        }
}

void QtFrontEnd::DoEvents() {
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    Refresh();
}

void QtFrontEnd::SetMousePointer(long pointer) {
    if (pointer == pointer_) return;
    if (pointer_ == forms::vbHourglass) QApplication::restoreOverrideCursor();
    if (pointer == forms::vbHourglass) QApplication::setOverrideCursor(Qt::WaitCursor);
    pointer_ = pointer;
}

long QtFrontEnd::WindowHandle(const forms::Form& form) const {
    QDialog* d = Dialog(form);
    return d ? static_cast<long>(d->winId()) : 0;
}

QDialog* QtFrontEnd::Dialog(const forms::Form& form) const {
    for (auto it = stack_.rbegin(); it != stack_.rend(); ++it)
        if (&(*it)->form() == &form && (*it)->open()) return *it;
    return nullptr;
}

forms::Form* QtFrontEnd::TopForm() const {
    for (auto it = stack_.rbegin(); it != stack_.rend(); ++it)
        if ((*it)->open()) return &(*it)->form();
    return nullptr;
}

QWidget* QtFrontEnd::Widget(const forms::Form& form, const std::string& control, int index) const {
    for (auto it = stack_.rbegin(); it != stack_.rend(); ++it)
        if (&(*it)->form() == &form && (*it)->open()) return (*it)->WidgetOf(control, index);
    return nullptr;
}

void QtFrontEnd::Refresh() {
    std::vector<FormWindow*> shown = stack_;
    for (FormWindow* w : shown)
        if (std::find(stack_.begin(), stack_.end(), w) != stack_.end()) w->Sync();
}

// ---------------------------------------------------------------- dialogs

long QtDialogs::MsgBox(const std::string& text, long style, const std::string& title) {
    QMessageBox box(QApplication::activeModalWidget());
    box.setWindowTitle(Q(title.empty() ? defaultTitle_ : title));
    box.setText(ToWidgetText(text));
    switch (style & 0x70) {
        case forms::vbCritical: box.setIcon(QMessageBox::Critical); break;
        case forms::vbQuestion: box.setIcon(QMessageBox::Question); break;
        case forms::vbExclamation: box.setIcon(QMessageBox::Warning); break;
        case forms::vbInformation: box.setIcon(QMessageBox::Information); break;
        default: break;
    }
    using SB = QMessageBox::StandardButton;
    std::vector<std::pair<SB, long>> buttons;
    switch (style & 7) {
        case forms::vbOKCancel: buttons = {{SB::Ok, forms::vbOK}, {SB::Cancel, forms::vbCancel}}; break;
        case forms::vbAbortRetryIgnore:
            buttons = {{SB::Abort, forms::vbAbort}, {SB::Retry, forms::vbRetry}, {SB::Ignore, forms::vbIgnore}};
            break;
        case forms::vbYesNoCancel:
            buttons = {{SB::Yes, forms::vbYes}, {SB::No, forms::vbNo}, {SB::Cancel, forms::vbCancel}};
            break;
        case forms::vbYesNo: buttons = {{SB::Yes, forms::vbYes}, {SB::No, forms::vbNo}}; break;
        case forms::vbRetryCancel: buttons = {{SB::Retry, forms::vbRetry}, {SB::Cancel, forms::vbCancel}}; break;
        default: buttons = {{SB::Ok, forms::vbOK}}; break;
    }
    for (auto& [b, answer] : buttons) box.addButton(b);
    // The second and third default buttons are 256 and 512, as the run-time numbers them.
    size_t def = static_cast<size_t>((style >> 8) & 3);
    if (def < buttons.size()) box.setDefaultButton(buttons[def].first);
    box.exec();
    auto* clicked = box.clickedButton();
    for (auto& [b, answer] : buttons)
        if (clicked == box.button(b)) return answer;
    // Closed without a button: as the run-time, Cancel when there is one, else the only button.
    for (auto& [b, answer] : buttons)
        if (answer == forms::vbCancel) return answer;
    return buttons.front().second;
}

void QtDialogs::Help(long, const std::string& helpFile, long, long topic) {
    QFileInfo file(Q(helpFile));
    if (helpFile.empty() || !file.isFile()) {
        MsgBox("The help file \"" + helpFile + "\" could not be found.", forms::vbExclamation, "");
        return;
    }
    // One page per topic beside the contents page; a topic without its page opens the contents.
    QString page = file.dir().filePath(QStringLiteral("topic%1.html").arg(topic));
    if (!QFileInfo(page).isFile()) page = file.absoluteFilePath();
    // A child of the page that asked, so that it takes input while the page is up, and goes with it.
    QWidget* owner = QApplication::activeModalWidget();
    if (!help_ || help_->parentWidget() != owner) {
        delete help_;
        help_ = new QDialog(owner, Qt::Window);
        help_->setAttribute(Qt::WA_DeleteOnClose);
        help_->resize(560, 480);
        auto* layout = new QVBoxLayout(help_);
        auto* browser = new QTextBrowser(help_);
        browser->setObjectName(QStringLiteral("helpBrowser"));
        browser->setOpenExternalLinks(true);
        layout->addWidget(browser);
        QObject::connect(browser, &QTextBrowser::sourceChanged, help_,
                         [this, browser] { help_->setWindowTitle(browser->documentTitle()); });
    }
    auto* browser = help_->findChild<QTextBrowser*>(QStringLiteral("helpBrowser"));
    browser->setSource(QUrl::fromLocalFile(page));
    help_->setWindowTitle(browser->documentTitle());
    help_->show();
    help_->raise();
    help_->activateWindow();
}

}  // namespace forms_qt
