#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What becomes of a file that is there already.
enum class IfThere {
    Replace,
    Refuse
};

/// Writes files, all of them or none.
///
/// Each is first written beside its place, under a name of its own, and moved there when all are
/// whole: a failure leaves what was there before and nothing new, and no reader sees half of a
/// file. A link is followed. What cannot be moved to its place is written there: what is no plain
/// file (a device, a pipe, /dev/stdout), and a file in a folder that takes no new one, whose old
/// content is put back if that fails.
class FileWriter {
public:
    explicit FileWriter(IfThere ifThere)
        : m_ifThere(ifThere) {}

    /// Adds a file.
    /// @param text must live until publish().
    /// @throw AnalysisError OtherTrouble if it can be told already that it cannot be written, or if
    ///        its place is taken by one that was added before. Nothing is written yet.
    void add(const std::string& path, std::string_view text);

    /// Writes all that was added.
    /// @throw AnalysisError OtherTrouble that names the file and why it cannot be written.
    void publish();

private:
    enum class Way {
        Beside, ///< written beside its place and moved there
        Within, ///< written over a file in a folder that takes no new one
        Through ///< written to what is no plain file
    };

    struct File {
        std::string path;  ///< as given
        std::string place; ///< where links lead to
        std::string_view text;
        Way way = Way::Beside;
        bool isThere = false;
        std::string beside = {}; ///< empty: none is there
    };

    static void stage(File& file);
    void move(File& file);

    /// Does something with the files of one way.
    template <class Act>
    void forEach(Way way, Act act);

    /// Takes away what stands beside, and what was moved to where nothing had been.
    void undo();

    IfThere m_ifThere;
    std::vector<File> m_files;
    std::vector<std::string> m_new; ///< what was moved to where nothing had been
};

/// Writes one file, over one that is there.
/// @throw AnalysisError OtherTrouble if it cannot be written.
void writeFile(const std::string& path, std::string_view text);
