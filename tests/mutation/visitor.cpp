#include "tests/mutation/visitor.h"

#include <algorithm>
#include <map>

namespace vxmutants {
namespace {

/// For each operator, its replacements; each is a mutant.
const std::multimap<std::string, std::string> kOtherOperators = {
    {"==", "!="}, {"!=", "=="}, {"<", "<="}, {"<", ">="}, {"<=", "<"},  {"<=", ">"},
    {">", ">="},  {">", "<="},  {">=", ">"}, {">=", "<"}, {"&&", "||"}, {"||", "&&"}};

/// The expression without conversions and parentheses.
const clang::Expr* core(const clang::Expr* expression) {
    const clang::Expr* inner = expression->IgnoreParenCasts();
    if (const auto* cleanups = llvm::dyn_cast<clang::FullExpr>(inner)) {
        return core(cleanups->getSubExpr());
    }
    return inner;
}

}  // namespace

/// A constant has to become a variable before its value can be chosen.
void Visitor::noteConstant(Mutant& mutant) const {
    if (variable_ == nullptr || !variable_->isConstexpr() || !map_.isWritten(variable_->getLocation())) {
        return;
    }
    const auto declared = map_.over({variable_->getBeginLoc(), variable_->getLocation()});
    const auto words = variable_->isInlineSpecified() ? kSharedConstant : kConstant;
    if (!declared || declared->original.compare(0, words.size(), words) != 0) {
        mutant.form = Form::kAlone;
        return;
    }
    mutant.constantAt = declared->begin;
    mutant.constant = variable_->getNameAsString();
}

void Visitor::add(std::optional<Mutant> mutant, Form form, const char* kind, const std::string& replacement) {
    if (mutant) {
        mutant->form = mutant->inForeignMacro ? Form::kAlone : form;
        mutant->kind = kind;
        mutant->replacement = replacement;
        noteConstant(*mutant);
        mutants_.push_back(std::move(*mutant));
    }
}

bool Visitor::negate(const clang::Expr* condition) {
    if (condition == nullptr) {
        return true;
    }
    // These are inverted at their own place.
    const clang::Expr* const inner = core(condition);
    const auto* const binary = llvm::dyn_cast<clang::BinaryOperator>(inner);
    const auto* const overloaded = llvm::dyn_cast<clang::CXXOperatorCallExpr>(inner);
    const auto* const unary = llvm::dyn_cast<clang::UnaryOperator>(inner);
    if ((binary != nullptr && binary->isComparisonOp()) ||
        (overloaded != nullptr && overloaded->isComparisonOp()) ||
        (unary != nullptr && unary->getOpcode() == clang::UO_LNot) ||
        llvm::isa<clang::CXXBoolLiteralExpr>(inner)) {
        return true;
    }
    if (const auto mutant = map_.over(condition->getSourceRange())) {
        add(mutant, Form::kExpression, "condition", "!(" + mutant->original + ")");
    }
    return true;
}

bool Visitor::swapOperator(clang::SourceRange operation, clang::SourceLocation token) {
    const auto mutant = map_.over(operation);
    if (!mutant || !map_.isWritten(token)) {
        return true;
    }
    const std::string sign = map_.over(token)->original;
    const auto [first, last] = kOtherOperators.equal_range(sign);
    for (auto other = first; other != last; ++other) {
        std::string changed = mutant->original;
        changed.replace(map_.offset(token) - mutant->begin, sign.size(), other->second);
        add(mutant, Form::kExpression, "condition", "(" + changed + ")");
    }
    return true;
}

bool Visitor::VisitBinaryOperator(clang::BinaryOperator* operation) {
    return swapOperator(operation->getSourceRange(), operation->getOperatorLoc());
}

bool Visitor::VisitCXXOperatorCallExpr(clang::CXXOperatorCallExpr* operation) {
    return swapOperator(operation->getSourceRange(), operation->getOperatorLoc());
}

bool Visitor::VisitUnaryOperator(clang::UnaryOperator* operation) {
    const auto mutant = map_.over(operation->getSourceRange());
    if (mutant && operation->getOpcode() == clang::UO_LNot && map_.isWritten(operation->getOperatorLoc())) {
        add(mutant, Form::kExpression, "condition", "!" + mutant->original);
    }
    return true;
}

bool Visitor::VisitCXXBoolLiteralExpr(clang::CXXBoolLiteralExpr* literal) {
    if (map_.isWritten(literal->getLocation())) {
        add(map_.over(literal->getSourceRange()), Form::kExpression, "condition",
            literal->getValue() ? "false" : "true");
    }
    return true;
}

bool Visitor::VisitIntegerLiteral(clang::IntegerLiteral* literal) {
    const auto mutant = map_.over(literal->getSourceRange());
    if (mutant && map_.isWritten(literal->getLocation())) {
        add(mutant, Form::kExpression, "constant", "(" + mutant->original + " + 1)");
        if (literal->getValue() == 1) {
            add(mutant, Form::kExpression, "constant", "0");
        }
    }
    return true;
}

bool Visitor::VisitCharacterLiteral(clang::CharacterLiteral* literal) {
    const auto mutant = map_.over(literal->getSourceRange());
    if (mutant && map_.isWritten(literal->getLocation())) {
        add(mutant, Form::kExpression, "constant", "static_cast<char>(" + mutant->original + " + 1)");
    }
    return true;
}

/// A macro joins the text with others, so the mutant is the whole use of the macro.
void Visitor::addTextInMacro(clang::SourceLocation token) {
    const auto text = map_.over(token);
    const auto use = map_.overMacroAround(token);
    if (text && use) {
        std::string changed = use->original;
        changed.insert(text->end - use->begin, " \"~\"");
        add(use, Form::kExpression, "text", changed);
    }
}

bool Visitor::VisitStringLiteral(clang::StringLiteral* literal) {
    std::vector<clang::SourceLocation> written;
    for (unsigned i = 0; i < literal->getNumConcatenated(); ++i) {
        if (map_.isWritten(literal->getStrTokenLoc(i))) {
            written.push_back(literal->getStrTokenLoc(i));
        }
    }
    if (written.empty()) {
        return true;
    }
    const auto whole = map_.over(literal->getSourceRange());
    if (!whole) {
        std::for_each(written.begin(), written.end(), [this](auto token) { addTextInMacro(token); });
        return true;
    }
    const bool fillsArray = variable_ != nullptr && variable_->getInit() != nullptr &&
                            core(variable_->getInit()) == literal && variable_->getType()->isArrayType();
    const Form form = !fillsArray                ? Form::kExpression
                      : variable_->isConstexpr() ? Form::kTextArray
                                                 : Form::kAlone;
    add(whole, form, "text", whole->original + " \"~\"");
    return true;
}

bool Visitor::VisitCompoundStmt(clang::CompoundStmt* block) {
    for (const clang::Stmt* statement : block->body()) {
        const auto* const expression = llvm::dyn_cast<clang::Expr>(statement);
        if (expression == nullptr) {
            continue;
        }
        const clang::Expr* const inner = core(expression);
        const auto* const binary = llvm::dyn_cast<clang::BinaryOperator>(inner);
        const auto* const unary = llvm::dyn_cast<clang::UnaryOperator>(inner);
        if (llvm::isa<clang::CallExpr>(inner)) {
            add(map_.over(expression->getSourceRange()), Form::kStatement, "call", "");
        } else if ((binary != nullptr && binary->isAssignmentOp()) ||
                   (unary != nullptr && unary->isIncrementDecrementOp())) {
            add(map_.over(expression->getSourceRange()), Form::kStatement, "assignment", "");
        }
    }
    return true;
}

}  // namespace vxmutants
