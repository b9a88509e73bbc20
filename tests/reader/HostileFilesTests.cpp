#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "reader/VLMappedFileGuard.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPropertyListFile.h"
#include "support/PlistTestSupport.h"
#include "thumbnail/ThumbnailProvider.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <thread>

namespace fs = std::filesystem;

namespace {

// A document larger than the files that are copied, so that it is mapped: glyph "A" first, then
// filler glyphs up to `size` bytes.
std::string mappedDocument(size_t size = VLPlistLargestCopiedFile + 4096)
{
    std::string text = "{\n.formatVersion = 3;\nfontMaster = (\n{\nid = m01;\n}\n);\nglyphs = (\n"
                       "{\nglyphname = A;\nlayers = (\n{\nlayerId = m01;\nshapes = (\n{\nclosed = 1;\nnodes = (\n"
                       "(0,0,l),\n(500,0,l),\n(500,700,l)\n);\n}\n);\nwidth = 600;\n}\n);\n},\n";
    for (int i = 0; text.size() < size; ++i)
        text += "{\nglyphname = g" + std::to_string(i) + ";\nlayers = (\n{\nlayerId = m01;\nwidth = 500;\n}\n);\n},\n";
    return text + "{\nglyphname = g;\n}\n);\n}\n";
}

long answerCode(const std::string& path)
{
    long code = 0;
    ThumbnailProvider().provideThumbnailForFileRequest_completionHandler(
        ThumbnailRequest(path, {64, 64}),
        [&](std::shared_ptr<ThumbnailReply>, std::optional<VLError> error) { code = error ? error->code : 0; });
    return code;
}

struct TemporaryFolder {
    fs::path path;
    TemporaryFolder()
    {
        char name[] = "/tmp/velmor-hostile-XXXXXX";
        path = mkdtemp(name);
    }
    ~TemporaryFolder() { fs::remove_all(path); }
};

void writePackage(const fs::path& folder)
{
    fs::create_directories(folder / "glyphs");
    std::ofstream(folder / "fontinfo.plist") << "{\n.formatVersion = 3;\nfontMaster = (\n{\nid = m01;\n}\n);\n}\n";
    std::ofstream(folder / "order.plist") << "(\nA\n)\n";
    std::ofstream(folder / "glyphs" / "A_.glyph") << "{\nglyphname = A;\nindex = 0;\nlayers = (\n);\n}\n";
}

} // namespace

TEST(MappedFiles, ADocumentCutWhileMappedFailsInsteadOfRaisingSIGBUS)
{
    std::string text = mappedDocument();
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    // The pages behind the cut raise SIGBUS when touched; the one that holds it reads as zeros.
    for (size_t cut : {3 * page, text.size() / page * page}) {
        SCOPED_TRACE(cut);
        TemporaryFile file(text);
        VLPlistParseInfo info;
        ASSERT_TRUE(openPlistParseInfo(file.path.c_str(), &info));
        uint64_t cuts = countOfCutMappedFiles();
        ASSERT_EQ(truncate(file.path.c_str(), static_cast<off_t>(cut)), 0);
        EXPECT_TRUE(parsePlistValue(&info, true).isNull());
        EXPECT_GT(countOfCutMappedFiles(), cuts);
        closePlistParseInfo(&info);
    }
    {
        // Layers are read when a request asks for them, long after the font level.
        TemporaryFile file(text);
        VLError error;
        auto font = VLFont::initWithURL_error(file.path, &error);
        ASSERT_NE(font, nullptr);
        ASSERT_EQ(truncate(file.path.c_str(), 4096), 0);
        EXPECT_FALSE(font->glyphForName("g100")->readLayersFormat(3));
    }
    {
        // Glyph files are copies, which a later cut can't reach.
        TemporaryFolder folder;
        writePackage(folder.path);
        VLError error;
        auto font = VLFont::initWithURL_error(folder.path.string(), &error);
        ASSERT_NE(font, nullptr);
        ASSERT_EQ(truncate((folder.path / "glyphs" / "A_.glyph").c_str(), 0), 0);
        EXPECT_TRUE(font->glyphForName("A")->readLayersFormat(3));
    }
}

TEST(MappedFiles, ASmallFileShorterThanItsStatusSaidIsReadToItsEnd)
{
    // The file shrank between its status and the read: the copy ends where the file ends.
    TemporaryFile file("{a = 1;}");
    int fd = open(file.path.c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    size_t length = 0;
    VLPlistMapping copy = readPlistFile(fd, 1000, length);
    close(fd);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(length, 8u);
    EXPECT_EQ(std::string(copy.get(), copy.get() + length), "{a = 1;}");
    for (size_t i = length; i < 1000 + VLPlistZeroPadding; ++i) ASSERT_EQ(copy.get()[i], 0) << i;
}

TEST(MappedFiles, DocumentsCutAtAnyMomentOfARequestAnswerOrFail)
{
    std::string text = mappedDocument();
    TemporaryFile file(text);
    ASSERT_EQ(answerCode(file.path), 0);
    for (int round = 0; round < 12; ++round) {
        std::ofstream(file.path, std::ios::binary | std::ios::trunc).write(text.data(), static_cast<long>(text.size()));
        std::atomic<bool> started = false;
        std::thread cutter([&] {
            while (!started) std::this_thread::yield();
            std::this_thread::sleep_for(std::chrono::microseconds(round * 250));
            truncate(file.path.c_str(), static_cast<off_t>(round * 90001));
        });
        started = true;
        long code = answerCode(file.path);
        cutter.join();
        EXPECT_TRUE(code == 0 || code == 1 || code == 2) << code;
    }
}

TEST(DocumentFiles, OnlyRegularFilesAndFoldersAreRead)
{
    TemporaryFolder folder;
    fs::path fifo = folder.path / "fifo.velmor";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    VLError error;
    EXPECT_EQ(VLFont::initWithURL_error(fifo.string(), &error), nullptr) << "a FIFO would block forever";
    EXPECT_EQ(VLFont::initWithURL_error("/dev/zero", &error), nullptr) << "a device never ends";
    EXPECT_FALSE(readFileBytes("/dev/zero", VLPropertyListLargestDocument));

    // Each file of a package in turn.
    for (const char* member : {"fontinfo.plist", "order.plist", "glyphs/A_.glyph"}) {
        SCOPED_TRACE(member);
        fs::path package = folder.path / "package";
        writePackage(package);
        fs::remove(package / member);
        ASSERT_EQ(mkfifo((package / member).c_str(), 0600), 0);
        EXPECT_EQ(VLFont::initWithURL_error(package.string(), &error), nullptr);
        fs::remove_all(package);
    }
}

TEST(DocumentFiles, PropertyListsBeyondTheirLargestSizeAreNotRead)
{
    TemporaryFolder folder;
    fs::path sparse = folder.path / "sparse.plist";
    std::ofstream(sparse) << "<?xml version=\"1.0\"?><plist version=\"1.0\"><array></array></plist>";
    EXPECT_TRUE(readFileBytes(sparse.string(), VLPropertyListLargestFile));
    // A sparse file of 2 GB costs nothing on disk; read whole, it cost 2 GB of memory.
    ASSERT_EQ(truncate(sparse.c_str(), off_t{2} << 30), 0);
    EXPECT_FALSE(readFileBytes(sparse.string(), VLPropertyListLargestDocument));
    ASSERT_EQ(truncate(sparse.c_str(), static_cast<off_t>(VLPropertyListLargestDocument) + 1), 0);
    EXPECT_FALSE(readFileBytes(sparse.string(), VLPropertyListLargestDocument));
    VLError error;
    EXPECT_EQ(VLFont::initWithURL_error(sparse.string(), &error), nullptr);
    ASSERT_EQ(truncate(sparse.c_str(), static_cast<off_t>(VLPropertyListLargestFile) + 1), 0);
    EXPECT_FALSE(readFileBytes(sparse.string(), VLPropertyListLargestFile));
    ASSERT_EQ(truncate(sparse.c_str(), static_cast<off_t>(VLPropertyListLargestFile)), 0);
    auto bytes = readFileBytes(sparse.string(), VLPropertyListLargestFile);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->size(), VLPropertyListLargestFile);

    // A property list beside the glyphs of a package, such as "order.plist", keeps the small limit.
    auto listOfSize = [](size_t size) {
        std::string head = "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><string>";
        std::string tail = "</string></array></plist>";
        return head + std::string(size - head.size() - tail.size(), 'x') + tail;
    };
    fs::path order = folder.path / "order.plist";
    std::ofstream(order) << listOfSize(VLPropertyListLargestFile);
    EXPECT_TRUE(readPropertyListFile(order.string()));
    std::ofstream(order) << listOfSize(VLPropertyListLargestFile + 1);
    EXPECT_FALSE(readPropertyListFile(order.string()));
}
