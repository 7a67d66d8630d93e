#pragma once

/// One member more than the library fills.
struct TraceHeader {
    const char* file;
    int line;
    const char* function;
    const char* thread = "main";
};
