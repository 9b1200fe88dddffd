#include "pages/functionview/FormulaImages.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace kelmar {

namespace {

// A small typesetter: boxes with a width, a height above the baseline
// (ascent) and a depth below it, drawn at a point on their baseline.
struct Box {
    virtual ~Box() = default;
    double width = 0, ascent = 0, depth = 0;
    virtual void draw(QPainter& p, QPointF at) const = 0;
};
using BoxPtr = std::unique_ptr<Box>;

constexpr double kBaseSize = 17.0;  // pixels

QFont mathFont(double size, bool italic) {
    QFont f(QStringLiteral("DejaVu Serif"));
    f.setPixelSize(static_cast<int>(size + 0.5));
    f.setItalic(italic);
    return f;
}

struct Text : Box {
    QString text;
    QFont font;
    Text(QString t, double size, bool italic) : text(std::move(t)), font(mathFont(size, italic)) {
        const QFontMetricsF m(font);
        width = m.horizontalAdvance(text) + (italic ? size * 0.05 : 0.0);
        ascent = m.ascent() * 0.8;
        depth = m.descent() * 0.6;
    }
    void draw(QPainter& p, QPointF at) const override {
        p.setFont(font);
        p.drawText(at, text);
    }
};

struct Row : Box {
    std::vector<BoxPtr> items;
    explicit Row(std::vector<BoxPtr> parts) : items(std::move(parts)) {
        for (const BoxPtr& b : items) {
            width += b->width;
            ascent = std::max(ascent, b->ascent);
            depth = std::max(depth, b->depth);
        }
    }
    void draw(QPainter& p, QPointF at) const override {
        for (const BoxPtr& b : items) {
            b->draw(p, at);
            at.rx() += b->width;
        }
    }
};

// A raised (superscript) or lowered (subscript) box after a base.
struct Script : Box {
    BoxPtr base, script;
    double shift;  // positive raises
    Script(BoxPtr b, BoxPtr s, bool raise, double size) : base(std::move(b)), script(std::move(s)) {
        shift = raise ? std::max(size * 0.42, base->ascent - script->ascent * 0.45)
                      : -size * 0.22;
        width = base->width + script->width + size * 0.03;
        ascent = std::max(base->ascent, script->ascent + shift);
        depth = std::max(base->depth, script->depth - shift);
    }
    void draw(QPainter& p, QPointF at) const override {
        base->draw(p, at);
        script->draw(p, QPointF(at.x() + base->width + 1.0, at.y() - shift));
    }
};

struct Fraction : Box {
    BoxPtr num, den;
    double axis, gap, pad;
    Fraction(BoxPtr n, BoxPtr d, double size) : num(std::move(n)), den(std::move(d)) {
        axis = size * 0.3;
        gap = size * 0.18;
        pad = size * 0.2;
        width = std::max(num->width, den->width) + 2 * pad;
        ascent = axis + gap + num->depth + num->ascent;
        depth = -axis + gap + den->ascent + den->depth;
    }
    void draw(QPainter& p, QPointF at) const override {
        const double y = at.y() - axis;
        p.save();
        p.setPen(QPen(Qt::black, 1.1));
        p.drawLine(QPointF(at.x() + pad * 0.5, y), QPointF(at.x() + width - pad * 0.5, y));
        p.restore();
        num->draw(p, QPointF(at.x() + (width - num->width) / 2, y - gap - num->depth));
        den->draw(p, QPointF(at.x() + (width - den->width) / 2, y + gap + den->ascent));
    }
};

// Builders: upright text for numbers, signs and indices, italic for
// variables.
struct Builder {
    double size;
    BoxPtr t(const QString& s) const { return std::make_unique<Text>(s, size, false); }
    BoxPtr i(const QString& s) const { return std::make_unique<Text>(s, size, true); }
    template <class... B>
    BoxPtr row(B&&... parts) const {
        std::vector<BoxPtr> v;
        (v.push_back(std::forward<B>(parts)), ...);
        return std::make_unique<Row>(std::move(v));
    }
    BoxPtr sub(BoxPtr base, BoxPtr s) const {
        return std::make_unique<Script>(std::move(base), std::move(s), false, size);
    }
    BoxPtr sup(BoxPtr base, BoxPtr s) const {
        return std::make_unique<Script>(std::move(base), std::move(s), true, size);
    }
    BoxPtr frac(BoxPtr n, BoxPtr d) const { return std::make_unique<Fraction>(std::move(n), std::move(d), size); }
    Builder small() const { return Builder{size * 0.7}; }
    // A variable with an index: x_min, P_max, x_i.
    BoxPtr idx(const QString& var, const QString& index, bool italicIndex = false) const {
        const Builder s = small();
        return sub(i(var), italicIndex ? s.i(index) : s.t(index));
    }
    // A binary operator or relation with thin spaces around it.
    BoxPtr op(const QString& s) const { return t(QStringLiteral("\u2009") + s + QStringLiteral("\u2009")); }
    BoxPtr gap() const { return t(QStringLiteral("\u2003\u2003")); }
};

const QString kMinus = QStringLiteral("\u2212");
QString q(const char* s) { return QString::fromUtf8(s); }

// v(x) =
BoxPtr valueOfX(const Builder& b) {
    return b.row(b.i(q("v")), b.t(q("(")), b.i(q("x")), b.t(q(")")), b.op(q("=")));
}

// x_max − x_min (or P_max − P_min)
BoxPtr span(const Builder& b, const QString& var = QStringLiteral("x")) {
    return b.row(b.idx(var, q("max")), b.op(kMinus), b.idx(var, q("min")));
}

// 1 − e^(−(top) / a)
BoxPtr oneMinusExp(const Builder& b, BoxPtr top) {
    const Builder s = b.small();
    BoxPtr exponent = s.row(s.t(kMinus + q("(")), std::move(top), s.t(q(")\u2009/\u2009")), s.i(q("a")));
    return b.row(b.t(q("1")), b.op(kMinus), b.sup(b.t(q("e")), std::move(exponent)));
}

using Lines = std::vector<BoxPtr>;

Lines linear(const Builder& b, bool cost) {
    Lines lines;
    lines.push_back(b.row(valueOfX(b), b.i(q("a")), b.t(q("\u2009")), b.i(q("x")), b.op(q("+")), b.i(q("b"))));
    lines.push_back(b.row(b.i(q("a")), b.op(q("=")), b.t(cost ? kMinus : QString()), b.frac(b.t(q("1")), span(b)),
                          b.gap(), b.i(q("b")), b.op(q("=")), b.t(kMinus), b.i(q("a")), b.t(q("\u2009")),
                          b.idx(q("x"), cost ? q("max") : q("min"))));
    return lines;
}

Lines exponential(const Builder& b, bool cost) {
    const Builder s = b.small();
    BoxPtr top = cost ? s.row(s.idx(q("x"), q("max")), s.op(kMinus), s.i(q("x")))
                      : s.row(s.i(q("x")), s.op(kMinus), s.idx(q("x"), q("min")));
    Lines lines;
    lines.push_back(b.row(valueOfX(b), b.frac(oneMinusExp(b, std::move(top)), oneMinusExp(b, span(s)))));
    lines.push_back(b.row(b.i(q("b")), b.op(q("=")), b.frac(b.i(q("a")), span(b))));
    return lines;
}

Lines cubic(const Builder& b) {
    const Builder s = b.small();
    const auto power = [&](const char* n) {
        return b.sup(b.row(b.t(q("(")), b.i(q("x")), b.op(kMinus), b.idx(q("x"), q("i"), true), b.t(q(")"))), s.t(q(n)));
    };
    Lines lines;
    lines.push_back(b.row(valueOfX(b), b.i(q("a")), b.op(q("+")), b.i(q("b")), b.t(q("\u2009")),
                          b.row(b.t(q("(")), b.i(q("x")), b.op(kMinus), b.idx(q("x"), q("i"), true), b.t(q(")"))),
                          b.op(q("+")), b.i(q("c")), b.t(q("\u2009")), power("2"), b.op(q("+")), b.i(q("d")),
                          b.t(q("\u2009")), power("3")));
    lines.push_back(b.row(b.idx(q("x"), q("i"), true), b.op(q("\u2264")), b.i(q("x")), b.op(q("<")),
                          b.idx(q("x"), q("i+1"), true), b.t(q(",  ")), b.t(q("the interval of the point moved last"))));
    return lines;
}

Lines ladder(const Builder& b, bool fromMinimum) {
    const Builder s = b.small();
    BoxPtr exponent = s.row(s.t(q("(")), s.i(q("i")), s.op(kMinus), s.i(q("b")), s.t(q(")\u2009")), s.i(q("a")));
    Lines lines;
    lines.push_back(b.row(b.idx(q("P"), q("i"), true), b.op(q("=")), b.idx(q("P"), fromMinimum ? q("min") : q("max")),
                          b.op(fromMinimum ? q("+") : kMinus), b.sup(b.t(q("2")), std::move(exponent)),
                          b.t(q("\u2009(")), span(b, q("P")), b.t(q(")"))));
    lines.push_back(b.row(b.i(q("i")), b.op(q("=")), b.t(q("0, 1, \u2026, ")), b.i(q("b")), b.gap(),
                          b.t(fromMinimum ? q("levels from the minimum score") : q("levels from the maximum score"))));
    return lines;
}

// Lines drawn under one another, left-aligned, on white.
QPixmap render(const Lines& lines) {
    constexpr double kRatio = 2.0;
    constexpr double kMargin = 12.0;
    constexpr double kLineGap = 14.0;
    double width = 0;
    double height = kMargin;
    for (const BoxPtr& line : lines) {
        width = std::max(width, line->width);
        height += line->ascent + line->depth + kLineGap;
    }
    height += kMargin - kLineGap;
    const QSize size(static_cast<int>(width + 2 * kMargin + 1), static_cast<int>(height + 1));
    QPixmap pixmap(size * kRatio);
    pixmap.setDevicePixelRatio(kRatio);
    pixmap.fill(Qt::white);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.setPen(Qt::black);
    double y = kMargin;
    for (const BoxPtr& line : lines) {
        y += line->ascent;
        line->draw(p, QPointF(kMargin, y));
        y += line->depth + kLineGap;
    }
    return pixmap;
}

}  // namespace

FormulaImageList::FormulaImageList(QObject* parent) : QObject(parent) {
    setObjectName(QStringLiteral("imgListFormula"));
    const Builder b{kBaseSize};
    pictures_ = {render(linear(b, false)),     render(linear(b, true)), render(exponential(b, false)),
                 render(exponential(b, true)), render(cubic(b)),        render(ladder(b, true)),
                 render(ladder(b, false))};
}

const QPixmap& FormulaImageList::picture(int index) const noexcept {
    if (index < 1 || index > kCount) return none_;
    return pictures_[static_cast<std::size_t>(index - 1)];
}

QString FormulaImageList::key(int index) {
    static const char* const keys[kCount] = {"LinearBenefit", "LinearCost",     "MidPointBenefit", "MidPointCost",
                                             "CurveDrawing",  "CatIdnMinToMax", "CatIdnMaxToMin"};
    if (index < 1 || index > kCount) return {};
    return QString::fromLatin1(keys[index - 1]);
}

}  // namespace kelmar
