#include "charts/Snapshot.h"

#include <QPainter>
#include <QWidget>

namespace kelmar {

QImage snapshot(QWidget& widget, qreal devicePixelRatio) {
    widget.ensurePolished();
    QImage image(widget.size() * devicePixelRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    widget.render(&painter);
    painter.end();
    return image;
}

bool saveSnapshot(QWidget& widget, const QString& path, qreal devicePixelRatio) {
    return snapshot(widget, devicePixelRatio).save(path, "PNG");
}

}  // namespace kelmar
