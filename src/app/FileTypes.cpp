#include "app/FileTypes.h"

#include "runtime/ui/RuntimeLifecycle.h"

namespace vx::FileTypes {

namespace {
struct Description {
    const char* name;
    const char* extensions;
    bool imported;
};

Ref<FileType> Make(const Description& description) {
    auto type = New<FileType>();
    type->Name(description.name);
    type->Extensions(description.extensions);
    type->MacType("????");
    type->MacCreator("");
    type->MimeType("");
    type->Imported(description.imported);
    type->ConformsTo("");
    return type;
}
}  // namespace

void _Initialize() {
    pvxpk = Make({"Vantrelix App", ".vxpk", false});
    pAllFileTypes.push_back(pvxpk);
    (void)vxpk()->Operator_Convert();

    pAny = Make({"Any", ".*", true});
    pAllFileTypes.push_back(pAny);
    (void)Any()->Operator_Convert();

    RuntimeAddFinalizer([] {
        pAllFileTypes.clear();
        pAny = nullptr;
        pvxpk = nullptr;
    });
}

}  // namespace vx::FileTypes
