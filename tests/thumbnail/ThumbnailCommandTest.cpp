#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "support/PlistTestSupport.h"
#include "thumbnail/ThumbnailCommand.h"
#include "thumbnail/ThumbnailOutput.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

const std::vector<uint8_t> png = {0x89, 'P', 'N', 'G', 1, 2, 3, 4};

struct Folder {
    fs::path path;
    Folder()
    {
        char name[] = "/tmp/velmor-output-XXXXXX";
        path = mkdtemp(name);
    }
    ~Folder() { fs::remove_all(path); }

    size_t entries() const { return static_cast<size_t>(std::distance(fs::directory_iterator(path), {})); }
};

std::string content(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

const std::string written(png.begin(), png.end());

int runTool(const std::string& arguments)
{
    int status = std::system(("sh -c '" + arguments + "' 2>/dev/null").c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(ThumbnailOutput, OnlyAnEmptyFileOfItsOwnIsWrittenInPlace)
{
    Folder folder;
    fs::path output = folder.path / "out.png";
    std::ofstream(output).close();
    auto permissions = fs::status(output).permissions();
    struct stat before;
    stat(output.c_str(), &before);
    ASSERT_TRUE(writeThumbnailOutput(output, png));
    struct stat after;
    stat(output.c_str(), &after);
    EXPECT_EQ(after.st_ino, before.st_ino) << "the service reads the file it made";
    EXPECT_EQ(content(output), written);
    EXPECT_EQ(fs::status(output).permissions(), permissions);

    // A link to an empty file elsewhere, or a second name of one, is replaced, not written through.
    fs::path elsewhere = folder.path / "elsewhere";
    std::ofstream(elsewhere).close();
    fs::path link = folder.path / "link.png";
    fs::create_symlink(elsewhere, link);
    ASSERT_TRUE(writeThumbnailOutput(link, png));
    EXPECT_FALSE(fs::is_symlink(link));
    EXPECT_EQ(content(link), written);
    EXPECT_EQ(fs::file_size(elsewhere), 0u);
    fs::path second = folder.path / "second.png";
    fs::create_hard_link(elsewhere, second);
    ASSERT_TRUE(writeThumbnailOutput(second, png));
    EXPECT_EQ(content(second), written);
    EXPECT_EQ(fs::file_size(elsewhere), 0u);

    // A FIFO or a folder is neither written into nor replaced.
    fs::path fifo = folder.path / "fifo.png";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_FALSE(writeThumbnailOutput(fifo, png));
    EXPECT_TRUE(fs::is_fifo(fifo));
    EXPECT_FALSE(writeThumbnailOutput(folder.path, png));

    // The longest name a folder allows, beside which no longer temporary name would fit.
    fs::path longest = folder.path / (std::string(251, 'x') + ".png");
    ASSERT_TRUE(writeThumbnailOutput(longest, png));
    EXPECT_EQ(content(longest), written);

    mode_t mask = umask(027);
    fs::path fresh = folder.path / "fresh.png";
    bool freshWritten = writeThumbnailOutput(fresh, png);
    umask(mask);
    ASSERT_TRUE(freshWritten);
    EXPECT_EQ(fs::status(fresh).permissions(), fs::perms(0640));
    EXPECT_EQ(folder.entries(), 7u) << "no temporary file is left";
}

TEST(ThumbnailOutput, AFailedWriteLeavesTheOutputAsItWas)
{
    Folder folder;
    fs::path empty = folder.path / "empty.png";
    std::ofstream(empty).close();
    fs::path old = folder.path / "old.png";
    std::ofstream(old) << "old";
    rlimit limit;
    getrlimit(RLIMIT_FSIZE, &limit);
    rlimit small = limit;
    small.rlim_cur = 4;
    auto previous = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    bool emptyWritten = writeThumbnailOutput(empty, png);
    bool oldWritten = writeThumbnailOutput(old, png);
    bool freshWritten = writeThumbnailOutput(folder.path / "fresh.png", png);
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, previous);
    EXPECT_FALSE(emptyWritten);
    EXPECT_FALSE(oldWritten);
    EXPECT_FALSE(freshWritten);
    EXPECT_EQ(fs::file_size(empty), 0u);
    EXPECT_EQ(content(old), "old");
    EXPECT_EQ(folder.entries(), 2u);
}

TEST(ThumbnailCommand, AFileSizeLimitEndsInExitStatus74WithNothingLeft)
{
    Folder folder;
    const std::string tool = VELMOR_TOOL;
    const std::string example = std::string(VELMOR_EXAMPLES) + "/Velmor-Sample.velmor";
    std::string empty = (folder.path / "empty.png").string();
    std::ofstream(empty).close();
    EXPECT_EQ(runTool("ulimit -f 1; " + tool + " -s 1024 " + example + " " + empty), 74);
    EXPECT_EQ(fs::file_size(empty), 0u);
    EXPECT_EQ(runTool("ulimit -f 1; " + tool + " -s 1024 " + example + " " + (folder.path / "new.png").string()), 74);
    EXPECT_EQ(folder.entries(), 1u);
    EXPECT_EQ(runTool(tool + " -s 1024 " + example + " " + empty), 0);
    EXPECT_GT(fs::file_size(empty), 1024u);
}

TEST(ThumbnailCommand, AMetricThatIsNoNumberReadsAsZero)
{
    // A NaN ascender once reached the command's pixel arithmetic; the metric reads as 0 now, and
    // the picture has the size of a canvas without an ascender.
    TemporaryFile document("{\n.formatVersion = 3;\nfontMaster = (\n{\nid = m01;\nmetricValues = (\n{\npos = nan;\n}\n);\n}"
                           "\n);\nglyphs = (\n{\nglyphname = A;\nlayers = (\n{\nlayerId = m01;\nshapes = (\n{\nclosed = 1;\n"
                           "nodes = (\n(0,0,l),\n(500,0,l),\n(500,700,l)\n);\n}\n);\nwidth = 600;\n}\n);\n},\n{\n"
                           "glyphname = g;\nlayers = (\n{\nlayerId = m01;\nwidth = 500;\n}\n);\n}\n);\nmetrics = (\n{\n"
                           "type = ascender;\n}\n);\n}\n");
    VLError error;
    auto font = VLFont::initWithURL_error(document.path, &error);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->fontMasterAtIndex(0)->defaultAscender(), 0.0);
    ThumbnailCommandOptions options;
    options.input = document.path;
    std::vector<uint8_t> bytes;
    ASSERT_EQ(renderThumbnailCommand(options, bytes), 0);
    ASSERT_GT(bytes.size(), 24u);
    auto word = [&](size_t at) { return uint32_t{bytes[at]} << 24 | uint32_t{bytes[at + 1]} << 16 | uint32_t{bytes[at + 2]} << 8 | bytes[at + 3]; };
    // Canvas 100 + 600 + 500 + 100 by 0 - 0 + 200: 256 by ceil(256 / 1300 x 200).
    EXPECT_EQ(word(16), 256u);
    EXPECT_EQ(word(20), 40u);
}
