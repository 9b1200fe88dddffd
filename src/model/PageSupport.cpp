#include <kelmar/mdKelMain.h>

#include <QComboBox>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace kelmar {

void CentreFormOnScreen(QWidget& form) {
    QScreen* screen = form.screen();
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) return;
    const QRect area = screen->geometry();
    const QSize size = form.frameGeometry().size();
    const float left = static_cast<float>(area.width() - size.width()) / 2.0f;
    const float top = static_cast<float>(area.height() - size.height()) / 2.0f;
    form.move(area.x() + static_cast<int>(left), area.y() + static_cast<int>(top));
}

void FillAttributeList(QComboBox& list) {
    WizardData& w = wizardData();
    const std::int16_t remembered = Variant(QString::number(list.currentIndex())).toInteger();
    list.clear();
    for (std::int16_t i = 0; i < w.AttNum; ++i) {
        const QString name = w.AttName(i).toString();
        if (w.AttVFDone(i).toBoolean()) {
            list.addItem(QStringLiteral(" \u00A4 ") + name);
        } else {
            list.addItem(name);
        }
    }
    list.setCurrentIndex(remembered < list.count() ? remembered : -1);
}

QString TrimTrailingPoint(QString& s) {
    if (s.endsWith(QLatin1Char('.'))) return s.left(s.size() - 1);
    return s;
}

}  // namespace kelmar
