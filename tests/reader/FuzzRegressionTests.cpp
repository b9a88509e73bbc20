// The smallest inputs of the faults fuzzing found, each read the way the fuzz target read it.
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLMetric.h"
#include "model/VLMetricValue.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

TEST(FuzzRegression, OutOfRangeLegacyMetricsSaturate)
{
    // Between INT64_MAX and UINT64_MAX: converting it to an integer was undefined behaviour.
    TemporaryFile file("{\nfontMaster = (\n{\ndescender = 16000000000000000000;\n}\n);\n}\n");
    VLError error;
    auto font = VLFont::initWithURL_error(file.path, &error);
    ASSERT_NE(font, nullptr);
    ASSERT_EQ(font->fontMasters().size(), 1u);
    auto descender = font->fontMasters()[0]->metricValueForType_layer(VLMetric::TypeDescender, nullptr);
    ASSERT_NE(descender, nullptr);
    // Saturated, it reaches the unset value; converted out of range, x86 made it -2^63.
    EXPECT_GE(descender->position(), 0.0);
}
