#include "ComponentFixture.h"

namespace kelmartest {

void loadSmallProblem() {
    Variant dir(QStringLiteral("/opt/quarn"));
    VariantArray scores(0, 2, 0, 1), values(0, 2, 0, 1), names(0, 1), defs(0, 1), props(0, 1);
    for (int i = 0; i < 3; ++i) {
        scores(i, 0) = Variant(10.0 * (i + 1));
        scores(i, 1) = Variant(1.0 * (i + 1));
    }
    names(0) = Variant(QStringLiteral("Cost"));
    names(1) = Variant(QStringLiteral("Comfort"));
    defs(0) = Variant(QStringLiteral("  Price in kEUR  "));
    defs(1) = Variant(QStringLiteral("Seat comfort, 1 to 3"));
    props(0) = Variant(QStringLiteral("1"));
    props(1) = Variant(QStringLiteral("0"));
    TransferProblemData(dir, 1, 3, 2, scores, values, names, defs, props);
    VariantArray lo(0, 1), mid(0, 1), hi(0, 1), tech(0, 1), size(0, 1), x(0, 1, 0, 10),
        y(0, 1, 0, 10), a(0, 1), b(0, 1), c(0, 1), d(0, 1), type(0, 1);
    for (int j = 0; j < 2; ++j) {
        const double l = j == 0 ? 10.0 : 1.0;
        const double h = j == 0 ? 30.0 : 3.0;
        lo(j) = Variant(l);
        hi(j) = Variant(h);
        mid(j) = Variant((l + h) / 2);
        tech(j) = Variant(std::int16_t{1});
        size(j) = Variant(std::int16_t{2});
        x(j, 0) = Variant(l);
        x(j, 1) = Variant(h);
        y(j, 0) = Variant(j == 0 ? 1.0 : 0.0);
        y(j, 1) = Variant(j == 0 ? 0.0 : 1.0);
        type(j) = Variant(std::int16_t{0});
    }
    TransferValueFunctions(lo, mid, hi, 100, tech, size, x, y, a, b, c, d, type);
    WizardData& w = wizardData();
    // What the settings step would have prepared.
    w.ScoreMinimum = lo;
    w.ScoreMiddle = mid;
    w.ScoreMaximum = hi;
    w.VFunParA = a;
    w.VFunParB = b;
    w.VFunParC = c;
    w.VFunParD = d;
    w.VFunType = type;
    w.AttPropertyCopy = props;
    w.MaxVal = 100;
    w.SelAtt = 0;
}

void ComponentTest::SetUp() {
    createdPages().clear();
    for (int id = 0; id <= 8; ++id) saved_.push_back(registeredPage(id));
    registerPage(0, &makeFakePage<0>);
    registerPage(1, &makeFakePage<1>);
    registerPage(2, &makeFakePage<2>);
    registerPage(3, &makeFakePage<3>);
    registerPage(4, &makeFakePage<4>);
    registerPage(5, &makeFakePage<5>);
    registerPage(6, &makeFakePage<6>);
    registerPage(7, &makeFakePage<7>);
    registerPage(8, &makeFakePage<8>);
    setModalRunner([this](QDialog& page) {
        modalShows.emplace_back(&page);
        page.show();
    });
    setMessageBoxHook([this](QMessageBox& box) {
        messages << box.text();
        messageTitles << box.windowTitle();
        return QMessageBox::Ok;
    });
    loadSmallProblem();
}

void ComponentTest::TearDown() {
    for (int id = 0; id <= 8; ++id) registerPage(id, saved_[static_cast<std::size_t>(id)]);
    setModalRunner({});
    setMessageBoxHook({});
    KelmarDll::setHelpHandler({});
    flushDeletes();
    for (const CreatedPage& p : createdPages()) delete p.page.data();
    createdPages().clear();
    flushDeletes();
    wizardData() = {};
}

FakePage* ComponentTest::pageOf(int id) const {
    for (auto it = createdPages().rbegin(); it != createdPages().rend(); ++it) {
        if (it->id == id) return it->page.data();
    }
    return nullptr;
}

int ComponentTest::createdCount(int id) const {
    int n = 0;
    for (const CreatedPage& p : createdPages()) {
        if (p.id == id) ++n;
    }
    return n;
}

}  // namespace kelmartest
