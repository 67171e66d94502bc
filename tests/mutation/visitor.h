#pragma once

// Visits a parsed source and collects its mutants.

#include <clang/AST/RecursiveASTVisitor.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/mutation/source_range.h"

namespace vxmutants {

class Visitor : public clang::RecursiveASTVisitor<Visitor> {
 public:
    Visitor(SourceMap map, std::vector<Mutant>& mutants) : map_(std::move(map)), mutants_(mutants) {}

    bool TraverseVarDecl(clang::VarDecl* variable) {
        const clang::VarDecl* const before = std::exchange(variable_, variable);
        const bool going = RecursiveASTVisitor::TraverseVarDecl(variable);
        variable_ = before;
        return going;
    }
    /// Nobody wrote the text of `__func__` and similar identifiers.
    bool TraversePredefinedExpr(clang::PredefinedExpr*) { return true; }
    bool TraverseStaticAssertDecl(clang::StaticAssertDecl*) { return true; }

    bool VisitIfStmt(clang::IfStmt* statement) { return negate(statement->getCond()); }
    bool VisitWhileStmt(clang::WhileStmt* statement) { return negate(statement->getCond()); }
    bool VisitDoStmt(clang::DoStmt* statement) { return negate(statement->getCond()); }
    bool VisitForStmt(clang::ForStmt* statement) { return negate(statement->getCond()); }
    bool VisitConditionalOperator(clang::ConditionalOperator* choice) { return negate(choice->getCond()); }
    bool VisitBinaryOperator(clang::BinaryOperator* operation);
    bool VisitCXXOperatorCallExpr(clang::CXXOperatorCallExpr* operation);
    bool VisitUnaryOperator(clang::UnaryOperator* operation);
    bool VisitCXXBoolLiteralExpr(clang::CXXBoolLiteralExpr* literal);
    bool VisitIntegerLiteral(clang::IntegerLiteral* literal);
    bool VisitCharacterLiteral(clang::CharacterLiteral* literal);
    bool VisitStringLiteral(clang::StringLiteral* literal);
    bool VisitCompoundStmt(clang::CompoundStmt* block);

 private:
    void add(std::optional<Mutant> mutant, Form form, const char* kind, const std::string& replacement);
    bool negate(const clang::Expr* condition);
    bool swapOperator(clang::SourceRange operation, clang::SourceLocation token);
    void addTextInMacro(clang::SourceLocation token);
    void noteConstant(Mutant& mutant) const;

    SourceMap map_;
    std::vector<Mutant>& mutants_;
    const clang::VarDecl* variable_ = nullptr;
};

}  // namespace vxmutants
