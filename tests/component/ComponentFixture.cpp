#include "ComponentFixture.h"

#include <utility>

namespace kelmartest {
namespace {

std::vector<std::pair<int, QPointer<FakePage>>> created;

template <int Id>
KelPage* makeFakePage() { return new FakePage(Id); }

constexpr PageFactory kFakes[] = {&makeFakePage<0>, &makeFakePage<1>, &makeFakePage<2>,
                                  &makeFakePage<3>, &makeFakePage<4>, &makeFakePage<5>,
                                  &makeFakePage<6>, &makeFakePage<7>, &makeFakePage<8>};

}  // namespace

FakePage::FakePage(int id) : KelPage(id) { created.emplace_back(id, this); }

int errorOf(const std::function<void()>& f) {
    try { f(); } catch (const RuntimeError& e) { return e.number(); }
    return 0;
}

void ComponentTest::SetUp() {
    for (int id = 0; id <= 8; ++id) {
        saved_.push_back(registeredPage(id));
        registerPage(id, kFakes[id]);
    }
    setModalRunner([this](QDialog& page) {
        modalShows.emplace_back(&page);
        const auto* kel = dynamic_cast<KelPage*>(&page);
        loadedWhenShown.push_back(kel && kel->isLoaded());
        page.show();
    });
    setMessageBoxHook([this](QMessageBox& box) {
        messages << box.windowTitle() + QStringLiteral(": ") + box.text();
        return QMessageBox::Ok;
    });
    dll.setEventSink(&host);
}

void ComponentTest::TearDown() {
    dll.setEventSink(nullptr);
    for (int id = 0; id <= 8; ++id) registerPage(id, saved_[static_cast<std::size_t>(id)]);
    setModalRunner({});
    setMessageBoxHook({});
    KelmarDll::setHelpHandler({});
    FakePage::failingLoad = -1;
    flushDeletes();
    for (const auto& p : created) delete p.second.data();
    created.clear();
    wizardData() = {};
}

FakePage* ComponentTest::open(std::int16_t id, float left, float top) {
    dll.ShowForm(id, left, top);
    return pageOf(id);
}

FakePage* ComponentTest::pageOf(int id) {
    for (auto it = created.rbegin(); it != created.rend(); ++it) {
        if (it->first == id) return it->second.data();
    }
    return nullptr;
}

}  // namespace kelmartest
