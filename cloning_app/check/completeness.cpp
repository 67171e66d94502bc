#include "cloning_app/check/completeness.h"

#include <algorithm>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/television/category.h"
#include "cloning_app/television/setting_kinds.h"
#include "common/suggestion.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using vxcommon::printable;

constexpr VXClone kApplications = VXCLONE_VXHOTEL_FIRSTSCREEN_DATA;

/// The name of an application contains a dot, unlike a category, and no slash, unlike a setting.
bool isApplicationName(std::string_view name) {
    return name.find('.') != std::string_view::npos && name.find('/') == std::string_view::npos &&
           std::all_of(name.begin(), name.end(), [](char each) { return each > ' ' && each != '\x7f'; });
}

bool isFolderOfApplication(const PackageEntry& entry) {
    return entry.folder && entry.path.find('/') == std::string::npos && !categoryOfEntry(entry.path);
}

/// The first entry that is not sorted before this path.
std::vector<PackageEntry>::const_iterator entryFrom(const std::vector<PackageEntry>& entries,
                                                    std::string_view path) {
    return std::lower_bound(
        entries.begin(), entries.end(), path,
        [](const PackageEntry& entry, std::string_view wanted) { return entry.path < wanted; });
}

/// Whether the setting exists and has its type.
bool isAmong(const std::vector<Setting>& settings, const SettingFacts& facts) {
    const auto found = std::lower_bound(
        settings.begin(), settings.end(), facts.key,
        [](const Setting& setting, std::string_view wanted) { return setting.key < wanted; });
    return found != settings.end() && found->key == facts.key && hasTypeOf(facts, *found);
}

void addSettings(const std::vector<Setting>& settings, std::vector<Lack>& lacks) {
    for (const SettingFacts& facts : clonedSettings()) {
        if (!isAmong(settings, facts)) {
            lacks.push_back({VXCLONE_VCONF_DATA, std::string(facts.key)});
        }
    }
}

void addApplications(const Holdings& holdings, const std::vector<std::string>& applications,
                     std::vector<Lack>& lacks) {
    if (applications.empty() &&
        std::none_of(holdings.entries.begin(), holdings.entries.end(), isFolderOfApplication)) {
        lacks.push_back({kApplications});
    }
    for (const std::string& application : applications) {
        if (!holdings.hasEntry(application)) {
            lacks.push_back({kApplications, application});
        }
    }
}

void addParts(const Category& category, const Holdings& holdings, std::vector<Lack>& lacks) {
    if (!holdsAnyOf(holdings, category.value)) {
        lacks.push_back({category.value});
        return;
    }
    for (const std::string_view part : category.parts) {
        if (!holdings.hasContent(part)) {
            lacks.push_back({category.value, std::string(part)});
        }
    }
}

/// The applications that a package's manifest names.
std::vector<std::string> applicationsOf(const std::optional<ReadManifest>& manifest) {
    std::vector<std::string> applications;
    if (manifest) {
        for (const ManifestResult& result : manifest->manifest.origin.results) {
            if (result.category == categoryOf(kApplications).name && !result.application.empty()) {
                applications.push_back(result.application);
            }
        }
    }
    return applications;
}

/// Adds categories that the manifest calls failed, because the data of a failed service is not reliable.
void addFailed(const std::optional<ReadManifest>& manifest, std::vector<Lack>& lacks) {
    if (!manifest) {
        return;
    }
    for (const ManifestResult& result : manifest->manifest.origin.results) {
        const auto category = categoryCalled(result.category);
        const bool failed = category && verdictNamed(result.result) == Verdict::Failed;
        const bool known =
            failed && std::any_of(lacks.begin(), lacks.end(), [&](const Lack& lack) {
                return lack.category == *category &&
                       (result.application.empty() || lack.what.empty() || lack.what == result.application);
            });
        if (failed && !known) {
            lacks.push_back({*category, result.application});
        }
    }
}

/// Whether the package holds something that is listed as lacking.
bool isHeld(const Holdings& holdings, const Lack& lack) {
    if (lack.category == VXCLONE_VCONF_DATA && !lack.what.empty()) {
        const SettingFacts* const facts = clonedSetting(lack.what);
        return facts != nullptr && isAmong(holdings.settings, *facts);
    }
    return lack.what.empty()
               ? holdsAnyOf(holdings, lack.category) && categoryOf(lack.category).holding != Holding::Nothing
               : holdings.hasContent(lack.what);
}

std::string nameOf(const Lack& lack) {
    return std::string(categoryOf(lack.category).name) + (lack.what.empty() ? "" : " " + lack.what);
}

bool sameThing(const Lack& one, const Lack& other) {
    return one.category == other.category && one.what == other.what;
}

tl::unexpected<Error> unknownLack(std::string_view name, const std::string& noCategory) {
    std::vector<std::string> keys;
    for (const SettingFacts& setting : clonedSettings()) {
        keys.emplace_back(setting.key);
    }
    const std::string question = vxcommon::didYouMean(name, keys);
    return failure(ErrorCode::UnknownCategory, noCategory + "; or name a setting's key, or an application" +
                                                   (question.empty() ? "" : "; " + question));
}

/// The manifest's list without entries that only a later vxclone knows.
std::vector<Lack> listedIn(const std::vector<ManifestLack>& listed) {
    std::vector<Lack> lacks;
    for (const ManifestLack& each : listed) {
        if (const auto category = categoryCalled(each.category)) {
            lacks.push_back({*category, each.what, each.declared});
        }
    }
    return lacks;
}

}  // namespace

Result<Declared> Declared::parse(std::string_view list) {
    Declared declared;
    for (const std::string_view name : namesInList(list)) {
        if (clonedSetting(name) != nullptr || isApplicationName(name)) {
            declared.names_.emplace_back(name);
            continue;
        }
        const auto categories = parseCategories(name);
        if (!categories) {
            return unknownLack(name, categories.error().sentence);
        }
        declared.categories_.insert(declared.categories_.end(), categories->begin(), categories->end());
    }
    return declared;
}

bool Declared::holds(const Lack& lack) const {
    return std::find(categories_.begin(), categories_.end(), lack.category) != categories_.end() ||
           (!lack.what.empty() && std::find(names_.begin(), names_.end(), lack.what) != names_.end());
}

std::string Declared::sentenceAboutUnneeded(const std::vector<Lack>& lacks) const {
    std::string unneeded;
    const auto add = [&unneeded](std::string_view name) {
        unneeded += (unneeded.empty() ? "" : ", ") + printable(name).text();
    };
    for (const VXClone category : categories_) {
        if (std::none_of(lacks.begin(), lacks.end(),
                         [category](const Lack& lack) { return lack.category == category; })) {
            add(categoryOf(category).name);
        }
    }
    for (const std::string& name : names_) {
        if (std::none_of(lacks.begin(), lacks.end(),
                         [&name](const Lack& lack) { return lack.what == name; })) {
            add(name);
        }
    }
    return unneeded.empty() ? "" : "--without names what is not lacking: " + unneeded + ".";
}

Result<Holdings> Holdings::of(const Tree& package) {
    auto contents = readContents(package, Digests::None);
    VX_RETURN_IF_FAILED(contents);
    auto settings = readSettings(package);
    if (!settings && settings.error().code != ErrorCode::SettingsDamaged) {
        return tl::make_unexpected(settings.error());
    }
    return Holdings{std::move(contents->entries),
                    settings ? settings->value_or(std::vector<Setting>()) : std::vector<Setting>()};
}

bool Holdings::hasContent(std::string_view path) const {
    const auto same = entryFrom(entries, path);
    if (same != entries.end() && same->path == path && !same->folder) {
        return true;
    }
    const std::string folder = std::string(path) + "/";
    for (auto entry = entryFrom(entries, folder);
         entry != entries.end() && entry->path.compare(0, folder.size(), folder) == 0; ++entry) {
        if (!entry->folder) {
            return true;
        }
    }
    return false;
}

bool Holdings::hasEntry(std::string_view path) const {
    const auto found = entryFrom(entries, path);
    return found != entries.end() && found->path == path;
}

std::vector<std::string> applicationsOf(const std::vector<Row>& rows) {
    std::vector<std::string> applications;
    for (const Row& row : rows) {
        if (row.category == kApplications && !row.subject.empty()) {
            applications.push_back(row.subject);
        }
    }
    return applications;
}

std::vector<Lack> lacksOf(const Holdings& holdings, const std::vector<std::string>& applications) {
    std::vector<Lack> lacks;
    for (const Category& category : categories()) {
        switch (category.holding) {
            case Holding::Nothing:
            case Holding::FolderIfThere:
                break;
            case Holding::Folder:
                if (!holdings.hasEntry(category.entry)) {
                    lacks.push_back({category.value});
                }
                break;
            case Holding::Parts:
                addParts(category, holdings, lacks);
                break;
            case Holding::EachSetting:
                addSettings(holdings.settings, lacks);
                break;
            case Holding::EachApplication:
                addApplications(holdings, applications, lacks);
                break;
        }
    }
    return lacks;
}

void declare(std::vector<Lack>& lacks, const Declared& declared) {
    for (Lack& lack : lacks) {
        lack.declared = declared.holds(lack);
    }
}

bool holdsAnyOf(const Holdings& holdings, VXClone value) {
    const Category& category = categoryOf(value);
    switch (category.holding) {
        case Holding::Nothing:
            return true;
        case Holding::Folder:
        case Holding::FolderIfThere:
            return holdings.hasEntry(category.entry);
        case Holding::EachSetting:
            return !holdings.settings.empty();
        case Holding::EachApplication:
            return std::any_of(holdings.entries.begin(), holdings.entries.end(), isFolderOfApplication);
        case Holding::Parts:
            break;
    }
    return std::any_of(category.parts.begin(), category.parts.end(),
                       [&holdings](std::string_view part) { return holdings.hasContent(part); });
}

Completeness completenessOf(const std::optional<ReadManifest>& manifest, const Holdings& holdings) {
    Completeness result{lacksOf(holdings, applicationsOf(manifest)), {}};
    if (!manifest || !manifest->manifest.origin.lacks) {
        addFailed(manifest, result.lacks);
        return result;
    }
    std::vector<Lack> listed = listedIn(*manifest->manifest.origin.lacks);
    for (const Lack& lack : result.lacks) {
        if (std::none_of(listed.begin(), listed.end(),
                         [&lack](const Lack& each) { return sameThing(each, lack); })) {
            result.contradictions.push_back("it does not list " + nameOf(lack) +
                                            " as lacking, and does not hold it");
            listed.push_back(lack);
        }
    }
    for (const Lack& lack : listed) {
        if (isHeld(holdings, lack)) {
            result.contradictions.push_back("it lists " + nameOf(lack) + " as lacking, and holds it");
        }
    }
    result.lacks = std::move(listed);
    addFailed(manifest, result.lacks);
    return result;
}

std::vector<ManifestLack> manifestLacksOf(const std::vector<Lack>& lacks) {
    std::vector<ManifestLack> result;
    for (const Lack& lack : lacks) {
        result.push_back({std::string(categoryOf(lack.category).name), lack.what, lack.declared});
    }
    return result;
}

}  // namespace vxclone
