#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "platform/GraphicsContext.h"
#include "platform/VLException.h"
#include "support/PlistTestSupport.h"
#include "thumbnail/ThumbnailProvider.h"

#include <gtest/gtest.h>

#include <cairo.h>
#include <cstdlib>

namespace {

struct Answer {
    std::shared_ptr<ThumbnailReply> reply;
    std::optional<VLError> error;
};

Answer request(const std::string& path, double side = 256)
{
    Answer answer;
    ThumbnailProvider().provideThumbnailForFileRequest_completionHandler(
        ThumbnailRequest(path, {side, side}), [&](std::shared_ptr<ThumbnailReply> reply, std::optional<VLError> error) {
            answer.reply = std::move(reply);
            answer.error = std::move(error);
        });
    return answer;
}

// Draws the reply into a context of its size; canvas units are mapped to pixels by the reply.
struct Picture {
    GraphicsContext context;
    bool drawn = false;

    explicit Picture(const ThumbnailReply& reply)
        : context(static_cast<int>(reply.contextSize().width), static_cast<int>(reply.contextSize().height))
    {
        GraphicsContext::Current current(context);
        drawn = reply.draw();
    }

    uint8_t alphaAt(int x, int y) const { return context.pixelAt(x, y)[3]; }
};

const std::string example = std::string(VELMOR_EXAMPLES) + "/Velmor-Sample.velmor";
const std::string mastersExample = std::string(VELMOR_EXAMPLES) + "/Velmor-Sample-Masters.velmor";

// Two masters in the older format: a square that grows from 300 to 500 units.
const char* legacyTwoMasters = R"({
.appVersion = "1";
fontMaster = (
{
ascender = 800;
descender = -200;
id = light;
weightValue = 300;
},
{
ascender = 800;
descender = -200;
id = bold;
weightValue = 700;
}
);
glyphs = (
{
glyphname = A;
layers = (
{
layerId = light;
paths = (
{
closed = 1;
nodes = (
"300 0 LINE",
"300 300 LINE",
"0 300 LINE",
"0 0 LINE"
);
}
);
width = 600;
},
{
layerId = bold;
paths = (
{
closed = 1;
nodes = (
"500 0 LINE",
"500 500 LINE",
"0 500 LINE",
"0 0 LINE"
);
}
);
width = 600;
}
);
unicode = 0041;
},
{
glyphname = g;
layers = (
{
layerId = light;
width = 400;
},
{
layerId = bold;
width = 400;
}
);
unicode = 0067;
}
);
}
)";

} // namespace

TEST(ThumbnailService, OneMasterDocumentDrawsSolidShapesWithTheirCounters)
{
    Answer answer = request(example);
    ASSERT_TRUE(answer.reply) << answer.error->description();
    // Canvas 100 + 600 + 540 + 100 by 800 + 200 + 200 units; the scale fits the width.
    double scale = 256.0 / 1340.0;
    EXPECT_NEAR(answer.reply->coveredSize().width, 256, 1e-9);
    EXPECT_NEAR(answer.reply->coveredSize().height, 1200 * scale, 1e-9);
    Picture picture(*answer.reply);
    EXPECT_TRUE(picture.drawn);
    auto at = [&](double x, double y) { return picture.alphaAt(static_cast<int>(x * scale), static_cast<int>(y * scale)); };
    // The baseline stands 300 units above the canvas's lower edge; "A" starts at 100.
    EXPECT_EQ(at(100 + 60, 300 + 50), 255) << "the left stem of A";
    EXPECT_EQ(at(100 + 300, 300 + 400), 0) << "the counter of A";
    EXPECT_EQ(at(100 + 300, 300 + 240), 255) << "the bar of A";
    EXPECT_EQ(at(50, 600), 0) << "the margin";
    EXPECT_EQ(at(700 + 250, 300 + 250), 0) << "the bowl's counter of g";
    EXPECT_EQ(at(700 + 250, 300 + 470), 255) << "the top of the bowl of g";
}

TEST(ThumbnailService, MastersAreAveragedUnderTheirTintedOutlines)
{
    {
        // Canvas 100 + 700 + 640 + 100 = 1540 wide by 1200: one unit a pixel, baseline at 300.
        Answer answer = request(mastersExample, 1540);
        ASSERT_TRUE(answer.reply) << answer.error->description();
        Picture picture(*answer.reply);
        EXPECT_TRUE(picture.drawn);
        // "A" is 600 wide in the light master and 700 in the bold one: the mean stands at 150,
        // the light overlay at 200 and the bold one at 100.
        EXPECT_EQ(picture.alphaAt(200, 310), 255) << "the mean's left leg";
        uint8_t tint = picture.alphaAt(140, 310);
        EXPECT_GT(tint, 55) << "only the bold master's leg";
        EXPECT_LT(tint, 75);
        EXPECT_EQ(picture.alphaAt(475, 650), 0) << "the counter of the mean and of both masters";
    }
    TemporaryFile legacy(legacyTwoMasters);
    Answer answer = request(legacy.path, 1200);
    ASSERT_TRUE(answer.reply) << answer.error->description();
    Picture picture(*answer.reply);
    EXPECT_TRUE(picture.drawn);
    // Canvas 100 + 600 + 400 + 100 = 1200 wide: one unit a pixel, baseline at 300.
    EXPECT_EQ(picture.alphaAt(100 + 350, 300 + 350), 255) << "inside the mean square of 400";
    uint8_t tint = picture.alphaAt(100 + 450, 300 + 450);
    EXPECT_GT(tint, 40) << "only the bold master covers this";
    EXPECT_LT(tint, 90);
    EXPECT_EQ(picture.alphaAt(100 + 550, 300 + 550), 0);
}

TEST(ThumbnailService, OnlyTheSamplesLayersAreRead)
{
    std::string text = R"({
.formatVersion = 3;
fontMaster = (
{
id = m01;
}
);
glyphs = (
{
glyphname = x;
layers = (
{
layerId = m01;
width = 500;
}
);
},
{
glyphname = A;
layers = (
{
layerId = m01;
shapes = (
{
closed = 1;
nodes = (
(500,0,l),
(500,700,l),
(0,700,l),
(0,0,l)
);
}
);
width = 600;
}
);
},
{
glyphname = g;
layers = (
{
layerId = m01;
width = 500;
}
);
}
);
}
)";
    TemporaryFile file(text);
    VLError error;
    auto font = VLFont::initWithURL_error(file.path, &error);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->glyphForName("A")->countOfLayers(), 0u);
    EXPECT_EQ(font->glyphForName("A")->maxWidth(), 600);
    EXPECT_EQ(font->glyphForName("x")->countOfLayers(), 0u) << "a glyph that is not drawn stays unread";
}

TEST(ThumbnailService, ErrorCodes)
{
    Answer missing = request("/no/such/document.velmor");
    ASSERT_TRUE(missing.error);
    EXPECT_EQ(missing.error->domain, ThumbnailProvider::replyErrorDomain);
    EXPECT_EQ(missing.error->code, 1);

    TemporaryFile oneGlyph("{\nfontMaster = (\n{\nid = m01;\n}\n);\nglyphs = (\n{\nglyphname = A;\n}\n);\n}\n");
    Answer single = request(oneGlyph.path);
    ASSERT_TRUE(single.error);
    EXPECT_EQ(single.error->code, 1);
    EXPECT_FALSE(single.error->localizedDescription().empty()) << "the exception's reason is the description";

    TemporaryFile broken("{\nfontMaster = (\n{\nid = m01;\n}\n);\nglyphs = (\n{\nglyphname = A;\nlayers = (\n{\n"
                         "bogus = 1;\n}\n);\n},\n{\nglyphname = g;\n}\n);\n}\n");
    Answer unreadableLayers = request(broken.path);
    ASSERT_TRUE(unreadableLayers.error);
    EXPECT_EQ(unreadableLayers.error->code, 2) << "a sample whose layers can't be read is too wide to show";
}

TEST(ThumbnailService, TheHandlerRunsOnceAlsoWhenItsDrawingRaises)
{
    for (const std::string& document : {example, std::string("/no/such/document.velmor")}) {
        int calls = 0;
        auto drawAndRaise = [&](std::shared_ptr<ThumbnailReply> reply, std::optional<VLError>) {
            ++calls;
            if (reply) throw VLException("VLDrawingFailed", "raised while drawing");
        };
        ThumbnailProvider provider;
        ThumbnailRequest request(document, {64, 64});
        if (document == example)
            EXPECT_THROW(provider.provideThumbnailForFileRequest_completionHandler(request, drawAndRaise), VLException)
                << "the handler's own exception is not the request's";
        else
            provider.provideThumbnailForFileRequest_completionHandler(request, drawAndRaise);
        EXPECT_EQ(calls, 1) << document;
    }
}

TEST(ThumbnailCommand, ExitStatusesAndOutput)
{
    const std::string tool = VELMOR_TOOL;
    char folder[] = "/tmp/velmor-command-XXXXXX";
    std::string out = std::string(mkdtemp(folder)) + "/out.png";
    auto run = [&](const std::string& arguments) {
        int status = std::system((tool + " " + arguments + " 2>/dev/null").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    };
    EXPECT_EQ(run("-s 64 " + example + " " + out), 0);
    cairo_surface_t* png = cairo_image_surface_create_from_png(out.c_str());
    EXPECT_EQ(cairo_image_surface_get_width(png), 64);
    EXPECT_EQ(cairo_image_surface_get_height(png), 58) << "ceil(64 / 1340 x 1200)";
    cairo_surface_destroy(png);
    EXPECT_EQ(run("--full-context -s 64 " + example + " " + out), 0);
    png = cairo_image_surface_create_from_png(out.c_str());
    EXPECT_EQ(cairo_image_surface_get_height(png), 64);
    cairo_surface_destroy(png);

    EXPECT_EQ(run("-s 1 " + example + " " + out), 0) << "the smallest size";

    std::remove(out.c_str());
    EXPECT_EQ(run("/no/such/file.velmor " + out), 1);
    EXPECT_EQ(run("-s 0 " + example + " " + out), 64);
    EXPECT_EQ(run(example), 64);
    EXPECT_NE(std::system(("test -e " + out).c_str()), 0) << "failures write nothing";
    std::remove(folder);
}
