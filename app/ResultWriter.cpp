#include "ResultWriter.h"

#include "ProblemFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QFile>

#include <algorithm>

namespace kelmarhost {

using kelmar::Variant;
using kelmar::VariantArray;

QString techniqueName(int id) {
    switch (id) {
    case 0: return QStringLiteral("Midpoint Setting");
    case 1: return QStringLiteral("Direct Rating");
    case 2: return QStringLiteral("Curve Drawing");
    case 3: return QStringLiteral("Category Identification");
    case 4: return QStringLiteral("Difference Standard Sequence");
    case 5: return QStringLiteral("Bisection");
    case 6: return QStringLiteral("Variable Probability Judgment");
    case 7: return QStringLiteral("Variable Certainty Equivalent Judgment");
    default: return {};
    }
}

namespace {



bool hasCell(const VariantArray& a, int i) {
    return a.dimensions() == 1 && i >= a.lbound() && i <= a.ubound();
}
bool hasCell(const VariantArray& a, int i, int j) {
    return a.dimensions() == 2 && i >= a.lbound(1) && i <= a.ubound(1) && j >= a.lbound(2) &&
           j <= a.ubound(2);
}
QJsonValue cell(const VariantArray& a, int i) {
    return hasCell(a, i) ? variantToJson(a(i)) : QJsonValue(QJsonValue::Null);
}

}  // namespace

bool categoryFromMaximum(const VariantArray& SmpY, int att, int size) {
    if (size > 10 || !hasCell(SmpY, att, 10)) return false;
    const Variant& v = SmpY(att, 10);
    if (v.type() == Variant::Type::Boolean) return v.toBoolean();
    return v.isNumeric() && !v.isEmpty() && v.toDouble() == -1.0;
}

QJsonObject resultsToJson(const ExportedResults& r, const QStringList& alternatives,
                          const QStringList& attributes) {
    const VariantArray* techniques =
        r.VFTechniqueID.isArray() ? &r.VFTechniqueID.toArray() : nullptr;

    // One record per attribute: the widest of the per-attribute arrays.
    int firstAtt = 0;
    int lastAtt = static_cast<int>(attributes.size()) - 1;
    if (r.ScoreMinimum.dimensions() == 1) {
        firstAtt = r.ScoreMinimum.lbound();
        lastAtt = std::max(lastAtt, r.ScoreMinimum.ubound());
    }

    QJsonArray functions;
    for (int j = firstAtt; j <= lastAtt; ++j) {
        QJsonObject f;
        f.insert(QStringLiteral("attribute"), j >= 0 && j < attributes.size()
                                                  ? QJsonValue(attributes.at(j))
                                                  : QJsonValue(QJsonValue::Null));
        f.insert(QStringLiteral("scoreMinimum"), cell(r.ScoreMinimum, j));
        f.insert(QStringLiteral("scoreMiddle"), cell(r.ScoreMiddle, j));
        f.insert(QStringLiteral("scoreMaximum"), cell(r.ScoreMaximum, j));
        f.insert(QStringLiteral("maxValue"), r.MaxVal);
        const QJsonValue technique =
            techniques ? cell(*techniques, j) : QJsonValue(QJsonValue::Null);
        f.insert(QStringLiteral("technique"), technique);
        f.insert(QStringLiteral("techniqueName"),
                 technique.isDouble() ? QJsonValue(techniqueName(technique.toInt(-1)))
                                      : QJsonValue(QJsonValue::Null));
        f.insert(QStringLiteral("type"), cell(r.VFunType, j));
        f.insert(QStringLiteral("sampleSize"), cell(r.SmpSize, j));
        QJsonArray points;
        int size = 0;
        try {
            size = hasCell(r.SmpSize, j) ? r.SmpSize(j).toInteger() : 0;
        } catch (const kelmar::RuntimeError&) {
            size = 0;
        }
        for (int k = 0; k < size; ++k) {
            if (!hasCell(r.SmpX, j, k) || !hasCell(r.SmpY, j, k)) break;
            points.append(QJsonArray{variantToJson(r.SmpX(j, k)), variantToJson(r.SmpY(j, k))});
        }
        f.insert(QStringLiteral("points"), points);
        if (categoryFromMaximum(r.SmpY, j, size))
            f.insert(QStringLiteral("categoryOrder"), QStringLiteral("fromMaximum"));
        f.insert(QStringLiteral("parameters"),
                 QJsonObject{{QStringLiteral("a"), cell(r.VFunParA, j)},
                             {QStringLiteral("b"), cell(r.VFunParB, j)},
                             {QStringLiteral("c"), cell(r.VFunParC, j)},
                             {QStringLiteral("d"), cell(r.VFunParD, j)}});
        functions.append(f);
    }

    QJsonArray values;
    if (r.AttVData.dimensions() == 2) {
        for (int i = r.AttVData.lbound(1); i <= r.AttVData.ubound(1); ++i) {
            QJsonArray row;
            for (int j = r.AttVData.lbound(2); j <= r.AttVData.ubound(2); ++j) {
                row.append(QJsonObject{
                    {QStringLiteral("attribute"),
                     j >= 0 && j < attributes.size() ? QJsonValue(attributes.at(j))
                                                     : QJsonValue(QJsonValue::Null)},
                    {QStringLiteral("value"), variantToJson(r.AttVData(i, j))}});
            }
            values.append(QJsonObject{
                {QStringLiteral("alternative"), i >= 0 && i < alternatives.size()
                                                    ? QJsonValue(alternatives.at(i))
                                                    : QJsonValue(QJsonValue::Null)},
                {QStringLiteral("values"), row}});
        }
    }

    QJsonObject out;
    out.insert(QStringLiteral("maxValue"), r.MaxVal);
    out.insert(QStringLiteral("functions"), functions);
    out.insert(QStringLiteral("values"), values);
    return out;
}

bool ResultWriter::write(const QJsonObject& results, QString* error) {
    const QByteArray line = QJsonDocument(results).toJson(QJsonDocument::Compact) + '\n';
    if (path_.isEmpty()) {
        const bool ok = std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()),
                                    stream_) == static_cast<std::size_t>(line.size()) &&
                        std::fflush(stream_) == 0;
        if (!ok && error) *error = QStringLiteral("standard output cannot be written");
        return ok;
    }
    // The first export of a session starts the file afresh; later ones are
    // appended, one line each.
    QFile file(path_);
    const QIODevice::OpenMode mode =
        QIODevice::WriteOnly | (written_ ? QIODevice::Append : QIODevice::Truncate);
    if (file.open(mode) && file.write(line) == line.size() && file.flush()) {
        written_ = true;
        return true;
    }
    if (error) *error = QStringLiteral("%1: %2").arg(path_, file.errorString());
    return false;
}

}  // namespace kelmarhost
