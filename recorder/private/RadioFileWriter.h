#pragma once

#include "NodeText.h"

#include <iosfwd>
#include <string>
#include <vector>

/// Turns a tape into a radio file.
class RadioFileWriter {
public:
    /// @param channel as given to the recorder.
    /// @param met what the broker had, as bits.
    /// @param recorded to be written; it stays as it is.
    /// @param work of the same size, to be walked along.
    RadioFileWriter(unsigned channel, unsigned met, const Tape& recorded, Tape& work);

    /// @return whether the stream took it all.
    /// @throw std::bad_alloc, and what the stream throws.
    bool write(std::ostream& stream);

private:
    /// What a step makes of the file; a radio file has limits.
    struct Weight {
        std::size_t bytes = 0;
        std::size_t values = 0;
        std::size_t kept = 0; ///< bytes of the sections that a patch changes
    };

    class Walk;

    void fit();
    std::vector<std::string> notes();

    unsigned m_channel;
    unsigned m_met;
    const Tape& m_recorded;
    Tape& m_work;
    std::uint32_t m_folded = 0; ///< steps that a file has no room for
};
