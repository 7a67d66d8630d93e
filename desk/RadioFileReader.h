#pragma once

#include "DocumentEdit.h"
#include "RadioFile.h"
#include "RadioFileError.h"

#include <cstddef>
#include <string_view>
#include <vector>

/// Turns the text of a radio file into a RadioFile.
class RadioFileReader {
public:
    // Bounds that no real radio comes near. Together with those of JsonReader they keep what any
    // file can ask for, reading and replay, below 64 MiB of memory.

    /// In bytes. Larger texts are refused, so whoever loads one may stop one byte behind.
    static constexpr std::size_t maxSize = std::size_t{2} << 20;

    /// Elements of every list but the requests, which are played one by one, and those below.
    static constexpr std::size_t maxListLength = 1024;

    /// Modulation-and-codes of a frame format, and rows of a Pmax table. Each code is answered and
    /// explained for itself, and there are 53 codes and 15 modulations.
    static constexpr std::size_t maxCodes = 256;
    static constexpr std::size_t maxPmaxRows = 256;

    /// Stored variables; a node has some hundreds.
    static constexpr std::size_t maxVariables = 1024;

    /// Bytes of the sections that the patches of a file change, once for each patch: every patch
    /// leaves a state of its own.
    static constexpr std::size_t maxPatchedBytes = std::size_t{16} << 20;

    /// What else is wanted of a reading.
    struct Wish {
        std::vector<DocumentEdit> edits = {}; ///< made one by one before anything is checked
        bool keepsPlaces = false;             ///< of what patches replace, for RadioFile::at()
    };

    /// Reads a document and checks all of it, every patch included.
    /// @throw RadioFileError for the first thing that is wrong.
    static RadioFile read(std::string_view text) { return read(text, Wish()); }
    static RadioFile read(std::string_view text, const Wish& wish);
};
