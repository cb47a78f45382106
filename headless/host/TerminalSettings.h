#pragma once

namespace headless {

// Keeps the settings of the terminal of standard input, before a prompt changes them.
void keepTerminalSettings();

// Restores them, if any were kept. For signal handlers that end the process.
void restoreTerminalSettings();

} // namespace headless
