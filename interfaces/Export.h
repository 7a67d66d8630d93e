#pragma once

/// Marks what a library hands out on purpose; everything else stays hidden inside it.
#define QOR_EXPORT __attribute__((visibility("default")))
