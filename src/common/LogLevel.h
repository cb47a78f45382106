#pragma once

// Severity of a log message. Any int is a valid threshold; only these three are used for messages.
enum LogLevel : int {
    // Broken invariants. Always written, and the process is aborted after the line.
    LogLevelError = 1,
    // The threshold unless the verbose marker file exists.
    LogLevelWarning = 2,
    // Tracing.
    LogLevelVerbose = 3,
};
