#include "component/PageRegistry.h"

#include "pages/common/PlaceholderPage.h"

#include <map>

namespace kelmar {

namespace {
std::map<int, PageFactory>& registry() {
    static std::map<int, PageFactory> factories;
    return factories;
}
}  // namespace

bool registerPage(int pageId, PageFactory factory) {
    registry()[pageId] = factory;
    return true;
}

PageFactory registeredPage(int pageId) {
    const auto it = registry().find(pageId);
    return it != registry().end() ? it->second : nullptr;
}

KelPage* createPage(int pageId) {
    const auto it = registry().find(pageId);
    if (it != registry().end() && it->second != nullptr) return it->second();
    return new PlaceholderPage(pageId);
}

}  // namespace kelmar
