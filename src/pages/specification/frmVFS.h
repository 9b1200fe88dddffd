// The function view (frmVFS): what the current attribute is and which kind of
// value function it has. Technique pages open it with their cmdS
// button; closing it raises UnloadKelVFS.
#pragma once

#include "pages/common/KelPage.h"

class QLabel;
class QPlainTextEdit;

namespace kelmar {

class frmVFS : public KelPage {
    Q_OBJECT
public:
    explicit frmVFS(QWidget* parent = nullptr);

    // "Cost-oriented." when the property reads as the number 1, otherwise
    // "Benefit-oriented.".
    static QString orientationText(const Variant& property);

protected:
    void onLoad() override;
    void onClosed() override;

private:
    QLabel* lblAttName_ = nullptr;
    QLabel* labCUFProperty_ = nullptr;
    QPlainTextEdit* txtCUFDefinition_ = nullptr;
    QLabel* lblFType_ = nullptr;
    QLabel* lblRange_ = nullptr;
};

}  // namespace kelmar
