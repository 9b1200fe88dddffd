// imgListFormula: the seven formula pictures of the function view, in
// this order: 1 LinearBenefit, 2 LinearCost, 3 MidPointBenefit,
// 4 MidPointCost, 5 CurveDrawing, 6 CatIdnMinToMax, 7 CatIdnMaxToMin.
// Each is typeset once, at twice the screen's resolution.
#pragma once

#include <QObject>
#include <QPixmap>
#include <QString>

#include <array>

namespace kelmar {

class FormulaImageList : public QObject {
    Q_OBJECT
public:
    static constexpr int kCount = 7;

    explicit FormulaImageList(QObject* parent = nullptr);

    int count() const noexcept { return kCount; }
    // Picture 1 .. 7; any other number gives an empty picture.
    const QPixmap& picture(int index) const noexcept;
    // The key of picture 1 .. 7 ("LinearBenefit" and so on).
    static QString key(int index);

private:
    std::array<QPixmap, kCount> pictures_;
    QPixmap none_;
};

}  // namespace kelmar
