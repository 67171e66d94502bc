// Finds mutants of sources and writes sources that hold them; see scripts/mutate.

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include "tests/mutation/finder.h"
#include "tests/mutation/mutant.h"
#include "tests/mutation/woven_source.h"

namespace {

using vxmutants::Mutant;
using Words = std::vector<std::string>;

constexpr const char* kUsage =
    "usage: vx-mutants find FOLDER/ SOURCE... -- FLAG...      prints a mutant a line, as JSON\n"
    "       vx-mutants one MUTANTS ID FROM/ TO/               writes one file, with that change\n"
    "       vx-mutants all MUTANTS FROM/ TO/ [ID-ALONE...]    writes all files, each with all its changes "
    "but those\n";

int find(const Words& words) {
    const auto border = std::find(words.begin(), words.end(), "--");
    if (words.empty() || border == words.end()) {
        std::cerr << kUsage;
        return EXIT_FAILURE;
    }
    for (const Mutant& mutant :
         vxmutants::findMutants(words.front(), {words.begin() + 1, border}, {border + 1, words.end()})) {
        std::cout << vxmutants::asLine(mutant) << '\n';
    }
    return EXIT_SUCCESS;
}

int writeOne(const std::vector<Mutant>& mutants, const Words& words) {
    const int id = std::stoi(words.at(1));
    const auto mutant =
        std::find_if(mutants.begin(), mutants.end(), [id](const Mutant& each) { return each.id == id; });
    if (mutant == mutants.end()) {
        std::cerr << "vx-mutants: there is no mutant " << id << '\n';
        return EXIT_FAILURE;
    }
    vxmutants::writeText(words.at(3) + mutant->file,
                         vxmutants::withChange(vxmutants::readText(words.at(2) + mutant->file), *mutant));
    return EXIT_SUCCESS;
}

int writeAll(const std::vector<Mutant>& mutants, const Words& words) {
    const std::set<std::string> alone(words.begin() + 3, words.end());
    std::set<std::string> files;
    for (const Mutant& mutant : mutants) {
        files.insert(mutant.file);
    }
    for (const std::string& file : files) {
        std::vector<Mutant> chosen;
        std::copy_if(mutants.begin(), mutants.end(), std::back_inserter(chosen), [&](const Mutant& mutant) {
            return mutant.file == file && mutant.form != vxmutants::Form::kAlone &&
                   alone.count(std::to_string(mutant.id)) == 0;
        });
        vxmutants::writeText(words.at(2) + file,
                             vxmutants::withAllChanges(vxmutants::readText(words.at(1) + file), chosen));
    }
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    const Words words(argv + std::min(argc, 2), argv + argc);
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "find") {
        return find(words);
    }
    if (command == "one" && words.size() == 4) {
        return writeOne(vxmutants::readMutants(words.front()), words);
    }
    if (command == "all" && words.size() >= 3) {
        return writeAll(vxmutants::readMutants(words.front()), words);
    }
    std::cerr << kUsage;
    return EXIT_FAILURE;
}
