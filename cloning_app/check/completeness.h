#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/package/manifest_file.h"
#include "cloning_app/package/package_contents.h"
#include "cloning_app/package/settings_file.h"
#include "cloning_app/report/lack.h"
#include "cloning_app/report/result_table.h"

namespace vxclone {

/// What a person said that a television does not have: categories, settings and applications.
class Declared {
 public:
    /// Reads a list such as "was,org.vorta.orvel-app": categories as in `parseCategories`, keys of settings
    /// that travel, names of applications, with blanks around them or not. An empty list declares nothing.
    /// Errors: `UnknownCategory`, a name is none of these.
    static Result<Declared> parse(std::string_view list);

    bool holds(const Lack& lack) const;
    /// A sentence about the names that fit nothing of what is lacking; empty where each fits something.
    std::string sentenceAboutUnneeded(const std::vector<Lack>& lacks) const;

 private:
    std::vector<VXClone> categories_;
    std::vector<std::string> names_;
};

/// What a package holds, as far as its completeness goes.
struct Holdings {
    std::vector<PackageEntry> entries;  ///< sorted by their paths; digests are not needed
    std::vector<Setting> settings;

    /// Errors: the package cannot be read. A damaged settings file holds no setting.
    static Result<Holdings> of(const Tree& package);

    /// Whether there is the file, or the folder with a file somewhere in it.
    bool hasContent(std::string_view path) const;
    /// Whether there is an entry of this path, of whatever kind.
    bool hasEntry(std::string_view path) const;
};

/// The applications whose outcomes the rows tell of, each once.
std::vector<std::string> applicationsOf(const std::vector<Row>& rows);

/// What the package lacks, in the order of the categories, nothing of it declared. `applications` are those
/// of the television that it was made of. Logos and home menu's files are not judged: what of them should be
/// there only the television knows.
std::vector<Lack> lacksOf(const Holdings& holdings, const std::vector<std::string>& applications);

/// Sets `declared` of those that are declared.
void declare(std::vector<Lack>& lacks, const Declared& declared);

/// Whether the package holds anything of the category. True for one that has no entry of its own.
bool holdsAnyOf(const Holdings& holdings, VXClone category);

/// What is known of a package's completeness.
struct Completeness {
    std::vector<Lack> lacks;
    std::vector<std::string> contradictions;  ///< where the manifest says otherwise than the package holds
};

/// Compares what the package holds with what its manifest says that it lacks. A package without a manifest,
/// or of an earlier vxclone, is judged by what it holds.
Completeness completenessOf(const std::optional<ReadManifest>& manifest, const Holdings& holdings);

/// The form that a manifest keeps.
std::vector<ManifestLack> manifestLacksOf(const std::vector<Lack>& lacks);

}  // namespace vxclone
