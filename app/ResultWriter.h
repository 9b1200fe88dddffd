// Turns one ExportResults of the component into JSON and writes it.
#pragma once

#include <kelmar/Variant.h>

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <cstdio>

namespace kelmarhost {

// The fourteen arguments of ExportResults, as the component passes them.
struct ExportedResults {
    const kelmar::VariantArray& AttVData;
    const kelmar::VariantArray& ScoreMinimum;
    const kelmar::VariantArray& ScoreMiddle;
    const kelmar::VariantArray& ScoreMaximum;
    std::int16_t MaxVal;
    const kelmar::Variant& VFTechniqueID;  // holds the whole array
    const kelmar::VariantArray& SmpSize;
    const kelmar::VariantArray& SmpX;
    const kelmar::VariantArray& SmpY;
    const kelmar::VariantArray& VFunParA;
    const kelmar::VariantArray& VFunParB;
    const kelmar::VariantArray& VFunParC;
    const kelmar::VariantArray& VFunParD;
    const kelmar::VariantArray& VFunType;
};

// The technique's name for an id 0..7 ("" for any other id).
QString techniqueName(int id);

// Whether the category page ran attribute att's levels from the maximum
// down: True (-1) in the value slot 10, when `size` points leave it free.
bool categoryFromMaximum(const kelmar::VariantArray& SmpY, int att, int size);

// Every function record and the value table, named with the problem's
// attribute and alternative names. Cells the component left empty become
// null; the arrays' own bounds decide what is written.
QJsonObject resultsToJson(const ExportedResults& results, const QStringList& alternatives,
                          const QStringList& attributes);

// Writes each export as one line of compact JSON: to a file (emptied by the
// first export of the session, appended to by the later ones) or, with an
// empty path, to a stream.
class ResultWriter {
public:
    explicit ResultWriter(QString path, std::FILE* stream = stdout)
        : path_(std::move(path)), stream_(stream) {}

    // False with a message in `error` when the file cannot be written.
    bool write(const QJsonObject& results, QString* error = nullptr);
    const QString& path() const noexcept { return path_; }

private:
    QString path_;
    std::FILE* stream_;
    bool written_ = false;
};

}  // namespace kelmarhost
