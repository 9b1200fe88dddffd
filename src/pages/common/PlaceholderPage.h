// A page for a technique that this version does not offer yet. It carries
// the technique's title and the navigation of every technique page, so the
// wizard stays usable: Back returns to the settings page, Finish exports.
#pragma once

#include "pages/common/KelPage.h"

namespace kelmar {

class PlaceholderPage : public KelPage {
    Q_OBJECT
public:
    explicit PlaceholderPage(int pageId, QWidget* parent = nullptr);

    // The window title and the form name of each page id.
    static QString titleFor(int pageId);
    static QString formNameFor(int pageId);

protected:
    void onLoad() override;
};

}  // namespace kelmar
