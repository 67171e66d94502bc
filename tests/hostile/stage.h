#pragma once

#include <filesystem>
#include <ios>
#include <string>
#include <vector>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/long_form.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"

namespace vxtest {

/// A setting that every package contains.
inline constexpr const char* kWelcome = "db/vxhotel/hotelmenu/welcomemessage";

/// The result of restoring or verifying a package.
struct Outcome {
    int status = -1;
    std::string code = {};     ///< the error's name; empty where there was none
    std::string message = {};  ///< the sentences of the end
    std::string digest = {};   ///< the package's, where it was let in
};

/// A television on which packages are tried. Its programs run in this process or in a session of its own.
class Target {
 public:
    Target(std::filesystem::path folder, std::filesystem::path opt);

    const std::filesystem::path& folder() const { return folder_; }
    std::filesystem::path cloneRoot() const;

    /// Empties the clone folder, and forgets the previous calls.
    void makeReady();

    /// Everything that a refused package must not change: database, secure storage, applications and
    /// pictures. The clone folder's content and the record of the last run are left out.
    FileTree state() const;

    /// The platform calls since the last query that do more than look.
    std::vector<std::string> changingCalls();

 private:
    std::filesystem::path folder_;
    std::filesystem::path opt_;
    std::streamoff callsRead_ = 0;
};

/// The data for every attempt, made once in a program: a good package, one of another television, a stick,
/// and two televisions.
///
/// Vxclone's own functions drive `here` in this process, with the clone library behind them, which is fast.
/// The program drives `there` in a session, as an installer would.
class Stage {
 public:
    static Stage& instance();

    const std::filesystem::path& good() const { return good_; }
    const std::filesystem::path& other() const { return other_; }
    const std::string& goodDigest() const { return goodDigest_; }
    std::filesystem::path stick() const { return place_ / "stick"; }
    std::filesystem::path package() const { return stick() / "clone"; }
    /// The television from which the good package was made.
    std::filesystem::path source() const { return place_ / "source"; }
    /// A folder outside of everything, to which links point. It must not change.
    std::filesystem::path bait() const { return place_ / "bait"; }

    /// Puts the good package, or another, on the emptied stick.
    void layPackage() const { layPackage(good_); }
    void layPackage(const std::filesystem::path& package) const;

    Target& here() { return here_; }
    Target& there() { return there_; }
    const Target& there() const { return there_; }

    /// Restores the package on the stick with the functions, or with the program and further arguments.
    Outcome restoreHere(const std::string& expect = {}, bool dryRun = false) const;
    Outcome restoreThere(const std::vector<std::string>& arguments = {}) const;

    /// Runs any command in the second television.
    Finished inTelevision(const std::vector<std::string>& command) const;

    /// `vxclone ARGUMENTS` in the second television, and `vxtv ARGUMENTS` on this machine.
    Finished vxclone(const std::vector<std::string>& arguments) const;
    Finished vxtv(const std::vector<std::string>& arguments) const;

 private:
    Stage();
    void makePackages();
    void prepareThisProcess();
    Finished vxcloneIn(const std::string& television, const std::vector<std::string>& arguments) const;
    Finished runIn(const std::string& television, const std::vector<std::string>& command) const;

    TemporaryDirectory place_;
    std::filesystem::path good_ = place_ / "packages/good";
    std::filesystem::path other_ = place_ / "packages/other";
    std::string goodDigest_;
    Target here_;
    Target there_;
};

}  // namespace vxtest
