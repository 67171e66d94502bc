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

/// The things that a person declared as missing on a television: categories, settings and applications.
class Declared {
 public:
    /// Reads a list such as "was,org.vorta.orvel-app": categories as in `parseCategories`, keys of cloned
    /// settings, and names of applications; blanks around them are ignored. An empty list declares nothing.
    /// Errors: `UnknownCategory` if a name is none of these.
    static Result<Declared> parse(std::string_view list);

    bool holds(const Lack& lack) const;
    /// A sentence about declared names of which nothing is lacking; empty if there are none.
    std::string sentenceAboutUnneeded(const std::vector<Lack>& lacks) const;

 private:
    std::vector<VXClone> categories_;
    std::vector<std::string> names_;
};

/// The content of a package as far as it matters for completeness.
struct Holdings {
    std::vector<PackageEntry> entries;  ///< sorted by their paths; digests are not needed
    std::vector<Setting> settings;

    /// Errors: the package cannot be read. A damaged settings file counts as having no setting.
    static Result<Holdings> of(const Tree& package);

    /// Whether the file exists, or the folder exists and contains a file at any depth.
    bool hasContent(std::string_view path) const;
    /// Whether there is an entry of any kind with this path.
    bool hasEntry(std::string_view path) const;
};

/// The applications in the rows, each once.
std::vector<std::string> applicationsOf(const std::vector<Row>& rows);

/// What the package lacks, in the order of the categories, with nothing declared. `applications` are those of
/// the television from which it was made. Logos and the files of the home menu are not checked here, because
/// only the television knows which ones should exist.
std::vector<Lack> lacksOf(const Holdings& holdings, const std::vector<std::string>& applications);

/// Sets `declared` for the declared lacks.
void declare(std::vector<Lack>& lacks, const Declared& declared);

/// Whether the package holds anything of the category. True for a category without an entry of its own.
bool holdsAnyOf(const Holdings& holdings, VXClone category);

/// The completeness of a package.
struct Completeness {
    std::vector<Lack> lacks;
    std::vector<std::string> contradictions;  ///< contradictions between manifest and package
};

/// Compares the content of a package with the lacks in its manifest. A package without a manifest, or from an
/// earlier vxclone, is judged by its content.
Completeness completenessOf(const std::optional<ReadManifest>& manifest, const Holdings& holdings);

/// The lacks in the form of the manifest.
std::vector<ManifestLack> manifestLacksOf(const std::vector<Lack>& lacks);

}  // namespace vxclone
