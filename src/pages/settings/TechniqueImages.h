// The image list of the technique panel: one small diagram per technique
// that shows what the technique asks of the analyst. Images are numbered
// 1 to 8, the technique id plus one.
#pragma once

#include <QObject>
#include <QString>

namespace kelmar {

class DrawSurface;

class TechniqueImageList : public QObject {
    Q_OBJECT
public:
    explicit TechniqueImageList(QObject* parent = nullptr);

    static constexpr int kCount = 8;
    int count() const { return kCount; }

    // The question that image `index` (1 .. 8) puts to the analyst; it heads
    // the drawing.
    static QString question(int index);
    // Clears the picture and draws image `index` (1 .. 8) on it.
    void draw(int index, DrawSurface& pic) const;
};

}  // namespace kelmar
