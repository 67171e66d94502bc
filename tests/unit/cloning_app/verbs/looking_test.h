#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "cloning_app/verbs/diff.h"
#include "cloning_app/verbs/inspect.h"
#include "cloning_app/verbs/list.h"
#include "tests/unit/cloning_app/run_test.h"
#include "tests/unit/cloning_app/sealed_package.h"

/// A sealed package on a stick, and the output of the commands that change nothing.
class LookingTest : public RunTest {
 protected:
    LookingTest() { fill(package_); }

    std::string fill(const std::filesystem::path& folder, const std::string& volume = "12") {
        writeFile(folder / "vconf/Vconf.json", R"({"a/volume":{"int":)" + volume + R"(},"b/on":{"bool":1},)" +
                                                   R"(")" + kPinSetting +
                                                   R"(":{"string":"4711"},"c/text":{"string":"hello"}})");
        writeFile(folder / "VXHotel/menu.json", "menu");
        writeFile(folder / "logo/logo.png", "boot");
        writeFile(folder / "avoc.db", "a");
        return sealFolder(folder);
    }

    /// Writes the output, and checks that the stick is unchanged and no secret is printed. Result: the text.
    std::string said(const vxclone::Result<vxclone::Output>& output, bool json = false) {
        std::ostringstream out;
        std::ostringstream err;
        status_ = vxclone::sayOutput(output, json, {out, screen_}, {err, screen_});
        EXPECT_EQ(out.str().find("4711"), std::string::npos) << out.str();
        return out.str() + err.str();
    }

    /// The lines of the JSON output.
    std::vector<nlohmann::json> lines(const vxclone::Result<vxclone::Output>& output) {
        std::istringstream text(said(output, true));
        std::vector<nlohmann::json> parsed;
        for (std::string line; std::getline(text, line);) {
            parsed.push_back(nlohmann::json::parse(line));
            EXPECT_EQ(parsed.back().at("version"), 1);
        }
        return parsed;
    }

    /// The width of the widest line in columns.
    static std::size_t widestLine(const std::string& text) {
        std::istringstream lines(text);
        std::size_t widest = 0;
        for (std::string line; std::getline(lines, line);) {
            widest = std::max(widest, vxcommon::displayWidth(line));
        }
        return widest;
    }

    int status_ = -1;
    vxcommon::Screen screen_{200, false, false};
};
