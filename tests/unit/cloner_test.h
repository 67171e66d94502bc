#pragma once

#include <string>
#include <vector>

#include "engine_test.h"

namespace vxtest {

/// Lines of a transcript.
using Lines = std::vector<std::string>;

/// The lines of all parts, one part after the other.
template <class... Parts>
Lines joined(const Parts&... parts) {
    Lines all;
    (all.insert(all.end(), parts.begin(), parts.end()), ...);
    return all;
}

// The transcripts of the helpers that every cloner uses.

inline Lines asked(const std::string& path) {
    return {"E/35 m_IsDataFileExist: IsDataFileExist strPath.c_str() " + path + "\n"};
}

inline Lines removed(const std::string& path) {
    return {"E/35 m_DeleteDirectory: Remove - " + path,
            "E/35 m_DeleteDirectory: Successfully removed [" + path + "]"};
}

inline Lines made(const std::string& path) {
    return {"E/35 m_CreateDir: Directory Path[" + path + "]"};
}

inline Lines copied(const std::string& source, const std::string& destination, int files) {
    Lines lines = {"E/35 m_CopyDirectory: src = " + source + ", dst = " + destination,
                   "E/35 m_CopyDirectory: Directories Checked"};
    for (int file = 0; file < files; ++file) {
        lines.emplace_back("E/35 m_CopyDirectory: -----------file copying------------");
    }
    lines.emplace_back("E/35 m_CopyDirectory: -----------reached end------------");
    return lines;
}

/// The transcript of adding an outcome such as "VXCLONE_AV_SETTINGS-FAIL" to a result list.
inline Lines reported(const std::string& outcome, const std::string& before = "") {
    return {"I/32 m_AppendCloneResultVConf: ", "vconf_get_str(\"db/hotel/clone_result\")",
            "vconf_set_str(\"db/hotel/clone_result\", \"" + before + outcome + "\n\")"};
}

/// An engine with an empty result list, as at the start of a run.
class ClonerTest : public EngineTest {
 protected:
    using Cloner = bool (VXCloneHandler::*)();

    ClonerTest() { tv.setSetting(kCloneResultKey, std::string()); }

    /// Runs the cloner with a direction: 0 is a backup, 1 is a restore, 2 is invalid.
    bool run(Cloner cloner, std::int32_t direction) {
        VXCloneHandler::m_ecloneType = direction;
        return (engine.*cloner)();
    }
};

}  // namespace vxtest
