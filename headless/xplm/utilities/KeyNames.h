#pragma once

namespace headless {

// A virtual key's name for display, "Return" or "F1"; empty for an unknown key. The text is never
// freed.
const char* keyName(unsigned char virtualKey);

} // namespace headless
