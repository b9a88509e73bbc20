#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "platform/VLError.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

// A package folder in the temporary directory, removed at the end of the scope.
struct Package {
    fs::path folder;

    Package()
    {
        char name[] = "/tmp/velmor-package-XXXXXX";
        folder = mkdtemp(name);
        fs::create_directory(folder / "glyphs");
        write("fontinfo.plist", "{\n.formatVersion = 3;\nunitsPerEm = 1000;\n}\n");
    }
    ~Package() { fs::remove_all(folder); }

    void write(const fs::path& relative, const std::string& text) const
    {
        std::ofstream(folder / relative, std::ios::binary) << text;
    }

    void glyph(const std::string& file, const std::string& name, int index) const
    {
        write(fs::path("glyphs") / file,
              "{\nglyphname = " + name + ";\nindex = " + std::to_string(index) + ";\nlayers = (\n);\n}\n");
    }

    std::shared_ptr<VLFont> read(VLError* error = nullptr) const
    {
        VLError ignored;
        return VLFont::initWithURL_error(folder.string(), error ? error : &ignored);
    }
};

} // namespace

TEST(PackageReader, GlyphsAreSortedByIndexWhateverTheThreadsDid)
{
    Package package;
    std::string order = "(\n";
    for (int i = 0; i < 1000; ++i) {
        std::string name = "g" + std::to_string(i);
        package.glyph(name + ".glyph", name, i);
        order += name + ",\n";
    }
    package.write("order.plist", order + ")\n");
    package.write("glyphs/notes.txt", "not a glyph");

    auto font = package.read();
    ASSERT_NE(font, nullptr);
    ASSERT_EQ(font->count(), 1000u);
    EXPECT_EQ(font->countOfGlyphs(), 1000u);
    for (size_t i = 0; i < font->glyphs().size(); ++i) ASSERT_EQ(font->glyphs()[i]->glyphId(), i);
    EXPECT_EQ(font->glyphs()[0]->parent(), font);
}

TEST(PackageReader, OrderMayBeXML)
{
    Package package;
    package.glyph("A_.glyph", "A", 0);
    package.glyph("a.glyph", "a", 1);
    package.write("order.plist", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n"
                                 "<array><string>A</string><string>a</string></array>\n</plist>\n");
    auto font = package.read();
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->glyphFiles(), (std::vector<std::string>{"A", "a"}));
    EXPECT_EQ(font->glyphAtIndex(0)->name(), "A");
}

TEST(PackageReader, Failures)
{
    {
        Package package;
        package.glyph("A_.glyph", "A", 0);
        VLError error;
        EXPECT_EQ(package.read(&error), nullptr) << "no order.plist";
        EXPECT_TRUE(error.domain.empty());
    }
    {
        Package package;
        package.glyph("A_.glyph", "A", 0);
        package.write("order.plist", "(\n)\n");
        VLError error;
        EXPECT_EQ(package.read(&error), nullptr) << "an empty order";
        EXPECT_TRUE(error.domain.empty());
    }
    {
        Package package;
        package.write("order.plist", "(\nA\n)\n");
        VLError error;
        EXPECT_EQ(package.read(&error), nullptr);
        EXPECT_EQ(error.domain, "VLVelmorDomain");
        EXPECT_EQ(error.localizedDescription(), "No Glyphs found!");
    }
    {
        Package package;
        package.write("order.plist", "(\nA,\nB\n)\n");
        package.glyph("A_.glyph", "A", 0);
        package.write("glyphs/B_.glyph", "{\nglyphname = B;\nunicode = (x);\n}\n");
        VLError error;
        EXPECT_EQ(package.read(&error), nullptr);
        EXPECT_EQ(error.code, 3840) << error.description();
    }
    {
        // Glyph files are opened by name inside their folder: a folder in the file's place is found.
        Package package;
        package.write("order.plist", "(\nA\n)\n");
        package.glyph("A_.glyph", "A", 0);
        fs::create_directory(package.folder / "glyphs" / "B_.glyph");
        VLError error;
        EXPECT_EQ(package.read(&error), nullptr);
        EXPECT_EQ(error.localizedDescription(), "Couldn’t open file: B_.glyph (Is a directory)");
    }
}

TEST(PackageReader, NamesInTheOrderStayInsideTheGlyphFolder)
{
    Package package;
    package.glyph("A_.glyph", "A", 0);
    package.glyph("../outside.glyph", "outside", 1);
    fs::create_directory(package.folder / "glyphs" / "x");
    package.write("order.plist", "(\nA,\n\"x/../../outside\"\n)\n");
    auto font = package.read();
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->glyphAtIndex(1), nullptr);
    EXPECT_EQ(font->glyphForName("x/../../outside"), nullptr);
}

namespace {

size_t countOfMappings()
{
    std::ifstream maps("/proc/self/maps");
    size_t lines = 0;
    for (std::string line; std::getline(maps, line);) ++lines;
    return lines;
}

} // namespace

TEST(PackageReader, GlyphFilesKeepNoMappings)
{
    // A process may hold about 65,000 mappings; two a glyph file ended large packages.
    Package package;
    std::string order = "(\n";
    for (int i = 0; i < 1000; ++i) {
        package.glyph("g" + std::to_string(i) + ".glyph", "g" + std::to_string(i), i);
        order += "g" + std::to_string(i) + ",\n";
    }
    package.write("order.plist", order + ")\n");
    size_t before = countOfMappings();
    auto font = package.read();
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->count(), 1000u);
    EXPECT_LT(countOfMappings(), before + 100);
}

TEST(PackageReader, NamesOfTheOrderAreLookedUpOnceEach)
{
    Package package;
    // The file of "x" holds a glyph of another name, so that "x" is found through the order.
    package.write("glyphs/x.glyph", "{\nglyphname = y;\ncategory = Mark;\nlayers = (\n);\n}\n");
    std::string order = "(\n";
    for (int i = 0; i < 1000; ++i) order += "x,\n\"x\\000" + std::to_string(i) + "\",\n";
    package.write("order.plist", order + ")\n");
    auto font = package.read();
    ASSERT_NE(font, nullptr);
    ASSERT_EQ(font->glyphFiles().size(), 2000u);
    ASSERT_EQ(font->glyphFiles()[1].size(), 3u) << "a NUL byte in a name";
    for (size_t i = 0; i < font->glyphFiles().size(); ++i) font->glyphAtIndex(i);
    EXPECT_EQ(font->glyphForName("x")->name(), "y");
    EXPECT_EQ(font->glyphAtIndex(1), nullptr) << "no file is named with a NUL byte";
    EXPECT_EQ(font->count(), 2u) << "the file of x is read once more, by its name in the order";
}

TEST(PackageReader, LinksThatLeaveThePackageAreNotFollowed)
{
    Package outside;
    outside.glyph("B_.glyph", "B", 1);
    {
        Package package;
        package.glyph("A_.glyph", "A", 0);
        package.write("order.plist", "(\nA,\nB\n)\n");
        fs::create_symlink(package.folder / "glyphs" / "A_.glyph", package.folder / "glyphs" / "C_.glyph");
        auto font = package.read();
        ASSERT_NE(font, nullptr) << "a link inside the package is followed";
        EXPECT_EQ(font->count(), 2u);
        fs::create_symlink(outside.folder / "glyphs" / "B_.glyph", package.folder / "glyphs" / "B_.glyph");
        VLError error;
        EXPECT_EQ(package.read(&error), nullptr);
        EXPECT_EQ(error.localizedDescription().find("B_.glyph") != std::string::npos, true) << error.description();
        fs::remove(package.folder / "glyphs" / "B_.glyph");
        font = package.read();
        ASSERT_NE(font, nullptr);
        fs::create_symlink(outside.folder / "glyphs" / "B_.glyph", package.folder / "glyphs" / "B_.glyph");
        EXPECT_EQ(font->glyphForName("B"), nullptr) << "nor when a name of the order is looked up";
    }
    {
        // Glyph files link only within the glyph folder; one whose name starts with the folder's
        // is another folder.
        Package package;
        package.glyph("A_.glyph", "A", 0);
        package.write("order.plist", "(\nA\n)\n");
        fs::create_directory(package.folder / "glyphs-other");
        package.glyph("../glyphs-other/B_.glyph", "B", 1);
        fs::create_symlink(package.folder / "glyphs-other" / "B_.glyph", package.folder / "glyphs" / "B_.glyph");
        EXPECT_EQ(package.read(), nullptr);
    }
    for (const char* member : {"fontinfo.plist", "order.plist", "glyphs"}) {
        SCOPED_TRACE(member);
        Package package;
        package.glyph("A_.glyph", "A", 0);
        package.write("order.plist", "(\nA\n)\n");
        outside.write("order.plist", "(\nA\n)\n");
        fs::remove_all(package.folder / member);
        fs::create_symlink(outside.folder / member, package.folder / member);
        EXPECT_EQ(package.read(), nullptr);
    }
}
