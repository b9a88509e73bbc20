#include "reader/VLGlyphListReader.h"

#include "model/VLGlyph.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistRecords.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <iterator>
#include <string_view>
#include <system_error>
#include <thread>

namespace {

// A glyph's halves would count their records apart.
static_assert(maximumRecordsInList<VLGlyph>() == SIZE_MAX);

// The text form writes a glyph record of a list behind the "," that ends the record before, with
// the glyph's name first. The same bytes may stand inside a string or a glyph's other keys, so
// this is a guess, which the first reader confirms by arriving at it.
constexpr std::string_view firstKey = "glyphname";
// Glyph records are a few kilobytes; no guess is made when none begins this close to the middle.
constexpr size_t searchedBytes = size_t{256} << 10;

const uint8_t* behindSpaceBefore(const uint8_t* p, const uint8_t* from)
{
    while (p > from && isPlistFullSpace(p[-1])) --p;
    return p;
}

// The opening brace of the first record from `from` that looks like a glyph in a list.
const uint8_t* guessGlyphRecord(const uint8_t* from, const uint8_t* end)
{
    if (from >= end) return nullptr;
    const uint8_t* last = from + std::min(static_cast<size_t>(end - from), searchedBytes);
    for (const uint8_t* key = from; key < last; key += firstKey.size()) {
        key = static_cast<const uint8_t*>(memmem(key, static_cast<size_t>(last - key), firstKey.data(), firstKey.size()));
        if (!key) return nullptr;
        const uint8_t* brace = behindSpaceBefore(key, from);
        if (brace == from || brace[-1] != '{') continue;
        const uint8_t* comma = behindSpaceBefore(brace - 1, from);
        if (comma > from && comma[-1] == ',') return brace - 1;
    }
    return nullptr;
}

using Glyphs = std::vector<std::shared_ptr<VLGlyph>>;

// Reads the list from a guessed record to its end on a thread of its own, with its own copy of
// the parse state; its glyphs are worth keeping only if the guess was a record.
class SecondReader {
public:
    SecondReader(const VLPlistParseInfo& info, uint8_t format, const uint8_t* start)
        : _info(info), _format(format), _start(start)
    {
        _info.curr = start;
        // The string set is not shared between threads.
        _info.stringSet = std::make_shared<VLPlistStringSet>();
        // A sandbox may refuse the thread; the first reader then reads alone.
        try {
            _thread = std::thread([this] { run(); });
        } catch (const std::system_error&) {
        }
    }
    ~SecondReader() { stop(); }
    SecondReader(const SecondReader&) = delete;
    SecondReader& operator=(const SecondReader&) = delete;

    // The first reader stands at a record: when the second began there, the whole read's result,
    // with the second's glyphs and state taken over; otherwise nothing, and the first goes on.
    std::optional<bool> meet(VLPlistParseInfo* info, Glyphs& glyphs)
    {
        if (!_thread.joinable() || info->curr < _start) return std::nullopt;
        if (info->curr > _start) {
            stop();
            return std::nullopt;
        }
        _thread.join();
        if (!_ranToEnd) return std::nullopt;
        auto strings = std::move(info->stringSet);
        *info = std::move(_info);
        info->stringSet = std::move(strings);
        for (const auto& glyph : _glyphs) glyph->replaceParseInfo(&_info, info);
        glyphs.insert(glyphs.end(), std::make_move_iterator(_glyphs.begin()), std::make_move_iterator(_glyphs.end()));
        kept = true;
        return _ok;
    }

    bool kept = false;

private:
    void run()
    {
        // Memory running out here fails only the guess: the first reader reads this part again.
        try {
            _ok = readPlistObjectsFrom(&_info, _format, nullptr, _glyphs, [this](const Glyphs&) -> std::optional<bool> {
                if (_stopped.load(std::memory_order_relaxed)) return false;
                return std::nullopt;
            });
            _ranToEnd = true;
        } catch (...) {
        }
    }

    void stop()
    {
        _stopped.store(true, std::memory_order_relaxed);
        if (_thread.joinable()) _thread.join();
    }

    VLPlistParseInfo _info;
    const uint8_t _format;
    const uint8_t* const _start;
    Glyphs _glyphs;
    bool _ok = false;
    bool _ranToEnd = false;
    std::atomic<bool> _stopped{false};
    std::thread _thread;
};

} // namespace

std::optional<Glyphs> readGlyphListGuessingAt(VLPlistParseInfo* info, uint8_t format, const uint8_t* guess, bool* split)
{
    if (split) *split = false;
    VLPlistNesting nesting(info);
    if (!enterPlistList(info, nesting)) return std::nullopt;
    Glyphs glyphs;
    // A bound on records is one counter for the whole document, which two threads can't share.
    const uint8_t* start = guess && !info->recordsLeft ? guessGlyphRecord(std::max(guess, info->curr), info->end) : nullptr;
    bool ok = false;
    if (start) {
        SecondReader second(*info, format, start);
        ok = readPlistObjectsFrom(info, format, nullptr, glyphs, [&](Glyphs& read) { return second.meet(info, read); });
        if (split) *split = second.kept;
    } else {
        ok = readPlistObjectsFrom(info, format, nullptr, glyphs, nullptr);
    }
    if (!ok) return std::nullopt;
    return glyphs;
}

std::optional<Glyphs> readGlyphList(VLPlistParseInfo* info, uint8_t format)
{
    size_t left = static_cast<size_t>(info->end - info->curr);
    bool worthASecondThread = left >= VLGlyphListSplitBytes && std::thread::hardware_concurrency() > 1;
    return readGlyphListGuessingAt(info, format, worthASecondThread ? info->curr + left / 2 : nullptr, nullptr);
}
