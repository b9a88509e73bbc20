#pragma once

// The structural scan behind the skippers, included by one source file per instruction set, which
// the build compiles for that set. Everything here has internal linkage, and those files use
// nothing else that is defined inline, so no code built for one set can stand in for another's.
//
// The scan checks the skippers' grammar over lists, dictionaries, unquoted strings and line space
// a block of 64 bytes at a time, one bit per byte. Between two tokens the grammar's state is what
// the last token allows next and the stack of open lists and dictionaries. Within a block, the
// token that follows each token (across line space) is found for all tokens at once by one carry
// through the space bits; what may follow depends on the token before, and for a closing bracket
// on where its opening one stood. An opening bracket directly followed by a closing one is paired
// with one more carry; the few other brackets go through the stack one by one. A quoted string or
// data is stepped over by the skippers' own loops. Anything else the scan leaves to the scalar
// path by giving up: a byte of another kind, text the grammar rejects, or nesting near the limit.

#include "reader/VLPlistLexical.h"

#include <array>
#include <cstdint>

namespace {

// One bit per byte of a block, the first byte in the lowest bit. Lists need the first five; the
// others are filled only for blocks that hold other bytes. Double quotes and backslashes are no
// class of their own: they only mark strings.
struct PlistBlockClasses {
    uint64_t unquoted;
    uint64_t space;
    uint64_t openParen;
    uint64_t closeParen;
    uint64_t comma;
    uint64_t openBrace = 0;
    uint64_t closeBrace = 0;
    uint64_t semicolon = 0;
    uint64_t equals = 0;
    uint64_t quote = 0;
    uint64_t backslash = 0;
};

// Lookups by nibble for the instruction sets that have a byte shuffle, made from the scanner's own
// character classes. For each low nibble: a bit for each high nibble from 0 to 7 whose byte is an
// unquoted character, and the line-space byte with that low nibble (0x80, which no byte below 0x80
// equals, where there is none). The shuffle looks up each lane of 16 bytes in its own copy of the
// table, so the tables repeat for vectors of up to 64 bytes.
template <typename ByLowNibble> constexpr std::array<uint8_t, 64> plistNibbleTable(ByLowNibble entry)
{
    std::array<uint8_t, 64> table{};
    for (int i = 0; i < 64; ++i) table[i] = entry(i & 15);
    return table;
}
constexpr std::array<uint8_t, 64> plistUnquotedByLowNibble = plistNibbleTable([](int low) {
    uint8_t row = 0;
    for (int high = 0; high < 8; ++high)
        if (isPlistUnquotedCharacter(static_cast<uint8_t>(high << 4 | low))) row |= static_cast<uint8_t>(1 << high);
    return row;
});
constexpr std::array<uint8_t, 64> plistHighNibbleBits =
    plistNibbleTable([](int high) { return static_cast<uint8_t>(high < 8 ? 1 << high : 0); });
constexpr std::array<uint8_t, 64> plistSpaceByLowNibble = plistNibbleTable([](int low) {
    for (int high = 0; high < 8; ++high)
        if (isPlistLineSpace(static_cast<uint8_t>(high << 4 | low))) return static_cast<uint8_t>(high << 4 | low);
    return uint8_t{0x80};
});
// The lookups agree with the scanner's classes for every byte, as the shuffles use them: a byte
// from 0x80 on shuffles to 0, and its high nibble has no bit.
static_assert([] {
    for (int c = 0; c < 256; ++c) {
        auto byte = static_cast<uint8_t>(c);
        bool unquoted = (plistUnquotedByLowNibble[c & 15] & plistHighNibbleBits[c >> 4]) != 0;
        uint8_t shuffled = c & 0x80 ? 0 : plistSpaceByLowNibble[c & 15];
        if (unquoted != isPlistUnquotedCharacter(byte) || (shuffled == byte) != isPlistLineSpace(byte)) return false;
    }
    return true;
}());

// What passes from one block to the next: 1 in the field of what the last token allows next while
// its follower is still to come, and whether the block ends inside a run of unquoted characters.
// A key waits for its follower where no field says otherwise.
struct PlistBlockCarry {
    uint64_t item;      // behind "(" or ",": an item or ")"
    uint64_t key;       // behind "{" or ";": a key or "}"
    uint64_t value;     // behind "=": a value
    uint64_t itemEnd;   // behind an item: "," or ")"
    uint64_t valueEnd;  // behind a value: ";"
    uint64_t inRun;
    // The last bracket so far opens, and is not on the stack yet; it opened a dictionary's value.
    uint64_t opener;
    uint64_t valueOpener;
};

// The first byte outside `passed` from each bit of `from` on: the token that follows across space.
// `carry` goes in at bit 0 and comes out where the search runs past the block.
inline uint64_t plistFollowers(uint64_t passed, uint64_t from, uint64_t& carry)
{
    uint64_t sum;
    carry = __builtin_add_overflow(passed, from | carry, &sum);
    return sum & ~passed;
}

// The same for tokens of `from` that are single bytes, where the last byte's follower lies beyond.
inline uint64_t plistFollowersOfBytes(uint64_t passed, uint64_t from, uint64_t& carry)
{
    uint64_t followers = plistFollowers(passed, from << 1, carry);
    carry |= from >> 63;
    return followers;
}

// The open lists and dictionaries, the scanned one being level 1.
struct PlistScanStack {
    uint32_t level;
    uint32_t maximumLevel;
    // Level k was opened as a dictionary's value rather than a list's item; written before read.
    bool isValue[VLPlistMaximumNesting + 1];
};

// Pairs the brackets of a block and sorts its closing brackets by where their opening ones stood:
// at a list's item or at a dictionary's value. Returns the index of the bracket that closes level 1,
// if there is one. An opening bracket directly followed by a closing one, also across the edge of
// a block, is paired by a carry; the others go through the stack, an opening one when the next
// bracket turns out to open too.
inline int pairPlistBrackets(uint64_t openers, uint64_t closers, uint64_t valueOpeners, PlistBlockCarry& carry,
                             PlistScanStack& stack, uint64_t& itemClosers, uint64_t& valueClosers)
{
    uint64_t brackets = openers | closers;
    uint64_t behindOpener = plistFollowersOfBytes(~brackets, openers, carry.opener);
    uint64_t behindValueOpener = plistFollowersOfBytes(~brackets, valueOpeners, carry.valueOpener);
    uint64_t innerClosers = behindOpener & closers;
    valueClosers = behindValueOpener & closers;
    itemClosers = innerClosers & ~valueClosers;
    for (uint64_t walk = (closers & ~innerClosers) | (behindOpener & openers); walk; walk &= walk - 1) {
        uint64_t bit = walk & -walk;
        if (bit & openers) stack.isValue[++stack.level] = (behindValueOpener & bit) != 0;
        else if (stack.level == 1) return __builtin_ctzll(bit);
        else (stack.isValue[stack.level--] ? valueClosers : itemClosers) |= bit;
    }
    return -1;
}

// The bytes of some class; the others end the bytes a block can check itself.
inline uint64_t knownPlistBytes(const PlistBlockClasses& c)
{
    return c.unquoted | c.space | c.openParen | c.closeParen | c.comma | c.openBrace | c.closeBrace | c.semicolon |
           c.equals;
}

// Takes the bytes of `bits` out of every class but the unquoted characters.
inline void removePlistClasses(PlistBlockClasses& c, uint64_t bits)
{
    c.space &= ~bits;
    c.openParen &= ~bits;
    c.closeParen &= ~bits;
    c.comma &= ~bits;
    c.openBrace &= ~bits;
    c.closeBrace &= ~bits;
    c.semicolon &= ~bits;
    c.equals &= ~bits;
}

// Quoted strings that open and close within the block count as runs of unquoted characters, which
// the grammar takes the same way, where they hold no backslash and stand apart from other runs and
// strings; the others end the checked bytes, and the skippers' own loop steps over them.
inline uint64_t absorbPlistStrings(PlistBlockClasses& c, uint64_t known, uint64_t inRun)
{
    for (uint64_t open; (open = ~known & (known + 1)) & c.quote;) {
        uint64_t later = c.quote & ~((open << 1) - 1);
        uint64_t close = later & -later;
        uint64_t string = (close << 1) - open;
        bool apart = !(c.unquoted & (open >> 1)) && !(open == 1 && inRun) && !((c.unquoted | c.quote) & (close << 1));
        if (!close || close >> 63 || (string & c.backslash) || !apart) break;
        c.unquoted |= string;
        removePlistClasses(c, string);
        known |= string;
    }
    return known;
}

// How a block ends: with the bracket that closes level 1 at `index`, with the first `index` bytes
// checked and the rest still to come, or with the scan given up.
struct PlistBlockEnd {
    enum { closed, checked, givenUp } kind;
    int index;
};

// Checks the bytes of a block up to the first byte of no class. A block of list bytes only, behind
// a list's item or its separator, takes a shorter way: `listOnly`, where everything about keys and
// values is zero.
template <bool listOnly>
inline PlistBlockEnd scanPlistBlock(PlistBlockClasses c, PlistBlockCarry& carry, PlistScanStack& stack)
{
    int stop = 64;
    uint64_t outside = 0;
    if constexpr (listOnly) {
        c.openBrace = c.closeBrace = c.semicolon = c.equals = 0;
        carry.key = carry.value = carry.valueEnd = carry.valueOpener = 0;
    } else {
        uint64_t known = knownPlistBytes(c);
        if (~known) known = absorbPlistStrings(c, known, carry.inRun);
        if (~known) {
            stop = __builtin_ctzll(~known);
            outside = ~uint64_t{0} << stop;
            c.unquoted &= ~outside;
            removePlistClasses(c, outside);
        }
    }
    uint64_t openers = c.openParen | c.openBrace;
    uint64_t closers = c.closeParen | c.closeBrace;
    // Each opening bracket adds a level; near the limit the scalar path counts them itself.
    if (__builtin_expect(stack.level + 65 > stack.maximumLevel, 0) &&
        stack.level + carry.opener + __builtin_popcountll(openers) > stack.maximumLevel)
        return {PlistBlockEnd::givenUp, 0};

    // The tokens that stand where an item, a key or a value is expected.
    uint64_t passed = c.space | outside;
    uint64_t atItem = plistFollowersOfBytes(passed, c.openParen | c.comma, carry.item);
    uint64_t atKey = plistFollowersOfBytes(passed, c.openBrace | c.semicolon, carry.key);
    uint64_t atValue = plistFollowersOfBytes(passed, c.equals, carry.value);

    uint64_t itemClosers, valueClosers;
    int closing = pairPlistBrackets(openers, closers, atValue & openers, carry, stack, itemClosers, valueClosers);
    if (__builtin_expect(closing >= 0, 0)) {
        outside = ~uint64_t{1} << closing;
        passed |= outside;
        c.unquoted &= ~outside;
        itemClosers &= ~outside;
        valueClosers &= ~outside;
    }

    // The tokens behind items, keys and values. Runs of unquoted characters are passed by the same
    // carry as space, which is right as long as no run follows another, and that is checked.
    uint64_t unquoted = c.unquoted;
    uint64_t starts = atItem | atKey | atValue;
    uint64_t runStarts = unquoted & ~(unquoted << 1 | carry.inRun);
    uint64_t words = unquoted | passed;
    uint64_t behindItem = plistFollowers(words, (atItem & unquoted) | itemClosers << 1, carry.itemEnd);
    // In a list, only a closing bracket from the stack can stand behind a value.
    uint64_t behindValue = 0;
    if (!listOnly || valueClosers) behindValue = plistFollowers(words, (atValue & unquoted) | valueClosers << 1, carry.valueEnd);
    carry.itemEnd |= itemClosers >> 63;
    carry.valueEnd |= valueClosers >> 63;
    // Each token follows exactly one token, so the sets above and the tokens behind keys, which are
    // all the others, divide the tokens among them; each kind of token may stand in some of them.
    uint64_t wrong = (runStarts & ~starts) | (openers & ~(atItem | atValue)) | (c.closeParen & ~(atItem | behindItem)) |
                     (c.closeBrace & ~atKey) | (c.comma & ~behindItem) | (c.semicolon & (starts | behindItem)) |
                     (c.equals & (starts | behindItem | behindValue));
    if (wrong & ~outside) return {PlistBlockEnd::givenUp, 0};
    if (closing >= 0) return {PlistBlockEnd::closed, closing};
    carry.inRun = unquoted >> 63;
    return {PlistBlockEnd::checked, stop};
}

// Steps over the quoted string or data at `p`, where the carry says the grammar allows it.
inline const uint8_t* stepOverPlistLiteral(const uint8_t* p, const uint8_t* end, PlistBlockCarry& carry)
{
    const uint8_t* behind = nullptr;
    if (*p == '"' && (carry.item | carry.key | carry.value)) behind = plistQuotedStringEnd(p + 1, end);
    else if (*p == '<' && (carry.item | carry.value)) behind = plistDataEnd(p + 1, end);
    carry = {0, 0, 0, carry.item, carry.value, 0, carry.opener, carry.valueOpener};
    return behind;
}

// `Classes` gives the list classes of a block (`list`) and adds the others (`addOthers`).
template <typename Classes>
const uint8_t* scanPlistStructure(const uint8_t* content, const uint8_t* end, bool dictionary, uint32_t maximumLevels)
{
    if (maximumLevels < 1) return nullptr;
    PlistBlockCarry carry{!dictionary, dictionary, 0, 0, 0, 0, 0, 0};
    PlistScanStack stack;
    stack.level = 1;
    stack.maximumLevel = maximumLevels;
    // `p` never passes `end`, since the zero bytes behind it belong to no class, so each block
    // lies within the zero page behind the text.
    for (const uint8_t* p = content; p;) {
        PlistBlockClasses c = Classes::list(p);
        PlistBlockEnd block;
        if (~(c.unquoted | c.space | c.openParen | c.closeParen | c.comma) == 0 &&
            !(carry.key | carry.value | carry.valueEnd | carry.valueOpener)) {
            block = scanPlistBlock<true>(c, carry, stack);
        } else {
            Classes::addOthers(p, c);
            block = scanPlistBlock<false>(c, carry, stack);
        }
        if (block.kind == PlistBlockEnd::closed) return p + block.index;
        if (block.kind == PlistBlockEnd::givenUp) return nullptr;
        p += block.index;
        if (block.index < 64) p = stepOverPlistLiteral(p, end, carry);
    }
    return nullptr;
}

} // namespace
