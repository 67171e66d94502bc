#include "tests/mutation/finder.h"

#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendActions.h>
#include <clang/Tooling/Tooling.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <tuple>

#include "tests/mutation/macro_texts.h"
#include "tests/mutation/visitor.h"

namespace vxmutants {
namespace {

class Consumer : public clang::ASTConsumer {
 public:
    Consumer(SourceMap map, std::vector<Mutant>& mutants) : map_(map), visitor_(map, mutants) {}

    void HandleTranslationUnit(clang::ASTContext& context) override {
        for (clang::Decl* declaration : context.getTranslationUnitDecl()->decls()) {
            if (map_.isOurs(declaration->getLocation())) {
                visitor_.TraverseDecl(declaration);
            }
        }
    }

 private:
    SourceMap map_;
    Visitor visitor_;
};

class Action : public clang::ASTFrontendAction {
 public:
    Action(std::string root, std::vector<Mutant>& mutants) : root_(std::move(root)), mutants_(mutants) {}

    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& compiler,
                                                          llvm::StringRef) override {
        const SourceMap map(compiler.getSourceManager(), compiler.getLangOpts(), root_);
        compiler.getPreprocessor().addPPCallbacks(std::make_unique<MacroTexts>(map, mutants_));
        return std::make_unique<Consumer>(map, mutants_);
    }

 private:
    std::string root_;
    std::vector<Mutant>& mutants_;
};

auto place(const Mutant& mutant) {
    return std::tie(mutant.file, mutant.begin, mutant.end, mutant.replacement);
}

}  // namespace

std::vector<Mutant> findMutants(const std::string& root, const std::vector<std::string>& sources,
                                const std::vector<std::string>& flags) {
    std::vector<Mutant> mutants;
    for (const std::string& source : sources) {
        const std::string path = root + source;
        if (!clang::tooling::runToolOnCodeWithArgs(std::make_unique<Action>(root, mutants), readText(path),
                                                   flags, path)) {
            std::cerr << "vx-mutants: " << path << " does not compile\n";
            std::exit(EXIT_FAILURE);
        }
    }
    std::sort(mutants.begin(), mutants.end(),
              [](const Mutant& a, const Mutant& b) { return place(a) < place(b); });
    const auto same = [](const Mutant& a, const Mutant& b) { return place(a) == place(b); };
    mutants.erase(std::unique(mutants.begin(), mutants.end(), same), mutants.end());
    for (std::size_t i = 0; i < mutants.size(); ++i) {
        mutants[i].id = static_cast<int>(i) + 1;
    }
    return mutants;
}

}  // namespace vxmutants
