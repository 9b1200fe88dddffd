#include "MonkeyHost.h"

#include <algorithm>
#include <array>

namespace kelmar::monkey {

namespace {

struct AttributeRow {
    const char* name;
    bool cost;
    double low, high;
    std::int16_t type;
    std::vector<double> x, y;
};

// Cost attributes fall from 1 to 0, benefit ones rise.
const AttributeRow kAttributes[] = {
    {"Rent", true, 20000, 40000, 1, {20000, 24000, 29000, 35000, 40000}, {1, 0.85, 0.6, 0.3, 0}},
    {"Space", false, 40, 120, 0, {40, 60, 80, 100, 120}, {0, 0.25, 0.5, 0.75, 1}},
    {"Distance", true, 0.5, 12, 1, {0.5, 1, 2, 4, 6, 9, 12}, {1, 0.9, 0.75, 0.5, 0.3, 0.1, 0}},
    {"Light", false, 0.125, 0.875, 1, {0.125, 0.5, 0.875}, {0, 0.7, 1}},
    {"Noise", true, 30, 75, 0, {30, 41.25, 52.5, 63.75, 75}, {1, 0.75, 0.5, 0.25, 0}},
};
constexpr int kAlternatives = 6;

// The rule and the attribute's function as it stands.
QString describe(int att, const char* rule) {
    const WizardData& w = wizardData();
    QString points;
    try {
        const int n = w.SmpSize(att).toInteger();
        for (int k = 0; k < n && k <= 10; ++k)
            points += QStringLiteral(" (%1, %2)")
                          .arg(w.SmpX(att, k).toDouble(), 0, 'g', 10)
                          .arg(w.SmpY(att, k).toDouble(), 0, 'g', 10);
        points = QStringLiteral("; range %1 .. %2, type %3, points")
                     .arg(w.ScoreMinimum(att).toDouble(), 0, 'g', 10)
                     .arg(w.ScoreMaximum(att).toDouble(), 0, 'g', 10)
                     .arg(w.VFunType(att).toString()) +
                 points;
    } catch (const RuntimeError&) {
    }
    return QStringLiteral("attribute %1: %2%3").arg(att).arg(QString::fromLatin1(rule), points);
}

// The first exported value outside 0 .. MaxVal, or an empty text.
QString badExport(const VariantArray& attVData, std::int16_t maxVal) {
    for (int alt = attVData.lbound(1); alt <= attVData.ubound(1); ++alt) {
        for (int att = attVData.lbound(2); att <= attVData.ubound(2); ++att) {
            const double v = attVData(alt, att).toDouble();
            if (!(v >= 0.0 && v <= maxVal))
                return QStringLiteral("alternative %1 on attribute %2 exported %3 with MaxVal %4")
                    .arg(alt)
                    .arg(att)
                    .arg(v, 0, 'g', 17)
                    .arg(maxVal);
        }
    }
    return {};
}

}  // namespace

Problem sampleProblem() {
    Problem p;
    p.attNum = static_cast<std::int16_t>(std::size(kAttributes));
    p.altNum = kAlternatives;
    const int lastAtt = p.attNum - 1;
    for (VariantArray* a : {&p.altPScore, &p.attVData}) a->redim(0, kAlternatives - 1, 0, lastAtt);
    for (VariantArray* a : {&p.attName, &p.attDefinition, &p.attProperty, &p.scoreMinimum,
                            &p.scoreMiddle, &p.scoreMaximum, &p.techniqueId, &p.smpSize, &p.parA,
                            &p.parB, &p.parC, &p.parD, &p.funType})
        a->redim(0, lastAtt);
    for (VariantArray* a : {&p.smpX, &p.smpY}) a->redim(0, lastAtt, 0, 10);
    for (int att = 0; att <= lastAtt; ++att) {
        const AttributeRow& r = kAttributes[att];
        p.attName(att) = r.name;
        p.attDefinition(att) = QStringLiteral("How the flat does on %1.").arg(r.name);
        p.attProperty(att) = std::int16_t(r.cost ? 1 : 0);
        p.scoreMinimum(att) = r.low;
        p.scoreMaximum(att) = r.high;
        p.scoreMiddle(att) = (r.low + r.high) / 2.0;
        p.techniqueId(att) = std::int16_t(kDirectRating);
        p.smpSize(att) = static_cast<std::int16_t>(r.x.size());
        p.funType(att) = r.type;
        for (std::size_t k = 0; k < r.x.size(); ++k) {
            p.smpX(att, static_cast<int>(k)) = r.x[k];
            p.smpY(att, static_cast<int>(k)) = r.y[k];
        }
        // The alternatives lie at both ends and inside the range.
        for (int alt = 0; alt < kAlternatives; ++alt)
            p.altPScore(alt, att) = r.low + (r.high - r.low) * alt / (kAlternatives - 1.0);
    }
    return p;
}

void transfer(KelmarDll& dll, Problem& p) {
    Variant dir(QStringLiteral("/nonexistent"));
    dll.TransferData(dir, 1, p.altNum, p.attNum, p.altPScore, p.attVData, p.attName,
                     p.attDefinition, p.attProperty);
    dll.TransferVFunData(p.scoreMinimum, p.scoreMiddle, p.scoreMaximum, p.maxVal, p.techniqueId,
                         p.smpSize, p.smpX, p.smpY, p.parA, p.parB, p.parC, p.parD, p.funType);
}

QString brokenRule() {
    const WizardData& w = wizardData();
    // Before the settings page first loads there is no working range yet.
    if (!w.ScoreMinimum.isAllocated() || !w.ScoreMaximum.isAllocated()) return {};
    try {
        for (int att = 0; att < w.AttNum; ++att) {
            const double low = w.ScoreMinimum(att).toDouble();
            const double high = w.ScoreMaximum(att).toDouble();
            if (low > w.InScoreMinimum(att).toDouble() || high < w.InScoreMaximum(att).toDouble())
                return describe(att, "the host's range was narrowed");
            const int n = w.SmpSize(att).toInteger();
            if (n < 2 || n > 11) return describe(att, "no usable sample size");
            if (w.SmpX(att, 0).toDouble() != low) return describe(att, "point 0 is off the minimum");
            if (w.SmpX(att, n - 1).toDouble() != high)
                return describe(att, "the last point is off the maximum");
            // The category page keeps its orientation in slot 10.
            const bool slot10 = w.VFTechniqueID(att).toInteger() == kCategoryIdentification;
            // The orientation as the pages read it: the copy once the
            // settings step has made it.
            const VariantArray& property =
                w.AttPropertyCopy.isAllocated() ? w.AttPropertyCopy : w.AttProperty;
            const bool cost = property(att).toDouble() != 0.0;
            for (int k = 0; k < n; ++k) {
                if (k > 0 && !(w.SmpX(att, k).toDouble() > w.SmpX(att, k - 1).toDouble()))
                    return describe(att, "scores not strictly increasing");
                if (k == 10 && slot10) continue;
                const double y = w.SmpY(att, k).toDouble();
                if (!(y >= 0.0 && y <= 1.0)) return describe(att, "a value outside 0 .. 1");
                const double previous = k > 0 ? w.SmpY(att, k - 1).toDouble() : y;
                if (cost ? y > previous : y < previous)
                    return describe(att, cost ? "a value rising on a cost attribute"
                                              : "a value falling on a benefit attribute");
            }
        }
    } catch (const RuntimeError& e) {
        return QStringLiteral("the wizard data cannot be read: ") + e.description();
    }
    return {};
}

namespace {

// Per attribute: SmpSize, SmpX and SmpY 0 .. 10, then the nine after them.
const char* const kNames[] = {"SmpSize",  "SmpX",     "SmpY",     "VFunType",     "VFTechniqueID", "VFunParA",
                              "VFunParB", "VFunParC", "VFunParD", "ScoreMinimum", "ScoreMiddle",   "ScoreMaximum"};
constexpr int kPointCells = 23;  // SmpSize and the points

// A cell as its type and its exact value; "no cell" where the array does not
// hold it (or holds an array there, which no record has).
QString cellText(const VariantArray& a, int att, int k = -1) {
    if (a.dimensions() != (k < 0 ? 1 : 2) || att < a.lbound(1) || att > a.ubound(1) ||
        (k >= 0 && (k < a.lbound(2) || k > a.ubound(2))) || (k < 0 ? a(att) : a(att, k)).isArray())
        return QStringLiteral("no cell");
    const Variant& v = k < 0 ? a(att) : a(att, k);
    static const char* const types[] = {"Empty", "Boolean", "Integer", "Long", "Single", "Double", "String"};
    const QString value = v.type() == Variant::Type::Double   ? QString::number(v.toDouble(), 'g', 17)
                          : v.type() == Variant::Type::Single ? QString::number(v.toSingle(), 'g', 9)
                                                              : QStringLiteral("\"%1\"").arg(v.toString());
    return QStringLiteral("%1 %2").arg(QLatin1String(types[static_cast<int>(v.type())]), value);
}

Record collect(const std::array<const VariantArray*, 12>& r, int attNum) {
    Record record;
    for (int att = 0; att < attNum; ++att) {
        QStringList cells{cellText(*r[0], att)};
        for (const VariantArray* points : {r[1], r[2]})
            for (int k = 0; k <= 10; ++k) cells << cellText(*points, att, k);
        for (std::size_t i = 3; i < r.size(); ++i) cells << cellText(*r[i], att);
        record.attributes.push_back(cells);
    }
    return record;
}

QString cellName(int att, int i) {
    if (i == 0 || i >= kPointCells)
        return QStringLiteral("%1(%2)").arg(QLatin1String(kNames[i == 0 ? 0 : i - 20])).arg(att);
    return QStringLiteral("%1(%2, %3)").arg(QLatin1String(i <= 11 ? "SmpX" : "SmpY")).arg(att).arg((i - 1) % 11);
}

QStringList cellsOf(const Record& r, int att) {
    return att < static_cast<int>(r.attributes.size()) ? r.attributes[static_cast<std::size_t>(att)] : QStringList();
}

}  // namespace

Record workingRecord() {
    const WizardData& w = wizardData();
    return collect({&w.SmpSize, &w.SmpX, &w.SmpY, &w.VFunType, &w.VFTechniqueID, &w.VFunParA, &w.VFunParB,
                    &w.VFunParC, &w.VFunParD, &w.ScoreMinimum, &w.ScoreMiddle, &w.ScoreMaximum},
                   w.AttNum);
}

Record hostRecord(const Problem& p) {
    return collect({&p.smpSize, &p.smpX, &p.smpY, &p.funType, &p.techniqueId, &p.parA, &p.parB, &p.parC,
                    &p.parD, &p.scoreMinimum, &p.scoreMiddle, &p.scoreMaximum},
                   p.attNum);
}

QString recordChange(const Record& before, const Record& after, int att) {
    const QStringList a = cellsOf(before, att), b = cellsOf(after, att);
    const QString none = QStringLiteral("no attribute");
    for (int i = 0; i < std::max(a.size(), b.size()); ++i)
        if (a.value(i, none) != b.value(i, none))
            return QStringLiteral("%1 was %2, is %3").arg(cellName(att, i), a.value(i, none), b.value(i, none));
    return {};
}

bool pointsChanged(const Record& before, const Record& after, int att) {
    return cellsOf(before, att).mid(0, kPointCells) != cellsOf(after, att).mid(0, kPointCells);
}

void MonkeyHost::UnloadKelmar() {
    if (onUnloadKelmar) onUnloadKelmar();
}

void MonkeyHost::ExportResults(VariantArray& AttVData, VariantArray& ScoreMinimum,
                               VariantArray& ScoreMiddle, VariantArray& ScoreMaximum,
                               std::int16_t MaxVal, Variant& VFTechniqueID, VariantArray& SmpSize,
                               VariantArray& SmpX, VariantArray& SmpY, VariantArray& VFunParA,
                               VariantArray& VFunParB, VariantArray& VFunParC,
                               VariantArray& VFunParD, VariantArray& VFunType) {
    const QString fault = badExport(AttVData, MaxVal);
    if (!fault.isEmpty()) faults << fault;
    // A host keeps what it received and offers it again next time.
    problem_.scoreMinimum = ScoreMinimum;
    problem_.scoreMiddle = ScoreMiddle;
    problem_.scoreMaximum = ScoreMaximum;
    problem_.maxVal = MaxVal;
    if (VFTechniqueID.isArray()) problem_.techniqueId = VFTechniqueID.toArray();
    problem_.smpSize = SmpSize;
    problem_.smpX = SmpX;
    problem_.smpY = SmpY;
    problem_.parA = VFunParA;
    problem_.parB = VFunParB;
    problem_.parC = VFunParC;
    problem_.parD = VFunParD;
    problem_.funType = VFunType;
}

}  // namespace kelmar::monkey
