#include "pages/functionview/frmVFS.h"

#include "component/PageRegistry.h"
#include "model/Arith.h"
#include "pages/functionview/FormulaImages.h"

#include <kelmar/mdKelMain.h>

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace kelmar {

KELMAR_REGISTER_PAGE(kFunctionViewKey, frmVFS)

namespace {
// The cell of a per-attribute array, or Empty when the array does not reach
// that far yet (the view may be opened before the settings step ran).
Variant cellOrEmpty(const VariantArray& array, int att) {
    if (array.dimensions() != 1 || att < array.lbound() || att > array.ubound()) return {};
    return array(att);
}

bool readsAsOne(const Variant& property) {
    try {
        return property.toDouble() == 1.0;
    } catch (const RuntimeError&) {
        return false;  // text that is not a number
    }
}

// A parameter the model computes for the function as it is now, as number
// text; nothing when it cannot be formed (no range or orientation yet, a
// range without width, a middle score that is missing or off the range).
template <class Compute>
QString parameterText(Compute compute) {
    try {
        return Variant(compute()).toString();
    } catch (const RuntimeError&) {
        return {};
    }
}

QLabel* makeValue(QWidget* parent, const char* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setFrameShape(QFrame::Panel);
    label->setFrameShadow(QFrame::Sunken);
    label->setMinimumWidth(170);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

// A box of captioned read-outs, one row each: the caption, the label's
// object name and the member that keeps the label.
struct ValueRow {
    QString caption;
    const char* name;
    QLabel** label;
};
void addValueRows(QGroupBox* box, std::initializer_list<ValueRow> rows) {
    auto* form = new QFormLayout(box);
    for (const ValueRow& row : rows) {
        *row.label = makeValue(box, row.name);
        form->addRow(row.caption, *row.label);
    }
}
}  // namespace

QString frmVFS::orientationText(const Variant& property) {
    return readsAsOne(property) ? QStringLiteral("Cost-oriented.") : QStringLiteral("Benefit-oriented.");
}

frmVFS::frmVFS(QWidget* parent) : KelPage(kNoPageId, parent) {
    setObjectName(QStringLiteral("frmVFS"));
    setWindowTitle(QStringLiteral("Kelmar: Attribute and Value Function"));
    imgListFormula = new FormulaImageList(this);

    tsPanel = new QTabWidget(this);
    tsPanel->setObjectName(QStringLiteral("tsPanel"));

    // About the attribute.
    auto* about = new QWidget(tsPanel);
    about->setObjectName(QStringLiteral("AboutAtt"));
    labCUFProperty = new QLabel(about);
    labCUFProperty->setObjectName(QStringLiteral("labCUFProperty"));
    txtCUFDefinition = new QPlainTextEdit(about);
    txtCUFDefinition->setObjectName(QStringLiteral("txtCUFDefinition"));
    txtCUFDefinition->setReadOnly(true);
    auto* aboutLayout = new QVBoxLayout(about);
    aboutLayout->addWidget(new QLabel(tr("Definition:"), about));
    aboutLayout->addWidget(txtCUFDefinition, 1);
    aboutLayout->addWidget(labCUFProperty);
    tsPanel->addTab(about, QStringLiteral("About the attribute"));

    // Function formula.
    auto* formula = new QWidget(tsPanel);
    formula->setObjectName(QStringLiteral("VFunFormula"));
    Label1 = new QLabel(QStringLiteral("Function Type:"), formula);
    Label1->setObjectName(QStringLiteral("Label1"));
    lblFType = new QLabel(formula);
    lblFType->setObjectName(QStringLiteral("lblFType"));
    QFont bold = lblFType->font();
    bold.setBold(true);
    lblFType->setFont(bold);
    picFormula = new QLabel(formula);
    picFormula->setObjectName(QStringLiteral("picFormula"));
    picFormula->setFrameShape(QFrame::Panel);
    picFormula->setFrameShadow(QFrame::Sunken);
    picFormula->setAlignment(Qt::AlignCenter);
    picFormula->setMinimumSize(520, 120);
    picFormula->setStyleSheet(QStringLiteral("background: white"));

    Frame2 = new QGroupBox(QStringLiteral("Function Parameters"), formula);
    Frame2->setObjectName(QStringLiteral("Frame2"));
    addValueRows(Frame2, {{QStringLiteral("a ="), "lbla", &lbla},
                          {QStringLiteral("b ="), "lblb", &lblb},
                          {QStringLiteral("c ="), "lblc", &lblc},
                          {QStringLiteral("d ="), "lbld", &lbld}});

    auto* range = new QGroupBox(tr("Score range"), formula);
    addValueRows(range, {{tr("Minimum:"), "lblMin", &lblMin},
                         {tr("Middle:"), "lblMiddle", &lblMiddle},
                         {tr("Maximum:"), "lblMax", &lblMax}});

    auto* type = new QHBoxLayout;
    type->addWidget(Label1);
    type->addWidget(lblFType);
    type->addStretch(1);
    auto* numbers = new QHBoxLayout;
    numbers->addWidget(Frame2, 1);
    numbers->addWidget(range, 1);
    auto* formulaLayout = new QVBoxLayout(formula);
    formulaLayout->addLayout(type);
    formulaLayout->addWidget(picFormula, 1);
    formulaLayout->addLayout(numbers);
    tsPanel->addTab(formula, QStringLiteral("Function formula"));

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, [this] { close(); });

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tsPanel, 1);
    layout->addLayout(buttons);
    resize(600, 420);
}

void frmVFS::onLoad() {
    const int att = wizardData().SelAtt;
    fillAbout(att);
    fillFormula(att);
}

void frmVFS::fillAbout(int att) {
    const WizardData& w = wizardData();
    txtCUFDefinition->setPlainText(cellOrEmpty(w.AttDefinition, att).toString().trimmed());
    labCUFProperty->setText(orientationText(cellOrEmpty(w.AttProperty, att)));
}

void frmVFS::showFormula(int picture) {
    formulaPicture_ = picture;
    picFormula->setPixmap(imgListFormula->picture(picture));
}

void frmVFS::fillFormula(int att) {
    WizardData& w = wizardData();
    for (QLabel* label : {lbla, lblb, lblc, lbld}) label->clear();
    const bool cost = cellOrEmpty(w.AttPropertyCopy, att).toDouble() != 0.0;
    std::int16_t a = static_cast<std::int16_t>(att);
    // The line and the exponential are shown on the range as it is now, not
    // from the texts the last judgment left in VFunParA and VFunParB: a later
    // Linear, a widened range or a new middle score leave those behind.
    if (isLinearType(cellOrEmpty(w.VFunType, att))) {
        lblFType->setText(QStringLiteral("Linear"));
        showFormula(cost ? 2 : 1);
        lbla->setText(parameterText([&] { return LinearParameterA(a); }));
        lblb->setText(parameterText([&] { return LinearParameterB(a); }));
    } else {
        lblFType->setText(QStringLiteral("Non-Linear"));
        const double technique = cellOrEmpty(w.VFTechniqueID, att).toDouble();
        if (technique == static_cast<double>(kMidPoint)) {
            showFormula(cost ? 4 : 3);
            const auto exponential = [&](double (*parameter)(std::int16_t&, double&)) {
                return parameterText([&] {
                    const Variant& stored = w.ScoreMiddle(a);
                    if (stored.isEmpty()) throw RuntimeError(RuntimeError::IllegalCall);
                    double middle = stored.toDouble();
                    return parameter(a, middle);
                });
            };
            lbla->setText(exponential(ExponentialParameterA));
            lblb->setText(exponential(ExponentialParameterB));
        } else if (technique == static_cast<double>(kCategoryIdentification)) {
            showFormula(w.SmpY(att, 10).toDouble() == 0.0 ? 6 : 7);
            lbla->setText(Variant(w.CategoryFactor).toString());
            lblb->setText(Variant(checkedSub(w.CategoryCount, 1)).toString());
        } else {
            showFormula(5);
            CurveParameters(a, w.SelPoint);
            lbla->setText(curveCoefficients_(0).toString());
            lblb->setText(curveCoefficients_(1).toString());
            lblc->setText(curveCoefficients_(2).toString());
            lbld->setText(curveCoefficients_(3).toString());
        }
    }
    lblMin->setText(cellOrEmpty(w.ScoreMinimum, att).toString());
    lblMiddle->setText(cellOrEmpty(w.ScoreMiddle, att).toString());
    lblMax->setText(cellOrEmpty(w.ScoreMaximum, att).toString());
}

void frmVFS::CurveParameters(std::int16_t& att, std::int16_t& point) {
    WizardData& w = wizardData();
    std::int16_t n = w.SmpSize(att).toInteger();
    const std::int16_t last = checkedSub(n, 1);
    if (last < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    VariantArray x(0, last);
    VariantArray y(0, last);
    for (int k = 0; k <= last; ++k) {
        x(k) = w.SmpX(att, k);
        y(k) = w.SmpY(att, k);
    }
    std::int16_t evaluate = -1;
    double at = w.SmpX(att, point).toDouble();
    AkimaInterpolate(x, y, n, evaluate, at, curveCoefficients_);
}

void frmVFS::onClosed() { raiseUnloadKelVFS(); }

}  // namespace kelmar
