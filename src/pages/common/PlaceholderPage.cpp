#include "pages/common/PlaceholderPage.h"

#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelmar {

QString PlaceholderPage::titleFor(int pageId) {
    switch (pageId) {
    case kMidPoint: return QStringLiteral("Kelmar: Middle Point Setting");
    case kDirectRating: return QStringLiteral("Kelmar: Direct Rating");
    case kCurveDrawing: return QStringLiteral("Kelmar: Curve Drawing");
    case kCategoryIdentification: return QStringLiteral("Kelmar: Category Identification");
    case kDiffStandardSequence: return QStringLiteral("Kelmar: Difference Standard Sequences");
    case kBisection: return QStringLiteral("Kelmar: Bisection");
    case kVariableProbability: return QStringLiteral("Kelmar: Variable Probability");
    case kVariableCertainty: return QStringLiteral("Kelmar: Variable Certainty Equivalent");
    case kSettingsPage: return QStringLiteral("Kelmar: Specify Potential Performance Ranges");
    default: return QStringLiteral("Kelmar");
    }
}

QString PlaceholderPage::formNameFor(int pageId) {
    static const char* const names[] = {"frmKelMidPoint",   "frmKelDirectRating", "frmKelCurveDrawing",
                                        "frmKelCatIdn",     "frmKelDiffStdSeq",   "frmKelBisection",
                                        "frmKelVarP",       "frmKelVarC",         "frmKelSettings"};
    if (pageId >= 0 && pageId <= 8) return QString::fromLatin1(names[pageId]);
    return QStringLiteral("frmVFS");
}

PlaceholderPage::PlaceholderPage(int pageId, QWidget* parent) : KelPage(pageId, parent) {
    setObjectName(formNameFor(pageId));
    setWindowTitle(titleFor(pageId));

    auto* text = new QLabel(
        tr("This technique is not available in this version of Kelmar.\n"
           "Go back to choose another technique, or finish to return the value functions as they stand."),
        this);
    text->setWordWrap(true);
    text->setObjectName(QStringLiteral("lblNotAvailable"));

    auto* back = new QPushButton(QStringLiteral("< &Back"), this);
    back->setObjectName(QStringLiteral("cmdBack"));
    auto* finish = new QPushButton(QStringLiteral("&Finish"), this);
    finish->setObjectName(QStringLiteral("cmdFinish"));
    auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(back);
    buttons->addWidget(finish);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addStretch(1);
    layout->addLayout(buttons);
    resize(460, 200);

    connect(back, &QPushButton::clicked, this, [this] {
        handle([this] {
            const float left = pageLeft();
            const float top = pageTop();
            raiseHideForm(static_cast<std::int16_t>(this->pageId()));
            raiseShowForm(kSettingsPage, left, top);
            raiseUnloadOwn();
        });
    });
    connect(finish, &QPushButton::clicked, this, [this] {
        handle([this] {
            HourGlass wait;
            ComputeAllAlternativeValues();
            raiseExportResults();
            raiseUnloadKelmar();
        });
    });
    connect(cancel, &QPushButton::clicked, this, [this] { handle([this] { raiseUnloadKelmar(); }); });
}

void PlaceholderPage::onLoad() {
    CentreFormOnScreen(*this);
    raiseSendMasseges(QStringLiteral("Specify single-attribute value functions."));
}

}  // namespace kelmar
