#include "platform/Predicate.h"
#include "platform/VLException.h"

#include <gtest/gtest.h>

namespace {

// A glyph-like record: a dictionary read along dotted key paths.
class DictionarySubject : public PredicateSubject {
public:
    explicit DictionarySubject(ValueDictionary values) : _root(std::move(values)) {}

    Value valueForKeyPath(const std::string& keyPath) const override
    {
        if (keyPath == "self") return _root;
        Value value = _root;
        for (size_t start = 0; start <= keyPath.size();) {
            size_t dot = std::min(keyPath.find('.', start), keyPath.size());
            value = value[std::string_view(keyPath).substr(start, dot - start)];
            start = dot + 1;
        }
        return value;
    }

private:
    Value _root;
};

const DictionarySubject& glyph()
{
    static const DictionarySubject subject(ValueDictionary{
        {"name", "a.sc"},
        {"category", "Letter"},
        {"subCategory", "Smart"},
        {"script", "latin"},
        {"case", 1},
        {"width", 500.0},
        {"export", true},
        {"unicode", "00E1"},
        {"unicodes", ValueArray{"00E1", "0061"}},
        {"tags", ValueArray{"Small", "alt"}},
        {"emptyTags", ValueArray{}},
        {"userData", ValueDictionary{{"x", 5}, {"in", "yes"}}},
    });
    return subject;
}

bool holds(const std::string& format)
{
    return Predicate::predicateWithFormat(format)->evaluateWithObject(glyph());
}

std::string canonical(const std::string& format)
{
    return Predicate::predicateWithFormat(format)->predicateFormat();
}

void expectTrue(std::initializer_list<const char*> formats)
{
    for (const char* format : formats) EXPECT_TRUE(holds(format)) << format;
}

void expectFalse(std::initializer_list<const char*> formats)
{
    for (const char* format : formats) EXPECT_FALSE(holds(format)) << format;
}

void expectRejected(const std::string& format)
{
    try {
        Predicate::predicateWithFormat(format);
        ADD_FAILURE() << "accepted: " << format.substr(0, 80);
    } catch (const VLException& e) {
        EXPECT_EQ(e.name(), "VLInvalidPredicateFormat");
    }
}

std::string repeated(const std::string& part, size_t count)
{
    std::string result;
    for (size_t i = 0; i < count; ++i) result += part;
    return result;
}

} // namespace

TEST(PredicateTest, CompoundPrecedenceAndParentheses)
{
    // case == 1 is true, script == "greek" and name == "b" are false.
    expectTrue({"case == 1 OR script == \"greek\" AND name == \"b\"", "NOT script == \"greek\" AND case == 1",
                "!(script == 'greek' || name == 'b')", "TRUEPREDICATE OR FALSEPREDICATE AND FALSEPREDICATE",
                "not not case == 1", "case == 1 && (script == 'greek' OR TRUEPREDICATE)"});
    expectFalse({"(case == 1 OR script == \"greek\") AND name == \"b\"", "NOT (case == 1 AND export == YES)",
                 "FALSEPREDICATE", "NOT TRUEPREDICATE OR FALSEPREDICATE"});

    EXPECT_EQ(canonical("(a == 1 or b == 2) and c == 3"), "(a == 1 OR b == 2) AND c == 3");
    EXPECT_EQ(canonical("a == 1 || (b == 2 && c == 3)"), "a == 1 OR b == 2 AND c == 3");
    EXPECT_EQ(canonical("a == 1 AND (b == 2 AND (c == 3))"), "a == 1 AND b == 2 AND c == 3");
    EXPECT_EQ(canonical("!(a == 1 AND b == 2)"), "NOT (a == 1 AND b == 2)");
    EXPECT_EQ(canonical("(NOT a == 1) AND b == 2"), "NOT a == 1 AND b == 2");
}

TEST(PredicateTest, StringOperatorsAndCaseInsensitivity)
{
    expectTrue({"name BEGINSWITH \"a\"", "name ENDSWITH \".sc\"", "name CONTAINS \".\"", "name ENDSWITH[c] \".SC\"",
                "name BEGINSWITH[cd] 'A.'", "category ==[c] 'LETTER'", "category !=  'LETTER'",
                "category CONTAINS[d] 'ett'", "name < 'b'", "name >[c] 'A'", "subCategory =[c] 'smart'"});
    expectFalse({"name BEGINSWITH \"A\"", "name ENDSWITH \".SC\"", "category == 'LETTER'", "category !=[c] 'letter'",
                 "name CONTAINS 'x'", "name BEGINSWITH \"a.sc.long\"", "case BEGINSWITH '1'"});
}

TEST(PredicateTest, LikeWildcards)
{
    expectTrue({"name LIKE '*.sc'", "name LIKE 'a*'", "name LIKE '?.sc'", "name LIKE '*'", "name LIKE 'a**c'",
                "name LIKE[c] 'A.S?'", "script LIKE '*t*n'"});
    expectFalse({"name LIKE '*.SC'", "name LIKE '??.sc'", "name LIKE 'a'", "name LIKE '*.s'", "case LIKE '*'"});
    // "?" stands for one character, not one byte of it.
    DictionarySubject accented(ValueDictionary{{"name", "\xC3\xA1.sc"}});
    EXPECT_TRUE(Predicate::predicateWithFormat("name LIKE '?.sc'")->evaluateWithObject(accented));
}

TEST(PredicateTest, InContainsAndBetween)
{
    expectTrue({"script IN {'latin', 'greek'}", "script IN[c] {'LATIN'}", "'sc' IN name", "case IN {0, 1.0}",
                "tags CONTAINS 'alt'", "tags CONTAINS[c] 'small'", "case BETWEEN {1, 2}", "width BETWEEN {0, 500}",
                "'Smart' IN subCategory AND 'Letter' IN {category}", "SELF != NULL"});
    expectFalse({"script IN {'greek', 'cyrillic'}", "script IN {}", "'SC' IN name", "case IN 'latin'",
                 "tags CONTAINS 'Alt'", "case BETWEEN {2, 3}", "name BETWEEN {0, 9}"});
}

TEST(PredicateTest, AggregateModifiers)
{
    expectTrue({"ANY unicodes BEGINSWITH '00'", "SOME unicodes == '0061'", "ALL unicodes BEGINSWITH '00'",
                "NONE unicodes == '0062'", "ALL emptyTags == 'x'", "NONE missing == 1", "ANY name == 'a.sc'",
                "ANY unicodes LIKE[c] '*e1'"});
    expectFalse({"ANY unicodes == '0062'", "ALL unicodes == '0061'", "NONE unicodes == '0061'",
                 "ANY emptyTags == 'x'", "ANY missing == NULL"});
}

TEST(PredicateTest, NumbersStringsAndMissingKeys)
{
    expectTrue({"case == 1.0", "case = 1", "width == 500", "width > 499.5", "width <= 5e2", "case >= 0x1",
                "case > -1", "case <> 2", "export == YES", "export == 1", "export != NO", "userData.x =< 5",
                "userData.x => 5.0", "missing == NIL", "missing != 0", "missing != ''", "userData.#in == 'yes'",
                "unicodes == {'00E1', '0061'}", "unicode MATCHES '00[0-9A-F]{2}'"});
    expectFalse({"case == '1'", "case < '2'", "case > '0'", "name > 1", "missing == 0", "missing < 1",
                 "missing >= 0", "missing == ''", "category == NULL", "userData.missing.deeper == 1",
                 "unicode MATCHES '0'", "unicode MATCHES '00e1'"});
    EXPECT_TRUE(holds("unicode MATCHES[c] '00e1'"));
}

TEST(PredicateTest, MatchesRefusesCostlyPatternsAndText)
{
    for (const char* pattern : {"(a+)+b", "(a|aa)*", "(x*){2,5}", "a{1000}", ".*.*.*.*", "((a)", "[a-"}) {
        expectRejected(std::string("name MATCHES \"") + pattern + "\"");
    }
    expectRejected("name MATCHES '" + std::string(200, 'a') + "'");
    EXPECT_TRUE(holds("name MATCHES '(?:a|b)(\\\\.sc)?'"));

    DictionarySubject longName(ValueDictionary{{"name", std::string(300, 'a')}});
    EXPECT_FALSE(Predicate::predicateWithFormat("name MATCHES 'a*'")->evaluateWithObject(longName));
    // A pattern read from the record is held to the same limits, and refusal is no match.
    DictionarySubject costly(ValueDictionary{{"name", std::string(40, 'a')}, {"pattern", "(a*)*b"}});
    EXPECT_FALSE(Predicate::predicateWithFormat("name MATCHES pattern")->evaluateWithObject(costly));
}

TEST(PredicateTest, CanonicalTextIsStable)
{
    EXPECT_EQ(canonical("name beginswith 'a'"), "name BEGINSWITH \"a\"");
    EXPECT_EQ(canonical("name BEGINSWITH \"a\""), "name BEGINSWITH \"a\"");
    EXPECT_EQ(canonical("some unicodes Like[DC] 'x'"), "ANY unicodes LIKE[cd] \"x\"");
    EXPECT_EQ(canonical("a = 1.50 AND b =< 0x10 AND c => -2.0"), "a == 1.5 AND b <= 16 AND c >= -2");
    EXPECT_EQ(canonical("a <> 'say \"hi\"\\\\' or b in {true, no, nil, self}"),
              "a != \"say \\\"hi\\\"\\\\\" OR b IN {YES, NO, NULL, SELF}");
    EXPECT_EQ(canonical("#name == 1 and #and.#in == 2"), "name == 1 AND #and.#in == 2");

    for (const char* format :
         {"name BEGINSWITH \"a\"", "category == \"Letter\" AND case == 1", "script IN {\"latin\", \"greek\"}",
          "name LIKE \"*.sc\"", "name ENDSWITH[c] \".SC\"", "NOT (subCategory == \"Smart\")",
          "unicode MATCHES \"00[0-9A-F]{2}\"", "ALL tags != 'x' OR NONE tags ==[d] \"y\" AND !TRUEPREDICATE",
          "a == 1e300 OR b == -0.0 OR c == 0.1 OR d == 99999999999999999999 OR e == .5",
          "a BETWEEN {-1, 2.25}", "'\\t\\n\\r' IN name", "NOT NOT (a == 1 OR b == 2)", "x == {}",
          "NOT (a == 1 AND (b == 2 OR c == 3))", "userData.x > 3 AND userData.#like CONTAINS[c] \"q\""}) {
        std::string once = canonical(format);
        EXPECT_EQ(canonical(once), once) << format;
    }
}

TEST(PredicateTest, MalformedTextIsRejected)
{
    for (const char* format :
         {"", "   ", "(name == 'a'", "name == 'a')", "name === 'a'", "name ~ 'a'", "name EQUALS 'a'",
          "name == 'a", "name == \"a\\\"", "name == 'a\\", "name == 'a' garbage", "name == 'a' AND", "AND name == 'a'",
          "name", "name ==", "== 'a'", "name == 'a' 'b'", "name BETWEEN {1}", "name BETWEEN 1",
          "name ==[x] 'a'", "name ==[c 'a'", "in == 1", "name == 0x", "name == 1.2.3", "name == 12abc",
          "name == 1e999", "name == {1, 2", "name == {1,}", "a. == 1", "# == 1", "ANY == 1", "NOT", "()",
          "name MATCHES '('", "name == 'a' @", "name == $variable"}) {
        expectRejected(format);
    }
}

TEST(PredicateTest, DeepNestingIsRejectedNotOverflowed)
{
    std::string shallow = repeated("(", 60) + "a == 1" + repeated(")", 60);
    EXPECT_EQ(canonical(shallow), "a == 1");
    expectRejected(repeated("(", 100000));
    expectRejected(repeated("(", 100000) + "a == 1" + repeated(")", 100000));
    expectRejected(repeated("NOT ", 100000) + "a == 1");
    expectRejected(repeated("!", 100000) + "a == 1");
    expectRejected("a IN " + repeated("{", 100000) + repeated("}", 100000));

    try {
        Predicate::predicateWithFormat(repeated("(", 100000));
    } catch (const VLException& e) {
        EXPECT_TRUE(e.reason().starts_with("Unable to parse the format string \"((("));
        EXPECT_LT(e.reason().size(), 300u);
    }
}
