#include "platform/Predicate.h"
#include "platform/PredicateNode.h"
#include "platform/VLException.h"

#include <cctype>
#include <charconv>
#include <cmath>

namespace {

// Parentheses, NOT and aggregates nest by recursion, and the text is untrusted: deeper nesting
// than any real filter needs is refused before it can exhaust the stack.
constexpr int kMaxNestingDepth = 64;
// The exception's reason quotes the text, cut to this length so that huge input stays out of logs.
constexpr size_t kMaxQuotedLength = 200;

struct SyntaxError {};

struct Token {
    enum class Kind { End, Identifier, String, Number, Symbol };

    Kind kind = Kind::End;
    std::string text; // an identifier without its "#", a string's contents, or a symbol
    bool escaped = false;
    Value number;
};

bool isIdentifierStart(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

bool isIdentifierCharacter(char c)
{
    return isIdentifierStart(c) || std::isdigit(static_cast<unsigned char>(c));
}

bool isDigit(std::string_view text, size_t index)
{
    return index < text.size() && std::isdigit(static_cast<unsigned char>(text[index]));
}

bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    return std::ranges::equal(a, b, [](char x, char y) {
        return std::toupper(static_cast<unsigned char>(x)) == std::toupper(static_cast<unsigned char>(y));
    });
}

class Lexer {
public:
    explicit Lexer(std::string_view text) : _text(text) {}

    Token next()
    {
        while (_position < _text.size() && std::isspace(static_cast<unsigned char>(_text[_position]))) ++_position;
        if (_position == _text.size()) return {};
        char c = _text[_position];
        if (c == '"' || c == '\'') return string(c);
        if (startsNumber()) return number();
        if (c == '#' || isIdentifierStart(c)) return identifier();
        return symbol();
    }

private:
    bool startsNumber() const
    {
        size_t i = _position + (_text[_position] == '-' ? 1 : 0);
        return isDigit(_text, i) || (i < _text.size() && _text[i] == '.' && isDigit(_text, i + 1));
    }

    Token string(char quote)
    {
        Token token;
        token.kind = Token::Kind::String;
        for (++_position; _position < _text.size() && _text[_position] != quote; ++_position) {
            char c = _text[_position];
            if (c == '\\') {
                if (++_position == _text.size()) break;
                c = unescaped(_text[_position]);
            }
            token.text += c;
        }
        if (_position == _text.size()) throw SyntaxError();
        ++_position;
        return token;
    }

    static char unescaped(char c)
    {
        switch (c) {
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        default: return c;
        }
    }

    Token number()
    {
        size_t start = _position;
        bool negative = _text[_position] == '-';
        if (negative) ++_position;
        bool hex = _text.compare(_position, 2, "0x") == 0 || _text.compare(_position, 2, "0X") == 0;
        if (hex) _position += 2;
        size_t digits = _position;
        while (_position < _text.size() && (std::isalnum(static_cast<unsigned char>(_text[_position])) ||
                                            _text[_position] == '.' || isExponentSign())) {
            ++_position;
        }
        std::string_view text = _text.substr(start, _position - start);
        Token token;
        token.kind = Token::Kind::Number;
        token.number = hex ? hexNumber(_text.substr(digits, _position - digits), negative) : decimalNumber(text);
        return token;
    }

    bool isExponentSign() const
    {
        char c = _text[_position];
        return (c == '+' || c == '-') && (_text[_position - 1] == 'e' || _text[_position - 1] == 'E');
    }

    static Value hexNumber(std::string_view digits, bool negative)
    {
        int64_t value = 0;
        auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (error != std::errc() || end != digits.data() + digits.size() || digits.empty()) throw SyntaxError();
        return Value(negative ? -value : value);
    }

    // An integer when the text is one that fits, a real otherwise; reals that are not finite have
    // no text form to write back, so they are refused.
    static Value decimalNumber(std::string_view text)
    {
        const char* end = text.data() + text.size();
        int64_t integer = 0;
        auto [integerEnd, integerError] = std::from_chars(text.data(), end, integer);
        if (integerError == std::errc() && integerEnd == end) return Value(integer);
        double real = 0;
        auto [realEnd, realError] = std::from_chars(text.data(), end, real);
        if (realError != std::errc() || realEnd != end || !std::isfinite(real)) throw SyntaxError();
        return Value(real == 0 ? 0.0 : real); // -0 would be written "-0" and read back as integer 0
    }

    Token identifier()
    {
        Token token;
        token.kind = Token::Kind::Identifier;
        token.escaped = _text[_position] == '#';
        if (token.escaped) ++_position;
        size_t start = _position;
        while (_position < _text.size() && isIdentifierCharacter(_text[_position])) ++_position;
        if (_position == start || std::isdigit(static_cast<unsigned char>(_text[start]))) throw SyntaxError();
        token.text = _text.substr(start, _position - start);
        return token;
    }

    Token symbol()
    {
        static const char* const symbols[] = {"==", "!=", "<>", "<=", "=<", ">=", "=>", "&&", "||", "=", "<",
                                              ">",  "!",  "(",  ")",  "{",  "}",  "[",  "]",  ",",  "."};
        for (const char* symbol : symbols) {
            if (_text.substr(_position).starts_with(symbol)) {
                _position += std::char_traits<char>::length(symbol);
                Token token;
                token.kind = Token::Kind::Symbol;
                token.text = symbol;
                return token;
            }
        }
        throw SyntaxError();
    }

    std::string_view _text;
    size_t _position = 0;
};

class Parser {
public:
    explicit Parser(std::string_view text) : _lexer(text) { advance(); }

    std::unique_ptr<PredicateNode> parse()
    {
        auto predicate = parseChain(false);
        if (_token.kind != Token::Kind::End) throw SyntaxError();
        return predicate;
    }

private:
    // Counts one level of nesting for as long as it lives.
    class Nesting {
    public:
        explicit Nesting(int& depth) : _depth(depth)
        {
            if (++_depth > kMaxNestingDepth) throw SyntaxError();
        }
        ~Nesting() { --_depth; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        int& _depth;
    };

    void advance() { _token = _lexer.next(); }

    bool atSymbol(std::string_view symbol) const
    {
        return _token.kind == Token::Kind::Symbol && _token.text == symbol;
    }

    bool atKeyword(std::string_view keyword) const
    {
        return _token.kind == Token::Kind::Identifier && !_token.escaped && equalsIgnoringCase(_token.text, keyword);
    }

    bool accept(bool found)
    {
        if (found) advance();
        return found;
    }

    void expectSymbol(std::string_view symbol)
    {
        if (!accept(atSymbol(symbol))) throw SyntaxError();
    }

    // An OR chain of AND chains of NOT operands, one node per chain.
    std::unique_ptr<PredicateNode> parseChain(bool isAnd)
    {
        PredicateNodes operands;
        do {
            std::unique_ptr<PredicateNode> operand = isAnd ? parseNot() : parseChain(true);
            auto* compound = dynamic_cast<CompoundPredicate*>(operand.get());
            if (compound && compound->isAnd() == isAnd) {
                for (auto& inner : compound->takeOperands()) operands.push_back(std::move(inner));
            } else {
                operands.push_back(std::move(operand));
            }
        } while (isAnd ? accept(atKeyword("AND") || atSymbol("&&")) : accept(atKeyword("OR") || atSymbol("||")));
        if (operands.size() == 1) return std::move(operands.front());
        return std::make_unique<CompoundPredicate>(isAnd, std::move(operands));
    }

    std::unique_ptr<PredicateNode> parseNot()
    {
        if (!atKeyword("NOT") && !atSymbol("!")) return parsePrimary();
        Nesting nesting(_depth);
        advance();
        return std::make_unique<NotPredicate>(parseNot());
    }

    std::unique_ptr<PredicateNode> parsePrimary()
    {
        if (atSymbol("(")) {
            Nesting nesting(_depth);
            advance();
            auto predicate = parseChain(false);
            expectSymbol(")");
            return predicate;
        }
        if (accept(atKeyword("TRUEPREDICATE"))) return std::make_unique<ConstantPredicate>(true);
        if (accept(atKeyword("FALSEPREDICATE"))) return std::make_unique<ConstantPredicate>(false);
        return parseComparison();
    }

    std::unique_ptr<PredicateNode> parseComparison()
    {
        PredicateModifier modifier = parseModifier();
        PredicateExpression left = parseExpression();
        PredicateOperator op = parseOperator();
        PredicateOptions options = parseOptions();
        PredicateExpression right = parseExpression();
        bool constantRight = right.kind == PredicateExpression::Kind::Constant;
        if (op == PredicateOperator::Between &&
            (right.kind != PredicateExpression::Kind::Aggregate || right.items.size() != 2)) {
            throw SyntaxError();
        }
        std::optional<std::regex> pattern;
        if (op == PredicateOperator::Matches && constantRight && right.constant.isString()) {
            pattern = compilePredicatePattern(right.constant.string(), options.caseInsensitive);
            if (!pattern) throw SyntaxError();
        }
        return std::make_unique<ComparisonPredicate>(modifier, std::move(left), op, options, std::move(right),
                                                     std::move(pattern));
    }

    PredicateModifier parseModifier()
    {
        if (accept(atKeyword("ANY") || atKeyword("SOME"))) return PredicateModifier::Any;
        if (accept(atKeyword("ALL"))) return PredicateModifier::All;
        if (accept(atKeyword("NONE"))) return PredicateModifier::None;
        return PredicateModifier::Direct;
    }

    PredicateOperator parseOperator()
    {
        static const std::pair<const char*, PredicateOperator> symbols[] = {
            {"==", PredicateOperator::Equal},       {"=", PredicateOperator::Equal},
            {"!=", PredicateOperator::NotEqual},    {"<>", PredicateOperator::NotEqual},
            {"<", PredicateOperator::Less},         {"<=", PredicateOperator::LessOrEqual},
            {"=<", PredicateOperator::LessOrEqual}, {">", PredicateOperator::Greater},
            {">=", PredicateOperator::GreaterOrEqual}, {"=>", PredicateOperator::GreaterOrEqual}};
        static const std::pair<const char*, PredicateOperator> keywords[] = {
            {"BEGINSWITH", PredicateOperator::BeginsWith}, {"ENDSWITH", PredicateOperator::EndsWith},
            {"CONTAINS", PredicateOperator::Contains},     {"LIKE", PredicateOperator::Like},
            {"MATCHES", PredicateOperator::Matches},       {"IN", PredicateOperator::In},
            {"BETWEEN", PredicateOperator::Between}};
        for (auto [text, op] : symbols) {
            if (accept(atSymbol(text))) return op;
        }
        for (auto [text, op] : keywords) {
            if (accept(atKeyword(text))) return op;
        }
        throw SyntaxError();
    }

    PredicateOptions parseOptions()
    {
        PredicateOptions options;
        if (!accept(atSymbol("["))) return options;
        if (_token.kind != Token::Kind::Identifier || _token.escaped) throw SyntaxError();
        for (char letter : _token.text) {
            char c = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
            if (c == 'c') options.caseInsensitive = true;
            else if (c == 'd') options.diacriticInsensitive = true;
            else throw SyntaxError();
        }
        advance();
        expectSymbol("]");
        return options;
    }

    PredicateExpression parseExpression()
    {
        using Kind = PredicateExpression::Kind;
        if (atSymbol("{")) return parseAggregate();
        if (_token.kind == Token::Kind::String) return constant(Value(std::move(_token.text)));
        if (_token.kind == Token::Kind::Number) return constant(_token.number);
        if (atKeyword("YES") || atKeyword("TRUE")) return constant(Value(true));
        if (atKeyword("NO") || atKeyword("FALSE")) return constant(Value(false));
        if (atKeyword("NIL") || atKeyword("NULL")) return constant(Value());
        if (accept(atKeyword("SELF"))) return expression(Kind::Self);
        if (_token.kind != Token::Kind::Identifier || (!_token.escaped && isPredicateReservedWord(_token.text))) {
            throw SyntaxError();
        }
        PredicateExpression keyPath = expression(Kind::KeyPath);
        keyPath.keyPath = _token.text;
        advance();
        while (accept(atSymbol("."))) {
            if (_token.kind != Token::Kind::Identifier) throw SyntaxError();
            keyPath.keyPath += '.' + _token.text;
            advance();
        }
        return keyPath;
    }

    static PredicateExpression expression(PredicateExpression::Kind kind)
    {
        PredicateExpression expression;
        expression.kind = kind;
        return expression;
    }

    PredicateExpression constant(Value value)
    {
        advance();
        PredicateExpression expression = Parser::expression(PredicateExpression::Kind::Constant);
        expression.constant = std::move(value);
        return expression;
    }

    PredicateExpression parseAggregate()
    {
        Nesting nesting(_depth);
        advance();
        PredicateExpression aggregate = expression(PredicateExpression::Kind::Aggregate);
        if (accept(atSymbol("}"))) return aggregate;
        do {
            aggregate.items.push_back(parseExpression());
        } while (accept(atSymbol(",")));
        expectSymbol("}");
        return aggregate;
    }

    Lexer _lexer;
    Token _token;
    int _depth = 0;
};

} // namespace

std::shared_ptr<Predicate> Predicate::predicateWithFormat(const std::string& format)
{
    try {
        return std::make_shared<Predicate>(Parser(format).parse());
    } catch (const SyntaxError&) {
        std::string quoted = format.size() > kMaxQuotedLength ? format.substr(0, kMaxQuotedLength) + "..." : format;
        throw VLException("VLInvalidPredicateFormat", "Unable to parse the format string \"" + quoted + "\"");
    }
}
