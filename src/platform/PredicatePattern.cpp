#include "platform/PredicateNode.h"

#include <algorithm>
#include <charconv>
#include <cmath>

// std::regex backtracks, so a match may try every combination of the choices its quantifiers
// and alternatives offer. Patterns come from untrusted documents, so a pattern is refused when
// that number of combinations, counted on the longest text MATCHES runs on, is too large, and
// outright when it repeats a part that itself has choices (the exponential case, as in "(a+)+").

namespace {

constexpr size_t kMaxPatternLength = 128;
// The largest count of a {n,m} quantifier: std::regex copies the repeated part that many times.
constexpr long kMaxRepeatCount = 100;
constexpr double kMaxChoices = 1 << 20;

struct Quantifier {
    double choices;
    bool repeats;
    size_t end;
};

// The counts of a "{n}", "{n,}" or "{n,m}" starting at `start`; a missing m is -1.
std::optional<std::pair<long, long>> readCounts(std::string_view pattern, size_t start)
{
    const char* end = pattern.data() + pattern.size();
    long low = 0;
    auto [cursor, lowError] = std::from_chars(pattern.data() + start + 1, end, low);
    if (lowError != std::errc()) return std::nullopt;
    long high = low;
    if (cursor < end && *cursor == ',') {
        auto [afterHigh, highError] = std::from_chars(++cursor, end, high);
        if (highError == std::errc()) cursor = afterHigh;
        else high = -1;
    }
    if (cursor == end || *cursor != '}') return std::nullopt;
    return std::pair{low, high};
}

std::optional<Quantifier> readQuantifier(std::string_view pattern, size_t start)
{
    const double unbounded = kMaxPredicateMatchedLength + 1.0;
    Quantifier quantifier{};
    switch (pattern[start]) {
    case '*':
    case '+': quantifier = {unbounded, true, start + 1}; break;
    case '?': quantifier = {2, false, start + 1}; break;
    case '{': {
        auto counts = readCounts(pattern, start);
        if (!counts) return std::nullopt;
        auto [low, high] = *counts;
        size_t end = pattern.find('}', start) + 1;
        if (low > kMaxRepeatCount || high > kMaxRepeatCount) quantifier = {INFINITY, true, end};
        else if (high < 0) quantifier = {unbounded, true, end};
        else quantifier = {static_cast<double>(std::max(high - low, 0L) + 1), high > 1, end};
        break;
    }
    default: return std::nullopt;
    }
    if (quantifier.end < pattern.size() && pattern[quantifier.end] == '?') ++quantifier.end; // the lazy form
    return quantifier;
}

size_t endOfClass(std::string_view pattern, size_t start)
{
    size_t i = start + 1;
    if (i < pattern.size() && pattern[i] == '^') ++i;
    if (i < pattern.size() && pattern[i] == ']') ++i;
    for (; i < pattern.size() && pattern[i] != ']'; ++i) {
        if (pattern[i] == '\\') ++i;
    }
    return i + 1;
}

bool isAffordable(std::string_view pattern)
{
    if (pattern.size() > kMaxPatternLength) return false;
    std::vector<double> groupChoices{1.0}; // the whole pattern, then each open group
    double atomChoices = 1.0;              // of what a quantifier here would apply to
    for (size_t i = 0; i < pattern.size();) {
        if (auto quantifier = readQuantifier(pattern, i)) {
            if (quantifier->repeats && atomChoices > 1) return false;
            groupChoices.back() *= quantifier->choices;
            atomChoices = 1;
            i = quantifier->end;
        } else {
            atomChoices = 1;
            switch (pattern[i]) {
            case '\\': i += 2; break;
            case '[': i = endOfClass(pattern, i); break;
            case '(':
                groupChoices.push_back(1.0);
                i += i + 1 < pattern.size() && pattern[i + 1] == '?' ? 3 : 1; // "(?:", "(?=", "(?!"
                break;
            case ')':
                if (groupChoices.size() == 1) return false;
                atomChoices = groupChoices.back();
                groupChoices.pop_back();
                groupChoices.back() *= atomChoices;
                ++i;
                break;
            case '|': groupChoices.back() *= 2; ++i; break;
            default: ++i;
            }
        }
        if (groupChoices.back() > kMaxChoices) return false;
    }
    return true;
}

} // namespace

std::optional<std::regex> compilePredicatePattern(const std::string& pattern, bool caseInsensitive)
{
    if (!isAffordable(pattern)) return std::nullopt;
    auto flags = std::regex::ECMAScript;
    if (caseInsensitive) flags |= std::regex::icase;
    try {
        return std::regex(pattern, flags);
    } catch (const std::regex_error&) {
        return std::nullopt;
    }
}
