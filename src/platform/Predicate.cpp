#include "platform/Predicate.h"
#include "platform/PredicateNode.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>

namespace {

std::string lowered(std::string_view text)
{
    std::string result(text);
    for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

std::string comparable(const Value& value, const PredicateOptions& options)
{
    return options.caseInsensitive ? lowered(value.string()) : value.string();
}

template <typename T> int threeWay(T a, T b) { return a < b ? -1 : (b < a ? 1 : 0); }

// The order of two numbers (booleans count as numbers, as the platform's number objects do) or
// two strings; nothing for other pairs, which makes every ordering comparison between them false.
std::optional<int> order(const Value& a, const Value& b, const PredicateOptions& options)
{
    if (a.isNumber() && b.isNumber()) {
        if (a.isReal() || b.isReal()) {
            double x = a.doubleValue(), y = b.doubleValue();
            if (std::isnan(x) || std::isnan(y)) return std::nullopt;
            return threeWay(x, y);
        }
        return threeWay(a.integerValue(), b.integerValue());
    }
    if (a.isString() && b.isString()) return threeWay(comparable(a, options), comparable(b, options));
    return std::nullopt;
}

bool holdsOrder(PredicateOperator op, std::optional<int> ordering)
{
    if (!ordering) return false;
    switch (op) {
    case PredicateOperator::Less: return *ordering < 0;
    case PredicateOperator::LessOrEqual: return *ordering <= 0;
    case PredicateOperator::Greater: return *ordering > 0;
    default: return *ordering >= 0;
    }
}

bool equal(const Value& a, const Value& b, const PredicateOptions& options)
{
    if (auto ordering = order(a, b, options)) return *ordering == 0;
    if (a.isArray() && b.isArray()) {
        return std::ranges::equal(a.array(), b.array(),
                                  [&](const Value& x, const Value& y) { return equal(x, y, options); });
    }
    return a == b;
}

bool containsEqual(const ValueArray& collection, const Value& value, const PredicateOptions& options)
{
    return std::ranges::any_of(collection, [&](const Value& item) { return equal(item, value, options); });
}

// Splits UTF-8 text into characters, so that "?" in LIKE stands for one character, not one byte.
std::vector<std::string_view> characters(std::string_view text)
{
    std::vector<std::string_view> result;
    size_t start = 0;
    for (size_t i = 1; i <= text.size(); ++i) {
        if (i == text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
            result.push_back(text.substr(start, i - start));
            start = i;
        }
    }
    return result;
}

// Wildcard matching without recursion: on a mismatch, the last "*" takes one more character.
bool like(std::string_view text, std::string_view pattern)
{
    std::vector<std::string_view> t = characters(text), p = characters(pattern);
    size_t ti = 0, pi = 0, star = p.size(), starText = 0;
    while (ti < t.size()) {
        if (pi < p.size() && p[pi] == "*") {
            star = pi++;
            starText = ti;
        } else if (pi < p.size() && (p[pi] == "?" || p[pi] == t[ti])) {
            ++ti;
            ++pi;
        } else if (star < p.size()) {
            pi = star + 1;
            ti = ++starText;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi] == "*") ++pi;
    return pi == p.size();
}

void appendQuoted(std::string& out, const std::string& text)
{
    out += '"';
    for (char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default: out += c;
        }
    }
    out += '"';
}

void appendConstant(std::string& out, const Value& value)
{
    switch (value.type()) {
    case Value::Type::Null: out += "NULL"; break;
    case Value::Type::Bool: out += value.boolValue() ? "YES" : "NO"; break;
    case Value::Type::Integer: out += std::to_string(value.integerValue()); break;
    case Value::Type::Real: {
        std::array<char, 32> buffer;
        auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value.doubleValue());
        out.append(buffer.data(), result.ptr);
        break;
    }
    case Value::Type::String: appendQuoted(out, value.string()); break;
    default: out += value.description(); break; // the parser makes no other constants
    }
}

void appendKeyPath(std::string& out, std::string_view keyPath)
{
    for (size_t start = 0;;) {
        size_t dot = std::min(keyPath.find('.', start), keyPath.size());
        std::string_view component = keyPath.substr(start, dot - start);
        if (isPredicateReservedWord(component)) out += '#';
        out += component;
        if (dot == keyPath.size()) return;
        out += '.';
        start = dot + 1;
    }
}

void appendOperand(std::string& out, const PredicateNode& operand, PredicatePrecedence context)
{
    bool parenthesised = operand.precedence() < context;
    if (parenthesised) out += '(';
    operand.appendFormat(out);
    if (parenthesised) out += ')';
}

const char* operatorText(PredicateOperator op)
{
    switch (op) {
    case PredicateOperator::Equal: return "==";
    case PredicateOperator::NotEqual: return "!=";
    case PredicateOperator::Less: return "<";
    case PredicateOperator::LessOrEqual: return "<=";
    case PredicateOperator::Greater: return ">";
    case PredicateOperator::GreaterOrEqual: return ">=";
    case PredicateOperator::BeginsWith: return "BEGINSWITH";
    case PredicateOperator::EndsWith: return "ENDSWITH";
    case PredicateOperator::Contains: return "CONTAINS";
    case PredicateOperator::Like: return "LIKE";
    case PredicateOperator::Matches: return "MATCHES";
    case PredicateOperator::In: return "IN";
    case PredicateOperator::Between: return "BETWEEN";
    }
    return "";
}

const char* modifierText(PredicateModifier modifier)
{
    switch (modifier) {
    case PredicateModifier::Direct: return "";
    case PredicateModifier::Any: return "ANY ";
    case PredicateModifier::All: return "ALL ";
    case PredicateModifier::None: return "NONE ";
    }
    return "";
}

} // namespace

PredicateSubject::~PredicateSubject() = default;

Predicate::Predicate(std::unique_ptr<const PredicateNode> root) : _root(std::move(root))
{
    _root->appendFormat(_format);
}

Predicate::~Predicate() = default;

bool Predicate::evaluateWithObject(const PredicateSubject& object) const
{
    return _root->evaluate(object);
}

bool isPredicateReservedWord(std::string_view word)
{
    static const char* const reserved[] = {
        "AND", "OR", "NOT", "ANY", "SOME", "ALL", "NONE", "IN", "LIKE", "MATCHES", "BEGINSWITH", "ENDSWITH",
        "CONTAINS", "BETWEEN", "TRUEPREDICATE", "FALSEPREDICATE", "YES", "NO", "TRUE", "FALSE", "NIL", "NULL", "SELF"};
    std::string upper(word);
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return std::ranges::find(reserved, upper) != std::end(reserved);
}

Value PredicateExpression::evaluate(const PredicateSubject& object) const
{
    switch (kind) {
    case Kind::Constant: return constant;
    case Kind::KeyPath: return object.valueForKeyPath(keyPath);
    case Kind::Self: return object.valueForKeyPath("self");
    case Kind::Aggregate: {
        ValueArray values;
        for (const PredicateExpression& item : items) values.push_back(item.evaluate(object));
        return Value(std::move(values));
    }
    }
    return Value();
}

void PredicateExpression::appendFormat(std::string& out) const
{
    switch (kind) {
    case Kind::Constant: appendConstant(out, constant); break;
    case Kind::KeyPath: appendKeyPath(out, keyPath); break;
    case Kind::Self: out += "SELF"; break;
    case Kind::Aggregate: {
        out += '{';
        const char* separator = "";
        for (const PredicateExpression& item : items) {
            out += separator;
            item.appendFormat(out);
            separator = ", ";
        }
        out += '}';
        break;
    }
    }
}

void ConstantPredicate::appendFormat(std::string& out) const
{
    out += _value ? "TRUEPREDICATE" : "FALSEPREDICATE";
}

void NotPredicate::appendFormat(std::string& out) const
{
    out += "NOT ";
    appendOperand(out, *_operand, PredicatePrecedence::Not);
}

bool CompoundPredicate::evaluate(const PredicateSubject& object) const
{
    auto holds = [&](const auto& operand) { return operand->evaluate(object); };
    return _isAnd ? std::ranges::all_of(_operands, holds) : std::ranges::any_of(_operands, holds);
}

void CompoundPredicate::appendFormat(std::string& out) const
{
    const char* separator = "";
    for (const auto& operand : _operands) {
        out += separator;
        appendOperand(out, *operand, precedence());
        separator = _isAnd ? " AND " : " OR ";
    }
}

PredicatePrecedence CompoundPredicate::precedence() const
{
    return _isAnd ? PredicatePrecedence::And : PredicatePrecedence::Or;
}

ComparisonPredicate::ComparisonPredicate(PredicateModifier modifier, PredicateExpression left, PredicateOperator op,
                                         PredicateOptions options, PredicateExpression right,
                                         std::optional<std::regex> pattern)
    : _modifier(modifier), _left(std::move(left)), _operator(op), _options(options), _right(std::move(right)),
      _pattern(std::move(pattern))
{
}

bool ComparisonPredicate::evaluate(const PredicateSubject& object) const
{
    Value left = _left.evaluate(object);
    Value right = _right.evaluate(object);
    if (_modifier == PredicateModifier::Direct) return compare(left, right);

    // A single value stands for a collection of itself, and a missing one for an empty collection.
    ValueArray single;
    if (!left.isArray() && !left.isNull()) single.push_back(left);
    const ValueArray& elements = left.isArray() ? left.array() : single;
    auto holds = [&](const Value& element) { return compare(element, right); };
    switch (_modifier) {
    case PredicateModifier::Any: return std::ranges::any_of(elements, holds);
    case PredicateModifier::All: return std::ranges::all_of(elements, holds);
    default: return std::ranges::none_of(elements, holds);
    }
}

bool ComparisonPredicate::compare(const Value& left, const Value& right) const
{
    bool strings = left.isString() && right.isString();
    switch (_operator) {
    case PredicateOperator::Equal: return equal(left, right, _options);
    case PredicateOperator::NotEqual: return !equal(left, right, _options);
    case PredicateOperator::Less:
    case PredicateOperator::LessOrEqual:
    case PredicateOperator::Greater:
    case PredicateOperator::GreaterOrEqual: return holdsOrder(_operator, order(left, right, _options));
    case PredicateOperator::BeginsWith: return strings && comparable(left, _options).starts_with(comparable(right, _options));
    case PredicateOperator::EndsWith: return strings && comparable(left, _options).ends_with(comparable(right, _options));
    case PredicateOperator::Contains:
        if (left.isArray()) return containsEqual(left.array(), right, _options);
        return strings && comparable(left, _options).find(comparable(right, _options)) != std::string::npos;
    case PredicateOperator::Like: return strings && like(comparable(left, _options), comparable(right, _options));
    case PredicateOperator::Matches: return strings && matches(left, right);
    case PredicateOperator::In:
        if (right.isArray()) return containsEqual(right.array(), left, _options);
        return strings && comparable(right, _options).find(comparable(left, _options)) != std::string::npos;
    case PredicateOperator::Between:
        return right.isArray() && right.count() == 2 &&
               holdsOrder(PredicateOperator::GreaterOrEqual, order(left, right[0], _options)) &&
               holdsOrder(PredicateOperator::LessOrEqual, order(left, right[1], _options));
    }
    return false;
}

bool ComparisonPredicate::matches(const Value& left, const Value& right) const
{
    if (left.string().size() > kMaxPredicateMatchedLength) return false;
    try {
        if (_pattern) return std::regex_match(left.string(), *_pattern);
        std::optional<std::regex> pattern = compilePredicatePattern(right.string(), _options.caseInsensitive);
        return pattern && std::regex_match(left.string(), *pattern);
    } catch (const std::regex_error&) {
        return false; // the matcher gave up on the text, which is no match
    }
}

void ComparisonPredicate::appendFormat(std::string& out) const
{
    out += modifierText(_modifier);
    _left.appendFormat(out);
    out += ' ';
    out += operatorText(_operator);
    if (_options.caseInsensitive || _options.diacriticInsensitive) {
        out += '[';
        if (_options.caseInsensitive) out += 'c';
        if (_options.diacriticInsensitive) out += 'd';
        out += ']';
    }
    out += ' ';
    _right.appendFormat(out);
}
