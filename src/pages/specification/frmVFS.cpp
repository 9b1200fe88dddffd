#include "pages/specification/frmVFS.h"

#include "component/PageRegistry.h"

#include <kelmar/mdKelMain.h>

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
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

bool isCostProperty(const Variant& property) {
    try {
        return property.toDouble() == 1.0;
    } catch (const RuntimeError&) {
        return false;  // text that is not a number
    }
}
}  // namespace

QString frmVFS::orientationText(const Variant& property) {
    return isCostProperty(property) ? QStringLiteral("Cost-oriented.")
                                    : QStringLiteral("Benefit-oriented.");
}

frmVFS::frmVFS(QWidget* parent) : KelPage(kNoPageId, parent) {
    setObjectName(QStringLiteral("frmVFS"));
    setWindowTitle(QStringLiteral("Kelmar: Attribute and Value Function"));

    lblAttName_ = new QLabel(this);
    lblAttName_->setObjectName(QStringLiteral("lblAttName"));
    QFont bold = lblAttName_->font();
    bold.setBold(true);
    lblAttName_->setFont(bold);

    labCUFProperty_ = new QLabel(this);
    labCUFProperty_->setObjectName(QStringLiteral("labCUFProperty"));
    txtCUFDefinition_ = new QPlainTextEdit(this);
    txtCUFDefinition_->setObjectName(QStringLiteral("txtCUFDefinition"));
    txtCUFDefinition_->setReadOnly(true);
    txtCUFDefinition_->setMaximumHeight(90);
    lblFType_ = new QLabel(this);
    lblFType_->setObjectName(QStringLiteral("lblFType"));
    lblRange_ = new QLabel(this);
    lblRange_->setObjectName(QStringLiteral("lblRange"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Attribute:"), lblAttName_);
    form->addRow(QStringLiteral("Definition:"), txtCUFDefinition_);
    form->addRow(QStringLiteral("Property:"), labCUFProperty_);
    form->addRow(QStringLiteral("Function Type:"), lblFType_);
    form->addRow(QStringLiteral("Score range:"), lblRange_);

    auto* close = new QPushButton(QStringLiteral("&Close"), this);
    close->setObjectName(QStringLiteral("cmdOK"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, [this] { this->close(); });

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch(1);
    layout->addLayout(buttons);
    resize(420, 260);
}

void frmVFS::onLoad() {
    const WizardData& w = wizardData();
    const int att = w.SelAtt;
    lblAttName_->setText(cellOrEmpty(w.AttName, att).toString());
    txtCUFDefinition_->setPlainText(cellOrEmpty(w.AttDefinition, att).toString().trimmed());
    labCUFProperty_->setText(orientationText(cellOrEmpty(w.AttProperty, att)));
    const Variant type = cellOrEmpty(w.VFunType, att);
    bool linear = true;
    try {
        linear = type.toDouble() == 0.0;
    } catch (const RuntimeError&) {
        linear = false;
    }
    lblFType_->setText(linear ? QStringLiteral("Linear") : QStringLiteral("Non-Linear"));
    const QString lo = cellOrEmpty(w.ScoreMinimum, att).toString();
    const QString hi = cellOrEmpty(w.ScoreMaximum, att).toString();
    lblRange_->setText(lo.isEmpty() && hi.isEmpty() ? QStringLiteral("not set yet")
                                                    : lo + QStringLiteral(" to ") + hi);
}

void frmVFS::onClosed() { raiseUnloadKelVFS(); }

}  // namespace kelmar
