#pragma once

#include "BenchSupport.h"
#include "reader/VLPlistParser.h"
#include "support/PlistWriting.h"

#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>

// The forms of a generated document that take the dictionary route, written beside it the first
// time a benchmark asks for them: the text with a master key that the streaming reader refuses
// ("refused", read through the second chance), and its XML and binary twins. libplist's binary
// writer slows down with the square of the objects (it had not written the 10,000-glyph document
// after a quarter of an hour), and its XML writer indents every element with tabs, so the XML form
// of the 10,000-glyph document is 440 MB, beyond what is read: both are made of the real-size one.
inline std::string benchTwinOfText(const std::string& text, const std::string& form)
{
    std::string path = text.substr(0, text.rfind('.')) + "-" + form + ".velmor";
    struct stat status;
    if (::stat(path.c_str(), &status) == 0) return path;
    std::stringstream bytes;
    bytes << std::ifstream(text, std::ios::binary).rdbuf();
    std::string document = bytes.str();
    if (form == "refused") {
        size_t master = document.find('{', document.find("fontMaster"));
        if (master == std::string::npos) return path;
        document.insert(master + 1, "\nbaseline = 0;");
    } else {
        VLPlistParseInfo info;
        if (!openPlistParseInfoWithBytes(document.data(), document.size(), &info)) return path;
        Value tree = parsePlistValue(&info, true);
        closePlistParseInfo(&info);
        document = propertyListOfValue(tree, form == "binary");
    }
    std::ofstream(path, std::ios::binary) << document;
    return path;
}

// A form of `document`; the document itself, which reports itself missing, before it has been
// generated.
inline std::string benchDictRouteDocument(const char* document, const std::string& form)
{
    struct stat status;
    if (::stat(document, &status) != 0) return document;
    return benchTwinOfText(document, form);
}
