#include "tests/hostile/refusals.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iostream>

#include "cloning_app/base/error_catalogue.h"

namespace vxtest {

namespace {

/// The approximate number of cases of a table that are tried in the short form.
constexpr std::size_t kTriedOfATable = 16;

using testing::HasSubstr;
using testing::IsEmpty;

int statusOf(std::string_view code) {
    for (const vxclone::ErrorFact& fact : vxclone::errorCatalogue()) {
        if (fact.name == code) {
            return fact.exitStatus;
        }
    }
    ADD_FAILURE() << "there is no error " << code;
    return -1;
}

/// Only the names of the differences, because whole contents would be too long.
std::vector<std::string> differences(const FileTree& before, const FileTree& after) {
    std::vector<std::string> names;
    for (const auto& [name, content] : before) {
        const auto found = after.find(name);
        if (found == after.end() || found->second != content) {
            names.push_back(name);
        }
    }
    for (const auto& [name, content] : after) {
        if (before.count(name) == 0) {
            names.push_back(name);
        }
    }
    return names;
}

void expectRefused(const Case& tried, Target& television, const std::function<Outcome()>& restore) {
    television.makeReady();
    const FileTree before = television.state();
    const FileTree bait = snapshot(Stage::instance().bait());
    const Outcome outcome = restore();
    EXPECT_EQ(outcome.code, tried.code) << outcome.message;
    EXPECT_EQ(outcome.status, statusOf(tried.code)) << outcome.message;
    EXPECT_THAT(outcome.message, HasSubstr(tried.says));
    EXPECT_THAT(differences(before, television.state()), IsEmpty());
    EXPECT_THAT(television.changingCalls(), IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(television.cloneRoot()));
    EXPECT_EQ(snapshot(Stage::instance().bait()), bait);
}

}  // namespace

void expectRefusals(const std::vector<Case>& cases) {
    Stage& stage = Stage::instance();
    std::size_t tried = 0;
    std::size_t byProgram = 0;
    // An odd step, so that a table that repeats a few kinds is tried for all of them.
    const std::size_t step = isLongForm() ? 1 : (cases.size() / kTriedOfATable) | 1U;
    for (std::size_t number = 0; number < cases.size(); number += step) {
        const Case& one = cases[number];
        SCOPED_TRACE(one.name);
        stage.layPackage();
        if (!one.damage(stage.package())) {
            std::cout << "hostile: cannot be made on this machine: " << one.name << '\n';
            continue;
        }
        ++tried;
        expectRefused(one, stage.here(), [&] { return stage.restoreHere(one.expect); });
        if (byProgram == 0 || isLongForm()) {
            ++byProgram;
            SCOPED_TRACE("by the program");
            std::vector<std::string> arguments;
            if (!one.expect.empty()) {
                arguments = {"--expect", one.expect};
            }
            expectRefused(one, stage.there(), [&] { return stage.restoreThere(arguments); });
        }
    }
    EXPECT_GT(tried, 0U);
    std::cout << "hostile: " << tried << " cases refused of " << cases.size() << ", " << byProgram
              << " of them by the program, too\n";
}

}  // namespace vxtest
