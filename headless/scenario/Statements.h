#pragma once

#include "headless/scenario/Statement.h"

namespace headless {

// The parsers of all statements, for their table. Each reads the arguments after the first word.

Statement readGet(Arguments& arguments);
Statement readSet(Arguments& arguments);
Statement readExpect(Arguments& arguments);

Statement readPress(Arguments& arguments);
Statement readBegin(Arguments& arguments);
Statement readEnd(Arguments& arguments);
Statement readCommand(Arguments& arguments);
Statement readEvents(Arguments& arguments);
Statement readHandlers(Arguments& arguments);
Statement readClick(Arguments& arguments);

Statement readAircraft(Arguments& arguments);
Statement readMessage(Arguments& arguments);
Statement readPlugins(Arguments& arguments);
Statement readReload(Arguments& arguments);
Statement readDisable(Arguments& arguments);
Statement readEnable(Arguments& arguments);
Statement readStop(Arguments& arguments);
Statement readStart(Arguments& arguments);

Statement readWait(Arguments& arguments);
Statement readFrames(Arguments& arguments);
Statement readStep(Arguments& arguments);
Statement readPause(Arguments& arguments);
Statement readResume(Arguments& arguments);
Statement readRate(Arguments& arguments);

Statement readLog(Arguments& arguments);
Statement readWorst(Arguments& arguments);
Statement readResidentMemory(Arguments& arguments);
Statement readFileDescriptors(Arguments& arguments);
Statement readHelp(Arguments& arguments);
Statement readQuit(Arguments& arguments);

// The reply of statements that have nothing to report.
inline constexpr const char* kOk = "ok";

// A statement that changes something, has nothing to report and takes no more arguments.
Statement acting(Arguments& arguments, std::function<void(Flight&)> act);
// A statement that takes no more arguments and replies with the text.
Statement reporting(Arguments& arguments, std::function<std::string(Flight&)> report);
// A statement that throws ExpectationFailed if its expectation is not met.
Statement checking(Arguments& arguments, std::function<void(Flight&)> check);

} // namespace headless
