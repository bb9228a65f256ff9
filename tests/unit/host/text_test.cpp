#include "host/text.h"

#include <gtest/gtest.h>

namespace zam::host {
namespace {

TEST(Printable, ControlCharactersAndBrokenBytesBecomeQuestionMarks) {
    const struct {
        const char *text, *shown;
    } cases[] = {
        {"Key light", "Key light"},
        {"\x1b[2J\x07\n\t\x7f", "?[2J????"},
        {"\xC2\x9B\x33\x31m \xC2\x85", "?31m ?"},  // C1, as terminals obey them
        {"\xC3\x9C \xE2\x82\xAC \xF0\x9F\x92\xA1 \xC2\xA0",
         "\xC3\x9C \xE2\x82\xAC \xF0\x9F\x92\xA1 \xC2\xA0"},
        {"\x9B\x33m \xC3(", "?3m ?("},                     // no UTF-8: C1 of one byte, half a letter
        {"\xC0\x9B \xF8\x88 end\xE2\x82", "?? ?? end??"},  // too long a form, no such byte, cut short
    };
    for (const auto& c : cases) EXPECT_EQ(printable(c.text), c.shown);
}

TEST(Printable, QuotesAreCutBetweenCharacters) {
    EXPECT_EQ(quote("a\x1b"), "\"a?\"");
    const std::string cut = quote(std::string(59, 'x') + "\xC3\x9C and more");
    EXPECT_EQ(cut, '"' + std::string(59, 'x') + "...\"");
}

}  // namespace
}  // namespace zam::host
