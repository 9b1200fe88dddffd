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
    using Create = kelmar::KelmarDll* (*)();
    using Destroy = void (*)(kelmar::KelmarDll*);
    auto create = reinterpret_cast<Create>(dlsym(handle, "KelmarCreate"));
    auto destroy = reinterpret_cast<Destroy>(dlsym(handle, "KelmarDestroy"));
    ASSERT_NE(create, nullptr) << dlerror();
    ASSERT_NE(destroy, nullptr) << dlerror();
    using Data = kelmar::WizardData& (*)();
    auto data = reinterpret_cast<Data>(dlsym(handle, "_ZN6kelmar10wizardDataEv"));
    ASSERT_NE(data, nullptr) << "the wizard data is reachable in the loaded library";

    kelmar::KelmarDll* component = create();
    ASSERT_NE(component, nullptr);

    // Two alternatives on one cost attribute, with a linear earlier function.
    Variant dir(QStringLiteral("/opt/quarn"));
    VariantArray scores(0, 1, 0, 0), values(0, 1, 0, 0), names(0, 0), defs(0, 0), props(0, 0);
    scores(0, 0) = Variant(12.0);
    scores(1, 0) = Variant(30.0);
    names(0) = Variant(QStringLiteral("Travel time"));
    defs(0) = Variant(QStringLiteral("Travel time to work in minutes"));
    props(0) = Variant(std::int16_t{1});
    component->TransferData(dir, 1, 2, 1, scores, values, names, defs, props);

    VariantArray lo(0, 0), mid(0, 0), hi(0, 0), tech(0, 0), size(0, 0), x(0, 0, 0, 10),
        y(0, 0, 0, 10), a(0, 0), b(0, 0), c(0, 0), d(0, 0), type(0, 0);
    lo(0) = Variant(10.0);
    mid(0) = Variant(20.0);
    hi(0) = Variant(30.0);
    tech(0) = Variant(std::int16_t{1});
    size(0) = Variant(std::int16_t{2});
    x(0, 0) = Variant(10.0);
    x(0, 1) = Variant(30.0);
    y(0, 0) = Variant(1.0);
    y(0, 1) = Variant(0.0);
    type(0) = Variant(std::int16_t{0});
    component->TransferVFunData(lo, mid, hi, 100, tech, size, x, y, a, b, c, d, type);

    const kelmar::WizardData& w = data();
    EXPECT_EQ(w.AltNum, 2);
    EXPECT_EQ(w.AttNum, 1);
    EXPECT_EQ(w.AltPScore(1, 0).toDouble(), 30.0);
    EXPECT_EQ(w.AttName(0).toString(), QStringLiteral("Travel time"));
    EXPECT_EQ(w.InMaxVal, 100);
    EXPECT_EQ(w.SmpX(0, 1).toDouble(), 30.0);
    EXPECT_EQ(w.SmpSize(0).toInteger(), 2);

    destroy(component);
    data() = {};
    dlclose(handle);
}

}  // namespace
