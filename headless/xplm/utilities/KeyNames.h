#pragma once

namespace headless {

// A virtual key's name for people, "Return" or "F1"; an unknown key has an empty one. The text
// lives for ever.
const char* keyName(unsigned char virtualKey);

} // namespace headless
