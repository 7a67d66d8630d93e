#pragma once

/// Where a trace record comes from. The texts are string literals: a record may be read long after
/// the call that wrote it.
struct TraceHeader {
    const char* file;     ///< source path without its ending
    int line;             ///< in that source
    const char* function; ///< name without class and arguments
};
