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
    // Saturated, it is far beyond the range of a metric, which stores such a value as 0. The
    // sanitized build traps the conversion itself.
    EXPECT_EQ(descender->position(), 0.0);
    EXPECT_EQ(font->fontMasters()[0]->defaultDescender(), 0.0);
}
