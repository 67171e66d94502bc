#include "virtual_tv/show/markup.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/show/samples.h"
#include "virtual_tv/show/html_page.h"
#include "virtual_tv/show/terminal_page.h"

namespace vxtv::show {
namespace {

TEST(ShowMarkup, textIsEscaped) {
    EXPECT_EQ("&lt;script&gt;a &amp; &quot;b&quot; &#39;c&#39;&lt;/script&gt;",
              Markup::text("<script>a & \"b\" 'c'</script>").html());
    EXPECT_EQ("Gr\u00fc\u00df Gott\n", Markup::text("Gr\u00fc\u00df Gott\n").html());
}

TEST(ShowMarkup, attributeThatClosesItselfIsEscaped) {
    EXPECT_EQ("<img alt=\"&quot; onerror=&quot;x\">",
              Markup::single("img", {{"alt", "\" onerror=\"x"}}).html());
    EXPECT_EQ("<p class=\"a\">&lt;b&gt;</p>",
              Markup::element("p", {{"class", "a"}}, Markup::text("<b>")).html());
}

TEST(ShowMarkup, bytesThatAreNoUtf8AreReplaced) {
    EXPECT_EQ("a\uFFFDb", Markup::text("a\xff"
                                       "b")
                              .html());
    EXPECT_EQ("\uFFFD", Markup::text("\xc3").html());
}

TEST(ShowMarkup, charactersThatDeceiveAreReplaced) {
    EXPECT_EQ("\uFFFD[0m", Markup::text("\x1b[0m").html());
    EXPECT_EQ("a\uFFFDgpj.exe", Markup::text("a\u202Egpj.exe").html());
    EXPECT_EQ("a\uFFFDb", Markup::text("a\u2067b").html());
    EXPECT_EQ("\uFFFD", Markup::text("\u009b").html());
    EXPECT_EQ("\u20ac", Markup::text("\u20ac").html());
}

TEST(ShowMarkup, dataAddressHoldsTheBytes) {
    EXPECT_EQ("data:image/png;base64,TWFu", dataAddress("image/png", "Man"));
    EXPECT_EQ("data:image/png;base64,TWE=", dataAddress("image/png", "Ma"));
    EXPECT_EQ("data:image/png;base64,", dataAddress("image/png", ""));
}

TEST(ShowHtmlPage, hostileTextNowhereBecomesMarkup) {
    const std::string page = htmlPage(test::pageOf("<script>\"'>\xff"), "today");
    EXPECT_EQ(std::string::npos, page.find("<script"));
    EXPECT_EQ(std::string::npos, page.find("\"'>"));
    EXPECT_EQ(std::string::npos, page.find('\xff'));
    EXPECT_NE(std::string::npos, page.find("&lt;script&gt;&quot;&#39;&gt;\uFFFD"));
}

TEST(ShowHtmlPage, needsNothingFromOutside) {
    const std::string page = htmlPage(test::pageOf("https://example.test/"), "today");
    EXPECT_EQ(std::string::npos, page.find("src=\"http"));
    EXPECT_EQ(std::string::npos, page.find("href=\"http"));
    EXPECT_EQ(std::string::npos, page.find("url("));
    EXPECT_NE(std::string::npos, page.find("default-src &#39;none&#39;"));
}

TEST(ShowHtmlPage, rowsLeftOutAreCounted) {
    Page shown = test::pageOf("x");
    shown.sections[0].cards[0].grids[0].leftOut = 367;
    EXPECT_NE(std::string::npos, htmlPage(shown, "today").find("... and 367 more"));
    EXPECT_NE(std::string::npos, terminalPage(shown, {}).text().find("... and 367 more"));
}

TEST(ShowTerminalPage, textDoesNotSteerTheTerminal) {
    const std::string page = terminalPage(test::pageOf("a\x1b[31mb"), {});
    EXPECT_EQ(std::string::npos, page.find('\x1b'));
    EXPECT_NE(std::string::npos, page.find("a\\x1b[31mb"));
}

TEST(ShowTerminalPage, onlyAColouredOneHasColours) {
    Page shown = test::pageOf("x");
    shown.sections[0].cards[0].facts[0].colour = Colour::Bad;
    EXPECT_NE(std::string::npos, terminalPage(shown, {80, true, true}).text().find('\x1b'));
    EXPECT_EQ(std::string::npos, terminalPage(shown, {}).text().find('\x1b'));
}

}  // namespace
}  // namespace vxtv::show
