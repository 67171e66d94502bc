#include "cloning_app/verbs/inspect.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/check/package_look.h"
#include "cloning_app/package/settings_file.h"
#include "cloning_app/television/setting_kinds.h"
#include "cloning_app/television/settings_store.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using Json = nlohmann::ordered_json;
using vxcommon::Colour;
using vxcommon::TerminalTable;

constexpr const char* kFileKind = "file";

/// A package is inspected as far as it can be understood.
OutputLine packageLine(const std::string& path, const PackageLook& look, const PackageContents& contents) {
    const TreeSize size = sizeOf(contents);
    Json members = factsOf(path, look);
    members["files"] = size.files;
    members["bytes"] = size.bytes;
    const PackageOrigin origin = look.manifest ? look.manifest->manifest.origin : PackageOrigin{};
    const Identity identity = look.identity.value_or(Identity{});
    TerminalTable table({"package", path});
    const std::optional<std::string> tuner =
        identity.tuner ? std::optional(std::to_string(*identity.tuner)) : std::nullopt;
    for (const auto& [name, value] :
         {std::pair("name", orDash(origin.name)), std::pair("made", orDash(origin.madeAt)),
          std::pair("by", orDash(origin.madeBy)), std::pair("model", orDash(identity.model)),
          std::pair("product tag", orDash(identity.productTag)), std::pair("tuner type", orDash(tuner)),
          std::pair("size", sizeText(size)),
          std::pair("digest", look.manifest ? look.manifest->digest : "-")}) {
        table.addRow({{name, Colour::Plain}, {value, Colour::Plain}});
    }
    return {Event::Result, std::move(members), {}, std::move(table)};
}

void addChecks(Output& output, const std::vector<Check>& checks) {
    TerminalTable table({"check", "", "result"});
    for (const Check& check : checks) {
        output.lines.push_back(lineOf(check));
        table.addRow({{std::string(nameOf(check.subject)), Colour::Plain},
                      {std::string(wordsOf(check.subject)), Colour::Dim},
                      {textOf(check), colourOf(check)}});
    }
    output.lines.push_back(lineOf(std::move(table)));
}

/// The result names of a later vxclone are shown unchanged.
std::string wordsOfResult(const ManifestResult& result) {
    const auto verdict = verdictNamed(result.result);
    return (verdict ? std::string(wordsOf(*verdict)) : result.result) +
           (result.detail.empty() ? "" : ": " + result.detail);
}

void addCategories(Output& output, const PackageLook& look) {
    if (!look.manifest) {
        return;
    }
    TerminalTable table({"category", "", "result when it was made"});
    for (const ManifestResult& result : look.manifest->manifest.origin.results) {
        Json members = {{"kind", "category"}, {"category", result.category}, {"result", result.result}};
        for (const auto& [name, text] :
             {std::pair("application", &result.application), std::pair("detail", &result.detail)}) {
            if (!text->empty()) {
                members[name] = *text;
            }
        }
        output.lines.push_back({Event::Result, std::move(members)});
        table.addRow({{result.category, Colour::Plain},
                      {result.application, Colour::Plain},
                      {wordsOfResult(result), Colour::Plain}});
    }
    output.lines.push_back(lineOf(std::move(table)));
}

void addFiles(Output& output, const PackageContents& contents, bool everyFile) {
    TerminalTable table({"file", "size"});
    std::vector<PackageEntry> files = contents.entries;
    files.insert(files.end(), contents.own.begin(), contents.own.end());
    std::sort(files.begin(), files.end(),
              [](const PackageEntry& one, const PackageEntry& other) { return one.path < other.path; });
    for (const PackageEntry& entry : files) {
        if (!entry.folder) {
            output.lines.push_back(
                {Event::Result, {{"kind", kFileKind}, {"path", entry.path}, {"bytes", entry.bytes}}});
            table.addRow({{entry.path, Colour::Plain}, {sizeText(entry.bytes), Colour::Plain}});
        }
    }
    if (everyFile) {
        output.lines.push_back(lineOf(std::move(table)));
    }
}

void addSettings(Output& output, const std::vector<Setting>& settings) {
    TerminalTable table({"setting", "", "value"});
    for (const Setting& setting : settings) {
        const SettingKind kind = kindOf(setting.key);
        const std::string kindName(nameOf(kind));
        output.lines.push_back({Event::Result,
                                {{"kind", "setting"},
                                 {"setting", setting.key},
                                 {"value", jsonValue(setting)},
                                 {"settingKind", kindName}}});
        table.addRow({{setting.key, Colour::Plain},
                      {kind == SettingKind::Ordinary ? "" : kindName, Colour::Plain},
                      {shownValue(setting), Colour::Plain}});
    }
    output.lines.push_back(lineOf(std::move(table)));
}

struct InspectArguments {
    std::string folder;
    bool files = false;
    bool json = false;
};

}  // namespace

Result<Output> inspectPackage(const std::filesystem::path& folder, bool everyFile) {
    const auto package = OpenPackage::open(folder);
    VX_RETURN_IF_FAILED(package);
    const Tree tree = package->tree();
    const auto look = lookAt(tree);
    VX_RETURN_IF_FAILED(look);
    const auto contents = readContents(tree, Digests::None);
    VX_RETURN_IF_FAILED(contents);
    Output output{{packageLine(tree.path, *look, *contents)}, statusOfLook(*look)};
    addChecks(output, look->checks);
    addCategories(output, *look);
    addLacks(output, look->lacks);
    addFiles(output, *contents, everyFile);
    if (const auto settings = readSettings(tree); !settings) {
        output.closing.push_back(settings.error().sentence);
        output.exitStatus =
            output.exitStatus == kExitOk ? exitStatusOf(settings.error().code) : output.exitStatus;
    } else if (*settings) {
        addSettings(output, **settings);
    }
    output.closing.emplace_back("Not checked: the files and the seal; vxclone verify does that.");
    return output;
}

void addInspectCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<InspectArguments>();
    CLI::App* const verb = app.add_subcommand("inspect", "Show what is in a package, without loading it");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    verb->add_flag("--files", arguments->files, "Name every file");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments](CloneEngine& /*engine*/) {
            return lookAlone(arguments->json,
                             [&] { return inspectPackage(arguments->folder, arguments->files); });
        };
    });
}

}  // namespace vxclone
