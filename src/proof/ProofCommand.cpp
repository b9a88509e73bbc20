#include "proof/ProofCommand.h"

#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLInstance.h"
#include "model/VLUTF8.h"
#include "proof/ProofBlocks.h"
#include "proof/ProofDocument.h"
#include "proof/ProofOptions.h"
#include "thumbnail/ThumbnailCommand.h"
#include "thumbnail/VLFontLoader.h"
#include "thumbnail/VLTextSetting.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <optional>

namespace {

// A proof of every glyph reads every glyph: far more outline than a thumbnail may take, and
// still a bound on what a hostile document can make the command build.
constexpr uint64_t proofOutlineRecords = 100'000'000;

struct ProofError {
    int status;
    std::string message;
};

std::shared_ptr<VLFontMaster> masterNamed(const VLFont& font, const std::string& name)
{
    if (name.empty()) return font.fontMasterAtIndex(0);
    auto master = font.fontMasterForName(name);
    if (!master) throw ProofError{ThumbnailCommandExitUsage, "the document has no master named " + name};
    return master;
}

// The masters blended as the instance says; nothing where they can't be blended there.
std::optional<VLTextStyle> styleOfInstance(VLFont& font, VLInstance& instance)
{
    auto factors = instance.instanceInterpolationsInFont(font);
    if (!factors) return std::nullopt;
    return VLTextStyle(font, std::move(*factors));
}

VLTextStyle instanceStyle(VLFont& font, const std::string& name)
{
    for (const auto& instance : font.instances()) {
        if (instance->name() != name) continue;
        if (auto style = styleOfInstance(font, *instance)) return *style;
        throw ProofError{ThumbnailCommandExitNothingDrawn, "the masters can't be blended at the instance " + name};
    }
    throw ProofError{ThumbnailCommandExitUsage, "the document has no instance named " + name};
}

std::u32string textToSet(const ProofOptions& options, VLFontLoader& loader)
{
    return options.text.empty() ? loader.generatePreviewString() : decodeUTF8(options.text);
}

ProofPages textPages(const ProofOptions& options, VLFontLoader& loader)
{
    VLFont& font = *loader.font();
    std::u32string text = textToSet(options, loader);
    VLTextStyle style = options.instance.empty() ? VLTextStyle::forMaster(font, masterNamed(font, options.master)->id())
                                                 : instanceStyle(font, options.instance);
    return {{ProofTextBlock(font, text, style, "")}};
}

ProofPages allPages(const ProofOptions& options, VLFontLoader& loader)
{
    VLFont& font = *loader.font();
    std::u32string text = textToSet(options, loader);
    ProofPages pages;
    for (const auto& master : font.fontMasters()) {
        VLTextStyle style = VLTextStyle::forMaster(font, master->id());
        pages.push_back({ProofTextBlock(font, text, style, master->name())});
    }
    for (const auto& instance : font.instances()) {
        if (auto style = styleOfInstance(font, *instance))
            pages.push_back({ProofTextBlock(font, text, *style, instance->name())});
        else
            std::fprintf(stderr, "velmor-proof: left out the instance %s: its masters can't be blended there\n",
                         instance->name().c_str());
    }
    return pages;
}

ProofPages pagesFor(const ProofOptions& options, VLFontLoader& loader)
{
    switch (options.mode) {
    case ProofOptions::Mode::SampleSheet: return {{ProofSampleSheetBlock(loader)}};
    case ProofOptions::Mode::Text: return textPages(options, loader);
    case ProofOptions::Mode::All: return allPages(options, loader);
    case ProofOptions::Mode::Glyphs:
        return {{ProofGlyphGridBlock(*loader.font(), masterNamed(*loader.font(), options.master)->id())}};
    }
    return {};
}

int run(const ProofOptions& options)
{
    VLFontLoader loader;
    if (!loader.importFontFromURL(options.input) || loader.font()->fontMasters().empty()) {
        std::fprintf(stderr, "velmor-proof: %s can't be read\n", options.input.c_str());
        return ThumbnailCommandExitUnreadable;
    }
    loader.font()->setOutlineRecordsLeft(proofOutlineRecords);
    try {
        ProofPages pages = pagesFor(options, loader);
        return writeProofPages(pages, options, options.size / ProofLineHeight(*loader.font()));
    } catch (const ProofError& error) {
        std::fprintf(stderr, "velmor-proof: %s\n", error.message.c_str());
        return error.status;
    }
}

} // namespace

int runProofCommand(int argc, char** argv)
{
    ProofOptions options;
    if (int status = parseProofOptions(argc, argv, options); status >= 0) return status;
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return run(options);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "velmor-proof: %s\n", exception.what());
        return ThumbnailCommandExitUnreadable;
    }
}
