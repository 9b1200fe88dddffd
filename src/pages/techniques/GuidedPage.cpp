#include "pages/techniques/GuidedPage.h"

#include <kelmar/mdKelMain.h>

#include <QColor>
#include <QLabel>
#include <QPalette>
#include <QScopedValueRollback>

namespace kelmar {

void GuidedPage::addJudgmentNote() {
    lblRefusal = new QLabel(Frame1);
    lblRefusal->setObjectName(QStringLiteral("lblRefusal"));
    lblRefusal->setWordWrap(true);
    lblRefusal->setMinimumHeight(lblRefusal->fontMetrics().lineSpacing() * 2 + 2);
    lblRefusal->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    QPalette palette = lblRefusal->palette();
    palette.setColor(QPalette::WindowText, QColor(0x9A, 0x1C, 0x1C));
    lblRefusal->setPalette(palette);
    addToUpperFrame(lblRefusal);
}

bool GuidedPage::moveScore(int index, double x) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const double low = w.ScoreMinimum(att).toDouble();
    const double score = low + (w.ScoreMaximum(att).toDouble() - low) * x / 100.0;
    // A drag keeps to the points judged when its mark was pressed.
    const bool dragging = leftDown_ && dragIndex_ == index &&
                          pressJudged_.size() == static_cast<std::size_t>(sampleSize());
    const std::vector<bool> judged = dragging ? pressJudged_ : JudgedPoints(att);
    // Half a mark's width clear of the judged marks around it, so that a
    // judged mark is never hidden; a mark already closer may still move away.
    const JudgedRoom room = RoomBetweenJudged(judged, index);
    const double here = markPosition(index);
    const double clear = markWidth(index) / 2.0;
    const double below = markPosition(room.lower), above = markPosition(room.upper);
    int blocker = -1;
    if (x < below + clear && (x < here || x <= below)) blocker = room.lower;
    if (x > above - clear && (x > here || x >= above)) blocker = room.upper;
    if (blocker >= 0) {
        lblRefusal->setText(ScoreRefusal(att, blocker, score));
        return false;
    }
    lblRefusal->clear();
    PlaceJudgedScore(att, index, score, judged);
    moveJudged_ = judged;
    return true;
}

JudgmentResult GuidedPage::placeTypedScore(int index, double score) {
    const std::int16_t att = currentAttribute();
    const std::vector<bool> judged = JudgedPoints(att);
    const JudgmentResult result = CheckJudgment(att, index, score, judged);
    lblRefusal->setText(result.reason);
    if (result.accepted) {
        PlaceJudgedScore(att, index, score, judged);
        moveJudged_ = judged;
    }
    return result;
}

void GuidedPage::releaseAsMoved(int index) {
    const QScopedValueRollback<double> moved(downLeft_, qQNaN());
    onMarkReleased(index);
}

void GuidedPage::rememberJudgment(int index) { RememberJudgedPoint(currentAttribute(), moveJudged_, index); }

QString GuidedPage::moveToExact(int index, double typed) {
    const JudgmentResult result = judgeTyped(index, typed);
    if (!result.accepted) lblRefusal->clear();
    return result.reason;
}

double GuidedPage::exactQuantity(int index) const {
    return wizardData().SmpX(currentAttribute(), index).toDouble();
}

void GuidedPage::onMarkPressed(int index) {
    Q_UNUSED(index)
    pressJudged_ = JudgedPoints(currentAttribute());
    lblRefusal->clear();
}

}  // namespace kelmar
