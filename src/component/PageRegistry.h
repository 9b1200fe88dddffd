// Which class builds the page of each id. Pages register themselves with
// KELMAR_REGISTER_PAGE in their own source file; an id without a page gets a
// placeholder page that still raises the proper events.
#pragma once

namespace kelmar {

class KelPage;

using PageFactory = KelPage* (*)();

// The registry key of the function view (frmVFS), which has no page id.
inline constexpr int kFunctionViewKey = 100;

// Registers (or replaces) the factory for a page id. Returns true so that it
// can initialise a namespace-scope constant.
bool registerPage(int pageId, PageFactory factory);
// The factory registered for an id, or nullptr (tests swap factories and
// put the old one back).
PageFactory registeredPage(int pageId);
// Creates a new page for the id: the registered class, or a placeholder.
KelPage* createPage(int pageId);

}  // namespace kelmar

#define KELMAR_REGISTER_PAGE(pageId, PageClass)                                          \
    namespace {                                                                           \
    [[maybe_unused]] const bool kelmarRegistered_##PageClass = ::kelmar::registerPage(    \
        (pageId), []() -> ::kelmar::KelPage* { return new PageClass(); });                \
    }
