#include "e2e/dissector/DrawnCaptureTest.h"

Bytes DrawnCaptureTest::definitions() {
    return tarnelRequest(definitionsMessage({{.action = 7, .targetType = 1, .target = "test/int"}},
                                            {{.id = 1, .name = "test/int", .type = 1}}));
}

Bytes DrawnCaptureTest::data(std::int32_t value) {
    return tarnelRequest(dataMessage({{7, value}}));
}

Bytes DrawnCaptureTest::query() {
    return tarnelRequest(dataMessage({}));
}

Bytes DrawnCaptureTest::outputs(const char* value) {
    return join({fromHex("18 00 00 00 01 00 00 00 04 00 00 00"), fromHex(value),
                 fromHex("FF FF 00 00 04 00 00 00 01 02 03 04")});
}

Bytes DrawnCaptureTest::registration() {
    return velmarRequest({registerDataref(7, 2, 0, "test/float")});
}

Bytes DrawnCaptureTest::registrationAnswer() {
    return fromHex("0C 00 00 00 01 00 00 00 07 00 00 00 01 00 00 00");
}
