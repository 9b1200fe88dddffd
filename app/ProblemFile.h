// A decision problem as kelmar-host reads it from a JSON file (the format is
// described in docs/problem-format.md), and the arrays the component takes.
#pragma once

#include <kelmar/Variant.h>

#include <QDateTime>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <cstdint>
#include <stdexcept>

class QByteArray;
class QJsonObject;
class QJsonValue;

namespace kelmar {
class KelmarDll;
}

namespace kelmarhost {

struct Attribute {
    QString name;
    QString definition;
    bool cost = false;  // lower scores are better
};

// The value function of one attribute, as the wizard keeps it.
struct ValueFunction {
    double minimum = 0.0;
    double middle = 0.0;
    double maximum = 1.0;
    int technique = 1;
    int type = 0;                  // 0 linear, otherwise the curve through the points
    QVector<QPointF> points;       // score, value fraction 0..1; 2 to 11 points
    // a, b, c, d as the wizard stored them (numbers, text or empty).
    kelmar::Variant parameters[4] = {0.0, 0.0, 0.0, 0.0};
    // Category Identification ran its levels from the maximum score down
    // (kept in the eleventh value slot, which that technique never uses).
    bool fromMaximum = false;
};

// The same record to the bit: every number, every point, the parameters'
// kinds and values, the category order.
bool sameRecord(const ValueFunction& a, const ValueFunction& b);
// The same curve: the same range and the same points, to the bit.
bool sameCurve(const ValueFunction& a, const ValueFunction& b);

// One Finish of the wizard: the records it returned for every attribute.
struct Finish {
    int number = 0;  // 1, 2, ... through the problem's history
    int maxValue = 100;
    QVector<ValueFunction> functions;
    QDateTime finished;
};

struct Problem {
    QString source;  // the file name, or "sample problem"
    QString title;
    QString helpDirectory;
    int methodCode = 1;
    int maxValue = 100;
    QStringList alternatives;
    QVector<Attribute> attributes;
    QVector<QVector<double>> scores;  // alternative by attribute
    QVector<ValueFunction> functions; // one per attribute
    QVector<Finish> history;          // every Finish so far, oldest first
};

// A problem file that cannot be used. The message names the file, the field
// and what is wrong, ready to be shown as it is.
class ProblemFileError : public std::runtime_error {
public:
    explicit ProblemFileError(const QString& message)
        : std::runtime_error(message.toStdString()), message_(message) {}
    const QString& message() const noexcept { return message_; }

private:
    QString message_;
};

// Reads and checks a problem file; throws ProblemFileError. A file of
// results lines (one JSON object per line) is read from its last line.
Problem loadProblemFile(const QString& path);
// Checks JSON text; `source` names it in messages.
Problem parseProblem(const QByteArray& json, const QString& source);

// The problem with its current functions (and its history, if any) as a
// problem file's object.
QJsonObject problemToJson(const Problem& problem);
// The problem's own fields without the functions (title, names, scores...).
QJsonObject problemFieldsToJson(const Problem& problem);
QJsonObject functionToJson(const ValueFunction& function);
// A cell as JSON: empty as null, text as a string, a number as a number.
QJsonValue variantToJson(const kelmar::Variant& value);
// Checks a function as a problem file's function is checked, so that what
// is kept can be saved and read again; throws ProblemFileError.
void checkFunction(const ValueFunction& function, const QString& source, const QString& path);
// Writes the problem file (indented JSON); false with a message in `error`.
bool saveProblemFile(const Problem& problem, const QString& path, QString* error = nullptr);

// A linear function with `count` evenly spaced points on [minimum, maximum].
ValueFunction linearFunction(double minimum, double maximum, bool cost, int count = 5);

// The arrays that TransferData and TransferVFunData take, shaped as the
// component allocates them.
struct HostArrays {
    kelmar::Variant QUARNDir;
    std::int16_t SelMCDAMethod = 1;
    std::int16_t AltNum = 0;
    std::int16_t AttNum = 0;
    kelmar::VariantArray AltPScore, AttVData, AttName, AttDefinition, AttProperty;
    kelmar::VariantArray ScoreMinimum, ScoreMiddle, ScoreMaximum;
    std::int16_t MaxVal = 100;
    kelmar::VariantArray VFTechniqueID, SmpSize, SmpX, SmpY;
    kelmar::VariantArray VFunParA, VFunParB, VFunParC, VFunParD, VFunType;
};

HostArrays toHostArrays(const Problem& problem);
// Calls TransferData, then TransferVFunData.
void transferProblem(kelmar::KelmarDll& component, HostArrays& arrays);

}  // namespace kelmarhost
