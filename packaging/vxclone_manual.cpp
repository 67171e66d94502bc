#include "packaging/vxclone_manual.h"

#include "cloning_app/base/error_catalogue.h"
#include "cloning_app/base/stamp.h"
#include "cloning_app/television/category.h"
#include "cloning_app/television/setting_kinds.h"
#include "cloning_app/verbs/app.h"

namespace vxpages {

namespace {

constexpr const char* kAbout =
    "vxclone runs on a hotel television. A backup saves what the television is set up with as a package, a\n"
    "folder on a USB stick; a restore loads such a package into the next television. A package is sealed:\n"
    "one that was altered, or that is from another kind of television, is refused before anything has\n"
    "changed.\n"
    "\n"
    "On a terminal a run shows one live line. NO_COLOR switches colours off.";

Section statusSection() {
    Section section{"Exit status", {}};
    for (const vxclone::StatusFact& fact : vxclone::exitStatuses()) {
        section.items.emplace_back(std::to_string(fact.status), std::string(fact.meaning));
    }
    return section;
}

Section errorSection() {
    Section section{"Errors", {}};
    for (const vxclone::ErrorFact& fact : vxclone::errorCatalogue()) {
        section.items.emplace_back(
            std::string(fact.name) + " (" + std::to_string(fact.exitStatus) + ")",
            "Cause: " + std::string(fact.cause) + ". Next step: " + std::string(fact.nextStep) + ".");
    }
    return section;
}

Section categorySection() {
    Section section{"Categories", {}};
    for (const vxclone::Category& category : vxclone::categories()) {
        section.items.emplace_back(std::string(category.name), std::string(category.words));
    }
    return section;
}

Choices choicesOfValues() {
    CliChoice categories;
    categories.several = true;
    for (const vxclone::Category& category : vxclone::categories()) {
        categories.words.emplace_back(category.name);
    }
    CliChoice lacking = categories;
    for (const vxclone::SettingFacts& setting : vxclone::clonedSettings()) {
        lacking.words.emplace_back(setting.key);
    }
    return {{"--only", categories}, {"--except", categories}, {"--without", lacking}};
}

}  // namespace

Manual vxcloneManual() {
    vxclone::Action none;
    const auto app = vxclone::makeApp(none);
    return {treeOf(*app, choicesOfValues()),
            std::string(vxclone::version()),
            kAbout,
            {categorySection(), statusSection(), errorSection()},
            "vxtv"};
}

}  // namespace vxpages
