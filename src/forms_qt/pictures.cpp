#include "forms_qt/pictures.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QRect>
#include <array>
#include <vector>

namespace forms_qt {

namespace {

const std::array<QColor, 4> kColors{QColor(0x44, 0x72, 0xC4), QColor(0xED, 0x7D, 0x31), QColor(0xA5, 0xA5, 0xA5),
                                    QColor(0xFF, 0xC0, 0x00)};

// What a name asks for, read off its parts: the kind, then "3D", then the variant.
struct Sample {
    QString kind;     // Bar, Column, Area, Pie, Bubble, StrBuck, Legend
    bool threeD = false;
    QString variant;  // Basic, Cluster, Stack, Stack100, Explode, Quad, Dim, or empty
};

Sample Read(QString name) {
    Sample s;
    if (name.startsWith(QLatin1String("img"))) name = name.mid(3);
    for (const char* kind : {"Column", "Bar", "Area", "Pie", "Bubble", "StrBuck", "Legend"})
        if (name.startsWith(QLatin1String(kind))) {
            s.kind = QLatin1String(kind);
            name = name.mid(s.kind.size());
            break;
        }
    if (name.startsWith(QLatin1String("3D"))) {
        s.threeD = true;
        name = name.mid(2);
    }
    s.variant = name;
    return s;
}

QColor Side(const QColor& c) { return c.darker(140); }

// A bar from the base line, with a side and a top in 3-D.
void Block(QPainter& p, const QRectF& r, const QColor& c, bool threeD, bool horizontal) {
    if (threeD) {
        double d = std::min(6.0, std::max(2.0, (horizontal ? r.height() : r.width()) * 0.35));
        QPolygonF top{r.topLeft(), r.topLeft() + QPointF(d, -d), r.topRight() + QPointF(d, -d), r.topRight()};
        QPolygonF side{r.topRight(), r.topRight() + QPointF(d, -d), r.bottomRight() + QPointF(d, -d), r.bottomRight()};
        p.setBrush(c.lighter(125));
        p.drawPolygon(top);
        p.setBrush(Side(c));
        p.drawPolygon(side);
    }
    p.setBrush(c);
    p.drawRect(r);
}

// Columns or bars: the values of up to three colours per category, side by side or stacked.
void Bars(QPainter& p, const QRectF& plot, const Sample& s, bool horizontal) {
    const std::vector<std::vector<double>> data{{0.45, 0.30, 0.20}, {0.70, 0.25, 0.35}, {0.55, 0.40, 0.15}, {0.85, 0.20, 0.30}};
    int colours = s.variant == QLatin1String("Basic") || s.variant.isEmpty() ? 1 : 3;
    bool stacked = s.variant.startsWith(QLatin1String("Stack"));
    bool full = s.variant == QLatin1String("Stack100");
    double across = horizontal ? plot.height() : plot.width();
    double along = horizontal ? plot.width() : plot.height();
    double slot = across / static_cast<double>(data.size());
    for (size_t i = 0; i < data.size(); ++i) {
        double total = 0;
        for (int k = 0; k < colours; ++k) total += data[i][static_cast<size_t>(k)];
        double scale = full ? 1 / total : stacked ? 0.9 / 1.25 : 0.9;
        double base = 0;
        int side = stacked || colours == 1 ? 1 : colours;
        double width = slot * 0.7 / side;
        for (int k = 0; k < colours; ++k) {
            double v = data[i][static_cast<size_t>(k)] * scale * along;
            double offset = slot * i + slot * 0.15 + (stacked || colours == 1 ? 0 : k * width);
            QRectF r = horizontal ? QRectF(plot.left() + base, plot.top() + offset, v, width)
                                  : QRectF(plot.left() + offset, plot.bottom() - base - v, width, v);
            Block(p, r, kColors[static_cast<size_t>(k)], s.threeD, horizontal);
            if (stacked) base += v;
        }
    }
}

void Areas(QPainter& p, const QRectF& plot, const Sample& s) {
    const std::vector<std::vector<double>> data{{0.30, 0.50, 0.40, 0.65, 0.55}, {0.20, 0.15, 0.30, 0.20, 0.25},
                                                {0.15, 0.20, 0.10, 0.15, 0.20}};
    int colours = s.variant == QLatin1String("Basic") || s.variant.isEmpty() ? 1 : 3;
    bool stacked = s.variant.startsWith(QLatin1String("Stack"));
    bool full = s.variant == QLatin1String("Stack100");
    size_t n = data[0].size();
    std::vector<double> base(n, 0.0);
    // Side by side in an area chart means one behind the other: the largest at the back.
    for (int k = 0; k < colours; ++k) {
        QPolygonF poly;
        std::vector<double> top(n);
        for (size_t i = 0; i < n; ++i) {
            double total = 0;
            for (int j = 0; j < colours; ++j) total += data[static_cast<size_t>(j)][i];
            double v = data[static_cast<size_t>(k)][i] * (full ? 1 / total : stacked ? 0.9 / 1.0 : 0.9);
            top[i] = (stacked ? base[i] : 0) + v;
        }
        double d = s.threeD ? 4.0 * (colours - k) : 0;
        for (size_t i = 0; i < n; ++i)
            poly << QPointF(plot.left() + d + plot.width() * 0.9 * i / (n - 1), plot.bottom() - d - top[i] * plot.height() * 0.9);
        for (size_t i = n; i-- > 0;)
            poly << QPointF(plot.left() + d + plot.width() * 0.9 * i / (n - 1),
                            plot.bottom() - d - (stacked ? base[i] : 0) * plot.height() * 0.9);
        p.setBrush(kColors[static_cast<size_t>(k)]);
        p.drawPolygon(poly);
        if (stacked) base = top;
    }
}

void Pie(QPainter& p, const QRectF& area, const Sample& s) {
    const double shares[] = {0.38, 0.27, 0.2, 0.15};
    double size = std::min(area.width(), area.height() * (s.threeD ? 1.4 : 1.0)) * 0.8;
    QRectF disc(0, 0, size, s.threeD ? size * 0.55 : size);
    disc.moveCenter(area.center());
    bool exploded = s.variant == QLatin1String("Explode");
    double depth = s.threeD ? size * 0.12 : 0;
    for (int layer = depth > 0 ? 0 : 1; layer < 2; ++layer) {
        int start = 90 * 16;
        for (size_t i = 0; i < 4; ++i) {
            int span = static_cast<int>(-shares[i] * 360 * 16);
            QRectF r = disc;
            if (exploded) {
                double mid = (start + span / 2.0) / 16.0 * M_PI / 180.0;
                r.translate(std::cos(mid) * size * 0.06, -std::sin(mid) * size * 0.06 * (s.threeD ? 0.55 : 1));
            }
            if (layer == 0) {
                // The rim below the top face.
                p.setBrush(Side(kColors[i]));
                for (double y = depth; y > 0; y -= 1) p.drawPie(r.translated(0, y), start, span);
            } else {
                p.setBrush(kColors[i]);
                p.drawPie(r, start, span);
            }
            start += span;
        }
    }
}

void Bubbles(QPainter& p, const QRectF& plot, const Sample& s) {
    struct B { double x, y, r; size_t colour; };
    const B bubbles[] = {{0.2, 0.3, 0.10, 0}, {0.45, 0.65, 0.16, 1}, {0.75, 0.4, 0.12, 2}, {0.65, 0.8, 0.07, 3}, {0.3, 0.75, 0.06, 0}};
    if (s.variant == QLatin1String("Quad")) {
        QPen dashed(Qt::darkGray, 1, Qt::DashLine);
        p.setPen(dashed);
        p.drawLine(QPointF(plot.center().x(), plot.top()), QPointF(plot.center().x(), plot.bottom()));
        p.drawLine(QPointF(plot.left(), plot.center().y()), QPointF(plot.right(), plot.center().y()));
        p.setPen(QPen(Qt::black, 0.5));
    }
    double unit = std::min(plot.width(), plot.height());
    for (const B& b : bubbles) {
        QPointF centre(plot.left() + b.x * plot.width(), plot.bottom() - b.y * plot.height());
        double r = b.r * unit;
        if (s.threeD) {
            QRadialGradient g(centre - QPointF(r / 3, r / 3), r * 1.3);
            g.setColorAt(0, kColors[b.colour].lighter(170));
            g.setColorAt(1, Side(kColors[b.colour]));
            p.setBrush(g);
        } else {
            p.setBrush(kColors[b.colour]);
        }
        p.drawEllipse(centre, r, r);
    }
}

// Blocks of varying widths, grouped into buckets that a thin gap parts.
void Buckets(QPainter& p, const QRectF& plot) {
    const std::vector<std::vector<std::pair<double, double>>> buckets{{{0.3, 0.8}, {0.15, 0.6}}, {{0.2, 0.55}, {0.1, 0.4}, {0.1, 0.3}},
                                                                      {{0.15, 0.25}}};
    double x = plot.left();
    size_t colour = 0;
    double unit = plot.width() * 0.9 / 1.1;
    for (auto& bucket : buckets) {
        for (auto& [w, h] : bucket) {
            QRectF r(x, plot.bottom() - h * plot.height() * 0.9, w * unit, h * plot.height() * 0.9);
            p.setBrush(kColors[colour++ % kColors.size()]);
            p.drawRect(r);
            x += w * unit;
        }
        x += plot.width() * 0.04;
    }
}

void Legend(QPainter& p, const QRectF& area, bool dim) {
    QRectF box = area.adjusted(area.width() * 0.15, area.height() * 0.1, -area.width() * 0.15, -area.height() * 0.1);
    p.setBrush(Qt::white);
    p.setPen(QPen(dim ? QColor(0xC0, 0xC0, 0xC0) : Qt::darkGray, 1));
    p.drawRect(box);
    double row = box.height() / 3;
    for (int i = 0; i < 3; ++i) {
        double y = box.top() + row * i + row / 2;
        double key = std::min(row * 0.5, 10.0);
        QColor c = dim ? QColor(0xD8, 0xD8, 0xD8) : kColors[static_cast<size_t>(i)];
        p.setPen(Qt::NoPen);
        p.setBrush(c);
        p.drawRect(QRectF(box.left() + 6, y - key / 2, key, key));
        p.setBrush(dim ? QColor(0xE0, 0xE0, 0xE0) : QColor(0x80, 0x80, 0x80));
        p.drawRect(QRectF(box.left() + 12 + key, y - 1.5, box.width() * (0.5 - 0.1 * i), 3));
    }
}

}  // namespace

void PaintPicture(QPainter& p, const QRect& rect, const QString& name) {
    Sample s = Read(name);
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    QRectF area = QRectF(rect).adjusted(1, 1, -1, -1);
    if (s.kind == QLatin1String("Legend")) {
        Legend(p, area, s.variant == QLatin1String("Dim"));
        p.restore();
        return;
    }
    p.setPen(QPen(QColor(0xA0, 0xA0, 0xA0), 1));
    p.setBrush(Qt::white);
    p.drawRect(area);
    QRectF plot = area.adjusted(area.width() * 0.12, area.height() * 0.12, -area.width() * 0.1, -area.height() * 0.12);
    p.setPen(QPen(Qt::black, 0.5));
    if (s.kind == QLatin1String("Pie")) {
        Pie(p, area, s);
    } else if (!s.kind.isEmpty()) {
        if (s.kind == QLatin1String("Column")) Bars(p, plot, s, false);
        else if (s.kind == QLatin1String("Bar")) Bars(p, plot, s, true);
        else if (s.kind == QLatin1String("Area")) Areas(p, plot, s);
        else if (s.kind == QLatin1String("Bubble")) Bubbles(p, plot, s);
        else Buckets(p, plot);
        p.setPen(QPen(Qt::black, 1));
        p.drawLine(plot.bottomLeft(), plot.topLeft());
        p.drawLine(plot.bottomLeft(), plot.bottomRight());
    }
    p.restore();
}

}  // namespace forms_qt
