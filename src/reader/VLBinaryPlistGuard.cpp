#include "reader/VLBinaryPlistGuard.h"

#include "reader/VLPlistParseInfo.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace {

// Every version of the binary form is walked; libplist itself reads only "bplist00".
constexpr std::string_view magic = "bplist";
constexpr size_t headerSize = 8;
constexpr size_t trailerSize = 32;
// What libplist spends on one node, roughly, and what a request may let it spend in all.
constexpr uint64_t nodeBytes = 96;
constexpr uint64_t fixedBudget = uint64_t{1} << 20;
constexpr uint64_t budgetPerFileByte = 48;

enum : uint8_t { TypeData = 0x4, TypeASCII = 0x5, TypeUTF16 = 0x6, TypeArray = 0xA, TypeDictionary = 0xD };

class ObjectWalk {
public:
    explicit ObjectWalk(std::string_view bytes) : _bytes(bytes) {}

    bool run()
    {
        if (_bytes.size() < headerSize + trailerSize) return false;
        size_t trailer = _bytes.size() - trailerSize;
        _offsetWidth = byte(trailer + 6);
        _referenceWidth = byte(trailer + 7);
        uint64_t objects = bigEndian(trailer + 8, 8);
        uint64_t top = bigEndian(trailer + 16, 8);
        uint64_t table = bigEndian(trailer + 24, 8);
        if (_offsetWidth < 1 || _offsetWidth > 8 || _referenceWidth < 1 || _referenceWidth > 8) return false;
        if (table < headerSize || table > trailer || objects > (trailer - table) / _offsetWidth) return false;
        _table = static_cast<size_t>(table);
        _costs.assign(static_cast<size_t>(objects), 0);
        _open.assign(static_cast<size_t>(objects), false);
        _budget = fixedBudget + budgetPerFileByte * _bytes.size();
        return cost(top, 0).has_value();
    }

private:
    uint8_t byte(size_t at) const { return static_cast<uint8_t>(_bytes[at]); }

    uint64_t bigEndian(size_t at, size_t width) const
    {
        uint64_t value = 0;
        for (size_t i = 0; i < width; ++i) value = value << 8 | byte(at + i);
        return value;
    }

    // The count of an object whose marker stands at `at`; `at` moves to its contents, which must
    // end before the offset table.
    std::optional<uint64_t> count(size_t& at, uint64_t unitSize) const
    {
        uint64_t length = byte(at) & 0x0F;
        ++at;
        if (length == 0x0F) {
            if (at >= _table || (byte(at) & 0xF0) != 0x10) return std::nullopt;
            size_t width = size_t{1} << (byte(at) & 0x0F);
            if (width > 8 || _table - at <= width) return std::nullopt;
            length = bigEndian(at + 1, width);
            at += 1 + width;
        }
        if (length > (_table - at) / unitSize) return std::nullopt;
        return length;
    }

    bool holdsNul(size_t at, uint64_t units) const
    {
        for (uint64_t i = 0; i < units; ++i)
            if (byte(at + 2 * i) == 0 && byte(at + 2 * i + 1) == 0) return true;
        return false;
    }

    // The bytes libplist would spend on the object and everything it refers to.
    std::optional<uint64_t> cost(uint64_t object, uint32_t depth)
    {
        if (depth > VLPlistMaximumNesting || object >= _costs.size() || _open[object]) return std::nullopt;
        if (_costs[object]) return _costs[object];
        uint64_t offset = bigEndian(_table + static_cast<size_t>(object) * _offsetWidth, _offsetWidth);
        if (offset < headerSize || offset >= _table) return std::nullopt;
        size_t at = static_cast<size_t>(offset);
        uint64_t total = nodeBytes;
        switch (byte(at) >> 4) {
        case TypeData:
        case TypeASCII: {
            auto length = count(at, 1);
            if (!length) return std::nullopt;
            total += *length;
            break;
        }
        case TypeUTF16: {
            auto units = count(at, 2);
            if (!units || holdsNul(at, *units)) return std::nullopt;
            total += 3 * *units;
            break;
        }
        case TypeArray:
        case TypeDictionary: {
            uint64_t perEntry = (byte(at) >> 4) == TypeDictionary ? 2 : 1;
            auto entries = count(at, perEntry * _referenceWidth);
            if (!entries) return std::nullopt;
            _open[object] = true;
            for (uint64_t i = 0; i < *entries * perEntry; ++i) {
                auto child = cost(bigEndian(at + i * _referenceWidth, _referenceWidth), depth + 1);
                if (!child || *child > _budget - total) return std::nullopt;
                total += *child;
            }
            _open[object] = false;
            break;
        }
        default: break;
        }
        if (total > _budget) return std::nullopt;
        return _costs[object] = total;
    }

    std::string_view _bytes;
    size_t _offsetWidth = 0;
    size_t _referenceWidth = 0;
    size_t _table = 0;
    uint64_t _budget = 0;
    std::vector<uint64_t> _costs;
    std::vector<bool> _open;
};

} // namespace

bool binaryPlistIsSafe(std::string_view bytes)
{
    if (bytes.substr(0, magic.size()) != magic) return true;
    return ObjectWalk(bytes).run();
}
