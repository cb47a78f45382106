#include <gtest/gtest.h>

#include "support/ScriptedServer.h"
#include "tools/orvane/serve/Controls.h"
#include "unit/client/VelmarClientTest.h"

namespace {

using namespace orvane::tool;
using Turn = ScriptedServer::Turn;

const CommandRequest kHold{"0123456789abcdef", "c/defghi"};

// The command c/defghi under the number 1.
const Turn kRegister{"55 66 77 88 03 00 00 00 01 00 00 00 08 63 2F 64 65 66 67 68 69",
                     "0C 00 00 00 03 00 00 00 01 00 00 00 01 00 00 00"};
const Turn kUnregister{"55 66 77 88 04 00 00 00 01 00 00 00",
                       "0C 00 00 00 04 00 00 00 01 00 00 00 01 00 00 00"};
const Turn kOnce{"55 66 77 88 07 00 00 00 01 00 00 00 01", "00 00 00 00"};
const Turn kBegin{"55 66 77 88 07 00 00 00 01 00 00 00 02", "00 00 00 00"};
const Turn kEnd{"55 66 77 88 07 00 00 00 01 00 00 00 03", "00 00 00 00"};
// On a new connection: registered, ended and unregistered in one request.
const Turn kRelease{
    "55 66 77 88 03 00 00 00 01 00 00 00 08 63 2F 64 65 66 67 68 69 "
    "07 00 00 00 01 00 00 00 03 04 00 00 00 01 00 00 00",
    "18 00 00 00 03 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 01 00 00 00 01 00 00 00"};

GlobalOptions optionsFor(const ScriptedServer& server) {
    GlobalOptions globals;
    globals.port = server.Port();
    globals.timeoutSeconds = 20;
    return globals;
}

TEST(ControlsTest, BeginsAgainWhatANewConnectionHasEnded) {
    const Turn other{"55 66 77 88 03 00 00 00 02 00 00 00 08 78 2F 64 65 66 67 68 69",
                     "10 00 00 00 03 00 00 00 02 00 00 00 02 00 00 00 02 00 00 00"};
    ScriptedServer server(
        {{{kRegister, kBegin, {other.request, ""}}, ScriptedServer::End::ByServer},
         {{kRelease, kRegister, other, kRegister, kBegin, kEnd, kUnregister}}});
    const GlobalOptions globals = optionsFor(server);
    Controls controls(globals);
    EXPECT_EQ(controls.Hold(kHold).status, 200);
    EXPECT_EQ(controls.Press("x/defghi").status, 503);
    EXPECT_EQ(controls.Press("x/defghi").status, 404);
    EXPECT_EQ(controls.Hold(kHold).status, 200);
    EXPECT_EQ(controls.Release(kHold).status, 200);
}

TEST(ControlsTest, ForgetsANameThatANewSimulatorDoesNotHave) {
    ScriptedServer server({{{kRegisterFloat, {kRead.request, ""}}, ScriptedServer::End::ByServer},
                           {{answeredWith(kRegisterFloat,
                                          "10 00 00 00 01 00 00 00 01 00 00 00 02 00 00 00 "
                                          "01 00 00 00")}},
                           {{kRegister, kOnce, kUnregister}}});
    const GlobalOptions globals = optionsFor(server);
    Controls controls(globals);
    EXPECT_EQ(controls.Set(parseSet(R"({"assignment":"a/b:float=2"})")).status, 503);
    EXPECT_EQ(controls.Press("c/defghi").status, 200);
}

} // namespace
