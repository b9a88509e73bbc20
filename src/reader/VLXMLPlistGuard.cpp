#include "reader/VLXMLPlistGuard.h"

#include "reader/VLPlistParseInfo.h"

#include <cstdint>
#include <vector>

namespace {

// The <plist> element stands around the values.
constexpr size_t maximumDepth = VLPlistMaximumNesting + 1;
// Key lookups libplist may make: each key is compared with the keys before it in its dictionary.
constexpr uint64_t fixedLookups = uint64_t{1} << 23;
constexpr uint64_t lookupsPerFileByte = 128;

class ElementWalk {
public:
    explicit ElementWalk(std::string_view bytes)
        : _bytes(bytes), _lookupsLeft(fixedLookups + lookupsPerFileByte * bytes.size())
    {
    }

    bool run()
    {
        for (size_t at = _bytes.find('<'); at != std::string_view::npos; at = _bytes.find('<', at)) {
            at = markup(at);
            if (at == std::string_view::npos) return false;
        }
        return true;
    }

private:
    // Behind the end of the markup that starts at `at`; npos when it never ends or is refused.
    size_t markup(size_t at)
    {
        std::string_view rest = _bytes.substr(at);
        if (rest.starts_with("<!--")) return behind(at, "-->");
        if (rest.starts_with("<![CDATA[")) return behind(at, "]]>");
        if (rest.starts_with("<?")) return behind(at, "?>");
        if (rest.starts_with("<!")) return behind(at, ">");
        if (rest.starts_with("</")) {
            if (!_keys.empty()) _keys.pop_back();
            return behind(at, ">");
        }
        // Anything else is taken for a start tag, which at worst counts an element too many.
        return startTag(at);
    }

    size_t behind(size_t at, std::string_view end) const
    {
        size_t found = _bytes.find(end, at + 2);
        return found == std::string_view::npos ? found : found + end.size();
    }

    // A start tag: its attribute values may hold ">" in quotes; "/>" ends an empty element.
    size_t startTag(size_t at)
    {
        if (_bytes.substr(at + 1, 4) == "key>" || _bytes.substr(at + 1, 4) == "key ") {
            uint64_t before = _keys.empty() ? 0 : _keys.back()++;
            if (before > _lookupsLeft) return std::string_view::npos;
            _lookupsLeft -= before;
        }
        char quote = 0;
        for (size_t i = at + 1; i < _bytes.size(); ++i) {
            char c = _bytes[i];
            if (quote) {
                if (c == quote) quote = 0;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '>') {
                if (_bytes[i - 1] != '/') _keys.push_back(0);
                return _keys.size() > maximumDepth ? std::string_view::npos : i + 1;
            }
        }
        return std::string_view::npos;
    }

    std::string_view _bytes;
    uint64_t _lookupsLeft;
    // The keys met so far in each open element, innermost last.
    std::vector<uint64_t> _keys;
};

} // namespace

bool xmlPlistIsSafe(std::string_view bytes)
{
    return ElementWalk(bytes).run();
}
