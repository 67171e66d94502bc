#include "tests/mutation/mutant.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace vxmutants {
namespace {

void endIf(bool failed, const std::string& what, const std::string& path) {
    if (failed) {
        std::cerr << "vx-mutants: cannot " << what << ' ' << path << '\n';
        std::exit(EXIT_FAILURE);
    }
}

}  // namespace

NLOHMANN_JSON_SERIALIZE_ENUM(Form, {{Form::kExpression, "expression"},
                                    {Form::kStatement, "statement"},
                                    {Form::kTextArray, "text array"},
                                    {Form::kAlone, "alone"}})

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Mutant, id, file, line, lastLine, begin, end, form, kind, original,
                                   replacement, inForeignMacro, constantAt, constant)

std::string asLine(const Mutant& mutant) {
    return nlohmann::json(mutant).dump();
}

std::vector<Mutant> readMutants(const std::string& path) {
    std::ifstream file(path);
    endIf(!file, "read", path);
    std::vector<Mutant> mutants;
    for (std::string line; std::getline(file, line);) {
        mutants.push_back(nlohmann::json::parse(line).get<Mutant>());
    }
    return mutants;
}

std::string readText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    endIf(!file, "read", path);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeText(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    endIf(!file, "write", path);
}

}  // namespace vxmutants
