// SPDX-License-Identifier: MIT
#include "saved/SavedProfiles.h"
#include "saved/Sylk.h"
#include "shell/Message.h"

#include <OrUtils.h>
#include <WMEnh.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <libgen.h>
#include <unistd.h>

namespace {

// Module state: what the file chooser proposes. Made from the first saved profile at the first export; after
// that, whatever the chooser has left.
constexpr int pathCapacity = 256;
static_assert(pathCapacity == ORVEL_NAME_SIZE);
int exportFirstUse = 1;
char exportDirectory[pathCapacity];
char exportFilter[pathCapacity];
char exportDefaultName[pathCapacity];
char exportPath[pathCapacity];
char exportSourceName[pathCapacity];

// target has pathCapacity bytes; what is longer is cut.
void copyPath(char* target, const char* source)
{
    std::strncpy(target, source, pathCapacity - 1);
    target[pathCapacity - 1] = '\0';
}

void prepareDefaults()
{
    copyPath(exportSourceName, savedProfiles[0]->imageName);
    OrvelGenerateFileName(exportSourceName, "PRF", "slk", exportDefaultName);
    copyPath(exportFilter, "*.slk");
    if (OrvelIsADatabaseURI(exportSourceName)) {
        copyPath(exportDirectory, OrvelGetVerifyDataDirectory());
    } else {
        char* duplicate = strdup(exportSourceName);
        copyPath(exportDirectory, dirname(duplicate));
        std::free(duplicate);
    }
    exportFirstUse = 0;
}

bool choosePath()
{
    WMSetGetFileSrc("ZVE_DEF_DIR:", "SYLK_EXT:");
    WMSetCenterOnScreen(1);
    return WMInlineFileChooser("Save as SYLK Spreadsheet", exportDirectory, exportFilter, pathCapacity, 12,
                               exportDefaultName, exportPath, 0, 0, 0) != 0;
}

// Removes an existing file once the user agrees. False when the user declines.
bool makeWay()
{
    if (access(exportPath, F_OK) != 0)
        return true;
    WMSetCenterOnScreen(1);
    if (!WMConfirm("File already exists.\nDo you want to Overwrite it?"))
        return false;
    unlink(exportPath);
    return true;
}

} // namespace

void writeSavedProfiles(Widget, XtPointer, XtPointer)
{
    if (savedCount < 1) {
        WMShowWarning("No profiles have been saved");
        return;
    }
    if (exportFirstUse)
        prepareDefaults();
    if (!choosePath() || !makeWay())
        return;
    FILE* file = fopen64(exportPath, "w");
    if (!file)
        return;
    writeSylk(file, savedProfiles, savedCount, settings.showFwhm);
    std::fclose(file);
    showMessage("File %s saved.", exportPath);
    clearSavedProfiles(nullptr, nullptr, nullptr);
}
