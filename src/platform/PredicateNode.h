#pragma once

// The parsed form of a predicate, shared by the parser and the evaluator.

#include "platform/Predicate.h"

#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

// How tightly a node binds in the text form, so that only the parentheses precedence needs are
// written.
enum class PredicatePrecedence { Or, And, Not, Atom };

class PredicateNode {
public:
    virtual ~PredicateNode() = default;
    virtual bool evaluate(const PredicateSubject& object) const = 0;
    virtual void appendFormat(std::string& out) const = 0;
    virtual PredicatePrecedence precedence() const = 0;
};

using PredicateNodes = std::vector<std::unique_ptr<PredicateNode>>;

struct PredicateExpression {
    enum class Kind { Constant, KeyPath, Self, Aggregate };

    Kind kind = Kind::Constant;
    Value constant;
    std::string keyPath;
    std::vector<PredicateExpression> items;

    Value evaluate(const PredicateSubject& object) const;
    void appendFormat(std::string& out) const;
};

class ConstantPredicate final : public PredicateNode {
public:
    explicit ConstantPredicate(bool value) : _value(value) {}
    bool evaluate(const PredicateSubject&) const override { return _value; }
    void appendFormat(std::string& out) const override;
    PredicatePrecedence precedence() const override { return PredicatePrecedence::Atom; }

private:
    bool _value;
};

class NotPredicate final : public PredicateNode {
public:
    explicit NotPredicate(std::unique_ptr<PredicateNode> operand) : _operand(std::move(operand)) {}
    bool evaluate(const PredicateSubject& object) const override { return !_operand->evaluate(object); }
    void appendFormat(std::string& out) const override;
    PredicatePrecedence precedence() const override { return PredicatePrecedence::Not; }

private:
    std::unique_ptr<PredicateNode> _operand;
};

// AND or OR over two or more operands; the parser flattens a chain of one kind into one node, so
// that grouping which does not change the meaning does not change the text either.
class CompoundPredicate final : public PredicateNode {
public:
    CompoundPredicate(bool isAnd, PredicateNodes operands) : _isAnd(isAnd), _operands(std::move(operands)) {}
    bool evaluate(const PredicateSubject& object) const override;
    void appendFormat(std::string& out) const override;
    PredicatePrecedence precedence() const override;

    bool isAnd() const { return _isAnd; }
    // Moves the operands out, for flattening into an enclosing node of the same kind.
    PredicateNodes takeOperands() { return std::move(_operands); }

private:
    bool _isAnd;
    PredicateNodes _operands;
};

enum class PredicateOperator { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual, BeginsWith, EndsWith,
                               Contains, Like, Matches, In, Between };

enum class PredicateModifier { Direct, Any, All, None };

struct PredicateOptions {
    bool caseInsensitive = false;
    bool diacriticInsensitive = false;
};

class ComparisonPredicate final : public PredicateNode {
public:
    // A MATCHES against a constant pattern is given the compiled pattern by the parser, which has
    // already turned a bad pattern into a parse error.
    ComparisonPredicate(PredicateModifier modifier, PredicateExpression left, PredicateOperator op,
                        PredicateOptions options, PredicateExpression right, std::optional<std::regex> pattern);
    bool evaluate(const PredicateSubject& object) const override;
    void appendFormat(std::string& out) const override;
    PredicatePrecedence precedence() const override { return PredicatePrecedence::Atom; }

private:
    bool compare(const Value& left, const Value& right) const;
    bool matches(const Value& left, const Value& right) const;

    PredicateModifier _modifier;
    PredicateExpression _left;
    PredicateOperator _operator;
    PredicateOptions _options;
    PredicateExpression _right;
    std::optional<std::regex> _pattern;
};

// The longest text MATCHES runs a pattern on: std::regex backtracks recursively, so its time and
// stack grow with the text, and glyph names and code points are far shorter than this.
inline constexpr size_t kMaxPredicateMatchedLength = 256;

// The regular expression of a MATCHES, or nothing when the pattern is malformed or too costly
// to run on untrusted text.
std::optional<std::regex> compilePredicatePattern(const std::string& pattern, bool caseInsensitive);

// Whether a word is reserved in the language, in any letter case; a key path component that is
// one is written with a "#" prefix.
bool isPredicateReservedWord(std::string_view word);
