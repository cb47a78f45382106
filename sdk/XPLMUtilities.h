#pragma once

// Paths and versions, the simulator's log, keys, and its commands: named actions that keys, buttons
// and plugins trigger.

#include "XPLMDefs.h"

// 512 characters. The system path ends with a separator; the preferences path names a file.
XPLM_API void XPLMGetSystemPath(char* outSystemPath);
XPLM_API void XPLMGetPrefsPath(char* outPrefsPath);
XPLM_API const char* XPLMGetDirectorySeparator(void);
// Cuts the path at its last separator and returns the file's name, which is in the same memory.
XPLM_API char* XPLMExtractFileAndPath(char* inFullPath);
// Names follow each other, each zero-terminated. Returns 1 if all fitted.
XPLM_API int XPLMGetDirectoryContents(const char* inDirectoryPath, int inFirstReturn,
                                      char* outFileNames, int inFileNameBufSize, char** outIndices,
                                      int inIndexCount, int* outTotalFiles, int* outReturnedFiles);

typedef int XPLMDataFileType;

enum { xplm_DataFile_Situation = 1, xplm_DataFile_ReplayMovie = 2 };

// 1 on success.
XPLM_API int XPLMLoadDataFile(XPLMDataFileType inFileType, const char* inFilePath);
XPLM_API int XPLMSaveDataFile(XPLMDataFileType inFileType, const char* inFilePath);

typedef int XPLMHostApplicationID;

enum {
    xplm_Host_Unknown = 0,
    xplm_Host_XPlane = 1,
    xplm_Host_PlaneMaker = 2,
    xplm_Host_WorldMaker = 3,
    xplm_Host_Briefer = 4,
    xplm_Host_PartMaker = 5,
    xplm_Host_YoungsMod = 6,
    xplm_Host_XAuto = 7
};

typedef int XPLMLanguageCode;

enum {
    xplm_Language_Unknown = 0,
    xplm_Language_English = 1,
    xplm_Language_French = 2,
    xplm_Language_German = 3,
    xplm_Language_Italian = 4,
    xplm_Language_Spanish = 5,
    xplm_Language_Korean = 6,
    xplm_Language_Russian = 7,
    xplm_Language_Greek = 8,
    xplm_Language_Japanese = 9,
    xplm_Language_Chinese = 10,
    xplm_Language_Ukrainian = 11
};

XPLM_API int XPLMInitialized(void);
// Null if not needed.
XPLM_API void XPLMGetVersions(int* outXPlaneVersion, int* outXPLMVersion,
                              XPLMHostApplicationID* outHostID);
XPLM_API XPLMLanguageCode XPLMGetLanguage(void);
// A function of the SDK by name; null if unknown.
XPLM_API void* XPLMFindSymbol(const char* inString);

typedef void (*XPLMError_f)(const char* inMessage);

// Called about bad arguments of the calling plugin.
XPLM_API void XPLMSetErrorCallback(XPLMError_f inCallback);

// Appends the text to the simulator's log unchanged; no newline is added.
XPLM_API void XPLMDebugString(const char* inString);

XPLM_API void XPLMSpeakString(const char* inString);
XPLM_API const char* XPLMGetVirtualKeyDescription(char inVirtualKey);
XPLM_API void XPLMReloadScenery(void);

// Commands of the first SDK, by number.
typedef int XPLMCommandKeyID;
typedef int XPLMCommandButtonID;

XPLM_API void XPLMSimulateKeyPress(int inKeyType, int inKey);
XPLM_API void XPLMCommandKeyStroke(XPLMCommandKeyID inKey);
XPLM_API void XPLMCommandButtonPress(XPLMCommandButtonID inButton);
XPLM_API void XPLMCommandButtonRelease(XPLMCommandButtonID inButton);

typedef int XPLMCommandPhase;

enum { xplm_CommandBegin = 0, xplm_CommandContinue = 1, xplm_CommandEnd = 2 };

typedef void* XPLMCommandRef;

// Returns 1 to let the command go on to other handlers and the simulator, 0 to swallow it.
typedef int (*XPLMCommandCallback_f)(XPLMCommandRef inCommand, XPLMCommandPhase inPhase,
                                     void* inRefcon);

// Returns null for an unknown name.
XPLM_API XPLMCommandRef XPLMFindCommand(const char* inName);
XPLM_API void XPLMCommandBegin(XPLMCommandRef inCommand);
XPLM_API void XPLMCommandEnd(XPLMCommandRef inCommand);
XPLM_API void XPLMCommandOnce(XPLMCommandRef inCommand);
// Returns the existing command if the name is known.
XPLM_API XPLMCommandRef XPLMCreateCommand(const char* inName, const char* inDescription);
// `inBefore` is 1 for a handler that runs before the simulator's own.
XPLM_API void XPLMRegisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler,
                                         int inBefore, void* inRefcon);
XPLM_API void XPLMUnregisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler,
                                           int inBefore, void* inRefcon);
