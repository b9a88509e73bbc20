#pragma once

#include "model/VLFont.h"
#include "platform/VLError.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

// A document of tests/data, read and finished as the command reads it; null when it fails.
inline std::shared_ptr<VLFont> readTestDocument(const std::string& name)
{
    VLError error;
    return VLFont::initWithURL_error(std::string(VELMOR_TEST_DATA) + "/" + name, &error);
}

// The same design space written in the current format and in the older one, whose masters give
// their location by weight and width values and whose special layers are told by their names.
inline const char* const layerKindDocuments[] = {"layers/kinds-format3.velmor", "layers/kinds-format1.velmor"};

// The check run on the font of each of those documents, which failures name.
template <typename Check> void forEachLayerKindDocument(Check check)
{
    for (const char* document : layerKindDocuments) {
        SCOPED_TRACE(document);
        auto font = readTestDocument(document);
        ASSERT_NE(font, nullptr);
        check(font);
    }
}
