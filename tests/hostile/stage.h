#pragma once

#include <filesystem>
#include <ios>
#include <string>
#include <vector>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"

namespace vxtest {

/// A setting that every package carries.
inline constexpr const char* kWelcome = "db/vxhotel/hotelmenu/welcomemessage";

/// How an attempt to restore or to verify a package ended.
struct Outcome {
    int status = -1;
    std::string code = {};     ///< the error's name; empty where there was none
    std::string message = {};  ///< the sentences of the end
    std::string digest = {};   ///< the package's, where it was let in
};

/// A television that packages are tried on. Its programs may run in this process or in a session of its own.
class Target {
 public:
    Target(std::filesystem::path folder, std::filesystem::path opt);

    const std::filesystem::path& folder() const { return folder_; }
    std::filesystem::path cloneRoot() const;

    /// Empties the clone folder, and forgets the calls so far.
    void makeReady();

    /// All that a refused package must leave as it was: database, secure storage, applications and pictures;
    /// not the clone folder's content and the record of the last run.
    FileTree state() const;

    /// The platform calls since the last time this was asked that do more than look.
    std::vector<std::string> changingCalls();

 private:
    std::filesystem::path folder_;
    std::filesystem::path opt_;
    std::streamoff callsRead_ = 0;
};

/// What every attempt needs, made once for the program: a good package, one of another television, a stick,
/// and two televisions to try on.
///
/// `here` is driven by vxclone's own functions in this process, with the clone library behind them: that is
/// quick. `there` is driven by the program in a session, as an installer would.
class Stage {
 public:
    static Stage& instance();

    const std::filesystem::path& good() const { return good_; }
    const std::filesystem::path& other() const { return other_; }
    const std::string& goodDigest() const { return goodDigest_; }
    std::filesystem::path stick() const { return place_ / "stick"; }
    std::filesystem::path package() const { return stick() / "clone"; }
    /// The television that the good package was made of.
    std::filesystem::path source() const { return place_ / "source"; }
    /// A folder outside of everything, at which links point. It must stay as it is.
    std::filesystem::path bait() const { return place_ / "bait"; }

    /// Puts the good package, or another, on the emptied stick.
    void layPackage() const { layPackage(good_); }
    void layPackage(const std::filesystem::path& package) const;

    Target& here() { return here_; }
    Target& there() { return there_; }
    const Target& there() const { return there_; }

    /// A restore of the package on the stick by the functions, or by the program with further arguments.
    Outcome restoreHere(const std::string& expect = {}, bool dryRun = false) const;
    Outcome restoreThere(const std::vector<std::string>& arguments = {}) const;

    /// Any command in the second television.
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

/// Whether every case is to be run by the whole program, too: the variable VX_LONG is set.
bool inLongForm();

}  // namespace vxtest
