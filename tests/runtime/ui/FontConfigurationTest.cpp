#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "runtime/ui/FontConfiguration.h"

namespace vx {
namespace {

std::string StringOf(FcPattern* pattern, const char* field) {
    FcChar8* value = nullptr;
    return pattern != nullptr && FcPatternGetString(pattern, field, 0, &value) == FcResultMatch
               ? reinterpret_cast<const char*>(value)
               : "";
}

// What a configuration offers to the toolkit: every font file with its
// family, and the file that each generic request resolves to, which the
// rules of the configuration files decide.
std::multiset<std::string> Offered(FcConfig* config) {
    std::multiset<std::string> lines;
    FcPattern* all = FcPatternCreate();
    FcObjectSet* fields = FcObjectSetBuild(FC_FAMILY, FC_FILE, nullptr);
    FcFontSet* fonts = FcFontList(config, all, fields);
    for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) {
        lines.insert(StringOf(fonts->fonts[i], FC_FILE) + " " +
                     StringOf(fonts->fonts[i], FC_FAMILY));
    }
    for (const char* generic : {"sans-serif", "serif", "monospace", "Monaco"}) {
        FcPattern* request = FcNameParse(reinterpret_cast<const FcChar8*>(generic));
        FcConfigSubstitute(config, request, FcMatchPattern);
        FcDefaultSubstitute(request);
        FcResult result = FcResultNoMatch;
        FcPattern* match = FcFontMatch(config, request, &result);
        lines.insert(std::string(generic) + " -> " + StringOf(match, FC_FILE));
        FcPatternDestroy(match);
        FcPatternDestroy(request);
    }
    FcFontSetDestroy(fonts);
    FcObjectSetDestroy(fields);
    FcPatternDestroy(all);
    return lines;
}

// Configuration files that were read without being applied: the templates
// that only listing tools read.
int TemplatesRead(FcConfig* config) {
    FcConfigFileInfoIter file;
    FcConfigFileInfoIterInit(config, &file);
    int templates = 0;
    do {
        FcChar8* name = nullptr;
        FcChar8* description = nullptr;
        FcBool enabled = FcTrue;
        if (FcConfigFileInfoIterGet(config, &file, &name, &description, &enabled)) {
            templates += enabled ? 0 : 1;
            FcStrFree(name);
            FcStrFree(description);
        }
    } while (FcConfigFileInfoIterNext(config, &file));
    return templates;
}

TEST(FontConfiguration, theToolkitsConfigurationOffersWhatTheLibrarysOwnStartOffers) {
    // The toolkit of the tests came up as the application's does, so its font
    // configuration is the one loaded then.
    _LoadFontConfiguration();
    FcConfig* current = FcConfigGetCurrent();
    FcConfig* reference = FcInitLoadConfigAndFonts();
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(Offered(current), Offered(reference));
    const int referenceTemplates = TemplatesRead(reference);
    FcConfigDestroy(reference);
    if (referenceTemplates == 0) {
        GTEST_SKIP() << "this system has no configuration templates to leave out";
    }
    EXPECT_EQ(TemplatesRead(current), 0);
}

}  // namespace
}  // namespace vx
