// A host that loads the component at run time through the C entry points.
#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace {

using kelmar::Variant;
using kelmar::VariantArray;

TEST(LibraryLoadTest, AHostDrivesTheComponentThroughKelmarCreateAndKelmarDestroy) {
    void* handle = dlopen(KELMAR_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    auto create = reinterpret_cast<kelmar::KelmarDll* (*)()>(dlsym(handle, "KelmarCreate"));
    auto destroy = reinterpret_cast<void (*)(kelmar::KelmarDll*)>(dlsym(handle, "KelmarDestroy"));
    auto data = reinterpret_cast<kelmar::WizardData& (*)()>(dlsym(handle, "_ZN6kelmar10wizardDataEv"));
    ASSERT_TRUE(create && destroy && data) << "the entry points and the wizard data are exported";
    kelmar::KelmarDll* component = create();
    ASSERT_NE(component, nullptr);

    // What the host hands over lands in the library's own wizard data.
    Variant dir(QStringLiteral("/opt/quarn"));
    VariantArray scores(0, 1, 0, 0), one(0, 0);
    scores(1, 0) = Variant(30.0);
    component->TransferData(dir, 1, 2, 1, scores, one, one, one, one);
    EXPECT_EQ(data().AltPScore(1, 0).toDouble(), 30.0);

    destroy(component);
    data() = {};
    dlclose(handle);
}

}  // namespace
