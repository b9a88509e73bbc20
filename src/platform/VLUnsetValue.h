#pragma once

// Marks a number as not set or not yet computed: 2 to the power 63. Compared for exact
// equality, or for being at least this value.
constexpr double VLUnsetValue = 9223372036854775808.0;
