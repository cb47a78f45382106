// All of XPLMUtilities.h except the commands.

#include "XPLMUtilities.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "headless/xplm/FunctionTable.h"
#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/utilities/ErrorCallbacks.h"
#include "headless/xplm/utilities/KeyNames.h"
#include "headless/xplm/utilities/Situation.h"
#include "headless/xplm/utilities/SystemFolder.h"

using headless::give;
using headless::here;
using headless::Simulator;
using headless::SystemFolder;

namespace {

// The SDK promises this much for a path.
constexpr std::size_t kPathSize = 512;

} // namespace

void XPLMGetSystemPath(char* outSystemPath) {
    const SystemFolder& folder = here().Folder();
    if (headless::isGiven(outSystemPath, "path")) {
        headless::giveText(outSystemPath, kPathSize, folder.Path());
    }
}

void XPLMGetPrefsPath(char* outPrefsPath) {
    const SystemFolder& folder = here().Folder();
    if (headless::isGiven(outPrefsPath, "path")) {
        headless::giveText(outPrefsPath, kPathSize, folder.PreferencesFile());
    }
}

const char* XPLMGetDirectorySeparator(void) {
    here();
    return "/";
}

char* XPLMExtractFileAndPath(char* inFullPath) {
    here();
    if (!headless::isGiven(inFullPath, "path")) {
        return nullptr;
    }
    char* const separator = std::strrchr(inFullPath, '/');
    if (separator == nullptr) {
        return inFullPath;
    }
    *separator = '\0';
    return separator + 1;
}

int XPLMGetDirectoryContents(const char* inDirectoryPath, int inFirstReturn, char* outFileNames,
                             int inFileNameBufSize, char** outIndices, int inIndexCount,
                             int* outTotalFiles, int* outReturnedFiles) {
    const SystemFolder& folder = here().Folder();
    const std::vector<std::string> names =
        headless::isGiven(inDirectoryPath, "path")
            ? SystemFolder::NamesIn(folder.Absolute(inDirectoryPath))
            : std::vector<std::string>{};
    const int total = static_cast<int>(names.size());
    int returned = 0;
    int used = 0;
    for (int i = std::max(0, inFirstReturn); i < total && outFileNames != nullptr; ++i) {
        const std::string& name = names[static_cast<std::size_t>(i)];
        const int size = static_cast<int>(name.size()) + 1;
        if (used + size > inFileNameBufSize ||
            (outIndices != nullptr && returned >= inIndexCount)) {
            break;
        }
        if (outIndices != nullptr) {
            outIndices[returned] = outFileNames + used;
        }
        headless::giveText(outFileNames + used, name.size() + 1, name);
        used += size;
        ++returned;
    }
    give(outTotalFiles, total);
    give(outReturnedFiles, returned);
    return std::max(0, inFirstReturn) + returned >= total ? 1 : 0;
}

int XPLMLoadDataFile(XPLMDataFileType inFileType, const char* inFilePath) {
    Simulator& simulator = here();
    const bool loaded =
        inFileType == xplm_DataFile_Situation && inFilePath != nullptr &&
        headless::loadSituation(simulator.Datarefs(), simulator.Folder().Absolute(inFilePath));
    return loaded ? 1 : 0;
}

int XPLMSaveDataFile(XPLMDataFileType inFileType, const char* inFilePath) {
    Simulator& simulator = here();
    const bool saved =
        inFileType == xplm_DataFile_Situation && inFilePath != nullptr &&
        headless::saveSituation(simulator.Datarefs(), simulator.Folder().Absolute(inFilePath));
    return saved ? 1 : 0;
}

int XPLMInitialized(void) {
    here();
    return 1;
}

void XPLMGetVersions(int* outXPlaneVersion, int* outXPLMVersion, XPLMHostApplicationID* outHostID) {
    give(outXPlaneVersion, here().Version());
    give(outXPLMVersion, kXPLM_Version);
    give(outHostID, static_cast<XPLMHostApplicationID>(xplm_Host_XPlane));
}

XPLMLanguageCode XPLMGetLanguage(void) {
    here();
    return xplm_Language_English;
}

void* XPLMFindSymbol(const char* inString) {
    here();
    // Only functions of the SDK, though the process has others.
    const bool known =
        headless::isGiven(inString, "name") && headless::findSdkFunction(inString) != nullptr;
    return known ? ::dlsym(RTLD_DEFAULT, inString) : nullptr;
}

void XPLMSetErrorCallback(XPLMError_f inCallback) {
    here().Errors().Set(inCallback);
}

void XPLMDebugString(const char* inString) {
    here().DebugString(inString);
}

void XPLMSpeakString(const char* inString) {
    Simulator& simulator = here();
    if (headless::isGiven(inString, "text")) {
        simulator.Speak(inString);
    }
}

const char* XPLMGetVirtualKeyDescription(char inVirtualKey) {
    here();
    return headless::keyName(static_cast<unsigned char>(inVirtualKey));
}

void XPLMReloadScenery(void) {
    here().ReloadScenery();
}

void XPLMSimulateKeyPress(int /*inKeyType*/, int /*inKey*/) {
    here().NotSimulated();
}

void XPLMCommandKeyStroke(XPLMCommandKeyID /*inKey*/) {
    here().NotSimulated();
}

void XPLMCommandButtonPress(XPLMCommandButtonID /*inButton*/) {
    here().NotSimulated();
}

void XPLMCommandButtonRelease(XPLMCommandButtonID /*inButton*/) {
    here().NotSimulated();
}
